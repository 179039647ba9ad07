#include "apps/waterfallpicture.h"

#include <core/asimulateddevice.h>

class TestWaterfallPicture : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_runs = std::make_unique<WaterfallRuns>(); }

    void aCarrierIsABrightColumnAtItsFrequency();
    void timeRunsDownwards();
    void ofMoreSweepsThanRowsTheHighestStays();
    void ofMorePointsThanColumnsTheHighestStays();
    void fewPointsAndSweepsFillThePicture();
    void everyRangeHasItsPlace();
    void betweenTwoRangesOfASweepNothingIsDrawn();
    void pausesStayFree();
    void withoutTimesSweepsAreCounted_data();
    void withoutTimesSweepsAreCounted();
    void oddLevelsAreDrawn();
    void aLoneFrequencyFillsThePicture();

    void theColorsAreThoseAskedFor();
    void theDefaultScaleEndsAtTheNoise();
    void theDynamicSetsTheLowerEnd();
    void theMaximumHoldStandsAbove();
    void theWidthIsThatOfThePicture();
    void textIsNotCutOff();

private:
    std::unique_ptr<WaterfallRuns> m_runs;
};

void TestWaterfallPicture::aCarrierIsABrightColumnAtItsFrequency()
{
    ASimulatedDevice device(1);
    device.setCarriers({{AFrequency("98.1 MHz"), AFrequency("200 kHz"), -30.0, 0.0, 0.0}});
    QList<ASweep> sweeps;
    for (int i = 0; i < 100; ++i)
        sweeps += device.sweep(i);
    const Picture picture = m_runs->drawn(sweeps);
    QCOMPARE(picture.image.size(), QSize(1680, 1260));
    QVERIFY(picture.waterfall.width() > 1680 * 7 / 10);
    QVERIFY(picture.waterfall.height() > 1260 / 2);

    const double place = (98.1 - 87.5) / (108.0 - 87.5);
    for (const double y : {0.01, 0.25, 0.5, 0.75, 0.99}) {
        int brightest = picture.waterfall.left();
        const int row = picture.pixelOf(0, y).y();
        for (int x = picture.waterfall.left(); x <= picture.waterfall.right(); ++x) {
            if (picture.brightnessAt({x, row}) > picture.brightnessAt({brightest, row}))
                brightest = x;
        }
        COMPARE_NEAR(double(brightest - picture.waterfall.left()) / picture.waterfall.width(), place, 0.005);
        QVERIFY(picture.brightnessAt({brightest, row}) > 0x80);
        QVERIFY(picture.brightness(place - 0.05, y) < 0x70);
        QVERIFY(picture.brightness(place + 0.05, y) < 0x70);
    }
}

void TestWaterfallPicture::timeRunsDownwards()
{
    QList<ASweep> sweeps;
    for (int i = 0; i < 40; ++i)
        sweeps += sweep(i, 100, 0.1, levels(101, i < 30 ? QMap<int, double>() : QMap<int, double>({{50, -20.0}})));
    const QRectF bright = m_runs->drawn(sweeps).area(0xd0);
    COMPARE_NEAR(bright.top(), 0.75, 0.005);
    COMPARE_NEAR(bright.bottom(), 1.0, 0.005);
    COMPARE_NEAR(bright.center().x(), 0.5, 0.005);
}

void TestWaterfallPicture::ofMoreSweepsThanRowsTheHighestStays()
{
    QList<ASweep> sweeps;
    for (int i = 0; i < 6000; ++i)
        sweeps += sweep(i, 100, 1, levels(11, i == 1500 ? QMap<int, double>({{8, -20.0}}) : QMap<int, double>()));
    const Picture picture = m_runs->drawn(sweeps);
    QVERIFY(picture.waterfall.height() < 1000);
    const QRectF bright = picture.area(0xd0);
    COMPARE_NEAR(bright.top(), 0.25, 0.005);
    QVERIFY(bright.height() > 0.0 && bright.height() < 0.005); // a row, not a smear
    COMPARE_NEAR(bright.center().x(), 0.8, 0.005);
}

void TestWaterfallPicture::ofMorePointsThanColumnsTheHighestStays()
{
    QList<ASweep> sweeps;
    for (int i = 0; i < 4; ++i)
        sweeps += sweep(i, 100, 0.001, levels(40001, {{10000 * i + 777, -20.0}}));
    const Picture picture = m_runs->drawn(sweeps);
    for (int i = 0; i < 4; ++i) {
        const int row = picture.pixelOf(0, (i + 0.5) / 4).y();
        QVector<int> bright;
        for (int x = picture.waterfall.left(); x <= picture.waterfall.right(); ++x) {
            if (picture.brightnessAt({x, row}) >= 0xd0)
                bright += x;
        }
        QVERIFY(!bright.isEmpty() && bright.size() <= 2);
        COMPARE_NEAR(double(bright.first() - picture.waterfall.left()) / picture.waterfall.width(),
                     (10000 * i + 777) / 40000.0, 0.003);
    }
}

