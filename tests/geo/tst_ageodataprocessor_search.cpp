#include "geo/processor.h"

#include <QtTest/QtTest>

#include <random>

namespace {

// The look-up as it is defined: three phases that walk along the list of keys, built anew.
AGeoData *searched(const QMultiMap<QDateTime, AGeoData *> &waypoints, const QDateTime &start, const QDateTime &stop,
                   int tolerance)
{
    const QList<QDateTime> keys = waypoints.uniqueKeys();
    const int n = keys.size();
    QVector<qint64> k;
    for (const QDateTime &key : keys)
        k.append(key.toMSecsSinceEpoch());
    const qint64 t0 = start.toMSecsSinceEpoch();
    const qint64 t1 = stop.toMSecsSinceEpoch();
    const qint64 lo = t0 - tolerance;
    const qint64 hi = t1 + tolerance;

    int i = n / 2;
    int step = i;
    while (i >= 0 && i < n - 1) {
        if (k[i] < lo && k[i + 1] > hi)
            break;
        if (step <= 0)
            break;
        step >>= 1;
        i = t1 > k[i] ? i + step : i - step;
    }
    while (i > 0) {
        if (k[i] <= t0 || k[i - 1] < t0)
            break;
        --i;
    }
    while (i < n - 2 && k[i] < t0) {
        if (k[i + 1] >= t1)
            break;
        ++i;
    }
    return k[i] >= lo && k[i] <= hi ? waypoints.value(keys[i]) : nullptr;
}

void addAll(Processor *processor, const QList<qint64> &times)
{
    for (const qint64 time : times)
        processor->addNmeaRecord(nmeaPosition(time));
}

} // namespace

class TestAGeoDataProcessorSearch : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theWaypointOfASpanIsFound_data();
    void theWaypointOfASpanIsFound();
    void theLatestOfEqualTimesIsFound();
    void aLaterRecordIsSeen();
    void aMapThatASubclassChangesIsSeen();
    void timesAtTheEdgeOfTheRangeAreHarmless();
    void everyLookUpGivesWhatTheThreePhasesGive_data();
    void everyLookUpGivesWhatTheThreePhasesGive();
    void aRecordWithoutATimeStandsBeforeTheClocksBegin();
    void everyLookUpBesideARecordWithoutATimeGivesWhatTheThreePhasesGive();
    void manyLookUpsOfWideSpansAreFast();
};

void TestAGeoDataProcessorSearch::theWaypointOfASpanIsFound_data()
{
    QTest::addColumn<QList<qint64>>("times");
    QTest::addColumn<qint64>("start");
    QTest::addColumn<qint64>("stop");
    QTest::addColumn<int>("tolerance");
    QTest::addColumn<qint64>("found"); // -1: null

    using Times = QList<qint64>;
    const Times ten{0, 1000, 2000, 3000, 4000, 5000, 6000, 7000, 8000, 9000};
    QTest::newRow("between two with a wide gap") << Times{0, 10000} << 4000LL << 5000LL << 100 << -1LL;
    QTest::newRow("just before the first") << ten << -300LL << -100LL << 100 << 0LL;
    QTest::newRow("too far before the first") << ten << -300LL << -101LL << 100 << -1LL;
    const Times two{0, 9000};
    QTest::newRow("just behind the last") << two << 9100LL << 9200LL << 100 << 9000LL;
    QTest::newRow("just behind the last of eight") << ten.mid(2) << 9100LL << 9200LL << 100 << 9000LL;
    QTest::newRow("just behind the last of ten, which the steps don't reach") << ten << 9100LL << 9200LL << 100 << -1LL;
    QTest::newRow("too far behind the last") << ten << 9101LL << 9200LL << 100 << -1LL;
    QTest::newRow("a single one within") << Times{500} << 0LL << 1000LL << 0 << 500LL;
    QTest::newRow("a single one at the lower end") << Times{500} << 600LL << 1000LL << 100 << 500LL;
    QTest::newRow("a single one at the upper end") << Times{500} << 0LL << 400LL << 100 << 500LL;
    QTest::newRow("a single one outside") << Times{500} << 601LL << 1000LL << 100 << -1LL;
    QTest::newRow("at the begin of the span") << ten << 3000LL << 3500LL << 0 << 3000LL;
    QTest::newRow("the first of several in the span") << ten << 2500LL << 6500LL << 0 << 3000LL;
    QTest::newRow("behind the span, within the tolerance") << ten << 3200LL << 3800LL << 500 << 4000LL;
    QTest::newRow("before the span, within the tolerance") << ten << 6200LL << 6300LL << 500 << 6000LL;
    QTest::newRow("before the span, from the wrong side") << ten << 3200LL << 3300LL << 500 << -1LL;
    QTest::newRow("two, the span at the second") << Times{0, 1000} << 900LL << 1100LL << 0 << 1000LL;
    QTest::newRow("negative tolerance") << ten << 2500LL << 3500LL << -600 << -1LL;
    QTest::newRow("the whole drive") << ten << -1000LL << 20000LL << 0 << 0LL;
}

