#include "apps/aveldoran/plot.h"

#include "apps/folder.h"

#include <QtCore/QFile>
#include <QtGui/QImage>
#include <QtTest/QtTest>

#include <cmath>
#include <limits>
#include <memory>

Q_DECLARE_METATYPE(Plot::Point)
Q_DECLARE_METATYPE(Plot::FrequencyScale)

namespace {

using Points = QVector<Plot::Point>;

constexpr QRgb kTraceColor = 0x1f4e9e;
constexpr QRgb kSecondTraceColor = 0xd97706;
constexpr QRgb kLimitColor = 0xc81e1e;
constexpr QRgb kMarkerColor = 0x8a1538;

bool isNear(QRgb a, QRgb b)
{
    return std::abs(qRed(a) - qRed(b)) + std::abs(qGreen(a) - qGreen(b)) + std::abs(qBlue(a) - qBlue(b)) < 40;
}

// Where a colour is to be seen.
struct Extent
{
    int count = 0;
    QRect area;
};

Extent extentOf(const QImage &image, QRgb color)
{
    Extent extent;
    for (int y = 0; y < image.height(); ++y) {
        const auto *line = reinterpret_cast<const QRgb *>(image.constScanLine(y));
        for (int x = 0; x < image.width(); ++x) {
            if (isNear(line[x], color)) {
                ++extent.count;
                extent.area |= QRect(x, y, 1, 1);
            }
        }
    }
    return extent;
}

// The frame of the canvas: the longest dark lines.
QRect canvasOf(const QImage &image)
{
    QVector<int> inColumn(image.width());
    QVector<int> inRow(image.height());
    for (int y = 0; y < image.height(); ++y) {
        const auto *line = reinterpret_cast<const QRgb *>(image.constScanLine(y));
        for (int x = 0; x < image.width(); ++x) {
            const int dark = qGray(line[x]) < 100 ? 1 : 0;
            inColumn[x] += dark;
            inRow[y] += dark;
        }
    }
    QRect columns;
    for (int x = 0; x < image.width(); ++x) {
        if (inColumn[x] > image.height() / 2)
            columns |= QRect(x, 0, 1, image.height());
    }
    QRect rows;
    for (int y = 0; y < image.height(); ++y) {
        if (inRow[y] > image.width() / 2)
            rows |= QRect(0, y, image.width(), 1);
    }
    return columns & rows;
}

double relative(int value, int begin, int length)
{
    return double(value - begin) / length;
}

const Points kSlope = {{100e6, 0.0}, {200e6, 100.0}};

} // namespace

class TestPlot : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_folder = std::make_unique<Folder>(); }

    void aCurveSpansTheCanvas();
    void aLogarithmicAxisGivesEachDecadeItsWidth();
    void theRangeCutsTheCurves();
    void everySortOfCurveHasItsColor();
    void theLegendNeedsAName();
    void theLegendNamesEveryCurve();
    void curvesWithoutAPointAreNotInTheLegend();
    void gapsStayEmpty_data();
    void gapsStayEmpty();
    void tablesShowTheirPoints();
    void tablesAreLinearOverFrequency_data();
    void tablesAreLinearOverFrequency();
    void symbolsAtTheEdgesAreWhole();
    void symbolsOfManyEntriesDoNotHideTheCurve();
    void dashesGoOnOverBends();
    void limitsOfOneColourDiffer();
    void ofManyPointsThoseThatShowAreDrawn();
    void ofAFlatStretchNoPointIsDrawnTwice();
    void markersPointAtTheirPoints();
    void curvesKeepClearOfLabels();
    void manyMarkersAreDrawn();
    void markersWithoutALevelAreLeftOut();
    void degenerateInputIsDrawn_data();
    void degenerateInputIsDrawn();
    void thePictureIsForPrint();
    void aFileThatCanNotBeWrittenIsNamed();

private:
    QImage pictureOf(const Plot &plot);

    std::unique_ptr<Folder> m_folder;
};

QImage TestPlot::pictureOf(const Plot &plot)
{
    QString errorText;
    const QString file = m_folder->path("plot.png");
    if (!plot.save(file, &errorText))
        qWarning("%s", qPrintable(errorText));
    return QImage(file).convertToFormat(QImage::Format_RGB32);
}

