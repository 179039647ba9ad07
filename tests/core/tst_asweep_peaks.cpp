#include "core/peaksearch.h"

#include <QtTest/QtTest>

#include <cstdlib>
#include <new>

// The rules of the peak search, each by hand. Points lie 10 Hz apart, the first at 10 Hz.

namespace {

// The largest block that was asked for since the last reset.
std::size_t largestAllocation = 0;

} // namespace

void *operator new(std::size_t size)
{
    largestAllocation = std::max(largestAllocation, size);
    if (void *memory = std::malloc(size)) // NOLINT
        return memory;
    std::abort();
}
void operator delete(void *memory) noexcept
{
    std::free(memory); // NOLINT
}
void operator delete(void *memory, std::size_t) noexcept
{
    std::free(memory); // NOLINT
}

class TestASweepPeaks : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void peaks_data();
    void peaks();
    void aRange_data();
    void aRange();
    void aFrequencyRange_data();
    void aFrequencyRange();
    void spacing_data();
    void spacing();
    void capacity_data();
    void capacity();
    void nullArraysCountAsCapacityZero();
    void negativeCapacitiesCountAsZero();
    void theLargerCountIsReturned();
    void everyUnusedEntryBecomesTheEmptyValue();
    void peaksAreWholePoints();
    void levelsAreComparedInTheUnit_data();
    void levelsAreComparedInTheUnit();
    void frequenciesAtTheEdgeOfTheRangeKeepTheirDistance();
    void theDataStaysShared();
    void memoryDependsOnTheCapacityAlone();
};

void TestASweepPeaks::peaks_data()
{
    QTest::addColumn<QList<AMeasurementValue>>("data");
    QTest::addColumn<QString>("maxima");
    QTest::addColumn<QString>("minima");

    QTest::newRow("no point") << points({}) << ""
                              << "";
    QTest::newRow("one point is both") << points({5}) << "5@10"
                                       << "5@10";
    QTest::newRow("one point of NaN") << points({kNaN}) << ""
                                      << "";
    QTest::newRow("two points rising") << points({1, 2}) << "2@20"
                                       << "1@10";
    QTest::newRow("two points falling") << points({2, 1}) << "2@10"
                                        << "1@20";
    QTest::newRow("two equal points") << points({2, 2}) << "2@10"
                                      << "2@10";
    QTest::newRow("the ends have one neighbour") << points({5, 1, 6}) << "6@30 5@10"
                                                 << "1@20";
    QTest::newRow("best first") << points({0, 2, 0, 3, -1, 1, -2}) << "3@40 2@20 1@60"
                                << "-2@70 -1@50 0@10 0@30";
    QTest::newRow("equal levels by frequency") << points({0, 3, 0, 3, 0, 3, 0}) << "3@20 3@40 3@60"
                                               << "0@10 0@30 0@50 0@70";
    QTest::newRow("a rising ramp") << points({1, 2, 3, 4}) << "4@40"
                                   << "1@10";
    QTest::newRow("a falling ramp") << points({4, 3, 2, 1}) << "4@10"
                                    << "1@40";
    QTest::newRow("a constant") << points({3, 3, 3, 3}) << "3@10"
                                << "3@10";

    QTest::newRow("a flat top counts once") << points({0, 4, 4, 4, 0}) << "4@20"
                                            << "0@10 0@50";
    QTest::newRow("a step is no peak") << points({0, 4, 4, 5, 0}) << "5@40"
                                       << "0@10 0@50";
    QTest::newRow("a flat top at the beginning") << points({4, 4, 0}) << "4@10"
                                                 << "0@30";
    QTest::newRow("a flat top at the end") << points({0, 4, 4}) << "4@20"
                                           << "0@10";
    QTest::newRow("a flat bottom") << points({4, 0, 0, 4}) << "4@10 4@40"
                                   << "0@20";
    QTest::newRow("zeros of both signs are equal") << points({-1, 0.0, -0.0, -1}) << "0@20"
                                                   << "-1@10 -1@40";

    QTest::newRow("NaN at the beginning") << points({kNaN, 4, 0}) << "4@20"
                                          << "0@30";
    QTest::newRow("NaN at the end") << points({0, 4, kNaN}) << "4@20"
                                    << "0@10";
    QTest::newRow("the neighbour is behind NaN") << points({1, kNaN, 2, kNaN, kNaN, 3, 0}) << "3@60"
                                                 << "0@70 1@10";
    QTest::newRow("a flat top through NaN") << points({0, 4, kNaN, 4, kNaN, 4, 0}) << "4@20"
                                            << "0@10 0@70";
    QTest::newRow("a step through NaN") << points({0, 4, kNaN, 4, kNaN, 5, 0}) << "5@60"
                                        << "0@10 0@70";
    QTest::newRow("NaN alone") << points({kNaN, kNaN, kNaN}) << ""
                               << "";
    QTest::newRow("one number among NaN") << points({kNaN, 7, kNaN}) << "7@20"
                                          << "7@20";

    QTest::newRow("infinite peaks") << points({0, kInfinity, 0, -kInfinity, 0}) << "inf@20 0@50"
                                    << "-inf@40 0@10";
    QTest::newRow("an infinite flat top") << points({0, kInfinity, kInfinity, 0}) << "inf@20"
                                          << "0@10 0@40";
    QTest::newRow("minus infinity is a floor") << points({-kInfinity, 1, -kInfinity}) << "1@20"
                                               << "-inf@10 -inf@30";
    QTest::newRow("minus infinity alone is both") << points({-kInfinity}) << "-inf@10"
                                                  << "-inf@10";
    QTest::newRow("infinity alone is both") << points({kInfinity, kInfinity}) << "inf@10"
                                            << "inf@10";
}

