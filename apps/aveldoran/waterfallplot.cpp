#include "apps/aveldoran/waterfallplot.h"

#include "apps/aveldoran/plotlook.h"
#include "apps/aveldoran/timescale.h"

#include <QtGui/QPainter>

#include <algorithm>
#include <cmath>
#include <qwt_color_map.h>
#include <qwt_plot.h>
#include <qwt_plot_curve.h>
#include <qwt_plot_layout.h>
#include <qwt_plot_renderer.h>
#include <qwt_scale_map.h>
#include <qwt_scale_widget.h>
#include <qwt_symbol.h>

namespace {

using namespace PlotLook;

constexpr int kCurveHeight = 230; // of the layout, with the title above it
constexpr int kWaterfallHeight = 490;
constexpr int kColorBarMargin = 10; // between it and the canvas
constexpr int kTitleSpacing = 6;
constexpr int kColorBarWidth = 14;
constexpr int kTimeDivisions = 10;
constexpr int kLevelDivisions = 8;

// Every level label has the room of this one, so that the levels have no say in how large the waterfall is.
constexpr char kWidestLevel[] = "-1000";

// The labels of a time axis, or of one of numbers if it has no ticks of its own.
class TimeScaleDraw : public ScaleDraw
{
public:
    explicit TimeScaleDraw(const TimeScale &scale)
        : m_scale(scale)
    {}

    QwtText label(double value) const override
    {
        return m_scale.ticks.isEmpty() ? ScaleDraw::label(value) : QwtText(m_scale.label(std::llround(value)));
    }

private:
    TimeScale m_scale;
};

class RampMap : public QwtColorMap
{
public:
    explicit RampMap(const QVector<QRgb> &colors)
        : m_colors(colors)
    {}

    QRgb rgb(const QwtInterval &interval, double value) const override
    {
        const int last = m_colors.size() - 1;
        const double place = (value - interval.minValue()) / interval.width() * m_colors.size();
        return m_colors[qBound(0, static_cast<int>(place), last)];
    }

    unsigned char colorIndex(const QwtInterval &, double) const override { return 0; } // of indexed maps alone

private:
    QVector<QRgb> m_colors;
};

// The waterfall itself, each of its pixels on one of the picture. Finds out on which.
class WaterfallItem : public QwtPlotItem
{
public:
    explicit WaterfallItem(const QImage &image)
        : m_image(image)
    {
        setZ(10.0);
    }

    QSize sizeInPixels() const { return m_size; }

    void draw(QPainter *painter, const QwtScaleMap &xMap, const QwtScaleMap &yMap, const QRectF &) const override
    {
        const QRectF area(QPointF(xMap.p1(), std::min(yMap.p1(), yMap.p2())),
                          QPointF(xMap.p2(), std::max(yMap.p1(), yMap.p2())));
        const QRectF exact = painter->transform().mapRect(area);
        const QRect pixels(QPoint(qRound(exact.left()), qRound(exact.top())),
                           QPoint(qRound(exact.right()) - 1, qRound(exact.bottom()) - 1));
        m_size = pixels.size();
        if (m_image.isNull())
            return;
        painter->save();
        painter->resetTransform();
        painter->drawImage(pixels, m_image);
        painter->restore();
    }

private:
    QImage m_image;
    mutable QSize m_size;
};

} // namespace

struct WaterfallPlot::Private
{
    QString title;
    QString quantity;
    QString unit;
    double magnification = 1.0;
    double beginHz = 0.0;
    double endHz = 1.0;
    qint64 beginMs = 0;
    qint64 endMs = 0;
    int count = 1; // of sweeps, if there is no time
    double lowest = 0.0;
    double highest = 1.0;
    QVector<QRgb> colors = {qRgb(0, 0, 0)};
    QString curveName;
    QVector<Plot::Point> curve;
    QImage waterfall;

    bool hasTime() const { return beginMs < endMs; }
    FrequencyUnit frequencyUnit() const { return unitFor(std::max(std::fabs(beginHz), std::fabs(endHz))); }

