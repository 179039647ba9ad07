#include "marker/aspectrummarkerlist.h"

#include "marker/markertraces.h"

#include <cmath>
#include <limits>
#include <random>

using namespace markertest;

namespace {

ASpectrumMarker *add(ASpectrumMarkerList *list, Type type, const AFrequency &target = {})
{
    return list->addMarker(type, 0, target);
}

// "LEVEL@MHZ", "-" for an empty value.
QString text(const ASpectrumMarker *marker)
{
    const AMeasurementValue &value = marker->value();
    return value.isEmpty() ? QStringLiteral("-")
                           : QStringLiteral("%1@%2").arg(value.level).arg(value.frequency.floatValue(AFrequency::MHz));
}

QStringList valuesOf(const ASpectrumMarkerList &list)
{
    QStringList result;
    for (int i = 0; i < list.listcount(); ++i)
        result.append(text(list.at(i)));
    return result;
}

// The value that a TypeStd marker reads.
AMeasurementValue readAt(const QList<AMeasurementValue> &data, const AFrequency &target)
{
    ASpectrumMarkerList list;
    const ASpectrumMarker *marker = add(&list, Std, target);
    update(&list, data);
    return marker->value();
}

// The rule as it stands, pair by pair; the interpolation itself has tests of its own.
int decidingPair(const QList<AMeasurementValue> &data, const AFrequency &target)
{
    for (int i = 0; i + 1 < data.size(); ++i) {
        const AFrequency a = data.at(i).frequency;
        const AFrequency b = data.at(i + 1).frequency;
        if (a == target || b == target || (target > a && target < b))
            return i;
    }
    return -1;
}

} // namespace

class TestASpectrumMarkerListUpdate : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aTraceWithoutMarkersKeepsItsData();
    void anInvalidTraceIsRefused();

    void peakMarkersTakeThePeaksInOrder();
    void theSearchBeginsAtTheSecondPoint();
    void spacingAndUnitReachTheSearch();
    void markersBeyondThePeaksAreEmptiedEachTime();
    void aPeakThatOnlyMovedCountsNoChange();
    void aPeakOfLevelZeroLeavesAnEmptyMarkerEmpty();
    void aMaximumMissingBesideMinimaEmptiesTheMarker();
    void disabledMarkersUseUpTheirPeak();
    void markersOfOtherTracesAreNotTouched();
    void emptyDataEmptiesTheMarkers();

    void aMarkerOutsideTheRangeIsEmptied();
    void aMarkerAtTheEdgeOfTheRangeStays();
    void anEmptiedPeakMarkerCountsTwice();
    void aTargetOutsideTheRangeIsSkipped_data();
    void aTargetOutsideTheRangeIsSkipped();
    void theRangeMayBeAMarkersOwnFrequency();

    void aFrequencyMarkerCountsEveryTime();
    void aPointAtTheTargetIsTakenWhole();
    void theLastPointIsTakenWhole();
    void betweenPointsTheFieldsAreInterpolated();
    void theLeadingWordWraps_data();
    void theLeadingWordWraps();
    void anUnreachableTargetGivesAnEmptyValue_data();
    void anUnreachableTargetGivesAnEmptyValue();
    void ofEqualFrequenciesTheFirstDecides();
    void theFirstMatchingPairDecides_data();
    void theFirstMatchingPairDecides();
    void everyMarkerReadsItsOwnTarget();

    void obsoleteAndUnknownTypesAreReported();
};

void TestASpectrumMarkerListUpdate::aTraceWithoutMarkersKeepsItsData()
{
    ASpectrumMarkerList list;
    QCOMPARE(list.updateMarkerValues(traceOf({1, 9, 1}), 4, megahertz(2), megahertz(6), dBm, AFrequency()), -1);
    QCOMPARE(list.findCenterFrequency(), megahertz(4));
    QCOMPARE(list.findPeakFrequency(4, AFrequency(), Qt::LeftToRight, true), megahertz(2));
    QVERIFY(list.isEmpty());
}

