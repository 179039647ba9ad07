#include "limit/alimitselectiondelegate.h"

#include <QtWidgets/QComboBox>

ALimitSelectionDelegate::ALimitSelectionDelegate(const QMap<unsigned int, QString> &labels, QObject *parent)
    : QStyledItemDelegate(parent)
    , m_labels(labels)
{}

ALimitSelectionDelegate::~ALimitSelectionDelegate() = default;

QWidget *ALimitSelectionDelegate::createEditor(QWidget *parent, const QStyleOptionViewItem &,
                                               const QModelIndex &index) const
{
    auto *box = new QComboBox(parent);
    for (auto label = m_labels.cbegin(); label != m_labels.cend(); ++label)
        box->addItem(label.value(), label.key());
    const QString shown = index.data(Qt::DisplayRole).toString();
    box->setCurrentIndex(box->findData(shown, Qt::DisplayRole, Qt::MatchCaseSensitive));
    return box;
}

void ALimitSelectionDelegate::setEditorData(QWidget *editor, const QModelIndex &index) const
{
    auto *box = qobject_cast<QComboBox *>(editor);
    if (!box) {
        QStyledItemDelegate::setEditorData(editor, index);
        return;
    }
    box->setCurrentIndex(box->findData(index.data(Qt::EditRole), Qt::UserRole, Qt::MatchCaseSensitive));
}

void ALimitSelectionDelegate::setModelData(QWidget *editor, QAbstractItemModel *model, const QModelIndex &index) const
{
    const auto *box = qobject_cast<QComboBox *>(editor);
    if (!box)
        QStyledItemDelegate::setModelData(editor, model, index);
    else if (box->currentIndex() >= 0)
        model->setData(index, box->currentData().toUInt(), Qt::EditRole);
}

QString ALimitSelectionDelegate::displayText(const QVariant &value, const QLocale &) const
{
    return m_labels.value(value.toUInt());
}