void TestPlot::aCurveSpansTheCanvas()
{
    Plot plot("Slope", "Level", "dBm");
    plot.addCurve({}, kSlope, Plot::TraceCurve);
    const QImage image = pictureOf(plot);
    QCOMPARE(image.size(), Plot::pictureSize());
    const QRect canvas = canvasOf(image);
    QVERIFY(canvas.width() > image.width() * 8 / 10);
    QVERIFY(canvas.height() > image.height() * 7 / 10);
    const Extent curve = extentOf(image, kTraceColor);
    QVERIFY(canvas.contains(curve.area));
    QVERIFY(curve.area.width() > canvas.width() - 12);
    QVERIFY(curve.area.height() > canvas.height() * 7 / 10);
}

void TestPlot::aLogarithmicAxisGivesEachDecadeItsWidth()
{
    // A step at 10 MHz, one decade of three behind the beginning.
    const Points step = {{1e6, 0.0}, {9.99e6, 0.0}, {10.01e6, 100.0}, {1e9, 100.0}};
    double places[2] = {};
    for (const auto scale : {Plot::LinearFrequency, Plot::LogarithmicFrequency}) {
        Plot plot("Step", "Level", "dB");
        plot.setFrequencyScale(scale);
        plot.addCurve({}, step, Plot::TraceCurve);
        const QImage image = pictureOf(plot);
        const QRect canvas = canvasOf(image);
        int edge = canvas.left();
        while (edge < canvas.right() && !isNear(image.pixel(edge, canvas.center().y()), kTraceColor))
            ++edge;
        places[scale] = relative(edge, canvas.left(), canvas.width());
    }
    QVERIFY2(std::fabs(places[Plot::LinearFrequency] - 0.009) < 0.005, QByteArray::number(places[0]));
    QVERIFY2(std::fabs(places[Plot::LogarithmicFrequency] - 1.0 / 3) < 0.005, QByteArray::number(places[1]));
}

void TestPlot::theRangeCutsTheCurves()
{
    Plot plot("Slope", "Level", "dBm");
    plot.addCurve({}, kSlope, Plot::TraceCurve);
    plot.setFrequencyRange(0.0, 400e6);
    const QImage image = pictureOf(plot);
    const QRect canvas = canvasOf(image);
    const Extent curve = extentOf(image, kTraceColor);
    QVERIFY(std::fabs(relative(curve.area.left(), canvas.left(), canvas.width()) - 0.25) < 0.01);
    QVERIFY(std::fabs(relative(curve.area.right(), canvas.left(), canvas.width()) - 0.5) < 0.01);
}

void TestPlot::everySortOfCurveHasItsColor()
{
    Plot plot("Curves", "Level", "dBm");
    plot.addCurve("first", kSlope, Plot::TraceCurve);
    plot.addCurve("limit", {{100e6, 80.0}, {200e6, 80.0}}, Plot::LimitCurve);
    plot.addCurve("second", {{100e6, 50.0}, {200e6, 20.0}}, Plot::TraceCurve);
    const QImage image = pictureOf(plot);
    for (const QRgb color : {kTraceColor, kLimitColor, kSecondTraceColor})
        QVERIFY(extentOf(image, color).count > 1000);
}

void TestPlot::theLegendNeedsAName()
{
    QRect canvases[2];
    for (const bool named : {false, true}) {
        Plot plot("Slope", "Level", "dBm");
        plot.addCurve(named ? "Trace" : "", kSlope, Plot::TraceCurve);
        const QImage image = pictureOf(plot);
        canvases[named] = canvasOf(image);
        QCOMPARE(extentOf(image, kTraceColor).area.bottom() > canvases[named].bottom(), named);
        QCOMPARE(image.height() > Plot::pictureSize().height(), named);
    }
    QCOMPARE(canvases[true], canvases[false]);
}

