#include "core/alimit.h"

#include "core/testbasics.h"
#include "documentedfiles.h"

#include <QtTest/QtTest>

#include <limits>

#include <sys/stat.h>

using testbasics::hertz;
using testbasics::writeFile;

namespace {

// What is read from one file, released at the end.
struct Limits
{
    QList<const ALimit *> list;
    QString errorText;

    Limits() = default;
    ~Limits() { qDeleteAll(list); }
    bool read(const QString &fileName) { return ALimit::readAll(fileName, list, &errorText); }
    const ALimit &at(int index) const { return *list.at(index); }

private:
    Q_DISABLE_COPY(Limits)
};

} // namespace

class TestALimitReading : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void everyAttributeIsRead();
    void theDocumentedFileIsRead();
    void absentAttributesHaveDefaults();
    void emptyAttributesAreReadAsTheyStand();
    void badNumbersAreZero();
    void theDescriptionElementComesFirst();
    void limitsComeInDocumentOrder();
    void onlyDirectChildrenCount();
    void anyRootIsTakenThatHoldsLimits();
    void dataMayHoldNone();
    void readingAppends();
    void failures_data();
    void failures();
    void whatIsNoFileFails();
    void aPercentSignInAFileNameStaysWhole();
    void errorsAreAtTheirPlace();
    void aHugeEmptyFileFailsAtOnce();
    void damagedFilesNeverCrash();
    void manyPiecesAreReadAndAskedFast();

private:
    QString path(const QString &name) const { return m_dir->filePath(name); }
    QString written(const QByteArray &content) const
    {
        const QString name = path("limit.xml");
        return writeFile(name, content) ? name : QString();
    }

    std::unique_ptr<QTemporaryDir> m_dir;
};

void TestALimitReading::init()
{
    m_dir = std::make_unique<QTemporaryDir>();
    QVERIFY(m_dir->isValid());
}

void TestALimitReading::everyAttributeIsRead()
{
    Limits limits;
    QVERIFY2(limits.read(written(
                 "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<data>\n"
                 "  <limit name=\"M\u00e4sk\" begin=\"30000000\" end=\"1000000000\" measureunit=\"3\" color=\"#00ff00\""
                 " description=\"short\">\n"
                 "    <level frequency=\"500000000\" interpolation=\"1\"> 37.25 </level>\n"
                 "    <section beginFrequency=\"30000000\" endFrequency=\"2.3e8\" beginValue=\"40.5\" endValue=\"-47\""
                 " interpolation=\"2\"/>\n"
                 "    <section beginFrequency=\"8333.5\" endFrequency=\"9000\" beginValue=\"1\" endValue=\"2\"/>\n"
                 "  </limit>\n</data>\n")),
             qPrintable(limits.errorText));
    QCOMPARE(limits.list.size(), 1);
    const ALimit &limit = limits.at(0);
    QCOMPARE(limit.name(), QStringLiteral("M\u00e4sk"));
    QCOMPARE(limit.begin(), AFrequency("30 MHz"));
    QCOMPARE(limit.end(), AFrequency("1 GHz"));
    QCOMPARE(limit.unit(), QString("3"));
    QCOMPARE(limit.unitId(), 3);
    QCOMPARE(limit.color(), QString("#00ff00"));
    QCOMPARE(limit.description(), QString("short"));
    QCOMPARE(limit.sections().size(), 2);
    const ALimit::Section &first = limit.sections().first();
    QCOMPARE(first.begin, AFrequency("30 MHz"));
    QCOMPARE(first.end, AFrequency("230 MHz"));
    QCOMPARE(first.beginValue, 40.5);
    QCOMPARE(first.endValue, -47.0);
    QCOMPARE(first.interpolation, 2u);
    QCOMPARE(limit.sections().last().begin, AFrequency("8333.5"));
    QCOMPARE(limit.levels().size(), 1);
    QCOMPARE(limit.levels().first().frequency, AFrequency("500 MHz"));
    QCOMPARE(limit.levels().first().value, 37.25);
    QCOMPARE(limit.levels().first().interpolation, 1u);
}