void TestASweepPeaks::peaks()
{
    QFETCH(QList<AMeasurementValue>, data);
    QFETCH(QString, maxima);
    QFETCH(QString, minima);
    PeakRequest request;
    request.maxima = maxima.isEmpty() ? 2 : maxima.count(QLatin1Char('@')) + 2;
    request.minima = minima.isEmpty() ? 2 : minima.count(QLatin1Char('@')) + 2;
    const FoundPeaks found = findPeaks(data, request);
    QCOMPARE(peaksText(found.maxima), (maxima + QStringLiteral(" - -")).trimmed());
    QCOMPARE(peaksText(found.minima), (minima + QStringLiteral(" - -")).trimmed());
    QCOMPARE(found.count, qMax(maxima.count(QLatin1Char('@')), minima.count(QLatin1Char('@'))));
}

void TestASweepPeaks::aRange_data()
{
    QTest::addColumn<int>("first");
    QTest::addColumn<int>("last");
    QTest::addColumn<QString>("maxima");
    QTest::addColumn<QString>("minima");

    // The data: 9 1 5 5 2 8 8 7
    QTest::newRow("all") << 0 << 7 << "9@10 8@60 5@30"
                         << "1@20 2@50 7@80";
    QTest::newRow("from the second point") << 1 << 7 << "8@60 5@30"
                                           << "1@20 2@50 7@80";
    QTest::newRow("one point that is a peak") << 2 << 2 << "5@30"
                                              << "";
    QTest::newRow("one point that is none") << 7 << 7 << ""
                                            << "7@80";
    QTest::newRow("a slope, whose ends have neighbours outside") << 1 << 1 << ""
                                                                 << "1@20";
    QTest::newRow("the top of a ramp cut off") << 4 << 4 << ""
                                               << "2@50";
    QTest::newRow("a flat top that begins before the range") << 3 << 4 << ""
                                                             << "2@50";
    QTest::newRow("a flat top that ends behind the range") << 5 << 5 << "8@60"
                                                           << "";
    QTest::newRow("indices outside are cut") << -5 << 100 << "9@10 8@60 5@30"
                                             << "1@20 2@50 7@80";
    QTest::newRow("extreme indices") << INT_MIN << INT_MAX << "9@10 8@60 5@30"
                                     << "1@20 2@50 7@80";
    QTest::newRow("last before first") << 5 << 4 << ""
                                       << "";
    QTest::newRow("all behind the data") << 8 << 20 << ""
                                         << "";
    QTest::newRow("all before the data") << -9 << -1 << ""
                                         << "";
    QTest::newRow("extreme indices the wrong way round") << INT_MAX << INT_MIN << ""
                                                         << "";
}