void TestASpectrumMarkerListUpdate::anInvalidTraceIsRefused()
{
    ASpectrumMarkerList list;
    ASpectrumMarker *marker = add(&list, Max);
    list.changeMarkerTrace(marker, 10);
    MessageLog log;
    QCOMPARE(update(&list, traceOf({1, 9, 1}), 10), -1);
    QCOMPARE(update(&list, traceOf({1, 9, 1}), -1), -1);
    QCOMPARE(log.take(), texts({"debug: invalid trace: 10", "debug: invalid trace: -1"}));
    QVERIFY(marker->value().isEmpty());
    QVERIFY(list.findCenterFrequency().isNull());
}

void TestASpectrumMarkerListUpdate::peakMarkersTakeThePeaksInOrder()
{
    ASpectrumMarkerList list;
    for (const Type type : {Max, Max, Max, Min, Min})
        add(&list, type);
    QCOMPARE(update(&list, traceOf({5, 7, 3, 9, 2, 8, 4})), 5);
    QCOMPARE(valuesOf(list), texts({"9@4", "8@6", "7@2", "2@5", "3@3"}));
}

void TestASpectrumMarkerListUpdate::theSearchBeginsAtTheSecondPoint()
{
    ASpectrumMarkerList list;
    add(&list, Max);
    add(&list, Max);
    update(&list, traceOf({99, 1, 5, 1, 7})); // the last point counts
    QCOMPARE(valuesOf(list), texts({"7@5", "5@3"}));
}

void TestASpectrumMarkerListUpdate::spacingAndUnitReachTheSearch()
{
    ASpectrumMarkerList list;
    add(&list, Max);
    add(&list, Max);
    const QList<AMeasurementValue> data = traceOf({0, 9, 1, 8, 1, 1, 7, 1});
    QCOMPARE(list.updateMarkerValues(data, 0, AFrequency(), megahertz(9), dBm, megahertz(3)), 2);
    QCOMPARE(valuesOf(list), texts({"9@2", "7@7"}));

    // 1 W is 30 dBm: by their level in watts the other peak is the better one.
    QList<AMeasurementValue> mixed = traceOf({0, 20, 0, 0, 0});
    mixed[3] = point(1, megahertz(4), W);
    for (AMeasurementValue *valley : {&mixed[2], &mixed[4]})
        *valley = point(0, valley->frequency, W);
    QCOMPARE(list.updateMarkerValues(mixed, 0, AFrequency(), megahertz(9), W, AFrequency()), 2);
    QCOMPARE(valuesOf(list), texts({"1@4", "20@2"}));
}

void TestASpectrumMarkerListUpdate::markersBeyondThePeaksAreEmptiedEachTime()
{
    ASpectrumMarkerList list;
    for (int i = 0; i < 3; ++i)
        add(&list, Max);
    const QList<AMeasurementValue> data = traceOf({1, 9, 1, 8, 1});
    QCOMPARE(update(&list, data), 3);
    QCOMPARE(valuesOf(list), texts({"9@2", "8@4", "-"}));
    QCOMPARE(update(&list, data), 1);
    QCOMPARE(update(&list, data), 1);
}

void TestASpectrumMarkerListUpdate::aPeakThatOnlyMovedCountsNoChange()
{
    ASpectrumMarkerList list;
    add(&list, Max);
    add(&list, Min);
    QCOMPARE(update(&list, traceOf({5, 9, 5, 1, 5, 5, 5})), 2);
    QCOMPARE(update(&list, traceOf({5, 5, 5, 5, 9, 1, 5})), 0);
    QCOMPARE(valuesOf(list), texts({"9@2", "1@4"}));
    QCOMPARE(update(&list, traceOf({5, 5, 5, 5, 9.5, 1, 5})), 1);
    QCOMPARE(valuesOf(list), texts({"9.5@5", "1@4"}));
}

