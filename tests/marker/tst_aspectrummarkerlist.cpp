#include "marker/aspectrummarkerlist.h"

#include "marker/markertraces.h"

#include <QtCore/QSettings>
#include <QtCore/QTemporaryDir>

#include <limits>

using namespace markertest;

namespace {

ASpectrumMarker *add(ASpectrumMarkerList *list, Type type, int trace)
{
    return list->addMarker(type, trace, AFrequency());
}

// allMarkers and all() agree.
bool listsAgree(const ASpectrumMarkerList &list)
{
    const QList<ASpectrumMarker *> all = list.all();
    bool agree = all.size() == list.listcount();
    for (int i = 0; agree && i < all.size(); ++i)
        agree = list.at(i) == all.at(i) && list.indexOf(all.at(i)) == i && list.containsMarker(all.at(i));
    return agree;
}

} // namespace

class TestASpectrumMarkerList : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aNewListIsEmpty();

    void aMarkerIsAdded();
    void invalidTracesAreRefused_data();
    void invalidTracesAreRefused();
    void obsoleteTypesAreRefused_data();
    void obsoleteTypesAreRefused();
    void theTraceIsCheckedBeforeTheType();
    void aFrequencyOnAPeakMarkerIsReportedAndKept();
    void aFrequencyOnAFrequencyMarkerIsNotReported();
    void anUnknownTypeIsAddedWithoutFamily();

    void numbersRunOverAllTracesOfOneType();
    void numbersFollowTheTraceBeforeTheAge();
    void aTraceIsSortedByTypeAndNumber();
    void allIsByFamilyThenTraceThenNumber();
    void familiesFollowFromTheType_data();
    void familiesFollowFromTheType();

    void removingRenumbersTheRest();
    void removingTheLastMarkerForgetsTheTrace();
    void removingAReferenceClearsItEverywhere();
    void removingWhatIsNotHeldFails();

    void changingTheTypeMakesTheMarkerTheLastOfIt();
    void changingTheTypeMakesTheMarkerTheLastOfItsTraceAlone();
    void changingTheTypeKeepsAllElse();
    void changingTheTypeKeepsTheTraceKnown();
    void changingToAnObsoleteTypeIsAllowed();
    void changingTheTypeOfAForeignMarkerDoesNothing();

    void changingTheTraceMovesTheMarker();
    void changingTheTraceForgetsAnEmptiedTrace();
    void changingTheTraceSortsByTheOldNumber();
    void changingTheTraceChecksNoRange();
    void changingTheTraceOfAForeignMarkerDoesNothing();

    void clearingForgetsMarkersCountersAndName();
    void clearingRestartsTheCounters();
    void rebuildingAnUnusedTypeChangesNothing();
    void thePositionOfAForeignMarkerIsNone();
};

void TestASpectrumMarkerList::aNewListIsEmpty()
{
    const ASpectrumMarkerList list;
    QVERIFY(list.isEmpty());
    QCOMPARE(list.listcount(), 0);
    QVERIFY(list.all().isEmpty());
    QVERIFY(!list.hasTrace(0));
    QVERIFY(!list.trace(0));
    QCOMPARE(list.setupName(), QString());
}

void TestASpectrumMarkerList::aMarkerIsAdded()
{
    ASpectrumMarkerList list;
    MessageLog log;
    ASpectrumMarker *marker = list.addMarker(Max, 3, AFrequency());
    QVERIFY(marker);
    QCOMPARE(log.take(), QStringList());
    QCOMPARE(marker->type(), Max);
    QCOMPARE(marker->trace(), 3);
    QCOMPARE(marker->index(), 0);
    QVERIFY(marker->value().isEmpty());
    QCOMPARE(static_cast<int>(marker->displayOptions()), 25);
    QVERIFY(!list.isEmpty());
    QVERIFY(list.hasTrace(3));
    QVERIFY(!list.hasTrace(0));
    QCOMPARE(*list.trace(3), QList<ASpectrumMarker *>({marker}));
    QCOMPARE(list.at(0), marker);
    QVERIFY(listsAgree(list));
}

