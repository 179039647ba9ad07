#include "marker/aspectrummarkerlist.h"

#include "marker/markertraces.h"

#include <QtCore/QFile>
#include <QtCore/QSettings>
#include <QtCore/QTemporaryDir>

#include <memory>

using namespace markertest;

namespace {

// Every field of every marker, the references as positions.
QStringList describe(const ASpectrumMarkerList &list)
{
    QStringList result;
    for (int i = 0; i < list.listcount(); ++i) {
        const ASpectrumMarker *marker = list.at(i);
        result.append(QStringLiteral("%1 trace %2 at %3 options %4 %5 ref %6 value %7")
                          .arg(marker->name())
                          .arg(marker->trace())
                          .arg(marker->targetFrequency().toString())
                          .arg(static_cast<int>(marker->displayOptions()))
                          .arg(marker->isEnabled() ? QStringLiteral("on") : QStringLiteral("off"))
                          .arg(list.indexOf(marker->referenceMarker()))
                          .arg(marker->value().isEmpty() ? QStringLiteral("none") : QStringLiteral("some")));
    }
    return result;
}

} // namespace

class TestASpectrumMarkerListSetup : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void storingWritesEveryKey();
    void storedNumbersAreTypedAndSurviveTheFile();
    void theStoredOrderIsThatOfAll();
    void storingReplacesTheSetupAlone();
    void storingAnEmptyListClearsTheSetup();
    void anEmptyNameIsNotStored_data();
    void anEmptyNameIsNotStored();
    void theSettingsKeepTheirGroup();
    void aReferenceOutsideTheListIsStoredAsNone();

    void aSetupComesBackAsItWas();
    void loadingAddsToWhatIsThere();
    void loadingAMissingSetupSetsTheName();
    void theNameOfNoParticularSetupIsNotKept();
    void anEntryOfItsTypeAloneHasDefaults();
    void anEntryWithoutKeysIsAMaximum();
    void obsoleteAndInvalidEntriesAreLeftOut();
    void referencesAreResolvedByTheOrderOfTheChecks_data();
    void referencesAreResolvedByTheOrderOfTheChecks();
    void negativeTargetsSurviveInMemory();
    void manyMarkersComeBackAsTheyWere();
    void manyMarkersHaveRoomForTheirPeaks();
    void manyMarkersOfManyTypesLoadAsOneByOne_data();
    void manyMarkersOfManyTypesLoadAsOneByOne();
    void manyMarkersPassedOverStandBeforeTheirBlock();

private:
    void writeEntry(int i, const QVariantMap &values)
    {
        for (auto it = values.cbegin(); it != values.cend(); ++it)
            m_settings->setValue(QStringLiteral("s/Marker/%1/%2").arg(i + 1).arg(it.key()), it.value());
    }
    QVariant stored(const char *key) { return m_settings->value(QLatin1String(key)); }
    QString fileName() const { return m_directory->filePath(QStringLiteral("settings.ini")); }

    std::unique_ptr<QTemporaryDir> m_directory;
    std::unique_ptr<QSettings> m_settings;
};

void TestASpectrumMarkerListSetup::init()
{
    m_settings.reset();
    m_directory = std::make_unique<QTemporaryDir>();
    m_settings = std::make_unique<QSettings>(fileName(), QSettings::IniFormat);
}

void TestASpectrumMarkerListSetup::storingWritesEveryKey()
{
    ASpectrumMarkerList list;
    ASpectrumMarker *marker = list.addMarker(Std, 4, hertz(123456789012));
    marker->setEnabled(false);
    marker->setDisplayOptions(ASpectrumMarker::ShowSymbol | ASpectrumMarker::ShowDetails);
    marker->setValue(point(5, megahertz(1)));
    list.storeSetup(m_settings.get(), QStringLiteral("my setup"));
    QCOMPARE(list.setupName(), QStringLiteral("my setup"));
    QStringList keys = m_settings->allKeys();
    keys.sort();
    QCOMPARE(keys, texts({"my setup/Marker/1/DisplayOptions", "my setup/Marker/1/Enabled",
                          "my setup/Marker/1/ReferenceMarkerIndex", "my setup/Marker/1/TargetFrequency",
                          "my setup/Marker/1/Trace", "my setup/Marker/1/Type", "my setup/Marker/size"}));
    QCOMPARE(stored("my setup/Marker/size").toInt(), 1);
    QCOMPARE(stored("my setup/Marker/1/Enabled"), QVariant(false));
    QCOMPARE(stored("my setup/Marker/1/Type"), QVariant(6));
    QCOMPARE(stored("my setup/Marker/1/Trace"), QVariant(4));
    QCOMPARE(stored("my setup/Marker/1/TargetFrequency"), QVariant(qlonglong(123456789012)));
    QCOMPARE(stored("my setup/Marker/1/DisplayOptions"), QVariant(17));
    QCOMPARE(stored("my setup/Marker/1/ReferenceMarkerIndex"), QVariant(-1));
}

