#include "marker/aspectrummarkerlist.h"

#include "marker/markertraces.h"
#include "marker/plainmarkerlist.h"

#include <QtCore/QHash>
#include <QtCore/QSettings>
#include <QtCore/QTemporaryDir>

#include <memory>
#include <random>

using namespace markertest;

// What happens when sort keys are equal, and that numbering and order follow the plain rules through any changes.

namespace {

ASpectrumMarker *add(ASpectrumMarkerList *list, Type type, int trace)
{
    return list->addMarker(type, trace, AFrequency());
}

// Ten markers on trace 1 have the keys of numbers 10 to 19 on trace 0. The eleventh, on trace 0, takes the number 11
// first and so the key of the second on trace 1, which stands later in the walk and wins.
ASpectrumMarker *addLoser(ASpectrumMarkerList *list)
{
    for (int i = 0; i < 10; ++i)
        add(list, Max, 1);
    return add(list, Max, 0);
}

// A list and the plain rules side by side.
class Pair
{
public:
    void add(int type, int trace)
    {
        const int id = m_nextId++;
        m_ids.insert(m_list.addMarker(static_cast<Type>(type), trace, AFrequency()), id);
        m_plain.add(id, type, trace);
    }
    void remove(ASpectrumMarker *marker)
    {
        m_plain.remove(m_ids.take(marker));
        QCOMPARE(m_list.removeMarker(marker), 0);
    }
    void changeType(ASpectrumMarker *marker, int type)
    {
        m_plain.changeType(m_ids.value(marker), type);
        m_list.changeMarkerType(marker, static_cast<Type>(type));
    }
    void changeTrace(ASpectrumMarker *marker, int trace)
    {
        m_plain.changeTrace(m_ids.value(marker), trace);
        m_list.changeMarkerTrace(marker, trace);
    }

    QList<ASpectrumMarker *> markers() const { return m_ids.keys(); }

    bool agree() const
    {
        QList<ASpectrumMarker *> listed;
        for (int i = 0; i < m_list.listcount(); ++i)
            listed.append(m_list.at(i));
        bool ok = describe(listed) == describe(m_plain.all()) && m_list.all() == listed;
        for (int trace = -1; trace <= 11; ++trace) {
            ok = ok && m_list.hasTrace(trace) == m_plain.traces().contains(trace);
            if (ok && m_list.hasTrace(trace))
                ok = describe(*m_list.trace(trace)) == describe(m_plain.traces().value(trace));
        }
        return ok;
    }

private:
    QList<QList<int>> describe(const QList<ASpectrumMarker *> &markers) const
    {
        QList<QList<int>> result;
        for (ASpectrumMarker *marker : markers)
            result.append({m_ids.value(marker, -1), marker->type(), marker->trace(), marker->index()});
        return result;
    }
    static QList<QList<int>> describe(const QList<PlainMarkerList::Marker *> &markers)
    {
        QList<QList<int>> result;
        for (const PlainMarkerList::Marker *marker : markers)
            result.append({marker->id, marker->type, marker->trace, marker->index});
        return result;
    }

    ASpectrumMarkerList m_list;
    PlainMarkerList m_plain;
    QHash<ASpectrumMarker *, int> m_ids;
    int m_nextId = 0;
};

} // namespace

class TestASpectrumMarkerListCollisions : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void fewerThanTenOfATypeHaveNoCollision();
    void theTenthOfATypeCanCollide();
    void moreOnOneTraceHaveNoCollision();
    void theLoserKeepsItsNumberAndItsPlace();
    void theLoserOfTheDisplayOrderIsNotListed();
    void familiesLieTenThousandNumbersApart_data();
    void familiesLieTenThousandNumbersApart();
    void typesOfOneFamilyShareTheirKeys_data();
    void typesOfOneFamilyShareTheirKeys();
    void aFamilyOfTenCanCollideThoughNoTypeHasTen();
    void aDistantTraceHasTheKeysOfAnotherFamily();
    void aLoserIsNotClearedWithTheList();
    void aLoserRefersToNoMarkerThatWasCleared();
    void aLoserIsFreedWithTheObject();
    void aLoserCanBeRemoved();
    void aLoserLosesADeletedReference();
    void aLoserIsNotStored();
    void anyChangesFollowThePlainRules_data();
    void anyChangesFollowThePlainRules();
};

