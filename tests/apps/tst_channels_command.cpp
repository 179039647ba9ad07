#include "apps/commandchecks.h"
#include "apps/folder.h"
#include "apps/programrun.h"

#include <QtTest/QtTest>

#include <QtCore/QJsonArray>
#include <QtCore/QJsonObject>

#include <unistd.h>

namespace {

constexpr char kPlan[] = R"(<?xml version="1.0" encoding="UTF-8"?>
<profile id="plan">
  <label>Test plan</label>
  <description>Of a test</description>
  <begin>100 MHz</begin>
  <end>200 MHz</end>
  <channels>
    <range label="Uplink" type="direction" selectable="1"><begin>100</begin><end>110.5</end>
      <color>#3366cc</color>
      <channels start="100.25 MHz" width="500 kHz" space="12.5 kHz" first="7" count="3" step="2"/>
      <mirror>45 MHz</mirror>
    </range>
    <range label="Overlap" type="provider"><begin>105</begin><end>120</end></range>
  </channels>
</profile>
)";

QByteArray planWithCount(const QByteArray &count)
{
    return "<profile id=\"big\"><end>1</end><channels><channels start=\"1 MHz\" width=\"1 kHz\" count=\"" + count +
           "\"/></channels></profile>";
}

} // namespace

class TestChannelsCommand : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_folder = std::make_unique<Folder>(); }

    void printsThePlanIndentedByDepth();
    void expandsDefinitions();
    void printsStackingLevels();
    void saysWhenRangesFindNoLevel();
    void printsJson();
    void readsDirectories();
    void namesEachFileThatGivesNoProfile_data();
    void namesEachFileThatGivesNoProfile();
    void namesTheBadFilesOfADirectoryAndPrintsTheRest();
    void passesOverAProfileThatALaterOneReplaces();
    void refusesToExpandMoreThanTenMillionChannels();
    void saysThatAPlanWasCutShort();
    void takesOnlyTheSuffixInSmallLetters();
    void printsAnAbsurdCountUnexpanded();
    void keepsTerminalControlOutOfItsOutput();
    void reportsOutputThatCanNotBeWritten();
    void refusesWrongUsage_data();
    void refusesWrongUsage();
    void helps();

private:
    std::unique_ptr<Folder> m_folder;
};

void TestChannelsCommand::printsThePlanIndentedByDepth()
{
    const Run result = run({"channels", m_folder->write("a.profile", kPlan)});
    QCOMPARE(result.errors, QString());
    QCOMPARE(result.exitStatus, 0);
    const QString expected = QStringLiteral(
        "Test plan                             100 MHz to 200 MHz              Generic, selectable  # Of a test\n"
        "  Uplink                              145 MHz to 155.5 MHz            Direction, selectable\n"
        "    + 3 channels from 145.25 MHz, width 500 kHz, space 12.5 kHz, numbered from 7 by 2\n"
        "  Uplink                              100 MHz to 110.5 MHz            Direction, selectable\n"
        "    + 3 channels from 100.25 MHz, width 500 kHz, space 12.5 kHz, numbered from 7 by 2\n"
        "  Overlap                             105 MHz to 120 MHz              Provider\n");
    QCOMPARE(result.output, expected);
}

void TestChannelsCommand::expandsDefinitions()
{
    const Run result = run({"channels", "--expand", m_folder->write("a.profile", kPlan)});
    QCOMPARE(result.exitStatus, 0);
    const QStringList lines = result.output.split('\n');
    QCOMPARE(lines.size(), 4 + 6 + 1);
    QCOMPARE(lines.at(2),
             QStringLiteral("    7                                 145.25 MHz to 145.75 MHz        AutoChannel"));
    QCOMPARE(lines.at(8),
             QStringLiteral("    11                                101.275 MHz to 101.775 MHz      AutoChannel"));
    QVERIFY(!result.output.contains("numbered"));
}

void TestChannelsCommand::printsStackingLevels()
{
    const Run result = run({"channels", "--stacked", m_folder->write("a.profile", kPlan)});
    QCOMPARE(result.exitStatus, 0);
    QStringList levels;
    for (const QString &line : result.output.split('\n', Qt::SkipEmptyParts)) {
        if (!line.contains('+'))
            levels.append(line.left(3).trimmed() + ' ' + line.mid(5).simplified().section(' ', 0, 4));
    }
    QCOMPARE(levels, QStringList({"0 Test plan 100 MHz to", "1 Uplink 100 MHz to 110.5", "1 Uplink 145 MHz to 155.5",
                                  "2 Overlap 105 MHz to 120"}));
}

