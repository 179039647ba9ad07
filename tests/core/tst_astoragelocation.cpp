#include "core/astoragelocation.h"

#include <QtTest/QtTest>

namespace {

constexpr auto kInstalled = AStorageLocation::Installed;
constexpr auto kUser = AStorageLocation::User;

QString path(AStorageLocation::StorageType storage, int type)
{
    return AStorageLocation::calibrationPath(storage, static_cast<ACalibrationData::CalibrationType>(type));
}

bool writeFile(const QString &fileName, const QByteArray &content)
{
    QFile file(fileName);
    return QFileInfo(fileName).dir().mkpath(QStringLiteral(".")) && file.open(QIODevice::WriteOnly) &&
           file.write(content) == content.size();
}

} // namespace

class TestAStorageLocation : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_directory.reset(new QTemporaryDir);
        QVERIFY(m_directory->isValid());
        m_installed = m_directory->filePath(QStringLiteral("installed"));
        m_user = m_directory->filePath(QStringLiteral("user"));
        AStorageLocation::setRoot(kInstalled, m_installed);
        AStorageLocation::setRoot(kUser, m_user);
    }
    void cleanup()
    {
        AStorageLocation::setRoot(kInstalled, QString());
        AStorageLocation::setRoot(kUser, QString());
    }

    void theStorageTypesAreNumbered();
    void eachTypeHasItsDirectory_data();
    void eachTypeHasItsDirectory();
    void noCalibrationPathIsThePrefixOfAnother();
    void rootsAreMadeAbsoluteAndClean_data();
    void rootsAreMadeAbsoluteAndClean();
    void aRelativeRootStaysWhenTheCurrentDirectoryChanges();
    void anEmptyRootRestoresTheDefault();
    void theUsersDefaultFollowsTheApplicationsNames();
    void pathsDoNotCreateDirectories();
    void anInstalledFileMapsToTheUsersPlace();
    void dataFilesAreLookedUpInTheUsersRootFirst();
    void directoriesAreNoDataFiles();
    void absoluteNamesStay();
    void oddNames();

private:
    QScopedPointer<QTemporaryDir> m_directory;
    QString m_installed;
    QString m_user;
};

void TestAStorageLocation::theStorageTypesAreNumbered()
{
    QCOMPARE(int(AStorageLocation::Installed), 0);
    QCOMPARE(int(AStorageLocation::User), 1);
}

void TestAStorageLocation::eachTypeHasItsDirectory_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<QString>("directory");
    QTest::newRow("preamplifier") << 0 << "preamplifier";
    QTest::newRow("antenna") << 1 << "antenna";
    QTest::newRow("cable") << 2 << "cable";
    QTest::newRow("attenuator") << 3 << "attenuator";
    QTest::newRow("unknown 4") << 4 << "other";
    QTest::newRow("no particular type") << 5 << "other";
    QTest::newRow("all types") << 6 << "other";
    QTest::newRow("unknown 7") << 7 << "other";
}

void TestAStorageLocation::eachTypeHasItsDirectory()
{
    QFETCH(int, type);
    QFETCH(QString, directory);
    const QString below = QStringLiteral("/calibration/") + directory + QLatin1Char('/');
    QCOMPARE(path(kInstalled, type), m_installed + below);
    QCOMPARE(path(kUser, type), m_user + below);
}

void TestAStorageLocation::noCalibrationPathIsThePrefixOfAnother()
{
    QStringList paths;
    for (const auto storage : {kInstalled, kUser}) {
        for (int type : {0, 1, 2, 3, 5})
            paths << path(storage, type);
    }
    for (const QString &a : qAsConst(paths)) {
        QVERIFY(a.endsWith(QLatin1Char('/')));
        QVERIFY(QDir::isAbsolutePath(a));
        for (const QString &b : qAsConst(paths))
            QVERIFY(&a == &b || !b.startsWith(a));
    }
}

void TestAStorageLocation::rootsAreMadeAbsoluteAndClean_data()
{
    QTest::addColumn<QString>("root");
    QTest::addColumn<QString>("clean"); // with "/" at the end
    const QString current = QDir::currentPath();
    QTest::newRow("plain") << "/data/suite"
                           << "/data/suite/";
    QTest::newRow("slash at the end") << "/data/suite///"
                                      << "/data/suite/";
    QTest::newRow("double slash") << "/data//suite"
                                  << "/data/suite/";
    QTest::newRow("dots") << "/data/./x/../suite"
                          << "/data/suite/";
    QTest::newRow("file system root") << "/"
                                      << "/";
    QTest::newRow("relative") << "some/where" << current + "/some/where/";
    QTest::newRow("here") << "." << current + "/";
    QTest::newRow("blank inside") << "/data/my suite"
                                  << "/data/my suite/";
    QTest::newRow("placeholder") << "/data/%1%2"
                                 << "/data/%1%2/";
    QTest::newRow("letters") << QString::fromUtf8("/d\xc3\xa4ta") << QString::fromUtf8("/d\xc3\xa4ta/");
}

void TestAStorageLocation::rootsAreMadeAbsoluteAndClean()
{
    QFETCH(QString, root);
    QFETCH(QString, clean);
    for (const auto storage : {kInstalled, kUser}) {
        AStorageLocation::setRoot(storage, root);
        QCOMPARE(path(storage, 1), clean + QLatin1String("calibration/antenna/"));
    }
    QCOMPARE(AStorageLocation::dataFilename(QStringLiteral("a.csv"), false), clean + QLatin1String("a.csv"));
}