void TestASpectrumMarkerListSetup::storedNumbersAreTypedAndSurviveTheFile()
{
    ASpectrumMarkerList list;
    list.addMarker(Cal, 9, hertz(6000000001))->setReferenceMarker(list.addMarker(Max, 0, AFrequency()));
    list.storeSetup(m_settings.get(), QStringLiteral("s"));
    QCOMPARE(stored("s/Marker/2/TargetFrequency").userType(), int(QMetaType::LongLong));
    QCOMPARE(stored("s/Marker/2/Enabled").userType(), int(QMetaType::Bool));
    QCOMPARE(stored("s/Marker/2/Type").userType(), int(QMetaType::Int));
    m_settings.reset(); // writes the file

    QFile file(fileName());
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(QString::fromLatin1(file.readAll()),
             QStringLiteral("[s]\n"
                            "Marker\\1\\DisplayOptions=25\nMarker\\1\\Enabled=true\n"
                            "Marker\\1\\ReferenceMarkerIndex=-1\nMarker\\1\\TargetFrequency=0\n"
                            "Marker\\1\\Trace=0\nMarker\\1\\Type=2\n"
                            "Marker\\2\\DisplayOptions=25\nMarker\\2\\Enabled=true\n"
                            "Marker\\2\\ReferenceMarkerIndex=0\nMarker\\2\\TargetFrequency=6000000001\n"
                            "Marker\\2\\Trace=9\nMarker\\2\\Type=7\n"
                            "Marker\\size=2\n"));
}

void TestASpectrumMarkerListSetup::theStoredOrderIsThatOfAll()
{
    ASpectrumMarkerList list;
    ASpectrumMarker *cal = list.addMarker(Cal, 0, megahertz(1));
    ASpectrumMarker *highTrace = list.addMarker(Max, 3, AFrequency());
    ASpectrumMarker *lowTrace = list.addMarker(Max, 1, AFrequency());
    cal->setReferenceMarker(highTrace);
    lowTrace->setReferenceMarker(cal);
    list.storeSetup(m_settings.get(), QStringLiteral("s"));
    QCOMPARE(stored("s/Marker/1/Trace").toInt(), 1);
    QCOMPARE(stored("s/Marker/1/ReferenceMarkerIndex").toInt(), 2);
    QCOMPARE(stored("s/Marker/2/Trace").toInt(), 3);
    QCOMPARE(stored("s/Marker/2/ReferenceMarkerIndex").toInt(), -1);
    QCOMPARE(stored("s/Marker/3/Type").toInt(), 7);
    QCOMPARE(stored("s/Marker/3/ReferenceMarkerIndex").toInt(), 1);
}

void TestASpectrumMarkerListSetup::storingReplacesTheSetupAlone()
{
    m_settings->setValue(QStringLiteral("s/anything/else"), 1);
    m_settings->setValue(QStringLiteral("s/Marker/9/Type"), 6);
    m_settings->setValue(QStringLiteral("sx/Marker/size"), 3);
    m_settings->setValue(QStringLiteral("top"), 1);
    ASpectrumMarkerList list;
    list.addMarker(Max, 0, AFrequency());
    list.storeSetup(m_settings.get(), QStringLiteral("s"));
    QVERIFY(!m_settings->contains(QStringLiteral("s/anything/else")));
    QVERIFY(!m_settings->contains(QStringLiteral("s/Marker/9/Type")));
    QCOMPARE(stored("sx/Marker/size").toInt(), 3);
    QCOMPARE(stored("top").toInt(), 1);
}

