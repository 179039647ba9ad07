#include "apps/programrun.h"

#include <QtCore/QBuffer>
#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QTemporaryDir>
#include <QtGui/QImage>
#include <QtTest/QtTest>

// What is done, and told, when a part of what was asked for can't be done.
class TestProgramFailures : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void limitsAreRewrittenAndDrawnWithoutTheirTrace_data();
    void limitsAreRewrittenAndDrawnWithoutTheirTrace();
    void limitsAreNotRewrittenWithoutATemporaryDirectory();
    void aWarningFailsTheRun();
    void theLibrariesSpeakTheUsersLanguage_data();
    void theLibrariesSpeakTheUsersLanguage();
};

namespace {

constexpr char kMask[] = "<data><limit name='Mask' begin='100000000' end='200000000' measureunit='0' color='#00aa00'>"
                         "<level frequency='100000000'>-50</level><level frequency='200000000'>-60</level>"
                         "</limit></data>";

QString write(const QString &fileName, const QByteArray &content)
{
    QFile file(fileName);
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
        qFatal("could not write %s", qPrintable(fileName));
    return fileName;
}

// With a comment whose checksum is wrong.
QByteArray pictureWithWrongChecksum()
{
    QImage image(32, 32, QImage::Format_RGB32);
    image.fill(Qt::white);
    image.setText("Comment", "some text");
    QByteArray content;
    QBuffer buffer(&content);
    image.save(&buffer, "PNG");
    const int text = content.indexOf("some text");
    if (text < 0)
        qFatal("the picture holds no comment");
    content[text] = 'S';
    return content;
}

} // namespace

void TestProgramFailures::limitsAreRewrittenAndDrawnWithoutTheirTrace_data()
{
    QTest::addColumn<QByteArray>("trace"); // none if empty
    QTest::addColumn<QString>("error");
    QTest::newRow("missing") << QByteArray() << ": can't be read: No such file or directory\n";
    QTest::newRow("no trace") << QByteArray("100 MHz;loud\n") << ":1: expected a level such as -37.5, found 'loud'\n";
}

void TestProgramFailures::limitsAreRewrittenAndDrawnWithoutTheirTrace()
{
    QFETCH(QByteArray, trace);
    QFETCH(QString, error);
    const QTemporaryDir directory;
    const QString traceFile = directory.filePath("trace.csv");
    if (!trace.isEmpty())
        write(traceFile, trace);
    const QString rewritten = directory.filePath("out.xml");
    const QString picture = directory.filePath("out.png");
    const Run result = run({"limits", "--check", traceFile, "--rewrite", rewritten, "--plot", picture,
                            write(directory.filePath("mask.xml"), kMask)});
    QCOMPARE(result.exitStatus, 1);
    QCOMPARE(result.errors, "aveldoran: " + traceFile + error);
    QCOMPARE(result.output, QString()); // no verdict
    QCOMPARE(result.told, rewritten + ": written; 1 limit, 2 pieces\n" + picture + ": written; 1 limit\n");
    QFile file(rewritten);
    QVERIFY(file.open(QIODevice::ReadOnly) && file.readAll().contains("Mask"));
    const QImage image(picture);
    int limitPixels = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            limitPixels += image.pixel(x, y) == 0xff00aa00 ? 1 : 0;
    }
    QVERIFY(limitPixels > 500);
}

void TestProgramFailures::limitsAreNotRewrittenWithoutATemporaryDirectory()
{
    const QTemporaryDir directory;
    const QString target = write(directory.filePath("out.xml"), "old");
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("TMPDIR", "/proc"); // where nobody makes directories
    const Run result =
        run({"limits", "--rewrite", target, write(directory.filePath("mask.xml"), kMask)}, {}, environment);
    QCOMPARE(result.exitStatus, 1);
    QCOMPARE(result.errors, "aveldoran: " + target + ": can't be written: No directory can be made in /proc\n");
    QFile old(target);
    QVERIFY(old.open(QIODevice::ReadOnly));
    QCOMPARE(old.readAll(), QByteArray("old"));
}

// Whatever the command; the logo is written all the same.
void TestProgramFailures::aWarningFailsTheRun()
{
    const QTemporaryDir directory;
    const QString background = write(directory.filePath("background.png"), pictureWithWrongChecksum());
    const QString logo = directory.filePath("logo.png");
    const Run result =
        run({"logo", "--model", "1", "--firmware", "2", "--serial", "3", "--background", background, "--output", logo});
    QCOMPARE(result.errors.count('\n'), 1);
    QVERIFY2(result.errors.startsWith("aveldoran: ") && result.errors.contains("CRC"), qPrintable(result.errors));
    QCOMPARE(result.exitStatus, 1);
    QVERIFY(!QImage(logo).isNull());
}

void TestProgramFailures::theLibrariesSpeakTheUsersLanguage_data()
{
    QTest::addColumn<QString>("locale");
    QTest::addColumn<QString>("setting");
    QTest::addColumn<QString>("sentence");
    const QString english = "holds no limits";
    const QString german = QString::fromUtf8("enth\xc3\xa4lt keine Grenzwerte");
    QTest::newRow("English") << "en_US.UTF-8"
                             << "" << english;
    QTest::newRow("none") << "C"
                          << "" << english;
    QTest::newRow("German") << "de_DE.UTF-8"
                            << "" << german;
    QTest::newRow("German by a setting") << "en_US.UTF-8"
                                         << "de" << german;
    QTest::newRow("English by a setting") << "de_DE.UTF-8"
                                          << "en" << english;
}

void TestProgramFailures::theLibrariesSpeakTheUsersLanguage()
{
    QFETCH(QString, locale);
    QFETCH(QString, setting);
    QFETCH(QString, sentence);
    const QTemporaryDir directory;
    QVERIFY(QDir(directory.path()).mkdir("Aveldoran"));
    write(directory.filePath("Aveldoran/aveldoran.conf"),
          setting.isEmpty() ? QByteArray() : "[Application]\nLanguage=" + setting.toUtf8() + '\n');
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("XDG_CONFIG_HOME", directory.path());
    environment.insert("LC_ALL", locale);
    environment.remove("LANGUAGE");
    const QString file = write(directory.filePath("empty.xml"), "<calibrations/>");
    const Run limits = run({"limits", file}, {}, environment);
    QCOMPARE(limits.exitStatus, 1);
    QVERIFY2(limits.errors.contains(sentence), qPrintable(limits.errors));
    const Run missing = run({"limits", directory.filePath("missing.xml")}, {}, environment);
    QVERIFY2(missing.errors.contains("missing.xml: can't be read: "), qPrintable(missing.errors)); // the program's own
}

QTEST_GUILESS_MAIN(TestProgramFailures)
#include "tst_program_failures.moc"
