#include "apps/commandchecks.h"
#include "apps/drivefiles.h"
#include "apps/programrun.h"

#include <QtTest/QtTest>

#include <cmath>
#include <limits>

// What becomes of recordings and tracks that are damaged, lack something, or can't be drawn.

class TestDriveCommandInput : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void drawsWhatIsWholeOfADamagedRecording_data();
    void drawsWhatIsWholeOfADamagedRecording();
    void refusesRecordings_data();
    void refusesRecordings();
    void aRecordingWithoutPositionsNeedsATrack();
    void aTrackOfAnotherTimeIsNoneOfTheDrive();
    void sweepsWithoutPositionAreLeftOut();
    void drawsWhatIsWholeOfADamagedTrack();
    void refusesTracks_data();
    void refusesTracks();
    void waypointsThatAreNotOnTheEarthAreLeftOut();
    void theUnitComesFromTheFirstPoint();
    void refusesAUnitOfAnotherFamily_data();
    void refusesAUnitOfAnotherFamily();
    void levelsOfOneValueNeedElevationZero();
    void pointsThatCanNotBeDrawnAreLeftOut_data();
    void pointsThatCanNotBeDrawnAreLeftOut();
    void levelsThatCanNotBeDrawnAreLeftOut_data();
    void levelsThatCanNotBeDrawnAreLeftOut();
    void refusesARecordingWithoutAnyLevel();

private:
    QString path(const QString &name) const { return m_folder->path(name); }
    Run drive(const QStringList &arguments)
    {
        return run(QStringList{"drive", "--output", path("drive.kml")} + arguments);
    }
    void verifyLeftOut(const QString &what, const QList<double> &maxima, const QList<double> &minima);
    bool isWritten() const { return QFile::exists(path("drive.kml")); }

    std::unique_ptr<Folder> m_folder;
};

namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr int kdBuVPerMetre = 8;
constexpr int kW = 10;

const QList<double> kLevels = {-100.0, -50.0};

QList<ASweep> positionedSweeps(int count)
{
    QList<ASweep> sweeps;
    for (int i = 0; i < count; ++i)
        sweeps.append(positionedSweepAt(i, {-100.0, -50.0 - i}));
    return sweeps;
}

} // namespace

void TestDriveCommandInput::init()
{
    m_folder = std::make_unique<Folder>();
    qputenv("XDG_CONFIG_HOME", path("config").toLocal8Bit()); // no settings
}

void TestDriveCommandInput::drawsWhatIsWholeOfADamagedRecording_data()
{
    QTest::addColumn<int>("cutAt"); // of a thousand parts; 0 for not at all
    QTest::addColumn<int>("flippedAt");
    QTest::newRow("cut in the middle") << 500 << 0;
    QTest::newRow("cut before the end") << 999 << 0;
    QTest::newRow("cut behind the first sweeps") << 100 << 0;
    QTest::newRow("a changed byte in the middle") << 0 << 500;
}

void TestDriveCommandInput::drawsWhatIsWholeOfADamagedRecording()
{
    QFETCH(int, cutAt);
    QFETCH(int, flippedAt);
    const QString recording = saveRecording(path("a.mdr"), positionedSweeps(50));
    QByteArray content = m_folder->read("a.mdr");
    if (cutAt > 0)
        content.truncate(content.size() * cutAt / 1000);
    if (flippedAt > 0)
        content[content.size() * flippedAt / 1000] = ~content.at(content.size() * flippedAt / 1000);
    m_folder->write("a.mdr", content);
    AMdrDocument document;
    QString reason;
    QVERIFY(!document.load(recording, &reason));
    const int whole = document.sweepCount();
    QVERIFY(whole > 2 && whole <= 50);

    const Run result = drive({recording});
    QCOMPARE(result.exitStatus, 1);
    QCOMPARE(result.errors, "aveldoran: " + recording + ": " + reason + "\n");
    QVERIFY(result.told.contains(QString(": written; %1, %2 with a position")
                                     .arg(whole == 1 ? "1 sweep" : QString("%1 sweeps").arg(whole))
                                     .arg(whole)));
    QCOMPARE(Kml(m_folder->read("drive.kml")).path("Maximum Values").size(), whole);
}

