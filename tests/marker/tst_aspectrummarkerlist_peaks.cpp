#include "marker/aspectrummarkerlist.h"

#include "core/emu.h"
#include "marker/markertraces.h"

#include <cmath>
#include <limits>

using namespace markertest;

// The room for peaks, the steps from peak to peak, and the sum of markers.

namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

// As many maxima and minima as wanted, the best ones first.
QList<AMeasurementValue> comb(int teeth)
{
    QList<double> levels = {0};
    for (int i = 0; i < teeth; ++i)
        levels << 1000 - i << -1000 + i;
    levels << 0;
    return traceOf(levels);
}

int filled(const ASpectrumMarkerList &list, Type type)
{
    int count = 0;
    for (int i = 0; i < list.listcount(); ++i)
        count += list.at(i)->type() == type && !list.at(i)->value().isEmpty() ? 1 : 0;
    return count;
}

void addMany(ASpectrumMarkerList *list, Type type, int count)
{
    for (int i = 0; i < count; ++i)
        list->addMarker(type, 0, AFrequency());
}

ASpectrumMarker *addWith(ASpectrumMarkerList *list, const AMeasurementValue &value, Type type = Max)
{
    ASpectrumMarker *marker = list->addMarker(type, 0, AFrequency());
    marker->setValue(value);
    return marker;
}

} // namespace

class TestASpectrumMarkerListPeaks : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theRoomGrowsWithTheMarkers_data();
    void theRoomGrowsWithTheMarkers();
    void theRoomGrowsByTwoInEachRebuild_data();
    void theRoomGrowsByTwoInEachRebuild();
    void obsoleteTypesMakeRoomToo_data();
    void obsoleteTypesMakeRoomToo();
    void otherTypesNeedNoRoom();
    void aNegativeSizeLeavesTheRoomAlone();
    void aResizeForgetsThePeaksAndNotTheMarkers();
    void withoutRoomForMaximaThereAreNoMinima();
    void minimaComeBackWhenTheyAreResizedToo();
    void clearingRestoresTheRoom();

    void stepsGoToTheBestPeakBeyond_data();
    void stepsGoToTheBestPeakBeyond();
    void stepsReachTheEdgesOfTheTrace();
    void stepsWithoutDataGoNowhere();
    void stepsConsiderTwentyPeaks();
    void stepsConsiderNoMoreThanTwentyPeaks_data();
    void stepsConsiderNoMoreThanTwentyPeaks();
    void stepsToTheLeftOrAnywhereEndAtZeroHertz();
    void stepsCompareInTheUnitOfTheFirstPoint();
    void stepsReachPeaksHoweverNear();
    void aStepFromAPeakLeavesIt();
    void stepsNeedNoMarkers();

    void theCentreIsThatOfTheLastUpdate();

    void aSumIsDirectInPowerAndQuadraticElsewhere_data();
    void aSumIsDirectInPowerAndQuadraticElsewhere();
    void aSumCountsEnabledMaximaWithValues();
    void aSumConvertsTheMarkers();
    void aSumPassesOverLevelsOfZero();
    void aSumKeepsTheOtherMembersOfTheFirst();
    void aSumOfOneTraceAlone();
    void aSumOfNothingIsEmpty();
    void aSumWithoutUnitWarnsOnce();
};

void TestASpectrumMarkerListPeaks::theRoomGrowsWithTheMarkers_data()
{
    QTest::addColumn<int>("count");
    for (const int count : {1, 2, 3, 4, 5, 6, 7, 25})
        QTest::newRow(QByteArray::number(count).constData()) << count;
}

void TestASpectrumMarkerListPeaks::theRoomGrowsWithTheMarkers()
{
    QFETCH(int, count);
    ASpectrumMarkerList list;
    addMany(&list, Max, count);
    addMany(&list, Min, count);
    update(&list, comb(40));
    QCOMPARE(filled(list, Max), count);
    QCOMPARE(filled(list, Min), count);
}

