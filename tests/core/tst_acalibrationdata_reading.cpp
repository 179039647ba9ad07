#include "core/acalibrationdata.h"

#include "calibrationobjects.h"
#include "documentedfiles.h"

#include <QtTest/QtTest>

#include <sys/stat.h>

class TestACalibrationDataReading : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void handWrittenFilesAreRead_data();
    void handWrittenFilesAreRead();
    void documentedFilesAreRead_data();
    void documentedFilesAreRead();
    void theTypeArgumentFillsGapsAlone_data();
    void theTypeArgumentFillsGapsAlone();
    void otherFilesAreRefused_data();
    void otherFilesAreRefused();
    void aRefusalTellsTheLineAndWhatWasExpected_data();
    void aRefusalTellsTheLineAndWhatWasExpected();
    void aRefusalOfNoFileTellsWhy();
    void aLineFarDownIsCounted_data();
    void aLineFarDownIsCounted();
    void anIndentedCommentIsPassedOver_data();
    void anIndentedCommentIsPassedOver();
    void whatIsNoFileIsRefused();
    void aHugeEmptyFileIsRefusedAtOnce();
    void deepNestingIsRefused();
    void damagedFilesNeverCrash_data();
    void damagedFilesNeverCrash();
    void aCutXmlFileIsRefused();

private:
    QString path(const QString &name) const { return m_dir->filePath(name); }

    std::unique_ptr<QTemporaryDir> m_dir;
};

void TestACalibrationDataReading::init()
{
    m_dir = std::make_unique<QTemporaryDir>();
    QVERIFY(m_dir->isValid());
}

