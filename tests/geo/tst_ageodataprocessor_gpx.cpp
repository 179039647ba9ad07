#include "core/documentedfiles.h"
#include "geo/processor.h"

#include <QtTest/QtTest>

namespace {

QByteArray trackPoint(const QByteArray &time, const QByteArray &more = QByteArray())
{
    return "<trkpt lat=\"48.5\" lon=\"-11.25\"><time>" + time + "</time>" + more + "</trkpt>";
}

QByteArray gpx(const QByteArray &content)
{
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<gpx version=\"1.1\">\n" + content + "\n</gpx>\n";
}

QStringList recordNames(const Processor &processor)
{
    QStringList names;
    for (const AGeoData *record : processor.m_waypoints)
        names.append(record->recordName);
    return names;
}

} // namespace

class TestAGeoDataProcessorGpx : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theDocumentedFileIsRead();
    void everyPartOfAPointIsRead();
    void badAndMissingNumbersAreZero_data();
    void badAndMissingNumbersAreZero();
    void everyTimeIsDeclaredUtc_data();
    void everyTimeIsDeclaredUtc();
    void aDescriptionIsTakenAsItStands();
    void aPointWithoutOneGetsABalloon();
    void pointsAreFoundAtAnyDepth();
    void theFirstMatchBelowAPointCounts();
    void noSignalIsEmitted();
    void theMasterTrack_data();
    void theMasterTrack();
    void onlyTheMasterTrackIsRead();
    void nestedTracksShareTheirPoints();
    void withoutATrackTheErrorStaysUntouched_data();
    void withoutATrackTheErrorStaysUntouched();
    void aMasterTrackWithoutPointsIsEnough();
    void loadingTwiceDoublesTheRecords();
    void anotherDocumentReplacesTheFirst();
    void theDocumentIsOnlyRead();
    void dataOfAnElement_data();
    void dataOfAnElement();
    void dataOfNoElementIsEmpty();
};

void TestAGeoDataProcessorGpx::theDocumentedFileIsRead()
{
    const QList<QByteArray> files = documentedFiles("GPX files");
    QCOMPARE(files.size(), 1);
    Processor processor(nullptr);
    QVERIFY2(processor.loadGpx(files.first()), qPrintable(processor.errorText));
    QCOMPARE(recordNames(processor), (QStringList{"Start", ""}));
    const AGeoData &start = *processor.m_waypoints.first();
    QCOMPARE(start.latitude, 48.137F);
    QCOMPARE(start.longitude, 11.575F);
    QCOMPARE(start.altitude, 519.5F);
    QCOMPARE(start.recordTime, QDateTime(QDate(2024, 5, 17), QTime(12, 30), Qt::UTC));
}

void TestAGeoDataProcessorGpx::everyPartOfAPointIsRead()
{
    Processor processor(nullptr);
    QVERIFY(processor.loadGpx(gpx("<trk><trkseg><trkpt lat=\"48.123456789\" lon=\"-11.5e0\"><ele>519.25</ele>"
                                  "<name>B\xc3\xa4r &amp; Co</name><desc>&lt;b&gt;x&lt;/b&gt;</desc>"
                                  "<time>2024-05-17T12:30:01.250Z</time></trkpt></trkseg></trk>")));
    QCOMPARE(processor.m_waypoints.size(), 1);
    const AGeoData &record = *processor.m_waypoints.first();
    QCOMPARE(record.latitude, static_cast<float>(48.123456789));
    QCOMPARE(record.longitude, -11.5F);
    QCOMPARE(record.altitude, 519.25F);
    QCOMPARE(record.recordName, QString::fromUtf8("B\xc3\xa4r & Co"));
    QCOMPARE(record.description, QString("<b>x</b>"));
    QCOMPARE(record.recordTime, at(1250));
    QCOMPARE(processor.m_waypoints.firstKey(), at(1250));
    QCOMPARE(record.airPressure, 0.0F);
    QCOMPARE(record.source, 0);
}