void TestALimitReading::theDocumentedFileIsRead()
{
    const QList<QByteArray> files = documentedFiles("Limit files");
    QCOMPARE(files.size(), 1);
    Limits limits;
    QVERIFY2(limits.read(written(files.first())), qPrintable(limits.errorText));
    QCOMPARE(limits.list.size(), 1);
    const ALimit &limit = limits.at(0);
    QCOMPARE(limit.name(), QString("Radiated, class B"));
    QCOMPARE(limit.description(), QString("Quasi-peak at 10 m"));
    QCOMPARE(limit.valueAt(AFrequency("100 MHz"), nullptr), 30.0);
    QCOMPARE(limit.valueAt(AFrequency("230 MHz"), nullptr), 30.0);
    QCOMPARE(limit.valueAt(AFrequency("231 MHz"), nullptr), 37.0);
    QCOMPARE(limit.levels().size(), 1);
}

void TestALimitReading::absentAttributesHaveDefaults()
{
    Limits limits;
    QVERIFY(limits.read(written("<data><limit><section/><section beginValue='1.23456789'/><level/></limit></data>")));
    const ALimit &limit = limits.at(0);
    QCOMPARE(limit.name(), QString());
    QVERIFY(limit.begin().isNull());
    QCOMPARE(limit.end(), AFrequency("30 GHz"));
    QCOMPARE(limit.unit(), QString("8"));
    QCOMPARE(limit.description(), QString());
    QCOMPARE(limit.color(), QString());
    const ALimit::Section &bare = limit.sections().at(0);
    QVERIFY(bare.begin.isNull() && bare.end.isNull());
    QCOMPARE(bare.beginValue, 0.0);
    QCOMPARE(bare.endValue, 0.0);
    QCOMPARE(bare.interpolation, 1u);
    QCOMPARE(limit.sections().at(1).beginValue, 1.23456789);
    QCOMPARE(limit.sections().at(1).endValue, 1.23457);
    QVERIFY(limit.levels().first().frequency.isNull());
    QCOMPARE(limit.levels().first().value, 0.0);
    QCOMPARE(limit.levels().first().interpolation, 0u);
}

void TestALimitReading::emptyAttributesAreReadAsTheyStand()
{
    Limits limits;
    QVERIFY(limits.read(written("<data><limit end='' measureunit=''>"
                                "<section beginValue='5' endValue='' interpolation=''/></limit></data>")));
    const ALimit &limit = limits.at(0);
    QVERIFY(limit.end().isNull());
    QCOMPARE(limit.unit(), QString());
    QCOMPARE(limit.sections().first().endValue, 0.0);
    QCOMPARE(limit.sections().first().interpolation, 0u);
}

void TestALimitReading::badNumbersAreZero()
{
    Limits limits;
    QVERIFY(limits.read(written("<data><limit begin='1.5' end='-3' measureunit='x'>"
                                "<section beginFrequency='a' endFrequency='nan' beginValue='1,5' endValue='x'"
                                " interpolation='-1'/>"
                                "<level frequency='1e6' interpolation='1.5'>five</level>"
                                "<level frequency='18446744073709551615'>1e400</level>"
                                "<level frequency='18446744073709551616'/>"
                                "</limit></data>")));
    const ALimit &limit = limits.at(0);
    QVERIFY(limit.begin().isNull() && limit.end().isNull());
    QCOMPARE(limit.unitId(), 0);
    const ALimit::Section &bad = limit.sections().first();
    QVERIFY(bad.begin.isNull() && bad.end.isNull());
    QCOMPARE(bad.beginValue, 0.0);
    QCOMPARE(bad.endValue, 0.0);
    QCOMPARE(bad.interpolation, 0u);
    QVERIFY(limit.levels().at(0).frequency.isNull());
    QCOMPARE(limit.levels().at(0).value, 0.0);
    QCOMPARE(limit.levels().at(0).interpolation, 0u);
    QCOMPARE(limit.levels().at(1).frequency, hertz(std::numeric_limits<qint64>::max()));
    QVERIFY(limit.levels().at(2).frequency.isNull());
}

