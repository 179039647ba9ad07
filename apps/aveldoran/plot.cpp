#include "apps/aveldoran/plot.h"

#include "apps/aveldoran/curvelook.h"
#include "apps/aveldoran/labelplacement.h"
#include "apps/aveldoran/logfrequencyaxis.h"
#include "apps/aveldoran/plotlegend.h"
#include "apps/aveldoran/plotlook.h"

#include <QtCore/QLineF>
#include <QtGui/QImage>
#include <QtGui/QPainter>

#include <algorithm>
#include <cmath>
#include <limits>
#include <qwt_clipper.h>
#include <qwt_plot.h>
#include <qwt_plot_curve.h>
#include <qwt_plot_layout.h>
#include <qwt_plot_renderer.h>
#include <qwt_scale_map.h>
#include <qwt_symbol.h>
#include <qwt_text.h>

namespace {

using namespace PlotLook;

constexpr int kLayoutHeight = 560;
constexpr int kLabelPixels = 11; // of the layout

constexpr double kSymbolSize = 8.0;
constexpr double kSymbolInterval = 90.0; // of curves that aren't tables
constexpr double kLabelGap = 4.0;        // between label, frame and leader
constexpr double kElbow = 14.0;          // height of the slanted part of a leader

constexpr QRgb kMarkerColor = 0xff8a1538;
constexpr QRgb kLeaderColor = 0xffa0a0a0;

using Points = QVector<Plot::Point>;

struct Marker
{
    double frequencyHz;
    double level;
    QString label;
    Plot::MarkerSide side;
};

struct Curve
{
    QString name;
    Points points;
    Plot::CurveRole role;
    QColor color; // may be invalid
};

struct Range
{
    double begin = std::numeric_limits<double>::infinity();
    double end = -std::numeric_limits<double>::infinity();

    bool isEmpty() const { return !(begin < end); }
    void include(double value)
    {
        begin = std::min(begin, value);
        end = std::max(end, value);
    }
};

QFont labelFont()
{
    return layoutFont(kLabelPixels);
}

// A curve whose dashes go on from point to point, where the base class starts them anew. It is drawn in pieces, since
// the cost of one grows with the square of its points.
class LineItem : public QwtPlotCurve
{
protected:
    void drawLines(QPainter *painter, const QwtScaleMap &xMap, const QwtScaleMap &yMap, const QRectF &canvas, int from,
                   int to) const override
    {
        constexpr int kPiece = 64;
        QPolygonF line;
        for (int i = from; i <= to; ++i)
            line += QPointF(xMap.transform(sample(i).x()), yMap.transform(sample(i).y()));
        const double outside = 2 * pen().widthF();
        line = QwtClipper::clipPolygonF(canvas.adjusted(-outside, -outside, outside, outside), line);
        QPen dashes = pen();
        double length = 0.0;
        for (int begin = 0; begin + 1 < line.size(); begin += kPiece) {
            const int count = std::min(kPiece + 1, line.size() - begin);
            if (dashes.style() != Qt::SolidLine)
                dashes.setDashOffset(length / dashes.widthF());
            painter->setPen(dashes);
            painter->drawPolyline(line.constData() + begin, count);
            for (int i = begin + 1; i < begin + count; ++i)
                length += QLineF(line[i - 1], line[i]).length();
        }
    }
};

// The symbols of a curve, where they don't cover each other.
class SymbolItem : public QwtPlotItem
{
public:
    SymbolItem(const CurveLook &look, const QVector<QPointF> &places, double distance)
        : m_symbol(CurveLooks::symbol(look))
        , m_places(places)
        , m_distance(distance)
    {}

