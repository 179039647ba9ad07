#include "apps/commandchecks.h"
#include "apps/drivefiles.h"
#include "apps/programrun.h"

#include <QtTest/QtTest>

#include <algorithm>

#include <sys/resource.h>
#include <sys/stat.h>

// What a good recording becomes, and where it goes.

class TestDriveCommand : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void drawsARecordingWithItsPositions();
    void theHighestLevelReachesTheElevation();
    void goesToStandardOutputWithoutAFile();
    void theSameDriveGivesTheSameDocument();
    void takesPositionsFromAGpxTrack();
    void takesPositionsFromAnNmeaLog();
    void severalSourcesAddUp();
    void aWaypointNeedsToLieWithinTheTolerance();
    void namesWaypointsAfterTheirTime();
    void optionsChangeTheDocument_data();
    void optionsChangeTheDocument();
    void elevationZeroKeepsTheAltitude();
    void showsLevelsInAnotherUnit();
    void labelsPoints_data();
    void labelsPoints();
    void drawsSensors_data();
    void drawsSensors();
    void leavesPathsOfOneValueOut();
    void suppressesPeaksAsTheUserWants();
    void aLongRecordingTakesNoMoreMemory();
    void showsProgressOnATerminalOnly();
    void replacesAnOldFile();
    void keepsAnOldFileOnFailure();
    void refusesOutputs_data();
    void refusesOutputs();
    void reportsOutputThatCanNotBeWritten();
    void refusesWrongUsage_data();
    void refusesWrongUsage();
    void helps();

private:
    QString path(const QString &name) const { return m_folder->path(name); }
    QString simulated(const QStringList &options = {});
    Kml kml(const QStringList &arguments) { return Kml(run(QStringList{"drive"} + arguments).output.toUtf8()); }

    std::unique_ptr<Folder> m_folder;
};

void TestDriveCommand::init()
{
    m_folder = std::make_unique<Folder>();
    qputenv("XDG_CONFIG_HOME", path("config").toLocal8Bit()); // no settings
}

// A recording of the example track, a sweep a second.
QString TestDriveCommand::simulated(const QStringList &options)
{
    const QString name = path("drive.mdr");
    const Run result = run(
        QStringList{"record", "--simulate", "--gpx", kGpx, "--interval", "1000", "--points", "51", "--output", name} +
        options);
    if (result.exitStatus != 0)
        qFatal("could not record: %s", qPrintable(result.errors));
    return name;
}

void TestDriveCommand::drawsARecordingWithItsPositions()
{
    const Run result = run({"drive", simulated(), "--output", path("drive.kml")});
    QCOMPARE(result.errors, QString());
    QCOMPARE(result.exitStatus, 0);
    QVERIFY2(
        QRegularExpression("^\\S+/drive\\.kml: written; 853 sweeps, 853 with a position, 853 waypoints, levels from "
                           "-1[01]\\d\\.\\d\\d dBm at \\d+(\\.\\d+)? MHz to -[2-5]\\d\\.\\d\\d dBm at \\S+ MHz\n$")
            .match(result.told)
            .hasMatch(),
        qPrintable(result.told));
    QCOMPARE(result.output, QString());

    const Kml document(m_folder->read("drive.kml"));
    QVERIFY(document.isRead());
    QCOMPARE(document.name(), QString("drive"));
    QCOMPARE(document.folders(),
             QStringList({"Original GPS Data", "Maximum Values", "Average Values", "Minimum Values"}));
    for (const QString &name : document.folders()) {
        QCOMPARE(document.path(name).size(), 853);
        QCOMPARE(document.texts(name, "description").size(), 853);
    }
    // The positions are those of the track.
    const QList<Place> track = placesOf(contentOf(kGpx), "trkpt");
    const QStringList points = document.path("Maximum Values");
    for (int i = 1; i < track.size(); ++i) { // a point in two seconds; each sweep's place is that of its end
        const QStringList point = points.at(2 * i - 1).split(',');
        QVERIFY(std::fabs(point.at(0).toDouble() - track.at(i).longitude) < 2e-5);
        QVERIFY(std::fabs(point.at(1).toDouble() - track.at(i).latitude) < 2e-5);
    }
}