void TestPlot::theLegendNamesEveryCurve()
{
    constexpr int kCurves = 40;
    const auto colorOf = [](int i) { return QColor::fromHsv(i % 20 * 18, 255, i < 20 ? 230 : 150); };
    Plot plot("Tables", "Gain", "dB");
    plot.setFrequencyScale(Plot::LogarithmicFrequency);
    for (int i = 0; i < kCurves; ++i)
        plot.addCurve(QStringLiteral("Cable number %1").arg(i), {{1e6, 0.0}, {1e9, -i * 1.0}}, Plot::TableCurve,
                      colorOf(i));
    const QImage image = pictureOf(plot);
    const QImage legend = image.copy(0, Plot::pictureSize().height(), image.width(), image.height());
    QVector<QRect> places;
    for (int i = 0; i < kCurves; ++i) {
        const Extent icon = extentOf(legend, colorOf(i).rgb());
        QVERIFY2(icon.count > 30 && icon.area.width() < 90 && icon.area.height() < 20, QByteArray::number(i));
        for (const QRect &other : qAsConst(places))
            QVERIFY(!other.intersects(icon.area));
        places += icon.area;
    }
    QCOMPARE(canvasOf(image.copy(QRect(QPoint(), Plot::pictureSize()))).height(), canvasOf(image).height());
}

void TestPlot::curvesWithoutAPointAreNotInTheLegend()
{
    Plot plot("Tables", "Gain", "dB");
    plot.setFrequencyScale(Plot::LogarithmicFrequency);
    plot.addCurve("empty", {}, Plot::TableCurve);
    plot.addCurve("nothing that shows", {{-1.0, 5.0}, {1e6, std::nan("")}}, Plot::TableCurve);
    QCOMPARE(pictureOf(plot).size(), Plot::pictureSize());
}

void TestPlot::gapsStayEmpty_data()
{
    QTest::addColumn<double>("level");

    QTest::newRow("NaN") << std::numeric_limits<double>::quiet_NaN();
    QTest::newRow("infinity") << std::numeric_limits<double>::infinity();
    QTest::newRow("minus infinity") << -std::numeric_limits<double>::infinity();
}

void TestPlot::gapsStayEmpty()
{
    QFETCH(double, level);
    Plot plot("Gap", "Level", "dBm");
    plot.addCurve("Trace", {{0, 1}, {1e6, 2}, {2e6, level}, {3e6, 2}, {4e6, 1}}, Plot::TraceCurve);
    const QImage image = pictureOf(plot);
    const QRect canvas = canvasOf(image);
    const auto columnIsEmpty = [&](double place) {
        const int x = canvas.left() + qRound(place * canvas.width());
        return extentOf(image.copy(x, canvas.top(), 1, canvas.height()), kTraceColor).count == 0;
    };
    QVERIFY(!columnIsEmpty(0.1));
    QVERIFY(columnIsEmpty(0.3));
    QVERIFY(columnIsEmpty(0.7));
    QVERIFY(!columnIsEmpty(0.9));
    const QImage legend = image.copy(0, canvas.bottom() + 1, image.width(), image.height() - canvas.bottom() - 1);
    QVERIFY(extentOf(legend, kTraceColor).area.width() < 90); // once
}

void TestPlot::tablesShowTheirPoints()
{
    const Points table = {{1e6, 3.0}, {10e6, 3.0}, {100e6, 3.0}};
    int counts[2] = {};
    for (const auto role : {Plot::TraceCurve, Plot::TableCurve}) {
        Plot plot("Gain", "Gain", "dB");
        plot.setFrequencyScale(Plot::LogarithmicFrequency);
        plot.addCurve({}, table, role);
        counts[role] = extentOf(pictureOf(plot), kTraceColor).area.height();
    }
    QVERIFY(counts[Plot::TableCurve] > counts[Plot::TraceCurve] + 4);
}

// On a logarithmic axis that is a bow: in the middle of three decades only 3 % of the way has been made.
void TestPlot::tablesAreLinearOverFrequency_data()
{
    QTest::addColumn<Plot::FrequencyScale>("scale");

    QTest::newRow("linear axis") << Plot::LinearFrequency;
    QTest::newRow("logarithmic axis") << Plot::LogarithmicFrequency;
}

