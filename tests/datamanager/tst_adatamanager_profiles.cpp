#include "datamanager/adatamanager.h"

#include "registryfixture.h"

#include <QtTest/QtTest>

#include <algorithm>

using namespace registrytest;

namespace {

QStringList ids(const ADataManager *manager)
{
    QStringList list;
    for (const AProfile *profile : manager->getProfiles())
        list << (profile ? profile->id() : QStringLiteral("null"));
    return list;
}

} // namespace

// Looking profiles up and taking them out again.
class TestADataManagerProfiles : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // looking up
    void profilesComeByAscendingId();
    void idsAreLookedUpExactly();
    void labelsAreFound_data();
    void labelsAreFound();
    void theLowestIdWinsAmongEqualLabels();
    void theLabelWithoutALanguageCounts();
    void nullEntriesAreNoHit();

    // removing
    void removingTakesTheProfileOutAlive();
    void removingNullDoesNothing();
    void removingAnUnknownIdStillSignalsAndEndsTheWatch();
    void aStaleProfileTakesOutTheCurrentOne();
    void removingAProfileWithoutSource();
    void clearingSchedulesEveryDeletion();
    void clearingAnEmptyStoreSignals();
    void clearingEndsTheWatches();

private:
    const QString m_id = QStringLiteral("id");
    const QStringList m_oneChange{QStringLiteral("profiles")};
};

void TestADataManagerProfiles::profilesComeByAscendingId()
{
    Registry registry;
    const QStringList unsorted{QStringLiteral("b"),  QStringLiteral("a:1"), QStringLiteral("Z"),
                               QStringLiteral("10"), QStringLiteral("a"),   QStringLiteral("9"),
                               QStringLiteral("aa"), QStringLiteral("A"),   QString::fromUtf8("\xc3\xa4")};
    for (const QString &id : unsorted)
        QVERIFY(registry->addProfileFile(registry.writeProfile(QStringLiteral("file"), id, id), AProfile::UserProfile));
    QStringList sorted = unsorted;
    std::sort(sorted.begin(), sorted.end());
    QCOMPARE(ids(registry.manager.get()), sorted);
    QCOMPARE(sorted.first(), QStringLiteral("10"));
    QCOMPARE(sorted.last(), QString::fromUtf8("\xc3\xa4"));
}

void TestADataManagerProfiles::idsAreLookedUpExactly()
{
    Registry registry;
    AProfile *profile = registry.add(QStringLiteral("Band II"), QStringLiteral("Label"));
    QVERIFY(profile);
    QCOMPARE(registry->getProfileForId(QStringLiteral("Band II")), profile);
    for (const char *id : {"", "band ii", "Band", "Band II ", " Band II", "Label", "Band II:x"})
        QVERIFY2(!registry->getProfileForId(QLatin1String(id)), id);
    QVERIFY(!registry->getProfileForId(QString()));
    // Asking makes no entries.
    QCOMPARE(registry->getProfiles().size(), 1);
}

void TestADataManagerProfiles::labelsAreFound_data()
{
    QTest::addColumn<QString>("label");
    QTest::addColumn<QString>("exactId");
    QTest::addColumn<QString>("looseId");
    const auto row = [](const char *label, const char *exactId, const char *looseId) {
        QTest::newRow(label) << QString::fromUtf8(label) << QString::fromUtf8(exactId) << QString::fromUtf8(looseId);
    };
    row("UHF Band IV", "1", "1");
    row("uhf band iv", "", "1");
    row("UHF BAND IV", "", "1");
    row("band", "", "1");
    row("Band III", "", "2");
    row("band iii", "", "2");
    row("BAND III", "2", "2");
    row("nd i", "", "1");
    row("Stra\xc3\x9f"
        "e",
        "3", "3");
    row("STRASSE", "", "3");
    row("ss", "", "3");
    row("\xc3\x84rger", "", "4");
    row("\xc3\xa4rger", "4", "4");
    row("argER", "", "");
    row("none", "", "");
    row(" ", "", "1");
    row("", "5", "1");
    row("UHF Band IV ", "", "");
    row(".*", "", "");
}

