#include "apps/aveldoran/levelraster.h"

#include <QtTest/QtTest>

#include <cmath>
#include <limits>
#include <random>

using Values = QList<AMeasurementValue>;

namespace {

constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();

// A point every `stepHz` from `beginHz` on.
Values sweep(double beginHz, double stepHz, const QVector<double> &levels)
{
    Values values;
    for (int i = 0; i < levels.size(); ++i) {
        AFrequency frequency;
        frequency.setValue(beginHz + i * stepHz, AFrequency::Hz);
        values += AMeasurementValue(levels[i], 0, frequency, 0, 0.0);
    }
    return values;
}

QVector<float> rowOf(const LevelRaster &raster, int row)
{
    QVector<float> levels;
    for (int column = 0; column < raster.size().width(); ++column)
        levels += raster.level(column, row);
    return levels;
}

// NaN equals NaN here.
bool isSame(const QVector<float> &a, const QVector<float> &b)
{
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](float x, float y) { return x == y || (std::isnan(x) && std::isnan(y)); });
}

} // namespace

class TestLevelRaster : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void isEmptyAtFirst();
    void aSweepFillsItsRows();
    void whereSweepsMeetTheHighestStays();
    void aRowIsTheLeast_data();
    void aRowIsTheLeast();
    void everyPointKeepsItsColumn();
    void noPeakIsEverLost();
    void gapsBetweenRangesStayFree();
    void pointsThatGrowFartherApartLeaveNoGap();
    void pointsAtOneFrequencyAreOne_data();
    void pointsAtOneFrequencyAreOne();
    void unevenlySpacedPointsKeepTheirPixels();
    void finiteLevelsStayFinite();
    void pointsInAnyOrderAreTaken();
    void theMaximumHoldKeepsFrequencies();
    void theMaximumHoldAscends();
};

void TestLevelRaster::isEmptyAtFirst()
{
    LevelRaster raster({3, 2}, 0, 30);
    QVERIFY(isSame(rowOf(raster, 1), {kNaN, kNaN, kNaN}));
    QVERIFY(raster.highest().isEmpty());
    raster.add({}, 0, 2);
    raster.add(sweep(0, 10, {kNaN, kNaN, kNaN}), 0, 2);
    QVERIFY(isSame(rowOf(raster, 0), {kNaN, kNaN, kNaN}));
    const auto hold = raster.maximumHold();
    QVERIFY(std::all_of(hold.begin(), hold.end(), [](const Plot::Point &point) { return std::isnan(point.level); }));
}

void TestLevelRaster::aSweepFillsItsRows()
{
    LevelRaster raster({4, 5}, 0, 40);
    raster.add(sweep(5, 10, {-1, -2, -3, -4}), 1, 3);
    for (const int row : {0, 3, 4})
        QVERIFY(isSame(rowOf(raster, row), {kNaN, kNaN, kNaN, kNaN}));
    for (const int row : {1, 2})
        QVERIFY(isSame(rowOf(raster, row), {-1, -2, -3, -4}));
}

void TestLevelRaster::whereSweepsMeetTheHighestStays()
{
    LevelRaster raster({4, 1}, 0, 40);
    raster.add(sweep(5, 10, {-1, -9, kNaN, -9}), 0, 1);
    raster.add(sweep(5, 10, {-2, -2, -2, kNaN}), 0, 1);
    QVERIFY(isSame(rowOf(raster, 0), {-1, -2, -2, -9}));
    QCOMPARE(raster.highest().level, -1.0);
}

void TestLevelRaster::aRowIsTheLeast_data()
{
    QTest::addColumn<double>("begin");
    QTest::addColumn<double>("end");
    QTest::addColumn<int>("row");

    QTest::newRow("a small part") << 2.1 << 2.2 << 2;
    QTest::newRow("nothing at all") << 3.0 << 3.0 << 3;
    QTest::newRow("at the end") << 5.0 << 5.0 << 4;
    QTest::newRow("before") << -8.0 << -7.0 << 0;
    QTest::newRow("behind") << 99.0 << 100.0 << 4;
}

void TestLevelRaster::aRowIsTheLeast()
{
    QFETCH(double, begin);
    QFETCH(double, end);
    QFETCH(int, row);
    LevelRaster raster({2, 5}, 0, 20);
    raster.add(sweep(5, 10, {-1, -2}), begin, end);
    for (int i = 0; i < 5; ++i)
        QCOMPARE(!std::isnan(raster.level(0, i)), i == row);
}