void TestChannelsCommand::saysWhenRangesFindNoLevel()
{
    QByteArray ranges;
    for (int i = 0; i < 60; ++i)
        ranges += "<range label=\"r\"><begin>1</begin><end>2</end></range>";
    const QString file =
        m_folder->write("a.profile", "<profile id=\"a\"><end>3</end><channels>" + ranges + "</channels></profile>");
    const Run result = run({"channels", "--stacked", file});
    QCOMPARE(result.exitStatus, 1);
    QCOMPARE(result.output.count('\n'), 1 + 49);
    QCOMPARE(result.errors, "aveldoran: " + file + ": left out: 11 ranges, for which there is no level\n");
}

void TestChannelsCommand::printsJson()
{
    const Run result = run({"channels", "--stacked", "--format", "json", m_folder->write("a.profile", kPlan)});
    QCOMPARE(result.exitStatus, 0);
    const QJsonArray ranges = jsonOf(result);
    QCOMPARE(ranges.size(), 4);
    QCOMPARE(ranges.at(0).toObject().value("profile").toString(), QStringLiteral("plan"));
    const QJsonObject expected{{"depth", 1},
                               {"stackingLevel", 1},
                               {"label", "Uplink"},
                               {"type", "Direction"},
                               {"beginHz", 100000000},
                               {"endHz", 110500000},
                               {"selectable", true},
                               {"color", "#3366cc"},
                               {"definitions", QJsonArray{QJsonObject{{"startHz", 100250000},
                                                                      {"widthHz", 500000},
                                                                      {"spaceHz", 12500},
                                                                      {"count", 3},
                                                                      {"first", 7},
                                                                      {"step", 2}}}}};
    QCOMPARE(ranges.at(1).toObject(), expected);

    const Run empty = run({"channels", "--format", "json", "/nonexistent"});
    QCOMPARE(empty.exitStatus, 1);
    QCOMPARE(empty.output, QStringLiteral("[]\n"));
}

void TestChannelsCommand::readsDirectories()
{
    m_folder->write("b.profile", QByteArray(kPlan).replace("id=\"plan\"", "id=\"b\""));
    m_folder->write("a.profile", kPlan);
    m_folder->write("c.txt", "no profile");
    const Run result = run({"channels", m_folder->path()});
    QCOMPARE(result.exitStatus, 0);
    QCOMPARE(result.errors, QString());
    QCOMPARE(result.output.count("Test plan"), 2);
}

void TestChannelsCommand::namesEachFileThatGivesNoProfile_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("reason");
    QTest::newRow("malformed") << QByteArray("<profile id=\"a\">\n<begin>\n</profile>") << "Line 3, column 10: ";
    QTest::newRow("no id") << QByteArray("<profile><end>1</end></profile>") << "The profile has no id";
    QTest::newRow("end below begin") << QByteArray("<profile id=\"a\"><begin>1</begin></profile>")
                                     << "The end lies below the begin";
    QTest::newRow("another root") << QByteArray("<data/>") << "The root element is 'data', expected 'profile'";
    QTest::newRow("too deep") << QByteArray("<profile id=\"a\">") + QByteArray("<x>").repeated(100000)
                              << "Elements are nested more than 1000 deep";
    QTest::newRow("empty") << QByteArray() << "Line 1, column 0: ";
}

void TestChannelsCommand::namesEachFileThatGivesNoProfile()
{
    QFETCH(QByteArray, content);
    QFETCH(QString, reason);
    const QString file = m_folder->write("bad.profile", content);
    const Run result = run({"channels", file});
    QCOMPARE(result.exitStatus, 1);
    QCOMPARE(result.output, QString());
    QVERIFY2(result.errors.startsWith("aveldoran: " + file + ": no valid profile: "), qPrintable(result.errors));
    QVERIFY2(result.errors.contains(reason), qPrintable(result.errors));
    QCOMPARE(result.errors.count('\n'), 1);

    const Run missing = run({"channels", m_folder->path("missing.profile")});
    QCOMPARE(missing.exitStatus, 1);
    QCOMPARE(missing.errors, QStringLiteral("aveldoran: %1: can't be read: No such file or directory\n")
                                 .arg(m_folder->path("missing.profile")));
}

