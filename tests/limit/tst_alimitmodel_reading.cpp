#include "limitfiles.h"

#include "core/alimit.h"
#include "core/documentedfiles.h"

#include <QtCore/QTextCodec>
#include <QtXml/QDomDocument>

using namespace limitfiles;

class TestALimitModelReading : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyAttributeIsRead();
    void theDocumentedFileIsRead();
    void absentAttributesHaveDefaults();
    void emptyAttributesAreReadAsTheyStand();
    void badNumbersAreZero_data();
    void badNumbersAreZero();
    void edgesHaveSixDigits_data();
    void edgesHaveSixDigits();
    void theEndValueFollowsTheRoundedBeginValue();
    void valuesHaveSixDigits();
    void theHertzOfTheFileStandInTheUserRole();
    void rowsHaveTheirItems();
    void theDescriptionElementComesFirst_data();
    void theDescriptionElementComesFirst();
    void sectionsComeBeforeLevels();
    void onlyDirectChildrenCount();
    void anyRootIsTaken_data();
    void anyRootIsTaken();
    void namespacesAreNotProcessed();
    void loadingReplacesAllRows();
    void loadingKeepsTheTitles();
    void aMissingFileLeavesTheModel();
    void aFileThatCanNotBeOpenedLeavesTheModel();
    void damageEmptiesTheModel_data();
    void damageEmptiesTheModel();
    void aFileNameWithPercentSignsStaysWhole();
    void encodingsAreReadAsDeclared_data();
    void encodingsAreReadAsDeclared();
    void modelAndLimitAgree();
};

void TestALimitModelReading::everyAttributeIsRead()
{
    LimitDir dir;
    QVERIFY(dir.load("<data><limit name='M\u00e4sk' begin='30000000' end='1000000000' measureunit='3' color='#00ff00'"
                     " description='short'>"
                     "<section beginFrequency='30000000' endFrequency='2.3e8' beginValue='40.5' endValue='-47'"
                     " interpolation='2'/>"
                     "<level frequency='500000000' interpolation='1'> 37.25 </level></limit></data>"));
    QCOMPARE(tableTexts(dir.model), (QStringList{QStringLiteral("M\u00e4sk|30|1000|3|short|#00ff00|||-|-|-"),
                                                 QStringLiteral("       30.0000000|    230.0000000|40.5|-47|2"),
                                                 QStringLiteral("  -|    500.0000000|-|37.25|1")}));
    QCOMPARE(dir.loadErrors, QStringList());
}

void TestALimitModelReading::theDocumentedFileIsRead()
{
    const QList<QByteArray> files = documentedFiles("Limit files");
    QVERIFY(!files.isEmpty());
    LimitDir dir;
    QVERIFY(dir.load(files.first()));
    QCOMPARE(tableTexts(dir.model),
             (QStringList{QStringLiteral("Radiated, class B|30|1000|8|Quasi-peak at 10 m|#cc0000|||-|-|-"),
                          QStringLiteral("       30.0000000|    230.0000000|30|30|1"),
                          QStringLiteral("      230.0000000|   1000.0000000|37|37|1"),
                          QStringLiteral("  -|   1000.0000000|-|40|0")}));
}

void TestALimitModelReading::absentAttributesHaveDefaults()
{
    LimitDir dir;
    QVERIFY(dir.load("<data><limit><section/><level/></limit></data>"));
    QCOMPARE(tableTexts(dir.model), (QStringList{QStringLiteral("|0|30000|8|||||-|-|-"),
                                                 QStringLiteral("        0.0000000|      0.0000000|0|0|1"),
                                                 QStringLiteral("  -|      0.0000000|-|0|0")}));
}

// A default is for an absent attribute.
void TestALimitModelReading::emptyAttributesAreReadAsTheyStand()
{
    LimitDir dir;
    QVERIFY(dir.load("<data><limit name='' begin='' end='' measureunit='' description='' color=''>"
                     "<section beginFrequency='' endFrequency='' beginValue='5' endValue='' interpolation=''/>"
                     "<level frequency='' interpolation=''/></limit></data>"));
    QCOMPARE(tableTexts(dir.model),
             (QStringList{QStringLiteral("|0|0||||||-|-|-"), QStringLiteral("        0.0000000|      0.0000000|5|0|0"),
                          QStringLiteral("  -|      0.0000000|-|0|0")}));
}

