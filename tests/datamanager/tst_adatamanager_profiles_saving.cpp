#include "datamanager/adatamanager.h"

#include "registryfixture.h"

#include <QtTest/QtTest>

using namespace registrytest;

// Where a save goes, and what it leaves as it was.
class TestADataManagerProfilesSaving : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_currentPath = QDir::currentPath(); }
    void cleanup() { QDir::setCurrent(m_currentPath); }

    void aSaveGoesToTheRightFile_data();
    void aSaveGoesToTheRightFile();
    void thePrefixIsComparedAsText_data();
    void thePrefixIsComparedAsText();
    void aUsersCopyOfAnInstalledProfileIsSavedInPlace();
    void anUnchangedProfileIsNotSaved();
    void nullIsNotSaved();
    void savingByIdLooksUpTheStore();
    void savingClearsOneBitAlone_data();
    void savingClearsOneBitAlone();
    void savingChangesNeitherStoreNorSource();
    void theDirectoryIsMadeEvenIfTheSourceIsWritten();
    void aFailedSaveKeepsTheChanges_data();
    void aFailedSaveKeepsTheChanges();
    void relativeDirectoriesAreTakenFromTheWorkingDirectory_data();
    void relativeDirectoriesAreTakenFromTheWorkingDirectory();
    void aProfileOutsideTheStoreIsSaved();
    void theTargetOfASaveIsNotWatched();
    void savingASecondTimeNeedsAChange();

private:
    const QString m_id = QStringLiteral("id");
    QString m_currentPath;
};

void TestADataManagerProfilesSaving::aSaveGoesToTheRightFile_data()
{
    QTest::addColumn<unsigned int>("flags");
    QTest::addColumn<bool>("belowPrefix");
    QTest::addColumn<bool>("sourceExists");
    QTest::addColumn<QString>("directory");
    QTest::addColumn<bool>("toDirectory");
    for (unsigned int flags : {0U, 1U, 2U, 3U}) {
        for (bool belowPrefix : {false, true}) {
            for (bool sourceExists : {false, true}) {
                for (const char *directory : {"existing", "new/and/nested"}) {
                    const bool toDirectory = flags == 1 || belowPrefix || !sourceExists;
                    QTest::addRow("flags %u%s%s, %s", flags, belowPrefix ? ", below the prefix" : "",
                                  sourceExists ? "" : ", source gone", directory)
                        << flags << belowPrefix << sourceExists << QString::fromUtf8(directory) << toDirectory;
                }
            }
        }
    }
}

void TestADataManagerProfilesSaving::aSaveGoesToTheRightFile()
{
    QFETCH(unsigned int, flags);
    QFETCH(bool, belowPrefix);
    QFETCH(bool, sourceExists);
    QFETCH(QString, directory);
    QFETCH(bool, toDirectory);
    Registry registry;
    for (const QString &name : {QStringLiteral("installed"), QStringLiteral("own"), QStringLiteral("existing")})
        QVERIFY(QDir().mkdir(registry.path(name)));
    const QString source =
        registry.writeProfile(belowPrefix ? QStringLiteral("installed/file.xml") : QStringLiteral("own/file.xml"), m_id,
                              QStringLiteral("Old"));
    QVERIFY(registry->addProfileFile(source, AProfile::UserProfile));
    AProfile *profile = registry->getProfileForId(m_id);
    profile->setLabel(QStringLiteral("New"), QString());
    profile->setFlags(flags | kModified);
    const QByteArray oldText = readFile(source);
    if (!sourceExists)
        QVERIFY(QFile::remove(source));

    const QString path = registry.path(directory);
    QVERIFY(registry->saveProfile(profile, path, registry.path(QStringLiteral("installed"))));
    QCOMPARE(profile->flags(), flags);
    QCOMPARE(profile->source(), source);
    QVERIFY(QDir(path).exists());
    const QString inDirectory = path + QStringLiteral("/id.profile");
    const std::unique_ptr<AProfile> saved(AProfile::fromFile(toDirectory ? inDirectory : source));
    QVERIFY(saved && saved->isValid());
    QCOMPARE(saved->id(), m_id);
    QCOMPARE(saved->label(QString()), QStringLiteral("New"));
    // Nothing else is written.
    QCOMPARE(QDir(path).entryList(QDir::Files),
             toDirectory ? QStringList{QStringLiteral("id.profile")} : QStringList());
    if (toDirectory && sourceExists)
        QCOMPARE(readFile(source), oldText);
    else if (toDirectory)
        QVERIFY(!QFile::exists(source));
}