void TestDriveCommand::theHighestLevelReachesTheElevation()
{
    const QString recording =
        saveRecording(path("a.mdr"), {positionedSweepAt(0, {-100.0, -50.0}), positionedSweepAt(1, {-75.0, -60.0}),
                                      positionedSweepAt(2, {-90.0, -80.0})});
    const Kml document = kml({recording});
    QCOMPARE(document.heights("Maximum Values"), QList<double>({200.0, 160.0, 80.0}));
    QCOMPARE(document.heights("Minimum Values"), QList<double>({0.0, 100.0, 40.0}));
    const Kml low = kml({recording, "--elevation", "50"});
    QCOMPARE(low.heights("Maximum Values"), QList<double>({50.0, 40.0, 20.0}));
}

void TestDriveCommand::goesToStandardOutputWithoutAFile()
{
    const QString recording =
        saveRecording(path("a.mdr"), {positionedSweepAt(0, {-100.0, -50.0}), positionedSweepAt(1, {-75.5, -60.0})});
    const Run printed = run({"drive", recording});
    QCOMPARE(printed.exitStatus, 0);
    const QString told(": written; 2 sweeps, 2 with a position, 0 waypoints, levels from -100.00 dBm at 100 MHz to "
                       "-50.00 dBm at 101 MHz\n");
    QCOMPARE(printed.told, "standard output" + told);
    const Run written = run({"drive", recording, "--output", path("a.kml")});
    QCOMPARE(written.told, path("a.kml") + told);
    QCOMPARE(written.output, QString());
    QCOMPARE(m_folder->read("a.kml"), printed.output.toUtf8());
}

void TestDriveCommand::theSameDriveGivesTheSameDocument()
{
    const QStringList command = {"drive", simulated(), "--gpx", kGpx, "--sensors", "compass,pressure", "--time-track"};
    const QString first = run(command).output;
    QVERIFY(first.size() > 100000);
    for (int i = 0; i < 3; ++i)
        QCOMPARE(run(command).output, first);
}

void TestDriveCommand::takesPositionsFromAGpxTrack()
{
    const QString recording = simulated({"--no-positions"});
    const Run result = run({"drive", recording, "--gpx", kGpx, "--output", path("drive.kml")});
    QCOMPARE(result.errors, QString());
    QCOMPARE(result.exitStatus, 0);
    QVERIFY2(result.told.contains("853 sweeps, 852 with a position, 427 waypoints"), qPrintable(result.told));
    const Kml document(m_folder->read("drive.kml"));
    QCOMPARE(document.path("Original GPS Data").size(), kGpxPoints);
    QCOMPARE(document.path("Maximum Values").size(), 852);

    const QList<Place> track = placesOf(contentOf(kGpx), "trkpt");
    for (const QString &name : {QString("Original GPS Data"), QString("Maximum Values")}) {
        for (const QString &point : document.path(name)) {
            const double longitude = point.section(',', 0, 0).toDouble();
            const double latitude = point.section(',', 1, 1).toDouble();
            QVERIFY(std::any_of(track.begin(), track.end(), [&](const Place &place) {
                return std::fabs(place.longitude - longitude) < 3e-6 && std::fabs(place.latitude - latitude) < 3e-6;
            }));
        }
    }
}

void TestDriveCommand::takesPositionsFromAnNmeaLog()
{
    ASimulatedDevice device;
    device.setBegin(QDateTime(QDate(2025, 6, 4), QTime(23, 57, 30), Qt::UTC), 1000);
    device.setRange(AFrequency("87.5 MHz"), AFrequency("108 MHz"), 21);
    AMdrDocument document;
    for (int i = 0; i < 400; ++i) {
        ASweep sweep = device.sweep(i);
        sweep.setGeoData(AGeoData());
        document.addSweep(sweep);
    }
    QVERIFY(document.save(path("harbour.mdr")));
    const Run result = run({"drive", path("harbour.mdr"), "--nmea", kNmea, "--output", path("harbour.kml"), "--sensors",
                            "compass,gyro,pressure"});
    QCOMPARE(result.exitStatus, 0);
    QVERIFY2(result.told.contains("400 sweeps, 400 with a position, 447 waypoints"), qPrintable(result.told));
    const Kml kml(m_folder->read("harbour.kml"));
    QCOMPARE(kml.path("Original GPS Data").size(), kNmeaRecords);
    const QStringList points = kml.path("Maximum Values");
    QCOMPARE(points.size(), 400);
    QCOMPARE(points.first().section(',', 0, 1), QString("-4.387103,54.320801"));
    QVERIFY(kml.folders().contains("Compass Heading"));
    QVERIFY(kml.folders().contains("Gyro Z-Axis"));
    QVERIFY(kml.folders().contains("Air Pressure"));
}

