#pragma once

#include "apps/aveldoran/curvelook.h"

#include <QtCore/QPointF>
#include <QtCore/QString>
#include <QtCore/QVector>

class QPainter;

// The legend below a picture: each curve with its line and symbol, in as many columns as the names let stand side by
// side, read downwards. The picture grows by its height. Where there are more curves than it has room for, it says how
// many. Measures are those of the layout.
class PlotLegend
{
public:
    struct Cell
    {
        QString text;  // shortened in the middle if need be
        QPointF place; // of the upper left corner, in the legend
        int entry;     // -1 beside the text that tells how many are left out
    };

    static constexpr int kMostRows = 28;

    void add(const QString &name, const CurveLook &look);

    double height() const; // 0 without an entry
    QVector<Cell> cells() const;
    void draw(QPainter *painter, const QPointF &place) const;

    // A piece of the curve, of this size.
    static constexpr double kIconWidth = 44.0;
    static constexpr double kIconHeight = 18.0;
    static void drawIcon(QPainter *painter, const QPointF &place, const CurveLook &look);

private:
    struct Entry
    {
        QString name;
        CurveLook look;
    };
    struct Grid
    {
        int columns;
        int rows;
        double columnWidth;
        int shown; // entries
    };
    Grid grid() const;

    QVector<Entry> m_entries;
    double m_widest = 0.0; // name
};