    void dressUpper(QwtPlot *plot) const;
    void dressLower(QwtPlot *plot) const;
    void setTimeAxis(QwtPlot *plot) const;
    void setLevelAxis(QwtPlot *plot, int axis, const QString &name) const;
    QImage draw(QSize *waterfallSize) const;
};

// The curve. It has no labels at its frequency axis, which stand below the waterfall.
void WaterfallPlot::Private::dressUpper(QwtPlot *plot) const
{
    dress(plot);
    plot->setTitle(PlotLook::title(title));
    addGrid(plot);
    setLinearFrequencyAxis(plot, beginHz, endHz, frequencyUnit());
    plot->enableAxis(QwtPlot::xBottom, false);
    setLevelAxis(plot, QwtPlot::yLeft, curveName);

    const double hertzPerUnit = frequencyUnit().hertz;
    for (int i = 0; i < curve.size();) {
        QVector<QPointF> samples;
        for (; i < curve.size() && std::isfinite(curve[i].level); ++i)
            samples += QPointF(curve[i].frequencyHz / hertzPerUnit, curve[i].level);
        while (i < curve.size() && !std::isfinite(curve[i].level))
            ++i;
        if (samples.isEmpty())
            continue;
        auto *item = new QwtPlotCurve; // the plot's own, like all items
        item->setSamples(samples);
        item->setPen(QColor(kTraceColor), 1.1);
        item->setRenderHint(QwtPlotItem::RenderAntialiased);
        item->setZ(20.0);
        if (samples.size() == 1)
            item->setSymbol(new QwtSymbol(QwtSymbol::Ellipse, QColor(kTraceColor), Qt::NoPen, QSize(5, 5)));
        item->attach(plot);
    }
}

void WaterfallPlot::Private::dressLower(QwtPlot *plot) const
{
    dress(plot);
    setLinearFrequencyAxis(plot, beginHz, endHz, frequencyUnit());
    setTimeAxis(plot);
    plot->enableAxis(QwtPlot::yRight);
    plot->setAxisFont(QwtPlot::yRight, textFont(kTextPoints, false));
    plot->setAxisScaleDraw(QwtPlot::yRight, new ScaleDraw);
    setLevelAxis(plot, QwtPlot::yRight, quantity);
    QwtScaleWidget *scale = plot->axisWidget(QwtPlot::yRight);
    scale->setMargin(kColorBarMargin);
    scale->setColorBarEnabled(true);
    scale->setColorBarWidth(kColorBarWidth);
    scale->setColorMap(QwtInterval(lowest, highest), new RampMap(colors)); // the widget's own
}

void WaterfallPlot::Private::setTimeAxis(QwtPlot *plot) const
{
    if (!hasTime()) {
        plot->setAxisTitle(QwtPlot::yLeft, axisTitle(QStringLiteral("Sweep"), {}));
        plot->setAxisMaxMinor(QwtPlot::yLeft, 0);
        plot->setAxisScale(QwtPlot::yLeft, count + 0.5, 0.5, std::max(1.0, niceStep(count, kTimeDivisions)));
        return;
    }
    const TimeScale scale = timeScale(beginMs, endMs, kTimeDivisions);
    QList<double> ticks;
    for (const qint64 tick : scale.ticks)
        ticks += static_cast<double>(tick);
    plot->setAxisScaleDraw(QwtPlot::yLeft, new TimeScaleDraw(scale));
    plot->setAxisTitle(QwtPlot::yLeft, axisTitle(scale.title, {}));
    plot->setAxisScaleDiv(QwtPlot::yLeft,
                          QwtScaleDiv(static_cast<double>(endMs), static_cast<double>(beginMs), {}, {}, ticks));
}

void WaterfallPlot::Private::setLevelAxis(QwtPlot *plot, int axis, const QString &name) const
{
    plot->setAxisTitle(axis, axisTitle(name, unit));
    plot->setAxisMaxMinor(axis, 5);
    plot->setAxisScale(axis, lowest, highest, niceStep(highest - lowest, kLevelDivisions));
}