void TestASpectrumMarkerListPeaks::theRoomGrowsByTwoInEachRebuild_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<int>("obsolete");
    QTest::newRow("maxima") << int(Max) << int(ASpectrumMarker::TypePMax);
    QTest::newRow("minima") << int(Min) << int(ASpectrumMarker::TypePMin);
}

void TestASpectrumMarkerListPeaks::theRoomGrowsByTwoInEachRebuild()
{
    QFETCH(int, type);
    const auto peakType = static_cast<Type>(type);
    ASpectrumMarkerList list;
    addMany(&list, peakType, 7);
    list.updateBufferSizes(peakType == Max ? 1 : -1, peakType == Min ? 1 : -1);
    const auto filledAfterUpdate = [&] {
        update(&list, comb(40));
        return filled(list, peakType);
    };
    QCOMPARE(filledAfterUpdate(), 1);
    for (const int room : {3, 5, 7, 7}) {
        list.rebuildMarkerIndices(peakType);
        QCOMPARE(filledAfterUpdate(), room);
    }
}

void TestASpectrumMarkerListPeaks::obsoleteTypesMakeRoomToo_data()
{
    theRoomGrowsByTwoInEachRebuild_data();
}

void TestASpectrumMarkerListPeaks::obsoleteTypesMakeRoomToo()
{
    QFETCH(int, type);
    QFETCH(int, obsolete);
    const auto peakType = static_cast<Type>(type);
    const auto obsoleteType = static_cast<Type>(obsolete);
    ASpectrumMarkerList list;
    addMany(&list, peakType, 8);
    for (int i = 0; i < 3; ++i)
        list.changeMarkerType(list.trace(0)->last(), obsoleteType);
    list.updateBufferSizes(peakType == Max ? 1 : -1, peakType == Min ? 1 : -1);
    for (int rebuild = 0; rebuild < 2; ++rebuild) {
        list.rebuildMarkerIndices(obsoleteType); // three of them
        MessageLog log;                          // they can't be updated
        update(&list, comb(40));
        QCOMPARE(filled(list, peakType), 3);
    }
}

void TestASpectrumMarkerListPeaks::otherTypesNeedNoRoom()
{
    ASpectrumMarkerList list;
    addMany(&list, Max, 2);
    list.updateBufferSizes(1, 1);
    addMany(&list, ASpectrumMarker::TypeStd, 5);
    addMany(&list, ASpectrumMarker::TypeCal, 5);
    update(&list, comb(10));
    QCOMPARE(filled(list, Max), 1);
}

void TestASpectrumMarkerListPeaks::aNegativeSizeLeavesTheRoomAlone()
{
    ASpectrumMarkerList list;
    addMany(&list, Max, 2);
    addMany(&list, Min, 2);
    list.updateBufferSizes(-1, 1);
    update(&list, comb(10));
    QCOMPARE(filled(list, Max), 2);
    QCOMPARE(filled(list, Min), 1);
    list.updateBufferSizes(1, -1);
    update(&list, comb(10));
    QCOMPARE(filled(list, Max), 1);
    QCOMPARE(filled(list, Min), 1);
    list.updateBufferSizes(-5, std::numeric_limits<int>::min());
    update(&list, comb(10));
    QCOMPARE(filled(list, Max), 1);
}

void TestASpectrumMarkerListPeaks::aResizeForgetsThePeaksAndNotTheMarkers()
{
    ASpectrumMarkerList list;
    addMany(&list, Max, 2);
    update(&list, comb(10));
    list.updateBufferSizes(4, 4);
    QCOMPARE(filled(list, Max), 2);
}