void TestDriveCommandInput::refusesRecordings_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("reason");
    QTest::newRow("a missing file") << "missing.mdr"
                                    << "can't be read: No such file or directory";
    QTest::newRow("a directory") << "."
                                 << "can't be read: file to open is a directory";
    QTest::newRow("another file") << "text"
                                  << "Not a recording";
    QTest::newRow("an empty file") << "empty"
                                   << "Not a recording";
    QTest::newRow("a recording of positions alone") << "positions.mdr"
                                                    << "no sweeps in this recording";
    QTest::newRow("an empty recording") << "nothing.mdr"
                                        << "no sweeps in this recording";
}

void TestDriveCommandInput::refusesRecordings()
{
    QFETCH(QString, name);
    QFETCH(QString, reason);
    m_folder->write("text", "A text that is no recording");
    m_folder->write("empty", "");
    AMdrDocument document;
    QVERIFY(document.save(path("nothing.mdr")));
    document.addGeoData(positionAt(0));
    QVERIFY(document.save(path("positions.mdr")));
    const Run result = drive({path(name), "--gpx", kGpx});
    verifyFailed(result, path(name) + ": " + reason);
    QVERIFY(!isWritten());
}

void TestDriveCommandInput::aRecordingWithoutPositionsNeedsATrack()
{
    m_folder->write("drive.kml", "old");
    const QString recording = saveRecording(path("a.mdr"), {sweepAt(0, kLevels), sweepAt(1, kLevels)});
    const Run alone = drive({recording});
    verifyFailed(alone, recording + ": no sweep has a position; name a track with --gpx or --nmea");
    QCOMPARE(m_folder->read("drive.kml"), QByteArray("old"));
    QCOMPARE(drive({recording, "--gpx", kGpx}).exitStatus, 0);
}

void TestDriveCommandInput::aTrackOfAnotherTimeIsNoneOfTheDrive()
{
    const QString recording = saveRecording(path("a.mdr"), {sweepAt(0, kLevels), sweepAt(1, kLevels)});
    const Run result = drive({recording, "--nmea", kNmea, "--tolerance", "5000"});
    QCOMPARE(result.exitStatus, 1);
    QCOMPARE(result.errors, "aveldoran: " + recording +
                                ": no sweep has a position, and no waypoint lies within 5000 ms "
                                "of one\n");
    QVERIFY(!isWritten());
}

void TestDriveCommandInput::sweepsWithoutPositionAreLeftOut()
{
    const QString recording = saveRecording(path("a.mdr"), {sweepAt(0, kLevels), positionedSweepAt(1, kLevels),
                                                            sweepAt(2, kLevels), positionedSweepAt(3, kLevels)});
    const Run result = drive({recording});
    QCOMPARE(result.errors, QString());
    QCOMPARE(result.exitStatus, 0);
    QVERIFY(result.told.contains("4 sweeps, 2 with a position, 0 waypoints"));
    QCOMPARE(Kml(m_folder->read("drive.kml")).path("Average Values").size(), 2);
}

void TestDriveCommandInput::drawsWhatIsWholeOfADamagedTrack()
{
    QList<ASweep> sweeps;
    for (int i = 0; i < 852; ++i)
        sweeps.append(sweepAt(i, kLevels));
    const QString recording = saveRecording(path("a.mdr"), sweeps);
    const QByteArray whole = contentOf(kGpx);
    const QString track = m_folder->write("cut.gpx", whole.left(whole.size() / 2));
    const Run result = drive({recording, "--gpx", track});
    QCOMPARE(result.exitStatus, 1);
    QVERIFY2(result.errors.startsWith("aveldoran: " + track + ":"), qPrintable(result.errors));
    QCOMPARE(result.errors.count('\n'), 1);
    const int points = Kml(m_folder->read("drive.kml")).path("Maximum Values").size();
    QVERIFY2(points > 410 && points < 440, qPrintable(QString::number(points)));
}