void TestASpectrumMarkerList::invalidTracesAreRefused_data()
{
    QTest::addColumn<int>("trace");
    QTest::newRow("10") << 10;
    QTest::newRow("-1") << -1;
    QTest::newRow("largest") << std::numeric_limits<int>::max();
}

void TestASpectrumMarkerList::invalidTracesAreRefused()
{
    QFETCH(int, trace);
    ASpectrumMarkerList list;
    MessageLog log;
    QVERIFY(!list.addMarker(Max, trace, AFrequency()));
    QCOMPARE(log.take(), QStringList(QStringLiteral("debug: invalid trace: %1").arg(trace)));
    QVERIFY(list.isEmpty());
    QVERIFY(add(&list, Max, 0) && add(&list, Max, 9));
    QCOMPARE(list.at(0)->index(), 0);
    QCOMPARE(log.take(), QStringList());
}

void TestASpectrumMarkerList::obsoleteTypesAreRefused_data()
{
    QTest::addColumn<int>("type");
    for (const int type : {0, 1, 4, 5})
        QTest::newRow(QByteArray::number(type).constData()) << type;
}

void TestASpectrumMarkerList::obsoleteTypesAreRefused()
{
    QFETCH(int, type);
    ASpectrumMarkerList list;
    MessageLog log;
    QVERIFY(!list.addMarker(static_cast<Type>(type), 0, megahertz(1)));
    QCOMPARE(log.take(), QStringList(QStringLiteral("debug: obsolete marker type: %1").arg(type)));
    QVERIFY(list.isEmpty());
}

void TestASpectrumMarkerList::theTraceIsCheckedBeforeTheType()
{
    ASpectrumMarkerList list;
    MessageLog log;
    QVERIFY(!list.addMarker(ASpectrumMarker::TypePMax, 11, megahertz(1)));
    QCOMPARE(log.take(), QStringList(QStringLiteral("debug: invalid trace: 11")));
}

void TestASpectrumMarkerList::aFrequencyOnAPeakMarkerIsReportedAndKept()
{
    ASpectrumMarkerList list;
    MessageLog log;
    for (const Type type : {Max, Min}) {
        for (const AFrequency &target : {megahertz(1), megahertz(-1)}) {
            const ASpectrumMarker *marker = list.addMarker(type, 0, target);
            QVERIFY(marker);
            QVERIFY(marker->targetFrequency() == target);
            QCOMPARE(log.take(),
                     QStringList(QStringLiteral("debug: setting frequency on non-frequency markers is undefined")));
        }
    }
}

void TestASpectrumMarkerList::aFrequencyOnAFrequencyMarkerIsNotReported()
{
    ASpectrumMarkerList list;
    MessageLog log;
    QVERIFY(list.addMarker(Std, 0, megahertz(1))->targetFrequency() == megahertz(1));
    QVERIFY(list.addMarker(Cal, 0, megahertz(2))->targetFrequency() == megahertz(2));
    QVERIFY(list.addMarker(Cal, 0, AFrequency())->targetFrequency().isNull());
    QCOMPARE(log.take(), QStringList());
}

void TestASpectrumMarkerList::anUnknownTypeIsAddedWithoutFamily()
{
    ASpectrumMarkerList list;
    add(&list, Max, 0);
    for (int i = 0; i < 3; ++i)
        QVERIFY(add(&list, static_cast<Type>(99), 0));
    QVERIFY(add(&list, static_cast<Type>(-5), 1));
    QCOMPARE(namesOf(list.all()), texts({"1 %2", "2 %2", "3 %2", "1 %2", "Max 1"}));
    QCOMPARE(namesOnTrace(list, 0), texts({"Max 1", "1 %2", "2 %2", "3 %2"}));
    QVERIFY(listsAgree(list));
    QCOMPARE(list.removeMarker(list.at(0)), 0);
    QCOMPARE(list.listcount(), 4);
}

