#include "limitfiles.h"

#include "core/profilefiles.h"

#include <QtCore/QElapsedTimer>
#include <QtXml/QDomDocument>

#include <random>

using namespace limitfiles;
using profilefiles::inChild;

namespace {

// Sanitizers multiply the memory of items, of which a million limits have eight million.
#ifdef __SANITIZE_ADDRESS__
constexpr int kMany = 100000;
#else
constexpr int kMany = 1000000;
#endif

QByteArray nested(int depth)
{
    return QByteArray("<data>").repeated(depth) + QByteArray("</data>").repeated(depth);
}

QByteArray wholeFile()
{
    return "<?xml version='1.0'?>\n<!DOCTYPE data>\n<data><limit name='x5' begin='5' end='90'>"
           "<description>a<![CDATA[<b>]]></description><!-- c -->"
           "<section beginFrequency='10' endFrequency='20' beginValue='1' interpolation='2'/>"
           "<level frequency='30'>5</level></limit></data>";
}

} // namespace

class TestALimitModelRobustness : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void deepFilesAreRefused_data();
    void deepFilesAreRefused();
    void filesAtTheDepthLimitAreRead();
    void aDocumentTypeMayNameTheRoot();
    void declarationsAreRefused_data();
    void declarationsAreRefused();
    void externalEntitiesAreNotRead();
    void aPipeIsRefused();
    void aFileWithoutPermissionIsReported();
    void aHugeEmptyFileFailsAtOnce_data();
    void aHugeEmptyFileFailsAtOnce();
    void aMillionAttributesAreReadFast();
    void longTextsAreRead();
    void manyLimitsAreReadAndSaved();
    void manyPiecesAreReadAndSaved();
    void theParserDoesAsQDomDocument();
    void damagedFilesNeverCrash();
};

void TestALimitModelRobustness::deepFilesAreRefused_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::newRow("1,001") << nested(1001);
    QTest::newRow("100,000") << nested(100000);
    QTest::newRow("100,000, never closed") << QByteArray("<data>").repeated(100000);
    QTest::newRow("in a limit") << "<data><limit><level>" + nested(100000) + "</level></limit></data>";
}

void TestALimitModelRobustness::deepFilesAreRefused()
{
    QFETCH(QByteArray, content);
    LimitDir dir;
    QVERIFY(dir.load("<data><limit/></data>"));
    const QString name = dir.write(content);
    const profilefiles::ChildResult result = inChild([&] {
        const bool loaded = dir.model.loadFromFile(name);
        const bool isParseError = dir.loadErrors.size() == 1 &&
                                  dir.loadErrors.first().startsWith("Could not parse file '" + name + "': ") &&
                                  dir.loadErrors.first().contains(QLatin1String(" (line 1, col "));
        return !loaded && isParseError && dir.model.rowCount() == 0 ? 1 : 0;
    });
    QCOMPARE(result.status, 1);
    QVERIFY(result.milliseconds < 10000);
}

void TestALimitModelRobustness::filesAtTheDepthLimitAreRead()
{
    LimitDir dir;
    QVERIFY(dir.load(nested(1000)));
    QVERIFY(dir.load("<data><limit><level>5" + nested(997) + "</level></limit></data>"));
    QCOMPARE(rowTexts(dir.model, 0, dir.model.index(0, 0)).at(9), QStringLiteral("5"));
    QVERIFY(!dir.load(nested(1001)));
    QVERIFY2(dir.loadErrors.first().contains(": Elements are nested more than 1000 deep (line 1, col "),
             qPrintable(dir.loadErrors.first()));
}

void TestALimitModelRobustness::aDocumentTypeMayNameTheRoot()
{
    LimitDir dir;
    QVERIFY2(dir.load(wholeFile()), qPrintable(dir.loadErrors.join(QLatin1Char('\n'))));
    QCOMPARE(rowTexts(dir.model, 0).at(0), QStringLiteral("x5"));
    QCOMPARE(rowTexts(dir.model, 0).at(4), QStringLiteral("a<b>"));
    QCOMPARE(rowTexts(dir.model, 1, dir.model.index(0, 0)).at(9), QStringLiteral("5"));
}