void TestDriveCommandInput::refusesTracks_data()
{
    QTest::addColumn<QString>("option");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("reason");
    QTest::newRow("a missing GPX file") << "--gpx"
                                        << "missing"
                                        << ": can't be read: No such file or directory";
    QTest::newRow("a missing NMEA log") << "--nmea"
                                        << "missing"
                                        << ": can't be read: No such file or directory";
    QTest::newRow("a directory") << "--nmea"
                                 << "."
                                 << ": can't be read: file to open is a directory";
    QTest::newRow("GPX without a track") << "--gpx"
                                         << "wpt.gpx"
                                         << ": no track (trk) to read; waypoints (wpt) and routes (rte) are not read";
    QTest::newRow("GPX as NMEA") << "--nmea"
                                 << "wpt.gpx"
                                 << ": expected GPX, or NMEA 0183 sentences with a position, found none";
}

void TestDriveCommandInput::refusesTracks()
{
    QFETCH(QString, option);
    QFETCH(QString, name);
    QFETCH(QString, reason);
    m_folder->write("wpt.gpx", "<gpx><wpt lat=\"1\" lon=\"2\"/></gpx>");
    const QString recording = saveRecording(path("a.mdr"), positionedSweeps(2));
    const Run result = drive({recording, option, path(name)});
    verifyFailed(result, path(name) + reason);
    QVERIFY(!isWritten());
}

void TestDriveCommandInput::waypointsThatAreNotOnTheEarthAreLeftOut()
{
    const QString track = m_folder->write("a.gpx", gpxOf("<trkpt/>" + trackPoint(47.0, 15.0, "2025-03-18T09:12:04Z") +
                                                         trackPoint(0.0, 0.0, "2025-03-18T09:12:05Z") +
                                                         trackPoint(95.0, 15.0, "2025-03-18T09:12:06Z") +
                                                         "<trkpt lat=\"nan\" lon=\"1\"/><trkpt lat=\"1\" lon=\"1e99\"/>"
                                                         "<trkpt lat=\"47.5\" lon=\"15\"><ele>inf</ele></trkpt>"));
    const QString recording = saveRecording(path("a.mdr"), {sweepAt(0, kLevels), sweepAt(1, kLevels)});
    const Run result = drive({recording, "--gpx", track, "--tolerance", "0", "--time-track"});
    QCOMPARE(result.errors, QString());
    QCOMPARE(result.exitStatus, 0);
    QCOMPARE(result.told.section('\n', 1),
             path("drive.kml") + ": left out: 6 waypoints without a place on the earth\n");
    const QByteArray content = m_folder->read("drive.kml");
    QVERIFY(!content.contains("nan") && !content.contains("inf"));
    QCOMPARE(Kml(content).path("Original GPS Data"), QStringList{"15.000000,47.000000,100.000000"});
    QCOMPARE(Kml(content).path("Maximum Values").size(), 1);
}

void TestDriveCommandInput::theUnitComesFromTheFirstPoint()
{
    const QString recording = saveRecording(
        path("a.mdr"), {positionedSweepAt(0, {}, kdBuVPerMetre), positionedSweepAt(1, {20.0, 60.0}, kdBuVPerMetre)});
    const Run result = drive({recording});
    QCOMPARE(result.errors, QString());
    QCOMPARE(result.exitStatus, 0);
    QVERIFY2(result.told.contains(
                 QString::fromUtf8("2 sweeps, 2 with a position, 0 waypoints, levels from 20.00 dBµV/m at 100 MHz to "
                                   "60.00 dBµV/m at 101 MHz")),
             qPrintable(result.told));
}

void TestDriveCommandInput::refusesAUnitOfAnotherFamily_data()
{
    QTest::addColumn<int>("unit");
    QTest::addColumn<QString>("reason");
    QTest::newRow("field strength") << kdBuVPerMetre
                                    << QString::fromUtf8("its levels are in dBµV/m, which can't be shown in dBm");
    QTest::newRow("an unknown unit") << 200 << "its levels are in an unknown unit";
}

void TestDriveCommandInput::refusesAUnitOfAnotherFamily()
{
    QFETCH(int, unit);
    QFETCH(QString, reason);
    const QString recording = saveRecording(path("a.mdr"), {positionedSweepAt(0, {20.0, 60.0}, unit)});
    const Run result = drive({recording, "--unit", "dBm"});
    QCOMPARE(result.exitStatus, 1);
    QCOMPARE(result.errors, "aveldoran: " + recording + ": " + reason + "\n");
    QVERIFY(!isWritten());
}