void TestASpectrumMarkerList::numbersRunOverAllTracesOfOneType()
{
    ASpectrumMarkerList list;
    add(&list, Max, 0);
    add(&list, Max, 2);
    add(&list, Max, 2);
    add(&list, Min, 2);
    QCOMPARE(namesOnTrace(list, 0), texts({"Max 1"}));
    QCOMPARE(namesOnTrace(list, 2), texts({"Max 2", "Max 3", "Min 1"}));
}

void TestASpectrumMarkerList::numbersFollowTheTraceBeforeTheAge()
{
    ASpectrumMarkerList list;
    const ASpectrumMarker *older = add(&list, Max, 1);
    QCOMPARE(older->index(), 0);
    const ASpectrumMarker *younger = add(&list, Max, 0);
    QCOMPARE(older->index(), 1);
    QCOMPARE(younger->index(), 0);
}

void TestASpectrumMarkerList::aTraceIsSortedByTypeAndNumber()
{
    ASpectrumMarkerList list;
    for (const Type type : {Cal, Max, Std, Min, Max, Cal, Std, Min})
        add(&list, type, 4);
    QCOMPARE(namesOnTrace(list, 4), texts({"Max 1", "Max 2", "Min 1", "Min 2", "Std 1", "Std 2", "Cal 1", "Cal 2"}));
}

void TestASpectrumMarkerList::allIsByFamilyThenTraceThenNumber()
{
    ASpectrumMarkerList list;
    for (const int trace : {5, 0})
        for (const Type type : {Cal, Std, Min, Max})
            add(&list, type, trace);
    add(&list, Max, 0);
    QStringList order;
    const QList<ASpectrumMarker *> markers = list.all();
    for (const ASpectrumMarker *marker : markers)
        order.append(QStringLiteral("%1@%2").arg(marker->name()).arg(marker->trace()));
    QCOMPARE(order, texts({"Max 1@0", "Max 2@0", "Max 3@5", "Min 1@0", "Min 2@5", "Std 1@0", "Std 2@5", "Cal 1@0",
                           "Cal 2@5"}));
    QVERIFY(listsAgree(list));
}

void TestASpectrumMarkerList::familiesFollowFromTheType_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<int>("family");
    const int families[] = {1, 2, 1, 2, 1, 2, 3, 4};
    for (int type = 0; type < 8; ++type)
        QTest::newRow(QByteArray::number(type).constData()) << type << families[type];
    QTest::newRow("8") << 8 << -1;
    QTest::newRow("-1") << -1 << -1;
}

void TestASpectrumMarkerList::familiesFollowFromTheType()
{
    QFETCH(int, type);
    ASpectrumMarkerList list;
    ASpectrumMarker marker(static_cast<Type>(type));
    QTEST(list.counterIndex(&marker), "family");
}

void TestASpectrumMarkerList::removingRenumbersTheRest()
{
    ASpectrumMarkerList list;
    add(&list, Max, 0);
    ASpectrumMarker *second = add(&list, Max, 0);
    ASpectrumMarker *third = add(&list, Max, 1);
    QCOMPARE(list.removeMarker(second), 0);
    QCOMPARE(third->index(), 1);
    QCOMPARE(list.listcount(), 2);
    QVERIFY(listsAgree(list));
    QCOMPARE(add(&list, Max, 1)->index(), 2);
}

void TestASpectrumMarkerList::removingTheLastMarkerForgetsTheTrace()
{
    ASpectrumMarkerList list;
    add(&list, Max, 0);
    ASpectrumMarker *only = add(&list, Max, 7);
    QCOMPARE(list.removeMarker(only), 0);
    QVERIFY(!list.hasTrace(7));
    QVERIFY(!list.trace(7));
    QVERIFY(!list.isEmpty());
    QCOMPARE(list.removeMarker(list.at(0)), 0);
    QVERIFY(list.isEmpty());
}

