#include "geo/processor.h"

#include <QtTest/QtTest>

namespace {

QByteArray point(int second)
{
    return "<trkpt lat=\"48.5\" lon=\"11.25\"><time>" + at(second * 1000LL).toString(Qt::ISODate).toLatin1() +
           "</time></trkpt>\n";
}

QByteArray repeated(const char *text, int count)
{
    return QByteArray(text).repeated(count);
}

} // namespace

class TestAGeoDataProcessorGpxDamage : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void damageIsReportedAsQtDoes_data();
    void damageIsReportedAsQtDoes();
    void pointsBeforeTheDamageAreStored();
    void theErrorArgumentsMayBeNull();
    void aDeviceThatCantBeReadIsMalformed();
    void elementsNestedTooDeepAreRefused_data();
    void elementsNestedTooDeepAreRefused();
    void anInternalSubsetIsRefused_data();
    void anInternalSubsetIsRefused();
    void aPlainDocumentTypeIsRead();
    void anyEncodingIsRead_data();
    void anyEncodingIsRead();
    void nestedTracksWithoutPointsAreReadInOnePass();
    void manyPointsAreRead();
    void manyAttributesAreReadFast();
    void aFileCutAnywhereNeverCrashes();
    void aFlippedByteNeverCrashes();
};

void TestAGeoDataProcessorGpxDamage::damageIsReportedAsQtDoes_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::newRow("nothing") << QByteArray();
    QTest::newRow("blanks") << QByteArray("  \n ");
    QTest::newRow("no XML") << QByteArray("$GPRMC,1,2*33\r\n");
    QTest::newRow("cut short") << QByteArray("<gpx><trk>\n" + point(1) + "<trkpt");
    QTest::newRow("cut behind a point") << QByteArray("<gpx><trk>\n" + point(1));
    QTest::newRow("tags cross") << QByteArray("<gpx>\n<trk></gpx></trk>");
    QTest::newRow("a bare ampersand") << QByteArray("<gpx><name>a & b</name></gpx>");
    QTest::newRow("an attribute without quotes") << QByteArray("<gpx><trk name=x/></gpx>");
    QTest::newRow("two roots") << QByteArray("<gpx/><gpx/>");
    QTest::newRow("zero bytes") << QByteArray(1000, '\0');
}

void TestAGeoDataProcessorGpxDamage::damageIsReportedAsQtDoes()
{
    QFETCH(QByteArray, content);
    QString errorText;
    int line = 0;
    int column = 0;
    QBuffer buffer(&content);
    QVERIFY(!QDomDocument().setContent(&buffer, &errorText, &line, &column));
    Processor processor(nullptr);
    QVERIFY(!processor.loadGpx(content));
    QVERIFY(!errorText.isEmpty());
    QCOMPARE(processor.errorText, errorText);
    QCOMPARE(processor.line, line);
    QCOMPARE(processor.column, column);
}

void TestAGeoDataProcessorGpxDamage::pointsBeforeTheDamageAreStored()
{
    Processor processor(nullptr);
    QVERIFY(!processor.loadGpx("<gpx><trk>\n" + point(1) + point(2) + point(3) + "<trkpt </gpx>"));
    QCOMPARE(processor.line, 5);
    QCOMPARE(processor.waypointTimes(), (QList<QDateTime>{at(1000), at(2000), at(3000)}));
}

void TestAGeoDataProcessorGpxDamage::theErrorArgumentsMayBeNull()
{
    QByteArray content = "<gpx><trk>" + point(1);
    QBuffer buffer(&content);
    Processor processor(nullptr);
    QVERIFY(!processor.loadGpxDocument(&buffer, nullptr, nullptr, nullptr));
    QCOMPARE(processor.m_waypoints.size(), 1);
}

void TestAGeoDataProcessorGpxDamage::aDeviceThatCantBeReadIsMalformed()
{
    Processor processor(nullptr);
    QString errorText;
    QFile missing("/nonexistent/file");
    QVERIFY(!processor.loadGpxDocument(&missing, &errorText, nullptr, nullptr));
    QVERIFY(!errorText.isEmpty());
    errorText.clear();
    QVERIFY(!processor.loadGpxDocument(nullptr, &errorText, nullptr, nullptr));
    QVERIFY(!errorText.isEmpty());
    errorText.clear();
    QFile directory("/");
    QVERIFY(!processor.loadGpxDocument(&directory, &errorText, nullptr, nullptr));
    QVERIFY(!errorText.isEmpty());
}