void TestASpectrumMarkerListPeaks::withoutRoomForMaximaThereAreNoMinima()
{
    ASpectrumMarkerList list;
    addMany(&list, Min, 2);
    list.updateBufferSizes(0, 2);
    QCOMPARE(update(&list, comb(10)), 2);
    QCOMPARE(filled(list, Min), 0);
    // Room for maxima alone brings peaks, but no minima.
    list.updateBufferSizes(2, -1);
    QCOMPARE(update(&list, comb(10)), 2);
    QCOMPARE(filled(list, Min), 0);
}

void TestASpectrumMarkerListPeaks::minimaComeBackWhenTheyAreResizedToo()
{
    ASpectrumMarkerList list;
    addMany(&list, Min, 2);
    list.updateBufferSizes(0, 2);
    list.updateBufferSizes(2, 2);
    update(&list, comb(10));
    QCOMPARE(filled(list, Min), 2);
    list.updateBufferSizes(2, 0);
    update(&list, comb(10));
    QCOMPARE(filled(list, Min), 0);
}

void TestASpectrumMarkerListPeaks::clearingRestoresTheRoom()
{
    ASpectrumMarkerList list;
    list.updateBufferSizes(0, 0);
    list.clear();
    addMany(&list, Min, 2); // which give room to minima, but need some for maxima
    update(&list, comb(10));
    QCOMPARE(filled(list, Min), 2);
}

void TestASpectrumMarkerListPeaks::stepsGoToTheBestPeakBeyond_data()
{
    QTest::addColumn<int>("direction");
    QTest::addColumn<bool>("maximum");
    QTest::addColumn<qint64>("from");
    QTest::addColumn<qint64>("to");
    const qint64 MHz = 1000000;
    // 5 6 1 9 2 7 0 8 4 at 1 to 9 MHz: maxima 6@2, 9@4, 7@6, 8@8; minima 5@1, 1@3, 2@5, 0@7, 4@9
    QTest::newRow("right, the best and not the nearest") << int(Qt::LeftToRight) << true << 1 * MHz << 4 * MHz;
    QTest::newRow("right of the best") << int(Qt::LeftToRight) << true << 4 * MHz << 8 * MHz;
    QTest::newRow("right of the last") << int(Qt::LeftToRight) << true << 8 * MHz << 0 * MHz;
    QTest::newRow("just left of a peak") << int(Qt::LeftToRight) << true << 8 * MHz - 1 << 8 * MHz;
    QTest::newRow("left, the best") << int(Qt::RightToLeft) << true << 9 * MHz << 4 * MHz;
    QTest::newRow("left of the best") << int(Qt::RightToLeft) << true << 4 * MHz << 2 * MHz;
    QTest::newRow("left of the first") << int(Qt::RightToLeft) << true << 2 * MHz << 0 * MHz;
    QTest::newRow("anywhere else") << int(Qt::LayoutDirectionAuto) << true << 4 * MHz << 8 * MHz;
    QTest::newRow("anywhere") << int(Qt::LayoutDirectionAuto) << true << 0 * MHz << 4 * MHz;
    QTest::newRow("minimum right") << int(Qt::LeftToRight) << false << 1 * MHz << 7 * MHz;
    QTest::newRow("minimum right of the best") << int(Qt::LeftToRight) << false << 7 * MHz << 9 * MHz;
    QTest::newRow("minimum left") << int(Qt::RightToLeft) << false << 7 * MHz << 3 * MHz;
    QTest::newRow("minimum anywhere else") << int(Qt::LayoutDirectionAuto) << false << 7 * MHz << 3 * MHz;
}

void TestASpectrumMarkerListPeaks::stepsGoToTheBestPeakBeyond()
{
    QFETCH(int, direction);
    QFETCH(bool, maximum);
    QFETCH(qint64, from);
    QFETCH(qint64, to);
    ASpectrumMarkerList list;
    update(&list, traceOf({5, 6, 1, 9, 2, 7, 0, 8, 4}), 3);
    QCOMPARE(list.findPeakFrequency(3, hertz(from), static_cast<Qt::LayoutDirection>(direction), maximum), hertz(to));
}