void TestASpectrumMarkerList::removingAReferenceClearsItEverywhere()
{
    ASpectrumMarkerList list;
    ASpectrumMarker *reference = add(&list, Std, 0);
    ASpectrumMarker *kept = add(&list, Std, 0);
    ASpectrumMarker *first = add(&list, Max, 0);
    ASpectrumMarker *second = add(&list, Cal, 5);
    ASpectrumMarker *third = add(&list, Cal, 5);
    reference->setReferenceMarker(reference);
    first->setReferenceMarker(reference);
    second->setReferenceMarker(reference);
    third->setReferenceMarker(kept);
    first->setValue(point(-1, megahertz(1)));
    reference->setValue(point(-2, megahertz(1)));
    QCOMPARE(list.removeMarker(reference), 0);
    QVERIFY(!first->referenceMarker());
    QVERIFY(!second->referenceMarker());
    QCOMPARE(third->referenceMarker(), kept);
    QCOMPARE(first->deltaAsString(nullptr, nullptr, true), QStringLiteral("-"));
}

void TestASpectrumMarkerList::removingWhatIsNotHeldFails()
{
    ASpectrumMarkerList list;
    QCOMPARE(list.removeMarker(nullptr), -1);
    list.changeMarkerType(nullptr, ASpectrumMarker::TypeMin);
    list.changeMarkerTrace(nullptr, 1);
    ASpectrumMarker foreign(Max);
    QCOMPARE(list.removeMarker(&foreign), -1);
    add(&list, Max, 0);
    QCOMPARE(list.removeMarker(&foreign), -1);
    QCOMPARE(list.listcount(), 1);
}

void TestASpectrumMarkerList::changingTheTypeMakesTheMarkerTheLastOfIt()
{
    ASpectrumMarkerList list;
    ASpectrumMarker *first = add(&list, Max, 0);
    ASpectrumMarker *second = add(&list, Max, 0);
    add(&list, Min, 0);
    add(&list, Std, 0);
    list.changeMarkerType(first, Min);
    QCOMPARE(second->index(), 0);
    QCOMPARE(first->index(), 1);
    QCOMPARE(namesOnTrace(list, 0), texts({"Max 1", "Min 1", "Min 2", "Std 1"}));
    QCOMPARE(list.trace(0)->at(2), first);
    QVERIFY(listsAgree(list));
    QCOMPARE(add(&list, Max, 0)->index(), 1);
    QCOMPARE(add(&list, Min, 0)->index(), 2);

    list.changeMarkerType(second, Max); // to the type that it has: it only becomes the last
    QCOMPARE(second->index(), 1);
}

void TestASpectrumMarkerList::changingTheTypeMakesTheMarkerTheLastOfItsTraceAlone()
{
    ASpectrumMarkerList list;
    ASpectrumMarker *onEarlierTrace = add(&list, Max, 0);
    ASpectrumMarker *onItsTrace = add(&list, Max, 2);
    ASpectrumMarker *onLaterTrace = add(&list, Max, 3);
    ASpectrumMarker *onLastTrace = add(&list, Max, 9);
    ASpectrumMarker *changed = add(&list, Min, 2);
    list.changeMarkerType(changed, Max);
    const QList<ASpectrumMarker *> order{onEarlierTrace, onItsTrace, changed, onLaterTrace, onLastTrace};
    QCOMPARE(list.all(), order);
    for (int i = 0; i < order.size(); ++i)
        QCOMPARE(order.at(i)->index(), i);
    QVERIFY(listsAgree(list));
}