    void draw(QPainter *painter, const QwtScaleMap &xMap, const QwtScaleMap &yMap, const QRectF &canvas) const override
    {
        painter->setRenderHint(QPainter::Antialiasing);
        const QRectF seen = canvas.adjusted(-kSymbolSize, -kSymbolSize, kSymbolSize, kSymbolSize);
        QVector<QPointF> drawn;
        for (const QPointF &each : m_places) {
            const QPointF place(xMap.transform(each.x()), yMap.transform(each.y()));
            if (seen.contains(place) && (drawn.isEmpty() || QLineF(drawn.constLast(), place).length() >= m_distance))
                drawn += place;
        }
        m_symbol->drawSymbols(painter, drawn);
    }

private:
    std::unique_ptr<QwtSymbol> m_symbol;
    QVector<QPointF> m_places;
    double m_distance; // in the layout
};

// The markers with their labels. It is drawn over all else.
class MarkerItem : public QwtPlotItem
{
public:
    MarkerItem(const QVector<Marker> &markers, double hertzPerUnit)
        : m_markers(markers)
        , m_hertzPerUnit(hertzPerUnit)
    {
        setZ(100.0);
    }

    // What the labels take of the canvas, at its top.
    double bandHeight() const
    {
        double widest = 0.0;
        for (const Marker &marker : m_markers)
            widest = std::max(widest, metrics().horizontalAdvance(marker.label));
        return widest > 0.0 ? widest + 2 * kLabelGap + kElbow : 0.0;
    }

    void draw(QPainter *painter, const QwtScaleMap &xMap, const QwtScaleMap &yMap, const QRectF &canvas) const override
    {
        painter->setRenderHint(QPainter::Antialiasing);
        QVector<QPointF> points;
        for (const Marker &marker : m_markers)
            points += QPointF(xMap.transform(marker.frequencyHz / m_hertzPerUnit), yMap.transform(marker.level));
        drawLabels(painter, points, canvas);
        for (int i = 0; i < points.size(); ++i)
            drawSymbol(painter, points[i], m_markers[i].side == Plot::AbovePoint ? -kSymbolSize : kSymbolSize);
    }

private:
    static QFontMetricsF metrics() { return QFontMetricsF(labelFont()); }

    void drawLabels(QPainter *painter, const QVector<QPointF> &points, const QRectF &canvas) const
    {
        const double lineHeight = metrics().height();
        const double bandEnd = canvas.top() + bandHeight() - kElbow;
        const int room = static_cast<int>((canvas.width() - 2 * kLabelGap) / lineHeight);
        QVector<int> order;
        for (int i = 0; i < points.size() && order.size() < room; ++i) {
            if (!m_markers[i].label.isEmpty())
                order += i;
        }
        std::stable_sort(order.begin(), order.end(), [&points](int a, int b) { return points[a].x() < points[b].x(); });
        QVector<double> wanted;
        for (const int i : qAsConst(order))
            wanted += points[i].x();
        const double margin = kLabelGap + lineHeight / 2;
        const QVector<double> places = placeLabels(wanted, lineHeight, canvas.left() + margin, canvas.right() - margin);

        painter->setFont(labelFont());
        for (int i = 0; i < order.size(); ++i) {
            const QPointF &point = points[order[i]];
            const QPointF foot(places[i], bandEnd);
            painter->setPen(QPen(QColor(kLeaderColor), 0.8));
            const QPointF leader[] = {foot, {point.x(), bandEnd + kElbow}, {point.x(), point.y() - kSymbolSize}};
            painter->drawPolyline(leader, 3);
            painter->setPen(QColor(kMarkerColor));
            painter->save();
            painter->translate(foot.x(), foot.y() - kLabelGap);
            painter->rotate(-90.0);
            const QString &label = m_markers[order[i]].label;
            painter->fillRect(QRectF(-1.0, -lineHeight / 2, metrics().horizontalAdvance(label) + 2.0, lineHeight),
                              Qt::white); // no grid behind the text
            painter->drawText(QPointF(0.0, metrics().ascent() / 2 - metrics().descent() / 2), label);
            painter->restore();
        }
    }

    static void drawSymbol(QPainter *painter, const QPointF &point, double height)
    {
        painter->setPen(QPen(Qt::white, 0.8));
        painter->setBrush(QColor(kMarkerColor));
        const QPointF triangle[] = {point, point + QPointF(-kSymbolSize / 2, height),
                                    point + QPointF(kSymbolSize / 2, height)};
        painter->drawPolygon(triangle, 3);
    }

