#include "apps/programrun.h"
#include "colourcount.h"

#include <QtCore/QCryptographicHash>
#include <QtCore/QDirIterator>
#include <QtCore/QSettings>
#include <QtCore/QTemporaryDir>
#include <QtGui/QImage>
#include <QtTest/QtTest>

#include <iterator>

namespace {

// What the picture of each tab has at least: lines of pixels that are not of one colour, and colours.
struct Tab
{
    const char *name;
    int lines;
    int colours;
};

constexpr Tab kTabs[] = {
    {"channels", 200, 50},  {"limits", 100, 10},   {"calibrations", 200, 10}, {"markers", 150, 50}, {"live", 300, 500},
    {"variables", 200, 10}, {"bookmarks", 80, 50}, {"triggers", 80, 10},      {"devices", 30, 10},
};
constexpr int kColumns = 2;
constexpr int kLines = (int(std::size(kTabs)) + kColumns - 1) / kColumns;

QByteArray digestOf(const QString &directory)
{
    QStringList files;
    for (QDirIterator it(directory, QDir::Files, QDirIterator::Subdirectories); it.hasNext();)
        files << it.next();
    files.sort();
    QCryptographicHash digest(QCryptographicHash::Sha256);
    for (const QString &name : qAsConst(files)) {
        QFile file(name);
        if (file.open(QIODevice::ReadOnly))
            digest.addData(name.toUtf8() + '\0' + file.readAll());
    }
    return digest.result();
}

// The part of the picture that shows a tab's view, without the bar of the tabs.
QImage viewOfTab(const QImage &picture, int tab)
{
    constexpr int kBar = 40;
    const int width = picture.width() / kColumns;
    const int height = picture.height() / kLines;
    return picture.copy(tab % kColumns * width, tab / kColumns * height + kBar, width, height - kBar);
}

// In which the settings name a language.
QProcessEnvironment environmentOf(const QString &language, const QTemporaryDir &directory)
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("XDG_CONFIG_HOME", directory.path());
    QSettings(directory.filePath("Unknown Organization/aveldoran-gallery.conf"), QSettings::NativeFormat)
        .setValue("Application/Language", language);
    return environment;
}

// How many lines of pixels are not of one colour.
int busyLines(const QImage &image)
{
    int lines = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 1; x < image.width(); ++x) {
            if (image.pixel(x, y) != image.pixel(0, y)) {
                ++lines;
                break;
            }
        }
    }
    return lines;
}

} // namespace

class TestGallery : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyTabIsInThePicture_data();
    void everyTabIsInThePicture();
    void theSettingsChooseTheLanguage();
    void theExampleDataStayAsTheyAre();
    void aPictureThatCanNotBeWrittenIsAnError();
    void missingDataAreAnError();
    void dataThatLackFilesAreAnError();
    void furtherArgumentsAreRefused();
};

void TestGallery::everyTabIsInThePicture_data()
{
    QTest::addColumn<QString>("language");
    QTest::addColumn<QString>("keptName");
    QTest::newRow("English") << "en"
                             << "gallery.png";
    QTest::newRow("German") << "de"
                            << "gallery_de.png";
}

void TestGallery::everyTabIsInThePicture()
{
    QFETCH(QString, language);
    QFETCH(QString, keptName);
    QTemporaryDir directory;
    const QString file = directory.filePath("gallery.png");
    const Run run = ::run({"--screenshot", file}, {}, environmentOf(language, directory));
    QVERIFY2(run.exitStatus == 0, qPrintable(run.errors));
    const QImage picture(file);
    QVERIFY(!picture.isNull());
    QCOMPARE(picture.width() % kColumns, 0);
    for (int tab = 0; tab < int(std::size(kTabs)); ++tab) {
        const QImage view = viewOfTab(picture, tab);
        const int lines = busyLines(view);
        const int colours = colourCount(view);
        QVERIFY2(lines >= kTabs[tab].lines && colours >= kTabs[tab].colours,
                 qPrintable(QStringLiteral("%1: %2 lines, %3 colours").arg(kTabs[tab].name).arg(lines).arg(colours)));
        for (int other = 0; other < tab; ++other)
            QVERIFY(view != viewOfTab(picture, other));
    }
    const QString kept = qEnvironmentVariable("AVELDORAN_PICTURE_DIR");
    if (!kept.isEmpty())
        QVERIFY(picture.save(kept + QLatin1Char('/') + keptName));
}

void TestGallery::theSettingsChooseTheLanguage()
{
    QTemporaryDir directory;
    const Run english = ::run({"--screenshot", "/nowhere/gallery.png"}, {}, environmentOf("en", directory));
    QVERIFY2(english.errors.contains("/nowhere/gallery.png: can't be written"), qPrintable(english.errors));
    const Run german = ::run({"--screenshot", "/nowhere/gallery.png"}, {}, environmentOf("de", directory));
    QVERIFY2(german.errors.contains("/nowhere/gallery.png: kann nicht geschrieben werden"), qPrintable(german.errors));
}

void TestGallery::theExampleDataStayAsTheyAre()
{
    QTemporaryDir directory;
    const QByteArray before = digestOf(AVELDORAN_EXAMPLES_DIR "/data");
    QCOMPARE(run({"--screenshot", directory.filePath("gallery.png")}).exitStatus, 0);
    QCOMPARE(digestOf(AVELDORAN_EXAMPLES_DIR "/data"), before);
}

void TestGallery::aPictureThatCanNotBeWrittenIsAnError()
{
    const Run run = ::run({"--screenshot", "/nowhere/gallery.png"});
    QCOMPARE(run.exitStatus, 1);
    QVERIFY2(run.errors.contains("/nowhere/gallery.png: can't be written"), qPrintable(run.errors));
}

void TestGallery::missingDataAreAnError()
{
    QTemporaryDir directory;
    const Run run = ::run({"--data", directory.path(), "--screenshot", directory.filePath("gallery.png")});
    QCOMPARE(run.exitStatus, 1);
    QVERIFY2(run.errors.contains(directory.path() + ": no example data"), qPrintable(run.errors));
    QVERIFY(!QFile::exists(directory.filePath("gallery.png")));
}

void TestGallery::dataThatLackFilesAreAnError()
{
    QTemporaryDir directory;
    QVERIFY(QDir(directory.path()).mkpath("profiles"));
    const Run run = ::run({"--data", directory.path(), "--screenshot", directory.filePath("gallery.png")});
    QCOMPARE(run.exitStatus, 1);
    QVERIFY2(run.errors.contains("does not exist"), qPrintable(run.errors));
    QVERIFY(QFile::exists(directory.filePath("gallery.png")));
}

void TestGallery::furtherArgumentsAreRefused()
{
    QTemporaryDir directory;
    const Run run = ::run({"--screenshot", directory.filePath("gallery.png"), "extra"});
    QCOMPARE(run.exitStatus, 2);
    QVERIFY2(run.errors.contains("extra: "), qPrintable(run.errors));
    QVERIFY(!QFile::exists(directory.filePath("gallery.png")));
}

QTEST_GUILESS_MAIN(TestGallery)
#include "tst_gallery.moc"