void TestWaterfallPicture::fewPointsAndSweepsFillThePicture()
{
    // Two points and two sweeps: four fields, in the middle of which nothing is missing.
    const Picture picture =
        m_runs->drawn({sweep(0, 100, 1, {-20, -60}), sweep(1, 100, 1, {-60, -20})}, {"--dynamic", "60"});
    QVERIFY(picture.brightness(0.1, 0.1) == picture.brightness(0.49, 0.49));
    QVERIFY(picture.brightness(0.1, 0.1) > picture.brightness(0.9, 0.1));
    QCOMPARE(picture.brightness(0.1, 0.1), picture.brightness(0.9, 0.9));
    QCOMPARE(picture.brightness(0.9, 0.1), picture.brightness(0.1, 0.9));
    for (int x = picture.waterfall.left(); x <= picture.waterfall.right(); ++x)
        QVERIFY(picture.brightnessAt({x, picture.pixelOf(0, 0.3).y()}) > 0);
}

void TestWaterfallPicture::everyRangeHasItsPlace()
{
    const Picture picture = m_runs->drawn({sweep(0, 100, 0.01, levels(1001, {{500, -20}})), // to 110 MHz
                                           sweep(1, 130, 1, levels(11, {{5, -20}})),        // to 140 MHz
                                           sweep(2, 100, 0.5, levels(81, {{60, -20}}))});   // all
    QVERIFY(picture.brightness(0.125, 1 / 6.0) >= 0xd0);
    QVERIFY(picture.brightness(0.2, 1 / 6.0) < 0x80 && picture.brightness(0.2, 1 / 6.0) > 0);
    QCOMPARE(picture.brightness(0.3, 1 / 6.0), -1);
    QCOMPARE(picture.brightness(0.9, 1 / 6.0), -1);
    QCOMPARE(picture.brightness(0.3, 0.5), -1);
    QVERIFY(picture.brightness(0.875, 0.5) >= 0xd0);
    QVERIFY(picture.brightness(0.8, 0.5) > 0);
    QVERIFY(picture.brightness(0.75, 5 / 6.0) >= 0xd0);
    for (const double x : {0.01, 0.3, 0.5, 0.99})
        QVERIFY(picture.brightness(x, 5 / 6.0) > 0);
}

void TestWaterfallPicture::betweenTwoRangesOfASweepNothingIsDrawn()
{
    ASweep both = sweep(0, 100, 0.1, levels(101, {{50, -20}}));
    both.values += sweep(0, 130, 0.1, levels(101)).values;
    ASweep later(both.values, startOfRecording().addSecs(1), startOfRecording().addSecs(2));
    const Picture picture = m_runs->drawn({both, later});
    for (const double x : {0.0, 0.1, 0.24, 0.76, 0.99})
        QVERIFY2(picture.brightness(x, 0.5) > 0, QByteArray::number(x));
    for (const double x : {0.26, 0.5, 0.74})
        QCOMPARE(picture.brightness(x, 0.5), -1);
    QVERIFY(picture.brightness(0.125, 0.5) >= 0xd0);
}

void TestWaterfallPicture::pausesStayFree()
{
    QList<ASweep> sweeps;
    for (int i = 0; i < 20; ++i)
        sweeps += sweep(i < 10 ? i : i + 20, 100, 1, levels(11)); // 10 s, a pause of 20 s, 10 s
    const Picture picture = m_runs->drawn(sweeps);
    QVERIFY(picture.brightness(0.5, 0.1) > 0);
    QVERIFY(picture.brightness(0.5, 0.24) > 0);
    QCOMPARE(picture.brightness(0.5, 0.26), -1);
    QCOMPARE(picture.brightness(0.5, 0.74), -1);
    QVERIFY(picture.brightness(0.5, 0.76) > 0);
}

void TestWaterfallPicture::withoutTimesSweepsAreCounted_data()
{
    QTest::addColumn<QVector<int>>("seconds"); // -1 for none

    QTest::newRow("no times") << QVector<int>({-1, -1, -1, -1});
    QTest::newRow("one without a time") << QVector<int>({1, 2, -1, 4});
    QTest::newRow("a clock that runs backwards") << QVector<int>({10, 11, 2, 3});
    QTest::newRow("all at one time") << QVector<int>({7, 7, 7, 7});
    QTest::newRow("a clock that is set") << QVector<int>({0, 1, 1000000000, 1000000001});
}