void TestACalibrationDataReading::handWrittenFilesAreRead_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<Objects>("objects");
    const Objects horn = {object("Horn 3115", ACalibrationData::Antenna, {{"1 GHz", 24.1}, {"2.5 GHz", 27.3}})};
    const Objects two = {horn.first(), object("Cable #3", ACalibrationData::Cable, {{"30 MHz", -0.5}})};
    const auto row = [](const char *name, const char *content, const Objects &objects) {
        QTest::newRow(name) << QByteArray(content) << objects;
    };

    row("xml, short",
        "<calibrations><calibration type='antenna' label='Horn 3115'><level gain='24.1' frequency='1 GHz'/>"
        "<level frequency='2500000000' gain='27,3 dBi'/></calibration></calibrations>",
        horn);
    row("xml, blanks, comments and a mark first",
        "\xef\xbb\xbf<?xml version=\"1.0\"?>\n<!-- c -->\n<calibrations>\n <!-- c -->\n"
        "<calibration type=\" Antenna \" label=\"Horn&#32;3115\">\n<level frequency=\"2.5GHz\" gain=\" 27.3 \" />\n"
        "<level frequency=\"1e9\" gain=\"24.1\"></level>\n</calibration>\n</calibrations>\n<!-- c -->\n",
        horn);
    row("xml, blanks first", "\n  <calibrations/>", {});
    row("xml, type as a number", "<calibrations><calibration label='a' type='3'/></calibrations>",
        {object("a", ACalibrationData::Attenuator)});
    row("xml, escaped label", "<calibrations><calibration escapedLabel='\\u0001a\\\\' type='5'/></calibrations>",
        {object(QString(QChar(1)) + "a\\", ACalibrationData::AnyType)});

    row("sections",
        "# antennas\n\ncaldata 1\n\n[antenna] Horn 3115\n1 GHz  24.1\n  2.5 GHz\t27.3 dBi # measured\n# end\n"
        "[Cable] Cable #3\n30 MHz -0.5 dB\n",
        two);
    row("sections, without the first line", "[Antenna]Horn 3115\r\n1e9 24,1\r\n2,5GHz 27.3dBi\r\n", horn);
    row("sections, old line ends", "caldata  1\r[1] \"Horn\\u00203115\"\r1000000000 24.1\r2500 MHz 27.3\r", horn);
    row("sections, no last line end", "[antenna] Horn 3115\n1 GHz 24.1\n2.5 GHz 27.3", horn);
    row("sections, a frequency twice", "[antenna] Horn 3115\n1 GHz 1\n2.5 GHz 27.3\n1000 MHz 24.1\n", horn);
    row("sections, empty label", "caldata 1\n[cable]\n[cable] \"\"\n",
        {object("", ACalibrationData::Cable), object("", ACalibrationData::Cable)});
    row("sections, label as it stands", "[cable]   a \\n \"b\"  \n", {object("a \\n \"b\"", ACalibrationData::Cable)});
    row("sections, gains beyond numbers", "[any] a\n1 nan\n2 inf\n3 -inf\n",
        {object("a", ACalibrationData::AnyType, {{"1", kNan}, {"2", kInfinity}, {"3", -kInfinity}})});

    row("table",
        "# from a spreadsheet\nlabel;type;frequency (MHz);gain [dB]\nHorn 3115;antenna;1000;24,1\n"
        "Horn 3115;antenna;2500;27,3\n;;;\n\nCable #3;Cable;30;-0,5\n",
        two);
    row("table, commas",
        "Frequency,Gain,Label,Type,Comment\n1 GHz,24.1,Horn 3115,antenna,\"a, b\"\n"
        "2.5 GHz,27.3,\"Horn 3115\",antenna\n",
        horn);
    row("table, tabs", "type\tlabel\tfrequency [GHz]\tgain\n1\tHorn 3115\t1\t24.1\n1\tHorn 3115\t2500 MHz\t27.3\r\n",
        horn);
    row("table, rows in any order",
        "label;type;frequency;gain\nHorn 3115;antenna;2.5 GHz;27.3\nCable #3;cable;30 MHz;-0.5\n"
        "Horn 3115;antenna;1 GHz;24.1\n",
        two);
    row("table, one row names the object",
        "object;label;type;frequency;gain\nA;Horn 3115;antenna;;\nA;;;2.5 GHz;27.3\nB;Cable #3;cable;30 MHz;-0.5\n"
        "A;;;1 GHz;24.1;;\n",
        two);
    row("table, two of a kind", "object;label;type;frequency;gain\n1;a;cable;1;2\n2;a;cable;1;2\n",
        {object("a", ACalibrationData::Cable, {{"1", 2.0}}), object("a", ACalibrationData::Cable, {{"1", 2.0}})});
    row("table, quotes and line ends", "label;type;frequency;gain\n \"a\r\nb;\"\"c\"\"\n\" ; cable ; 1 ; 2 \n",
        {object("a\r\nb;\"c\"\n", ACalibrationData::Cable, {{"1", 2.0}})});
    row("table, a quote inside", "label;type;frequency;gain\n19\" rack;cable;1;2\n",
        {object("19\" rack", ACalibrationData::Cable, {{"1", 2.0}})});
    row("table, minimal", "frequency;gain\n30 MHz;-0.5\n",
        {object("hand", ACalibrationData::Preamplifier, {{"30 MHz", -0.5}})});
    row("table, minimal and empty", "frequency;gain", {});
    row("table, label alone missing", "frequency;gain;type\n1;2;cable\n1;3;antenna\n",
        {object("hand", ACalibrationData::Cable, {{"1", 2.0}}),
         object("hand", ACalibrationData::Antenna, {{"1", 3.0}})});
    row("table, a mark first",
        "\xef\xbb\xbf"
        "frequency\tgain\n1\t2\n",
        {object("hand", ACalibrationData::Preamplifier, {{"1", 2.0}})});
}

void TestACalibrationDataReading::handWrittenFilesAreRead()
{
    QFETCH(QByteArray, content);
    QFETCH(Objects, objects);
    const QString name = path("hand.txt");
    QVERIFY(writeFile(name, content));
    Objects read;
    QVERIFY(ACalibrationData::readAll(name, read, ACalibrationData::Preamplifier));
    QCOMPARE(read, objects);
}

