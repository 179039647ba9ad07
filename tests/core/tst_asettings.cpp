#include "core/asettings.h"

#include <QtCore/QSettings>
#include <QtTest/QtTest>

#include <memory>

class TestASettings : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY(m_directory.isValid());
        QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, m_directory.path());
        nameApplication("First");
    }
    void cleanup()
    {
        ASettings::setApplicationSettings(nullptr);
        nameApplication("First");
        QSettings().clear();
    }

    void theDefaultIsTheApplicationsOwnStore();
    void theDefaultFollowsTheApplicationsNames();
    void aSuppliedStoreIsUsed();
    void aSuppliedStoreStaysTheCallers();
    void aDeletedStoreFallsBackToTheDefault();
    void nullReturnsToTheDefault();
    void absentKeysGiveTheDefaultValue();
    void valuesReachTheFile();
    void theLanguageIsTheSettingOrTheSystems();

private:
    static void nameApplication(const char *name)
    {
        QCoreApplication::setOrganizationName(QStringLiteral("Suite"));
        QCoreApplication::setApplicationName(QString::fromLatin1(name));
    }
    std::unique_ptr<QSettings> newStore(const char *name) const
    {
        return std::make_unique<QSettings>(m_directory.filePath(QString::fromLatin1(name)), QSettings::IniFormat);
    }
    QTemporaryDir m_directory;
};

void TestASettings::theDefaultIsTheApplicationsOwnStore()
{
    QVERIFY(ASettings::applicationSettings());
    QCOMPARE(ASettings::applicationSettings(), ASettings::applicationSettings());
    QCOMPARE(ASettings::applicationSettings()->fileName(), QSettings().fileName());
    ASettings::setValue(QStringLiteral("Group/Key"), 17);
    QCOMPARE(QSettings().value(QStringLiteral("Group/Key")).toInt(), 17);
    QSettings().setValue(QStringLiteral("Group/Other"), QStringLiteral("text"));
    QCOMPARE(ASettings::value(QStringLiteral("Group/Other"), QVariant()).toString(), QStringLiteral("text"));
}

void TestASettings::theDefaultFollowsTheApplicationsNames()
{
    ASettings::setValue(QStringLiteral("Key"), QStringLiteral("of the first"));
    nameApplication("Second");
    QCOMPARE(ASettings::applicationSettings()->fileName(), QSettings().fileName());
    QVERIFY(!ASettings::value(QStringLiteral("Key"), QVariant()).isValid());
    nameApplication("First");
    QCOMPARE(ASettings::value(QStringLiteral("Key"), QVariant()).toString(), QStringLiteral("of the first"));
}

void TestASettings::aSuppliedStoreIsUsed()
{
    const auto store = newStore("supplied.ini");
    ASettings::setApplicationSettings(store.get());
    QCOMPARE(ASettings::applicationSettings(), store.get());
    ASettings::setValue(QStringLiteral("Key"), true);
    QCOMPARE(store->value(QStringLiteral("Key")).toBool(), true);
    QVERIFY(!QSettings().contains(QStringLiteral("Key")));
    store->setValue(QStringLiteral("Key"), false);
    QCOMPARE(ASettings::value(QStringLiteral("Key"), true).toBool(), false);
}

void TestASettings::aSuppliedStoreStaysTheCallers()
{
    const QPointer<QSettings> first =
        new QSettings(m_directory.filePath(QStringLiteral("1.ini")), QSettings::IniFormat);
    const QPointer<QSettings> second =
        new QSettings(m_directory.filePath(QStringLiteral("2.ini")), QSettings::IniFormat);
    ASettings::setApplicationSettings(first);
    ASettings::setApplicationSettings(second);
    QCOMPARE(ASettings::applicationSettings(), second.data());
    ASettings::setApplicationSettings(nullptr);
    QVERIFY(first);
    QVERIFY(second);
    delete first;
    delete second;
}

void TestASettings::aDeletedStoreFallsBackToTheDefault()
{
    auto store = newStore("deleted.ini");
    ASettings::setApplicationSettings(store.get());
    ASettings::setValue(QStringLiteral("Key"), 1);
    store.reset();
    QVERIFY(ASettings::applicationSettings());
    QCOMPARE(ASettings::applicationSettings()->fileName(), QSettings().fileName());
    QCOMPARE(ASettings::value(QStringLiteral("Key"), 2).toInt(), 2);
    QVERIFY(!ASettings::language().isEmpty());
}

void TestASettings::nullReturnsToTheDefault()
{
    const auto store = newStore("returned.ini");
    ASettings::setApplicationSettings(store.get());
    ASettings::setApplicationSettings(nullptr);
    QCOMPARE(ASettings::applicationSettings()->fileName(), QSettings().fileName());
}

void TestASettings::absentKeysGiveTheDefaultValue()
{
    QCOMPARE(ASettings::value(QStringLiteral("Absent"), 3.5).toDouble(), 3.5);
    QVERIFY(!ASettings::value(QStringLiteral("Absent"), QVariant()).isValid());
    QVERIFY(!ASettings::value(QStringLiteral("Absent")).isValid());
    QVERIFY(!QSettings().contains(QStringLiteral("Absent")));
    ASettings::setValue(QStringLiteral("Empty"), QString());
    QVERIFY(ASettings::value(QStringLiteral("Empty"), QStringLiteral("default")).toString().isEmpty());
}

void TestASettings::valuesReachTheFile()
{
    auto store = newStore("file.ini");
    ASettings::setApplicationSettings(store.get());
    ASettings::setValue(QStringLiteral("Application/DialogPath_CSV"), QStringLiteral("/data/\u00fc"));
    store.reset();
    const auto again = newStore("file.ini");
    QCOMPARE(again->value(QStringLiteral("Application/DialogPath_CSV")).toString(), QStringLiteral("/data/\u00fc"));
}

void TestASettings::theLanguageIsTheSettingOrTheSystems()
{
    QCOMPARE(ASettings::language(), QLocale::system().name());
    QLocale::setDefault(QLocale(QLocale::Finnish)); // the default locale isn't the system's
    QCOMPARE(ASettings::language(), QLocale::system().name());
    QLocale::setDefault(QLocale::c());

    ASettings::setValue(QStringLiteral("Application/Language"), QStringLiteral("de_AT"));
    QCOMPARE(ASettings::language(), QStringLiteral("de_AT"));
    const auto store = newStore("language.ini");
    ASettings::setApplicationSettings(store.get());
    QCOMPARE(ASettings::language(), QLocale::system().name());
    store->setValue(QStringLiteral("Application/Language"), QStringLiteral("fr"));
    QCOMPARE(ASettings::language(), QStringLiteral("fr"));
}

QTEST_GUILESS_MAIN(TestASettings)
#include "tst_asettings.moc"