void TestADataManagerProfilesSaving::thePrefixIsComparedAsText_data()
{
    QTest::addColumn<QString>("prefix"); // relative to the directory of the test
    QTest::addColumn<bool>("toDirectory");
    QTest::newRow("directory") << QStringLiteral("installed") << true;
    QTest::newRow("directory with slash") << QStringLiteral("installed/") << true;
    QTest::newRow("part of the name") << QStringLiteral("inst") << true;
    QTest::newRow("the file itself") << QStringLiteral("installed/file.xml") << true;
    QTest::newRow("upper case") << QStringLiteral("Installed") << false;
    QTest::newRow("other directory") << QStringLiteral("own") << false;
    QTest::newRow("longer") << QStringLiteral("installed/file.xml/") << false;
    QTest::newRow("unclean") << QStringLiteral("./installed") << false;
}

void TestADataManagerProfilesSaving::thePrefixIsComparedAsText()
{
    QFETCH(QString, prefix);
    QFETCH(bool, toDirectory);
    Registry registry;
    QVERIFY(QDir().mkdir(registry.path(QStringLiteral("installed"))));
    const QString source = registry.writeProfile(QStringLiteral("installed/file.xml"), m_id, QStringLiteral("Old"));
    QVERIFY(registry->addProfileFile(source, AProfile::UserProfile));
    AProfile *profile = registry->getProfileForId(m_id);
    profile->setLabel(QStringLiteral("New"), QString());
    QVERIFY(registry->saveProfile(profile, registry.path(QStringLiteral("save")), registry.path(prefix)));
    QCOMPARE(QFile::exists(registry.path(QStringLiteral("save/id.profile"))), toDirectory);
    const std::unique_ptr<AProfile> atSource(AProfile::fromFile(source));
    QCOMPARE(atSource->label(QString()), toDirectory ? QStringLiteral("Old") : QStringLiteral("New"));
}

void TestADataManagerProfilesSaving::aUsersCopyOfAnInstalledProfileIsSavedInPlace()
{
    Registry registry;
    const QString installed = registry.writeProfile(QStringLiteral("installed"), m_id, QStringLiteral("Installed"));
    const QString own = registry.writeProfile(QStringLiteral("own"), m_id, QStringLiteral("Own"));
    QVERIFY(registry->addProfileFile(installed, AProfile::InstalledProfile));
    QVERIFY(registry->addProfileFile(own, AProfile::UserProfile));
    AProfile *profile = registry->getProfileForId(m_id);
    profile->setLabel(QStringLiteral("New"), QString());
    QCOMPARE(profile->flags(), kInstalled | kUser | kModified);
    QVERIFY(registry->saveProfile(profile, registry.path(QStringLiteral("save")), installed));
    const std::unique_ptr<AProfile> saved(AProfile::fromFile(own));
    QCOMPARE(saved->label(QString()), QStringLiteral("New"));
    QVERIFY(!QFile::exists(registry.path(QStringLiteral("save/id.profile"))));
    QCOMPARE(profile->flags(), kInstalled | kUser);
}