void TestDriveCommand::severalSourcesAddUp()
{
    const QString recording = simulated({"--no-positions"});
    const QString begin = m_folder->write("begin.gpx", gpxOf(trackPoint(47.0, 15.0, "2025-03-18T09:12:04Z")));
    const QString end = m_folder->write("end.gpx", gpxOf(trackPoint(47.1, 15.0, "2025-03-18T09:26:00Z")));
    const Run result =
        run({"drive", recording, "--gpx", begin, "--nmea", kNmea, "--gpx", end, "--output", path("drive.kml")});
    QCOMPARE(result.exitStatus, 0);
    QVERIFY(result.told.contains("449 waypoints"));
    const QStringList way = Kml(m_folder->read("drive.kml")).path("Original GPS Data");
    QCOMPARE(way.at(0), QString("15.000000,47.000000,100.000000")); // by time
    QCOMPARE(way.at(1), QString("15.000000,47.099998,100.000000"));
}

void TestDriveCommand::aWaypointNeedsToLieWithinTheTolerance()
{
    QList<ASweep> sweeps;
    for (int second = 0; second < 60; ++second)
        sweeps.append(sweepAt(second, {-100.0, -50.0}));
    const QString recording = saveRecording(path("a.mdr"), sweeps);
    QByteArray points;
    for (const char *second : {"04", "14", "24", "34", "44", "54"}) // ten seconds apart
        points += trackPoint(47.0, 15.0, QByteArray("2025-03-18T09:12:") + second + "Z");
    const QString track = m_folder->write("a.gpx", gpxOf(points));
    const auto positioned = [&](const QString &tolerance) {
        const QString told =
            run({"drive", recording, "--gpx", track, "--tolerance", tolerance, "--output", path("a.kml")}).told;
        return QRegularExpression("(\\d+) with a position").match(told).captured(1).toInt();
    };
    QVERIFY(positioned("0") <= 6);
    QVERIFY(positioned("0") >= 4);
    QVERIFY(positioned("3000") > positioned("0"));
    QVERIFY(positioned("10000") >= 50);
}

void TestDriveCommand::namesWaypointsAfterTheirTime()
{
    const QByteArray points =
        trackPoint(47.0, 15.0, "2025-03-18T09:12:04Z") +
        "<trkpt lat=\"47.1\" lon=\"15\"><time>2025-03-18T09:12:05Z</time><name>Bridge</name></trkpt>";
    const QString recording = saveRecording(path("a.mdr"), {sweepAt(0, {-100.0, -50.0}), sweepAt(1, {-90.0, -60.0})});
    const Kml document = kml({recording, "--gpx", m_folder->write("a.gpx", gpxOf(points))});
    QCOMPARE(document.texts("Original GPS Data", "name"), QStringList({"2025-03-18T09:12:04Z", "Bridge"}));
    QCOMPARE(document.texts("Maximum Values", "name").first(), QString("2025-03-18T09:12:04Z Maximum"));
}

void TestDriveCommand::optionsChangeTheDocument_data()
{
    QTest::addColumn<QStringList>("options");
    QTest::addColumn<QString>("element"); // counted in the whole document
    QTest::addColumn<int>("without");
    QTest::addColumn<int>("with");
    QTest::newRow("no balloons: the waypoints keep theirs")
        << QStringList{"--no-balloons"} << "<Point>" << 4 * 20 << 20;
    QTest::newRow("no balloons: a ceiling instead") << QStringList{"--no-balloons"} << "<name>Maximum</name>" << 0 << 3;
    QTest::newRow("no GPS track") << QStringList{"--no-gps-track"} << "<name>Original GPS Data</name>" << 1 << 0;
    QTest::newRow("neither") << QStringList{"--no-gps-track", "--no-balloons"} << "<Point>" << 4 * 20 << 0;
    QTest::newRow("a time track") << QStringList{"--time-track"} << "<gx:Track>" << 0 << 4;
    QTest::newRow("a time track has the times") << QStringList{"--time-track"} << "<when>" << 0 << 4 * 20;
    QTest::newRow("the way at its altitude")
        << QStringList{"--absolute-altitude"} << "<altitudeMode>absolute</altitudeMode>" << 0 << 21;
    QTest::newRow("the way on the ground")
        << QStringList{"--absolute-altitude"} << "<altitudeMode>clampToGround</altitudeMode>" << 21 << 0;
    QTest::newRow("a sensor") << QStringList{"--sensors", "pressure"} << "<name>Air Pressure</name>" << 0 << 1;
}