void TestALimitModelReading::badNumbersAreZero_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QString>("whole");   // as begin of a limit, in MHz
    QTest::addColumn<QString>("decimal"); // as begin of a section
    QTest::addColumn<QString>("value");
    QTest::addColumn<QString>("interpolation");
    const auto row = [](const char *text, const char *whole, const char *decimal, const char *value,
                        const char *interpolation) {
        QTest::newRow(text) << QByteArray(text) << QString::fromLatin1(whole) << QString::fromLatin1(decimal)
                            << QString::fromLatin1(value) << QString::fromLatin1(interpolation);
    };
    row("2000000", "2", "2.0000000", "2e+06", "2000000");
    row(" 2000000 ", "2", "2.0000000", "2e+06", "2000000");
    row("2000000.5", "0", "2.0000005", "2e+06", "0");
    row("2e6", "0", "2.0000000", "2e+06", "0");
    row("-2000000", "0", "-2.0000000", "-2e+06", "0");
    row("two", "0", "0.0000000", "0", "0");
    row("1,5", "0", "0.0000000", "0", "0");
    row("0x10", "0", "0.0000000", "0", "0");
    row("2 MHz", "0", "0.0000000", "0", "0");
    row("nan", "0", "0.0000000", "nan", "0");
    row("4294967295", "4294.97", "4294.9672950", "4.29497e+09", "4294967295");
    row("4294967296", "4294.97", "4294.9672960", "4.29497e+09", "0");
    row("18446744073709551616", "0", "9223372036854.7758070", "1.84467e+19", "0");
}

void TestALimitModelReading::badNumbersAreZero()
{
    QFETCH(QByteArray, text);
    LimitDir dir;
    QVERIFY(dir.load("<data><limit begin='" + text + "' end='" + text + "'><section beginFrequency='" + text +
                     "' endFrequency='" + text + "' beginValue='" + text + "' endValue='" + text + "' interpolation='" +
                     text + "'/><level frequency='" + text + "' interpolation='" + text + "'>" + text +
                     "</level></limit></data>"));
    const QStringList limit = rowTexts(dir.model, 0);
    QTEST(limit.at(1), "whole");
    QTEST(limit.at(2), "whole");
    const QStringList section = rowTexts(dir.model, 0, dir.model.index(0, 0));
    QTEST(section.at(6).trimmed(), "decimal");
    QTEST(section.at(7).trimmed(), "decimal");
    QTEST(section.at(8), "value");
    QTEST(section.at(9), "value");
    QTEST(section.at(10), "interpolation");
    const QStringList level = rowTexts(dir.model, 1, dir.model.index(0, 0));
    QFETCH(QString, whole);
    QCOMPARE(level.at(7).toDouble() == 0.0, whole == QLatin1String("0"));
    QTEST(level.at(9), "value");
    QTEST(level.at(10), "interpolation");
}

void TestALimitModelReading::edgesHaveSixDigits_data()
{
    QTest::addColumn<QByteArray>("hertz");
    QTest::addColumn<QString>("text");
    QTest::newRow("0") << QByteArray("0") << "0";
    QTest::newRow("1 Hz") << QByteArray("1") << "1e-06";
    QTest::newRow("9 kHz") << QByteArray("9000") << "0.009";
    QTest::newRow("87.5 MHz") << QByteArray("87500000") << "87.5";
    QTest::newRow("seven digits") << QByteArray("1234567890") << "1234.57";
    QTest::newRow("30 GHz") << QByteArray("30000000000") << "30000";
    QTest::newRow("1 THz") << QByteArray("1000000000000") << "1e+06";
    QTest::newRow("largest") << QByteArray("18446744073709551615") << "9.22337e+12";
}

