#include "views/abooleanitemdelegate.h"

#include <QtWidgets/QComboBox>

namespace {

enum Row
{
    TrueRow,
    FalseRow
};

} // namespace

ABooleanItemDelegate::ABooleanItemDelegate(QObject *parent)
    : ABooleanItemDelegate(tr("True"), tr("False"), parent)
{}

ABooleanItemDelegate::ABooleanItemDelegate(const QString &trueText, const QString &falseText, QObject *parent)
    : QStyledItemDelegate(parent)
    , m_trueText(trueText)
    , m_falseText(falseText)
{}

ABooleanItemDelegate::~ABooleanItemDelegate() = default;

void ABooleanItemDelegate::paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const
{
    QStyledItemDelegate::paint(painter, option, index);
}

QSize ABooleanItemDelegate::sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const
{
    return QStyledItemDelegate::sizeHint(option, index);
}

QWidget *ABooleanItemDelegate::createEditor(QWidget *parent, const QStyleOptionViewItem &option,
                                            const QModelIndex &) const
{
    auto *box = new QComboBox(parent);
    box->setGeometry(option.rect);
    box->setSizeAdjustPolicy(QComboBox::AdjustToContentsOnFirstShow);
    box->insertItem(TrueRow, m_trueText);
    box->insertItem(FalseRow, m_falseText);
    return box;
}

void ABooleanItemDelegate::setEditorData(QWidget *editor, const QModelIndex &index) const
{
    if (auto *box = qobject_cast<QComboBox *>(editor))
        box->setCurrentIndex(index.data(Qt::DisplayRole).toBool() ? TrueRow : FalseRow);
    else
        QStyledItemDelegate::setEditorData(editor, index);
}

void ABooleanItemDelegate::setModelData(QWidget *editor, QAbstractItemModel *model, const QModelIndex &index) const
{
    if (const auto *box = qobject_cast<QComboBox *>(editor))
        model->setData(index, box->currentIndex() == TrueRow, Qt::EditRole);
    else
        QStyledItemDelegate::setModelData(editor, model, index);
}

void ABooleanItemDelegate::updateEditorGeometry(QWidget *editor, const QStyleOptionViewItem &option,
                                                const QModelIndex &) const
{
    editor->setGeometry(option.rect);
}

QString ABooleanItemDelegate::displayText(const QVariant &value, const QLocale &) const
{
    return value.toBool() ? m_trueText : m_falseText;
}