void TestACalibrationDataReading::documentedFilesAreRead_data()
{
    QTest::addColumn<QByteArray>("heading");
    QTest::addColumn<QList<Objects>>("files");
    const ACalibrationData horn = object("Horn 3115", ACalibrationData::Antenna, {{"1 GHz", 24.1}, {"2.5 GHz", 27.3}});
    const ACalibrationData cable = object("Cable #3", ACalibrationData::Cable, {{"30 MHz", -0.5}});
    QTest::newRow("xml") << QByteArray("Calibrations as XML")
                         << QList<Objects>{{horn, object("Cable #3", ACalibrationData::Cable)}};
    QTest::newRow("sections") << QByteArray("Calibrations as sections (.caldata)") << QList<Objects>{{horn, cable}};
    QTest::newRow("table")
        << QByteArray("Calibrations as a table (.offsets)")
        << QList<Objects>{{horn, cable, object("Attenuator without entries", ACalibrationData::Attenuator)},
                          {object("file", ACalibrationData::Preamplifier, {{"30 MHz", -0.5}, {"108 MHz", -0.8}})}};
}

void TestACalibrationDataReading::documentedFilesAreRead()
{
    QFETCH(QByteArray, heading);
    QFETCH(QList<Objects>, files);
    const QList<QByteArray> contents = documentedFiles(heading);
    QCOMPARE(contents.size(), files.size());
    for (int i = 0; i < files.size(); ++i) {
        Objects objects;
        QVERIFY(writeFile(path("file.txt"), contents.at(i)));
        QVERIFY(ACalibrationData::readAll(path("file.txt"), objects, ACalibrationData::Preamplifier));
        QCOMPARE(objects, files.at(i));
    }
}

void TestACalibrationDataReading::theTypeArgumentFillsGapsAlone_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::newRow("xml") << QByteArray("<calibrations><calibration label='a'/><calibration label='b' type=''/>"
                                       "<calibration label='c' type='cable'/></calibrations>");
    QTest::newRow("sections") << QByteArray("caldata 1\n[] a\n[ ] b\n[cable] c\n");
    QTest::newRow("table") << QByteArray("label,type,frequency,gain\na,,,\nb\nc,cable,,\n");
}

void TestACalibrationDataReading::theTypeArgumentFillsGapsAlone()
{
    QFETCH(QByteArray, content);
    const QString name = path("file");
    QVERIFY(writeFile(name, content));
    const auto types = [&](ACalibrationData::CalibrationType type) {
        Objects objects;
        QList<int> result;
        if (ACalibrationData::readAll(name, objects, type)) {
            for (const ACalibrationData &data : qAsConst(objects))
                result << data.type();
        }
        return result;
    };
    QCOMPARE(types(ACalibrationData::Antenna), (QList<int>{1, 1, 2}));
    QCOMPARE(types(ACalibrationData::AnyType), (QList<int>{5, 5, 2}));
    QCOMPARE(types(ACalibrationData::AllTypes), (QList<int>{5, 5, 2}));
}