void TestALimitModelReading::edgesHaveSixDigits()
{
    QFETCH(QByteArray, hertz);
    LimitDir dir;
    QVERIFY(dir.load("<data><limit begin='" + hertz + "' end='" + hertz + "'/></data>"));
    QTEST(rowTexts(dir.model, 0).at(1), "text");
    QTEST(rowTexts(dir.model, 0).at(2), "text");
}

void TestALimitModelReading::theEndValueFollowsTheRoundedBeginValue()
{
    LimitDir dir;
    QVERIFY(dir.load("<data><limit><section beginValue='1.23456789'/><section endValue='7'/></limit></data>"));
    QCOMPARE(rowTexts(dir.model, 0, dir.model.index(0, 0)).mid(8, 2), (QStringList{"1.23457", "1.23457"}));
    QCOMPARE(rowTexts(dir.model, 1, dir.model.index(0, 0)).mid(8, 2), (QStringList{"0", "7"}));
}

void TestALimitModelReading::valuesHaveSixDigits()
{
    LimitDir dir;
    QVERIFY(dir.load("<data><limit><section beginValue='-123.456789' endValue='1234567.89'/>"
                     "<level>0.000012345678</level></limit></data>"));
    QCOMPARE(rowTexts(dir.model, 0, dir.model.index(0, 0)).mid(8, 2), (QStringList{"-123.457", "1.23457e+06"}));
    QCOMPARE(rowTexts(dir.model, 1, dir.model.index(0, 0)).at(9), QStringLiteral("1.23457e-05"));
}

void TestALimitModelReading::theHertzOfTheFileStandInTheUserRole()
{
    LimitDir dir;
    QVERIFY(dir.load("<data><limit begin='1' end='2'><section beginFrequency='8333.25' endFrequency='9000'/>"
                     "<level frequency='30000000001'/></limit></data>"));
    const QModelIndex limit = dir.model.index(0, 0);
    const int role = Qt::UserRole + 1;
    const auto data = [&](int row, int column) { return dir.model.index(row, column, limit).data(role); };
    QCOMPARE(data(0, 6).type(), QVariant::Double);
    QCOMPARE(data(0, 6).toDouble(), 8333.25);
    QVERIFY(!data(0, 7).isValid());
    QCOMPARE(data(1, 7).type(), QVariant::ULongLong);
    QCOMPARE(data(1, 7).toULongLong(), 30000000001ull);
    for (int column = 0; column < dir.model.columnCount(); ++column)
        QVERIFY(!dir.model.index(0, column).data(role).isValid());
}

void TestALimitModelReading::rowsHaveTheirItems()
{
    LimitDir dir;
    QVERIFY(dir.load("<data><limit><section/><level/></limit><limit/></data>"));
    const QStandardItem *root = dir.model.invisibleRootItem();
    for (int column = 0; column < 11; ++column) {
        QCOMPARE(root->child(0, column) != nullptr, column < 8);
        QCOMPARE(root->child(0)->child(0, column) != nullptr, column >= 6);
        QCOMPARE(root->child(0)->child(1, column) != nullptr, column >= 6 && column != 6 && column != 8);
    }
    QVERIFY(!root->child(0, 6)->data(Qt::DisplayRole).isValid());
    QVERIFY(!root->child(0, 7)->data(Qt::DisplayRole).isValid());
    QVERIFY(!root->child(1)->hasChildren());
    for (int column = 1; column < 8; ++column)
        QVERIFY(!root->child(0, column)->hasChildren());
}