void TestASpectrumMarkerListCollisions::fewerThanTenOfATypeHaveNoCollision()
{
    ASpectrumMarkerList list;
    for (int i = 0; i < 8; ++i)
        add(&list, Max, 1);
    QCOMPARE(add(&list, Max, 0)->index(), 0);
    QCOMPARE(list.listcount(), 9);
}

void TestASpectrumMarkerListCollisions::theTenthOfATypeCanCollide()
{
    ASpectrumMarkerList list;
    for (int i = 0; i < 9; ++i)
        add(&list, Max, 1);
    QCOMPARE(add(&list, Max, 0)->index(), 10); // as number 0 on trace 1
    QCOMPARE(list.listcount(), 9);
}

void TestASpectrumMarkerListCollisions::moreOnOneTraceHaveNoCollision()
{
    ASpectrumMarkerList list;
    for (int i = 0; i < 300; ++i)
        QCOMPARE(add(&list, Max, 0)->index(), i);
    QCOMPARE(list.listcount(), 300);
}

void TestASpectrumMarkerListCollisions::theLoserKeepsItsNumberAndItsPlace()
{
    ASpectrumMarkerList list;
    add(&list, ASpectrumMarker::TypeStd, 0);
    ASpectrumMarker *loser = addLoser(&list);
    QCOMPARE(loser->index(), 11);
    QCOMPARE(namesOnTrace(list, 0), texts({"Std 1", "Max 12"})); // not sorted in
    for (int i = 0; i < 10; ++i)
        QCOMPARE(list.trace(1)->at(i)->index(), i);
}

void TestASpectrumMarkerListCollisions::theLoserOfTheDisplayOrderIsNotListed()
{
    ASpectrumMarkerList list;
    ASpectrumMarker *loser = addLoser(&list); // number 11 on trace 0, as number 1 on trace 1
    QVERIFY(!list.containsMarker(loser));
    QCOMPARE(list.indexOf(loser), -1);
    QCOMPARE(list.listcount(), 10);
    QCOMPARE(list.all().size(), 10);
    QVERIFY(list.trace(0)->contains(loser));
}

void TestASpectrumMarkerListCollisions::familiesLieTenThousandNumbersApart_data()
{
    QTest::addColumn<int>("maxima");
    QTest::addColumn<int>("listed"); // of the maxima and a minimum
    QTest::newRow("up to ten thousand") << 10000 << 10001;
    QTest::newRow("beyond") << 10001 << 10001; // the last maximum has the key of the minimum, which comes later
}

void TestASpectrumMarkerListCollisions::familiesLieTenThousandNumbersApart()
{
    QFETCH(int, maxima);
    const QTemporaryDir directory;
    QSettings settings(directory.filePath(QStringLiteral("s.ini")), QSettings::IniFormat);
    for (int i = 0; i <= maxima; ++i) {
        const bool isLast = i == maxima;
        settings.setValue(QStringLiteral("s/Marker/%1/Type").arg(i + 1), isLast ? 3 : 2);
    }
    settings.setValue(QStringLiteral("s/Marker/size"), maxima + 1);
    ASpectrumMarkerList list;
    list.loadSetup(&settings, QStringLiteral("s"));
    QCOMPARE(list.trace(0)->size(), maxima + 1);
    QTEST(list.listcount(), "listed");
    QCOMPARE(list.at(list.listcount() - 1)->name(), QStringLiteral("Min 1"));
}