    QVector<Marker> m_markers;
    double m_hertzPerUnit;
};

} // namespace

struct Plot::Private
{
    QString title;
    QString quantity;
    QString unit;
    FrequencyScale scale = LinearFrequency;
    Range frequencies; // as set
    QVector<Curve> curves;
    QVector<Marker> markers;

    bool isShown(const Point &point) const
    {
        return std::isfinite(point.level) && std::isfinite(point.frequencyHz) &&
               (scale == LinearFrequency || point.frequencyHz > 0.0);
    }

    Range frequencyRange() const;
    Range levelRange(const Range &shown) const;
    Points thinned(const Points &points, const Range &shown) const;
    Points bent(const Points &points, const Range &shown) const;

    QVector<CurveLook> looks() const;
    PlotLegend legend() const;
    void addCurve(QwtPlot *plot, const Curve &curve, const CurveLook &look, const Range &shown,
                  double hertzPerUnit) const;
    void setLevelAxis(QwtPlot *plot, const Range &shown, double band) const;
};

// Never empty.
Range Plot::Private::frequencyRange() const
{
    Range range = frequencies;
    if (range.isEmpty() || (scale == LogarithmicFrequency && range.begin <= 0.0)) {
        range = Range();
        for (const Curve &curve : curves) {
            for (const Point &point : curve.points) {
                if (isShown(point))
                    range.include(point.frequencyHz);
            }
        }
    }
    if (range.begin > range.end)
        return {1e6, 1e9};
    if (range.begin == range.end)
        return scale == LogarithmicFrequency ? Range{range.begin / 2, range.end * 2}
                                             : Range{range.begin - 1.0, range.end + 1.0};
    const bool hasTable =
        std::any_of(curves.begin(), curves.end(), [](const Curve &curve) { return curve.role == TableCurve; });
    if (hasTable && frequencies.isEmpty()) { // room for the points at the ends
        constexpr double kMargin = 0.015;
        if (scale == LogarithmicFrequency) {
            const double factor = std::pow(range.end / range.begin, kMargin);
            return {range.begin / factor, range.end * factor};
        }
        const double margin = (range.end - range.begin) * kMargin;
        return {range.begin - margin, range.end + margin};
    }
    return range;
}

Range Plot::Private::levelRange(const Range &shown) const
{
    Range range;
    for (const Curve &curve : curves) {
        for (const Point &point : curve.points) {
            if (isShown(point) && point.frequencyHz >= shown.begin && point.frequencyHz <= shown.end)
                range.include(point.level);
        }
    }
    for (const Marker &marker : markers)
        range.include(marker.level);
    if (range.begin > range.end)
        return {0.0, 1.0};
    if (range.begin == range.end) {
        const double margin = std::max(1.0, std::fabs(range.begin) / 10);
        return {range.begin - margin, range.end + margin};
    }
    return range;
}

// Of each column of the picture the first, lowest, highest and last point: the line through them covers what the line
// through all of them would.
Points Plot::Private::thinned(const Points &points, const Range &shown) const
{
    const int columns = pictureSize().width();
    if (points.size() <= 8 * columns)
        return points;
    const auto place = [this](double hertz) { return scale == LinearFrequency ? hertz : std::log(hertz); };
    const double begin = place(shown.begin);
    const double columnsPerPlace = columns / (place(shown.end) - begin);
    const auto columnOf = [&](const Point &point) {
        return std::floor(qBound(-1.0, (place(point.frequencyHz) - begin) * columnsPerPlace, columns + 1.0));
    };

    Points kept;
    for (int first = 0; first < points.size();) {
        const double column = columnOf(points[first]);
        int lowest = first;
        int highest = first;
        int behind = first + 1;
        for (; behind < points.size() && columnOf(points[behind]) == column; ++behind) {
            lowest = points[behind].level < points[lowest].level ? behind : lowest;
            highest = points[behind].level > points[highest].level ? behind : highest;
        }
        int chosen[] = {first, lowest, highest, behind - 1};
        std::sort(std::begin(chosen), std::end(chosen));
        const int *end = std::unique(std::begin(chosen), std::end(chosen));
        for (const int *index = std::begin(chosen); index != end; ++index)
            kept += points[*index];
        first = behind;
    }
    return kept;
}