void TestASpectrumMarkerList::changingTheTypeKeepsAllElse()
{
    ASpectrumMarkerList list;
    ASpectrumMarker *marker = list.addMarker(Std, 2, megahertz(5));
    ASpectrumMarker *reference = add(&list, Max, 0);
    const AMeasurementValue value = point(-3, megahertz(4));
    marker->setValue(value);
    marker->setReferenceMarker(reference);
    marker->setEnabled(false);
    marker->setDisplayOptions(ASpectrumMarker::ShowLabel);
    MessageLog log;
    list.changeMarkerType(marker, Min);
    QCOMPARE(log.take(), QStringList());
    QVERIFY(marker->value() == value);
    QVERIFY(marker->targetFrequency() == megahertz(5));
    QCOMPARE(marker->referenceMarker(), reference);
    QVERIFY(!marker->isEnabled());
    QCOMPARE(marker->trace(), 2);
    QCOMPARE(static_cast<int>(marker->displayOptions()), 8);
}

void TestASpectrumMarkerList::changingTheTypeKeepsTheTraceKnown()
{
    ASpectrumMarkerList list;
    ASpectrumMarker *marker = add(&list, Max, 3);
    const QList<ASpectrumMarker *> *before = list.trace(3);
    list.changeMarkerType(marker, Cal);
    QCOMPARE(static_cast<const QList<ASpectrumMarker *> *>(list.trace(3)), before);
    QCOMPARE(namesOnTrace(list, 3), texts({"Cal 1"}));
}

void TestASpectrumMarkerList::changingToAnObsoleteTypeIsAllowed()
{
    ASpectrumMarkerList list;
    ASpectrumMarker *marker = add(&list, Std, 3);
    MessageLog log;
    list.changeMarkerType(marker, ASpectrumMarker::TypeFMin);
    QCOMPARE(marker->name(), QStringLiteral("fMin 1"));
    list.changeMarkerType(marker, static_cast<Type>(50));
    QCOMPARE(marker->index(), 0);
    QCOMPARE(log.take(), QStringList());
    QVERIFY(listsAgree(list));
}

void TestASpectrumMarkerList::changingTheTypeOfAForeignMarkerDoesNothing()
{
    ASpectrumMarkerList list;
    ASpectrumMarker foreign(Max);
    list.changeMarkerType(&foreign, Min);
    QCOMPARE(foreign.type(), Max);
    QVERIFY(list.isEmpty());
    add(&list, Max, 0);
    list.changeMarkerType(&foreign, Min);
    QCOMPARE(foreign.type(), Max);
    QCOMPARE(foreign.index(), -1);
    QCOMPARE(list.listcount(), 1);
}

void TestASpectrumMarkerList::changingTheTraceMovesTheMarker()
{
    ASpectrumMarkerList list;
    ASpectrumMarker *first = add(&list, Max, 0);
    ASpectrumMarker *second = add(&list, Max, 0);
    add(&list, Std, 4);
    list.changeMarkerTrace(first, 4);
    QCOMPARE(first->trace(), 4);
    QCOMPARE(namesOnTrace(list, 0), texts({"Max 1"}));
    QCOMPARE(namesOnTrace(list, 4), texts({"Max 2", "Std 1"}));
    QCOMPARE(second->index(), 0);
    QCOMPARE(add(&list, Max, 4)->index(), 2); // the counter still counts two
    QVERIFY(listsAgree(list));
}

void TestASpectrumMarkerList::changingTheTraceForgetsAnEmptiedTrace()
{
    ASpectrumMarkerList list;
    ASpectrumMarker *marker = add(&list, Max, 0);
    list.changeMarkerTrace(marker, 1);
    QVERIFY(!list.hasTrace(0));
    QVERIFY(list.hasTrace(1));
    list.changeMarkerTrace(marker, 1); // onto its own trace
    QCOMPARE(namesOnTrace(list, 1), texts({"Max 1"}));
}

void TestASpectrumMarkerList::changingTheTraceSortsByTheOldNumber()
{
    ASpectrumMarkerList list;
    ASpectrumMarker *moved = add(&list, Max, 0);
    ASpectrumMarker *there = add(&list, Max, 1);
    ASpectrumMarker *alsoThere = add(&list, Max, 1);
    list.changeMarkerTrace(moved, 1);
    QCOMPARE(moved->index(), 0);
    QCOMPARE(there->index(), 1);
    QCOMPARE(alsoThere->index(), 2);
    QCOMPARE(list.trace(1)->first(), moved);
}

