#include "views/acheckboxitemdelegate.h"

#include "views/editorlook.h"

#include <QtWidgets/QCheckBox>

namespace {

bool isTrue(const QModelIndex &index)
{
    return index.data(Qt::DisplayRole).toBool();
}

QString textOf(bool state)
{
    return state ? ACheckBoxItemDelegate::tr("Yes") : ACheckBoxItemDelegate::tr("No");
}

} // namespace

ACheckBoxItemDelegate::ACheckBoxItemDelegate(QObject *parent)
    : QStyledItemDelegate(parent)
{}

ACheckBoxItemDelegate::~ACheckBoxItemDelegate() = default;

void ACheckBoxItemDelegate::paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const
{
    const bool state = isTrue(index);
    editorlook::drawCheckBox(painter, option, QStyle::State_None, state, textOf(state));
}

QSize ACheckBoxItemDelegate::sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const
{
    return QStyledItemDelegate::sizeHint(option, index);
}

QWidget *ACheckBoxItemDelegate::createEditor(QWidget *parent, const QStyleOptionViewItem &,
                                             const QModelIndex &index) const
{
    const bool state = isTrue(index);
    auto *box = new QCheckBox(parent);
    box->setBackgroundRole(QPalette::Window);
    box->setAutoFillBackground(true); // or the painted cell shows through
    connect(box, &QCheckBox::toggled, this, &ACheckBoxItemDelegate::onCheckBoxToggle);
    box->setText(textOf(state));
    box->setChecked(state);
    return box;
}

void ACheckBoxItemDelegate::setEditorData(QWidget *editor, const QModelIndex &index) const
{
    if (auto *box = qobject_cast<QCheckBox *>(editor))
        box->setChecked(isTrue(index));
    else
        QStyledItemDelegate::setEditorData(editor, index);
}

void ACheckBoxItemDelegate::setModelData(QWidget *editor, QAbstractItemModel *model, const QModelIndex &index) const
{
    if (const auto *box = qobject_cast<QCheckBox *>(editor))
        model->setData(index, box->isChecked(), Qt::EditRole);
    else
        QStyledItemDelegate::setModelData(editor, model, index);
}

void ACheckBoxItemDelegate::updateEditorGeometry(QWidget *editor, const QStyleOptionViewItem &option,
                                                 const QModelIndex &) const
{
    editor->setGeometry(option.rect);
}

void ACheckBoxItemDelegate::onCheckBoxToggle(bool state)
{
    if (auto *box = qobject_cast<QCheckBox *>(sender()))
        box->setText(textOf(state));
}