void TestALimitModelReading::theDescriptionElementComesFirst_data()
{
    QTest::addColumn<QByteArray>("limit");
    QTest::addColumn<QString>("text");
    QTest::newRow("attribute") << QByteArray("<limit description='a'/>") << "a";
    QTest::newRow("element") << QByteArray("<limit><description>b</description></limit>") << "b";
    QTest::newRow("both") << QByteArray("<limit description='a'><description>b</description></limit>") << "b";
    QTest::newRow("empty element") << QByteArray("<limit description='a'><description/></limit>") << "";
    QTest::newRow("behind the curve") << QByteArray(
                                             "<limit description='a'><level/><description>b</description></limit>")
                                      << "b";
    QTest::newRow("two") << QByteArray("<limit><description>b</description><description>c</description></limit>")
                         << "b";
    QTest::newRow("markup") << QByteArray(
                                   "<limit><description>a <b>bold</b> <![CDATA[<c>]]> &amp;</description></limit>")
                            << "a bold<c> &";
    QTest::newRow("outside") << QByteArray("<description>x</description><limit description='a'/>") << "a";
    QTest::newRow("deeper") << QByteArray("<limit description='a'><level><description>5</description></level></limit>")
                            << "a";
}

void TestALimitModelReading::theDescriptionElementComesFirst()
{
    QFETCH(QByteArray, limit);
    LimitDir dir;
    QVERIFY(dir.load("<data>" + limit + "</data>"));
    QCOMPARE(dir.model.rowCount(), 1);
    QTEST(rowTexts(dir.model, 0).at(4), "text");
}

void TestALimitModelReading::sectionsComeBeforeLevels()
{
    LimitDir dir;
    QVERIFY(dir.load("<data><limit><level>1</level><section beginValue='2'/><other/><level>3</level>"
                     "<section beginValue='4'/><description>x</description></limit></data>"));
    QStringList values;
    const QModelIndex limit = dir.model.index(0, 0);
    for (int row = 0; row < dir.model.rowCount(limit); ++row)
        values << rowTexts(dir.model, row, limit).mid(8, 2).join(QLatin1Char('/'));
    QCOMPARE(values, (QStringList{"2/2", "4/4", "-/1", "-/3"}));
}

void TestALimitModelReading::onlyDirectChildrenCount()
{
    LimitDir dir;
    QVERIFY(dir.load("<data><group><limit name='a'/></group><limit name='b'><group><section/><level/></group>"
                     "<limit name='c'><level/></limit></limit><Limit name='d'/></data>"));
    QCOMPARE(dir.model.rowCount(), 1);
    QCOMPARE(rowTexts(dir.model, 0).first(), QStringLiteral("b"));
    QCOMPARE(dir.model.rowCount(dir.model.index(0, 0)), 0);
}

void TestALimitModelReading::anyRootIsTaken_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<int>("rows");
    QTest::newRow("data") << QByteArray("<data/>") << 0;
    QTest::newRow("other") << QByteArray("<anything><x/>text</anything>") << 0;
    QTest::newRow("other with limits") << QByteArray("<anything><limit/>text<limit/></anything>") << 2;
    QTest::newRow("limit") << QByteArray("<limit/>") << 0;
    QTest::newRow("limit in limit") << QByteArray("<limit><limit name='a'/></limit>") << 1;
}

void TestALimitModelReading::anyRootIsTaken()
{
    QFETCH(QByteArray, content);
    LimitDir dir;
    QVERIFY(dir.load("<data><limit name='old'/></data>"));
    QVERIFY(dir.load(content));
    QTEST(dir.model.rowCount(), "rows");
    QCOMPARE(dir.loadErrors, QStringList());
}

void TestALimitModelReading::namespacesAreNotProcessed()
{
    LimitDir dir;
    QVERIFY(dir.load("<data xmlns='urn:x' xmlns:y='urn:y'><limit name='a'/><y:limit name='b'/></data>"));
    QCOMPARE(dir.model.rowCount(), 1);
    QCOMPARE(rowTexts(dir.model, 0).first(), QStringLiteral("a"));
    QVERIFY(dir.load("<data><undeclared:x/><limit undeclared:name='b' name='c'/></data>"));
    QCOMPARE(rowTexts(dir.model, 0).first(), QStringLiteral("c"));
}

void TestALimitModelReading::loadingReplacesAllRows()
{
    LimitDir dir;
    QVERIFY(dir.load("<data><limit name='a'><level/></limit><limit name='b'/></data>"));
    QVERIFY(dir.load("<data><limit name='c'/></data>"));
    QCOMPARE(dir.model.rowCount(), 1);
    QCOMPARE(rowTexts(dir.model, 0).first(), QStringLiteral("c"));
}

