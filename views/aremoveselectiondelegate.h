#pragma once

#include "core/aveldoranexport.h"

#include <QtWidgets/QStyledItemDelegate>

// Shows selected cells as if they were not, or with a frame in place of the highlight: for cells whose own colour has a
// meaning. A table view in a style that highlights whole rows, such as Fusion, paints that highlight below the cells:
// those with a Qt::BackgroundRole cover it, for others give the view a palette whose Highlight is its Base.
class AVELDORAN_DATA_EXPORT ARemoveSelectionDelegate : public QStyledItemDelegate
{
    Q_OBJECT

public:
    // `drawFrame`: selected cells have a frame, else they look as the others.
    explicit ARemoveSelectionDelegate(bool drawFrame, QObject *parent = nullptr);
    ~ARemoveSelectionDelegate() override;

    // The frame is two pixels wide, just inside the cell, in the painter's own pen and brush.
    void paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const override;

private:
    bool m_drawFrame;
};