void TestAGeoDataProcessorGpxDamage::elementsNestedTooDeepAreRefused_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<bool>("isRead");
    QTest::addColumn<int>("points"); // the innermost track is the master
    const QByteArray start = "<gpx>\n<trk>" + point(1);
    const auto nested = [&start](int depth) {
        return start + repeated("<a>", depth) + repeated("</a>", depth) + "</trk></gpx>";
    };
    QTest::newRow("as deep as can be") << nested(998) << true << 1;
    QTest::newRow("one deeper") << nested(999) << false << 1;
    QTest::newRow("100,000, closed") << nested(100000) << false << 1;
    QTest::newRow("100,000, open") << start + repeated("<trk>", 100000) << false << 0;
}

void TestAGeoDataProcessorGpxDamage::elementsNestedTooDeepAreRefused()
{
    QFETCH(QByteArray, content);
    QFETCH(bool, isRead);
    QFETCH(int, points);
    Processor processor(nullptr);
    QCOMPARE(processor.loadGpx(content), isRead);
    QCOMPARE(processor.errorText, isRead ? QString() : QString("Elements are nested more than 1000 deep"));
    QCOMPARE(processor.line, isRead ? 0 : 3);
    QVERIFY(isRead || processor.column > 998 * 3);
    QCOMPARE(processor.m_waypoints.size(), points);
}

void TestAGeoDataProcessorGpxDamage::anInternalSubsetIsRefused_data()
{
    QTest::addColumn<QByteArray>("declarations");
    QByteArray bomb = "<!ENTITY e0 'ha'>";
    for (int i = 1; i < 20; ++i) {
        const QByteArray inner = "&e" + QByteArray::number(i - 1) + ";";
        bomb += "<!ENTITY e" + QByteArray::number(i) + " '" + inner.repeated(10) + "'>";
    }
    QTest::newRow("entities in entities") << bomb;
    QTest::newRow("one long entity") << QByteArray("<!ENTITY e19 '" + QByteArray(4000, 'x') + "'>");
    QTest::newRow("an entity outside") << QByteArray("<!ENTITY e19 SYSTEM 'file:///etc/passwd'>");
    QTest::newRow("a parameter entity") << QByteArray("<!ENTITY % e19 'x'> %e19;");
    QTest::newRow("a deep content model")
        << QByteArray("<!ELEMENT gpx " + repeated("(", 300000) + "a" + repeated(")", 300000) + ">");
    QTest::newRow("an attribute's default") << QByteArray("<!ATTLIST gpx a CDATA 'x'>");
    QTest::newRow("nothing") << QByteArray();
}

void TestAGeoDataProcessorGpxDamage::anInternalSubsetIsRefused()
{
    QFETCH(QByteArray, declarations);
    for (const QByteArray &begin : {QByteArray("<!DOCTYPE gpx ["), QByteArray("<!DOCTYPE gpx SYSTEM '>' [")}) {
        Processor processor(nullptr);
        const CpuClock clock;
        QVERIFY(!processor.loadGpx(begin + declarations + "]><gpx><trk>" + repeated("&e19;", 10000) + "</trk></gpx>"));
        QCOMPARE(processor.errorText, QString("The internal subset of a document type is not read"));
        QCOMPARE(processor.line, 1);
        QVERIFY(processor.column > 10);
        QVERIFY(clock.seconds() < 5);
    }
}

void TestAGeoDataProcessorGpxDamage::aPlainDocumentTypeIsRead()
{
    Processor processor(nullptr);
    QVERIFY(
        processor.loadGpx("<!DOCTYPE gpx SYSTEM 'http://localhost/gpx[1].dtd'><gpx><trk>" + point(1) + "</trk></gpx>"));
    QVERIFY(processor.loadGpx("<!DOCTYPE gpx><gpx><trk>" + point(2) + "</trk></gpx>"));
    QCOMPARE(processor.m_waypoints.size(), 2);
}