void TestDriveCommandInput::levelsOfOneValueNeedElevationZero()
{
    const QString recording =
        saveRecording(path("a.mdr"), {positionedSweepAt(0, {-50.0}), positionedSweepAt(1, {-50.0})});
    const Run result = drive({recording});
    QCOMPARE(result.exitStatus, 1);
    QCOMPARE(result.errors, "aveldoran: " + recording +
                                ": all levels are -50.00 dBm, which gives no heights; draw them "
                                "with --elevation 0\n");
    QVERIFY(!isWritten());
    QCOMPARE(drive({recording, "--elevation", "0"}).exitStatus, 0);
}

// Draws the row's sweep between two others; what is left out of it is told in that way, once.
void TestDriveCommandInput::verifyLeftOut(const QString &what, const QList<double> &maxima, const QList<double> &minima)
{
    QFETCH(QList<double>, levels);
    QFETCH(int, unit);
    const QString recording =
        saveRecording(path("a.mdr"), {positionedSweepAt(0, {-100.0, -50.0}), positionedSweepAt(1, levels, unit),
                                      positionedSweepAt(2, {-80.0, -60.0})});
    const Run result = drive({recording, "--unit", "dBm"});
    QCOMPARE(result.errors, QString());
    QCOMPARE(result.exitStatus, 0);
    QVERIFY2(result.told.endsWith("levels from -100.00 dBm at 100 MHz to -50.00 dBm at 101 MHz\n" + path("drive.kml") +
                                  ": left out: " + what + "\n"),
             qPrintable(result.told));
    const Kml document(m_folder->read("drive.kml"));
    QCOMPARE(document.heights("Maximum Values"), maxima);
    QCOMPARE(document.heights("Minimum Values"), minima);
}

void TestDriveCommandInput::pointsThatCanNotBeDrawnAreLeftOut_data()
{
    QTest::addColumn<QList<double>>("levels");
    QTest::addColumn<int>("unit");
    QTest::newRow("nothing of a power in decibels") << QList<double>{0.0, 1e-10} << kW;
    QTest::newRow("a level that is none") << QList<double>{-70.0, std::nan("")} << 0;
    QTest::newRow("a level without a bound") << QList<double>{-70.0, kInfinity} << 0;
    QTest::newRow("a first level without a bound") << QList<double>{-kInfinity, -70.0} << 0;
}

void TestDriveCommandInput::pointsThatCanNotBeDrawnAreLeftOut()
{
    verifyLeftOut("1 point with a level that can't be drawn", {200.0, 120.0, 160.0}, {0.0, 120.0, 80.0});
}

void TestDriveCommandInput::levelsThatCanNotBeDrawnAreLeftOut_data()
{
    QTest::addColumn<QList<double>>("levels");
    QTest::addColumn<int>("unit");
    const double nan = std::nan("");
    QTest::newRow("nothing of a power in decibels") << QList<double>{0.0, 0.0} << kW;
    QTest::newRow("levels that are none") << QList<double>{nan, nan} << 0;
    QTest::newRow("levels without a bound") << QList<double>{-kInfinity, kInfinity} << 0;
    QTest::newRow("a level of another family") << QList<double>{20.0, 30.0} << kdBuVPerMetre;
}

void TestDriveCommandInput::levelsThatCanNotBeDrawnAreLeftOut()
{
    verifyLeftOut("1 sweep with levels or a place that can't be drawn", {200.0, 160.0}, {0.0, 80.0});
}

void TestDriveCommandInput::refusesARecordingWithoutAnyLevel()
{
    const double nan = std::nan("");
    const QString none = saveRecording(path("a.mdr"), {positionedSweepAt(0, {nan, nan})});
    const Run result = drive({none});
    QCOMPARE(result.exitStatus, 1);
    QCOMPARE(result.errors, "aveldoran: " + none + ": no sweep with a position has levels that can be drawn\n");
    const QString empty = saveRecording(path("b.mdr"), {positionedSweepAt(0, {})});
    QCOMPARE(drive({empty}).errors, "aveldoran: " + empty + ": its sweeps have no points\n");
    QVERIFY(!isWritten());
}

QTEST_GUILESS_MAIN(TestDriveCommandInput)
#include "tst_drive_command_input.moc"