namespace {

// Of the labels and ticks beside the canvas.
double extentOf(const QwtPlot &plot, int axis)
{
    return plot.axisScaleDraw(axis)->extent(plot.axisFont(axis));
}

} // namespace

QImage WaterfallPlot::Private::draw(QSize *waterfallSize) const
{
    QwtPlot upper;
    QwtPlot lower;
    dressUpper(&upper);
    dressLower(&lower);
    auto *item = new WaterfallItem(waterfall);
    item->attach(&lower);

    // The canvases stand exactly one above the other.
    const QFontMetricsF metrics(textFont(kTextPoints, false));
    const double levelExtent = extentOf(upper, QwtPlot::yLeft) -
                               upper.axisScaleDraw(QwtPlot::yLeft)->maxLabelWidth(upper.axisFont(QwtPlot::yLeft)) +
                               metrics.horizontalAdvance(QLatin1String(kWidestLevel));
    const double leftExtent = std::max(extentOf(lower, QwtPlot::yLeft), levelExtent);
    upper.axisScaleDraw(QwtPlot::yLeft)->setMinimumExtent(leftExtent);
    lower.axisScaleDraw(QwtPlot::yLeft)->setMinimumExtent(leftExtent);
    lower.axisScaleDraw(QwtPlot::yRight)->setMinimumExtent(levelExtent);
    upper.resize(kLayoutWidth, kCurveHeight);
    lower.resize(kLayoutWidth, kWaterfallHeight);
    upper.updateAxes();
    lower.updateAxes();
    for (QwtScaleWidget *scale : {upper.axisWidget(QwtPlot::yLeft), lower.axisWidget(QwtPlot::yLeft)})
        scale->setSpacing(kTitleSpacing);
    upper.updateLayout();
    lower.updateLayout();
    const QRectF above = upper.plotLayout()->canvasRect();
    const QRectF below = lower.plotLayout()->canvasRect();
    QMargins margins = upper.contentsMargins();
    margins += QMargins(qRound(below.left() - above.left()), 0, qRound(above.right() - below.right()), 0);
    margins.setBottom(0);
    upper.setContentsMargins(margins);

    QImage image = blankPicture({kLayoutWidth, kCurveHeight + kWaterfallHeight}, magnification);
    const double border = kCurveHeight * magnification;
    QPainter painter(&image);
    QwtPlotRenderer().render(&upper, &painter, QRectF(0, 0, image.width(), border));
    QwtPlotRenderer().render(&lower, &painter, QRectF(0, border, image.width(), image.height() - border));
    painter.end();
    *waterfallSize = item->sizeInPixels();
    return image;
}

WaterfallPlot::WaterfallPlot(const QString &title, const QString &quantity, const QString &unit, int width)
    : d(std::make_unique<Private>())
{
    d->title = title;
    d->quantity = quantity;
    d->unit = unit;
    d->magnification = static_cast<double>(width) / kLayoutWidth;
}

WaterfallPlot::~WaterfallPlot() = default;

void WaterfallPlot::setFrequencyRange(double beginHz, double endHz)
{
    d->beginHz = beginHz;
    d->endHz = endHz;
}

void WaterfallPlot::setTimeRange(qint64 beginMs, qint64 endMs)
{
    d->beginMs = beginMs;
    d->endMs = endMs;
}

void WaterfallPlot::setNumberRange(int count)
{
    d->beginMs = d->endMs = 0;
    d->count = count;
}

QSize WaterfallPlot::waterfallSize() const
{
    QSize size;
    d->draw(&size);
    return size;
}

void WaterfallPlot::setWaterfall(const QImage &image)
{
    d->waterfall = image;
}

void WaterfallPlot::setLevels(double lowest, double highest, const QVector<QRgb> &colors)
{
    d->lowest = lowest;
    d->highest = highest;
    d->colors = colors;
}

void WaterfallPlot::setCurve(const QString &name, const QVector<Plot::Point> &points)
{
    d->curveName = name;
    d->curve = points;
}

bool WaterfallPlot::save(const QString &fileName, QString *errorText) const
{
    QSize size;
    return savePicture(d->draw(&size), fileName, errorText);
}
