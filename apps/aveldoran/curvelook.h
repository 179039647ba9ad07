#pragma once

#include <QtGui/QColor>
#include <QtGui/QPen>

#include <memory>
#include <qwt_symbol.h>

// How curves are drawn so that a reader finds each in the legend: by colour, by dashes and by symbol, since a picture
// is also printed in grey and seen by eyes that don't tell all colours apart.
struct CurveLook
{
    QColor color;
    double width = 1.0; // of the line, in the layout
    int dashes = 0;     // of kDashCount; 0 is a whole line
    int symbol = -1;    // of kSymbolCount; -1 is none
};

namespace CurveLooks {

constexpr int kColorCount = 7;
constexpr int kDashCount = 4;
constexpr int kSymbolCount = 9;

// The looks of the first, second ... curve of a picture. Of 36 tables, and of 40 limits, no two have the same dashes
// and symbol, whatever their colours.
CurveLook ofTable(int index);
CurveLook ofTrace(int index); // dashed from the second round of colours on
CurveLook ofLimit(int index);

QPen pen(const CurveLook &look);
std::unique_ptr<QwtSymbol> symbol(const CurveLook &look); // null if it has none

} // namespace CurveLooks