void TestLevelRaster::everyPointKeepsItsColumn()
{
    // As many points as columns, and a few times as many.
    for (const int n : {1000, 1001, 1500, 3000, 50000}) {
        LevelRaster raster({1000, 1}, 0, 1e6);
        QVector<double> levels(n, -100.0);
        for (int peak = 0; peak < n; peak += n / 10)
            levels[peak] = -10.0;
        const double step = 1e6 / (n - 1);
        raster.add(sweep(0, step, levels), 0, 1);
        for (int column = 0; column < 1000; ++column) {
            const bool isBright = raster.level(column, 0) > -50;
            bool isNear = false;
            bool isFar = true;
            for (int peak = 0; peak < n; peak += n / 10) {
                const double distance = std::fabs(peak * step / 1000 - (column + 0.5));
                isNear = isNear || distance < 0.1;
                isFar = isFar && distance > 2.0;
            }
            QVERIFY(isBright || !isNear);
            QVERIFY(!isBright || !isFar);
        }
    }
}

void TestLevelRaster::noPeakIsEverLost()
{
    std::mt19937 random(7);
    for (int round = 0; round < 500; ++round) {
        const int columns = std::uniform_int_distribution<int>(1, 200)(random);
        const int n = std::uniform_int_distribution<int>(1, 1000)(random);
        const int peak = std::uniform_int_distribution<int>(0, n - 1)(random);
        QVector<double> levels(n, -100.0);
        levels[peak] = -10.0;
        const double begin = std::uniform_real_distribution<double>(0, 5e5)(random);
        const double step = 5e5 / n;
        LevelRaster raster({columns, 1}, 0, 1e6);
        raster.add(sweep(std::round(begin), std::floor(step), levels), 0, 1);
        int brightest = 0;
        for (int column = 0; column < columns; ++column) {
            if (raster.level(column, 0) > raster.level(brightest, 0) || std::isnan(raster.level(brightest, 0)))
                brightest = column;
        }
        QCOMPARE(raster.level(brightest, 0), -10.0F);
        const double place = (std::round(begin) + peak * std::floor(step)) / 1e6 * columns;
        const double reach = 1.5 + std::floor(step) / 1e6 * columns;
        QVERIFY2(std::fabs(brightest + 0.5 - place) <= reach, QByteArray::number(round));
        QCOMPARE(raster.highest().level, -10.0);
        const auto hold = raster.maximumHold();
        QVERIFY(std::any_of(hold.begin(), hold.end(), [](const Plot::Point &point) { return point.level == -10.0; }));
    }
}

void TestLevelRaster::gapsBetweenRangesStayFree()
{
    LevelRaster raster({100, 1}, 0, 100);
    raster.add(sweep(0, 1, QVector<double>(20, -1.0)) + sweep(80, 1, QVector<double>(20, -2.0)), 0, 1);
    for (int column = 0; column < 100; ++column) {
        const float level = raster.level(column, 0);
        if (column < 19)
            QCOMPARE(level, -1.0F);
        else if (column > 21 && column < 78)
            QVERIFY(std::isnan(level));
        else if (column > 81)
            QCOMPARE(level, -2.0F);
    }
}

void TestLevelRaster::pointsThatGrowFartherApartLeaveNoGap()
{
    Values values;
    for (int i = 0; i <= 40; ++i)
        values += sweep(std::round(std::pow(10.0, 2 + i / 10.0)), 0, {double(-i)});
    LevelRaster raster({300, 1}, 100, 1e6);
    raster.add(values, 0, 1);
    for (int column = 0; column < 300; ++column)
        QVERIFY(!std::isnan(raster.level(column, 0)));
    QCOMPARE(raster.level(299, 0), -40.0F);
    QCOMPARE(raster.level(0, 0), 0.0F);
}

void TestLevelRaster::pointsAtOneFrequencyAreOne_data()
{
    QTest::addColumn<int>("points");
    QTest::addColumn<int>("frequencies");

    QTest::newRow("each twice") << 22 << 11;
    QTest::newRow("not equally often") << 501 << 11;
    QTest::newRow("more frequencies than columns") << 3000 << 600;
    QTest::newRow("two frequencies") << 100 << 2;
    QTest::newRow("one frequency") << 100 << 1;
}