void TestAGeoDataProcessorSearch::theWaypointOfASpanIsFound()
{
    QFETCH(QList<qint64>, times);
    QFETCH(qint64, start);
    QFETCH(qint64, stop);
    QFETCH(int, tolerance);
    QFETCH(qint64, found);
    Processor processor(nullptr);
    addAll(&processor, times);
    const AGeoData *waypoint = processor.findWaypoint(at(start), at(stop), tolerance);
    QCOMPARE(waypoint ? at(0).msecsTo(waypoint->recordTime) : -1, found);
    QCOMPARE(waypoint, searched(processor.m_waypoints, at(start), at(stop), tolerance));
}

void TestAGeoDataProcessorSearch::theLatestOfEqualTimesIsFound()
{
    Processor processor(nullptr);
    addAll(&processor, {0, 1000, 2000, 1000, 1000});
    const QList<AGeoData *> ofOneTime = QMultiMap<QDateTime, AGeoData *>(processor.m_waypoints).values(at(1000));
    QCOMPARE(ofOneTime.size(), 3);
    QCOMPARE(processor.findWaypoint(at(1000), at(1100), 0), ofOneTime.first());
}

void TestAGeoDataProcessorSearch::aLaterRecordIsSeen()
{
    Processor processor(nullptr);
    addAll(&processor, {0});
    QVERIFY(!processor.findWaypoint(at(5000), at(5000), 10));
    addAll(&processor, {5000});
    const AGeoData *first = processor.findWaypoint(at(5000), at(5000), 10);
    QVERIFY(first);
    addAll(&processor, {5000});
    QVERIFY(processor.findWaypoint(at(5000), at(5000), 10) != first);
}

void TestAGeoDataProcessorSearch::aMapThatASubclassChangesIsSeen()
{
    Processor processor(nullptr);
    addAll(&processor, {0, 1000});
    QVERIFY(processor.findWaypoint(at(0), at(0), 0));
    qDeleteAll(processor.m_waypoints);
    processor.m_waypoints.clear();
    QVERIFY(!processor.findWaypoint(at(0), at(0), 0));
    processor.m_waypoints.insert(at(7), new AGeoData(position(7)));
    QVERIFY(!processor.findWaypoint(at(0), at(0), 0));
    QVERIFY(processor.findWaypoint(at(7), at(7), 0));
    addAll(&processor, {9});
    qDeleteAll(processor.m_waypoints);
    processor.m_waypoints.clear();
    QVERIFY(!processor.findWaypoint(at(7), at(9), 0));
}

void TestAGeoDataProcessorSearch::timesAtTheEdgeOfTheRangeAreHarmless()
{
    const QDateTime first = QDateTime::fromMSecsSinceEpoch(std::numeric_limits<qint64>::min(), Qt::UTC);
    const QDateTime last = QDateTime::fromMSecsSinceEpoch(std::numeric_limits<qint64>::max(), Qt::UTC);
    Processor processor(nullptr);
    addAll(&processor, {0, 1});
    QVERIFY(processor.findWaypoint(first, last, std::numeric_limits<int>::max()));
    QVERIFY(!processor.findWaypoint(last, last, std::numeric_limits<int>::max()));
    QVERIFY(!processor.findWaypoint(first, first, std::numeric_limits<int>::max()));
    QVERIFY(!processor.findWaypoint(last, first, std::numeric_limits<int>::min()));
    processor.findWaypoint(QDateTime(), QDateTime(), 0);
}

void TestAGeoDataProcessorSearch::everyLookUpGivesWhatTheThreePhasesGive_data()
{
    QTest::addColumn<int>("maxCount");
    QTest::addColumn<int>("maxSpan");
    QTest::newRow("few") << 6 << 20;
    QTest::newRow("some") << 40 << 100;
    QTest::newRow("many, narrow spans") << 300 << 20;
    QTest::newRow("many, wide spans") << 300 << 5000;
}