void TestALimitReading::theDescriptionElementComesFirst()
{
    Limits limits;
    QVERIFY(limits.read(written("<data><limit description='a'><description>b</description></limit>"
                                "<limit description='a'><level>1</level><description/></limit>"
                                "<limit description='a'/></data>")));
    QCOMPARE(limits.at(0).description(), QString("b"));
    QCOMPARE(limits.at(1).description(), QString());
    QCOMPARE(limits.at(2).description(), QString("a"));
}

void TestALimitReading::limitsComeInDocumentOrder()
{
    Limits limits;
    QVERIFY(limits.read(written("<data><limit name='b'/><other/><limit name='a'/><limit name='b'/></data>")));
    QStringList names;
    for (const ALimit *limit : qAsConst(limits.list))
        names << limit->name();
    QCOMPARE(names, (QStringList{"b", "a", "b"}));
}

void TestALimitReading::onlyDirectChildrenCount()
{
    Limits limits;
    QVERIFY(limits.read(written("<data><group><limit name='a'/></group><limit name='b'><group><section/></group>"
                                "<limit name='c'><level/></limit></limit></data>")));
    QCOMPARE(limits.list.size(), 1);
    QCOMPARE(limits.at(0).name(), QString("b"));
    QVERIFY(limits.at(0).sections().isEmpty() && limits.at(0).levels().isEmpty());
}

void TestALimitReading::anyRootIsTakenThatHoldsLimits()
{
    Limits limits;
    QVERIFY(limits.read(written("<anything><limit name='a'/></anything>")));
    QCOMPARE(limits.list.size(), 1);
}

void TestALimitReading::dataMayHoldNone()
{
    Limits limits;
    QVERIFY(limits.read(written("<data/>")));
    QVERIFY(limits.read(written("<data><other/></data>")));
    QVERIFY(limits.list.isEmpty());
    QVERIFY(limits.errorText.isEmpty());
}

void TestALimitReading::readingAppends()
{
    Limits limits;
    const QString name = written("<data><limit name='a'/></data>");
    QVERIFY(limits.read(name));
    QVERIFY(limits.read(name));
    QCOMPARE(limits.list.size(), 2);
    QVERIFY(ALimit::readAll(name, limits.list, nullptr));
    QCOMPARE(limits.list.size(), 3);
}

void TestALimitReading::failures_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("text"); // up to what the parser says
    const QString noXml = QStringLiteral("Could not parse file '%1': ");
    const QString noLimits = QStringLiteral("File '%1' holds no limits");
    const auto row = [](const char *name, const QByteArray &content, const QString &text) {
        QTest::newRow(name) << content << text;
    };
    row("empty", "", noXml);
    row("text", "Hello", noXml);
    row("zeros", QByteArray(1000, '\0'), noXml);
    row("binary",
        QByteArray("\x7f"
                   "ELF\xff\xfe\0\0",
                   8),
        noXml);
    row("cut", "<data><limit>", noXml);
    row("two roots", "<data/><data/>", noXml);
    row("limit behind damage", "<data><limit name='a'/><limit <</data>", noXml);
    row("not UTF-8", "<data><limit name='\xff'/></data>", noXml);
    row("deep", QByteArray("<data>").repeated(100000), noXml);
    row("deep and whole", QByteArray("<data>").repeated(100000) + QByteArray("</data>").repeated(100000), noXml);
    row("other xml", "<calibrations><calibration label='a'/></calibrations>", noLimits);
    row("limit as the root", "<limit/>", noLimits);
    row("limit deeper", "<x><y><limit/></y></x>", noLimits);
    row("other case", "<Data><Limit/></Data>", noLimits);
}

void TestALimitReading::failures()
{
    QFETCH(QByteArray, content);
    QFETCH(QString, text);
    const QString name = written(content);
    Limits limits;
    QVERIFY(!limits.read(name));
    QVERIFY(limits.list.isEmpty());
    QVERIFY2(limits.errorText.startsWith(text.arg(name)), qPrintable(limits.errorText));
    QVERIFY(!ALimit::readAll(name, limits.list, nullptr));
}