void TestPlot::tablesAreLinearOverFrequency()
{
    QFETCH(Plot::FrequencyScale, scale);
    constexpr double kBegin = 1e6;
    constexpr double kEnd = 1e9;
    Plot plot("Gain", "Gain", "dB");
    plot.setFrequencyScale(scale);
    plot.addCurve({}, {{kBegin, -20.0}, {kEnd, 30.0}}, Plot::TableCurve);
    const QImage image = pictureOf(plot);
    const QRect curve = extentOf(image, kTraceColor).area;
    constexpr int kSymbolRadius = 6;
    const QRect ends = curve.adjusted(kSymbolRadius, kSymbolRadius, -kSymbolRadius, -kSymbolRadius);
    for (const double place : {0.1, 0.25, 0.5, 0.7, 0.8, 0.9, 0.95}) {
        const double hertz =
            scale == Plot::LinearFrequency ? kBegin + place * (kEnd - kBegin) : kBegin * std::pow(kEnd / kBegin, place);
        const double expected = ends.bottom() - (hertz - kBegin) / (kEnd - kBegin) * (ends.height() - 1);
        const int x = ends.left() + qRound(place * (ends.width() - 1));
        const QRect found = extentOf(image.copy(x, 0, 1, image.height()), kTraceColor).area;
        const QString seen = QStringLiteral("%1: %2 to %3, not %4").arg(place).arg(found.top()).arg(found.bottom());
        QVERIFY2(found.top() - 3 <= expected && expected <= found.bottom() + 3, qPrintable(seen.arg(expected)));
        QVERIFY(found.height() < 40);
    }
}

void TestPlot::symbolsAtTheEdgesAreWhole()
{
    Plot plot("Gain", "Gain", "dB");
    plot.setFrequencyScale(Plot::LogarithmicFrequency);
    plot.addCurve({}, {{1e6, 0.0}}, Plot::TableCurve);
    plot.addCurve({}, {{1e9, 10.0}}, Plot::TableCurve, QColor(kTraceColor)); // a square
    plot.addCurve({}, {{30e6, 5.0}}, Plot::TableCurve, QColor(kLimitColor)); // a triangle
    const QImage image = pictureOf(plot);
    const QRect canvas = canvasOf(image);
    QVERIFY(canvas.adjusted(4, 4, -4, -4).contains(extentOf(image, kTraceColor).area));
    const QImage left = image.copy(0, 0, canvas.center().x(), image.height());
    const Extent circle = extentOf(left, kTraceColor);
    QCOMPARE(circle.area.width(), circle.area.height());
    QVERIFY(circle.count > circle.area.width() * circle.area.height() * 0.7);
}

void TestPlot::symbolsOfManyEntriesDoNotHideTheCurve()
{
    Points table;
    for (int i = 0; i < 20000; ++i)
        table.append({1e6 + i * 1e5, i % 2 * 0.001 + (i == 10000 ? 10.0 : 0.0)});
    Plot plot("Gain", "Gain", "dB");
    plot.setFrequencyScale(Plot::LogarithmicFrequency);
    plot.addCurve({}, table, Plot::TableCurve);
    plot.addCurve({}, table, Plot::TableCurve); // with squares that are white inside
    const QImage image = pictureOf(plot);
    QVERIFY(extentOf(image, kTraceColor).area.height() > canvasOf(image).height() * 7 / 10);
    QVERIFY(image.height() == Plot::pictureSize().height());
}

// Pieces between bends and over curved parts alike.
void TestPlot::dashesGoOnOverBends()
{
    const Points table = {{1e6, 0.0}, {1e9, 10.0}};
    int counts[2] = {};
    for (int i = 0; i < 2; ++i) { // the first is whole, the second dashed
        Plot each("Gain", "Gain", "dB");
        each.setFrequencyScale(Plot::LogarithmicFrequency);
        if (i == 1)
            each.addCurve({}, {}, Plot::TableCurve);
        each.addCurve({}, table, Plot::TableCurve, QColor(kTraceColor));
        const QImage image = pictureOf(each);
        const QRect curve = extentOf(image, kTraceColor).area;
        for (int x = curve.left() + 20; x < curve.center().x(); ++x)
            counts[i] += extentOf(image.copy(x, 0, 1, image.height()), kTraceColor).count > 0 ? 1 : 0;
    }
    QVERIFY2(counts[1] < counts[0] * 0.8 && counts[1] > counts[0] * 0.4, QByteArray::number(counts[1]));
}