void TestALimitModelRobustness::declarationsAreRefused_data()
{
    QTest::addColumn<QByteArray>("content");
    QByteArray laughs = "<!DOCTYPE d [<!ENTITY a0 'ha'>";
    for (int i = 1; i < 30; ++i) {
        const QByteArray above = "&a" + QByteArray::number(i - 1) + ";";
        laughs += "<!ENTITY a" + QByteArray::number(i) + " '" + above.repeated(10) + "'>";
    }
    laughs += "]><data><limit name='&a29;'>";
    QTest::newRow("in an attribute") << laughs + "</limit></data>";
    QTest::newRow("in a text") << laughs + "<description>&a29;</description></limit></data>";
    QTest::newRow("one long entity, often") << "<!DOCTYPE d [<!ENTITY a '" + QByteArray(4000, 'x') + "'>]><data>" +
                                                   QByteArray("<limit name='&a;&a;&a;&a;'/>").repeated(100000) +
                                                   "</data>";
    QTest::newRow("markup") << "<!DOCTYPE d [<!ENTITY a '<x/><x/>'>]><data>" + QByteArray("&a;").repeated(100000) +
                                   "</data>";
    QByteArray declarations;
    for (int i = 0; i < 100000; ++i)
        declarations += "<!ENTITY a" + QByteArray::number(i) + " 'x'>";
    QTest::newRow("very many") << "<!DOCTYPE d [" + declarations + "]><data/>";
    QTest::newRow("a parameter entity") << "<!DOCTYPE d [<!ENTITY % a '" + QByteArray(4000, ' ') + "'>" +
                                               QByteArray("%a;").repeated(100000) + "]><data/>";
    QTest::newRow("one short entity") << QByteArray("<!DOCTYPE d [<!ENTITY a '5'>]><data><limit name='&a;'/></data>");
    QTest::newRow("a deep content model")
        << "<!DOCTYPE d [<!ELEMENT d " + QByteArray(1000000, '(') + QByteArray(1000000, ')') + ">]><data/>";
    QTest::newRow("itself") << QByteArray("<!DOCTYPE d [<!ENTITY a '&a;'>]><data><limit name='&a;'/></data>");
}

void TestALimitModelRobustness::declarationsAreRefused()
{
    QFETCH(QByteArray, content);
    LimitDir dir;
    const QString name = dir.write(content);
    const profilefiles::ChildResult result = inChild([&] {
        const bool loaded = dir.model.loadFromFile(name);
        return !loaded && dir.loadErrors.size() == 1 &&
                       dir.loadErrors.first().startsWith(
                           "Could not parse file '" + name +
                           "': The internal subset of a document type is not read (line 1")
                   ? 1
                   : 0;
    });
    QCOMPARE(result.status, 1);
    QVERIFY(result.milliseconds < 5000);
}

void TestALimitModelRobustness::externalEntitiesAreNotRead()
{
    LimitDir dir;
    const QString secret = dir.write("secret", "secret.txt");
    dir.load("<!DOCTYPE d [<!ENTITY a SYSTEM 'file://" + secret.toUtf8() +
             "'>]><data><limit name='b'><description>c&a;</description></limit></data>");
    for (const QString &line : tableTexts(dir.model))
        QVERIFY(!line.contains(QLatin1String("secret")));
}

void TestALimitModelRobustness::aPipeIsRefused()
{
    LimitDir dir;
    QVERIFY(dir.load("<data><limit/></data>"));
    const QString name = dir.path("pipe");
    QVERIFY(::mkfifo(qPrintable(name), 0600) == 0);
    const profilefiles::ChildResult result = inChild([&] {
        alarm(20); // opening it would wait for a writer
        const bool loaded = dir.model.loadFromFile(name);
        return !loaded && dir.loadErrors.value(0).startsWith("Could not read file '" + name + "': ") ? 1 : 0;
    });
    QCOMPARE(result.status, 1);
}

