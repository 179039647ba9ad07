#pragma once

#include "core/aveldoranexport.h"

#include <QtWidgets/QStyledItemDelegate>

// Shows and edits a cell that holds a truth value as a check box with "Yes" or "No" beside it.
class AVELDORAN_DATA_EXPORT ACheckBoxItemDelegate : public QStyledItemDelegate
{
    Q_OBJECT

public:
    explicit ACheckBoxItemDelegate(QObject *parent = nullptr);
    ~ACheckBoxItemDelegate() override;

    // The check box alone, in the application's style: no selection, nothing else of the item. The highlight that a
    // table view may paint below its selected rows stays visible around it.
    void paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const override;

    // Of a plain item. It does what that of the base does, and is exported for derived classes to link to.
    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override;

    // A check box that shows what Qt::DisplayRole holds, commits a bool, and fills the cell. Its text follows it.
    QWidget *createEditor(QWidget *parent, const QStyleOptionViewItem &option, const QModelIndex &index) const override;
    void setEditorData(QWidget *editor, const QModelIndex &index) const override;
    void setModelData(QWidget *editor, QAbstractItemModel *model, const QModelIndex &index) const override;
    void updateEditorGeometry(QWidget *editor, const QStyleOptionViewItem &option,
                              const QModelIndex &index) const override;

public Q_SLOTS:
    // Gives the check box that sends it the text of `state`; nothing for any other sender.
    void onCheckBoxToggle(bool state);
};