void TestDriveCommand::optionsChangeTheDocument()
{
    QFETCH(QStringList, options);
    QFETCH(QString, element);
    QList<ASweep> sweeps;
    AMdrDocument document;
    for (int second = 0; second < 20; ++second) {
        document.addGeoData(positionAt(second));
        document.addSweep(positionedSweepAt(second, {-100.0 + second, -50.0}));
    }
    QVERIFY(document.save(path("a.mdr")));
    QTEST(run({"drive", path("a.mdr")}).output.count(element), "without");
    const Run result = run(QStringList{"drive", path("a.mdr")} + options);
    QCOMPARE(result.exitStatus, 0);
    QTEST(result.output.count(element), "with");
}

void TestDriveCommand::elevationZeroKeepsTheAltitude()
{
    const QString recording =
        saveRecording(path("a.mdr"), {positionedSweepAt(0, {-50.0}), positionedSweepAt(1, {-50.0})});
    const Kml document = kml({recording, "--elevation", "0"});
    QCOMPARE(document.heights("Maximum Values"), QList<double>({400.0, 400.0}));
}

void TestDriveCommand::showsLevelsInAnotherUnit()
{
    const QString recording =
        saveRecording(path("a.mdr"), {positionedSweepAt(0, {-100.0, -50.0}), positionedSweepAt(1, {-90.0, -60.0})});
    const QString own = run({"drive", recording}).told;
    QVERIFY(own.endsWith("levels from -100.00 dBm at 100 MHz to -50.00 dBm at 101 MHz\n"));
    for (const QString &unit : {QString("dBuV"), QString::fromUtf8("dBµV")}) {
        const Run result = run({"drive", recording, "--unit", unit});
        QCOMPARE(result.exitStatus, 0);
        QVERIFY2(result.told.endsWith(QString::fromUtf8("levels from 6.99 dBµV at 100 MHz to 56.99 dBµV at 101 MHz\n")),
                 qPrintable(result.told));
        QVERIFY(result.output.contains(QString::fromUtf8("Maximum Value:&lt;/td>&lt;td>56.990 dBµV")));
        QCOMPARE(Kml(result.output.toUtf8()).heights("Maximum Values"), QList<double>({200.0, 160.0}));
    }
    const Run watts = run({"drive", recording, "--unit", "W"});
    QVERIFY2(watts.output.contains("Maximum Value:&lt;/td>&lt;td>10.000 nW"), "a linear unit has a prefix");
}

void TestDriveCommand::labelsPoints_data()
{
    QTest::addColumn<QString>("kind");
    QTest::addColumn<QString>("label");
    QTest::newRow("name") << "name"
                          << "2025-03-18T09:12:04Z Maximum";
    QTest::newRow("time") << "time"
                          << "2025-03-18T09:12:04Z";
    QTest::newRow("value") << "value"
                           << "2025-03-18T09:12:04Z Maximum (-50.00 dBm @ 101.000000 MHz)";
    QTest::newRow("none") << "none" << QString();
}

void TestDriveCommand::labelsPoints()
{
    QFETCH(QString, kind);
    const QString recording = saveRecording(path("a.mdr"), {positionedSweepAt(0, {-100.0, -50.0})});
    const Kml document = kml({recording, "--labels", kind});
    QTEST(document.texts("Maximum Values", "name").value(0), "label");
}

void TestDriveCommand::drawsSensors_data()
{
    QTest::addColumn<QString>("names");
    QTest::addColumn<QStringList>("folders");
    const QStringList compass = {"Compass Heading"};
    const QStringList tilt = {"Tilt X-Axis (Pitch)", "Tilt Y-Axis (Roll)"};
    const QStringList gyro = {"Gyro Z-Axis"}; // the others are 0 all the way
    const QStringList pressure = {"Air Pressure"};
    QTest::newRow("compass") << "compass" << compass + tilt;
    QTest::newRow("gyro") << "gyro" << tilt + gyro;
    QTest::newRow("pressure") << "pressure" << pressure;
    QTest::newRow("all") << "pressure, gyro,compass" << compass + tilt + gyro + pressure;
}

void TestDriveCommand::drawsSensors()
{
    QFETCH(QString, names);
    const Run result = run({"drive", simulated(), "--sensors", names, "--output", path("drive.kml")});
    QCOMPARE(result.errors, QString());
    QCOMPARE(result.exitStatus, 0);
    const Kml document(m_folder->read("drive.kml"));
    QTEST(QStringList(document.folders().mid(4)), "folders");
    for (const QString &name : document.folders().mid(4)) {
        const QList<double> heights = document.heights(name);
        QCOMPARE(*std::min_element(heights.begin(), heights.end()), 0.0);
        QCOMPARE(*std::max_element(heights.begin(), heights.end()), 200.0);
    }
}