void TestACalibrationDataReading::otherFilesAreRefused_data()
{
    QTest::addColumn<QByteArray>("content");
    const auto row = [](const char *name, const QByteArray &content) { QTest::newRow(name) << content; };
    row("empty", "");
    row("blank", "\n \n\t\n");
    row("comments alone", "# a\n# b\n");
    row("byte order mark alone", "\xef\xbb\xbf");
    row("text", "Hello, world\n");
    row("one number", "5\n");
    row("zeros", QByteArray(1000, '\0'));
    row("binary", QByteArray("\x7f"
                             "ELF\2\1\1\0\0\0\0\0",
                             12));
    row("all bytes", [] {
        QByteArray bytes;
        for (int i = 1; i < 256; ++i)
            bytes += char(i);
        return bytes;
    }());

    const auto inObject = [](const char *content) {
        return QByteArray("<calibrations><calibration label='a' type='cable'>") + content +
               "</calibration></calibrations>";
    };
    row("xml: other root", "<data><limit/></data>");
    row("xml: no root", "<?xml version='1.0'?>");
    row("xml: not closed", "<calibrations><calibration>");
    row("xml: text behind", "<calibrations/>x");
    row("xml: other child", "<calibrations><limit/></calibrations>");
    row("xml: other attribute", "<calibrations><calibration lable='a'/></calibrations>");
    row("xml: a namespace", "<calibrations><calibration xmlns='a'/></calibrations>");
    row("xml: both labels", "<calibrations><calibration label='a' escapedLabel='b'/></calibrations>");
    row("xml: bad escape", "<calibrations><calibration escapedLabel='\\x'/></calibrations>");
    row("xml: cut escape", "<calibrations><calibration escapedLabel='\\u00'/></calibrations>");
    row("xml: unknown type", "<calibrations><calibration type='filter'/></calibrations>");
    row("xml: all types", "<calibrations><calibration type='6'/></calibrations>");
    row("xml: no gain", inObject("<level frequency='5'/>"));
    row("xml: no frequency", inObject("<level gain='5'/>"));
    row("xml: bad gain", inObject("<level frequency='5' gain='five'/>"));
    row("xml: bad frequency", inObject("<level frequency='five' gain='5'/>"));
    row("xml: bad unit", inObject("<level frequency='5 THz' gain='5'/>"));
    row("xml: nan frequency", inObject("<level frequency='nan' gain='5'/>"));
    row("xml: frequency beyond the range", inObject("<level frequency='9223372037 GHz' gain='5'/>"));
    row("xml: gain beyond the range", inObject("<level frequency='5' gain='1e309'/>"));
    row("xml: text", inObject("text"));
    row("xml: text in an entry", inObject("<level frequency='5' gain='5'>x</level>"));
    row("xml: element in an entry", inObject("<level frequency='5' gain='5'><level/></level>"));
    row("xml: attribute of the root", "<calibrations version='2'><calibration label='a'/></calibrations>");
    row("xml: declared default", "<!DOCTYPE c [<!ATTLIST calibration label CDATA 'a'>]><calibrations/>");
    row("xml: undeclared entity", inObject("<level frequency='5' gain='&five;'/>"));
    row("xml: not UTF-8", "<calibrations><calibration label='\xff'/></calibrations>");
    row("xml: ever growing entities",
        "<!DOCTYPE c [<!ENTITY a 'aaaaaaaaaa'><!ENTITY b '&a;&a;&a;&a;&a;&a;&a;&a;&a;&a;'>"
        "<!ENTITY c '&b;&b;&b;&b;&b;&b;&b;&b;&b;&b;'><!ENTITY d '&c;&c;&c;&c;&c;&c;&c;&c;&c;&c;'>"
        "<!ENTITY e '&d;&d;&d;&d;&d;&d;&d;&d;&d;&d;'>]><calibrations><calibration label='&e;'/></calibrations>");

    row("sections: later version", "caldata 2\n");
    row("sections: other section", "[Settings]\n");
    row("sections: all types", "[6] a\n");
    row("sections: not closed", "[cable a\n");
    row("sections: entry without an object", "caldata 1\n5 5\n");
    row("sections: one number", "[cable] a\n5\n");
    row("sections: number and unit", "[cable] a\n5 MHz\n");
    row("sections: gain and unit", "[cable] a\n5 dB\n");
    row("sections: three numbers", "[cable] a\n5 5 5\n");
    row("sections: two units", "[cable] a\n5 MHz 5 dB dB\n");
    row("sections: bad frequency", "[cable] a\nMHz 5\n");
    row("sections: two signs", "[cable] a\n1.000.000 5\n");
    row("sections: text", "[cable] a\nHello\n");
    row("sections: quotes not closed", "[cable] \"a\n");
    row("sections: one quote", "[cable] \"\n");
    row("sections: bad escape", "[cable] \"\\u12\"\n");
    row("sections: not UTF-8", "[cable] \xe4\n");
    row("sections: a zero inside", QByteArray("[cable] a\n5 5\0\n", 15));

    row("table: no gain", "frequency;label\n5;5\n");
    row("table: no frequency", "gain;label\n5;5\n");
    row("table: unknown column", "frequency;gain;lable\n5;5;a\n");
    row("table: a column twice", "frequency;gain;gain\n5;5;5\n");
    row("table: unknown unit", "frequency (THz);gain\n5;5\n");
    row("table: unknown gain unit", "frequency;gain (V)\n5;5\n");
    row("table: unit of a label", "frequency;gain;label (MHz)\n5;5\n");
    row("table: more cells", "frequency;gain\n5;5;5\n");
    row("table: gain missing", "frequency;gain\n5;\n");
    row("table: frequency missing", "frequency;gain\n;5\n");
    row("table: bad gain", "frequency;gain\n5;x\n");
    row("table: bad frequency", "frequency;gain\nx;5\n");
    row("table: quotes not closed", "frequency;gain;label\n5;5;\"a\n");
    row("table: text behind quotes", "frequency;gain;label\n5;5;\"a\"b\n");
    row("table: bad type", "frequency;gain;type\n5;5;filter\n");
    row("table: two labels of one object", "object;label;frequency;gain\n1;a;5;5\n1;b;6;6\n");
    row("table: two types of one object", "object;type;frequency;gain\n1;cable;5;5\n1;antenna;6;6\n");
    row("table: both labels", "label;escaped label;frequency;gain\na;b;5;5\n");
    row("table: not UTF-8", "label;frequency;gain\n\xe4;5;5\n");
    row("table: a zero inside", QByteArray("frequency;gain\n5;5\0\n", 19));
}