void TestALimitModelReading::loadingKeepsTheTitles()
{
    LimitDir dir;
    const QStringList titles = headerTexts(dir.model);
    QVERIFY(dir.load("<data><limit/></data>"));
    QCOMPARE(headerTexts(dir.model), titles);
    QVERIFY(!dir.load("no XML"));
    QCOMPARE(headerTexts(dir.model), titles);
    QCOMPARE(dir.model.columnCount(), 11);
    // Columns and titles of someone's own are gone after a load.
    dir.model.setColumnCount(20);
    dir.model.setHorizontalHeaderItem(0, new QStandardItem(QStringLiteral("own")));
    QVERIFY(dir.load("<data/>"));
    QCOMPARE(headerTexts(dir.model), titles);
}

void TestALimitModelReading::aMissingFileLeavesTheModel()
{
    LimitDir dir;
    QVERIFY(dir.load("<data><limit name='a'/></data>"));
    QSignalSpy resets(&dir.model, &QAbstractItemModel::modelReset);
    QVERIFY(!dir.model.loadFromFile(dir.path("missing")));
    QVERIFY(!dir.model.loadFromFile(QString()));
    QCOMPARE(dir.loadErrors, (QStringList{QStringLiteral("File '%1' does not exist").arg(dir.path("missing")),
                                          QStringLiteral("File '' does not exist")}));
    QCOMPARE(dir.model.rowCount(), 1);
    QCOMPARE(resets.count(), 0);
    QCOMPARE(dir.saveErrors, QStringList());
}

void TestALimitModelReading::aFileThatCanNotBeOpenedLeavesTheModel()
{
    LimitDir dir;
    QVERIFY(dir.load("<data><limit name='a'/></data>"));
    QFile directory(dir.path());
    QVERIFY(!directory.open(QIODevice::ReadOnly));
    QVERIFY(!dir.model.loadFromFile(dir.path()));
    QCOMPARE(dir.loadErrors,
             QStringList{QStringLiteral("Could not read file '%1': %2").arg(dir.path(), directory.errorString())});
    QCOMPARE(dir.model.rowCount(), 1);
}

void TestALimitModelReading::damageEmptiesTheModel_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("text") << QByteArray("Hello");
    QTest::newRow("cut") << QByteArray("<data>\n<limit name='a'/>\n  <limit name=");
    QTest::newRow("tags crossed") << QByteArray("<data><limit></data></limit>");
    QTest::newRow("two roots") << QByteArray("<data/>\n<data/>");
    QTest::newRow("ampersand") << QByteArray("<data><limit name='a & b'/></data>");
    QTest::newRow("zeros") << QByteArray(3000, '\0');
}

// The message is that of QDomDocument, word for word.
void TestALimitModelReading::damageEmptiesTheModel()
{
    QFETCH(QByteArray, content);
    QString message;
    int line = 0;
    int column = 0;
    QVERIFY(!QDomDocument().setContent(content, false, &message, &line, &column));
    QVERIFY(!message.isEmpty());

    LimitDir dir;
    QVERIFY(dir.load("<data><limit name='a'><level/></limit></data>"));
    QVERIFY(!dir.load(content));
    QCOMPARE(dir.loadErrors, QStringList{QStringLiteral("Could not parse file '%1': %2 (line %3, col %4)")
                                             .arg(dir.path("in.xml"), message)
                                             .arg(line)
                                             .arg(column)});
    QCOMPARE(dir.model.rowCount(), 0);
}

void TestALimitModelReading::aFileNameWithPercentSignsStaysWhole()
{
    LimitDir dir;
    const QString name = dir.path("%2 %1 %3 %4.xml");
    QVERIFY(!dir.model.loadFromFile(name));
    writeBytes(name, "<data>");
    QVERIFY(!dir.model.loadFromFile(name));
    QVERIFY(QFile::remove(name));
    QVERIFY(QDir().mkdir(name));
    QVERIFY(!dir.model.loadFromFile(name));
    QCOMPARE(dir.loadErrors.size(), 3);
    QCOMPARE(dir.loadErrors.at(0), "File '" + name + "' does not exist");
    QVERIFY(dir.loadErrors.at(1).startsWith("Could not parse file '" + name + "': "));
    QVERIFY(dir.loadErrors.at(1).contains(" (line 1, col "));
    QVERIFY(dir.loadErrors.at(2).startsWith("Could not read file '" + name + "': "));
}

