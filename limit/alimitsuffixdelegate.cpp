#include "limit/alimitsuffixdelegate.h"

#include <QtCore/QLocale>
#include <QtWidgets/QDoubleSpinBox>

ALimitSuffixDelegate::ALimitSuffixDelegate(const QString &suffix, int decimals, QObject *parent)
    : QStyledItemDelegate(parent)
    , m_suffix(suffix)
    , m_decimals(decimals)
{}

ALimitSuffixDelegate::~ALimitSuffixDelegate() = default;

void ALimitSuffixDelegate::setSuffix(const QString &suffix)
{
    m_suffix = suffix;
}

QWidget *ALimitSuffixDelegate::createEditor(QWidget *parent, const QStyleOptionViewItem &,
                                            const QModelIndex &index) const
{
    constexpr double kMaximum = 1e9;
    auto *box = new QDoubleSpinBox(parent);
    box->setSuffix(QLatin1Char(' ') + m_suffix);
    box->setMaximum(kMaximum);
    box->setMinimum(-kMaximum);
    box->setDecimals(m_decimals);
    box->setValue(index.data(Qt::EditRole).toDouble());
    return box;
}

QString ALimitSuffixDelegate::displayText(const QVariant &value, const QLocale &locale) const
{
    constexpr int kShortest = 3;
    QString text = locale.toString(value.toDouble(), 'f', m_decimals);
    // Deliberately blind to the decimals and to the point of `locale`: editors choose their columns' decimals by it.
    const QChar point = QLocale().decimalPoint();
    while (text.size() >= kShortest && text.endsWith(QLatin1Char('0')) && text.at(text.size() - 2) != point)
        text.chop(1);
    return text + QLatin1Char(' ') + m_suffix;
}