void TestChannelsCommand::namesTheBadFilesOfADirectoryAndPrintsTheRest()
{
    m_folder->write("a.profile", kPlan);
    m_folder->write("b.profile", "nonsense");
    QVERIFY(QDir(m_folder->path()).mkdir("c.profile"));
    QVERIFY(QFile::link(m_folder->path("nowhere"), m_folder->path("d.profile")));
    const Run result = run({"channels", m_folder->path()});
    QCOMPARE(result.exitStatus, 1);
    QVERIFY(result.output.startsWith("Test plan"));
    QVERIFY(result.errors.contains(m_folder->path("b.profile") + ": no valid profile: Line 1"));
    QCOMPARE(result.errors.count('\n'), 1);

    const Folder empty;
    const Run nothing = run({"channels", empty.path()});
    QCOMPARE(nothing.exitStatus, 1);
    QCOMPARE(nothing.errors,
             QStringLiteral("aveldoran: %1: no profile files (*.profile) in this directory\n").arg(empty.path()));
}

void TestChannelsCommand::passesOverAProfileThatALaterOneReplaces()
{
    m_folder->write("a.profile", kPlan);
    m_folder->write("b.profile", kPlan);
    const Run result = run({"channels", m_folder->path()});
    QCOMPARE(result.exitStatus, 0);
    QCOMPARE(result.errors, QString());
    QCOMPARE(result.output.count("Test plan"), 1);
}

void TestChannelsCommand::refusesToExpandMoreThanTenMillionChannels()
{
    const Run refused = run({"channels", "--expand", m_folder->write("a.profile", planWithCount("10000001"))});
    QCOMPARE(refused.exitStatus, 1);
    QCOMPARE(refused.output, QString());
    QVERIFY2(refused.errors.contains("at most"), qPrintable(refused.errors));

    const Run absurd = run({"channels", "--expand", m_folder->write("a.profile", planWithCount("2000000000"))});
    QCOMPARE(absurd.exitStatus, 1);
}

void TestChannelsCommand::saysThatAPlanWasCutShort()
{
    const QByteArray mirrors = QByteArray("<mirror>0</mirror>").repeated(32);
    const QString file = m_folder->write("a.profile", "<profile id=\"wild\"><end>100</end><channels><range><comment>" +
                                                          QByteArray(1000000, 'x') + "</comment>" + mirrors +
                                                          "</range></channels></profile>");
    const Run result = run({"channels", file});
    QCOMPARE(result.exitStatus, 1);
    QVERIFY2(result.errors.startsWith("aveldoran: channel section of profile 'wild': its mirrors ask for more"),
             qPrintable(result.errors));
    QVERIFY(!result.output.isEmpty());
}

void TestChannelsCommand::takesOnlyTheSuffixInSmallLetters()
{
    m_folder->write("ONE.PROFILE", kPlan);
    const Run result = run({"channels", m_folder->path()});
    QCOMPARE(result.exitStatus, 1);
    QVERIFY2(result.errors.contains("no profile files"), qPrintable(result.errors));
}

void TestChannelsCommand::printsAnAbsurdCountUnexpanded()
{
    const Run result = run({"channels", m_folder->write("a.profile", planWithCount("2000000000"))});
    QCOMPARE(result.exitStatus, 0);
    QVERIFY(result.output.contains("2000000000 channels from 1 MHz"));
}

void TestChannelsCommand::keepsTerminalControlOutOfItsOutput()
{
    const QString file = m_folder->write("a.profile", QByteArray(kPlan).replace("Test plan", "Two\nlines &#x9b;2J"));
    const Run result = run({"channels", file});
    QVERIFY(result.output.startsWith(QStringLiteral("Two lines ") + QChar(QChar::ReplacementCharacter) + "2J"));
}

void TestChannelsCommand::reportsOutputThatCanNotBeWritten()
{
    verifyReportsFullDisk({"channels", m_folder->write("a.profile", kPlan)});
}

void TestChannelsCommand::refusesWrongUsage_data()
{
    addWrongUsageColumns();
    QTest::newRow("no command") << QStringList() << "aveldoran: a command is missing; see 'aveldoran --help'";
    QTest::newRow("unknown command") << QStringList{"chanels"} << "unknown command 'chanels'";
    QTest::newRow("no path") << QStringList{"channels"}
                             << "a profile file or directory is missing; see 'aveldoran channels --help'";
    QTest::newRow("unknown option") << QStringList{"channels", "--expnd", "."} << "unknown option '--expnd'";
    QTest::newRow("unknown format") << QStringList{"channels", "--format", "yaml", "."}
                                    << "--format expects text, json or xml, not 'yaml'";
}

void TestChannelsCommand::refusesWrongUsage()
{
    verifyRefused({});
}

void TestChannelsCommand::helps()
{
    verifyHelps("channels", {"--expand", "Examples:\n  aveldoran channels "});
    const Run version = run({"--version"});
    QCOMPARE(version.exitStatus, 0);
    QVERIFY(version.output.startsWith("aveldoran "));
}

QTEST_GUILESS_MAIN(TestChannelsCommand)
#include "tst_channels_command.moc"
