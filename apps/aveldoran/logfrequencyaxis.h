#pragma once

#include "apps/aveldoran/plotlook.h"

namespace PlotLook {

// Labels of frequencies in hertz, each with the unit that suits it: 10 kHz, 1 MHz.
class FrequencyScaleDraw : public ScaleDraw
{
public:
    QwtText label(double value) const override;
};

// The axis at the bottom in hertz, from `beginHz` above 0 to `endHz` above that, with its title. Its ticks are 1, 2 and
// 5 of each decade, or fewer over many decades and evenly spaced ones within a narrow range.
void setLogarithmicFrequencyAxis(QwtPlot *plot, double beginHz, double endHz);

} // namespace PlotLook