void TestADataManagerProfilesSaving::anUnchangedProfileIsNotSaved()
{
    Registry registry;
    for (AProfile::Flag flag : {AProfile::InstalledProfile, AProfile::UserProfile}) {
        const QString source = registry.writeProfile(QStringLiteral("a"), m_id, QStringLiteral("A"));
        QVERIFY(registry->addProfileFile(source, flag));
        AProfile *profile = registry->getProfileForId(m_id);
        const QByteArray text = readFile(source);
        const QString directory = registry.path(QStringLiteral("save"));
        QVERIFY(!registry->saveProfile(profile, directory, QStringLiteral("/none")));
        QVERIFY(!registry->saveProfile(m_id, directory, QStringLiteral("/none")));
        QVERIFY(!QFile::exists(directory));
        QCOMPARE(readFile(source), text);

        QVERIFY(QFile::remove(source));
        QVERIFY(!registry->saveProfile(profile, directory, QStringLiteral("/none")));
        QVERIFY(!QFile::exists(directory));
        QVERIFY(!QFile::exists(source));
    }
}

void TestADataManagerProfilesSaving::nullIsNotSaved()
{
    Registry registry;
    const QString directory = registry.path(QStringLiteral("save"));
    QVERIFY(!registry->saveProfile(static_cast<AProfile *>(nullptr), directory, QString()));
    QVERIFY(!QFile::exists(directory));
    QCOMPARE(registry.takeLog(), QStringList());
}

void TestADataManagerProfilesSaving::savingByIdLooksUpTheStore()
{
    Registry registry;
    AProfile *profile = registry.add(m_id, QStringLiteral("Old"));
    profile->setLabel(QStringLiteral("New"), QString());
    registry.takeLog();
    const QString directory = registry.path(QStringLiteral("save"));
    for (const char *id : {"", "ID", "unknown", "New"})
        QVERIFY2(!registry->saveProfile(QLatin1String(id), directory, QStringLiteral("/none")), id);
    QVERIFY(!QFile::exists(directory));
    QCOMPARE(registry->getProfiles(), QList<AProfile *>{profile});

    QVERIFY(registry->saveProfile(m_id, directory, QStringLiteral("/none")));
    QCOMPARE(profile->flags(), kUser);
    const std::unique_ptr<AProfile> saved(AProfile::fromFile(profile->source()));
    QCOMPARE(saved->label(QString()), QStringLiteral("New"));
    QCOMPARE(registry.takeLog(), QStringList());
}

void TestADataManagerProfilesSaving::savingClearsOneBitAlone_data()
{
    QTest::addColumn<unsigned int>("flags");
    for (unsigned int flags : {0U, 1U, 2U, 3U, 5U, 6U, 8U, 0x800U, 0x2000U, 0x80000000U, 0xffffeff8U, 0xffffefffU})
        QTest::addRow("0x%x", flags) << flags;
}

void TestADataManagerProfilesSaving::savingClearsOneBitAlone()
{
    QFETCH(unsigned int, flags);
    Registry registry;
    // Bit 4 follows the id, so the id follows the bit.
    const QString id = (flags & kDerived) ? QStringLiteral("id:x") : m_id;
    const QString source = registry.writeProfile(QStringLiteral("a"), id, QStringLiteral("A"));
    QVERIFY(registry->addProfileFile(source, AProfile::UserProfile));
    AProfile *profile = registry->getProfileForId(id);
    profile->setFlags(flags | kModified);
    QVERIFY(registry->saveProfile(profile, registry.path(QStringLiteral("save")), QStringLiteral("/none")));
    QCOMPARE(profile->flags(), flags);
}

void TestADataManagerProfilesSaving::savingChangesNeitherStoreNorSource()
{
    Registry registry;
    const QString source = registry.writeProfile(QStringLiteral("a"), QStringLiteral("old"), QStringLiteral("A"));
    QVERIFY(registry->addProfileFile(source, AProfile::InstalledProfile));
    AProfile *profile = registry->getProfileForId(QStringLiteral("old"));
    profile->setId(QStringLiteral("new"));
    registry.takeLog();
    QVERIFY(registry->saveProfile(profile, registry.path(QStringLiteral("save")), QStringLiteral("/none")));
    // The file is named after the id, and the key stays.
    QVERIFY(QFile::exists(registry.path(QStringLiteral("save/new.profile"))));
    QCOMPARE(registry.takeLog(), QStringList());
    QCOMPARE(registry->getProfileForId(QStringLiteral("old")), profile);
    QVERIFY(!registry->getProfileForId(QStringLiteral("new")));
    QCOMPARE(registry->getProfiles(), QList<AProfile *>{profile});
    QCOMPARE(profile->source(), source);
    QVERIFY(isWatched(source));
}