void TestASpectrumMarkerListSetup::storingAnEmptyListClearsTheSetup()
{
    m_settings->setValue(QStringLiteral("s/Marker/1/Type"), 6);
    m_settings->setValue(QStringLiteral("s/Marker/size"), 1);
    ASpectrumMarkerList list;
    list.storeSetup(m_settings.get(), QStringLiteral("s"));
    QCOMPARE(list.setupName(), QStringLiteral("s"));
    QCOMPARE(m_settings->allKeys(), texts({"s/Marker/size"}));
    QCOMPARE(stored("s/Marker/size").toInt(), 0);
}

void TestASpectrumMarkerListSetup::anEmptyNameIsNotStored_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("null") << QString();
    QTest::newRow("empty") << "";
    QTest::newRow("slash") << "/";
    QTest::newRow("slashes") << "///";
}

void TestASpectrumMarkerListSetup::anEmptyNameIsNotStored()
{
    QFETCH(QString, name);
    m_settings->setValue(QStringLiteral("important"), 1);
    m_settings->setValue(QStringLiteral("group/important"), 2);
    ASpectrumMarkerList list;
    list.addMarker(Max, 0, AFrequency());
    list.storeSetup(m_settings.get(), QStringLiteral("before"));
    const QStringList keys = m_settings->allKeys();
    MessageLog log;
    list.storeSetup(m_settings.get(), name);
    QCOMPARE(log.take(), texts({"debug: empty setup name"}));
    QCOMPARE(m_settings->allKeys(), keys);
    QCOMPARE(list.setupName(), QStringLiteral("before"));
    QCOMPARE(m_settings->group(), QString());
}

void TestASpectrumMarkerListSetup::theSettingsKeepTheirGroup()
{
    ASpectrumMarkerList list;
    list.addMarker(Std, 0, megahertz(3));
    m_settings->beginGroup(QStringLiteral("display"));
    list.storeSetup(m_settings.get(), QStringLiteral("s"));
    list.loadSetup(m_settings.get(), QStringLiteral("s"));
    QCOMPARE(m_settings->group(), QStringLiteral("display"));
    m_settings->endGroup();
    QCOMPARE(list.listcount(), 2);
    QCOMPARE(stored("display/s/Marker/1/Type").toInt(), 6);
}

void TestASpectrumMarkerListSetup::aReferenceOutsideTheListIsStoredAsNone()
{
    ASpectrumMarkerList other;
    ASpectrumMarkerList list;
    list.addMarker(Max, 0, AFrequency())->setReferenceMarker(other.addMarker(Max, 0, AFrequency()));
    list.storeSetup(m_settings.get(), QStringLiteral("s"));
    QCOMPARE(stored("s/Marker/1/ReferenceMarkerIndex").toInt(), -1);
}

void TestASpectrumMarkerListSetup::aSetupComesBackAsItWas()
{
    ASpectrumMarkerList list;
    for (const int trace : {7, 0, 3}) {
        for (const Type type : {Cal, Min, Std, Max})
            list.addMarker(type, trace, type == Cal || type == Std ? megahertz(100 + trace) : AFrequency());
    }
    list.at(1)->setReferenceMarker(list.at(0)); // backward
    list.at(2)->setReferenceMarker(list.at(0));
    list.at(4)->setReferenceMarker(list.at(9)); // forward, to a marker without a reference
    list.at(5)->setReferenceMarker(list.at(9));
    list.at(3)->setEnabled(false);
    list.at(6)->setDisplayOptions(ASpectrumMarker::DisplayOptions(QFlag(-1)));
    update(&list, traceOf({1, 9, 1}));
    list.storeSetup(m_settings.get(), QStringLiteral("s"));
    QStringList expected = describe(list);
    expected.replaceInStrings(QStringLiteral("value some"), QStringLiteral("value none"));
    m_settings.reset();
    m_settings = std::make_unique<QSettings>(fileName(), QSettings::IniFormat);

    ASpectrumMarkerList loaded;
    loaded.loadSetup(m_settings.get(), QStringLiteral("s"));
    QCOMPARE(describe(loaded), expected);
    QCOMPARE(loaded.setupName(), QStringLiteral("s"));
    QCOMPARE(m_settings->group(), QString());
}