void TestPlot::limitsOfOneColourDiffer()
{
    // Each in a picture of its own, at the place that it has among others.
    QVector<QImage> lines;
    for (int place = 0; place < 8; ++place) {
        Plot plot("Limits", "Level", "dBm");
        for (int i = 0; i < place; ++i)
            plot.addCurve({}, {}, Plot::LimitCurve);
        plot.addCurve({}, {{1e6, 0.0}, {1.5e6, 0.0}, {2e6, 0.0}}, Plot::LimitCurve);
        const QImage image = pictureOf(plot);
        QVERIFY(extentOf(image, kLimitColor).count > 300);
        for (const QImage &other : qAsConst(lines))
            QVERIFY(image != other);
        lines += image;
    }
}

void TestPlot::ofManyPointsThoseThatShowAreDrawn()
{
    Points points;
    constexpr int kCount = 1000000;
    for (int i = 0; i < kCount; ++i)
        points.append({i * 1e3, i == kCount / 2 ? 100.0 : i == kCount / 4 ? -100.0 : i % 2 * 1.0});
    for (const auto scale : {Plot::LinearFrequency, Plot::LogarithmicFrequency}) {
        Plot plot("Needles", "Level", "dBm");
        plot.setFrequencyScale(scale);
        plot.addCurve({}, points, Plot::TraceCurve);
        const QImage image = pictureOf(plot);
        const Extent curve = extentOf(image, kTraceColor);
        QVERIFY(curve.area.height() > canvasOf(image).height() * 7 / 10);
    }
}

// A line that runs back and forth has other dashes.
void TestPlot::ofAFlatStretchNoPointIsDrawnTwice()
{
    const auto dashed = [this](int count) {
        Points points;
        for (int i = 0; i < count; ++i)
            points.append({100e6 + 100e6 * i / (count - 1), -50.0});
        Plot plot("Flat", "Level", "dBm");
        plot.addCurve({}, {{100e6, -20.0}, {200e6, -80.0}}, Plot::LimitCurve, QColor(kLimitColor));
        plot.addCurve({}, points, Plot::LimitCurve, QColor(kTraceColor)); // the second limit has dashes
        return extentOf(pictureOf(plot), kTraceColor);
    };
    const Extent few = dashed(2);
    const Extent many = dashed(100001);
    QVERIFY(few.count > 500);
    QCOMPARE(many.area, few.area);
    QVERIFY2(std::abs(many.count - few.count) < few.count / 20, qPrintable(QString::number(many.count)));
}

void TestPlot::markersPointAtTheirPoints()
{
    Plot plot("Marker", "Level", "dBm");
    plot.addCurve({}, {{0, 0}, {1e6, 100}, {2e6, 0}}, Plot::TraceCurve);
    plot.addMarker(1e6, 100, {}, Plot::AbovePoint);
    const QImage image = pictureOf(plot);
    const Extent curve = extentOf(image, kTraceColor);
    Extent marker = extentOf(image, kMarkerColor);
    QVERIFY(marker.count > 30);
    QVERIFY(std::abs(marker.area.center().x() - curve.area.center().x()) <= 2);
    QVERIFY(std::abs(marker.area.bottom() - curve.area.top()) <= 6);

    Plot below("Marker", "Level", "dBm");
    below.addCurve({}, {{0, 100}, {1e6, 0}, {2e6, 100}}, Plot::TraceCurve);
    below.addMarker(1e6, 0, {}, Plot::BelowPoint);
    marker = extentOf(pictureOf(below), kMarkerColor);
    QVERIFY(marker.count > 30);
}

void TestPlot::curvesKeepClearOfLabels()
{
    Plot plot("Labels", "Level", "dBm");
    plot.addCurve({}, {{0, 100}, {1e6, 100}, {2e6, 100}, {2.1e6, -20}}, Plot::TraceCurve);
    plot.addMarker(1e6, 100, "Max 1 -100.00 dBm @ 1.000 MHz", Plot::AbovePoint);
    const QImage image = pictureOf(plot);
    const QRect canvas = canvasOf(image);
    const Extent label = extentOf(image, kMarkerColor);
    QVERIFY(canvas.contains(label.area));
    QVERIFY(label.area.height() > 100);
    // The label and its leader end above the symbol, whose foot is on the curve.
    QVERIFY(std::abs(label.area.bottom() - extentOf(image, kTraceColor).area.top()) <= 6);
}