void TestAGeoDataProcessorGpx::badAndMissingNumbersAreZero_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::newRow("missing") << QByteArray("<trkpt/>");
    QTest::newRow("empty") << QByteArray("<trkpt lat='' lon=''><ele/></trkpt>");
    QTest::newRow("words") << QByteArray("<trkpt lat='north' lon='1 2'><ele>high</ele></trkpt>");
    QTest::newRow("commas") << QByteArray("<trkpt lat='48,5' lon='11,5'><ele>5,5</ele></trkpt>");
    QTest::newRow("elements in place of attributes") << QByteArray("<trkpt><lat>1</lat><lon>2</lon></trkpt>");
}

void TestAGeoDataProcessorGpx::badAndMissingNumbersAreZero()
{
    QFETCH(QByteArray, content);
    Processor processor(nullptr);
    QVERIFY(processor.loadGpx(gpx("<trk>" + content + "</trk>")));
    const AGeoData &record = *processor.m_waypoints.first();
    QCOMPARE(record.latitude, 0.0F);
    QCOMPARE(record.longitude, 0.0F);
    QCOMPARE(record.altitude, 0.0F);
    QVERIFY(!record.recordTime.isValid());
    QVERIFY(!processor.m_waypoints.firstKey().isValid());
}

void TestAGeoDataProcessorGpx::everyTimeIsDeclaredUtc_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QTime>("time"); // invalid: no time
    QTest::newRow("UTC") << QByteArray("2024-05-17T12:30:00Z") << QTime(12, 30);
    QTest::newRow("without a zone") << QByteArray("2024-05-17T12:30:00") << QTime(12, 30);
    QTest::newRow("an offset keeps the clock reading") << QByteArray("2024-05-17T12:30:00+02:00") << QTime(12, 30);
    QTest::newRow("a negative offset") << QByteArray("2024-05-17T12:30:00-05:30") << QTime(12, 30);
    QTest::newRow("fractions") << QByteArray("2024-05-17T12:30:00.5Z") << QTime(12, 30, 0, 500);
    QTest::newRow("Qt's text form") << QByteArray("Fri May 17 12:30:00 2024") << QTime();
    QTest::newRow("none") << QByteArray() << QTime();
    QTest::newRow("nonsense") << QByteArray("yesterday") << QTime();
}

void TestAGeoDataProcessorGpx::everyTimeIsDeclaredUtc()
{
    QFETCH(QByteArray, text);
    QFETCH(QTime, time);
    Processor processor(nullptr);
    QVERIFY(processor.loadGpx(gpx("<trk>" + trackPoint(text) + "</trk>")));
    const AGeoData &record = *processor.m_waypoints.first();
    QCOMPARE(record.recordTime.timeSpec(), Qt::UTC);
    QCOMPARE(record.recordTime.isValid(), time.isValid());
    if (time.isValid())
        QCOMPARE(record.recordTime, QDateTime(QDate(2024, 5, 17), time, Qt::UTC));
}

void TestAGeoDataProcessorGpx::aDescriptionIsTakenAsItStands()
{
    Processor processor(nullptr);
    QVERIFY(processor.loadGpx(gpx("<trk>" + trackPoint("2024-05-17T12:30:00Z", "<desc> a\nb </desc>") + "</trk>")));
    QCOMPARE(processor.m_waypoints.first()->description, QString(" a\nb "));
}

void TestAGeoDataProcessorGpx::aPointWithoutOneGetsABalloon()
{
    Processor processor(nullptr);
    const QByteArray point = trackPoint("2024-05-17T14:30:00+02:00", "<ele>500.125</ele><desc></desc>");
    QVERIFY(processor.loadGpx(gpx("<trk>" + point + "</trk>")));
    QCOMPARE(processor.m_waypoints.first()->description,
             QString("<table>\n<tr><td>Date:</td><td>2024-05-17</td></tr>\n"
                     "<tr><td>Time:</td><td>14:30:00</td></tr>\n"
                     "<tr><td>Latitude:</td><td>48.5</td></tr>\n"
                     "<tr><td>Longitude:</td><td>-11.25</td></tr>\n"
                     "<tr><td>Altitude:</td><td>500.125 m</td></tr>\n</table>"));
}