// A logarithmic axis bends what is straight over frequency: it is drawn through a point in each column.
Points Plot::Private::bent(const Points &points, const Range &shown) const
{
    if (scale == LinearFrequency)
        return points;
    const double columnWidth = std::log(shown.end / shown.begin) / pictureSize().width();
    Points bent;
    for (int i = 0; i < points.size(); ++i) {
        bent += points[i];
        const Point &below = points[i];
        const Point &above = points[std::min(i + 1, points.size() - 1)];
        const double begin = std::log(std::max(below.frequencyHz, shown.begin));
        const double end = std::log(std::min(above.frequencyHz, shown.end));
        const int columns = below.level == above.level ? 0 : static_cast<int>(std::ceil((end - begin) / columnWidth));
        for (int column = 1; column < columns; ++column) {
            const double hertz = std::exp(begin + (end - begin) * column / columns);
            const double position = (hertz - below.frequencyHz) / (above.frequencyHz - below.frequencyHz);
            bent.append({hertz, below.level * (1.0 - position) + above.level * position});
        }
    }
    return bent;
}

// Of each curve.
QVector<CurveLook> Plot::Private::looks() const
{
    int traces = 0;
    int tables = 0;
    int limits = 0;
    QVector<CurveLook> looks;
    for (const Curve &curve : curves) {
        looks += curve.role == LimitCurve   ? CurveLooks::ofLimit(limits++)
                 : curve.role == TableCurve ? CurveLooks::ofTable(tables++)
                                            : CurveLooks::ofTrace(traces++);
        if (curve.color.isValid())
            looks.last().color = curve.color;
    }
    return looks;
}

// Of the curves with a name, of which something is to be seen.
PlotLegend Plot::Private::legend() const
{
    PlotLegend legend;
    const QVector<CurveLook> all = looks();
    for (int i = 0; i < curves.size(); ++i) {
        const Points &points = curves[i].points;
        if (!curves[i].name.isEmpty() &&
            std::any_of(points.begin(), points.end(), [this](const Point &point) { return isShown(point); }))
            legend.add(curves[i].name, all[i]);
    }
    return legend;
}

// A gap divides it into several items.
void Plot::Private::addCurve(QwtPlot *plot, const Curve &curve, const CurveLook &look, const Range &shown,
                             double hertzPerUnit) const
{
    // Dashes over a whole line let both be seen where curves coincide.
    const double z = (curve.role == LimitCurve ? 30.0 : 20.0) + 0.1 * look.dashes;
    const auto placesOf = [hertzPerUnit](const Points &points) {
        QVector<QPointF> places;
        places.reserve(points.size());
        for (const Point &point : points)
            places += QPointF(point.frequencyHz / hertzPerUnit, point.level);
        return places;
    };
    for (int i = 0; i < curve.points.size();) {
        Points stretch;
        for (; i < curve.points.size() && isShown(curve.points[i]); ++i)
            stretch += curve.points[i];
        while (i < curve.points.size() && !isShown(curve.points[i]))
            ++i;
        if (stretch.isEmpty())
            continue;

        const bool isPlainTrace = curve.role == TraceCurve && look.dashes == 0;
        QwtPlotCurve *line = isPlainTrace ? new QwtPlotCurve : new LineItem; // the plot's own, like all items
        line->setSamples(placesOf(thinned(curve.role == TableCurve ? bent(stretch, shown) : stretch, shown)));
        line->setPen(CurveLooks::pen(look));
        line->setRenderHint(QwtPlotItem::RenderAntialiased);
        line->setZ(z);
        if (stretch.size() == 1 && look.symbol < 0)
            line->setSymbol(new QwtSymbol(QwtSymbol::Ellipse, look.color, QPen(Qt::white, 0.6), QSize(6, 6)));
        line->attach(plot);
        if (look.symbol >= 0) {
            const double distance = curve.role == TableCurve ? kSymbolSize : kSymbolInterval;
            auto *symbols = new SymbolItem(look, placesOf(stretch), distance);
            symbols->setZ(z + 1.0);
            symbols->attach(plot);
        }
    }
}

