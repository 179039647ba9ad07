#include "limitfiles.h"

#include "core/alimit.h"
#include "core/documentedfiles.h"

using namespace limitfiles;

namespace {

const QByteArray kHead = "    <limit name=\"a\" begin=\"9000\" end=\"30000000000\" measureunit=\"8\" color=\"\"";
const QByteArray kSection = "        <section beginFrequency=\"9000\" endFrequency=\"150000\" beginValue=\"1\" "
                            "endValue=\"2\" interpolation=\"1\"/>\n";
const QByteArray kLevel = "        <level frequency=\"200000\" interpolation=\"0\">3</level>\n";
const QByteArray kEmpty = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<data/>\n";

QByteArray limitWith(const QByteArray &pieces)
{
    return document(pieces.isEmpty() ? kHead + "/>\n" : kHead + ">\n" + pieces + "    </limit>\n");
}

} // namespace

// What a load and a save make of a file, byte by byte. The reader and the writer are not each other's inverse, and
// limit editors count on each of the differences.
class TestALimitModelRoundtrip : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aFileComesBackAs_data();
    void aFileComesBackAs();
    void aDescriptionThatIsTypedIsDropped();
    void emptiedCellsAreWrittenEmpty();
    void anEditedEdgeKeepsItsDigits();
    void theCurveStaysTheSame();
    void theDocumentedFileComesBackAsDocumented();
    void theExampleLimitsComeBack();
};