void TestAGeoDataProcessorGpx::pointsAreFoundAtAnyDepth()
{
    Processor processor(nullptr);
    QVERIFY(
        processor.loadGpx(gpx("<metadata><trk><a><b>" + trackPoint("2024-05-17T12:30:00Z") + "</b></a>" +
                              trackPoint("2024-05-17T12:30:01Z", "<x>" + trackPoint("2024-05-17T12:30:02Z") + "</x>") +
                              "</trk></metadata>")));
    QCOMPARE(processor.waypointTimes(), (QList<QDateTime>{at(0), at(1000), at(2000)}));
}

void TestAGeoDataProcessorGpx::theFirstMatchBelowAPointCounts()
{
    Processor processor(nullptr);
    QVERIFY(processor.loadGpx(gpx("<trk><trkpt><extensions><name>deep</name><ele>7</ele></extensions>"
                                  "<name>late</name><ele>8</ele><desc>one</desc><desc>two</desc></trkpt></trk>")));
    const AGeoData &record = *processor.m_waypoints.first();
    QCOMPARE(record.recordName, QString("deep"));
    QCOMPARE(record.altitude, 7.0F);
    QCOMPARE(record.description, QString("one"));
}

void TestAGeoDataProcessorGpx::noSignalIsEmitted()
{
    Processor processor(nullptr);
    QSignalSpy stored(&processor, &AGeoDataProcessor::nmeaRecordProcessed);
    QSignalSpy finished(&processor, &AGeoDataProcessor::nmeaProcessingFinished);
    QVERIFY(processor.loadGpx(gpx("<trk>" + trackPoint("2024-05-17T12:30:00Z") + "</trk>")));
    QCOMPARE(stored.count() + finished.count(), 0);
    QVERIFY(!processor.m_nmeaTimer.isActive());
}

// Each track is written as "attribute|time of the first point".
void TestAGeoDataProcessorGpx::theMasterTrack_data()
{
    QTest::addColumn<QList<QByteArray>>("tracks");
    QTest::addColumn<int>("master"); // -1: none

    using Tracks = QList<QByteArray>;
    const QByteArray data = "_TRIMOSA_DATA_TRACK";
    const QByteArray iso = "2024-05-17T12:30:00Z";
    const QByteArray isoLater = "2025-01-01T00:00:00Z";
    const QByteArray early = "Fri May 17 12:30:00 2024";
    const QByteArray late = "Sat May 18 12:30:00 2024";
    QTest::newRow("one") << Tracks{"|" + iso} << 0;
    QTest::newRow("only data tracks") << Tracks{data + "|" + iso, data + "_2|" + iso} << -1;
    QTest::newRow("the last with ISO times") << Tracks{"|" + isoLater, data + "|" + iso, "|" + iso} << 2;
    QTest::newRow("a data track comes last") << Tracks{"|" + isoLater, "|" + iso, data + "|" + iso} << 1;
    QTest::newRow("without times") << Tracks{"|", "a|", "b|"} << 2;
    QTest::newRow("the marker in another case") << Tracks{"_trimosa_data_track|" + iso} << 0;
    QTest::newRow("the marker later in the name") << Tracks{"x" + data + "|" + iso} << 0;
    QTest::newRow("text times: the latest") << Tracks{"|" + early, "|" + late, "|" + early} << 1;
    QTest::newRow("text times: the first of equal ones") << Tracks{"|" + late, "|" + late} << 0;
    QTest::newRow("a valid time stays before an invalid one") << Tracks{"|" + early, "|" + iso} << 0;
    QTest::newRow("a valid time replaces an invalid one") << Tracks{"|" + iso, "|" + early} << 1;
    QTest::newRow("a data track's time doesn't count") << Tracks{"|" + early, data + "|" + late} << 0;
}