void TestWaterfallPicture::withoutTimesSweepsAreCounted()
{
    QFETCH(QVector<int>, seconds);
    QList<ASweep> sweeps;
    for (int i = 0; i < seconds.size(); ++i) {
        const ASweep timed = sweep(seconds[i], 100, 1, levels(4, {{i, -20}}));
        sweeps += seconds[i] < 0 ? ASweep(timed.values) : timed;
    }
    const Picture picture = m_runs->drawn(sweeps);
    for (int i = 0; i < 4; ++i) {
        for (const double y : {0.05, 0.5, 0.95})
            QVERIFY(picture.brightness(i == 0 ? 0.05 : i == 3 ? 0.95 : i / 3.0, (i + y) / 4) >= 0xd0);
    }
    QVERIFY(!m_runs->drawIt(m_runs->path("a.mdr")).told.contains(QRegularExpression("[0-9]Z")));
}

void TestWaterfallPicture::oddLevelsAreDrawn()
{
    QVector<double> odd = levels(101, {{90, -20}});
    for (int i = 20; i < 40; ++i)
        odd[i] = kNaN;
    for (int i = 50; i < 60; ++i)
        odd[i] = i < 55 ? kInfinity : -kInfinity;
    odd[70] = 1e300;
    odd[80] = -1e300;
    QList<ASweep> sweeps;
    for (int i = 0; i < 10; ++i)
        sweeps +=
            i == 5 ? ASweep({}, startOfRecording().addSecs(5), startOfRecording().addSecs(6)) : sweep(i, 100, 0.1, odd);
    const Picture picture = m_runs->drawn(sweeps);
    QVERIFY(picture.brightness(0.1, 0.1) > 0 && picture.brightness(0.1, 0.1) < 0x80);
    QCOMPARE(picture.brightness(0.3, 0.1), -1);
    QVERIFY(picture.brightness(0.52, 0.1) >= 0xfe);
    QVERIFY(picture.brightness(0.57, 0.1) <= 0x31);
    QVERIFY(picture.brightness(0.7, 0.1) >= 0xfe);
    QVERIFY(picture.brightness(0.8, 0.1) <= 0x31);
    QCOMPARE(picture.brightness(0.1, 0.55), -1); // the sweep without values
    QVERIFY(m_runs->drawIt(m_runs->path("a.mdr")).told.contains("highest level 1e+300 dBm at 107 MHz"));
}

void TestWaterfallPicture::aLoneFrequencyFillsThePicture()
{
    const Picture picture = m_runs->drawn({sweep(0, 100, 1, {-50}), sweep(1, 100, 1, {-70})});
    for (const double x : {0.0, 0.5, 0.999}) {
        QVERIFY(picture.brightness(x, 0.25) > picture.brightness(x, 0.75));
        QVERIFY(picture.brightness(x, 0.75) > 0);
    }
}

// --- levels and colours ---

void TestWaterfallPicture::theColorsAreThoseAskedFor()
{
    const Picture picture = m_runs->drawn({sweep(0, 100, 0.1, levels(101, {{50, -10}}))});
    // Beside it, the highest at the top.
    QVERIFY(picture.bar.left() > picture.waterfall.right());
    QCOMPARE(picture.bar.height() > picture.waterfall.height() * 9 / 10, true);
    const int x = picture.bar.center().x();
    QVERIFY(qRed(picture.image.pixel(x, picture.bar.top() + 2)) >= 0xfc);
    QVERIFY(qRed(picture.image.pixel(x, picture.bar.bottom() - 2)) <= 0x33);
    for (int y = picture.bar.top() + 1; y <= picture.bar.bottom(); ++y)
        QVERIFY(qRed(picture.image.pixel(x, y)) <= qRed(picture.image.pixel(x, y - 1)));

    // The default ramp, at a level of the highest less a headroom of 5 and at the lowest.
    const Run result = run({"waterfall", m_runs->path("a.mdr"), "--output", m_runs->path("b.png")});
    QCOMPARE(result.exitStatus, 0);
    const QImage image(m_runs->path("b.png"));
    const QColor low = image.pixelColor(picture.pixelOf(0.2, 0.5));
    const QColor high = image.pixelColor(picture.pixelOf(0.5, 0.5));
    QVERIFY(low.value() < 80 && low.blue() > low.red());
    QVERIFY(high.value() > 200 && high.red() > 150 && high.green() > 200 && high.blue() < 130);
}

void TestWaterfallPicture::theDefaultScaleEndsAtTheNoise()
{
    // From -15, the next multiple of 5 a decibel above -20, to -100.
    const Picture picture = m_runs->drawn({sweep(0, 100, 0.1, levels(101, {{20, -20}, {50, -57.5}}))});
    QCOMPARE(picture.brightness(0.9, 0.5), 0x30);
    COMPARE_NEAR(picture.brightness(0.5, 0.5), (0x30 + 0xff) / 2.0, 3.0);
    COMPARE_NEAR(picture.brightness(0.2, 0.5), 0x30 + (0xff - 0x30) * 80 / 85.0, 3.0);
}