void TestALimitModelRobustness::aFileWithoutPermissionIsReported()
{
    LimitDir dir;
    QVERIFY(dir.load("<data><limit/></data>"));
    const QString name = dir.write("<data/>", "secret.xml");
    QCOMPARE(chmod(qPrintable(dir.path()), 0755), 0);
    QCOMPARE(chmod(qPrintable(name), 0), 0);
    const profilefiles::ChildResult result = profilefiles::inUnprivilegedChild([&] {
        const bool loaded = dir.model.loadFromFile(name);
        const QString expected = QStringLiteral("Could not read file '%1': Permission denied").arg(name);
        return !loaded && dir.loadErrors == QStringList{expected} && dir.model.rowCount() == 1 ? 1 : 0;
    });
    QCOMPARE(result.status, 1);
}

void TestALimitModelRobustness::aHugeEmptyFileFailsAtOnce_data()
{
    QTest::addColumn<QByteArray>("start");
    QTest::newRow("zeros") << QByteArray();
    QTest::newRow("zeros behind a tag") << QByteArray("<data");
}

void TestALimitModelRobustness::aHugeEmptyFileFailsAtOnce()
{
    QFETCH(QByteArray, start);
    LimitDir dir;
    const QString name = dir.write(start);
    QVERIFY(QFile::resize(name, qint64(1) << 30));
    const profilefiles::ChildResult result = inChild([&] { return dir.model.loadFromFile(name) ? 1 : 0; });
    QCOMPARE(result.status, 0);
    QVERIFY(result.milliseconds < 2000);
    QVERIFY(result.megabytes < 500);
}

void TestALimitModelRobustness::aMillionAttributesAreReadFast()
{
    QByteArray content = "<data><limit name='a'";
    for (int i = 0; i < 1000000; ++i)
        content += " a" + QByteArray::number(i) + "=''";
    LimitDir dir;
    QElapsedTimer timer;
    timer.start();
    QVERIFY(dir.load(content + "/></data>"));
    QVERIFY2(timer.elapsed() < 30000, qPrintable(QString::number(timer.elapsed())));
    QCOMPARE(dir.model.rowCount(), 1);
}

void TestALimitModelRobustness::longTextsAreRead()
{
    LimitDir dir;
    const QByteArray text(5000000, 'x');
    QVERIFY(dir.load("<data><limit name='" + text + "'><description>" + text + "</description><level>" + text +
                     "</level></limit></data>"));
    QCOMPARE(rowTexts(dir.model, 0).at(0).size(), text.size());
    QCOMPARE(rowTexts(dir.model, 0).at(4).size(), text.size());
    QCOMPARE(rowTexts(dir.model, 0, dir.model.index(0, 0)).at(9), QStringLiteral("0"));
    QVERIFY(dir.saved().contains(text));
}

void TestALimitModelRobustness::manyLimitsAreReadAndSaved()
{
    constexpr int kLimits = kMany;
    QTemporaryDir directory;
    const QString name = directory.filePath("in.xml");
    writeBytes(name, "<data>" + QByteArray("<limit name='a'/>\n").repeated(kLimits) + "</data>");
    ALimitModel model; // without the tester, which looks at every row as it comes
    QVERIFY(model.loadFromFile(name));
    QCOMPARE(model.rowCount(), kLimits);
    QVERIFY(model.saveToFile(directory.filePath("out.xml")));
    const QByteArray saved = readFile(directory.filePath("out.xml"));
    QCOMPARE(saved.count("<limit name=\"a\" begin=\"0\" end=\"30000000000\" measureunit=\"8\" color=\"\"/>"), kLimits);
}

