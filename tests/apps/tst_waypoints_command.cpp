#include "apps/commandchecks.h"
#include "apps/drivefiles.h"
#include "apps/programrun.h"

#include <QtCore/QJsonArray>
#include <QtCore/QJsonObject>
#include <QtCore/QTextCodec>
#include <QtTest/QtTest>

#include <cmath>

class TestWaypointsCommand : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void summarisesTheExamples();
    void printsJson();
    void tellsFormatsApartByContent_data();
    void tellsFormatsApartByContent();
    void readsAPipe();
    void measuresAreaAndLength_data();
    void measuresAreaAndLength();
    void countsPointsWithoutTimeOrPlace();
    void saysWhichOfSeveralTracksIsRead();
    void refusesWhatHoldsNoPositions_data();
    void refusesWhatHoldsNoPositions();
    void keepsWhatStandsBeforeDamage();
    void goesOnAfterABadFile();
    void showsProgressOnATerminalOnly();
    void reportsOutputThatCanNotBeWritten();
    void refusesWrongUsage_data();
    void refusesWrongUsage();
    void helps();

private:
    Folder m_folder;
};

namespace {

QJsonObject onlyObject(const Run &result)
{
    const QJsonArray array = jsonOf(result);
    return array.size() == 1 ? array.at(0).toObject() : QJsonObject();
}

bool isAbout(const QJsonValue &value, double number, double tolerance)
{
    return value.isDouble() && std::fabs(value.toDouble() - number) <= tolerance;
}

QStringList sensorsOf(const QJsonObject &object)
{
    QStringList names;
    const QJsonArray sensors = object["sensors"].toArray();
    for (const QJsonValue &sensor : sensors)
        names += sensor.toString();
    return names;
}

} // namespace

void TestWaypointsCommand::summarisesTheExamples()
{
    const Run result = run({"waypoints", kGpx, kNmea});
    QCOMPARE(result.errors, QString());
    QCOMPARE(result.exitStatus, 0);
    QCOMPARE(result.output, kGpx +
                                ": GPX, 427 waypoints\n"
                                "  time      2025-03-18T09:12:04Z to 2025-03-18T09:26:16Z (14:12)\n"
                                "  area      47.31270 N to 47.36126 N, 13.92840 E to 14.07218 E\n"
                                "  length    13.28 km\n"
                                "  altitude  641.9 m to 853.3 m\n"
                                "  sensors   none\n" +
                                kNmea +
                                ": NMEA, 447 waypoints\n"
                                "  time      2025-06-04T23:57:30Z to 2025-06-05T00:04:56Z (7:26)\n"
                                "  area      54.31324 N to 54.32504 N, 4.38710 W to 4.36089 W\n"
                                "  length    4.71 km\n"
                                "  altitude  2.9 m to 26.2 m\n"
                                "  sensors   compass, tilt, gyro, pressure\n");
}

void TestWaypointsCommand::printsJson()
{
    const Run result = run({"waypoints", "--format", "json", kGpx, kNmea});
    QCOMPARE(result.errors, QString());
    QCOMPARE(result.exitStatus, 0);
    QCOMPARE(result.output.count('\n'), 4); // one file a line
    const QJsonArray files = jsonOf(result);
    QCOMPARE(files.size(), 2);

    const QJsonObject gpx = files.at(0).toObject();
    QCOMPARE(gpx["file"].toString(), kGpx);
    QCOMPARE(gpx["format"].toString(), QString("gpx"));
    QCOMPARE(gpx["tracks"].toInt(), 1);
    QCOMPARE(gpx["waypoints"].toInt(), kGpxPoints);
    QCOMPARE(gpx["withoutTime"].toInt(-1), 0);
    QCOMPARE(gpx["withoutPosition"].toInt(-1), 0);
    QCOMPARE(gpx["beginTime"].toString(), QString("2025-03-18T09:12:04.000Z"));
    QCOMPARE(gpx["endTime"].toString(), QString("2025-03-18T09:26:16.000Z"));
    QCOMPARE(gpx["durationSeconds"].toInt(), 14 * 60 + 12);
    QCOMPARE(sensorsOf(gpx), QStringList());
    double south = 90.0;
    double east = -180.0;
    const QList<Place> places = placesOf(contentOf(kGpx), "trkpt");
    for (const Place &place : places) {
        south = qMin(south, place.latitude);
        east = qMax(east, place.longitude);
    }
    QVERIFY(isAbout(gpx["south"], south, 5e-6));
    QVERIFY(isAbout(gpx["east"], east, 5e-6));
    QVERIFY(isAbout(gpx["lengthMetres"], 13279.0, 1.0));
    QVERIFY(isAbout(gpx["lowestMetres"], 641.9, 0.01));
    QVERIFY(isAbout(gpx["highestMetres"], 853.3, 0.01));

    const QJsonObject nmea = files.at(1).toObject();
    QCOMPARE(nmea["format"].toString(), QString("nmea"));
    QVERIFY(!nmea.contains("tracks"));
    QCOMPARE(nmea["waypoints"].toInt(), kNmeaRecords);
    QCOMPARE(nmea["durationSeconds"].toInt(), kNmeaRecords - 1); // across midnight
    QCOMPARE(sensorsOf(nmea), QStringList({"compass", "tilt", "gyro", "pressure"}));
}

