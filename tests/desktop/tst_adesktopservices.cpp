#include "desktop/desktopsettings.h"

#include <desktop/adesktopservices.h>

#include <QtCore/QStandardPaths>
#include <QtTest/QtTest>

#include <algorithm>
#include <memory>

using Location = ADesktopServices::StandardLocation;

class TestADesktopServices : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void locationsAreThoseOfQt_data();
    void locationsAreThoseOfQt();
    void theFirstLocationThatExistsIsGiven();
    void withoutAnyTheFirstLocationIsGiven();
    void anUnknownLocationIsEmpty();

    void aFilterHasTheDirectoryOfItsFirstExtension_data();
    void aFilterHasTheDirectoryOfItsFirstExtension();
    void withoutARememberedDirectoryTheDefaultIsGiven_data();
    void withoutARememberedDirectoryTheDefaultIsGiven();
    void whatIsRememberedIsGivenAsItStands_data();
    void whatIsRememberedIsGivenAsItStands();
    void askingRemembersNothing();
    void aPatternLongerThanAnyPathHasNoDirectory();
    void hugeFiltersTakeTimeInProportion_data();
    void hugeFiltersTakeTimeInProportion();

private:
    std::unique_ptr<DesktopSettings> m_settings;
};

void TestADesktopServices::init()
{
    m_settings = std::make_unique<DesktopSettings>();
}

void TestADesktopServices::locationsAreThoseOfQt_data()
{
    QTest::addColumn<int>("location");
    QTest::addColumn<int>("qtLocation");
#define LOCATION(NAME) QTest::newRow(#NAME) << int(ADesktopServices::NAME) << int(QStandardPaths::NAME)
    LOCATION(DesktopLocation);
    LOCATION(DocumentsLocation);
    LOCATION(FontsLocation);
    LOCATION(ApplicationsLocation);
    LOCATION(MusicLocation);
    LOCATION(MoviesLocation);
    LOCATION(PicturesLocation);
    LOCATION(TempLocation);
    LOCATION(HomeLocation);
    LOCATION(DataLocation);
    LOCATION(AppLocalDataLocation);
    LOCATION(CacheLocation);
    LOCATION(GenericDataLocation);
    LOCATION(RuntimeLocation);
    LOCATION(ConfigLocation);
    LOCATION(DownloadLocation);
    LOCATION(GenericCacheLocation);
    LOCATION(GenericConfigLocation);
    LOCATION(AppDataLocation);
    LOCATION(AppConfigLocation);
#undef LOCATION
}

void TestADesktopServices::locationsAreThoseOfQt()
{
    QFETCH(int, location);
    QTEST(location, "qtLocation");
    const QStringList entries =
        QStandardPaths::standardLocations(static_cast<QStandardPaths::StandardLocation>(location));
    QVERIFY(!entries.isEmpty());
    QVERIFY(entries.contains(ADesktopServices::storageLocation(static_cast<Location>(location))));
}

void TestADesktopServices::theFirstLocationThatExistsIsGiven()
{
    const QByteArray home = qgetenv("XDG_DATA_HOME");
    const QByteArray directories = qgetenv("XDG_DATA_DIRS");
    qputenv("XDG_DATA_HOME", m_settings->path("missing").toUtf8());
    m_settings->makeFile("file");
    qputenv("XDG_DATA_DIRS", (m_settings->path("gone") + ':' + m_settings->path("file") + ':' +
                              m_settings->makeDirectory("here") + ':' + m_settings->makeDirectory("here too"))
                                 .toUtf8());
    const QString found = ADesktopServices::storageLocation(ADesktopServices::GenericDataLocation);
    m_settings->makeDirectory("missing");
    const QString foundThen = ADesktopServices::storageLocation(ADesktopServices::GenericDataLocation);
    qputenv("XDG_DATA_HOME", home);
    qputenv("XDG_DATA_DIRS", directories);
    QCOMPARE(found, m_settings->path("here"));
    QCOMPARE(foundThen, m_settings->path("missing"));
}

void TestADesktopServices::withoutAnyTheFirstLocationIsGiven()
{
    const QByteArray home = qgetenv("XDG_DATA_HOME");
    const QByteArray directories = qgetenv("XDG_DATA_DIRS");
    qputenv("XDG_DATA_HOME", m_settings->path("missing").toUtf8());
    qputenv("XDG_DATA_DIRS", m_settings->path("gone").toUtf8());
    const QString found = ADesktopServices::storageLocation(ADesktopServices::GenericDataLocation);
    qputenv("XDG_DATA_HOME", home);
    qputenv("XDG_DATA_DIRS", directories);
    QCOMPARE(found, m_settings->path("missing"));
}