void TestADataManagerProfilesSaving::theDirectoryIsMadeEvenIfTheSourceIsWritten()
{
    Registry registry;
    AProfile *profile = registry.add(m_id, QStringLiteral("Old"));
    profile->setLabel(QStringLiteral("New"), QString());
    const QString directory = registry.path(QStringLiteral("made/for nothing"));
    QVERIFY(registry->saveProfile(profile, directory, QStringLiteral("/none")));
    QVERIFY(QDir(directory).exists());
    QVERIFY(QDir(directory).isEmpty());
}

void TestADataManagerProfilesSaving::aFailedSaveKeepsTheChanges_data()
{
    QTest::addColumn<unsigned int>("flags");
    QTest::addColumn<QString>("directory");
    QTest::addColumn<bool>("sourceIsDirectory");
    QTest::newRow("directory below a file") << kInstalled << QStringLiteral("file/save") << false;
    QTest::newRow("directory is a file") << kInstalled << QStringLiteral("file") << false;
    // A directory in its place exists, so the profile is still bound for its source.
    QTest::newRow("source is a directory") << kUser << QStringLiteral("save") << true;
    QTest::newRow("target is a directory") << kInstalled << QStringLiteral("blocked") << false;
}

void TestADataManagerProfilesSaving::aFailedSaveKeepsTheChanges()
{
    QFETCH(unsigned int, flags);
    QFETCH(QString, directory);
    QFETCH(bool, sourceIsDirectory);
    Registry registry;
    registry.write(QStringLiteral("file"), QStringLiteral("text"));
    QVERIFY(QDir().mkpath(registry.path(QStringLiteral("blocked/id.profile"))));
    const QString source = registry.writeProfile(QStringLiteral("a"), m_id, QStringLiteral("Old"));
    QVERIFY(registry->addProfileFile(source, AProfile::UserProfile));
    AProfile *profile = registry->getProfileForId(m_id);
    profile->setLabel(QStringLiteral("New"), QString());
    profile->setFlags(flags | kModified);
    if (sourceIsDirectory)
        QVERIFY(QFile::remove(source) && QDir().mkdir(source));
    registry.takeLog();

    QVERIFY(!registry->saveProfile(profile, registry.path(directory), QStringLiteral("/none")));
    QCOMPARE(profile->flags(), flags | kModified);
    QCOMPARE(profile->source(), source);
    QCOMPARE(registry.takeLog(), QStringList());
    QCOMPARE(readFile(registry.path(QStringLiteral("file"))), QByteArray("text"));
    QVERIFY(!QFile::exists(registry.path(QStringLiteral("save/id.profile"))));
    if (!sourceIsDirectory)
        QCOMPARE(readFile(source), profileText(m_id, QStringLiteral("Old")).toUtf8());
}

void TestADataManagerProfilesSaving::relativeDirectoriesAreTakenFromTheWorkingDirectory_data()
{
    QTest::addColumn<QString>("directory");
    QTest::addColumn<QString>("file");
    QTest::newRow("empty") << QString() << QStringLiteral("id.profile");
    QTest::newRow("dot") << QStringLiteral(".") << QStringLiteral("id.profile");
    QTest::newRow("name") << QStringLiteral("sub/save") << QStringLiteral("sub/save/id.profile");
    QTest::newRow("name with slash") << QStringLiteral("save/") << QStringLiteral("save/id.profile");
}