void TestASpectrumMarkerListUpdate::aPeakOfLevelZeroLeavesAnEmptyMarkerEmpty()
{
    ASpectrumMarkerList list;
    add(&list, Max);
    QCOMPARE(update(&list, traceOf({-5, 0, -5})), 0); // the level of the empty value is 0
    QCOMPARE(valuesOf(list), texts({"-"}));
    update(&list, traceOf({-5, -1, -5}));
    QCOMPARE(update(&list, traceOf({-5, 0, -5})), 1);
    QCOMPARE(valuesOf(list), texts({"0@2"}));
}

void TestASpectrumMarkerListUpdate::aMaximumMissingBesideMinimaEmptiesTheMarker()
{
    ASpectrumMarkerList list;
    add(&list, Max);
    add(&list, Max);
    const QList<AMeasurementValue> data = traceOf({9, 1, 5, 1, 9, 9}); // maxima: 9, 5; minima: 1, 1
    update(&list, data);
    QCOMPARE(valuesOf(list), texts({"9@5", "5@3"}));
    QCOMPARE(update(&list, traceOf({9, 1, 5, 0})), 2); // one maximum, two minima
    QCOMPARE(valuesOf(list), texts({"5@3", "-"}));
    QCOMPARE(update(&list, traceOf({9, 1, 5, 0})), 1);
}

void TestASpectrumMarkerListUpdate::disabledMarkersUseUpTheirPeak()
{
    ASpectrumMarkerList list;
    ASpectrumMarker *disabled = add(&list, Max);
    add(&list, Max);
    disabled->setEnabled(false);
    QCOMPARE(update(&list, traceOf({1, 9, 1, 8, 1})), 2);
    QCOMPARE(valuesOf(list), texts({"9@2", "8@4"}));
    QVERIFY(!disabled->isEnabled());
}

void TestASpectrumMarkerListUpdate::markersOfOtherTracesAreNotTouched()
{
    ASpectrumMarkerList list;
    add(&list, Max);
    ASpectrumMarker *other = list.addMarker(Max, 1, AFrequency());
    QCOMPARE(update(&list, traceOf({1, 9, 1})), 1);
    QVERIFY(other->value().isEmpty());
    QCOMPARE(update(&list, traceOf({1, 9, 1, 8, 1}), 1), 1);
    QCOMPARE(text(other), QStringLiteral("9@2")); // each trace begins with its best peak
}

void TestASpectrumMarkerListUpdate::emptyDataEmptiesTheMarkers()
{
    ASpectrumMarkerList list;
    for (const Type type : {Max, Min, Std, Cal})
        add(&list, type, type == Std || type == Cal ? megahertz(2) : AFrequency());
    update(&list, traceOf({1, 9, 5, 2, 3}));
    QVERIFY(!valuesOf(list).contains(QStringLiteral("-")));
    QCOMPARE(update(&list, {}), 4);
    QCOMPARE(valuesOf(list), texts({"-", "-", "-", "-"}));
}

void TestASpectrumMarkerListUpdate::aMarkerOutsideTheRangeIsEmptied()
{
    ASpectrumMarkerList list;
    ASpectrumMarker *below = add(&list, Std, megahertz(2));
    ASpectrumMarker *inside = add(&list, Std, megahertz(3));
    ASpectrumMarker *above = add(&list, Std, megahertz(4));
    const QList<AMeasurementValue> data = traceOf({1, 2, 3, 4, 5});
    update(&list, data);
    QCOMPARE(valuesOf(list), texts({"2@2", "3@3", "4@4"}));
    QCOMPARE(list.updateMarkerValues(data, 0, hertz(2000001), hertz(3999999), dBm, AFrequency()), 3);
    QVERIFY(below->value().isEmpty());
    QCOMPARE(text(inside), QStringLiteral("3@3"));
    QVERIFY(above->value().isEmpty());
    QCOMPARE(list.updateMarkerValues(data, 0, hertz(2000001), hertz(3999999), dBm, AFrequency()), 1);
}

void TestASpectrumMarkerListUpdate::aMarkerAtTheEdgeOfTheRangeStays()
{
    ASpectrumMarkerList list;
    add(&list, Std, megahertz(2));
    add(&list, Std, megahertz(4));
    const QList<AMeasurementValue> data = traceOf({1, 2, 3, 4, 5});
    QCOMPARE(list.updateMarkerValues(data, 0, megahertz(2), megahertz(4), dBm, AFrequency()), 2);
    QCOMPARE(list.updateMarkerValues(data, 0, megahertz(2), megahertz(4), dBm, AFrequency()), 2);
    QCOMPARE(valuesOf(list), texts({"2@2", "4@4"}));
}

