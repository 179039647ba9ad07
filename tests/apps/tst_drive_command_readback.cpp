#include "apps/drivefiles.h"
#include "apps/programrun.h"

#include <QtCore/QStandardPaths>
#include <QtTest/QtTest>

#include <cmath>

// Other programs read the example tracks, and the documents that are made of them, and find the same in them.

class TestDriveCommandReadback : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();

    void gpsbabelReadsTheDocument();
    void gpsbabelReadsATimeTrack();
    void ogrinfoReadsTheDocument();
    void gpsbabelReadsTheSameNmeaLog();
    void ogrinfoReadsTheSameTrack();

private:
    QString path(const QString &name) const { return m_folder.path(name); }
    QByteArray outputOf(const QString &program, const QStringList &arguments)
    {
        QProcess process;
        process.start(program, arguments);
        if (!process.waitForFinished() || process.exitCode() != 0)
            return "failed: " + process.readAllStandardError();
        return process.readAllStandardOutput();
    }
    QByteArray asGpx(const QString &format, const QString &name)
    {
        return outputOf("gpsbabel", {"-i", format, "-f", name, "-o", "gpx", "-F", "-"});
    }

    Folder m_folder;
    QList<Place> m_track;
};

namespace {

constexpr int kSweeps = 426; // one for each point of the track; that of the last one has no time of its own
constexpr int kPaths = 3;    // of measured values
constexpr double kFloatDegrees = 3e-6;

bool isInstalled(const char *program)
{
    return !QStandardPaths::findExecutable(QString::fromLatin1(program)).isEmpty();
}

bool isAt(const Place &a, const Place &b)
{
    return std::fabs(a.latitude - b.latitude) < kFloatDegrees && std::fabs(a.longitude - b.longitude) < kFloatDegrees;
}

} // namespace

// The track of the example, and at each of its points a sweep.
void TestDriveCommandReadback::initTestCase()
{
    qputenv("XDG_CONFIG_HOME", path("config").toLocal8Bit()); // no settings
    m_track = placesOf(contentOf(kGpx), "trkpt");
    QCOMPARE(m_track.size(), kGpxPoints);
    const QString recording = path("drive.mdr");
    QList<ASweep> sweeps;
    for (int i = 0; i < kSweeps; ++i)
        sweeps.append(sweepAt(2.0 * i, {-100.0 - i % 7, -50.0 - i % 11}));
    saveRecording(recording, sweeps);
    const QStringList command = {"drive", recording, "--gpx", kGpx, "--tolerance", "0", "--output"};
    const Run result = run(command + QStringList(path("drive.kml")));
    QVERIFY2(result.told.contains("426 sweeps, 426 with a position, 427 waypoints"), qPrintable(result.told));
    QCOMPARE(run(command + QStringList{path("times.kml"), "--time-track", "--no-balloons"}).exitStatus, 0);
}

void TestDriveCommandReadback::gpsbabelReadsTheDocument()
{
    if (!isInstalled("gpsbabel"))
        QSKIP("gpsbabel is not installed");
    const QByteArray gpx = asGpx("kml", path("drive.kml"));
    const QList<Place> places = placesOf(gpx, "wpt");
    QVERIFY2(places.size() == kGpxPoints + kPaths * kSweeps, gpx.left(500).constData());
    for (int i = 0; i < kGpxPoints; ++i)
        QVERIFY(isAt(places.at(i), m_track.at(i)));
    for (int path = 0; path < kPaths; ++path) {
        for (int i = 0; i < kSweeps; ++i)
            QVERIFY(isAt(places.at(kGpxPoints + path * kSweeps + i), m_track.at(i)));
    }
}