void TestASpectrumMarkerListSetup::loadingAddsToWhatIsThere()
{
    writeEntry(0, {{QStringLiteral("Type"), 2}, {QStringLiteral("ReferenceMarkerIndex"), 1}});
    writeEntry(1, {{QStringLiteral("Type"), 2}});
    m_settings->setValue(QStringLiteral("s/Marker/size"), 2);
    ASpectrumMarkerList list;
    const ASpectrumMarker *first = list.addMarker(Max, 0, AFrequency());
    list.loadSetup(m_settings.get(), QStringLiteral("s"));
    QCOMPARE(list.listcount(), 3);
    QCOMPARE(first->index(), 0);
    QVERIFY(!first->referenceMarker());
    QCOMPARE(list.at(1)->referenceMarker(), list.at(2)); // positions are those of the setup
}

void TestASpectrumMarkerListSetup::loadingAMissingSetupSetsTheName()
{
    ASpectrumMarkerList list;
    list.loadSetup(m_settings.get(), QStringLiteral("missing"));
    QVERIFY(list.isEmpty());
    QCOMPARE(list.setupName(), QStringLiteral("missing"));
}

void TestASpectrumMarkerListSetup::theNameOfNoParticularSetupIsNotKept()
{
    ASpectrumMarkerList list;
    list.addMarker(Max, 0, AFrequency());
    list.storeSetup(m_settings.get(), QStringLiteral("-"));
    QCOMPARE(list.setupName(), QStringLiteral("-"));
    list.storeSetup(m_settings.get(), QStringLiteral("s"));
    list.loadSetup(m_settings.get(), QStringLiteral("-"));
    QCOMPARE(list.listcount(), 2);
    QCOMPARE(list.setupName(), QStringLiteral("s"));
}

void TestASpectrumMarkerListSetup::anEntryOfItsTypeAloneHasDefaults()
{
    writeEntry(0, {{QStringLiteral("Type"), 6}});
    m_settings->setValue(QStringLiteral("s/Marker/size"), 1);
    ASpectrumMarkerList list;
    list.loadSetup(m_settings.get(), QStringLiteral("s"));
    QCOMPARE(describe(list), texts({"Std 1 trace 0 at 0 options 9 on ref -1 value none"}));
}

void TestASpectrumMarkerListSetup::anEntryWithoutKeysIsAMaximum()
{
    m_settings->setValue(QStringLiteral("s/Marker/size"), 2);
    ASpectrumMarkerList list;
    list.loadSetup(m_settings.get(), QStringLiteral("s"));
    QCOMPARE(describe(list), texts({"Max 1 trace 0 at 0 options 9 on ref -1 value none",
                                    "Max 2 trace 0 at 0 options 9 on ref -1 value none"}));
}

void TestASpectrumMarkerListSetup::obsoleteAndInvalidEntriesAreLeftOut()
{
    const QString type = QStringLiteral("Type");
    const QString trace = QStringLiteral("Trace");
    const QString reference = QStringLiteral("ReferenceMarkerIndex");
    writeEntry(0, {{type, 4}});
    writeEntry(1, {{type, 2}, {reference, 0}}); // a vacant position before it
    writeEntry(2, {{type, 2}, {reference, 3}}); // and one behind it
    writeEntry(3, {{type, 2}, {trace, 10}});
    writeEntry(4, {{type, 3}, {reference, 1}});
    m_settings->setValue(QStringLiteral("s/Marker/size"), 5);
    ASpectrumMarkerList list;
    MessageLog log;
    list.loadSetup(m_settings.get(), QStringLiteral("s"));
    QCOMPARE(log.take(), texts({"debug: obsolete marker type: 4", "debug: invalid trace: 10"}));
    QCOMPARE(namesOf(list.all()), texts({"Max 1", "Max 2", "Min 1"}));
    QVERIFY(!list.at(0)->referenceMarker());
    QVERIFY(!list.at(1)->referenceMarker());
    QCOMPARE(list.at(2)->referenceMarker(), list.at(0));
}