void TestDriveCommand::leavesPathsOfOneValueOut()
{
    const Run result = run({"drive", simulated(), "--sensors", "gyro", "--output", path("drive.kml")});
    QCOMPARE(result.told.section('\n', 1),
             path("drive.kml") + ": left out: 2 paths of one value: Gyro X-Axis, Gyro Y-Axis\n");
    QVERIFY(!m_folder->read("drive.kml").contains("nan"));

    // A sensor that isn't there at all was asked for in vain.
    const QString recording =
        saveRecording(path("a.mdr"), {positionedSweepAt(0, {-100.0, -50.0}), positionedSweepAt(1, {-90.0, -60.0})});
    const Run missing = run({"drive", recording, "--sensors", "compass,pressure", "--output", path("a.kml")});
    QCOMPARE(missing.exitStatus, 1);
    QCOMPARE(missing.errors, "aveldoran: " + recording +
                                 ": left out: the path of the sensor 'compass', of which the "
                                 "positions have no values, or all the same\n");
    const Kml document(m_folder->read("a.kml"));
    QCOMPARE(document.folders().last(), QString("Air Pressure"));
    QVERIFY(!document.folders().contains("Compass Heading"));
}

void TestDriveCommand::suppressesPeaksAsTheUserWants()
{
    QList<double> levels;
    for (int i = 0; i < 41; ++i)
        levels.append(i == 20 ? -60.0 : -100.0 - i % 3);
    const QString recording = saveRecording(path("a.mdr"), {positionedSweepAt(0, levels)});
    QVERIFY(run({"drive", recording}).told.contains("to -60.00 dBm"));
    QVERIFY(QDir().mkpath(path("config/Aveldoran")));
    m_folder->write("config/Aveldoran/aveldoran.conf", "[SweepProcessor]\nPeakSuppression20=true\n");
    QVERIFY(run({"drive", recording}).told.contains("to -80.00 dBm"));
}

void TestDriveCommand::aLongRecordingTakesNoMoreMemory()
{
#ifdef __SANITIZE_ADDRESS__
    QSKIP("the sanitizer keeps what is released");
#else
    constexpr int kSweeps = 1500;
    ASimulatedDevice device;
    device.setRange(AFrequency("87.5 MHz"), AFrequency("108 MHz"), 2001);
    AMdrDocument document;
    QVERIFY(document.startRecording(path("long.mdr")));
    for (int i = 0; i < kSweeps; ++i)
        document.addSweep(device.sweep(i % 10));
    QVERIFY(document.finishRecording());
    QVERIFY(QFileInfo(path("long.mdr")).size() > 120000000);
    QCOMPARE(run({"drive", path("long.mdr"), "--output", path("long.kml")}).exitStatus, 0);
    rusage usage = {};
    QCOMPARE(getrusage(RUSAGE_CHILDREN, &usage), 0); // the largest of all so far
    QVERIFY2(usage.ru_maxrss < 100000, qPrintable(QString::number(usage.ru_maxrss)));
#endif
}

void TestDriveCommand::showsProgressOnATerminalOnly()
{
    const QStringList command = {"drive", simulated(), "--gpx", kGpx, "--output", path("drive.kml")};
    const Run result = runOnTerminal(command);
    QCOMPARE(result.exitStatus, 0);
    for (const char *text :
         {"reading " AVELDORAN_EXAMPLES_DIR, "measuring [", "%", "building the document", "writing "})
        QVERIFY2(result.errors.contains(text), text);
    const Run piped = run(command);
    QCOMPARE(piped.errors, QString());
    QVERIFY(result.errors.endsWith("\r\033[K" + QString(piped.told).replace("\n", "\r\n"))); // the progress is gone
}

void TestDriveCommand::replacesAnOldFile()
{
    m_folder->write("drive.KML", "old");
    QCOMPARE(run({"drive", simulated(), "--output", path("drive.KML")}).exitStatus, 0);
    QVERIFY(Kml(m_folder->read("drive.KML")).isRead());
    QCOMPARE(m_folder->names(), QStringList({"drive.KML", "drive.mdr"})); // and nothing beside it
}