void TestPlot::manyMarkersAreDrawn()
{
    Plot plot("Markers", "Level", "dBm");
    plot.addCurve({}, kSlope, Plot::TraceCurve);
    for (int i = 0; i < 1000; ++i)
        plot.addMarker(100e6 + i * 1e5, i * 0.1, QStringLiteral("Marker %1").arg(i), Plot::AbovePoint);
    const QImage image = pictureOf(plot);
    QVERIFY(canvasOf(image).contains(extentOf(image, kMarkerColor).area));
}

void TestPlot::markersWithoutALevelAreLeftOut()
{
    Plot plot("Markers", "Level", "dBm");
    plot.addCurve({}, kSlope, Plot::TraceCurve);
    plot.addMarker(150e6, std::numeric_limits<double>::quiet_NaN(), "none", Plot::AbovePoint);
    plot.addMarker(150e6, std::numeric_limits<double>::infinity(), "none", Plot::AbovePoint);
    QCOMPARE(extentOf(pictureOf(plot), kMarkerColor).count, 0);
}

void TestPlot::degenerateInputIsDrawn_data()
{
    QTest::addColumn<Points>("points");

    constexpr double kHuge = std::numeric_limits<double>::max();
    QTest::newRow("nothing") << Points{};
    QTest::newRow("one point") << Points{{1e6, 5}};
    QTest::newRow("one frequency") << Points{{1e6, 5}, {1e6, 6}};
    QTest::newRow("one level") << Points{{1e6, 5}, {2e6, 5}};
    QTest::newRow("no numbers") << Points{{1e6, std::nan("")}, {2e6, HUGE_VAL}};
    QTest::newRow("0 Hz") << Points{{0, 1}, {1, 2}};
    QTest::newRow("huge levels") << Points{{1e6, -kHuge}, {2e6, kHuge}};
    QTest::newRow("tiny levels") << Points{{1e6, 1e-320}, {2e6, 3e-320}};
    QTest::newRow("levels that hardly differ") << Points{{1e6, 1.0}, {2e6, std::nextafter(1.0, 2.0)}};
    QTest::newRow("large levels that hardly differ") << Points{{1e6, 1e300}, {2e6, std::nextafter(1e300, 2e300)}};
    QTest::newRow("frequencies that hardly differ") << Points{{9e18, 1}, {std::nextafter(9e18, 1e19), 2}};
    QTest::newRow("18 decades") << Points{{1, 1}, {1e18, 2}};
}

void TestPlot::degenerateInputIsDrawn()
{
    QFETCH(Points, points);
    for (const auto scale : {Plot::LinearFrequency, Plot::LogarithmicFrequency}) {
        Plot plot("", "Level", "");
        plot.setFrequencyScale(scale);
        plot.addCurve("curve", points, Plot::TableCurve);
        for (const Plot::Point &point : qAsConst(points))
            plot.addMarker(point.frequencyHz, point.level, "marker", Plot::AbovePoint);
        QVERIFY(canvasOf(pictureOf(plot)).width() > 500);
    }
}

void TestPlot::thePictureIsForPrint()
{
    Plot plot("Slope", "Level", "dBm");
    plot.addCurve({}, kSlope, Plot::TraceCurve);
    QVERIFY(!pictureOf(plot).isNull());
    QFile file(m_folder->path("plot.png"));
    QVERIFY(file.open(QIODevice::ReadOnly));
    QVERIFY(file.read(8).startsWith("\x89PNG"));
    QVERIFY(file.size() < 200000);
    const QImage image(file.fileName());
    const double widthMm = image.width() / (image.dotsPerMeterX() / 1000.0);
    QVERIFY2(widthMm > 200 && widthMm < 297, QByteArray::number(widthMm));
}

void TestPlot::aFileThatCanNotBeWrittenIsNamed()
{
    Plot plot("Slope", "Level", "dBm");
    for (const QString &name : {QStringLiteral("/nonexistent/a.png"), QStringLiteral("/tmp"), QString()}) {
        QString errorText;
        QVERIFY(!plot.save(name, &errorText));
        QVERIFY2(errorText.startsWith(name + ": can't be written: "), qPrintable(errorText));
    }
}

QTEST_MAIN(TestPlot)
#include "tst_plot.moc"