void TestASpectrumMarkerListUpdate::anEmptiedPeakMarkerCountsTwice()
{
    ASpectrumMarkerList list;
    add(&list, Max);
    const QList<AMeasurementValue> data = traceOf({1, 9, 1, 8, 1});
    update(&list, data);
    // The peak search knows no range: the marker is emptied and takes the same peak again.
    QCOMPARE(list.updateMarkerValues(data, 0, megahertz(3), megahertz(5), dBm, AFrequency()), 2);
    QCOMPARE(valuesOf(list), texts({"9@2"}));
}

void TestASpectrumMarkerListUpdate::aTargetOutsideTheRangeIsSkipped_data()
{
    QTest::addColumn<qint64>("target");
    QTest::addColumn<int>("changes");
    QTest::newRow("below") << qint64(1999999) << 0;
    QTest::newRow("lower edge") << qint64(2000000) << 1;
    QTest::newRow("upper edge") << qint64(4000000) << 1;
    QTest::newRow("above") << qint64(4000001) << 0;
}

void TestASpectrumMarkerListUpdate::aTargetOutsideTheRangeIsSkipped()
{
    QFETCH(qint64, target);
    for (const Type type : {Std, Cal}) {
        ASpectrumMarkerList list;
        ASpectrumMarker *marker = add(&list, type, hertz(target));
        const AMeasurementValue kept = point(77, megahertz(3));
        marker->setValue(kept);
        QTEST(list.updateMarkerValues(traceOf({1, 2, 3, 4, 5}), 0, megahertz(2), megahertz(4), dBm, AFrequency()),
              "changes");
        QFETCH(int, changes);
        QCOMPARE(marker->value() == kept, changes == 0);
    }
}

void TestASpectrumMarkerListUpdate::theRangeMayBeAMarkersOwnFrequency()
{
    ASpectrumMarkerList list;
    ASpectrumMarker *first = add(&list, Std, megahertz(2));
    ASpectrumMarker *second = add(&list, Std, megahertz(3));
    const QList<AMeasurementValue> data = traceOf({1, 2, 3, 4, 5});
    update(&list, data);
    // The first marker is emptied through the end that is the frequency of the second, and both are skipped or read
    // by the range as it was given.
    const AFrequency &begin = second->value().frequency;
    QCOMPARE(list.updateMarkerValues(data, 0, begin, begin, dBm, AFrequency()), 2);
    QVERIFY(first->value().isEmpty());
    QCOMPARE(text(second), QStringLiteral("3@3"));
}

void TestASpectrumMarkerListUpdate::aFrequencyMarkerCountsEveryTime()
{
    ASpectrumMarkerList list;
    add(&list, Std, megahertz(2));
    add(&list, Cal, megahertz(3));
    const QList<AMeasurementValue> data = traceOf({1, 9, 1});
    QCOMPARE(update(&list, data), 2);
    QCOMPARE(update(&list, data), 2);
    QCOMPARE(valuesOf(list), texts({"9@2", "1@3"}));
}

void TestASpectrumMarkerListUpdate::aPointAtTheTargetIsTakenWhole()
{
    QList<AMeasurementValue> data = traceOf({1, 2, 3});
    data[1] = AMeasurementValue(2, W, megahertz(2), 77, 8.5);
    data[1].leading = Q_UINT64_C(0x1234567890);
    data[1].reserved = 9;
    QVERIFY(readAt(data, megahertz(2)) == data.at(1));
    data.swapItemsAt(0, 1);
    data[0].frequency = megahertz(1);
    data[1].frequency = megahertz(2);
    QVERIFY(readAt(data, megahertz(1)) == data.at(0));
}

