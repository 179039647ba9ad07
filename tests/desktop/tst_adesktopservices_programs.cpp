#include "desktop/desktopsettings.h"

#include <desktop/adesktopservices.h>

#include <QtCore/QFileInfo>
#include <QtGui/QDesktopServices>
#include <QtTest/QtTest>

#include <memory>

class TestADesktopServicesPrograms : public QObject
{
    Q_OBJECT

public Q_SLOTS:
    void open(const QUrl &url) { m_opened << url; }

private Q_SLOTS:
    void init();
    void cleanup();

    void programsAreStartedByTheWrapper_data();
    void programsAreStartedByTheWrapper();
    void theWrapperItselfIsStartedAsItIs();
    void aMissingWrapperIsNotTold();
    void argumentsThatTheSystemRefusesAreDropped();

    void filesWithArgumentsGoToXdgOpen_data();
    void filesWithArgumentsGoToXdgOpen();
    void aMissingXdgOpenIsNotTold();
    void filesWithoutArgumentsGoToTheDesktop_data();
    void filesWithoutArgumentsGoToTheDesktop();

private:
    QStringList waitForRecord(); // of the program that was started: its name and its arguments
    QString recordFile() const { return m_settings->path("record"); }

    std::unique_ptr<DesktopSettings> m_settings;
    QByteArray m_path;
    QList<QUrl> m_opened;
};

void TestADesktopServicesPrograms::init()
{
    m_settings = std::make_unique<DesktopSettings>();
    m_opened.clear();
    m_path = qgetenv("PATH");
    qputenv("AVELDORAN_RECORD", recordFile().toUtf8());
    const QString programs = m_settings->makeDirectory("programs");
    const QString recorder = QCoreApplication::applicationDirPath() + "/ToolWrapper";
    QVERIFY2(QFileInfo(recorder).isExecutable(), qPrintable(recorder));
    QVERIFY(QFile::link(recorder, programs + "/xdg-open"));
    qputenv("PATH", programs.toUtf8() + ':' + m_path);
}

void TestADesktopServicesPrograms::cleanup()
{
    qputenv("PATH", m_path);
}

QStringList TestADesktopServicesPrograms::waitForRecord()
{
    QFile file(recordFile());
    if (!QTest::qWaitFor([&] { return file.exists(); }, 10000) || !file.open(QIODevice::ReadOnly))
        return {};
    QStringList texts;
    const QList<QByteArray> parts = file.readAll().split('\0');
    for (const QByteArray &part : parts)
        texts << QString::fromUtf8(part);
    texts.removeLast(); // behind the last zero byte
    file.remove();
    return texts;
}

void TestADesktopServicesPrograms::programsAreStartedByTheWrapper_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QStringList>("arguments");
    QTest::newRow("without arguments") << "Analyser" << QStringList();
    QTest::newRow("with arguments") << "Analyser" << QStringList{"--open", "a b.mdr", "", "\"x\"", "$HOME", "a\nb"};
    QTest::newRow("another case of the wrapper") << "toolwrapper" << QStringList{"x"};
    QTest::newRow("the wrapper with a path") << "./ToolWrapper" << QStringList{"x"};
    QTest::newRow("the wrapper with a blank") << "ToolWrapper " << QStringList{"x"};
    QTest::newRow("no name") << "" << QStringList{"x"};
    QTest::newRow("a name with blanks") << "My Analyser" << QStringList{"ToolWrapper"};
    QTest::newRow("beyond Latin") << QString::fromUtf8("Spektr\xc3\xa4")
                                  << QStringList{QString::fromUtf8("\xe2\x82\xac")};
}

void TestADesktopServicesPrograms::programsAreStartedByTheWrapper()
{
    QFETCH(QString, name);
    QFETCH(QStringList, arguments);
    const QStringList given = arguments;
    ADesktopServices::executeAApplication(name, arguments);
    QCOMPARE(waitForRecord(),
             QStringList(QCoreApplication::applicationDirPath() + "/ToolWrapper") + QStringList(name) + arguments);
    QCOMPARE(arguments, given);
}

void TestADesktopServicesPrograms::theWrapperItselfIsStartedAsItIs()
{
    ADesktopServices::executeAApplication("ToolWrapper", {"Analyser", "x"});
    const QString wrapper = QCoreApplication::applicationDirPath() + "/ToolWrapper";
    QCOMPARE(waitForRecord(), (QStringList{wrapper, "Analyser", "x"}));
    ADesktopServices::executeAApplication("ToolWrapper", {});
    QCOMPARE(waitForRecord(), QStringList{wrapper});
    QTest::qWait(100);
    QVERIFY(!QFile::exists(recordFile())); // it was started once
}