void TestALimitModelRoundtrip::aFileComesBackAs_data()
{
    QTest::addColumn<QByteArray>("before");
    QTest::addColumn<QByteArray>("after");
    const auto row = [](const char *name, const QByteArray &before, const QByteArray &after) {
        QTest::newRow(name) << before << after;
    };
    const auto same = [&](const char *name, const QByteArray &content) { row(name, content, content); };

    same("what the writer wrote", limitWith(kSection + kLevel));
    same("a limit without pieces", limitWith(""));
    same("no limit", kEmpty);
    same("several limits", document(kHead + "/>\n" + kHead + "/>\n" + kHead + ">\n" + kLevel + "    </limit>\n"));
    same("texts", document("    <limit name=\"&lt;a&gt; &amp; &quot;b&quot; 'c' \u20ac\" begin=\"0\" end=\"0\""
                           " measureunit=\"dB\u00b5V\" color=\"red\"/>\n"));

    row("a description element is dropped", limitWith("        <description>text</description>\n" + kLevel),
        limitWith(kLevel));
    row("a description attribute is dropped",
        document("    <limit name=\"a\" begin=\"9000\" end=\"30000000000\" measureunit=\"8\" color=\"\""
                 " description=\"text\"/>\n"),
        limitWith(""));

    row("any root becomes data", "<anything>\n" + kHead + "/>\n</anything>\n", limitWith(""));
    row("a root without limits becomes data", "<anything><x/></anything>", kEmpty);

    const QByteArray otherSection = QByteArray(kSection).replace("150000", "180000");
    const QByteArray otherLevel = QByteArray(kLevel).replace("200000", "100000");
    row("sections go before levels", limitWith(kLevel + kSection + otherLevel + otherSection),
        limitWith(kSection + otherSection + kLevel + otherLevel));
    same("that order stays", limitWith(kSection + otherSection + kLevel + otherLevel));

    row("a fraction in whole hertz is 0",
        "<data><limit begin='9000.5' end='1e9'><level frequency='2.5'>3</level></limit></data>",
        document("    <limit name=\"\" begin=\"0\" end=\"0\" measureunit=\"8\" color=\"\">\n"
                 "        <level frequency=\"0\" interpolation=\"0\">3</level>\n    </limit>\n"));
    row("a section takes decimal hertz",
        limitWith("<section beginFrequency='9e3' endFrequency='150000.75' beginValue='1' endValue='2'/>"),
        limitWith(kSection));

    row("edges keep six digits of megahertz",
        "<data><limit begin='1234567890' end='9876543210'><level frequency='1234567890'>3</level></limit></data>",
        document("    <limit name=\"\" begin=\"1234570000\" end=\"9876540000\" measureunit=\"8\" color=\"\">\n"
                 "        <level frequency=\"1234567890\" interpolation=\"0\">3</level>\n    </limit>\n"));
    same("sections and levels keep each hertz",
         limitWith("        <section beginFrequency=\"1234567891\" endFrequency=\"12345678901\" beginValue=\"1\""
                   " endValue=\"2\" interpolation=\"1\"/>\n"
                   "        <level frequency=\"29999999999\" interpolation=\"0\">3</level>\n"));

    const QByteArray becomesLevel = limitWith("        <level frequency=\"150000\" interpolation=\"7\">2</level>\n");
    row("a section from 0 becomes a level",
        limitWith("<section beginFrequency='0' endFrequency='150000' beginValue='1' endValue='2' interpolation='7'/>"),
        becomesLevel);
    row("a section from a blank becomes a level",
        limitWith("<section beginFrequency=' ' endFrequency='150000' beginValue='1' endValue='2' interpolation='7'/>"),
        becomesLevel);
    row("a section without a begin becomes a level",
        limitWith("<section endFrequency='150000' beginValue='1' endValue='2' interpolation='7'/>"), becomesLevel);
    row("a section from below 0 becomes a level",
        limitWith("<section beginFrequency='-1' endFrequency='150000' beginValue='1' endValue='2' interpolation='7'/>"),
        becomesLevel);
    row("such a level stays among the sections",
        limitWith("<level frequency='1'>1</level><section endFrequency='2' endValue='2'/>" + kSection),
        limitWith("        <level frequency=\"2\" interpolation=\"1\">2</level>\n" + kSection +
                  "        <level frequency=\"1\" interpolation=\"0\">1</level>\n"));
    row("and goes behind them at the next load",
        limitWith("        <level frequency=\"2\" interpolation=\"1\">2</level>\n" + kSection),
        limitWith(kSection + "        <level frequency=\"2\" interpolation=\"1\">2</level>\n"));
    row("a level stays a level", limitWith("<level frequency='5' beginFrequency='4' beginValue='9'>3</level>"),
        limitWith("        <level frequency=\"5\" interpolation=\"0\">3</level>\n"));

    row("defaults are written out", "<data><limit/></data>",
        document("    <limit name=\"\" begin=\"0\" end=\"30000000000\" measureunit=\"8\" color=\"\"/>\n"));
    row("what is empty stays empty", "<data><limit end='' measureunit=''/></data>",
        document("    <limit name=\"\" begin=\"0\" end=\"0\" measureunit=\"\" color=\"\"/>\n"));

    row("interpolations are written out",
        limitWith("<section beginFrequency='9000' endFrequency='150000' beginValue='1' endValue='2'/>"
                  "<level frequency='200000'>3</level>"),
        limitWith(kSection + kLevel));
    same("an unknown interpolation stays",
         limitWith("        <level frequency=\"1\" interpolation=\"4294967295\">3</level>\n"));

    row("values keep six digits",
        limitWith("<section beginFrequency='9000' endFrequency='150000' beginValue='1.00000049' endValue='2.0000004'/>"
                  "<level frequency='200000'>3.0000001</level>"),
        limitWith(kSection + kLevel));
    row("an absent end value is the rounded begin value",
        limitWith("<section beginFrequency='9000' endFrequency='150000' beginValue='12.3456789'/>"),
        limitWith("        <section beginFrequency=\"9000\" endFrequency=\"150000\" beginValue=\"12.3457\""
                  " endValue=\"12.3457\" interpolation=\"1\"/>\n"));
    same("large and small values", limitWith("        <level frequency=\"1\" interpolation=\"0\">-1.23457e+06</level>\n"
                                             "        <level frequency=\"2\" interpolation=\"0\">1e-05</level>\n"
                                             "        <level frequency=\"3\" interpolation=\"0\">nan</level>\n"));
    row("all else is dropped",
        "<!-- remark --><data version='1'>text<other/>\n" + kHead + " id='5'>\n<!-- remark -->text<other/>" + kLevel +
            "</limit><limits/></data>",
        limitWith(kLevel));
}

void TestALimitModelRoundtrip::aFileComesBackAs()
{
    QFETCH(QByteArray, before);
    QFETCH(QByteArray, after);
    LimitDir dir;
    QVERIFY2(dir.load(before), qPrintable(dir.loadErrors.join(QLatin1Char('\n'))));
    QCOMPARE(dir.saved(), after);
}

void TestALimitModelRoundtrip::aDescriptionThatIsTypedIsDropped()
{
    LimitDir dir;
    QVERIFY(dir.load(limitWith(kLevel)));
    QVERIFY(dir.model.setData(dir.model.index(0, ALimitModel::ColumnDescription), QStringLiteral("typed")));
    QCOMPARE(dir.saved(), limitWith(kLevel));
    QVERIFY(dir.model.loadFromFile(dir.path("out.xml")));
    QCOMPARE(rowTexts(dir.model, 0).at(ALimitModel::ColumnDescription), QString());
}