void TestADesktopServices::anUnknownLocationIsEmpty()
{
    QCOMPARE(ADesktopServices::storageLocation(static_cast<Location>(99)), QString());
    QCOMPARE(ADesktopServices::storageLocation(static_cast<Location>(-1)), QString());
}

void TestADesktopServices::aFilterHasTheDirectoryOfItsFirstExtension_data()
{
    QTest::addColumn<QString>("filter");
    QTest::addColumn<QString>("extension"); // null: none
    const QString none;
    QTest::newRow("one") << "XML files (*.xml)"
                         << "XML";
    QTest::newRow("capitals") << "XML files (*.XML)"
                              << "XML";
    QTest::newRow("the first of several") << "Files (*.csv *.xml)"
                                          << "CSV";
    QTest::newRow("the first part") << "CSV (*.csv);;XML (*.xml)"
                                    << "CSV";
    QTest::newRow("a first part without an extension") << "All (*);;XML (*.xml)" << none;
    QTest::newRow("an empty first part") << ";;XML (*.xml)" << none;
    QTest::newRow("parts in the brackets") << "XML (*.xml;;*.csv)" << none;
    QTest::newRow("two dots") << "Archives (*.tar.gz)"
                              << "TAR.GZ";
    QTest::newRow("every pattern sign goes") << "Files (*.a*.b*.c)"
                                             << "ABC";
    QTest::newRow("a sign that only comes about") << "Files (*.**..c)"
                                                  << "*.C";
    QTest::newRow("only brackets") << "(*.xml)"
                                   << "XML";
    QTest::newRow("no description") << "*.xml" << none;
    QTest::newRow("no pattern") << "XML files" << none;
    QTest::newRow("a lone asterisk") << "All files (*)" << none;
    QTest::newRow("asterisk, dot, asterisk") << "All files (*.*)" << none;
    QTest::newRow("an asterisk at the end") << "Files (*.x*)" << none;
    QTest::newRow("an asterisk inside") << "Files (*.x*l)"
                                        << "X*L";
    QTest::newRow("a whole name") << "Makefile (Makefile.xml)" << none;
    QTest::newRow("a name before the extension") << "Files (trace*.xml)" << none;
    QTest::newRow("a blank first") << "Files ( *.xml)" << none;
    QTest::newRow("a tabulator is no blank") << "Files (*.xml\t*.csv)"
                                             << "XML\tCSV";
    QTest::newRow("a line break is no blank") << "Files (*.xml\n)"
                                              << "XML\n";
    QTest::newRow("a semicolon is no blank") << "Files (*.xml;*.csv)"
                                             << "XML;CSV";
    QTest::newRow("empty brackets") << "Files ()" << none;
    QTest::newRow("an empty extension") << "Files (*.)"
                                        << "";
    QTest::newRow("not closed") << "Files (*.xml" << none;
    QTest::newRow("not opened") << "Files *.xml)" << none;
    QTest::newRow("closed before it opens") << "Files ) (*.xml" << none;
    QTest::newRow("closed before it opens and after") << "Files ) (*.xml)"
                                                      << "XML";
    QTest::newRow("brackets in the description") << "Files (old) (*.xml)" << none;
    QTest::newRow("nested") << "Files (*.xml (*.csv))"
                            << "XML";
    QTest::newRow("nested first") << "Files ((*.xml))" << none;
    QTest::newRow("a slash in it") << "Files (*.a/b)"
                                   << "A/B";
    QTest::newRow("beyond Latin") << QString::fromUtf8("Files (*.\xc3\xa4\xc3\x9f)") << QString::fromUtf8("\xc3\x84SS");
}

void TestADesktopServices::aFilterHasTheDirectoryOfItsFirstExtension()
{
    QFETCH(QString, filter);
    QFETCH(QString, extension);
    for (const char *other : {"", "XML", "CSV", "*", "*.*", "XML FILES"})
        m_settings->remember(other, "/other");
    if (!extension.isNull())
        m_settings->remember(extension, "/remembered");
    QCOMPARE(ADesktopServices::getFilterLocation(filter, "/default"),
             extension.isNull() ? QStringLiteral("/default") : QStringLiteral("/remembered"));
}

void TestADesktopServices::withoutARememberedDirectoryTheDefaultIsGiven_data()
{
    QTest::addColumn<QString>("filter");
    for (const char *filter : {"", "XML files (*.xml)", "All (*)", "*.xml", "(", ")", ";;"})
        QTest::addRow("'%s'", filter) << QString::fromLatin1(filter);
}

