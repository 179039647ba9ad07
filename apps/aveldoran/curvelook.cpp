#include "apps/aveldoran/curvelook.h"

#include "apps/aveldoran/plotlook.h"

#include <iterator>

namespace {

// Dark enough for thin lines on white, and apart for protanopes, deuteranopes and tritanopes too.
constexpr QRgb kColors[] = {
    PlotLook::kTraceColor, 0xffd97706, 0xff33bbee, 0xff117733, 0xffcc79a7, 0xff303030, 0xff7c3aed};
constexpr QRgb kLimitColor = 0xffc81e1e;

constexpr double kSymbolSize = 7.0;

struct SymbolShape
{
    QwtSymbol::Style style;
    bool isFilled;
};
constexpr SymbolShape kSymbols[] = {
    {QwtSymbol::Ellipse, true},  {QwtSymbol::Rect, false},    {QwtSymbol::Triangle, true},
    {QwtSymbol::XCross, false},  {QwtSymbol::Diamond, false}, {QwtSymbol::Rect, true},
    {QwtSymbol::Ellipse, false}, {QwtSymbol::Cross, false},   {QwtSymbol::DTriangle, false}};

static_assert(std::size(kColors) == CurveLooks::kColorCount);
static_assert(std::size(kSymbols) == CurveLooks::kSymbolCount);

// In widths of the pen, a line and a gap in turn.
QVector<qreal> dashPattern(int dashes)
{
    switch (dashes) {
    case 1:
        return {6.0, 3.0};
    case 2:
        return {1.5, 2.0};
    case 3:
        return {7.0, 2.5, 1.5, 2.5};
    default:
        return {};
    }
}

} // namespace

namespace CurveLooks {

// The numbers of colours, dashes and symbols have no common divisor, so that a look comes again only after as many
// curves as there are combinations.
CurveLook ofTable(int index)
{
    return {kColors[index % kColorCount], 1.3, index % kDashCount, index % kSymbolCount};
}

CurveLook ofTrace(int index)
{
    return {kColors[index % kColorCount], 1.1, index / kColorCount % kDashCount, -1};
}

CurveLook ofLimit(int index)
{
    return {kLimitColor, 1.8, index % kDashCount, index < kDashCount ? -1 : (index - kDashCount) % kSymbolCount};
}

QPen pen(const CurveLook &look)
{
    QPen pen(look.color, look.width);
    const QVector<qreal> pattern = dashPattern(look.dashes);
    pen.setCapStyle(pattern.isEmpty() ? Qt::RoundCap : Qt::FlatCap); // round ends would fill the gaps
    pen.setJoinStyle(Qt::RoundJoin);
    if (!pattern.isEmpty())
        pen.setDashPattern(pattern);
    return pen;
}

std::unique_ptr<QwtSymbol> symbol(const CurveLook &look)
{
    if (look.symbol < 0)
        return nullptr;
    const SymbolShape &shape = kSymbols[look.symbol];
    auto result = std::make_unique<QwtSymbol>(shape.style, shape.isFilled ? look.color : QColor(Qt::white),
                                              QPen(look.color, 1.3), QSizeF(kSymbolSize, kSymbolSize).toSize());
    result->setCachePolicy(QwtSymbol::NoCache); // a cached one is magnified as a bitmap
    return result;
}

} // namespace CurveLooks