void TestASpectrumMarkerListPeaks::stepsReachTheEdgesOfTheTrace()
{
    ASpectrumMarkerList list;
    update(&list, traceOf({9, 1, 8}));
    QCOMPARE(list.findPeakFrequency(0, megahertz(2), Qt::LeftToRight, true), megahertz(3));
    QCOMPARE(list.findPeakFrequency(0, megahertz(2), Qt::RightToLeft, true), megahertz(1));
}

void TestASpectrumMarkerListPeaks::stepsWithoutDataGoNowhere()
{
    ASpectrumMarkerList list;
    addMany(&list, Max, 1);
    update(&list, traceOf({1, 9, 1}), 0);
    for (const int trace : {1, 9, 10, -1, std::numeric_limits<int>::max()})
        QVERIFY(list.findPeakFrequency(trace, AFrequency(), Qt::LeftToRight, true).isNull());
    update(&list, {}, 0);
    QVERIFY(list.findPeakFrequency(0, AFrequency(), Qt::LeftToRight, true).isNull());
    update(&list, traceOf({5, kNaN, kNaN}), 0);
    QVERIFY(list.findPeakFrequency(0, megahertz(1), Qt::LeftToRight, true).isNull());
}

void TestASpectrumMarkerListPeaks::stepsConsiderTwentyPeaks()
{
    // 25 maxima, each lower than the one before. Beyond `frequency` there are always candidates, but from the lower
    // end of the whole trace only the 20 best count: what differs from the best is the second best.
    ASpectrumMarkerList list;
    update(&list, comb(25));
    QCOMPARE(list.findPeakFrequency(0, megahertz(2), Qt::LayoutDirectionAuto, true), megahertz(4));
    // The range begins at the frequency itself, so the 20 peaks are those beyond it.
    QCOMPARE(list.findPeakFrequency(0, megahertz(44), Qt::LeftToRight, true), megahertz(46));
}

void TestASpectrumMarkerListPeaks::stepsConsiderNoMoreThanTwentyPeaks_data()
{
    QTest::addColumn<int>("maximaAtTheStart");
    QTest::addColumn<AFrequency>("found");
    QTest::newRow("the twentieth is another") << 19 << megahertz(4);
    QTest::newRow("the twenty-first is") << 20 << AFrequency();
}

void TestASpectrumMarkerListPeaks::stepsConsiderNoMoreThanTwentyPeaks()
{
    QFETCH(int, maximaAtTheStart);
    QList<AMeasurementValue> data = {point(0, megahertz(1))};
    for (int i = 0; i < maximaAtTheStart; ++i)
        data << point(9, megahertz(2)) << point(0, megahertz(2));
    data << point(0, megahertz(3)) << point(5, megahertz(4)) << point(0, megahertz(5));
    ASpectrumMarkerList list;
    update(&list, data);
    QTEST(list.findPeakFrequency(0, megahertz(2), Qt::LayoutDirectionAuto, true), "found");
}

void TestASpectrumMarkerListPeaks::stepsToTheLeftOrAnywhereEndAtZeroHertz()
{
    QList<AMeasurementValue> data = {point(0, megahertz(-3)), point(9, megahertz(-2)), point(0, megahertz(-1)),
                                     point(5, megahertz(1)), point(0, megahertz(2))};
    ASpectrumMarkerList list;
    update(&list, data);
    for (const auto direction : {Qt::RightToLeft, Qt::LayoutDirectionAuto}) {
        QCOMPARE(list.findPeakFrequency(0, megahertz(2), direction, true), megahertz(1));
        QVERIFY(list.findPeakFrequency(0, megahertz(1), direction, true).isNull());
    }
    QCOMPARE(list.findPeakFrequency(0, megahertz(-3), Qt::LeftToRight, true), megahertz(-2));
}