void TestASweepPeaks::aRange()
{
    QFETCH(int, first);
    QFETCH(int, last);
    QFETCH(QString, maxima);
    QFETCH(QString, minima);
    const QList<AMeasurementValue> data = points({9, 1, 5, 5, 2, 8, 8, 7});
    const int most = qMax(maxima.count(QLatin1Char('@')), minima.count(QLatin1Char('@')));
    PeakRequest request;
    request.first = first;
    request.last = last;
    request.maxima = 5;
    request.minima = 5;
    for (const int spacingHz : {0, 1}) {
        request.spacing = hertz(spacingHz);
        const FoundPeaks found = findPeaks(data, request);
        QCOMPARE(filledPeaksText(found.maxima), maxima);
        QCOMPARE(filledPeaksText(found.minima), minima);
        QCOMPARE(found.count, most);
    }
}

void TestASweepPeaks::aFrequencyRange_data()
{
    QTest::addColumn<double>("begin");
    QTest::addColumn<double>("end");
    QTest::addColumn<QString>("maxima");

    // The data: 9@10 1@20 5@30 2@40 8@50
    QTest::newRow("all") << 0.0 << 60.0 << "9@10 8@50 5@30";
    QTest::newRow("both ends belong to it") << 10.0 << 50.0 << "9@10 8@50 5@30";
    QTest::newRow("just inside") << 10.5 << 49.5 << "5@30";
    QTest::newRow("one frequency") << 30.0 << 30.0 << "5@30";
    QTest::newRow("between two points") << 31.0 << 39.0 << "";
    QTest::newRow("below all") << -20.0 << 9.0 << "";
    QTest::newRow("above all") << 51.0 << 1e9 << "";
    QTest::newRow("end below begin") << 50.0 << 10.0 << "";
    QTest::newRow("neighbours outside count") << 40.0 << 40.0 << "";
}

void TestASweepPeaks::aFrequencyRange()
{
    QFETCH(double, begin);
    QFETCH(double, end);
    QFETCH(QString, maxima);
    const QList<AMeasurementValue> data = points({9, 1, 5, 2, 8});
    std::vector<AMeasurementValue> found(4, leftover());
    const int count =
        ASweep::extractPeaks(data, hertz(begin), hertz(end), found.data(), 4, nullptr, 0, kdBm, AFrequency());
    QCOMPARE(filledPeaksText(found), maxima);
    QCOMPARE(count, maxima.count(QLatin1Char('@')));
    QCOMPARE(ASweep::extractPeaks({}, hertz(begin), hertz(end), found.data(), 4, nullptr, 0, kdBm, AFrequency()), 0);
    QCOMPARE(peaksText(found), QStringLiteral("- - - -"));
}

void TestASweepPeaks::spacing_data()
{
    QTest::addColumn<QList<AMeasurementValue>>("data");
    QTest::addColumn<double>("spacing");
    QTest::addColumn<int>("capacity");
    QTest::addColumn<QString>("maxima");

    const QList<AMeasurementValue> teeth = points({0, 3, 0, 5, 0, 4, 0, 9, 0}); // peaks at 20, 40, 60, 80
    QTest::newRow("none") << teeth << 0.0 << 9 << "9@80 5@40 4@60 3@20";
    QTest::newRow("negative is none") << teeth << -50.0 << 9 << "9@80 5@40 4@60 3@20";
    QTest::newRow("exactly the distance") << teeth << 20.0 << 9 << "9@80 5@40 4@60 3@20";
    QTest::newRow("a little more than the distance") << teeth << 20.125 << 9 << "9@80 5@40";
    QTest::newRow("two distances") << teeth << 40.0 << 9 << "9@80 5@40";
    QTest::newRow("so wide that the far end is free") << teeth << 60.0 << 9 << "9@80 3@20";
    QTest::newRow("wider than the data") << teeth << 1e6 << 9 << "9@80";
    QTest::newRow("wider than any data") << teeth << 9e18 << 9 << "9@80";

    // Each peak is better than the one before it and within the spacing: only every second one is taken, counted from
    // the best.
    const QList<AMeasurementValue> chain = points({0, 1, 0, 2, 0, 3, 0, 4, 0, 5, 0, 6, 0});
    QTest::newRow("a dropped peak forbids nothing") << chain << 30.0 << 9 << "6@120 4@80 2@40";
    QTest::newRow("nor with few entries") << chain << 30.0 << 2 << "6@120 4@80";
    QTest::newRow("nor with one") << chain << 30.0 << 1 << "6@120";

    const QList<AMeasurementValue> equal = points({5, 0, 5, 0, 5, 0, 5, 0, 5});
    QTest::newRow("of equal levels the lower frequency") << equal << 30.0 << 9 << "5@10 5@50 5@90";

    QTest::newRow("the distance is that of the points, not of the tops")
        << points({0, 5, 5, 5, 0, 4, 0}) << 40.0 << 9 << "5@20 4@60";
}

