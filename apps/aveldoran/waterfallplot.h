#pragma once

#include "apps/aveldoran/plot.h"

#include <QtGui/QImage>

#include <memory>

// A picture of levels over frequency and time, in the look of Plot: a waterfall, the scale of its colours beside it,
// and above it a curve over the same frequency axis. Time runs downwards. Needs a QApplication, as Plot does.
//
// The axes come first: they decide how many pixels the waterfall has, which is then given as an image of that size.
class WaterfallPlot
{
public:
    // The picture is `width` pixels wide, and all in it is drawn to that scale.
    WaterfallPlot(const QString &title, const QString &quantity, const QString &unit, int width);
    ~WaterfallPlot();
    WaterfallPlot(const WaterfallPlot &) = delete;
    WaterfallPlot &operator=(const WaterfallPlot &) = delete;

    // The edges of the waterfall; each `end` is above its `begin`.
    void setFrequencyRange(double beginHz, double endHz);
    void setTimeRange(qint64 beginMs, qint64 endMs); // in milliseconds since the epoch; shown in UTC
    void setNumberRange(int count);                  // instead of a time: `count` sweeps, numbered from 1

    // In pixels, for the axes as they are.
    QSize waterfallSize() const;

    void setWaterfall(const QImage &image);

    // The scale beside the waterfall, which is that of the curve too. `colors` go from `lowest` to `highest`; they are
    // opaque and at least one.
    void setLevels(double lowest, double highest, const QVector<QRgb> &colors);

    // Named at its axis. The points are in ascending frequency; levels that are NaN or infinite are gaps.
    void setCurve(const QString &name, const QVector<Plot::Point> &points);

    // As Plot::save().
    bool save(const QString &fileName, QString *errorText) const;

private:
    struct Private;
    std::unique_ptr<Private> d;
};