void TestADesktopServicesPrograms::aMissingWrapperIsNotTold()
{
    const QString wrapper = QCoreApplication::applicationDirPath() + "/ToolWrapper";
    const QString away = wrapper + ".away";
    QVERIFY(QFile::rename(wrapper, away));
    ADesktopServices::executeAApplication("Analyser", {"x"});
    ADesktopServices::executeAApplication("ToolWrapper", {"Analyser"});
    QVERIFY(QFile::rename(away, wrapper));
    QTest::qWait(100);
    QVERIFY(!QFile::exists(recordFile()));
}

void TestADesktopServicesPrograms::argumentsThatTheSystemRefusesAreDropped()
{
    ADesktopServices::executeAApplication("Analyser", {QString(10000000, 'x')}); // too long for the system
    ADesktopServices::shellExecute("file", {QString(10000000, 'x')});
    QTest::qWait(100);
    QVERIFY(!QFile::exists(recordFile()));
}

void TestADesktopServicesPrograms::filesWithArgumentsGoToXdgOpen_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QStringList>("arguments");
    QTest::newRow("a file") << "/tmp/a.html" << QStringList{"x"};
    QTest::newRow("several arguments") << "/tmp/a b.html" << QStringList{"x", "", "--args", "y z"};
    QTest::newRow("an address stays as it is") << "https://example.org/?a=b#c" << QStringList{"x"};
    QTest::newRow("a line break") << "/tmp/a\nb" << QStringList{"\n"};
    QTest::newRow("an empty argument") << "a" << QStringList{""};
    QTest::newRow("no file") << "" << QStringList{"x"};
}

void TestADesktopServicesPrograms::filesWithArgumentsGoToXdgOpen()
{
    QFETCH(QString, file);
    QFETCH(QStringList, arguments);
    QDesktopServices::setUrlHandler("file", this, "open");
    ADesktopServices::shellExecute(file, arguments);
    const QStringList record = waitForRecord();
    QDesktopServices::unsetUrlHandler("file");
    QVERIFY(!record.isEmpty());
    QVERIFY2(record.first().endsWith("xdg-open"), qPrintable(record.first()));
    QCOMPARE(record.mid(1), QStringList(file) + QStringList("--args") + arguments);
    QVERIFY(m_opened.isEmpty());
}

void TestADesktopServicesPrograms::aMissingXdgOpenIsNotTold()
{
    qputenv("PATH", m_settings->makeDirectory("empty").toUtf8());
    ADesktopServices::shellExecute("/tmp/a.html", {"x"});
    QTest::qWait(100);
    QVERIFY(!QFile::exists(recordFile()));
}

void TestADesktopServicesPrograms::filesWithoutArgumentsGoToTheDesktop_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QByteArray>("address");
    QTest::newRow("a file") << "/tmp/a.html" << QByteArray("file:///tmp/a.html");
    QTest::newRow("blanks and signs") << "/tmp/a b#c?d%20.html" << QByteArray("file:///tmp/a%20b%23c%3Fd%2520.html");
    QTest::newRow("a line break") << "/tmp/a\nb" << QByteArray("file:///tmp/a%0Ab");
    QTest::newRow("beyond Latin") << QString::fromUtf8("/\xe2\x82\xac") << QByteArray("file:///%E2%82%AC");
    QTest::newRow("a directory") << "/tmp/" << QByteArray("file:///tmp/");
    QTest::newRow("a relative name") << "a.html" << QByteArray("file:a.html");
}

void TestADesktopServicesPrograms::filesWithoutArgumentsGoToTheDesktop()
{
    QFETCH(QString, file);
    QDesktopServices::setUrlHandler("file", this, "open");
    ADesktopServices::shellExecute(file, {});
    QDesktopServices::unsetUrlHandler("file");
    QCOMPARE(m_opened.size(), 1);
    QTEST(m_opened.first().toEncoded(), "address");
    QTest::qWait(20);
    QVERIFY(!QFile::exists(recordFile()));
}

QTEST_MAIN(TestADesktopServicesPrograms)
#include "tst_adesktopservices_programs.moc"