void TestASpectrumMarkerList::changingTheTraceChecksNoRange()
{
    ASpectrumMarkerList list;
    ASpectrumMarker *marker = add(&list, Max, 0);
    add(&list, Max, 0);
    MessageLog log;
    for (const int trace : {10, -1, std::numeric_limits<int>::max(), std::numeric_limits<int>::min()}) {
        list.changeMarkerTrace(marker, trace);
        QCOMPARE(marker->trace(), trace);
        QVERIFY(list.hasTrace(trace));
        QCOMPARE(list.listcount(), 2);
    }
    QCOMPARE(log.take(), QStringList());
    QCOMPARE(list.removeMarker(marker), 0);
}

void TestASpectrumMarkerList::changingTheTraceOfAForeignMarkerDoesNothing()
{
    ASpectrumMarkerList list;
    ASpectrumMarker foreign(Max);
    list.changeMarkerTrace(&foreign, 5);
    add(&list, Max, 0);
    list.changeMarkerTrace(&foreign, 5);
    QCOMPARE(foreign.trace(), 0);
    QVERIFY(!list.hasTrace(5));
}

void TestASpectrumMarkerList::clearingForgetsMarkersCountersAndName()
{
    QTemporaryDir directory;
    QSettings settings(directory.filePath(QStringLiteral("s.ini")), QSettings::IniFormat);
    ASpectrumMarkerList list;
    for (int i = 0; i < 5; ++i)
        add(&list, Max, i);
    list.storeSetup(&settings, QStringLiteral("five"));
    const QList<AMeasurementValue> data = traceOf({1, 9, 1, 8, 1});
    update(&list, data, 3);
    list.clear();
    QVERIFY(list.isEmpty());
    QCOMPARE(list.listcount(), 0);
    QVERIFY(list.all().isEmpty());
    QVERIFY(!list.trace(0));
    QCOMPARE(list.setupName(), QString());
    QCOMPARE(list.findPeakFrequency(3, AFrequency(), Qt::LeftToRight, true), megahertz(2)); // data stay
    QCOMPARE(list.findCenterFrequency(), megahertz(500000));
    QCOMPARE(add(&list, Max, 0)->index(), 0);
}

void TestASpectrumMarkerList::clearingRestartsTheCounters()
{
    ASpectrumMarkerList list;
    for (int i = 0; i < 12; ++i)
        add(&list, Max, 0);
    list.clear();
    const ASpectrumMarker *older = add(&list, Max, 1);
    const ASpectrumMarker *younger = add(&list, Max, 0); // before the other one, unless it began with a high number
    QCOMPARE(younger->index(), 0);
    QCOMPARE(older->index(), 1);
}

void TestASpectrumMarkerList::rebuildingAnUnusedTypeChangesNothing()
{
    ASpectrumMarkerList list;
    add(&list, Max, 0);
    add(&list, Std, 0);
    list.rebuildMarkerIndices(Min);
    QCOMPARE(namesOnTrace(list, 0), texts({"Max 1", "Std 1"}));
    list.at(0)->setIndex(40);
    list.rebuildMarkerIndices(Max);
    QCOMPARE(namesOnTrace(list, 0), texts({"Max 1", "Std 1"}));
}

void TestASpectrumMarkerList::thePositionOfAForeignMarkerIsNone()
{
    ASpectrumMarkerList list;
    ASpectrumMarker foreign(Max);
    add(&list, Max, 0);
    QCOMPARE(list.indexOf(&foreign), -1);
    QVERIFY(!list.containsMarker(&foreign));
    QCOMPARE(list.indexOf(nullptr), -1);
}

QTEST_APPLESS_MAIN(TestASpectrumMarkerList)
#include "tst_aspectrummarkerlist.moc"