void TestASpectrumMarkerListPeaks::stepsCompareInTheUnitOfTheFirstPoint()
{
    // A level of another family is no number in the unit of the search, and so no peak.
    const QList<AMeasurementValue> density = {point(1, megahertz(1), W_m2), point(5, megahertz(2), W_m2),
                                              point(1, megahertz(3), W_m2)};
    const QList<AMeasurementValue> power = {point(1, megahertz(4)), point(9, megahertz(5)), point(1, megahertz(6))};
    ASpectrumMarkerList list;
    update(&list, density + power);
    QCOMPARE(list.findPeakFrequency(0, AFrequency(), Qt::LeftToRight, true), megahertz(2));
    QCOMPARE(list.findPeakFrequency(0, megahertz(2), Qt::LayoutDirectionAuto, true), AFrequency());

    update(&list, traceOf({1, 5, 1}, 200)); // no unit has this number: the levels count as they stand
    QCOMPARE(list.findPeakFrequency(0, AFrequency(), Qt::LeftToRight, true), megahertz(2));
}

void TestASpectrumMarkerListPeaks::stepsReachPeaksHoweverNear()
{
    ASpectrumMarkerList list;
    update(&list, {point(0, hertz(1000)), point(9, hertz(1001)), point(0, hertz(1002)), point(8, hertz(1003)),
                   point(0, hertz(1004))});
    QCOMPARE(list.findPeakFrequency(0, hertz(1001), Qt::LayoutDirectionAuto, true), hertz(1003));
    QCOMPARE(list.findPeakFrequency(0, hertz(1003), Qt::LayoutDirectionAuto, true), hertz(1001));
}

void TestASpectrumMarkerListPeaks::aStepFromAPeakLeavesIt()
{
    ASpectrumMarkerList list;
    update(&list, traceOf({1, 9, 1}));
    for (const auto direction : {Qt::LeftToRight, Qt::RightToLeft, Qt::LayoutDirectionAuto})
        QVERIFY(list.findPeakFrequency(0, megahertz(2), direction, true).isNull());
}

void TestASpectrumMarkerListPeaks::stepsNeedNoMarkers()
{
    ASpectrumMarkerList list;
    QCOMPARE(update(&list, traceOf({1, 9, 1}), 9), -1);
    QCOMPARE(list.findPeakFrequency(9, AFrequency(), Qt::LayoutDirectionAuto, true), megahertz(2));
}

void TestASpectrumMarkerListPeaks::theCentreIsThatOfTheLastUpdate()
{
    ASpectrumMarkerList list;
    QVERIFY(list.findCenterFrequency().isNull());
    list.updateMarkerValues({}, 0, megahertz(10), megahertz(20), dBm, AFrequency());
    QCOMPARE(list.findCenterFrequency(), megahertz(15));
    list.updateMarkerValues({}, 5, megahertz(1), megahertz(2), dBm, AFrequency());
    QCOMPARE(list.findCenterFrequency(), hertz(1500000));
}

void TestASpectrumMarkerListPeaks::aSumIsDirectInPowerAndQuadraticElsewhere_data()
{
    QTest::addColumn<int>("unit");
    QTest::addColumn<double>("sum"); // of 3 and 4
    for (int unit = 0; unit < 18; ++unit)
        QTest::newRow(QByteArray::number(unit).constData()) << unit << (unit == W || unit == W_m2 ? 7.0 : 5.0);
}

void TestASpectrumMarkerListPeaks::aSumIsDirectInPowerAndQuadraticElsewhere()
{
    QFETCH(int, unit);
    ASpectrumMarkerList list;
    addWith(&list, point(3, megahertz(1), unit));
    addWith(&list, point(4, megahertz(2), unit));
    const AMeasurementValue sum = list.getMarkerSum(0, emu_find(unit));
    QTEST(sum.level, "sum");
    QCOMPARE(int(sum.unit), unit);
}