void TestASpectrumMarkerListSetup::referencesAreResolvedByTheOrderOfTheChecks_data()
{
    QTest::addColumn<QList<int>>("stored");
    QTest::addColumn<QList<int>>("loaded");
    using L = QList<int>;
    QTest::newRow("none") << L({-1, -1}) << L({-1, -1});
    QTest::newRow("backward") << L({-1, 0, 1, 0}) << L({-1, 0, 1, 0});
    QTest::newRow("to itself") << L({0, 1}) << L({-1, -1});
    QTest::newRow("forward") << L({1, -1}) << L({1, -1});
    QTest::newRow("two forward to one") << L({2, 2, -1}) << L({2, 2, -1});
    QTest::newRow("forward to one that refers to itself") << L({2, 2, 2}) << L({2, 2, -1});
    QTest::newRow("forward to one that refers backward") << L({2, -1, 1}) << L({-1, -1, 1});
    QTest::newRow("forward to one that refers forward") << L({1, 2, -1}) << L({-1, 2, -1});
    QTest::newRow("each to the other") << L({1, 0}) << L({-1, 0});
    QTest::newRow("beyond the end") << L({2, 1000000}) << L({-1, -1});
    QTest::newRow("far below") << L({-2, -2147483647}) << L({-1, -1});
    QTest::newRow("largest") << L({2147483647, -1}) << L({-1, -1});
}

void TestASpectrumMarkerListSetup::referencesAreResolvedByTheOrderOfTheChecks()
{
    QFETCH(QList<int>, stored);
    for (int i = 0; i < stored.size(); ++i)
        writeEntry(i, {{QStringLiteral("Type"), 2}, {QStringLiteral("ReferenceMarkerIndex"), stored.at(i)}});
    m_settings->setValue(QStringLiteral("s/Marker/size"), stored.size());
    ASpectrumMarkerList list;
    list.loadSetup(m_settings.get(), QStringLiteral("s"));
    QList<int> loaded;
    for (int i = 0; i < list.listcount(); ++i)
        loaded.append(list.indexOf(list.at(i)->referenceMarker()));
    QTEST(loaded, "loaded");
}

void TestASpectrumMarkerListSetup::negativeTargetsSurviveInMemory()
{
    ASpectrumMarkerList list;
    list.addMarker(Std, 0, hertz(-5));
    list.storeSetup(m_settings.get(), QStringLiteral("s"));
    ASpectrumMarkerList loaded;
    loaded.loadSetup(m_settings.get(), QStringLiteral("s"));
    QCOMPARE(loaded.at(0)->targetFrequency(), hertz(-5));
}

void TestASpectrumMarkerListSetup::manyMarkersComeBackAsTheyWere()
{
    // In the order of storing, so that no keys are equal; so many that they are numbered at once.
    ASpectrumMarkerList list;
    for (const Type type : {Max, Std, Cal})
        for (int trace = 0; trace < 4; ++trace)
            for (int i = 0; i < 100; ++i)
                list.addMarker(type, trace, type == Max ? AFrequency() : megahertz(i + 1));
    QCOMPARE(list.listcount(), 1200);
    for (int i = 1; i < 1200; ++i)
        list.at(i)->setReferenceMarker(list.at(i / 2));
    list.storeSetup(m_settings.get(), QStringLiteral("s"));
    ASpectrumMarkerList loaded;
    loaded.loadSetup(m_settings.get(), QStringLiteral("s"));
    QCOMPARE(describe(loaded), describe(list));
    for (int trace = 0; trace < 4; ++trace)
        QCOMPARE(namesOnTrace(loaded, trace), namesOnTrace(list, trace));
    // And the counters: the next marker is the last one.
    QCOMPARE(loaded.addMarker(Max, 3, AFrequency())->index(), 400);
}

void TestASpectrumMarkerListSetup::manyMarkersHaveRoomForTheirPeaks()
{
    for (const int count : {1003, 1004}) {
        for (int i = 0; i < count; ++i)
            writeEntry(i, {{QStringLiteral("Type"), i % 2 ? 2 : 3}});
        m_settings->setValue(QStringLiteral("s/Marker/size"), count);
        ASpectrumMarkerList list;
        list.loadSetup(m_settings.get(), QStringLiteral("s"));
        QCOMPARE(list.listcount(), count);
        QList<double> levels = {0};
        for (int i = 0; i < count; ++i)
            levels << 1 + i << -1 - i;
        update(&list, traceOf(levels));
        for (int i = 0; i < count; ++i)
            QVERIFY(!list.at(i)->value().isEmpty());
    }
}