void TestWaypointsCommand::tellsFormatsApartByContent_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("format");
    const QByteArray gpx = gpxOf(trackPoint(47.0, 15.0, "2025-01-01T00:00:00Z"));
    const QByteArray nmea = "$GPGGA,123519,4807.038,N,01131.000,E,1,08,0.9,545.4,M,46.9,M,,*47\r\n";
    QTest::newRow("GPX") << "a.gpx" << gpx << "gpx";
    QTest::newRow("GPX under another name") << "a.nmea" << gpx << "gpx";
    QTest::newRow("GPX behind blanks") << "a.gpx" << QByteArray("\r\n \t" + gpx) << "gpx";
    QTest::newRow("GPX behind a mark of its encoding") << "a.gpx" << QByteArray("\xef\xbb\xbf" + gpx) << "gpx";
    for (const char *codec : {"UTF-16LE", "UTF-16BE"}) {
        const QByteArray text = QTextCodec::codecForName(codec)->fromUnicode(QString::fromLatin1(gpx));
        QTest::newRow(codec) << "a.gpx" << text << "gpx";
    }
    QTest::newRow("NMEA") << "a.nmea" << nmea << "nmea";
    QTest::newRow("NMEA under another name") << "a.gpx" << nmea << "nmea";
    QTest::newRow("NMEA behind other bytes") << "a.txt" << QByteArray("\xb5\x62\x01\r\nlog begins\n" + nmea) << "nmea";
    QTest::newRow("NMEA without an end of line") << "a.nmea" << nmea.trimmed() << "nmea";
}

void TestWaypointsCommand::tellsFormatsApartByContent()
{
    QFETCH(QString, name);
    QFETCH(QByteArray, content);
    const Run result = run({"waypoints", "--format", "json", m_folder.write(name, content)});
    QCOMPARE(result.errors, QString());
    QCOMPARE(result.exitStatus, 0);
    QTEST(onlyObject(result)["format"].toString(), "format");
    QCOMPARE(onlyObject(result)["waypoints"].toInt(), 1);
}

void TestWaypointsCommand::readsAPipe()
{
    for (const QString &file : {kGpx, kNmea}) {
        QProcess process;
        process.start(AVELDORAN_PROGRAM, {"waypoints", "/dev/stdin"});
        process.write(contentOf(file));
        process.closeWriteChannel();
        QVERIFY(process.waitForFinished());
        QCOMPARE(process.readAllStandardError(), QByteArray());
        QCOMPARE(process.exitCode(), 0);
        QString expected = run({"waypoints", file}).output;
        QCOMPARE(QString::fromUtf8(process.readAllStandardOutput()), expected.replace(file, "/dev/stdin"));
    }
}

