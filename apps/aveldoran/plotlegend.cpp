#include "apps/aveldoran/plotlegend.h"

#include "apps/aveldoran/plotlook.h"

#include <QtGui/QFontMetricsF>
#include <QtGui/QPainter>

#include <algorithm>
#include <cmath>

namespace {

constexpr double kSideMargin = 28.0;
constexpr double kRowHeight = PlotLegend::kIconHeight;
constexpr double kBottomMargin = 12.0;
constexpr double kIconGap = 6.0; // to the text
constexpr double kColumnGap = 24.0;

constexpr double kWidth = PlotLook::kLayoutWidth - 2 * kSideMargin;
constexpr double kWidestText = (kWidth - kColumnGap) / 2 - PlotLegend::kIconWidth - kIconGap; // two side by side

QFontMetricsF metrics()
{
    return QFontMetricsF(PlotLook::layoutFont(PlotLook::kTextPixels));
}

} // namespace

void PlotLegend::add(const QString &name, const CurveLook &look)
{
    m_entries.append({name, look});
    m_widest = std::max(m_widest, std::min(std::ceil(metrics().horizontalAdvance(name)), kWidestText));
}

PlotLegend::Grid PlotLegend::grid() const
{
    const int count = m_entries.size();
    const double columnWidth = kIconWidth + kIconGap + m_widest + kColumnGap;
    const int mostColumns = std::max(1, static_cast<int>((kWidth + kColumnGap) / columnWidth));
    const int rows = std::min((count + mostColumns - 1) / mostColumns, kMostRows);
    const int shown = count <= mostColumns * kMostRows ? count : mostColumns * kMostRows - 1;
    return {(std::min(count, shown + 1) + rows - 1) / std::max(rows, 1), rows, columnWidth, shown};
}

double PlotLegend::height() const
{
    return m_entries.isEmpty() ? 0.0 : grid().rows * kRowHeight + kBottomMargin;
}

QVector<PlotLegend::Cell> PlotLegend::cells() const
{
    QVector<Cell> cells;
    if (m_entries.isEmpty())
        return cells;
    const Grid grid = this->grid();
    const double left = (PlotLook::kLayoutWidth - grid.columns * grid.columnWidth + kColumnGap) / 2;
    const auto placeOf = [&](int index) {
        const int column = index / grid.rows;
        return QPointF(left + column * grid.columnWidth, index % grid.rows * kRowHeight);
    };
    for (int i = 0; i < grid.shown; ++i)
        cells.append({metrics().elidedText(m_entries[i].name, Qt::ElideMiddle, m_widest + 1.0), placeOf(i), i});
    if (grid.shown < m_entries.size())
        cells.append({QStringLiteral("and %1 more").arg(m_entries.size() - grid.shown), placeOf(grid.shown), -1});
    return cells;
}

void PlotLegend::draw(QPainter *painter, const QPointF &place) const
{
    painter->setFont(PlotLook::layoutFont(PlotLook::kTextPixels));
    const double baseline = (kRowHeight + metrics().ascent() - metrics().descent()) / 2;
    const QVector<Cell> all = cells();
    for (const Cell &cell : all) {
        const QPointF corner = place + cell.place;
        if (cell.entry >= 0)
            drawIcon(painter, corner, m_entries[cell.entry].look);
        painter->setPen(Qt::black);
        painter->drawText(corner + QPointF(kIconWidth + kIconGap, baseline), cell.text);
    }
}

void PlotLegend::drawIcon(QPainter *painter, const QPointF &place, const CurveLook &look)
{
    painter->setRenderHint(QPainter::Antialiasing);
    const double middle = place.y() + kIconHeight / 2;
    painter->setPen(CurveLooks::pen(look));
    painter->drawLine(QPointF(place.x(), middle), QPointF(place.x() + kIconWidth, middle));
    if (const auto symbol = CurveLooks::symbol(look))
        symbol->drawSymbol(painter, {place.x() + kIconWidth / 2, middle});
}