void TestASpectrumMarkerListSetup::manyMarkersOfManyTypesLoadAsOneByOne_data()
{
    QTest::addColumn<int>("types"); // from 100 on, beside the current ones
    QTest::newRow("no other type") << 0;
    QTest::newRow("one other type") << 1;
    QTest::newRow("hundreds of other types") << 300;
}

void TestASpectrumMarkerListSetup::manyMarkersOfManyTypesLoadAsOneByOne()
{
    QFETCH(int, types);
    QList<int> order;
    for (int i = 0; i < types; ++i)
        order.append(100 + i * 7 % types); // neither up nor down
    order << Cal << Max << Std << Min;
    ASpectrumMarkerList oneByOne;
    int count = 0;
    for (int trace = 0; trace < 4; ++trace) {
        for (int i = 0; i < 1204 / order.size(); ++i) {
            const int type = order.at(i % order.size());
            writeEntry(count++, {{QStringLiteral("Type"), type}, {QStringLiteral("Trace"), trace}});
            oneByOne.addMarker(static_cast<Type>(type), trace, AFrequency())
                ->setDisplayOptions(ASpectrumMarker::ShowSymbol | ASpectrumMarker::ShowLabel);
        }
    }
    for (int repeated = 0; repeated < 1001; ++repeated) {
        const int type = order.at(repeated % order.size());
        writeEntry(count++, {{QStringLiteral("Type"), type}, {QStringLiteral("Trace"), 4}});
        oneByOne.addMarker(static_cast<Type>(type), 4, AFrequency())
            ->setDisplayOptions(ASpectrumMarker::ShowSymbol | ASpectrumMarker::ShowLabel);
    }
    m_settings->setValue(QStringLiteral("s/Marker/size"), count);
    ASpectrumMarkerList list;
    list.loadSetup(m_settings.get(), QStringLiteral("s"));
    QCOMPARE(describe(list), describe(oneByOne));
    const auto typesAndNumbers = [](const QList<ASpectrumMarker *> &markers) {
        QList<QList<int>> result;
        for (const ASpectrumMarker *marker : markers)
            result.append({marker->type(), marker->index()});
        return result;
    };
    int held = 0;
    for (int trace = 0; trace < 5; ++trace) {
        QCOMPARE(typesAndNumbers(*list.trace(trace)), typesAndNumbers(*oneByOne.trace(trace)));
        held += list.trace(trace)->size();
    }
    QCOMPARE(held, count);
}

void TestASpectrumMarkerListSetup::manyMarkersPassedOverStandBeforeTheirBlock()
{
    // Ten markers on trace 0 have the keys of the last ten on trace 1, which come first and so have lower numbers.
    int count = 0;
    for (int i = 0; i < 600; ++i)
        writeEntry(count++, {{QStringLiteral("Trace"), 1}});
    writeEntry(count++, {{QStringLiteral("Type"), int(Std)}});
    for (int i = 0; i < 600; ++i)
        writeEntry(count++, {{QStringLiteral("Trace"), 0}});
    m_settings->setValue(QStringLiteral("s/Marker/size"), count);
    ASpectrumMarkerList list;
    list.loadSetup(m_settings.get(), QStringLiteral("s"));
    QStringList expected;
    for (int number = 602; number < 612; ++number) // counted on from trace 1, and never numbered
        expected.append(QStringLiteral("Max %1").arg(number));
    for (int number = 601; number < 1191; ++number)
        expected.append(QStringLiteral("Max %1").arg(number));
    expected.append(QStringLiteral("Std 1"));
    QCOMPARE(namesOnTrace(list, 0), expected);
    QCOMPARE(list.trace(1)->size(), 600);
    QCOMPARE(list.trace(1)->last()->index(), 599);
}

QTEST_GUILESS_MAIN(TestASpectrumMarkerListSetup)
#include "tst_aspectrummarkerlist_setup.moc"