void TestADataManagerProfiles::labelsAreFound()
{
    QFETCH(QString, label);
    QFETCH(QString, exactId);
    QFETCH(QString, looseId);
    Registry registry;
    registry.add(QStringLiteral("5"), QString());
    registry.add(QStringLiteral("4"), QString::fromUtf8("\xc3\xa4rger"));
    registry.add(QStringLiteral("3"), QString::fromUtf8("Stra\xc3\x9f"
                                                        "e"));
    registry.add(QStringLiteral("2"), QStringLiteral("BAND III"));
    registry.add(QStringLiteral("1"), QStringLiteral("UHF Band IV"));
    QCOMPARE(registry->getProfiles().size(), 5);
    const AProfile *exact = registry->getProfileForLabel(label, true);
    const AProfile *loose = registry->getProfileForLabel(label, false);
    QCOMPARE(exact ? exact->id() : QString(), exactId);
    QCOMPARE(loose ? loose->id() : QString(), looseId);
}

void TestADataManagerProfiles::theLowestIdWinsAmongEqualLabels()
{
    Registry registry;
    for (const QString &id : {QStringLiteral("c"), QStringLiteral("b"), QStringLiteral("B"), QStringLiteral("d")})
        QVERIFY(registry.add(id, QStringLiteral("Same")));
    QVERIFY(registry.add(QStringLiteral("A"), QStringLiteral("Not the same")));
    QCOMPARE(registry->getProfileForLabel(QStringLiteral("Same"), true)->id(), QStringLiteral("B"));
    QCOMPARE(registry->getProfileForLabel(QStringLiteral("Same"), false)->id(), QStringLiteral("A"));
    QCOMPARE(registry->getProfileForLabel(QString(), false)->id(), QStringLiteral("A"));
    QVERIFY(!registry->getProfileForLabel(QString(), true));
}

void TestADataManagerProfiles::theLabelWithoutALanguageCounts()
{
    Registry registry;
    const QString fileName = registry.write(
        QStringLiteral("a"), QStringLiteral("<profile id=\"id\"><label lang=\"de\">Deutsch</label><label>Plain</label>"
                                            "<begin>1</begin><end>2</end></profile>"));
    QVERIFY(registry->addProfileFile(fileName, AProfile::UserProfile));
    QVERIFY(registry->getProfileForLabel(QStringLiteral("Plain"), true));
    QVERIFY(!registry->getProfileForLabel(QStringLiteral("Deutsch"), true));
    QVERIFY(registry->getProfileForLabel(QStringLiteral("PLAIN"), false));
    QVERIFY(!registry->getProfileForLabel(QStringLiteral("deutsch"), false));
}

void TestADataManagerProfiles::nullEntriesAreNoHit()
{
    Registry registry;
    QVERIFY(registry.add(QStringLiteral("a"), QStringLiteral("Gone")));
    AProfile *other = registry.add(QStringLiteral("b"), QStringLiteral("Other"));
    registry.makeNull(QStringLiteral("a"));
    QCOMPARE(registry.contents(), (QStringList{QStringLiteral("null"), QStringLiteral("b|Other")}));
    QCOMPARE(registry->getProfileForLabel(QStringLiteral("Other"), true), other);
    QCOMPARE(registry->getProfileForLabel(QStringLiteral("OTHER"), false), other);
    QCOMPARE(registry->getProfileForLabel(QString(), false), other);
    QVERIFY(!registry->getProfileForLabel(QString(), true));
    QVERIFY(!registry->getProfileForLabel(QStringLiteral("Gone"), true));
    QVERIFY(!registry->getProfileForLabel(QStringLiteral("gone"), false));
}

void TestADataManagerProfiles::removingTakesTheProfileOutAlive()
{
    Registry registry;
    const QPointer<AProfile> profile = registry.add(m_id, QStringLiteral("A"));
    AProfile *other = registry.add(QStringLiteral("other"), QStringLiteral("B"));
    QVERIFY(profile);
    registry.takeLog();
    int calls = 0;
    connect(registry.manager.get(), &ADataManager::profilesChanged, this, [&] {
        ++calls;
        QVERIFY(profile);
        QCOMPARE(registry->getProfiles(), QList<AProfile *>{other});
    });
    registry->removeProfile(profile);
    QCOMPARE(calls, 1);
    QCOMPARE(registry.takeLog(), m_oneChange);
    runDeferredDeletes();
    QVERIFY(profile);
    QVERIFY(!registry->getProfileForId(m_id));
    QVERIFY(!isWatched(profile->source()));
    QVERIFY(isWatched(other->source()));
    delete profile.data();
}

void TestADataManagerProfiles::removingNullDoesNothing()
{
    Registry registry;
    AProfile *profile = registry.add(m_id, QStringLiteral("A"));
    registry.takeLog();
    registry->removeProfile(nullptr);
    QCOMPARE(registry.takeLog(), QStringList());
    QCOMPARE(registry->getProfiles(), QList<AProfile *>{profile});
    QVERIFY(isWatched(profile->source()));
}