void TestDriveCommandReadback::gpsbabelReadsATimeTrack()
{
    if (!isInstalled("gpsbabel"))
        QSKIP("gpsbabel is not installed");
    QDomDocument document;
    QVERIFY(document.setContent(asGpx("kml", path("times.kml"))));
    const QDomNodeList tracks = document.elementsByTagName("trk");
    int timed = 0;
    for (int t = 0; t < tracks.size(); ++t) {
        const QDomElement track = tracks.at(t).toElement();
        if (track.elementsByTagName("time").isEmpty())
            continue;
        const QDomNodeList points = track.elementsByTagName("trkpt");
        QCOMPARE(points.size(), timed == 0 ? kGpxPoints : kSweeps);
        for (int i = 0; i < points.size(); ++i) {
            const QDomElement point = points.at(i).toElement();
            QVERIFY(isAt({point.attribute("lat").toDouble(), point.attribute("lon").toDouble()}, m_track.at(i)));
            QCOMPARE(QDateTime::fromString(point.firstChildElement("time").text(), Qt::ISODate),
                     secondOfDrive(2.0 * i));
        }
        ++timed;
    }
    QCOMPARE(timed, 1 + kPaths);
}

void TestDriveCommandReadback::ogrinfoReadsTheDocument()
{
    if (!isInstalled("ogrinfo"))
        QSKIP("ogrinfo (gdal-bin) is not installed");
    const QString output = QString::fromUtf8(outputOf("ogrinfo", {"-al", path("drive.kml")}));
    QList<Place> places;
    auto matches = QRegularExpression("POINT Z? ?\\((\\S+) (\\S+) \\S+\\)").globalMatch(output);
    while (matches.hasNext()) {
        const QRegularExpressionMatch match = matches.next();
        places.append({match.captured(2).toDouble(), match.captured(1).toDouble()});
    }
    QVERIFY2(places.size() == kGpxPoints + kPaths * kSweeps, qPrintable(output.left(2000)));
    for (int i = 0; i < places.size(); ++i)
        QVERIFY(isAt(places.at(i), m_track.at(i < kGpxPoints ? i : (i - kGpxPoints) % kSweeps)));
    QCOMPARE(output.count("LINESTRING"), 1 + kPaths);
}

void TestDriveCommandReadback::gpsbabelReadsTheSameNmeaLog()
{
    if (!isInstalled("gpsbabel"))
        QSKIP("gpsbabel is not installed");
    const QList<Place> places = placesOf(asGpx("nmea", kNmea), "trkpt");
    QCOMPARE(places.size(), kNmeaRecords);
    QVERIFY(run({"waypoints", kNmea}).output.contains(QString(", %1 waypoints\n").arg(places.size())));
    // The way that a document shows is the same.
    const QString recording = saveRecording(path("harbour.mdr"), {positionedSweepAt(0, {-100.0, -50.0})});
    const QStringList way = Kml(run({"drive", recording, "--nmea", kNmea}).output.toUtf8()).path("Original GPS Data");
    QCOMPARE(way.size(), kNmeaRecords);
    for (int i = 0; i < way.size(); ++i) {
        const QStringList point = way.at(i).split(',');
        constexpr double kOfDegreesAndMinutes = 1e-5; // as float
        QVERIFY(std::fabs(point.at(0).toDouble() - places.at(i).longitude) < kOfDegreesAndMinutes);
        QVERIFY(std::fabs(point.at(1).toDouble() - places.at(i).latitude) < kOfDegreesAndMinutes);
    }
}

void TestDriveCommandReadback::ogrinfoReadsTheSameTrack()
{
    if (!isInstalled("ogrinfo"))
        QSKIP("ogrinfo (gdal-bin) is not installed");
    const QByteArray output = outputOf("ogrinfo", {"-so", kGpx, "track_points"});
    QVERIFY2(output.contains("Feature Count: 427\n"), output.constData());
    const QRegularExpression extent("Extent: \\((\\S+), (\\S+)\\) - \\((\\S+), (\\S+)\\)");
    const QRegularExpressionMatch match = extent.match(QString::fromUtf8(output));
    const auto shown = [](const QString &degrees) { return QString::number(degrees.toDouble(), 'f', 4); };
    const QString area = run({"waypoints", kGpx}).output;
    for (int i = 1; i <= 4; ++i)
        QVERIFY(match.hasMatch() && area.contains(shown(match.captured(i)).chopped(1)));
}

QTEST_GUILESS_MAIN(TestDriveCommandReadback)
#include "tst_drive_command_readback.moc"