void TestAGeoDataProcessorGpx::theMasterTrack()
{
    QFETCH(QList<QByteArray>, tracks);
    QFETCH(int, master);
    QByteArray content;
    for (int i = 0; i < tracks.size(); ++i) {
        const QList<QByteArray> parts = tracks.at(i).split('|');
        content += "<trk name=\"" + parts.first() + "\" number=\"" + QByteArray::number(i) + "\"><trkseg>" +
                   trackPoint(parts.last()) + trackPoint("Sat Jan 1 12:30:00 2030") + "</trkseg></trk>";
    }
    Processor processor(nullptr);
    QCOMPARE(processor.loadGpx(gpx(content)), master >= 0);
    QVERIFY(processor.errorText.isEmpty());
    const QDomElement element = processor.getMasterTrackElement();
    QCOMPARE(element.isNull() ? -1 : element.attribute("number").toInt(), master);
    QCOMPARE(processor.m_waypoints.size(), master >= 0 ? 2 : 0);
}

void TestAGeoDataProcessorGpx::onlyTheMasterTrackIsRead()
{
    Processor processor(nullptr);
    QVERIFY(processor.loadGpx(gpx("<wpt lat='1' lon='1'/><trk><name>_TRIMOSA_DATA_TRACK</name>" +
                                  trackPoint("2024-05-17T12:30:00Z", "<name>A</name>") + "</trk><trk name='x'>" +
                                  trackPoint("2024-05-17T12:30:01Z", "<name>B</name>") + "</trk>")));
    QCOMPARE(recordNames(processor), QStringList{"B"});
    // The marker in a child element marks nothing.
    Processor another(nullptr);
    QVERIFY(another.loadGpx(gpx("<trk><name>_TRIMOSA_DATA_TRACK</name>" +
                                trackPoint("2024-05-17T12:30:00Z", "<name>A</name>") + "</trk>")));
    QCOMPARE(recordNames(another), QStringList{"A"});
}

void TestAGeoDataProcessorGpx::nestedTracksShareTheirPoints()
{
    Processor processor(nullptr);
    QVERIFY(processor.loadGpx(gpx("<trk id='outer'><trk id='inner'>" + trackPoint("Fri May 17 12:30:00 2024") +
                                  "</trk>" + trackPoint("Sat May 18 12:30:00 2024") + "</trk>")));
    QCOMPARE(processor.getMasterTrackElement().attribute("id"), QString("outer")); // of equal times
    QCOMPARE(processor.m_waypoints.size(), 2);

    Processor another(nullptr);
    QVERIFY(another.loadGpx(gpx("<trk id='outer'><trk id='empty'/><trk id='inner'>" +
                                trackPoint("2024-05-17T12:30:00Z") + "</trk></trk>")));
    QCOMPARE(another.getMasterTrackElement().attribute("id"), QString("inner"));
    QCOMPARE(another.m_waypoints.size(), 1);
}

void TestAGeoDataProcessorGpx::withoutATrackTheErrorStaysUntouched_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::newRow("empty") << gpx("");
    QTest::newRow("waypoints alone") << gpx("<wpt lat='1' lon='2'/><rte><rtept lat='1' lon='2'/></rte>");
    QTest::newRow("points without a track") << gpx(trackPoint("2024-05-17T12:30:00Z"));
    QTest::newRow("a prefix") << QByteArray("<g:gpx xmlns:g='http://www.topografix.com/GPX/1/1'><g:trk>"
                                            "<g:trkpt lat='1' lon='2'/></g:trk></g:gpx>");
    QTest::newRow("other XML") << QByteArray("<html><body>trk</body></html>");
}

void TestAGeoDataProcessorGpx::withoutATrackTheErrorStaysUntouched()
{
    QFETCH(QByteArray, content);
    QBuffer buffer(&content);
    Processor processor(nullptr);
    QString errorText = "untouched";
    int line = -3;
    int column = -4;
    QVERIFY(!processor.loadGpxDocument(&buffer, &errorText, &line, &column));
    QCOMPARE(errorText, QString("untouched"));
    QCOMPARE(line, -3);
    QCOMPARE(column, -4);
    QVERIFY(!processor.hasGeoData());
    QVERIFY(processor.getMasterTrackElement().isNull());
}