// `band` is the height in the layout that stays free above the curves.
void Plot::Private::setLevelAxis(QwtPlot *plot, const Range &shown, double band) const
{
    plot->setAxisTitle(QwtPlot::yLeft, axisTitle(quantity, unit));
    plot->setAxisMaxMinor(QwtPlot::yLeft, 5);
    const Range levels = levelRange(shown);
    const double step = niceStep(levels.end - levels.begin, 8);
    const double symbol = (levels.end - levels.begin) * 0.03; // that much room has a symbol beyond the levels
    const double lower = std::min(std::floor(levels.begin / step) * step, levels.begin - symbol);
    double upper = std::max(std::ceil(levels.end / step) * step, levels.end + symbol);
    plot->setAxisScale(QwtPlot::yLeft, lower, upper, step);
    if (band <= 0.0)
        return;
    // How high the canvas is shows in a layout; the labels' band then takes its share of the scale.
    plot->updateLayout();
    const double height = plot->plotLayout()->canvasRect().height();
    const double share = std::min((band + kSymbolSize) / std::max(height, 1.0), 0.7);
    upper = lower + (levels.end - lower) / (1.0 - share);
    plot->setAxisScale(QwtPlot::yLeft, lower, upper, niceStep(upper - lower, 10));
}

Plot::Plot(const QString &title, const QString &quantity, const QString &unit)
    : d(std::make_unique<Private>())
{
    d->title = title;
    d->quantity = quantity;
    d->unit = unit;
}

Plot::~Plot() = default;

void Plot::setFrequencyScale(FrequencyScale scale)
{
    d->scale = scale;
}

void Plot::setFrequencyRange(double beginHz, double endHz)
{
    d->frequencies = {beginHz, endHz};
}

void Plot::addCurve(const QString &name, const QVector<Point> &points, CurveRole role, const QColor &color)
{
    d->curves.append({name, points, role, color});
}

void Plot::addMarker(double frequencyHz, double level, const QString &label, MarkerSide side)
{
    if (d->isShown({frequencyHz, level}))
        d->markers.append({frequencyHz, level, label, side});
}

QSize Plot::pictureSize()
{
    return QSizeF(kLayoutWidth * kMagnification, kLayoutHeight * kMagnification).toSize();
}

bool Plot::save(const QString &fileName, QString *errorText) const
{
    QwtPlot plot;
    dress(&plot);
    plot.setTitle(title(d->title));
    addGrid(&plot);

    const Range shown = d->frequencyRange();
    const bool isLogarithmic = d->scale == LogarithmicFrequency;
    const FrequencyUnit frequencyUnit = isLogarithmic ? FrequencyUnit{"Hz", 1.0} : unitFor(shown.end);
    plot.resize(kLayoutWidth, kLayoutHeight);
    const QVector<CurveLook> looks = d->looks();
    for (int i = 0; i < looks.size(); ++i)
        d->addCurve(&plot, d->curves[i], looks[i], shown, frequencyUnit.hertz);
    auto *markers = new MarkerItem(d->markers, frequencyUnit.hertz);
    markers->attach(&plot);
    if (isLogarithmic)
        setLogarithmicFrequencyAxis(&plot, shown.begin, shown.end);
    else
        setLinearFrequencyAxis(&plot, shown.begin, shown.end, frequencyUnit);
    d->setLevelAxis(&plot, shown, markers->bandHeight());
    plot.updateAxes();

    const PlotLegend legend = d->legend();
    QImage image = blankPicture({kLayoutWidth, kLayoutHeight + qRound(legend.height())}, kMagnification);
    QPainter painter(&image);
    QwtPlotRenderer().render(&plot, &painter, QRectF(QPointF(), pictureSize()));
    painter.scale(kMagnification, kMagnification);
    legend.draw(&painter, {0.0, kLayoutHeight});
    painter.end();

    return savePicture(image, fileName, errorText);
}