void TestADataManagerProfilesSaving::relativeDirectoriesAreTakenFromTheWorkingDirectory()
{
    QFETCH(QString, directory);
    QFETCH(QString, file);
    Registry registry;
    const QString source = registry.writeProfile(QStringLiteral("a"), m_id, QStringLiteral("Old"));
    QVERIFY(registry->addProfileFile(source, AProfile::InstalledProfile));
    AProfile *profile = registry->getProfileForId(m_id);
    profile->setLabel(QStringLiteral("New"), QString());
    QVERIFY(QDir::setCurrent(registry.path(QString())));
    QVERIFY(registry->saveProfile(profile, directory, QStringLiteral("/none")));
    const std::unique_ptr<AProfile> saved(AProfile::fromFile(registry.path(file)));
    QVERIFY(saved && saved->isValid());
    QCOMPARE(saved->label(QString()), QStringLiteral("New"));
}

void TestADataManagerProfilesSaving::aProfileOutsideTheStoreIsSaved()
{
    Registry registry;
    AProfile profile;
    profile.setId(QStringLiteral("made"));
    profile.setLabel(QStringLiteral("Made"), QString());
    profile.setRange(AFrequency("1 MHz"), AFrequency("2 MHz"));
    // Without a source there is no file to go back to.
    QVERIFY(registry->saveProfile(&profile, registry.path(QStringLiteral("save")), QStringLiteral("/none")));
    QCOMPARE(profile.flags(), 0U);
    QVERIFY(profile.source().isEmpty());
    const std::unique_ptr<AProfile> saved(AProfile::fromFile(registry.path(QStringLiteral("save/made.profile"))));
    QVERIFY(saved && saved->isValid());
    QCOMPARE(saved->label(QString()), QStringLiteral("Made"));
    QVERIFY(registry->getProfiles().isEmpty());
    QCOMPARE(registry.takeLog(), QStringList());

    // Every text begins with the empty one.
    const QString source = registry.writeProfile(QStringLiteral("a"), m_id, QStringLiteral("Old"));
    const std::unique_ptr<AProfile> other(AProfile::fromFile(source));
    other->setLabel(QStringLiteral("New"), QString());
    QVERIFY(registry->saveProfile(other.get(), registry.path(QStringLiteral("save")), QString()));
    QVERIFY(QFile::exists(registry.path(QStringLiteral("save/id.profile"))));
    QCOMPARE(readFile(source), profileText(m_id, QStringLiteral("Old")).toUtf8());
}

void TestADataManagerProfilesSaving::theTargetOfASaveIsNotWatched()
{
    Registry registry;
    const QString source = registry.writeProfile(QStringLiteral("a"), m_id, QStringLiteral("Old"));
    QVERIFY(registry->addProfileFile(source, AProfile::InstalledProfile));
    registry->getProfileForId(m_id)->setLabel(QStringLiteral("New"), QString());
    QVERIFY(registry->saveProfile(m_id, registry.path(QString()), QStringLiteral("/none")));
    QVERIFY(QFile::exists(registry.path(QStringLiteral("id.profile"))));
    QVERIFY(!isWatched(registry.path(QStringLiteral("id.profile"))));
    QVERIFY(isWatched(source));
}

void TestADataManagerProfilesSaving::savingASecondTimeNeedsAChange()
{
    Registry registry;
    AProfile *profile = registry.add(m_id, QStringLiteral("Old"));
    profile->setLabel(QStringLiteral("New"), QString());
    const QString directory = registry.path(QString());
    QVERIFY(registry->saveProfile(profile, directory, QStringLiteral("/none")));
    QVERIFY(!registry->saveProfile(profile, directory, QStringLiteral("/none")));
    profile->setLabel(QStringLiteral("Newer"), QString());
    QVERIFY(registry->saveProfile(profile, directory, QStringLiteral("/none")));
    const std::unique_ptr<AProfile> saved(AProfile::fromFile(profile->source()));
    QCOMPARE(saved->label(QString()), QStringLiteral("Newer"));
}

QTEST_GUILESS_MAIN(TestADataManagerProfilesSaving)
#include "tst_adatamanager_profiles_saving.moc"
