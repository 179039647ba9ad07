#pragma once

#include "core/aveldoranexport.h"

#include <QtCore/QMap>
#include <QtCore/QString>
#include <QtWidgets/QStyledItemDelegate>

// Shows and edits a cell that holds a number as one of a set of labels: a unit, an interpolation.
class AVELDORAN_DATA_EXPORT ALimitSelectionDelegate : public QStyledItemDelegate
{
    Q_OBJECT

public:
    // The labels by the numbers that cells hold.
    explicit ALimitSelectionDelegate(const QMap<unsigned int, QString> &labels, QObject *parent = nullptr);
    ~ALimitSelectionDelegate() override;

    // A combo box with the labels in the order of their numbers. One in which nothing is selected, since the cell holds
    // a number without a label, commits nothing.
    QWidget *createEditor(QWidget *parent, const QStyleOptionViewItem &option, const QModelIndex &index) const override;
    void setEditorData(QWidget *editor, const QModelIndex &index) const override;
    void setModelData(QWidget *editor, QAbstractItemModel *model, const QModelIndex &index) const override;

    QString displayText(const QVariant &value, const QLocale &locale) const override; // empty without a label

private:
    QMap<unsigned int, QString> m_labels;
};