void TestASpectrumMarkerListUpdate::theLastPointIsTakenWhole()
{
    QList<AMeasurementValue> data = traceOf({1, 2, 3});
    data[2].reserved = 9;
    QVERIFY(readAt(data, megahertz(3)) == data.at(2));
}

void TestASpectrumMarkerListUpdate::betweenPointsTheFieldsAreInterpolated()
{
    AMeasurementValue a(-40, W, megahertz(10), 100, 1.0);
    AMeasurementValue b(-80, dBm, megahertz(14), 200, 9.0);
    a.reserved = 3;
    b.reserved = 3;
    a.leading |= Q_UINT64_C(7) << 32; // only the low word counts
    const AMeasurementValue value = readAt({a, b}, megahertz(11));
    QCOMPARE(value.level, -50.0);
    QCOMPARE(value.frequency, megahertz(11));
    QCOMPARE(value.trailing, 3.0);
    QCOMPARE(value.leading, Q_UINT64_C(125));
    QCOMPARE(int(value.unit), int(W)); // the lower point's, unconverted
    QCOMPARE(int(value.reserved), 0);
}

void TestASpectrumMarkerListUpdate::theLeadingWordWraps_data()
{
    QTest::addColumn<quint32>("a");
    QTest::addColumn<quint32>("b");
    QTest::addColumn<qint64>("target"); // between 0 and 4 Hz above 10 MHz
    QTest::addColumn<quint32>("leading");
    QTest::newRow("rise") << 100u << 200u << qint64(2) << 150u;
    QTest::newRow("truncated") << 0u << 7u << qint64(1) << 1u;
    QTest::newRow("fall by one") << 1u << 0u << qint64(2) << 2147483648u;           // 1 + 0.5 * (2^32 - 1), truncated
    QTest::newRow("fall") << 200u << 100u << qint64(1) << 1073741999u;              // 200 + 0.25 * (2^32 - 100)
    QTest::newRow("fall near the end") << 200u << 100u << qint64(3) << 3221225597u; // 200 + 0.75 * (2^32 - 100)
    QTest::newRow("sum beyond 32 bits") << 4294967295u << 4294967294u << qint64(2) << 2147483646u;
    QTest::newRow("largest rise") << 0u << 4294967295u << qint64(2) << 2147483647u;
}

void TestASpectrumMarkerListUpdate::theLeadingWordWraps()
{
    QFETCH(quint32, a);
    QFETCH(quint32, b);
    QFETCH(qint64, target);
    const QList<AMeasurementValue> data = {AMeasurementValue(1, 0, hertz(10000000), a, 0),
                                           AMeasurementValue(1, 0, hertz(10000004), b, 0)};
    QFETCH(quint32, leading);
    QCOMPARE(readAt(data, hertz(10000000 + target)).leading, quint64(leading));
}

void TestASpectrumMarkerListUpdate::anUnreachableTargetGivesAnEmptyValue_data()
{
    QTest::addColumn<QList<double>>("levels");
    QTest::addColumn<qint64>("target");
    QTest::newRow("no points") << QList<double>() << qint64(1000000);
    QTest::newRow("one point, at the target") << QList<double>({5}) << qint64(1000000);
    QTest::newRow("below the data") << QList<double>({5, 6}) << qint64(999999);
    QTest::newRow("above the data") << QList<double>({5, 6}) << qint64(2000001);
}

void TestASpectrumMarkerListUpdate::anUnreachableTargetGivesAnEmptyValue()
{
    QFETCH(QList<double>, levels);
    QFETCH(qint64, target);
    ASpectrumMarkerList list;
    ASpectrumMarker *marker = add(&list, Std, hertz(target));
    marker->setValue(point(3, megahertz(1)));
    QCOMPARE(update(&list, traceOf(levels)), 1);
    QVERIFY(marker->value() == AMeasurementValue());
}

void TestASpectrumMarkerListUpdate::ofEqualFrequenciesTheFirstDecides()
{
    QList<AMeasurementValue> data = traceOf({1, 2, 3, 4});
    data[2].frequency = data[1].frequency;
    QCOMPARE(readAt(data, megahertz(2)).level, 2.0);
    data[3].frequency = data[1].frequency;
    QCOMPARE(readAt(data, megahertz(2)).level, 2.0);
    QCOMPARE(readAt(data, hertz(1500000)).level, 1.5);
}