void TestDriveCommand::keepsAnOldFileOnFailure()
{
    m_folder->write("drive.kml", "old");
    const QString recording = simulated();
    QProcess process; // a file may have 64 KiB
    process.start("bash", {"-c", "trap '' XFSZ; ulimit -f 64; exec \"$@\"", "bash", AVELDORAN_PROGRAM, "drive",
                           recording, "--output", path("drive.kml")});
    QVERIFY(process.waitForFinished());
    QCOMPARE(process.exitCode(), 1);
    QCOMPARE(process.readAllStandardOutput(), QByteArray());
    QCOMPARE(process.readAllStandardError(),
             "aveldoran: " + path("drive.kml").toUtf8() + ": can't be written: File too large\n");
    QCOMPARE(m_folder->read("drive.kml"), QByteArray("old"));
    QCOMPARE(m_folder->names(), QStringList({"drive.kml", "drive.mdr"}));
}

void TestDriveCommand::refusesOutputs_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("reason");
    QTest::newRow("in no directory") << "missing/a.kml"
                                     << "No such file or directory";
    QTest::newRow("a directory") << "directory.kml"
                                 << "Not a regular file";
    QTest::newRow("a pipe") << "pipe.kml"
                            << "Not a regular file";
}

void TestDriveCommand::refusesOutputs()
{
    QFETCH(QString, name);
    QFETCH(QString, reason);
    QVERIFY(QDir().mkpath(path("directory.kml")));
    QCOMPARE(mkfifo(qPrintable(path("pipe.kml")), 0600), 0);
    const QString recording = saveRecording(path("a.mdr"), {positionedSweepAt(0, {-100.0, -50.0})});
    const Run result = run({"drive", recording, "--output", path(name)});
    verifyFailed(result, path(name) + ": can't be written: " + reason);
}

void TestDriveCommand::reportsOutputThatCanNotBeWritten()
{
    const QString recording = saveRecording(path("a.mdr"), {positionedSweepAt(0, {-100.0, -50.0})});
    verifyReportsFullDisk({"drive", recording});
}

void TestDriveCommand::refusesWrongUsage_data()
{
    addWrongUsageColumns();
    QTest::newRow("no recording") << QStringList{} << "drive: a recording is missing; see 'aveldoran drive --help'";
    QTest::newRow("two recordings") << QStringList{"a.mdr", "b.mdr"} << "drive: expected one recording, found 2";
    QTest::newRow("an unknown option") << QStringList{"a.mdr", "--fast"} << "unknown option '--fast'";
    QTest::newRow("an unknown unit") << QStringList{"a.mdr", "--unit", "dBx"} << "drive: --unit expects dBm, dBW";
    QTest::newRow("no elevation") << QStringList{"a.mdr", "--elevation", "high"}
                                  << "drive: --elevation expects a whole number from 0 to 100000, not 'high'";
    QTest::newRow("below the ground") << QStringList{"a.mdr", "--elevation", "-1"} << "not '-1'";
    QTest::newRow("a negative tolerance") << QStringList{"a.mdr", "--tolerance", "-1"}
                                          << "drive: --tolerance expects a whole number from 0 to 86400000, not '-1'";
    QTest::newRow("an unknown sensor")
        << QStringList{"a.mdr", "--sensors", "compass,radar"}
        << "drive: --sensors expects compass, gyro or pressure, or several with commas between, not 'compass,radar'";
    QTest::newRow("no sensor") << QStringList{"a.mdr", "--sensors", ""} << "drive: --sensors expects";
    QTest::newRow("an unknown label") << QStringList{"a.mdr", "--labels", "big"}
                                      << "drive: --labels expects name, time, value or none, not 'big'";
    QTest::newRow("another kind of file")
        << QStringList{"a.mdr", "--output", "a.kmz"}
        << "drive: --output expects the name of a file that ends in .kml, not 'a.kmz'";
    QTest::newRow("an empty output") << QStringList{"a.mdr", "--output", ""}
                                     << "drive: --output expects the name of a file";
    QTest::newRow("an input as output") << QStringList{"a.mdr", "--gpx", kGpx, "--output", kGpx}
                                        << "drive: --output would replace '" + kGpx +
                                               "', which the command line names too";
}

void TestDriveCommand::refusesWrongUsage()
{
    verifyRefused({"drive"});
}

void TestDriveCommand::helps()
{
    verifyHelps("drive", {"--tolerance"});
}

QTEST_GUILESS_MAIN(TestDriveCommand)
#include "tst_drive_command.moc"