void TestACalibrationDataReading::otherFilesAreRefused()
{
    QFETCH(QByteArray, content);
    const QString name = path("file");
    QVERIFY(writeFile(name, content));
    const Objects before = smallList();
    Objects objects = before;
    QVERIFY(!ACalibrationData::readAll(name, objects, ACalibrationData::Cable));
    QCOMPARE(objects, before);
}

void TestACalibrationDataReading::aRefusalTellsTheLineAndWhatWasExpected_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<int>("line"); // 0: none
    QTest::addColumn<QString>("expected");
    const auto row = [](const char *name, const QByteArray &content, int line, const char *expected) {
        QTest::newRow(name) << content << line << QString(expected);
    };
    row("empty", "", 0, "expected calibration objects");
    row("comments alone", "# a\n\n", 0, "expected calibration objects");
    row("byte 0", QByteArray("caldata 1\n\0", 11), 0, "expected a text file");
    row("neither form", "\n# a\ngarbage\n", 3, "expected '<', 'caldata 1', '[type] label', or the names of columns");

    row("sections, type", "caldata 1\n[cable] a\n[tube] b\n", 3, "expected a known type in brackets and a label");
    row("sections, no object", "caldata 1\r\n\r\n1 MHz 5\r\n", 3, "expected '[type] label' before the first entry");
    row("sections, entry", "[cable] a\r1 MHz 5\r2 MHz five", 3, "expected a frequency and a gain");
    row("sections, behind a mark", "\xef\xbb\xbf[cable] a\nx\n", 2, "expected a frequency and a gain");

    row("table, gain", "frequency;gain\n1;2\n\n3;x\n", 4, "expected a frequency and a gain");
    row("table, half a row", "frequency;gain\n1;\n", 2, "expected both a frequency and a gain, or none");
    row("table, beyond", "frequency;gain\n1;2;3\n", 2, "expected nothing beyond the named columns");
    row("table, type", "type;frequency;gain\ncable;1;2\ntube;1;2\n", 3, "expected a label and a known type");
    row("table, quote", "frequency;gain\n1;2\n\"3;4\n5;6\n", 3, "expected a row with each quote closed");
    row("table, behind a row of lines", "label;frequency;gain\n\"a\nb\";1;2\nc;1;x\n", 4,
        "expected a frequency and a gain");
    row("table, columns", "# a\nfrequency;level\n1;2\n", 2, "expected '<', 'caldata 1',");

    row("xml, root", "<data/>", 1, "expected <calibrations> without attributes");
    row("xml, object", "<calibrations>\n<antenna/>\n</calibrations>", 2,
        "expected <calibration> with a label and a known type");
    row("xml, entry", "<calibrations>\n<calibration>\n<level frequency='1' gain='x'/></calibration></calibrations>", 3,
        "expected <level> with a frequency and a gain");
    row("xml, deeper",
        "<calibrations>\n<calibration>\n<level frequency='1' gain='1'>\n<a/></level></calibration></calibrations>", 4,
        "expected no element inside <level>");
    row("xml, text", "<calibrations>\n<calibration>text</calibration></calibrations>", 2,
        "expected no text between the elements");
    row("xml, cut", "<calibrations>\n<calibration>\n", 3, "");
}