void TestASpectrumMarkerListUpdate::theFirstMatchingPairDecides_data()
{
    QTest::addColumn<int>("sorted"); // 1 ascending, -1 descending, 0 not at all
    QTest::addColumn<int>("points");
    QTest::newRow("ascending, with equal frequencies") << 1 << 40;
    QTest::newRow("descending") << -1 << 40;
    QTest::newRow("not sorted") << 0 << 40;
    QTest::newRow("not sorted, few") << 0 << 4;
}

void TestASpectrumMarkerListUpdate::theFirstMatchingPairDecides()
{
    QFETCH(int, sorted);
    QFETCH(int, points);
    std::mt19937 random(3);
    for (int run = 0; run < 40; ++run) {
        QList<AMeasurementValue> data;
        for (int i = 0; i < points; ++i)
            data.append(point(0, hertz(2 + 2 * (random() % 60))));
        const auto below = [](const AMeasurementValue &a, const AMeasurementValue &b) {
            return a.frequency < b.frequency;
        };
        if (sorted != 0)
            std::sort(data.begin(), data.end(), below);
        if (sorted < 0)
            std::reverse(data.begin(), data.end());
        for (int i = 0; i < points; ++i)
            data[i].level = 1000 + i; // the level names the pair
        for (int f = 1; f < 125; ++f) {
            const AMeasurementValue value = readAt(data, hertz(f));
            const int pair = decidingPair(data, hertz(f));
            QCOMPARE(value.isEmpty(), pair < 0);
            if (pair < 0)
                continue;
            const bool isFirst = data.at(pair).frequency == hertz(f);
            const bool isSecond = !isFirst && data.at(pair + 1).frequency == hertz(f);
            if (isFirst || isSecond) {
                QCOMPARE(value.level, 1000.0 + pair + (isSecond ? 1 : 0));
            } else {
                QVERIFY(value.level > 1000.0 + pair);
                QVERIFY(value.level < 1001.0 + pair);
            }
        }
    }
}

void TestASpectrumMarkerListUpdate::everyMarkerReadsItsOwnTarget()
{
    ASpectrumMarkerList list;
    for (const int tenths : {35, 10, 22, 50, 5, 22, 60})
        add(&list, tenths % 2 ? Cal : Std, hertz(tenths * 100000));
    QCOMPARE(update(&list, traceOf({10, 20, 30, 40, 50})), 7);
    QCOMPARE(valuesOf(list), texts({"10@1", "22@2.2", "50@5", "22@2.2", "-", "35@3.5", "-"}));
}

void TestASpectrumMarkerListUpdate::obsoleteAndUnknownTypesAreReported()
{
    for (const int type : {0, 1, 4, 5, 99, -3}) {
        ASpectrumMarkerList list;
        ASpectrumMarker *marker = add(&list, Std, megahertz(2));
        list.changeMarkerType(marker, static_cast<Type>(type));
        const AMeasurementValue kept = point(5, megahertz(2));
        marker->setValue(kept);
        MessageLog log;
        QCOMPARE(update(&list, traceOf({1, 9, 1})), 0);
        QCOMPARE(log.take(), QStringList(QStringLiteral("debug: unsupported marker type %1").arg(type)));
        QVERIFY(marker->value() == kept);
    }
    // One that is bound to a frequency outside of the range is passed over before it is reported.
    ASpectrumMarkerList list;
    list.changeMarkerType(add(&list, Std, megahertz(200)), ASpectrumMarker::TypeFMax);
    MessageLog log;
    QCOMPARE(list.updateMarkerValues(traceOf({1, 9, 1}), 0, AFrequency(), megahertz(3), dBm, AFrequency()), 0);
    QCOMPARE(log.take(), QStringList());
}

QTEST_APPLESS_MAIN(TestASpectrumMarkerListUpdate)
#include "tst_aspectrummarkerlist_update.moc"