void TestWaypointsCommand::measuresAreaAndLength_data()
{
    QTest::addColumn<QByteArray>("points");
    QTest::addColumn<QString>("area");
    QTest::addColumn<QString>("length");
    const QByteArray t0 = "2025-01-01T00:00:00Z";
    const QByteArray t1 = "2025-01-01T00:00:01Z";
    const QByteArray t2 = "2025-01-01T00:00:02Z";
    QTest::newRow("one point") << trackPoint(-33.5, -70.25, t0) << "33.50000 S to 33.50000 S, 70.25000 W to 70.25000 W"
                               << "0 m";
    QTest::newRow("a degree of the equator")
        << trackPoint(0.0, 1.0, t0) + trackPoint(0.0, 2.0, t1) << "0.00000 N to 0.00000 N, 1.00000 E to 2.00000 E"
        << "111.20 km";
    QTest::newRow("a meridian, there and back")
        << trackPoint(10.0, 5.0, t0) + trackPoint(11.0, 5.0, t1) + trackPoint(10.0, 5.0, t2)
        << "10.00000 N to 11.00000 N, 5.00000 E to 5.00000 E"
        << "222.39 km";
    QTest::newRow("in the order of time, not of the file")
        << trackPoint(10.0, 5.0, t0) + trackPoint(10.002, 5.0, t2) + trackPoint(10.001, 5.0, t1)
        << "10.00000 N to 10.00200 N, 5.00000 E to 5.00000 E"
        << "222 m";
    QTest::newRow("of one time, in the order of the file")
        << trackPoint(10.0, 5.0, t0) + trackPoint(10.002, 5.0, t1) + trackPoint(10.003, 5.0, t1) +
               trackPoint(10.004, 5.0, t2)
        << "10.00000 N to 10.00400 N, 5.00000 E to 5.00000 E"
        << "445 m";
    QTest::newRow("across the equator and the zero meridian")
        << trackPoint(-0.5, -0.5, t0) + trackPoint(0.5, 0.5, t1) << "0.50000 S to 0.50000 N, 0.50000 W to 0.50000 E"
        << "157.25 km";
    QTest::newRow("across the date line") << trackPoint(-17.0, 179.75, t0) + trackPoint(-17.0, -179.5, t1)
                                          << "17.00000 S to 17.00000 S, 179.75000 E to 179.50000 W"
                                          << "79.75 km";
}

void TestWaypointsCommand::measuresAreaAndLength()
{
    QFETCH(QByteArray, points);
    const Run result = run({"waypoints", m_folder.write("a.gpx", gpxOf(points))});
    QCOMPARE(result.exitStatus, 0);
    const QStringList lines = result.output.split('\n');
    QTEST(lines.filter(QRegularExpression("^  area ")).value(0).mid(12), "area");
    QTEST(lines.filter(QRegularExpression("^  length ")).value(0).mid(12), "length");
}

void TestWaypointsCommand::countsPointsWithoutTimeOrPlace()
{
    const QByteArray points = trackPoint(47.0, 15.0, "2025-01-01T00:00:00Z") + "<trkpt lat=\"48\" lon=\"16\"/>" +
                              trackPoint(0.0, 0.0, "2025-01-01T00:00:01Z") +
                              trackPoint(91.0, 15.0, "2025-01-01T00:00:02Z") +
                              "<trkpt lat=\"nan\" lon=\"15\"><time>2025-01-01T01:00:00Z</time></trkpt>"
                              "<trkpt lat=\"47\" lon=\"inf\"><time>2025-01-01T00:00:04Z</time></trkpt>" +
                              trackPoint(47.5, 15.5, "2025-01-01T00:00:05Z");
    const QString file = m_folder.write("a.gpx", gpxOf(points));
    const Run result = run({"waypoints", file});
    QCOMPARE(result.errors, QString());
    QCOMPARE(result.exitStatus, 0);
    QVERIFY2(result.output.startsWith(file + ": GPX, 7 waypoints\n"
                                             "  time      2025-01-01T00:00:00Z to 2025-01-01T01:00:00Z (1:00:00)\n"
                                             "  no time   1 waypoint\n"
                                             "  area      47.00000 N to 48.00000 N, 15.00000 E to 16.00000 E\n"),
             qPrintable(result.output));
    QVERIFY(result.output.contains("  no place  4 waypoints\n"));

    const QString nowhere = m_folder.write("b.gpx", gpxOf("<trkpt/>"));
    QCOMPARE(run({"waypoints", nowhere}).output, nowhere + ": GPX, 1 waypoint\n"
                                                           "  no time   1 waypoint\n"
                                                           "  no place  1 waypoint\n"
                                                           "  sensors   none\n");
}

void TestWaypointsCommand::saysWhichOfSeveralTracksIsRead()
{
    const QByteArray point = trackPoint(47.0, 15.0, "2025-01-01T00:00:00Z");
    const QString file = m_folder.write("a.gpx", "<gpx><trk>" + point + point + "</trk><trk>" + point + "</trk></gpx>");
    const Run result = run({"waypoints", file});
    QVERIFY(result.output.startsWith(file + ": GPX, 1 waypoint\n  tracks    2, of which one is read\n"));
}