void TestACalibrationDataReading::aRefusalTellsTheLineAndWhatWasExpected()
{
    QFETCH(QByteArray, content);
    QFETCH(int, line);
    QFETCH(QString, expected);
    const QString name = path("a %2.b");
    QVERIFY(writeFile(name, content));
    Objects objects{ACalibrationData()};
    QString errorText;
    QVERIFY(!ACalibrationData::readAll(name, objects, ACalibrationData::AnyType, &errorText));
    const QString start = QStringLiteral("Could not read calibration file '") + name + QStringLiteral("': ") +
                          (line > 0 ? QStringLiteral("line %1: ").arg(line) : QString()) + expected;
    QVERIFY2(errorText.startsWith(start), qPrintable(errorText));
    QVERIFY(errorText.size() > start.size() || !expected.isEmpty());
    QCOMPARE(objects, Objects{ACalibrationData()});
    QVERIFY(!ACalibrationData::readAll(name, objects, ACalibrationData::AnyType, nullptr));
}

void TestACalibrationDataReading::aRefusalOfNoFileTellsWhy()
{
    Objects objects;
    QString errorText;
    for (const QString &name : {path("missing"), m_dir->path()}) {
        QVERIFY(!ACalibrationData::readAll(name, objects, ACalibrationData::AnyType, &errorText));
        const QString start = QStringLiteral("Could not read file '%1': ").arg(name);
        QVERIFY2(errorText.startsWith(start) && errorText.size() > start.size(), qPrintable(errorText));
    }
    QVERIFY(writeFile(path("good"), "caldata 1\n"));
    errorText = "untouched";
    QVERIFY(ACalibrationData::readAll(path("good"), objects, ACalibrationData::AnyType, &errorText));
    QCOMPARE(errorText, QString("untouched"));
}

void TestACalibrationDataReading::aLineFarDownIsCounted_data()
{
    QTest::addColumn<QByteArray>("lineEnd");
    QTest::newRow("LF") << QByteArray("\n");
    QTest::newRow("CR") << QByteArray("\r");
    QTest::newRow("both") << QByteArray("\r\n");
}

// Beyond the blocks in which a file is read.
void TestACalibrationDataReading::aLineFarDownIsCounted()
{
    QFETCH(QByteArray, lineEnd);
    constexpr int kLines = 50000;
    for (const char *first : {"[cable] a", "frequency,gain"}) {
        const bool isTable = first[0] == 'f';
        QByteArray content = first + lineEnd;
        for (int line = 2; line < kLines; ++line)
            content += QByteArray::number(line) + (isTable ? ",1" : " 1") + lineEnd;
        content += "bad" + lineEnd;
        QVERIFY(writeFile(path("a"), content));
        Objects objects;
        QString errorText;
        QVERIFY(!ACalibrationData::readAll(path("a"), objects, ACalibrationData::AnyType, &errorText));
        QVERIFY2(errorText.contains("line 50000: "), qPrintable(errorText));
    }
}

void TestACalibrationDataReading::anIndentedCommentIsPassedOver_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::newRow("semicolon") << QByteArray("label;frequency;gain\n  # one; two\n\t#\na;1 MHz;5\n #");
    QTest::newRow("comma") << QByteArray("label,frequency,gain\n  # unclosed \"\n\t # x,y\na,1 MHz,5\n");
    QTest::newRow("tab") << QByteArray("label\tfrequency\tgain\n  # one\ttwo\na\t1 MHz\t5\n");
    QTest::newRow("sections") << QByteArray("[] a\n  # one\n\t# two\n1 MHz 5\n");
}

void TestACalibrationDataReading::anIndentedCommentIsPassedOver()
{
    QFETCH(QByteArray, content);
    QVERIFY(writeFile(path("a"), content));
    Objects objects;
    QVERIFY(ACalibrationData::readAll(path("a"), objects, ACalibrationData::Cable));
    QCOMPARE(objects, Objects{object("a", ACalibrationData::Cable, {{"1 MHz", 5}})});
    // In a quote it is a label.
    QVERIFY(writeFile(path("b"), "label;frequency;gain\n \"# a\";1 MHz;5\n"));
    objects.clear();
    QVERIFY(ACalibrationData::readAll(path("b"), objects, ACalibrationData::Cable));
    QCOMPARE(objects.first().label(), QString("# a"));
}