void TestAGeoDataProcessorGpx::aMasterTrackWithoutPointsIsEnough()
{
    Processor processor(nullptr);
    QVERIFY(processor.loadGpx(gpx("<trk/>")));
    QVERIFY(!processor.hasGeoData());
}

void TestAGeoDataProcessorGpx::loadingTwiceDoublesTheRecords()
{
    Processor processor(nullptr);
    const QByteArray content =
        gpx("<trk>" + trackPoint("2024-05-17T12:30:00Z") + trackPoint("2024-05-17T12:30:01Z") + "</trk>");
    QVERIFY(processor.loadGpx(content));
    QVERIFY(processor.loadGpx(content));
    QCOMPARE(processor.m_waypoints.size(), 4);
    QCOMPARE(processor.waypointTimes(), (QList<QDateTime>{at(0), at(1000)}));
}

void TestAGeoDataProcessorGpx::anotherDocumentReplacesTheFirst()
{
    Processor processor(nullptr);
    QVERIFY(processor.loadGpx(gpx("<trk>" + trackPoint("2024-05-17T12:30:00Z") + "</trk>")));
    QVERIFY(!processor.loadGpx(gpx("")));
    QCOMPARE(processor.m_waypoints.size(), 1);
    QVERIFY(!processor.parseGpxTrackData());
}

void TestAGeoDataProcessorGpx::theDocumentIsOnlyRead()
{
    Processor processor(nullptr);
    const QByteArray content = gpx("<trk>" + trackPoint("2024-05-17T12:30:00Z") + "</trk>");
    QVERIFY(processor.loadGpx(content));
    QDomDocument document;
    QVERIFY(document.setContent(content));
    QCOMPARE(processor.m_gpxDocument.toString(), document.toString());
}

void TestAGeoDataProcessorGpx::dataOfAnElement_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("text");
    QTest::newRow("a name") << "ele"
                            << "12";
    QTest::newRow("a leading slash") << "/ele"
                                     << "12";
    QTest::newRow("two leading slashes") << "//ele"
                                         << "12";
    QTest::newRow("empty") << ""
                           << "12oneinner";
    QTest::newRow("slashes alone") << "///"
                                   << "12oneinner";
    QTest::newRow("a path") << "a/b"
                            << "oneinner";
    QTest::newRow("slashes amid and at the end") << "a//b/"
                                                 << "oneinner";
    QTest::newRow("any depth") << "c"
                               << "inner";
    QTest::newRow("the first match alone is followed") << "a/d"
                                                       << "";
    QTest::newRow("no match") << "x"
                              << "";
    QTest::newRow("no match below") << "ele/x"
                                    << "";
    QTest::newRow("another case") << "Ele"
                                  << "";
    QTest::newRow("a blank") << " ele"
                             << "";
}

void TestAGeoDataProcessorGpx::dataOfAnElement()
{
    QFETCH(QString, path);
    QFETCH(QString, text);
    QDomDocument document;
    QVERIFY(document.setContent(QByteArray("<p><ele>12</ele><a><b>one<c>inner</c></b></a><a><d/></a></p>")));
    Processor processor(nullptr);
    QCOMPARE(processor.getDataOfElement(document.documentElement(), path), text);
}

void TestAGeoDataProcessorGpx::dataOfNoElementIsEmpty()
{
    Processor processor(nullptr);
    QCOMPARE(processor.getDataOfElement(QDomElement(), QString()), QString());
    QCOMPARE(processor.getDataOfElement(QDomElement(), QString("a/b")), QString());
    QDomDocument document;
    QVERIFY(document.setContent(QByteArray("<a>x</a>")));
    const QString slashes(1000000, '/');
    QCOMPARE(processor.getDataOfElement(document.documentElement(), slashes), QString("x"));
}

QTEST_GUILESS_MAIN(TestAGeoDataProcessorGpx)
#include "tst_ageodataprocessor_gpx.moc"