void TestASpectrumMarkerListPeaks::aSumCountsEnabledMaximaWithValues()
{
    ASpectrumMarkerList list;
    addWith(&list, point(3, megahertz(1), W));
    addWith(&list, point(100, megahertz(1), W))->setEnabled(false);
    addWith(&list, AMeasurementValue());
    addWith(&list, point(100, megahertz(1), W), Min);
    addWith(&list, point(100, megahertz(1), W), ASpectrumMarker::TypeStd);
    addWith(&list, point(5, megahertz(1), W));
    QCOMPARE(list.getMarkerSum(0, emu_find(W)).level, 8.0);
}

void TestASpectrumMarkerListPeaks::aSumConvertsTheMarkers()
{
    ASpectrumMarkerList list;
    addWith(&list, point(30, megahertz(1), dBm));
    addWith(&list, point(2, megahertz(1), W));
    const AMeasurementValue sum = list.getMarkerSum(0, emu_find(W));
    QVERIFY(std::fabs(sum.level - 3.0) < 1e-9);
    QCOMPARE(int(sum.unit), int(W));
    QVERIFY(std::isnan(list.getMarkerSum(0, emu_find(W_m2)).level));
}

void TestASpectrumMarkerListPeaks::aSumPassesOverLevelsOfZero()
{
    ASpectrumMarkerList list;
    addWith(&list, point(0, megahertz(1), W));
    addWith(&list, point(5, megahertz(2), W));
    QCOMPARE(list.getMarkerSum(0, emu_find(W)).level, 5.0);
    QCOMPARE(list.getMarkerSum(0, emu_find(W)).frequency, megahertz(2));
}

void TestASpectrumMarkerListPeaks::aSumKeepsTheOtherMembersOfTheFirst()
{
    ASpectrumMarkerList list;
    AMeasurementValue first(3, V, megahertz(7), 55, 6.5);
    first.reserved = 4;
    addWith(&list, first);
    addWith(&list, AMeasurementValue(4, V, megahertz(8), 66, 7.5));
    AMeasurementValue expected = first;
    expected.level = 5;
    QVERIFY(list.getMarkerSum(0, emu_find(V)) == expected);
}

void TestASpectrumMarkerListPeaks::aSumOfOneTraceAlone()
{
    ASpectrumMarkerList list;
    addWith(&list, point(3, megahertz(1), W));
    list.addMarker(Max, 1, AFrequency())->setValue(point(50, megahertz(1), W));
    QCOMPARE(list.getMarkerSum(0, emu_find(W)).level, 3.0);
    QCOMPARE(list.getMarkerSum(1, emu_find(W)).level, 50.0);
    QVERIFY(list.getMarkerSum(2, emu_find(W)).isEmpty());
}

void TestASpectrumMarkerListPeaks::aSumOfNothingIsEmpty()
{
    ASpectrumMarkerList list;
    QVERIFY(list.getMarkerSum(0, emu_find(V)) == AMeasurementValue());
    addWith(&list, AMeasurementValue());
    QVERIFY(list.getMarkerSum(0, emu_find(V)) == AMeasurementValue());
    QVERIFY(list.getMarkerSum(0, emu_find(W)) == AMeasurementValue());
}

void TestASpectrumMarkerListPeaks::aSumWithoutUnitWarnsOnce()
{
    ASpectrumMarkerList list;
    MessageLog log;
    QVERIFY(list.getMarkerSum(0, nullptr).isEmpty());
    addWith(&list, AMeasurementValue());
    QVERIFY(list.getMarkerSum(0, nullptr).isEmpty());
    QCOMPARE(log.take(), QStringList()); // nothing to convert
    addWith(&list, point(3, megahertz(1), W));
    addWith(&list, point(3, megahertz(1), W));
    QVERIFY(list.getMarkerSum(0, nullptr) == AMeasurementValue());
    QCOMPARE(log.take(), texts({"warning: warning: converting to null-pointer unit is undefined"}));
}

QTEST_APPLESS_MAIN(TestASpectrumMarkerListPeaks)
#include "tst_aspectrummarkerlist_peaks.moc"
