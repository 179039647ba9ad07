#include "views/afrequencydelegate.h"

#include "views/editorlook.h"

#include <QtGui/QRegExpValidator>
#include <QtWidgets/QLineEdit>

namespace {

AFrequency frequencyOf(const QModelIndex &index)
{
    return AFrequency(index.data(Qt::EditRole).toByteArray().constData());
}

} // namespace

AFrequencyDelegate::AFrequencyDelegate(QObject *parent)
    : QStyledItemDelegate(parent)
{}

AFrequencyDelegate::~AFrequencyDelegate() = default;

void AFrequencyDelegate::setOptions(AFrequency::Unit defaultUnit, bool allowNegative)
{
    m_defaultUnit = defaultUnit;
    m_allowNegative = allowNegative;
}

void AFrequencyDelegate::paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const
{
    const QString text = frequencyOf(index).formatString(QStringLiteral("%L1 %2"), AFrequency::NoUnit, 0, 'f', -1);
    editorlook::drawSpinBox(painter, option, text);
}

QWidget *AFrequencyDelegate::createEditor(QWidget *parent, const QStyleOptionViewItem &, const QModelIndex &index) const
{
    const QString sign = m_allowNegative ? QStringLiteral("-?") : QString();
    const QRegExp pattern(sign + QStringLiteral("[0-9]+([.,][0-9]+)?( (Hz|kHz|MHz|GHz))?"));
    auto *edit = new QLineEdit(parent);
    edit->setValidator(new QRegExpValidator(pattern, edit));
    setEditorData(edit, index);
    edit->setFocusPolicy(Qt::StrongFocus);
    return edit;
}

void AFrequencyDelegate::setEditorData(QWidget *editor, const QModelIndex &index) const
{
    constexpr int kDecimals = 3;
    if (auto *edit = qobject_cast<QLineEdit *>(editor))
        edit->setText(frequencyOf(index).formatString(QStringLiteral("%1 %2"), AFrequency::NoUnit, 0, 'f', kDecimals));
    else
        QStyledItemDelegate::setEditorData(editor, index);
}

void AFrequencyDelegate::setModelData(QWidget *editor, QAbstractItemModel *model, const QModelIndex &index) const
{
    // Deliberately as typed, without the default unit: stored tables rely on a bare number staying one.
    if (const auto *edit = qobject_cast<QLineEdit *>(editor))
        model->setData(index, edit->text(), Qt::EditRole);
    else
        QStyledItemDelegate::setModelData(editor, model, index);
}