void TestAGeoDataProcessorSearch::everyLookUpGivesWhatTheThreePhasesGive()
{
    QFETCH(int, maxCount);
    QFETCH(int, maxSpan);
    std::mt19937 random(7);
    const auto upTo = [&random](int limit) { return static_cast<int>(random() % static_cast<unsigned>(limit + 1)); };
    int found = 0;
    for (int round = 0; round < 100; ++round) {
        Processor processor(nullptr);
        const int count = 1 + upTo(maxCount - 1);
        const int gap = 1 + upTo(15); // narrow gaps give equal times
        for (int i = 0; i < count; ++i)
            addAll(&processor, {upTo(count * gap)});
        for (int query = 0; query < 200; ++query) {
            const int start = upTo(count * gap + 40) - 20;
            const int stop = start + upTo(maxSpan + 3) - 3; // some end before they begin
            const int tolerance = upTo(12) - 2;
            const AGeoData *expected = searched(processor.m_waypoints, at(start), at(stop), tolerance);
            const AGeoData *actual = processor.findWaypoint(at(start), at(stop), tolerance);
            found += actual ? 1 : 0;
            if (actual != expected) {
                QFAIL(qPrintable(QString("%1 keys, from %2 to %3, tolerance %4")
                                     .arg(processor.waypointTimes().size())
                                     .arg(start)
                                     .arg(stop)
                                     .arg(tolerance)));
            }
        }
    }
    QVERIFY(found > 1000);
}

namespace {

QDateTime atEpoch(qint64 milliseconds)
{
    return QDateTime::fromMSecsSinceEpoch(milliseconds, Qt::UTC);
}

// In milliseconds it is 0, wherever the test runs.
QDateTime noTimeUtc()
{
    QDateTime noTime;
    noTime.setTimeSpec(Qt::UTC);
    return noTime;
}

void addAt(Processor *processor, const QDateTime &time)
{
    AGeoData record = nmeaPosition(0);
    record.recordTime = time;
    processor->addNmeaRecord(record);
}

} // namespace

// A receiver whose clock isn't set counts from the epoch on, which is the number of no time, too.
void TestAGeoDataProcessorSearch::aRecordWithoutATimeStandsBeforeTheClocksBegin()
{
    Processor processor(nullptr);
    addAt(&processor, QDateTime());
    addAt(&processor, atEpoch(0));
    QCOMPARE(processor.waypointTimes().size(), 2);
    const AGeoData *found = processor.findWaypoint(atEpoch(0), atEpoch(100), 0);
    QVERIFY(found);
    QCOMPARE(found->recordTime, atEpoch(0));

    addAt(&processor, noTimeUtc());
    QCOMPARE(processor.waypointTimes().size(), 2);
    QCOMPARE(processor.findWaypoint(atEpoch(0), atEpoch(100), 0), found);
}

void TestAGeoDataProcessorSearch::everyLookUpBesideARecordWithoutATimeGivesWhatTheThreePhasesGive()
{
    std::mt19937 random(11);
    const auto between = [&random](int lowest, int highest) {
        return lowest + static_cast<int>(random() % static_cast<unsigned>(highest - lowest + 1));
    };
    int found = 0;
    int withoutTime = 0;
    for (int round = 0; round < 400; ++round) {
        Processor processor(nullptr);
        addAt(&processor, noTimeUtc());
        const int count = between(0, 14);
        const int first = between(-30, 0);
        for (int i = 0; i < count; ++i)
            addAt(&processor, atEpoch(between(first, first + 30)));
        for (int query = 0; query < 100; ++query) {
            const int start = between(-35, 35);
            const int stop = start + between(-3, 20);
            const int tolerance = between(-2, 10);
            const AGeoData *expected = searched(processor.m_waypoints, atEpoch(start), atEpoch(stop), tolerance);
            const AGeoData *actual = processor.findWaypoint(atEpoch(start), atEpoch(stop), tolerance);
            QVERIFY2(actual == expected, qPrintable(QString("%1 keys from %2, span from %3 to %4, tolerance %5")
                                                        .arg(processor.waypointTimes().size())
                                                        .arg(first)
                                                        .arg(start)
                                                        .arg(stop)
                                                        .arg(tolerance)));
            found += actual ? 1 : 0;
            withoutTime += actual && !actual->recordTime.isValid() ? 1 : 0;
        }
    }
    QVERIFY(found > 1000);
    QVERIFY(withoutTime > 100);
}

// A walk along the keys would take 10^9 steps here.
void TestAGeoDataProcessorSearch::manyLookUpsOfWideSpansAreFast()
{
    Processor processor(nullptr);
    for (int i = 0; i < 20000; ++i)
        addAll(&processor, {i * 1000LL});
    const CpuClock clock;
    int found = 0;
    for (int i = 0; i < 100000; ++i)
        found += processor.findWaypoint(at(i * 10LL), at(i * 10LL + 19000000), 0) ? 1 : 0;
    QCOMPARE(found, 100000);
    QVERIFY2(clock.seconds() < 10, qPrintable(QString::number(clock.seconds())));
}

QTEST_GUILESS_MAIN(TestAGeoDataProcessorSearch)
#include "tst_ageodataprocessor_search.moc"
