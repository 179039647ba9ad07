#pragma once

#include "core/aveldoranexport.h"

#include <QtCore/QAbstractListModel>
#include <QtCore/QPointer>
#include <QtWidgets/QStyledItemDelegate>

// Edits a cell that holds a text by a choice among the rows of a model.
class AVELDORAN_DATA_EXPORT AComboBoxDelegate : public QStyledItemDelegate
{
    Q_OBJECT

public:
    // The choices are the texts of that column. The caller keeps the model, which may be null; once it is deleted,
    // there is nothing to choose.
    AComboBoxDelegate(QAbstractListModel *model, int column, QObject *parent = nullptr);
    ~AComboBoxDelegate() override;

    // As a plain item. They do what those of the base do, and are exported for derived classes to link to.
    void paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const override;
    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override;

    // A combo box that fills the cell. It always commits its current text: a cell with a text that is no choice takes
    // the first one, or the empty text if there is none.
    QWidget *createEditor(QWidget *parent, const QStyleOptionViewItem &option, const QModelIndex &index) const override;
    void setModelData(QWidget *editor, QAbstractItemModel *model, const QModelIndex &index) const override;
    void updateEditorGeometry(QWidget *editor, const QStyleOptionViewItem &option,
                              const QModelIndex &index) const override;

Q_SIGNALS:
    // Of an open editor, before it commits. It also comes while the editor opens, if the cell's text is another choice
    // than the first.
    void currentItemChanged(const QString &text);

public Q_SLOTS:
    void onCurrentItemChanged(const QString &text); // emits currentItemChanged()

private:
    int m_column;
    QPointer<QAbstractListModel> m_model;
};