void TestADataManagerProfiles::removingAnUnknownIdStillSignalsAndEndsTheWatch()
{
    Registry registry;
    const QString shared = registry.writeProfile(QStringLiteral("a"), m_id, QStringLiteral("A"));
    QVERIFY(registry->addProfileFile(shared, AProfile::UserProfile));
    const std::unique_ptr<AProfile> stranger(AProfile::fromFile(shared));
    stranger->setId(QStringLiteral("unknown"));
    registry.takeLog();
    registry->removeProfile(stranger.get());
    QCOMPARE(registry.takeLog(), m_oneChange);
    QCOMPARE(registry.contents(), QStringList{QStringLiteral("id|A")});
    QVERIFY(!isWatched(shared));

    registry->clearProfiles();
    registry.takeLog();
    registry->removeProfile(stranger.get());
    QCOMPARE(registry.takeLog(), m_oneChange);
}

void TestADataManagerProfiles::aStaleProfileTakesOutTheCurrentOne()
{
    Registry registry;
    const QString first = registry.writeProfile(QStringLiteral("a"), m_id, QStringLiteral("A"));
    const QString second = registry.writeProfile(QStringLiteral("b"), m_id, QStringLiteral("B"));
    QVERIFY(registry->addProfileFile(first, AProfile::UserProfile));
    const std::unique_ptr<AProfile> stale(registry->getProfileForId(m_id));
    registry->removeProfile(stale.get());
    QVERIFY(registry->addProfileFile(second, AProfile::UserProfile));
    const QPointer<AProfile> current = registry->getProfileForId(m_id);
    registry.watchFile(first);
    registry.takeLog();

    registry->removeProfile(stale.get());
    QCOMPARE(registry.takeLog(), m_oneChange);
    QVERIFY(registry->getProfiles().isEmpty());
    QVERIFY(current);
    // The watch that ends is that of the object handed in.
    QVERIFY(!isWatched(first));
    QVERIFY(isWatched(second));
}

void TestADataManagerProfiles::removingAProfileWithoutSource()
{
    Registry registry;
    AProfile *held = registry.add(m_id, QStringLiteral("A"));
    AProfile stranger;
    registry.takeLog();
    registry->removeProfile(&stranger);
    QCOMPARE(registry.takeLog(), m_oneChange);
    QCOMPARE(registry->getProfiles(), QList<AProfile *>{held});

    stranger.setId(m_id);
    registry->removeProfile(&stranger);
    QCOMPARE(registry.takeLog(), m_oneChange);
    QVERIFY(registry->getProfiles().isEmpty());
    QVERIFY(isWatched(held->source()));
}

void TestADataManagerProfiles::clearingSchedulesEveryDeletion()
{
    Registry registry;
    const QPointer<AProfile> first = registry.add(QStringLiteral("a"), QStringLiteral("A"));
    const QPointer<AProfile> second = registry.add(QStringLiteral("b"), QStringLiteral("B"));
    QVERIFY(first && second);
    registry.takeLog();
    int calls = 0;
    connect(registry.manager.get(), &ADataManager::profilesChanged, this, [&] {
        ++calls;
        QVERIFY(registry->getProfiles().isEmpty());
        QVERIFY(first);
        QVERIFY(second);
        QCOMPARE(second->label(QString()), QStringLiteral("B"));
    });
    registry->clearProfiles();
    QCOMPARE(calls, 1);
    QCOMPARE(registry.takeLog(), m_oneChange);
    QVERIFY(!registry->getProfileForId(QStringLiteral("a")));
    QVERIFY(first);
    QVERIFY(second);
    runDeferredDeletes();
    QVERIFY(!first);
    QVERIFY(!second);
}

void TestADataManagerProfiles::clearingAnEmptyStoreSignals()
{
    Registry registry;
    registry->clearProfiles();
    QCOMPARE(registry.takeLog(), m_oneChange);
}

void TestADataManagerProfiles::clearingEndsTheWatches()
{
    Registry registry;
    registry.add(QStringLiteral("a"), QStringLiteral("A"));
    registry.add(QStringLiteral("b"), QStringLiteral("B"));
    QCOMPARE(watchedInodes().size(), 2);
    registry->clearProfiles();
    QVERIFY(watchedInodes().isEmpty());
}

QTEST_GUILESS_MAIN(TestADataManagerProfiles)
#include "tst_adatamanager_profiles.moc"