// The defaults apply on reading only.
void TestALimitModelRoundtrip::emptiedCellsAreWrittenEmpty()
{
    LimitDir dir;
    QVERIFY(dir.load(limitWith("")));
    for (int column : {ALimitModel::ColumnUnit, ALimitModel::ColumnEnd})
        QVERIFY(dir.model.setData(dir.model.index(0, column), QString()));
    QCOMPARE(dir.saved(), document("    <limit name=\"a\" begin=\"9000\" end=\"0\" measureunit=\"\" color=\"\"/>\n"));
}

void TestALimitModelRoundtrip::anEditedEdgeKeepsItsDigits()
{
    LimitDir dir;
    QVERIFY(dir.load(limitWith("")));
    QVERIFY(dir.model.setData(dir.model.index(0, ALimitModel::ColumnEnd), QStringLiteral("1234.567891")));
    QVERIFY(dir.saved().contains(" end=\"1234567891\""));
    QVERIFY(dir.model.loadFromFile(dir.path("out.xml"))); // and loses them at the next load
    QVERIFY(dir.saved().contains(" end=\"1234570000\""));
}

// What ALimit makes of the file before and after, where none of the differences applies.
void TestALimitModelRoundtrip::theCurveStaysTheSame()
{
    LimitDir dir;
    QByteArray pieces;
    for (int i = 1; i <= 50; ++i)
        pieces += "<level frequency='" + QByteArray::number(i * 1000001) + "' interpolation='" +
                  QByteArray::number(i % 3) + "'>" + QByteArray::number(i * 1.5) + "</level>";
    pieces += "<section beginFrequency='7000000' endFrequency='9000000' beginValue='-5' endValue='5'/>";
    const QString before = dir.write(limitWith(pieces));
    QVERIFY(dir.model.loadFromFile(before));
    const QString after = dir.path("after.xml");
    QVERIFY(dir.model.saveToFile(after));
    QList<const ALimit *> limits;
    QVERIFY(ALimit::readAll(before, limits, nullptr));
    QVERIFY(ALimit::readAll(after, limits, nullptr));
    QCOMPARE(limits.size(), 2);
    for (int kilohertz = 0; kilohertz < 60000; kilohertz += 7) {
        AFrequency frequency;
        frequency.setValue(kilohertz, AFrequency::kHz);
        bool isFirst = false;
        bool isSecond = false;
        const double first = limits.at(0)->valueAt(frequency, &isFirst);
        const double second = limits.at(1)->valueAt(frequency, &isSecond);
        QCOMPARE(isFirst, isSecond);
        QVERIFY(!isFirst || first == second);
    }
    qDeleteAll(limits);
}

void TestALimitModelRoundtrip::theDocumentedFileComesBackAsDocumented()
{
    const QList<QByteArray> read = documentedFiles("Limit files");
    const QList<QByteArray> written = documentedFiles("What a limit editor makes of a limit file");
    QCOMPARE(read.size(), 1);
    QCOMPARE(written.size(), 1);
    LimitDir dir;
    QVERIFY(dir.load(read.first()));
    QCOMPARE(dir.saved(), written.first());
}

// All examples load, and a second save changes nothing that the first one left.
void TestALimitModelRoundtrip::theExampleLimitsComeBack()
{
    const QDir examples(QStringLiteral(AVELDORAN_EXAMPLES_DIR "/data/limits"));
    const QStringList names = examples.entryList({QStringLiteral("*.xml")});
    QVERIFY(names.size() >= 6);
    for (const QString &name : names) {
        LimitDir dir;
        QVERIFY2(dir.model.loadFromFile(examples.filePath(name)), qPrintable(dir.loadErrors.join(QLatin1Char('\n'))));
        QVERIFY(dir.model.rowCount() > 0);
        for (int row = 0; row < dir.model.rowCount(); ++row) {
            QVERIFY2(!rowTexts(dir.model, row).at(ALimitModel::ColumnDescription).isEmpty(), qPrintable(name));
            QVERIFY(dir.model.hasChildren(dir.model.index(row, 0)));
        }
        const QByteArray first = dir.saved();
        QVERIFY(dir.model.loadFromFile(dir.path("out.xml")));
        QCOMPARE(dir.saved(), first);
    }
}

QTEST_MAIN(TestALimitModelRoundtrip)
#include "tst_alimitmodel_roundtrip.moc"