void TestASpectrumMarkerListCollisions::typesOfOneFamilyShareTheirKeys_data()
{
    QTest::addColumn<int>("otherType");
    QTest::addColumn<int>("type");
    QTest::addColumn<QStringList>("names"); // on the trace, by type
    QTest::addColumn<int>("listed");
    QTest::newRow("PMax and Max") << 0 << 2 << texts({"pMax 1", "Max 1"}) << 1;
    QTest::newRow("Max and FMax") << 4 << 2 << texts({"Max 1", "fMax 1"}) << 1;
    QTest::newRow("PMin and Min") << 1 << 3 << texts({"pMin 1", "Min 1"}) << 1;
    QTest::newRow("Min and FMin") << 5 << 3 << texts({"Min 1", "fMin 1"}) << 1;
    QTest::newRow("Max and Min") << 3 << 2 << texts({"Max 1", "Min 1"}) << 2;
}

void TestASpectrumMarkerListCollisions::typesOfOneFamilyShareTheirKeys()
{
    QFETCH(int, otherType);
    QFETCH(int, type);
    QFETCH(int, listed);
    ASpectrumMarkerList list;
    ASpectrumMarker *other = add(&list, Max, 0);
    list.changeMarkerType(other, static_cast<Type>(otherType));
    QCOMPARE(list.listcount(), 1);
    ASpectrumMarker *marker = add(&list, static_cast<Type>(type), 0);
    QCOMPARE(marker->index(), 0);
    QCOMPARE(other->index(), 0);
    QTEST(namesOnTrace(list, 0), "names");
    QCOMPARE(list.listcount(), listed);
    QCOMPARE(list.all().last(), list.trace(0)->last()); // of two with one key the one that stands behind is listed
}

void TestASpectrumMarkerListCollisions::aFamilyOfTenCanCollideThoughNoTypeHasTen()
{
    ASpectrumMarkerList list;
    for (int i = 0; i < 8; ++i)
        list.changeMarkerType(add(&list, Max, 5), ASpectrumMarker::TypeFMax);
    add(&list, Max, 1);
    ASpectrumMarker *loser = add(&list, Max, 0); // counted as the tenth, which is number 0 on trace 1
    QCOMPARE(loser->index(), 10);
    QVERIFY(!list.containsMarker(loser));
}

void TestASpectrumMarkerListCollisions::aDistantTraceHasTheKeysOfAnotherFamily()
{
    ASpectrumMarkerList list;
    ASpectrumMarker *minimum = add(&list, ASpectrumMarker::TypeMin, 0);
    ASpectrumMarker *maximum = add(&list, Max, 0);
    list.changeMarkerTrace(maximum, 999);
    QCOMPARE(list.all(), QList<ASpectrumMarker *>({maximum, minimum}));
    list.changeMarkerTrace(maximum, 1000);
    QCOMPARE(list.all(), QList<ASpectrumMarker *>({maximum}));
    QCOMPARE(minimum->index(), 0);
    QCOMPARE(maximum->index(), 0);
    QCOMPARE(list.removeMarker(maximum), 0);
    QCOMPARE(list.all(), QList<ASpectrumMarker *>({minimum}));
}

void TestASpectrumMarkerListCollisions::aLoserIsNotClearedWithTheList()
{
    ASpectrumMarkerList list;
    const std::unique_ptr<ASpectrumMarker> loser(addLoser(&list));
    list.clear();
    QVERIFY(list.isEmpty());
    QCOMPARE(loser->name(), QStringLiteral("Max 12"));
}

void TestASpectrumMarkerListCollisions::aLoserRefersToNoMarkerThatWasCleared()
{
    ASpectrumMarkerList list;
    ASpectrumMarker *reference = add(&list, ASpectrumMarker::TypeStd, 5);
    const std::unique_ptr<ASpectrumMarker> loser(addLoser(&list));
    loser->setReferenceMarker(reference);
    list.clear();
    QVERIFY(!loser->referenceMarker());
}