void TestALimitReading::whatIsNoFileFails()
{
    Limits limits;
    QVERIFY(!limits.read(path("missing")));
    QCOMPARE(limits.errorText, QStringLiteral("File '%1' does not exist").arg(path("missing")));
    QVERIFY(!limits.read(QString()));
    QCOMPARE(limits.errorText, QString("File '' does not exist"));
    QVERIFY(!limits.read(m_dir->path()));
    QVERIFY(limits.errorText.startsWith(QStringLiteral("Could not read file '%1': ").arg(m_dir->path())));
    QVERIFY(::mkfifo(QFile::encodeName(path("pipe")).constData(), 0600) == 0);
    QVERIFY(!limits.read(path("pipe")));
    QVERIFY(limits.errorText.startsWith(QStringLiteral("Could not read file '%1': ").arg(path("pipe"))));
    QVERIFY(limits.list.isEmpty());
}

void TestALimitReading::aPercentSignInAFileNameStaysWhole()
{
    const QString name = path("%2 %1 %3 %4.xml");
    Limits limits;
    QVERIFY(!limits.read(name));
    QCOMPARE(limits.errorText, "File '" + name + "' does not exist");
    QVERIFY(writeFile(name, "<data>"));
    QVERIFY(!limits.read(name));
    QVERIFY(limits.errorText.startsWith("Could not parse file '" + name + "': "));
    QVERIFY(limits.errorText.contains(" (line 1, col "));
}

void TestALimitReading::errorsAreAtTheirPlace()
{
    Limits limits;
    QVERIFY(!limits.read(written("<data>\n<limit>\n</data>\n")));
    QVERIFY2(limits.errorText.contains(" (line 3, col "), qPrintable(limits.errorText));
}

void TestALimitReading::aHugeEmptyFileFailsAtOnce()
{
    for (const QByteArray &start : {QByteArray(), QByteArray("<data>")}) {
        const QString name = written(start);
        QVERIFY(QFile::resize(name, qint64(1) << 30));
        QElapsedTimer timer;
        timer.start();
        Limits limits;
        QVERIFY(!limits.read(name));
        QVERIFY(timer.elapsed() < 2000);
    }
}

void TestALimitReading::damagedFilesNeverCrash()
{
    const QByteArray whole = "<data><limit name='a' begin='5' end='90' measureunit='3'><description>x</description>"
                             "<section beginFrequency='10' endFrequency='20' beginValue='1' interpolation='2'/>"
                             "<level frequency='30'>5</level></limit></data>";
    int readable = 0;
    const auto tryToRead = [&](const QByteArray &content) {
        Limits limits;
        const bool ok = limits.read(written(content));
        QCOMPARE(ok, limits.errorText.isEmpty());
        QVERIFY(ok || limits.list.isEmpty());
        readable += ok ? 1 : 0;
        for (const ALimit *limit : qAsConst(limits.list)) {
            for (int i = 0; i < 100; i += 5)
                limit->valueAt(hertz(i), nullptr);
        }
    };
    testbasics::flipEveryBit(whole, tryToRead);
    QVERIFY(readable > 0);
    readable = 0;
    testbasics::cutAtEveryLength(whole, tryToRead);
    QCOMPARE(readable, 0);
}

void TestALimitReading::manyPiecesAreReadAndAskedFast()
{
    constexpr int kPieces = 50000;
    QByteArray content = "<data><limit>";
    for (int i = 0; i < kPieces; ++i) { // every section overlaps all that follow it
        const QByteArray number = QByteArray::number(i);
        content += "<section beginFrequency='" + number + "' endFrequency='1000000' beginValue='" + number +
                   "'/><level frequency='" + QByteArray::number(2000000 + i) + "'>" + number + "</level>";
    }
    Limits limits;
    QVERIFY(limits.read(written(content + "</limit></data>")));
    const ALimit &limit = limits.at(0);
    QCOMPARE(limit.sections().size(), kPieces);
    QCOMPARE(limit.levels().size(), kPieces);
    QElapsedTimer timer;
    timer.start();
    for (int i = 0; i < 200000; ++i) {
        bool ok = false;
        const double value = limit.valueAt(hertz(i % 2 ? 2000000 + i / 4 : i), &ok);
        if (!ok || value != (i % 2 ? i / 4 : 0))
            QFAIL(qPrintable(QString::number(i)));
    }
    QVERIFY(timer.elapsed() < 5000); // a plain search takes minutes
}

QTEST_GUILESS_MAIN(TestALimitReading)
#include "tst_alimit_reading.moc"