void TestWaterfallPicture::theDynamicSetsTheLowerEnd()
{
    const QList<ASweep> sweeps = {sweep(0, 100, 0.1, levels(101, {{20, -20}, {50, -35}, {70, -50}}))};
    const Picture picture = m_runs->drawn(sweeps, {"--dynamic", "30"}); // from -20 to -50
    COMPARE_NEAR(picture.brightness(0.2, 0.5), 0xff, 1.0);
    COMPARE_NEAR(picture.brightness(0.5, 0.5), (0x30 + 0xff) / 2.0, 3.0);
    QCOMPARE(picture.brightness(0.7, 0.5), 0x30);
    QCOMPARE(picture.brightness(0.9, 0.5), 0x30);
    for (const int dynamic : {1, 2, 5, 10}) {
        const Picture narrow = m_runs->drawn(sweeps, {"--dynamic", QString::number(dynamic)});
        QVERIFY2(narrow.brightness(0.2, 0.5) >= 0xe8, QByteArray::number(dynamic)); // one of ten steps from the end
        QCOMPARE(narrow.brightness(0.5, 0.5), 0x30);
    }
    const Picture wide = m_runs->drawn(sweeps, {"--dynamic", "1000"});
    QVERIFY(wide.brightness(0.2, 0.5) > wide.brightness(0.5, 0.5));
    QVERIFY(wide.brightness(0.5, 0.5) > wide.brightness(0.9, 0.5));
}

void TestWaterfallPicture::theMaximumHoldStandsAbove()
{
    const Picture picture =
        m_runs->drawn({sweep(0, 100, 0.1, levels(101, {{25, -20}})), sweep(1, 100, 0.1, levels(101)),
                       sweep(2, 100, 0.1, levels(101, {{25, -40}, {75, -60}}))});
    // The uppermost pixel of the curve in each column.
    const auto topOf = [&picture](double share) {
        const int x = picture.pixelOf(share, 0).x();
        for (int y = 0; y < picture.waterfall.top(); ++y) {
            for (const int column : {x - 2, x - 1, x, x + 1, x + 2}) {
                const QRgb color = picture.image.pixel(column, y);
                if (std::abs(qRed(color) - qRed(kTrace)) + std::abs(qBlue(color) - qBlue(kTrace)) < 60)
                    return y;
            }
        }
        return -1;
    };
    const int high = topOf(0.25);
    const int middle = topOf(0.75);
    const int low = topOf(0.5);
    QVERIFY(high > 0 && high < middle && middle < low && low < picture.waterfall.top());
    COMPARE_NEAR(double(low - middle) / (low - high), 0.5, 0.03);
}

void TestWaterfallPicture::theWidthIsThatOfThePicture()
{
    const QList<ASweep> sweeps = {sweep(0, 100, 0.1, levels(101, {{50, -20}}))};
    for (const int width : {800, 1111, 3000}) {
        const Picture picture = m_runs->drawn(sweeps, {"--width", QString::number(width)});
        QCOMPARE(picture.image.size(), QSize(width, qRound(width * 0.75)));
        COMPARE_NEAR(picture.area(0xd0).center().x(), 0.5, 0.01);
        QVERIFY(picture.waterfall.width() > width * 7 / 10);
    }
}

void TestWaterfallPicture::textIsNotCutOff()
{
    // The longest labels there are: milliseconds, a narrow range at a high frequency, a long name.
    QList<ASweep> sweeps;
    for (int i = 0; i < 50; ++i) {
        const QList<AMeasurementValue> values = sweep(0, 5800.123456, 0.000001, levels(101)).values;
        sweeps += ASweep(values, startOfRecording().addMSecs(10 * i), startOfRecording().addMSecs(10 * i + 10));
    }
    const QString longName = m_runs->path(QString(200, 'W') + ".mdr");
    QVERIFY(QFile::rename(m_runs->record(sweeps), longName));
    QCOMPARE(m_runs->drawIt(longName).exitStatus, 0);
    const Picture picture(m_runs->path("a.png"));
    const QImage &image = picture.image;
    for (int i = 0; i < 6; ++i) {
        for (int x = 0; x < image.width(); ++x) {
            QCOMPARE(image.pixel(x, i), qRgb(255, 255, 255));
            QCOMPARE(image.pixel(x, image.height() - 1 - i), qRgb(255, 255, 255));
        }
        for (int y = 0; y < image.height(); ++y) {
            QCOMPARE(image.pixel(i, y), qRgb(255, 255, 255));
            QCOMPARE(image.pixel(image.width() - 1 - i, y), qRgb(255, 255, 255));
        }
    }
}

QTEST_GUILESS_MAIN(TestWaterfallPicture)
#include "tst_waterfall_picture.moc"
