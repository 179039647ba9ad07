#include "limit/alimitsuffixdelegate.h"

#include <QtCore/QLocale>
#include <QtWidgets/QDoubleSpinBox>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QStyle>

#include <algorithm>

namespace {

// While it is shown it is wider than its cell where the text needs that, as far as the view goes. The view's own editor
// of a text does the same.
class GrowingSpinBox : public QDoubleSpinBox
{
public:
    explicit GrowingSpinBox(QWidget *parent)
        : QDoubleSpinBox(parent)
    {
        connect(lineEdit(), &QLineEdit::textChanged, this, &GrowingSpinBox::fitText);
    }

protected:
    void showEvent(QShowEvent *event) override
    {
        QDoubleSpinBox::showEvent(event);
        fitText();
    }

    void resizeEvent(QResizeEvent *event) override
    {
        QDoubleSpinBox::resizeEvent(event);
        if (m_isFitting)
            return;
        m_cellWidth = width();
        fitText();
    }

private:
    void fitText()
    {
        const QWidget *view = parentWidget();
        if (!view || !isVisible())
            return;
        const int room = isRightToLeft() ? x() + width() : view->width() - x();
        const int fitting = std::max(m_cellWidth, std::min(widthOfText(), room));
        const int left = isRightToLeft() ? x() + width() - fitting : x();
        m_isFitting = true;
        setGeometry(left, y(), fitting, height());
        m_isFitting = false;
    }

    int widthOfText() const
    {
        constexpr int kBesideText = 2; // pixels that a line edit leaves free on each side
        const int text = lineEdit()->fontMetrics().horizontalAdvance(lineEdit()->displayText());
        const int cursor = style()->pixelMetric(QStyle::PM_TextCursorWidth, nullptr, this);
        return width() - lineEdit()->width() + text + cursor + 2 * kBesideText;
    }

    int m_cellWidth = 0;
    bool m_isFitting = false;
};

} // namespace

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
    auto *box = new GrowingSpinBox(parent);
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