void TestADesktopServices::withoutARememberedDirectoryTheDefaultIsGiven()
{
    QFETCH(QString, filter);
    QCOMPARE(ADesktopServices::getFilterLocation(filter, "not/there"), QStringLiteral("not/there"));
    const QString documents = ADesktopServices::storageLocation(ADesktopServices::DocumentsLocation);
    QVERIFY(!documents.isEmpty());
    QCOMPARE(ADesktopServices::getFilterLocation(filter, QString()), documents);
    QCOMPARE(ADesktopServices::getFilterLocation(filter, QStringLiteral("")), documents);
}

void TestADesktopServices::whatIsRememberedIsGivenAsItStands_data()
{
    QTest::addColumn<QString>("remembered");
    QTest::addColumn<QString>("result");
    QTest::newRow("a directory that is gone") << "/gone/x"
                                              << "/gone/x";
    QTest::newRow("a line break") << "/a\nb"
                                  << "/a\nb";
    QTest::newRow("empty") << ""
                           << "/default";
}

void TestADesktopServices::whatIsRememberedIsGivenAsItStands()
{
    QFETCH(QString, remembered);
    m_settings->remember("XML", remembered);
    QTEST(ADesktopServices::getFilterLocation("XML (*.xml)", "/default"), "result");
}

void TestADesktopServices::askingRemembersNothing()
{
    ADesktopServices::getFilterLocation("XML (*.xml)", "/default");
    ADesktopServices::getFilterLocation("XML (*.xml)", QString());
    QCOMPARE(m_settings->remembered(), QStringList());
}

void TestADesktopServices::aPatternLongerThanAnyPathHasNoDirectory()
{
    constexpr int kLongest = 4096; // with its asterisk and dot
    const QString extension(kLongest - 2, 'X');
    m_settings->remember(extension, "/remembered");
    m_settings->remember(extension + 'X', "/remembered");
    const QString filter = QStringLiteral("Files (*.%1 *.xml)");
    QCOMPARE(ADesktopServices::getFilterLocation(filter.arg(extension), "/default"), QStringLiteral("/remembered"));
    QCOMPARE(ADesktopServices::getFilterLocation(filter.arg(extension + 'X'), "/default"), QStringLiteral("/default"));
}

void TestADesktopServices::hugeFiltersTakeTimeInProportion_data()
{
    QTest::addColumn<QString>("unit");
    QTest::addColumn<QString>("before");
    QTest::addColumn<QString>("after");
    QTest::newRow("separators") << ";;"
                                << ""
                                << "(*.xml)";
    QTest::newRow("opening brackets") << "(("
                                      << ""
                                      << "";
    QTest::newRow("closing brackets") << "))"
                                      << ""
                                      << "";
    QTest::newRow("nested brackets") << "()"
                                     << "(("
                                     << "))";
    QTest::newRow("pattern signs") << "*."
                                   << "("
                                   << "x)";
    QTest::newRow("patterns") << "*.xml "
                              << "("
                              << ")";
    QTest::newRow("a long extension") << "ab"
                                      << "(*."
                                      << ")";
    QTest::newRow("letters that grow in capitals") << QString::fromUtf8("\xc3\x9f\xc3\x9f") << "(*."
                                                   << ")";
    QTest::newRow("slashes") << "//"
                             << "(*."
                             << "x)";
}

void TestADesktopServices::hugeFiltersTakeTimeInProportion()
{
    QFETCH(QString, unit);
    QFETCH(QString, before);
    QFETCH(QString, after);
    const auto milliseconds = [&](int characters) {
        const QString filter = before + unit.repeated(characters / unit.size()) + after;
        double fastest = 1e9;
        for (int run = 0; run < 5; ++run) {
            QElapsedTimer timer;
            timer.start();
            const bool isDefault = ADesktopServices::getFilterLocation(filter, "/default") == QLatin1String("/default");
            fastest = std::min(fastest, isDefault ? timer.nsecsElapsed() * 1e-6 : 1e9);
        }
        return fastest;
    };
    const double few = milliseconds(100000);
    const double many = milliseconds(1000000);
    QVERIFY2(many < 40 * few + 1, qPrintable(QStringLiteral("%1 ms, %2 ms").arg(few).arg(many)));
}

QTEST_GUILESS_MAIN(TestADesktopServices)
#include "tst_adesktopservices.moc"