void TestAStorageLocation::aRelativeRootStaysWhenTheCurrentDirectoryChanges()
{
    AStorageLocation::setRoot(kUser, QStringLiteral("relative"));
    const QString before = path(kUser, 0);
    const QString current = QDir::currentPath();
    QVERIFY(QDir::setCurrent(m_directory->path()));
    const QString after = path(kUser, 0);
    QVERIFY(QDir::setCurrent(current));
    QCOMPARE(after, before);
}

void TestAStorageLocation::anEmptyRootRestoresTheDefault()
{
    AStorageLocation::setRoot(kInstalled, QString());
    AStorageLocation::setRoot(kUser, QStringLiteral(""));
    const QString user = QStandardPaths::writableLocation(QStandardPaths::AppDataLocation);
    QCOMPARE(path(kUser, 2), user + QLatin1String("/calibration/cable/"));
    QCOMPARE(AStorageLocation::dataFilename(QStringLiteral("x"), false), user + QLatin1String("/x"));
    const QString installed = path(kInstalled, 2);
    QVERIFY(QDir::isAbsolutePath(installed));
    QVERIFY2(installed.endsWith(QLatin1String("/aveldoran/calibration/cable/")), qPrintable(installed));
}

void TestAStorageLocation::theUsersDefaultFollowsTheApplicationsNames()
{
    AStorageLocation::setRoot(kUser, QString());
    const QString name = QCoreApplication::applicationName();
    QCoreApplication::setApplicationName(QStringLiteral("Renamed"));
    const QString renamed = path(kUser, 0);
    const QString expected = QStandardPaths::writableLocation(QStandardPaths::AppDataLocation);
    QCoreApplication::setApplicationName(name);
    QVERIFY(expected.endsWith(QLatin1String("Renamed")));
    QCOMPARE(renamed, expected + QLatin1String("/calibration/preamplifier/"));
}

void TestAStorageLocation::pathsDoNotCreateDirectories()
{
    path(kInstalled, 1);
    path(kUser, 1);
    AStorageLocation::dataFilename(QStringLiteral("a/b"), true);
    QVERIFY(QDir(m_directory->path()).isEmpty());
}

void TestAStorageLocation::anInstalledFileMapsToTheUsersPlace()
{
    QString file = m_installed + QLatin1String("/calibration/antenna/maker/loop.caldata");
    file.replace(path(kInstalled, 1), path(kUser, 1));
    QCOMPARE(file, m_user + QLatin1String("/calibration/antenna/maker/loop.caldata"));
    QString elsewhere = m_installed + QLatin1String("/calibration/antennas/loop.caldata");
    elsewhere.replace(path(kInstalled, 1), path(kUser, 1));
    QVERIFY(elsewhere.startsWith(m_installed));
}

void TestAStorageLocation::dataFilesAreLookedUpInTheUsersRootFirst()
{
    const QString name = QStringLiteral("suppression/peaks.csv");
    const QString inUser = m_user + QLatin1Char('/') + name;
    const QString inInstalled = m_installed + QLatin1Char('/') + name;

    QCOMPARE(AStorageLocation::dataFilename(name, true), inUser);
    QCOMPARE(AStorageLocation::dataFilename(name, false), inUser);

    QVERIFY(writeFile(inInstalled, "installed"));
    QCOMPARE(AStorageLocation::dataFilename(name, true), inInstalled);
    QCOMPARE(AStorageLocation::dataFilename(name, false), inUser);

    QVERIFY(writeFile(inUser, "user"));
    QCOMPARE(AStorageLocation::dataFilename(name, true), inUser);
    QCOMPARE(AStorageLocation::dataFilename(name, false), inUser);

    QVERIFY(QFile::remove(inInstalled));
    QCOMPARE(AStorageLocation::dataFilename(name, true), inUser);
}

void TestAStorageLocation::directoriesAreNoDataFiles()
{
    const QString name = QStringLiteral("peaks");
    QVERIFY(QDir().mkpath(m_user + QLatin1Char('/') + name));
    QVERIFY(writeFile(m_installed + QLatin1Char('/') + name, "installed"));
    QCOMPARE(AStorageLocation::dataFilename(name, true), m_installed + QLatin1Char('/') + name);

    QVERIFY(QFile::remove(m_installed + QLatin1Char('/') + name));
    QVERIFY(QDir().mkpath(m_installed + QLatin1Char('/') + name));
    QCOMPARE(AStorageLocation::dataFilename(name, true), m_user + QLatin1Char('/') + name);
}

void TestAStorageLocation::absoluteNamesStay()
{
    for (bool existing : {true, false}) {
        QCOMPARE(AStorageLocation::dataFilename(QStringLiteral("/tmp//x/../peaks.csv"), existing),
                 QStringLiteral("/tmp//x/../peaks.csv"));
        QCOMPARE(AStorageLocation::dataFilename(QStringLiteral("/"), existing), QStringLiteral("/"));
    }
}

void TestAStorageLocation::oddNames()
{
    for (bool existing : {true, false}) {
        QCOMPARE(AStorageLocation::dataFilename(QString(), existing), m_user + QLatin1Char('/'));
        QCOMPARE(AStorageLocation::dataFilename(QStringLiteral("%1 name"), existing),
                 m_user + QLatin1String("/%1 name"));
    }
}

QTEST_GUILESS_MAIN(TestAStorageLocation)
#include "tst_astoragelocation.moc"
