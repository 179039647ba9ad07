#pragma once

#include "core/aveldoranexport.h"

#include <QtWidgets/QStyledItemDelegate>

// Shows selected cells as if they were not, or with a frame in place of the highlight: for cells whose own colour has a
// meaning.
class AVELDORAN_DATA_EXPORT ARemoveSelectionDelegate : public QStyledItemDelegate
{
    Q_OBJECT

public:
    explicit ARemoveSelectionDelegate(bool drawFrame, QObject *parent = nullptr);
    ~ARemoveSelectionDelegate() override;

    // The frame is two pixels wide, just inside the cell, in the painter's own pen and brush.
    void paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const override;

private:
    bool m_drawFrame;
};