void TestASpectrumMarkerListCollisions::aLoserIsFreedWithTheObject()
{
    // The leak checker of the sanitizer build is what fails here.
    ASpectrumMarkerList list;
    QVERIFY(addLoser(&list));
}

void TestASpectrumMarkerListCollisions::aLoserCanBeRemoved()
{
    ASpectrumMarkerList list;
    ASpectrumMarker *loser = addLoser(&list);
    QCOMPARE(list.removeMarker(loser), 0);
    QVERIFY(!list.hasTrace(0));
    QCOMPARE(list.listcount(), 10);
}

void TestASpectrumMarkerListCollisions::aLoserLosesADeletedReference()
{
    ASpectrumMarkerList list;
    ASpectrumMarker *reference = add(&list, ASpectrumMarker::TypeStd, 5);
    ASpectrumMarker *loser = addLoser(&list);
    loser->setReferenceMarker(reference);
    QCOMPARE(list.removeMarker(reference), 0);
    QVERIFY(!loser->referenceMarker());
}

void TestASpectrumMarkerListCollisions::aLoserIsNotStored()
{
    const QTemporaryDir directory;
    QSettings settings(directory.filePath(QStringLiteral("s.ini")), QSettings::IniFormat);
    ASpectrumMarkerList list;
    ASpectrumMarker *loser = addLoser(&list);
    list.at(3)->setReferenceMarker(loser);
    list.storeSetup(&settings, QStringLiteral("a"));
    QCOMPARE(settings.value(QStringLiteral("a/Marker/size")).toInt(), 10);
    QCOMPARE(settings.value(QStringLiteral("a/Marker/4/ReferenceMarkerIndex")).toInt(), -1);
}

void TestASpectrumMarkerListCollisions::anyChangesFollowThePlainRules_data()
{
    QTest::addColumn<int>("markers");
    QTest::addColumn<QList<int>>("types");
    QTest::newRow("few of the current types") << 12 << QList<int>({2, 3, 6, 7});
    QTest::newRow("many of the current types") << 120 << QList<int>({2, 3, 6, 7});
    QTest::newRow("many of one type") << 60 << QList<int>({2});
    QTest::newRow("any type") << 60 << QList<int>({0, 1, 2, 3, 4, 5, 6, 7, 8, 99, -4});
}

void TestASpectrumMarkerListCollisions::anyChangesFollowThePlainRules()
{
    QFETCH(int, markers);
    QFETCH(QList<int>, types);
    std::mt19937 random(7);
    const auto below = [&random](int limit) { return static_cast<int>(random() % static_cast<unsigned>(limit)); };
    const auto anyType = [&] { return types.at(below(types.size())); };
    Pair pair;
    MessageLog log; // addMarker refuses obsolete types, so markers get them by a change
    for (int step = 0; step < 1200; ++step) {
        QList<ASpectrumMarker *> held = pair.markers();
        std::sort(held.begin(), held.end(), [](const ASpectrumMarker *a, const ASpectrumMarker *b) {
            return std::make_tuple(a->trace(), a->type(), a->index()) <
                   std::make_tuple(b->trace(), b->type(), b->index());
        });
        ASpectrumMarker *chosen = held.isEmpty() ? nullptr : held.at(below(held.size()));
        const int action = below(6);
        if (!chosen || (action < 3 && held.size() < markers))
            pair.add(Max, below(10));
        else if (action < 4)
            pair.remove(chosen);
        else if (action == 4)
            pair.changeType(chosen, anyType());
        else
            pair.changeTrace(chosen, below(13) - 1);
        QVERIFY2(pair.agree(), qPrintable(QStringLiteral("step %1").arg(step)));
    }
}

QTEST_APPLESS_MAIN(TestASpectrumMarkerListCollisions)
#include "tst_aspectrummarkerlist_collisions.moc"