void TestLevelRaster::pointsAtOneFrequencyAreOne()
{
    QFETCH(int, points);
    QFETCH(int, frequencies);
    Values values;
    for (int i = 0; i < points; ++i)
        values += sweep(i * frequencies / points, 0, {i % 10 == 3 ? kNaN : -100.0 - i % 10});
    values[points / 2].level = -10.0;
    LevelRaster raster({100, 1}, 0, frequencies - 1);
    raster.add(values, 0, 1);
    int bright = 0;
    for (int column = 0; column < 100; ++column) {
        QVERIFY2(!std::isnan(raster.level(column, 0)), QByteArray::number(column));
        bright += raster.level(column, 0) == -10.0F ? 1 : 0;
    }
    // The whole of its cell, at the ends half of it.
    const double cell = frequencies > 1 ? 100.0 / (frequencies - 1) : 100.0;
    QVERIFY(bright >= 1 && bright >= std::floor(cell / 2) && bright <= std::ceil(cell) + 1);
}

void TestLevelRaster::unevenlySpacedPointsKeepTheirPixels()
{
    constexpr int kPoints = 10000;
    constexpr int kColumns = 1400;
    Values values;
    for (int i = 0; i < kPoints; ++i)
        values += sweep(std::round(1e6 * std::pow(1000.0, i / (kPoints - 1.0))), 0, {-100.0});
    QVector<int> peaks;
    for (int i = 500; i < kPoints; i += 997)
        peaks += i;
    for (const int peak : qAsConst(peaks))
        values[peak].level = -10.0;
    LevelRaster raster({kColumns, 1}, 1e6, 1e9);
    raster.add(values, 0, 1);
    const auto placeOf = [&values](int i) {
        return (values.at(i).frequency.floatValue(AFrequency::Hz) - 1e6) / (1e9 - 1e6) * kColumns;
    };
    QVector<bool> mayBeBright(kColumns);
    for (const int peak : qAsConst(peaks)) {
        const auto own = static_cast<int>(placeOf(peak));
        QCOMPARE(raster.level(own, 0), -10.0F);
        const auto left = static_cast<int>(placeOf(peak - 1));
        const auto right = static_cast<int>(placeOf(peak + 1));
        std::fill(mayBeBright.begin() + left, mayBeBright.begin() + right + 1, true); // up to its neighbours
    }
    for (int column = 0; column < kColumns; ++column) {
        QVERIFY(!std::isnan(raster.level(column, 0)));
        QVERIFY2(raster.level(column, 0) < -50 || mayBeBright[column], QByteArray::number(column));
    }
}

void TestLevelRaster::finiteLevelsStayFinite()
{
    LevelRaster raster({2, 1}, 0, 20);
    raster.add(sweep(5, 10, {1e300, -1e300}), 0, 1);
    QCOMPARE(raster.level(0, 0), std::numeric_limits<float>::max());
    QCOMPARE(raster.level(1, 0), std::numeric_limits<float>::lowest());
    QCOMPARE(raster.highest().level, 1e300);
}

void TestLevelRaster::pointsInAnyOrderAreTaken()
{
    std::mt19937 random(9);
    std::uniform_real_distribution<double> hertz(-2e6, 2e6);
    LevelRaster raster({50, 4}, 0, 1e6);
    for (int i = 0; i < 300; ++i) {
        Values values;
        for (int k = 0; k < i; ++k)
            values += sweep(k % 7 ? hertz(random) : k % 2 ? 9e18 : -9e18, 0, {-1.0 * k});
        raster.add(values, i % 6 - 1, i % 5);
    }
    QVERIFY(raster.highest().level == 0.0 || raster.highest().level == -1.0);
}

void TestLevelRaster::theMaximumHoldKeepsFrequencies()
{
    LevelRaster raster({100, 1}, 0, 1000);
    raster.add(sweep(0, 250, {-5, -4, -3, -2, -1}), 0, 1);
    const auto hold = raster.maximumHold();
    QCOMPARE(hold.size(), 5); // a point each, however many columns it covers
    for (int i = 0; i < 5; ++i) {
        QCOMPARE(hold[i].frequencyHz, 250.0 * i);
        QCOMPARE(hold[i].level, i - 5.0);
    }
}

void TestLevelRaster::theMaximumHoldAscends()
{
    std::mt19937 random(3);
    std::uniform_real_distribution<double> level(-100, 0);
    LevelRaster raster({97, 1}, 0, 1e6);
    for (const int n : {3, 10, 55, 97, 200, 1000}) {
        QVector<double> levels(n);
        std::generate(levels.begin(), levels.end(), [&] { return level(random); });
        raster.add(sweep(1e4 * n / 100, 9e5 / n, levels), 0, 1);
        const auto hold = raster.maximumHold();
        for (int i = 1; i < hold.size(); ++i)
            QVERIFY(hold[i].frequencyHz >= hold[i - 1].frequencyHz);
    }
}

QTEST_GUILESS_MAIN(TestLevelRaster)
#include "tst_levelraster.moc"
