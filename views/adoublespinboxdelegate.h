#pragma once

#include "core/aveldoranexport.h"

#include <QtWidgets/QItemDelegate>

// Edits a cell that holds a frequency in megahertz as a number.
class AVELDORAN_DATA_EXPORT ADoubleSpinBoxDelegate : public QItemDelegate
{
    Q_OBJECT

public:
    explicit ADoubleSpinBoxDelegate(QObject *parent = nullptr);
    ~ADoubleSpinBoxDelegate() override;

    // A spin box from 0 to 20,000 MHz with three decimals, which commits a double. It fills the cell. What the cell
    // holds beyond that range opens as the next number in it, and no number (NaN) as the maximum: Return then commits
    // that.
    QWidget *createEditor(QWidget *parent, const QStyleOptionViewItem &option, const QModelIndex &index) const override;
    void setEditorData(QWidget *editor, const QModelIndex &index) const override;
    void setModelData(QWidget *editor, QAbstractItemModel *model, const QModelIndex &index) const override;
    void updateEditorGeometry(QWidget *editor, const QStyleOptionViewItem &option,
                              const QModelIndex &index) const override;
};
