#include "apps/aveldoran/logfrequencyaxis.h"

#include <cmath>
#include <qwt_plot.h>
#include <qwt_scale_engine.h>

namespace PlotLook {

namespace {

constexpr double kNear = 1e-9; // relative, of values that are meant to be equal

// An edge that is a tick may lie beside it by rounding. The tick is then put there, since none beyond an edge is drawn.
struct Ticks
{
    QList<double> numbered;
    QList<double> others;
};

constexpr bool isOneOf(int digit, std::initializer_list<int> digits)
{
    for (const int each : digits) {
        if (digit == each)
            return true;
    }
    return false;
}

Ticks decadeTicks(double begin, double end)
{
    constexpr double kAllDigits = 1.5; // up to so many decades there is room for 1, 2, 3, 5 and 7
    constexpr double kThreeDigits = 4.0;
    constexpr double kEachDecade = 12.0;
    const double decades = std::log10(end / begin);
    const auto isNumbered = [decades](int exponent, int digit) {
        if (decades <= kAllDigits)
            return isOneOf(digit, {1, 2, 3, 5, 7});
        if (decades <= kThreeDigits)
            return isOneOf(digit, {1, 2, 5});
        return digit == 1 && (decades <= kEachDecade || exponent % 3 == 0);
    };
    Ticks ticks;
    const auto firstDecade = static_cast<int>(std::floor(std::log10(begin)));
    const auto lastDecade = static_cast<int>(std::floor(std::log10(end)));
    for (int exponent = firstDecade; exponent <= lastDecade + 1; ++exponent) {
        for (int digit = 1; digit < 10; ++digit) {
            const double tick = digit * std::pow(10.0, exponent);
            if (tick >= begin * (1 - kNear) && tick <= end * (1 + kNear))
                (isNumbered(exponent, digit) ? ticks.numbered : ticks.others) += qBound(begin, tick, end);
        }
    }
    return ticks;
}

Ticks evenTicks(double begin, double end)
{
    constexpr int kDivisions = 8;
    constexpr int kFewDivisions = 5; // where the numbers are long
    constexpr int kParts = 5;
    const bool isNarrow = end - begin < 1e-4 * end;
    const double step = niceStep(end - begin, isNarrow ? kFewDivisions : kDivisions);
    const double first = std::floor(begin / step);
    const double slack = step * kNear;
    Ticks ticks;
    for (int i = 0; i <= (kDivisions + 2) * kParts; ++i) {
        const double tick = (first + static_cast<double>(i) / kParts) * step;
        if (tick >= begin - slack && tick <= end + slack)
            (i % kParts == 0 ? ticks.numbered : ticks.others) += qBound(begin, tick, end);
    }
    return ticks;
}

} // namespace

QwtText FrequencyScaleDraw::label(double value) const
{
    constexpr FrequencyUnit kUnits[] = {{"THz", 1e12}, {"GHz", 1e9}, {"MHz", 1e6}, {"kHz", 1e3}};
    FrequencyUnit unit = {"Hz", 1.0};
    for (const FrequencyUnit &each : kUnits) {
        if (value >= each.hertz * (1 - kNear)) {
            unit = each;
            break;
        }
    }
    return {QStringLiteral("%1 %2").arg(tickNumber(value / unit.hertz, *this), QLatin1String(unit.name))};
}

void setLogarithmicFrequencyAxis(QwtPlot *plot, double beginHz, double endHz)
{
    constexpr double kNarrow = 4.0; // less than that has too few ticks of a decade
    plot->setAxisTitle(QwtPlot::xBottom, axisTitle(QStringLiteral("Frequency"), {}));
    plot->setAxisScaleDraw(QwtPlot::xBottom, new FrequencyScaleDraw);
    plot->setAxisScaleEngine(QwtPlot::xBottom, new QwtLogScaleEngine);
    const Ticks ticks = endHz / beginHz < kNarrow ? evenTicks(beginHz, endHz) : decadeTicks(beginHz, endHz);
    plot->setAxisScaleDiv(QwtPlot::xBottom, QwtScaleDiv(beginHz, endHz, ticks.others, {}, ticks.numbered));
}

} // namespace PlotLook
