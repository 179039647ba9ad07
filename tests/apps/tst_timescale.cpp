#include "apps/aveldoran/recordedtimes.h"
#include "apps/aveldoran/timescale.h"

#include <QtTest/QtTest>

namespace {

constexpr qint64 kSecond = 1000;
constexpr qint64 kMinute = 60 * kSecond;
constexpr qint64 kHour = 60 * kMinute;
constexpr qint64 kDay = 24 * kHour;
constexpr qint64 kBegin = 1715932800000; // 2024-05-17, 08:00:00 UTC
constexpr int kDivisions = 10;

} // namespace

// The time axis of a waterfall: its ticks, and what the sweeps take of it.
class TestTimeScale : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void ticksStandAtRoundTimes_data();
    void ticksStandAtRoundTimes();
    void anySpanHasAFewTicks();
    void theTitleNamesTheDates_data();
    void theTitleNamesTheDates();

    void sweepsFollowEachOther();
    void theFirstSweepHasItsOwnBegin_data();
    void theFirstSweepHasItsOwnBegin();
    void aPauseIsNoSweep();
    void sweepsAtEqualTimesAreAnAxis();
    void timesThatAreNoAxis_data();
    void timesThatAreNoAxis();
};

void TestTimeScale::ticksStandAtRoundTimes_data()
{
    QTest::addColumn<qint64>("begin");
    QTest::addColumn<qint64>("span");
    QTest::addColumn<qint64>("step");
    QTest::addColumn<QString>("first");

    QTest::newRow("milliseconds") << kBegin + 3 << qint64(20) << qint64(2) << "08:00:00.004";
    QTest::newRow("a second") << kBegin << kSecond << qint64(100) << "08:00:00.000";
    QTest::newRow("a minute") << kBegin + 1 << kMinute << 10 * kSecond << "08:00:10";
    QTest::newRow("two minutes") << kBegin << 2 * kMinute << 20 * kSecond << "08:00:00";
    QTest::newRow("half an hour") << kBegin - 1 << kHour / 2 << 5 * kMinute << "08:00";
    QTest::newRow("a day") << kBegin << kDay << 3 * kHour << "09:00";
    QTest::newRow("two days") << kBegin << 2 * kDay << 6 * kHour << "05-17 12:00";
    QTest::newRow("a month") << kBegin << 30 * kDay << 5 * kDay << "2024-05-22";
    QTest::newRow("before the epoch") << -kBegin + 1 << kMinute << 10 * kSecond << "16:00:10";
}

void TestTimeScale::ticksStandAtRoundTimes()
{
    QFETCH(qint64, begin);
    QFETCH(qint64, span);
    QFETCH(qint64, step);
    QFETCH(QString, first);
    const TimeScale scale = timeScale(begin, begin + span, kDivisions);
    QVERIFY(scale.ticks.size() >= 2);
    for (int i = 0; i < scale.ticks.size(); ++i) {
        QCOMPARE(scale.ticks[i] % step, qint64(0));
        QCOMPARE(scale.ticks[i], scale.ticks[0] + i * step);
    }
    QVERIFY(scale.ticks.first() >= begin && scale.ticks.first() < begin + step);
    QVERIFY(scale.ticks.last() <= begin + span && scale.ticks.last() > begin + span - step);
    QCOMPARE(scale.label(scale.ticks.first()), first);
}

void TestTimeScale::anySpanHasAFewTicks()
{
    for (qint64 span = 10; span < qint64(1) << 54; span = span * 3 / 2) {
        const int ticks = timeScale(kBegin - span / 2, kBegin + span / 2, kDivisions).ticks.size();
        QVERIFY2(ticks >= 2 && ticks <= kDivisions + 1, QByteArray::number(span));
    }
    QVERIFY(timeScale(kBegin, kBegin + 1, kDivisions).ticks.size() == 2);
}

void TestTimeScale::theTitleNamesTheDates_data()
{
    QTest::addColumn<qint64>("span");
    QTest::addColumn<QString>("title");

    QTest::newRow("a minute") << kMinute << "Time (UTC), 2024-05-17";
    QTest::newRow("until midnight") << 16 * kHour << "Time (UTC), 2024-05-17";
    QTest::newRow("beyond it") << 16 * kHour + 1 << "Time (UTC), 2024-05-17 to 2024-05-18";
}

void TestTimeScale::theTitleNamesTheDates()
{
    QFETCH(qint64, span);
    QFETCH(QString, title);
    QCOMPARE(timeScale(kBegin, kBegin + span, kDivisions).title, title);
}

void TestTimeScale::sweepsFollowEachOther()
{
    const RecordedTimes times(0, {10, 21, 29});
    QVERIFY(times.areAnAxis());
    QCOMPARE(times.beginMs(), qint64(0));
    QCOMPARE(times.endMs(), qint64(29));
    QCOMPARE(times.beginMs(1), qint64(10));
    QCOMPARE(times.endMs(1), qint64(21));
    QCOMPARE(times.beginMs(2), qint64(21));
}

void TestTimeScale::theFirstSweepHasItsOwnBegin_data()
{
    QTest::addColumn<qint64>("first");
    QTest::addColumn<qint64>("begin");

    QTest::newRow("known") << qint64(97) << qint64(97);
    QTest::newRow("unknown") << RecordedTimes::kUnknown << qint64(90);
    QTest::newRow("after its end") << qint64(101) << qint64(90);
    QTest::newRow("much too early") << qint64(0) << qint64(90);
}

void TestTimeScale::theFirstSweepHasItsOwnBegin()
{
    QFETCH(qint64, first);
    QFETCH(qint64, begin);
    QCOMPARE(RecordedTimes(first, {100, 110, 120}).beginMs(), begin);
}

void TestTimeScale::aPauseIsNoSweep()
{
    const RecordedTimes times(0, {10, 20, 30, 60, 110, 120});
    QVERIFY(times.areAnAxis());
    QCOMPARE(times.beginMs(3), qint64(30)); // slow, and no pause
    const RecordedTimes paused(0, {10, 20, 30, 40, 150, 160});
    QCOMPARE(paused.beginMs(4), qint64(140));
}

void TestTimeScale::sweepsAtEqualTimesAreAnAxis()
{
    const RecordedTimes times(0, {10, 10, 20, 20, 30, 30});
    QVERIFY(times.areAnAxis());
    QCOMPARE(times.beginMs(2), qint64(10));
    QCOMPARE(times.endMs(2), qint64(20));
    QCOMPARE(times.beginMs(3), qint64(20));
}

void TestTimeScale::timesThatAreNoAxis_data()
{
    QTest::addColumn<QVector<qint64>>("times");

    QTest::newRow("none") << QVector<qint64>();
    QTest::newRow("one") << QVector<qint64>({5});
    QTest::newRow("all equal") << QVector<qint64>({5, 5, 5});
    QTest::newRow("backwards") << QVector<qint64>({5, 4});
    QTest::newRow("nearly all pauses") << QVector<qint64>({0, 10, 20, 30, 40, 50, 60, 70, 80, 1000000});
}

void TestTimeScale::timesThatAreNoAxis()
{
    QFETCH(QVector<qint64>, times);
    QVERIFY(!RecordedTimes(0, times).areAnAxis());
    QVERIFY(!RecordedTimes(RecordedTimes::kUnknown, times).areAnAxis());
}

QTEST_GUILESS_MAIN(TestTimeScale)
#include "tst_timescale.moc"