void TestASweepPeaks::spacing()
{
    QFETCH(QList<AMeasurementValue>, data);
    QFETCH(double, spacing);
    QFETCH(int, capacity);
    QFETCH(QString, maxima);
    PeakRequest request;
    request.maxima = capacity;
    request.minima = capacity;
    request.spacing = hertz(spacing);
    const FoundPeaks found = findPeaks(data, request);
    QCOMPARE(filledPeaksText(found.maxima), maxima);

    QList<AMeasurementValue> upsideDown = data;
    for (AMeasurementValue &value : upsideDown)
        value.level = -value.level;
    std::vector<AMeasurementValue> minima = findPeaks(upsideDown, request).minima;
    for (AMeasurementValue &value : minima)
        value.level = value.isEmpty() ? 0.0 : -value.level;
    QCOMPARE(filledPeaksText(minima), maxima);
}

void TestASweepPeaks::capacity_data()
{
    QTest::addColumn<int>("capacity");
    QTest::addColumn<QString>("maxima");

    QTest::newRow("none") << 0 << "";
    QTest::newRow("one") << 1 << "9@80";
    QTest::newRow("fewer than there are") << 3 << "9@80 5@40 4@60";
    QTest::newRow("as many as there are") << 4 << "9@80 5@40 4@60 3@20";
    QTest::newRow("one more") << 5 << "9@80 5@40 4@60 3@20 -";
}

void TestASweepPeaks::capacity()
{
    QFETCH(int, capacity);
    QFETCH(QString, maxima);
    PeakRequest request;
    request.maxima = capacity;
    const FoundPeaks found = findPeaks(points({0, 3, 0, 5, 0, 4, 0, 9, 0}), request);
    QCOMPARE(peaksText(found.maxima), maxima);
    QCOMPARE(found.count, qMin(capacity, 4));
}

void TestASweepPeaks::nullArraysCountAsCapacityZero()
{
    const QList<AMeasurementValue> data = points({0, 3, 0, 5, 0});
    AMeasurementValue peak = leftover();
    QCOMPARE(ASweep::extractPeaks(data, 0, 4, nullptr, 20, nullptr, 20, kdBm, AFrequency()), 0);
    QCOMPARE(ASweep::extractPeaks(data, 0, 4, nullptr, 20, &peak, 1, kdBm, AFrequency()), 1);
    QCOMPARE(peaksText({peak}), QStringLiteral("0@10"));
    QCOMPARE(ASweep::extractPeaks(data, 0, 4, &peak, 1, nullptr, 20, kdBm, hertz(5)), 1);
    QCOMPARE(peaksText({peak}), QStringLiteral("5@40"));
    QCOMPARE(ASweep::extractPeaks(data, hertz(0), hertz(99), nullptr, 20, nullptr, 20, kdBm, hertz(5)), 0);
}

void TestASweepPeaks::negativeCapacitiesCountAsZero()
{
    AMeasurementValue peak = leftover();
    QCOMPARE(ASweep::extractPeaks(points({0, 3, 0}), 0, 2, &peak, -1, &peak, INT_MIN, kdBm, AFrequency()), 0);
    QVERIFY(peak == leftover());
}

void TestASweepPeaks::theLargerCountIsReturned()
{
    const QList<AMeasurementValue> data = points({0, 3, 0, 5, 0}); // two maxima, three minima
    PeakRequest request;
    request.maxima = 9;
    request.minima = 9;
    QCOMPARE(findPeaks(data, request).count, 3);
    request.minima = 1;
    QCOMPARE(findPeaks(data, request).count, 2);
    request.maxima = 1;
    QCOMPARE(findPeaks(data, request).count, 1);
}

void TestASweepPeaks::everyUnusedEntryBecomesTheEmptyValue()
{
    PeakRequest request;
    request.maxima = 3;
    request.minima = 4;
    QCOMPARE(peaksText(findPeaks({}, request).maxima), QStringLiteral("- - -"));
    QCOMPARE(peaksText(findPeaks({}, request).minima), QStringLiteral("- - - -"));
    request.last = -1;
    QCOMPARE(peaksText(findPeaks(points({1, 2}), request).maxima), QStringLiteral("- - -"));
}