void TestAGeoDataProcessorGpxDamage::anyEncodingIsRead_data()
{
    QTest::addColumn<QByteArray>("content");
    const auto text = [](const char *encoding) {
        return QStringLiteral("<?xml version='1.0' encoding='%1'?>\n<gpx><trk><trkpt lat='48.5' lon='11.25'>"
                              "<name>M\u00fcnchen</name></trkpt></trk></gpx>")
            .arg(encoding);
    };
    const auto utf16 = [](const QString &content, bool swapped) {
        QByteArray bytes(reinterpret_cast<const char *>(content.utf16()), content.size() * 2);
        for (int i = 0; swapped && i < bytes.size(); i += 2)
            std::swap(bytes.data()[i], bytes.data()[i + 1]);
        return bytes;
    };
    const QString marked = QChar(0xfeff) + text("UTF-16");
    QTest::newRow("UTF-8") << text("UTF-8").toUtf8();
    QTest::newRow("UTF-8 with a mark") << "\xef\xbb\xbf" + text("UTF-8").toUtf8();
    QTest::newRow("UTF-16 without a mark, little end first") << utf16(text("UTF-16"), Q_BYTE_ORDER == Q_BIG_ENDIAN);
    QTest::newRow("UTF-16, little end first") << utf16(marked, Q_BYTE_ORDER == Q_BIG_ENDIAN);
    QTest::newRow("UTF-16, big end first") << utf16(marked, Q_BYTE_ORDER == Q_LITTLE_ENDIAN);
    QTest::newRow("Latin-1") << text("ISO-8859-1").toLatin1();
}

void TestAGeoDataProcessorGpxDamage::anyEncodingIsRead()
{
    QFETCH(QByteArray, content);
    Processor processor(nullptr);
    QVERIFY2(processor.loadGpx(content), qPrintable(processor.errorText));
    QCOMPARE(processor.m_waypoints.size(), 1);
    QCOMPARE(processor.m_waypoints.first()->recordName, QStringLiteral("M\u00fcnchen"));
    QCOMPARE(processor.m_waypoints.first()->latitude, 48.5F);
}

void TestAGeoDataProcessorGpxDamage::nestedTracksWithoutPointsAreReadInOnePass()
{
    Processor processor(nullptr);
    const CpuClock clock;
    QVERIFY(processor.loadGpx("<gpx>" + repeated("<trk>", 990) + repeated("<a/>", 200000) + repeated("</trk>", 990) +
                              "</gpx>"));
    QVERIFY(!processor.hasGeoData());
    QVERIFY2(clock.seconds() < 20, qPrintable(QString::number(clock.seconds())));
}

void TestAGeoDataProcessorGpxDamage::manyPointsAreRead()
{
    constexpr int kPoints = 200000;
    Processor processor(nullptr);
    QVERIFY(processor.loadGpx("<gpx><trk>" + repeated("<trkpt lat='1' lon='2'/>", kPoints) + "</trk></gpx>"));
    QCOMPARE(processor.m_waypoints.size(), kPoints);
    QCOMPARE(processor.waypointTimes().size(), 1);
}

void TestAGeoDataProcessorGpxDamage::manyAttributesAreReadFast()
{
    QByteArray attributes;
    for (int i = 0; i < 100000; ++i)
        attributes += " a" + QByteArray::number(i) + "='1'";
    Processor processor(nullptr);
    const CpuClock clock;
    QVERIFY(processor.loadGpx("<gpx><trk" + attributes + ">" + point(1) + "</trk></gpx>"));
    QVERIFY2(clock.seconds() < 20, qPrintable(QString::number(clock.seconds())));
}

void TestAGeoDataProcessorGpxDamage::aFileCutAnywhereNeverCrashes()
{
    const QByteArray whole = "<?xml version='1.0'?><!DOCTYPE gpx><gpx><trk name='a'><!-- c -->" + point(1) +
                             "<![CDATA[x]]>" + point(2) + "&amp;</trk></gpx>";
    int read = 0;
    for (int size = 0; size <= whole.size(); ++size) {
        Processor processor(nullptr);
        const bool isRead = processor.loadGpx(whole.left(size));
        QCOMPARE(isRead, processor.errorText.isEmpty());
        read += isRead ? 1 : 0;
        QVERIFY(processor.m_waypoints.size() <= 2);
    }
    QCOMPARE(read, 1);
}

void TestAGeoDataProcessorGpxDamage::aFlippedByteNeverCrashes()
{
    const QByteArray whole = "<?xml version='1.0'?><gpx><trk name='a'>" + point(1) + "<![CDATA[x]]></trk></gpx>";
    for (int i = 0; i < whole.size(); ++i) {
        for (int bit = 0; bit < 8; ++bit) {
            QByteArray content = whole;
            content[i] = static_cast<char>(content.at(i) ^ (1 << bit));
            Processor processor(nullptr);
            const bool isRead = processor.loadGpx(content);
            QVERIFY(!isRead || processor.errorText.isEmpty());
            QVERIFY(processor.m_waypoints.size() <= 1);
        }
    }
}

QTEST_GUILESS_MAIN(TestAGeoDataProcessorGpxDamage)
#include "tst_ageodataprocessor_gpx_damage.moc"