void TestWaypointsCommand::refusesWhatHoldsNoPositions_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("reason");
    const QString neither = ": expected GPX, or NMEA 0183 sentences with a position, found none";
    QTest::newRow("a missing file") << "missing.gpx"
                                    << ": can't be read: No such file or directory";
    QTest::newRow("a directory") << "."
                                 << ": can't be read: file to open is a directory";
    QTest::newRow("an empty file") << "empty" << neither;
    QTest::newRow("a text") << "text" << neither;
    QTest::newRow("bytes") << "bytes" << neither;
    QTest::newRow("NMEA without a fix") << "void.nmea" << neither;
    QTest::newRow("another XML document") << "other.kml"
                                          << ": expected a GPX document, found the element 'kml'";
    QTest::newRow("GPX without a track") << "wpt.gpx"
                                         << ": no track (trk) to read; waypoints (wpt) and routes (rte) are not read";
    QTest::newRow("a track without points") << "trk.gpx"
                                            << ": its track has no points (trkpt)";
    QTest::newRow("no XML behind its begin") << "broken.gpx"
                                             << ":1:2: can't be read as GPX: error occurred while parsing element";
}

void TestWaypointsCommand::refusesWhatHoldsNoPositions()
{
    QFETCH(QString, name);
    QFETCH(QString, reason);
    m_folder.write("empty", "");
    m_folder.write("text", "Logs as they came from receivers\n");
    m_folder.write("bytes", QByteArray("\x1f\x8b\x08\0\0\0\0\0", 8) + QByteArray(100000, '\xa5'));
    m_folder.write("void.nmea", "$GPRMC,235725.00,V,,,,,,,040625,,,N*7C\r\n");
    m_folder.write("other.kml", "<kml><Document/></kml>");
    m_folder.write("wpt.gpx", "<gpx><wpt lat=\"1\" lon=\"2\"/></gpx>");
    m_folder.write("trk.gpx", "<gpx><trk><trkseg/></trk></gpx>");
    m_folder.write("broken.gpx", "< no");
    const Run result = run({"waypoints", m_folder.path(name)});
    verifyFailed(result, m_folder.path(name) + reason);
    QCOMPARE(run({"waypoints", "--format", "json", m_folder.path(name)}).output, QString("[]\n"));
}

void TestWaypointsCommand::keepsWhatStandsBeforeDamage()
{
    const QByteArray whole = contentOf(kGpx);
    const int lines = whole.left(whole.size() / 2).count('\n') + 1;
    const QString file = m_folder.write("cut.gpx", whole.left(whole.size() / 2));
    const Run result = run({"waypoints", "--format", "json", file});
    QCOMPARE(result.exitStatus, 1);
    QVERIFY2(result.errors.startsWith(QString("aveldoran: %1:%2:").arg(file).arg(lines)), qPrintable(result.errors));
    QCOMPARE(result.errors.count('\n'), 1);
    const int waypoints = onlyObject(result)["waypoints"].toInt();
    QVERIFY(waypoints >= kGpxPoints / 2 - 3 && waypoints <= kGpxPoints / 2 + 3);
}

void TestWaypointsCommand::goesOnAfterABadFile()
{
    const Run result = run({"waypoints", m_folder.path("missing"), kNmea});
    QCOMPARE(result.exitStatus, 1);
    QCOMPARE(result.output, run({"waypoints", kNmea}).output);
    QCOMPARE(result.errors.count('\n'), 1);
}

void TestWaypointsCommand::showsProgressOnATerminalOnly()
{
    const Run result = runOnTerminal({"waypoints", kNmea});
    QCOMPARE(result.exitStatus, 0);
    QCOMPARE(result.output, run({"waypoints", kNmea}).output);
    QVERIFY2(result.errors.contains("reading " + kNmea + " [##") && result.errors.contains("%"),
             qPrintable(result.errors));
    QVERIFY(result.errors.endsWith("\r\033[K")); // it is gone at the end
    QCOMPARE(run({"waypoints", kNmea}).errors, QString());
}

void TestWaypointsCommand::reportsOutputThatCanNotBeWritten()
{
    verifyReportsFullDisk({"waypoints", kGpx});
}

void TestWaypointsCommand::refusesWrongUsage_data()
{
    addWrongUsageColumns();
    QTest::newRow("no file") << QStringList{}
                             << "waypoints: a position file is missing; see 'aveldoran waypoints --help'";
    QTest::newRow("an unknown option") << QStringList{"--colour", kGpx} << "unknown option '--colour'";
    QTest::newRow("an unknown format") << QStringList{"--format", "xml", kGpx}
                                       << "waypoints: --format expects text or json, not 'xml'";
}

void TestWaypointsCommand::refusesWrongUsage()
{
    verifyRefused({"waypoints"});
}

void TestWaypointsCommand::helps()
{
    verifyHelps("waypoints", {});
}

QTEST_GUILESS_MAIN(TestWaypointsCommand)
#include "tst_waypoints_command.moc"