void TestASweepPeaks::peaksAreWholePoints()
{
    QList<AMeasurementValue> data = points({0, 3, 0});
    data[1] = AMeasurementValue(3.0, kdBm, hertz(20), 42, -7.5);
    data[1].reserved = 9;
    PeakRequest request;
    request.maxima = 1;
    QVERIFY(findPeaks(data, request).maxima[0] == data[1]);
}

void TestASweepPeaks::levelsAreComparedInTheUnit_data()
{
    QTest::addColumn<int>("unit");
    QTest::addColumn<QString>("maxima");

    // 100 dBµV is -7 dBm, 1 V is 13 dBm or 120 dBµV. A power density is no power.
    QTest::newRow("decibels") << kdBm << "1@50 100@30 -10@10";
    QTest::newRow("other decibels") << kdBuV << "1@50 100@30 -10@10";
    QTest::newRow("a linear unit") << kV << "1@50 100@30 -10@10";
    QTest::newRow("a unit that none converts into") << kWattPerSquareMetre << "7@60";
    QTest::newRow("an unknown unit: as they stand") << kNoSuchUnit << "100@30 7@60 -10@10";
    QTest::newRow("a number that is no id: as they stand") << 4711 << "100@30 7@60 -10@10";
}

void TestASweepPeaks::levelsAreComparedInTheUnit()
{
    QFETCH(int, unit);
    QFETCH(QString, maxima);
    const QList<AMeasurementValue> data = {point(-10, 10, kdBm),  point(-90, 20, kdBm),
                                           point(100, 30, kdBuV), point(-90, 40, kdBm),
                                           point(1, 50, kV),      point(7, 60, kWattPerSquareMetre)};
    PeakRequest request;
    request.maxima = 5;
    request.unit = unit;
    const FoundPeaks found = findPeaks(data, request);
    QCOMPARE(filledPeaksText(found.maxima), maxima);
    for (int i = 0; i < found.count; ++i) // unconverted
        QVERIFY(data.contains(found.maxima[static_cast<std::size_t>(i)]));
}

void TestASweepPeaks::frequenciesAtTheEdgeOfTheRangeKeepTheirDistance()
{
    AFrequency last;
    last.setValue(std::numeric_limits<long long>::max(), AFrequency::Hz);
    QList<AMeasurementValue> data = points({0, 3, 0, 5, 0});
    for (int i = 0; i < data.size(); ++i)
        data[i].frequency = last - hertz(10.0 * (4 - i));
    PeakRequest request;
    request.maxima = 2;
    request.spacing = hertz(20);
    QCOMPARE(findPeaks(data, request).count, 2);
    request.spacing = hertz(21);
    const FoundPeaks found = findPeaks(data, request);
    QCOMPARE(found.count, 1);
    QVERIFY(found.maxima[0] == data[3]);
}

void TestASweepPeaks::theDataStaysShared()
{
    const QList<AMeasurementValue> data = points({0, 3, 0});
    const QList<AMeasurementValue> copy = data;
    PeakRequest request;
    findPeaks(copy, request);
    QVERIFY(data.isSharedWith(copy));
}

void TestASweepPeaks::memoryDependsOnTheCapacityAlone()
{
    std::vector<double> levels;
    for (int i = 0; i < 200000; ++i)
        levels.push_back(i % 2 * 1e6 + i); // each tooth higher than those before it
    const QList<AMeasurementValue> data = points(levels);
    std::vector<AMeasurementValue> maxima(20);
    std::vector<AMeasurementValue> minima(20);
    for (const double spacingHz : {0.0, 100.0, 1e4, 2e5}) {
        largestAllocation = 0;
        QCOMPARE(ASweep::extractPeaks(data, 0, INT_MAX, maxima.data(), 20, minima.data(), 20, kdBm, hertz(spacingHz)),
                 spacingHz == 2e5 ? 10 : 20);
        QVERIFY2(largestAllocation < 50000, QByteArray::number(static_cast<qulonglong>(largestAllocation)));
    }
}

QTEST_APPLESS_MAIN(TestASweepPeaks)
#include "tst_asweep_peaks.moc"