void TestALimitModelRobustness::manyPiecesAreReadAndSaved()
{
    constexpr int kPieces = kMany / 2; // of each sort
    QTemporaryDir directory;
    const QString name = directory.filePath("in.xml");
    writeBytes(name, "<data><limit>" +
                         QByteArray("<level frequency='7'>5</level>\n<section beginFrequency='5' endFrequency='6'/>")
                             .repeated(kPieces) +
                         "</limit></data>");
    ALimitModel model;
    QVERIFY(model.loadFromFile(name));
    QCOMPARE(model.rowCount(model.index(0, 0)), 2 * kPieces);
    QVERIFY(model.saveToFile(directory.filePath("out.xml")));
    const QByteArray saved = readFile(directory.filePath("out.xml"));
    QCOMPARE(saved.count("<section beginFrequency=\"5\""), kPieces);
    QCOMPARE(saved.count("<level frequency=\"7\""), kPieces);
}

// The bound on the parser changes nothing else: a file is read, or refused with the same words, as by QDomDocument.
void TestALimitModelRobustness::theParserDoesAsQDomDocument()
{
    const QByteArray whole = wholeFile();
    const QByteArray inserts = "<>/&;'\"=! a]-\xc3";
    std::mt19937 random(1);
    int accepted = 0;
    int refused = 0;
    QTemporaryDir directory;
    const QString name = directory.filePath("in.xml");
    ALimitModel model;
    QString error;
    connect(&model, &ALimitModel::loadError, this, [&error](const QString &text) { error = text; });
    for (int round = 0; round < 1500; ++round) {
        QByteArray content = whole;
        for (unsigned int i = random() % 4; i > 0; --i) {
            const int at = int(random() % unsigned(content.size()));
            if (random() % 2)
                content[at] = inserts.at(int(random() % unsigned(inserts.size())));
            else
                content.insert(at, inserts.at(int(random() % unsigned(inserts.size()))));
        }
        writeBytes(name, content);
        QDomDocument document;
        QString message;
        int line = 0;
        int column = 0;
        const bool isRead = document.setContent(content, false, &message, &line, &column);
        error.clear();
        const bool loaded = model.loadFromFile(name);
        if (error.contains("The internal subset")) // a damaged document type; see declarationsAreRefused
            continue;
        QCOMPARE(loaded, isRead);
        if (isRead) {
            ++accepted;
            int limits = 0;
            for (QDomElement limit = document.documentElement().firstChildElement("limit"); !limit.isNull();
                 limit = limit.nextSiblingElement("limit"))
                QCOMPARE(rowTexts(model, limits++).first(), limit.attribute("name"));
            QCOMPARE(model.rowCount(), limits);
        } else {
            ++refused;
            QCOMPARE(error, QStringLiteral("Could not parse file '%1': %2 (line %3, col %4)")
                                .arg(name, message)
                                .arg(line)
                                .arg(column));
        }
    }
    QVERIFY(accepted > 150);
    QVERIFY(refused > 150);
}

void TestALimitModelRobustness::damagedFilesNeverCrash()
{
    const QByteArray whole = wholeFile();
    QTemporaryDir directory;
    const QString name = directory.filePath("in.xml");
    const QString out = directory.filePath("out.xml");
    ALimitModel model;
    const QAbstractItemModelTester tester(&model);
    QSignalSpy errors(&model, &ALimitModel::loadError);
    int readable = 0;
    const auto tryToRead = [&](const QByteArray &content) {
        errors.clear();
        writeBytes(name, content);
        const bool loaded = model.loadFromFile(name);
        QCOMPARE(errors.count(), loaded ? 0 : 1);
        QCOMPARE(model.columnCount(), 11);
        readable += loaded ? 1 : 0;
        QVERIFY(model.saveToFile(out));
        const int rows = model.rowCount();
        QVERIFY(model.loadFromFile(out)); // what was written can be read
        QCOMPARE(model.rowCount(), rows);
    };
    testbasics::flipEveryBit(whole, tryToRead);
    QVERIFY(readable > 0);
    readable = 0;
    testbasics::cutAtEveryLength(whole, tryToRead);
    QCOMPARE(readable, 0);
}

QTEST_MAIN(TestALimitModelRobustness)
#include "tst_alimitmodel_robustness.moc"