void TestALimitModelReading::encodingsAreReadAsDeclared_data()
{
    QTest::addColumn<QByteArray>("content");
    const QString text = QStringLiteral("<data><limit name='\u20ac \u00e4'/></data>");
    QTest::newRow("UTF-8") << text.toUtf8();
    QTest::newRow("UTF-8 with mark") << "\xef\xbb\xbf" + text.toUtf8();
    QTest::newRow("UTF-16") << QTextCodec::codecForName("UTF-16")->fromUnicode(text);
    QTest::newRow("ISO 8859-15") << QByteArray(
        "<?xml version='1.0' encoding='ISO-8859-15'?><data><limit name='\xa4 \xe4'/></data>");
    QTest::newRow("beyond the first kilobyte") << "<data><!--" + QByteArray(1000, '-').replace('-', "\xe2\x82\xac") +
                                                      "--><limit name='\u20ac \u00e4'/></data>";
}

void TestALimitModelReading::encodingsAreReadAsDeclared()
{
    QFETCH(QByteArray, content);
    LimitDir dir;
    QVERIFY2(dir.load(content), qPrintable(dir.loadErrors.join(QLatin1Char('\n'))));
    QCOMPARE(rowTexts(dir.model, 0).first(), QStringLiteral("\u20ac \u00e4"));
}

// Both readers of limit files see the same names, units and pieces.
void TestALimitModelReading::modelAndLimitAgree()
{
    LimitDir dir;
    const QString name =
        dir.write("<data><limit name='a' begin='9000' end='30000000' measureunit='4' color='red'>"
                  "<level frequency='200000' interpolation='2'>5.5</level>"
                  "<section beginFrequency='9000' endFrequency='150000.5' beginValue='110' interpolation='1'/>"
                  "<description>text</description></limit><limit name='b'/></data>");
    QVERIFY(dir.model.loadFromFile(name));
    QList<const ALimit *> limits;
    QVERIFY(ALimit::readAll(name, limits, nullptr));
    QCOMPARE(dir.model.rowCount(), limits.size());
    for (int row = 0; row < limits.size(); ++row) {
        const ALimit &limit = *limits.at(row);
        const QStringList texts = rowTexts(dir.model, row);
        QCOMPARE(texts.at(0), limit.name());
        QCOMPARE(texts.at(1).toDouble(), limit.begin().floatValue(AFrequency::MHz));
        QCOMPARE(texts.at(2).toDouble(), limit.end().floatValue(AFrequency::MHz));
        QCOMPARE(texts.at(3), limit.unit());
        QCOMPARE(texts.at(4), limit.description());
        QCOMPARE(texts.at(5), limit.color());
        QCOMPARE(dir.model.rowCount(dir.model.index(row, 0)), limit.sections().size() + limit.levels().size());
    }
    const QModelIndex parent = dir.model.index(0, 0);
    const ALimit::Section &section = limits.first()->sections().first();
    const ALimit::Level &level = limits.first()->levels().first();
    QCOMPARE(rowTexts(dir.model, 0, parent).at(7).toDouble(), section.end.floatValue(AFrequency::MHz));
    QCOMPARE(rowTexts(dir.model, 0, parent).at(9).toDouble(), section.endValue);
    QCOMPARE(rowTexts(dir.model, 1, parent).at(7).toDouble(), level.frequency.floatValue(AFrequency::MHz));
    QCOMPARE(rowTexts(dir.model, 1, parent).at(10).toUInt(), level.interpolation);
    qDeleteAll(limits);
}

QTEST_MAIN(TestALimitModelReading)
#include "tst_alimitmodel_reading.moc"