void TestACalibrationDataReading::whatIsNoFileIsRefused()
{
    Objects objects;
    const auto isRead = [&](const QString &name) {
        return ACalibrationData::readAll(name, objects, ACalibrationData::Cable);
    };
    QVERIFY(!isRead(path("missing.xml")));
    QVERIFY(!isRead(QString()));
    QVERIFY(!isRead(m_dir->path()));
    QVERIFY(::mkfifo(QFile::encodeName(path("pipe.xml")).constData(), 0600) == 0);
    QVERIFY(!isRead(path("pipe.xml")));
    QVERIFY(QFile::link(path("missing.xml"), path("link.xml")));
    QVERIFY(!isRead(path("link.xml")));
    QVERIFY(objects.isEmpty());
}

void TestACalibrationDataReading::aHugeEmptyFileIsRefusedAtOnce()
{
    QFile file(path("huge.xml"));
    QVERIFY(file.open(QIODevice::WriteOnly));
    const QByteArray starts[] = {"", "<calibrations>", "caldata 1\n[cable] a\n", "frequency;gain\n",
                                 "frequency;gain;label\n1;1;\""};
    for (const QByteArray &start : starts) {
        QVERIFY(file.resize(0) && file.seek(0) && file.write(start) == start.size() && file.flush());
        QVERIFY(file.resize(qint64(1) << 30));
        QElapsedTimer timer;
        timer.start();
        Objects objects;
        QVERIFY(!ACalibrationData::readAll(file.fileName(), objects, ACalibrationData::Cable));
        QVERIFY(timer.elapsed() < 2000);
    }
}

void TestACalibrationDataReading::deepNestingIsRefused()
{
    constexpr int kDepth = 100000;
    for (const char *name : {"calibrations", "calibration", "level"}) {
        const QByteArray tag(name);
        const QByteArray content = "<calibrations><calibration>" + ('<' + tag + '>').repeated(kDepth) +
                                   ("</" + tag + '>').repeated(kDepth) + "</calibration></calibrations>";
        QVERIFY(writeFile(path("deep.xml"), content));
        Objects objects;
        QVERIFY(!ACalibrationData::readAll(path("deep.xml"), objects, ACalibrationData::Cable));
    }
}

void TestACalibrationDataReading::damagedFilesNeverCrash_data()
{
    addForms();
}

void TestACalibrationDataReading::damagedFilesNeverCrash()
{
    QFETCH(QString, form);
    const QString name = path("file.") + form;
    QVERIFY(ACalibrationData::saveAll(name, smallList()));
    const QByteArray whole = readFile(name);
    int readable = 0;
    const auto tryToRead = [&](const QByteArray &content) {
        Objects objects;
        QVERIFY(writeFile(name, content));
        if (!ACalibrationData::readAll(name, objects, ACalibrationData::Cable)) {
            QVERIFY(objects.isEmpty());
            return;
        }
        if (++readable % 10 != 0) // each save is synced to the disk
            return;
        Objects again;
        QVERIFY(ACalibrationData::saveAll(name, objects));
        QVERIFY(ACalibrationData::readAll(name, again, ACalibrationData::Cable));
        QCOMPARE(again, objects);
    };
    for (int i = 0; i < whole.size(); ++i) {
        for (const int mask : {0x01, 0x02, 0x08, 0x10, 0x20, 0x80, 0xff}) {
            QByteArray flipped = whole;
            flipped[i] = char(flipped.at(i) ^ mask);
            tryToRead(flipped);
        }
        tryToRead(whole.left(i));
        tryToRead(whole.mid(i));
    }
    QVERIFY(readable > 0); // the digits of a number, at least
}

void TestACalibrationDataReading::aCutXmlFileIsRefused()
{
    QVERIFY(ACalibrationData::saveAll(path("file.xml"), smallList()));
    const QByteArray whole = readFile(path("file.xml"));
    for (int length = 0; length < whole.size() - 1; ++length) {
        QVERIFY(writeFile(path("cut.xml"), whole.left(length)));
        Objects objects;
        QVERIFY(!ACalibrationData::readAll(path("cut.xml"), objects, ACalibrationData::Cable));
    }
}

QTEST_GUILESS_MAIN(TestACalibrationDataReading)
#include "tst_acalibrationdata_reading.moc"
