#include "views/acomboboxdelegate.h"

#include <QtWidgets/QComboBox>

AComboBoxDelegate::AComboBoxDelegate(QAbstractListModel *model, int column, QObject *parent)
    : QStyledItemDelegate(parent)
    , m_column(column)
    , m_model(model)
{}

AComboBoxDelegate::~AComboBoxDelegate() = default;

void AComboBoxDelegate::paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const
{
    QStyledItemDelegate::paint(painter, option, index);
}

QSize AComboBoxDelegate::sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const
{
    return QStyledItemDelegate::sizeHint(option, index);
}

QWidget *AComboBoxDelegate::createEditor(QWidget *parent, const QStyleOptionViewItem &, const QModelIndex &) const
{
    auto *box = new QComboBox(parent);
    box->setSizeAdjustPolicy(QComboBox::AdjustToContents);
    if (m_model) {
        box->setModel(m_model);
        box->setModelColumn(m_column);
    }
    // By the index and not by currentTextChanged: that one also comes when the model changes the text of a row.
    auto *self = const_cast<AComboBoxDelegate *>(this); // an editor may tell, though making one changes nothing
    connect(box, QOverload<int>::of(&QComboBox::currentIndexChanged), self,
            [self, box](int row) { self->onCurrentItemChanged(box->itemText(row)); });
    return box;
}

void AComboBoxDelegate::setModelData(QWidget *editor, QAbstractItemModel *model, const QModelIndex &index) const
{
    if (const auto *box = qobject_cast<QComboBox *>(editor))
        model->setData(index, box->currentText(), Qt::EditRole);
    else
        QStyledItemDelegate::setModelData(editor, model, index);
}

void AComboBoxDelegate::updateEditorGeometry(QWidget *editor, const QStyleOptionViewItem &option,
                                             const QModelIndex &) const
{
    editor->setGeometry(option.rect);
}

void AComboBoxDelegate::onCurrentItemChanged(const QString &text)
{
    Q_EMIT currentItemChanged(text);
}
