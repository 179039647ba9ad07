#include "apps/commandchecks.h"
#include "apps/drivefiles.h"
#include "apps/programrun.h"

#include <core/aveldorandevice.h>

#include <QtCore/QStorageInfo>
#include <QtTest/QtTest>

#include <cmath>

#include <sys/stat.h>

class TestRecordCommand : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_folder = std::make_unique<Folder>(); }

    void recordsADriveAlongTheTrack();
    void theVehicleIsWhereTheTrackSays();
    void setsTheAnalyserUp();
    void theSameSeedGivesTheSameRecording();
    void leavesPositionsOutIfAsked();
    void writesAPositionRecordEachSecond_data();
    void writesAPositionRecordEachSecond();
    void recordsWhatIsWholeOfADamagedTrack();
    void passesOverPointsWithoutTimeOrPlace();
    void refusesTracks_data();
    void refusesTracks();
    void refusesOutputs_data();
    void refusesOutputs();
    void tellsWhenTheDiskIsFull();
    void isNotBegunWhereTheDiskHasNoRoom();
    void showsProgressOnATerminalOnly();
    void refusesWrongUsage_data();
    void refusesWrongUsage();
    void helps();

private:
    QStringList command(const QStringList &more = {}, const QString &gpx = kGpx) const
    {
        QStringList all{"record", "--simulate", "--gpx", gpx, "--output", output()};
        if (!more.contains("--points"))
            all += QStringList{"--points", "51"};
        return all + more;
    }
    QString output() const { return m_folder->path("drive.mdr"); }

    std::unique_ptr<Folder> m_folder;
};

namespace {

// Both in decimal degrees.
Place placeOf(const AGeoData &record)
{
    return {record.convertNmeaLatLonToDecimal(static_cast<double>(record.latitude)),
            record.convertNmeaLatLonToDecimal(static_cast<double>(record.longitude))};
}

} // namespace

void TestRecordCommand::recordsADriveAlongTheTrack()
{
    const Run result = run(command({"--interval", "1000"}));
    QCOMPARE(result.errors, QString());
    QCOMPARE(result.exitStatus, 0);
    QCOMPARE(result.output, QString());
    QCOMPARE(result.told, output() + ": written; 853 sweeps of 51 points, 87.5 MHz to 108 MHz, 2.0 MB\n");
    QCOMPARE(m_folder->names(), QStringList{"drive.mdr"});

    AMdrDocument recording;
    QVERIFY(recording.load(output()));
    QCOMPARE(recording.sweepCount(), 14 * 60 + 12 + 1);
    const std::unique_ptr<AVeldoranDevice> device(recording.createDevice());
    QVERIFY(device);
    QCOMPARE(device->informationList().at(AVeldoranDevice::SerialNumber), QString("1"));
    ASweep first;
    QVERIFY(recording.readSweep(recording.recordOfSweep(0), &first));
    QCOMPARE(first.startTime(), QDateTime(QDate(2025, 3, 18), QTime(9, 12, 4), Qt::UTC));
    ASweep last;
    QVERIFY(recording.readSweep(recording.recordOfSweep(852), &last));
    QCOMPARE(last.startTime(), QDateTime(QDate(2025, 3, 18), QTime(9, 26, 16), Qt::UTC));
}

void TestRecordCommand::theVehicleIsWhereTheTrackSays()
{
    QCOMPARE(run(command({"--interval", "2000"})).exitStatus, 0); // the distance of the points
    const QList<Place> track = placesOf(contentOf(kGpx), "trkpt");
    AMdrDocument recording;
    QVERIFY(recording.load(output()));
    QCOMPARE(recording.sweepCount(), track.size());
    for (int i = 0; i + 1 < track.size(); ++i) {
        ASweep sweep;
        QVERIFY(recording.readSweep(recording.recordOfSweep(i), &sweep));
        const Place place = placeOf(sweep.geoData()); // a millisecond before the next point
        QVERIFY(std::fabs(place.latitude - track.at(i + 1).latitude) < 2e-5);
        QVERIFY(std::fabs(place.longitude - track.at(i + 1).longitude) < 2e-5);
        QVERIFY(sweep.geoData().airPressure > 900.0F && sweep.geoData().airPressure < 950.0F);
    }
}

void TestRecordCommand::setsTheAnalyserUp()
{
    const Run result = run(
        command({"--start", "430 MHz", "--stop", "440MHz", "--points", "11", "--seed", "4711", "--interval", "60000"}));
    QCOMPARE(result.errors, QString());
    QCOMPARE(result.told, output() + ": written; 15 sweeps of 11 points, 430 MHz to 440 MHz, 10.7 kB\n");
    AMdrDocument recording;
    QVERIFY(recording.load(output()));
    const std::unique_ptr<AVeldoranDevice> device(recording.createDevice());
    QCOMPARE(device->informationList().at(AVeldoranDevice::SerialNumber), QString("4711"));
    ASweep sweep;
    QVERIFY(recording.readSweep(recording.recordOfSweep(14), &sweep));
    QCOMPARE(sweep.values.size(), 11);
    QVERIFY(sweep.values.first().frequency == AFrequency("430 MHz"));
    QVERIFY(sweep.values.last().frequency == AFrequency("440 MHz"));
    QCOMPARE(sweep.startTime(), QDateTime(QDate(2025, 3, 18), QTime(9, 26, 4), Qt::UTC));
}

void TestRecordCommand::theSameSeedGivesTheSameRecording()
{
    const QStringList options = {"--interval", "5000"};
    QCOMPARE(run(command(options)).exitStatus, 0);
    const QByteArray first = m_folder->read("drive.mdr");
    QCOMPARE(run(command(options)).exitStatus, 0); // and the file is replaced
    QCOMPARE(m_folder->read("drive.mdr"), first);
    QCOMPARE(run(command(options + QStringList{"--seed", "2"})).exitStatus, 0);
    QVERIFY(m_folder->read("drive.mdr") != first);
}

void TestRecordCommand::leavesPositionsOutIfAsked()
{
    QCOMPARE(run(command({"--interval", "1000", "--no-positions"})).exitStatus, 0);
    AMdrDocument recording;
    QVERIFY(recording.load(output()));
    QCOMPARE(recording.sweepCount(), 853);
    QCOMPARE(recording.recordCount(), 853);
    for (int i = 0; i < 853; i += 71) {
        ASweep sweep;
        QVERIFY(recording.readSweep(recording.recordOfSweep(i), &sweep));
        QVERIFY(sweep.geoData().isEmpty());
    }
}

void TestRecordCommand::writesAPositionRecordEachSecond_data()
{
    QTest::addColumn<int>("intervalMs");
    QTest::addColumn<int>("sweeps");
    QTest::addColumn<int>("positions");
    QTest::newRow("four sweeps a second") << 250 << 4 * 852 + 1 << 853;
    QTest::newRow("a sweep a second") << 1000 << 853 << 853;
    QTest::newRow("a sweep in ten seconds") << 10000 << 86 << 86;
}

void TestRecordCommand::writesAPositionRecordEachSecond()
{
    QFETCH(int, intervalMs);
    QFETCH(int, sweeps);
    QFETCH(int, positions);
    QCOMPARE(run(command({"--interval", QString::number(intervalMs), "--points", "2"})).exitStatus, 0);
    AMdrDocument recording;
    QVERIFY(recording.load(output()));
    QCOMPARE(recording.sweepCount(), sweeps);
    QCOMPARE(recording.recordCount() - sweeps, positions);
}

void TestRecordCommand::recordsWhatIsWholeOfADamagedTrack()
{
    const QByteArray whole = contentOf(kGpx);
    const QString cut = m_folder->write("cut.gpx", whole.left(whole.size() / 2));
    const Run result = run(command({"--interval", "1000"}, cut));
    QCOMPARE(result.exitStatus, 1);
    QVERIFY2(result.errors.startsWith("aveldoran: " + cut + ":"), qPrintable(result.errors));
    QCOMPARE(result.errors.count('\n'), 1);
    QVERIFY(result.told.startsWith(output() + ": written; 4"));
    AMdrDocument recording;
    QVERIFY(recording.load(output()));
    QVERIFY(recording.sweepCount() > 410 && recording.sweepCount() < 440);
}

void TestRecordCommand::passesOverPointsWithoutTimeOrPlace()
{
    const QString gpx = m_folder->write(
        "a.gpx",
        gpxOf("<trkpt lat=\"48\" lon=\"16\"/>" + trackPoint(47.0, 15.0, "2025-01-01T00:00:00Z") +
              trackPoint(0.0, 0.0, "2025-01-01T00:00:05Z") + trackPoint(47.001, 15.0, "2025-01-01T00:00:10Z")));
    QCOMPARE(run(command({"--interval", "1000"}, gpx)).exitStatus, 0);
    AMdrDocument recording;
    QVERIFY(recording.load(output()));
    QCOMPARE(recording.sweepCount(), 11);
    ASweep sweep;
    QVERIFY(recording.readSweep(recording.recordOfSweep(4), &sweep));
    QVERIFY(std::fabs(placeOf(sweep.geoData()).latitude - 47.0005) < 2e-5);
}

void TestRecordCommand::refusesTracks_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("reason");
    QTest::newRow("no GPX") << QByteArray("$GPGGA") << ": expected a GPX document, found none";
    QTest::newRow("nothing") << QByteArray("\n") << ": expected a GPX document, found none";
    QTest::newRow("another document") << QByteArray("<kml/>") << ": expected a GPX document, found the element 'kml'";
    QTest::newRow("a damaged document") << QByteArray("<gpx>\n<trk>\n</gpx>")
                                        << ":3:6: can't be read as GPX: tag mismatch";
    QTest::newRow("a document that is cut off")
        << QByteArray("<gpx>\n<trk>\n") << ":3:1: can't be read as GPX: unexpected end of file";
    QTest::newRow("a document beyond the bounds")
        << QByteArray("<gpx>\n") + QByteArray("<a>").repeated(1001)
        << ":2:3000: can't be read as GPX: Elements are nested more than 1000 deep";
    QTest::newRow("without a track") << QByteArray("<gpx/>")
                                     << ": no track (trk) to read; waypoints (wpt) and routes (rte) are not read";
    QTest::newRow("without times") << gpxOf("<trkpt lat=\"47\" lon=\"15\"/>")
                                   << ": no point has both a time and a place";
    QTest::newRow("without places") << gpxOf(trackPoint(0.0, 0.0, "2025-01-01T00:00:00Z"))
                                    << ": no point has both a time and a place";
    QTest::newRow("over fifty years") << gpxOf(trackPoint(47.0, 15.0, "1970-01-01T00:00:00Z") +
                                               trackPoint(47.0, 15.1, "2020-01-01T00:00:00Z"))
                                      << ": 6311347201 sweeps would be recorded, expected at most 10000000; give "
                                         "a longer --interval";
}

void TestRecordCommand::refusesTracks()
{
    QFETCH(QByteArray, content);
    QFETCH(QString, reason);
    const QString gpx = m_folder->write("a.gpx", content);
    const Run result = run(command({}, gpx));
    verifyFailed(result, gpx + reason);
    QCOMPARE(m_folder->names(), QStringList{"a.gpx"});
}

void TestRecordCommand::refusesOutputs_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("reason");
    QTest::newRow("in no directory") << "missing/drive.mdr"
                                     << "No such file or directory";
    QTest::newRow("a directory") << "."
                                 << "Not a regular file";
    QTest::newRow("a pipe") << "pipe"
                            << "Not a regular file";
}

void TestRecordCommand::refusesOutputs()
{
    QFETCH(QString, name);
    QFETCH(QString, reason);
    QCOMPARE(mkfifo(qPrintable(m_folder->path("pipe")), 0600), 0);
    const QString file = m_folder->path(name);
    const Run result = run({"record", "--simulate", "--gpx", kGpx, "--output", file});
    verifyFailed(result, file + ": can't be written: " + reason);
}

void TestRecordCommand::tellsWhenTheDiskIsFull()
{
    QProcess process; // a file may have 64 KiB
    process.start("bash", QStringList{"-c", "trap '' XFSZ; ulimit -f 64; exec \"$@\"", "bash", AVELDORAN_PROGRAM} +
                              command({"--interval", "1000"}));
    QVERIFY(process.waitForFinished());
    QCOMPARE(process.exitCode(), 1);
    QCOMPARE(process.readAllStandardOutput(), QByteArray());
    QCOMPARE(process.readAllStandardError(),
             "aveldoran: " + output().toUtf8() + ": can't be written: File too large\n");
    AMdrDocument recording;
    QVERIFY(!recording.load(output()));
    QVERIFY(recording.sweepCount() > 10); // what had room is there
}

void TestRecordCommand::isNotBegunWhereTheDiskHasNoRoom()
{
    m_folder->write("drive.mdr", "old");
    const qint64 sweeps = (14 * 60 + 12) * 1000 + 1;
    if (QStorageInfo(m_folder->path()).bytesAvailable() > sweeps * 42 * 1000000)
        QSKIP("The disk has room for 36 TB");
    const Run result = run(command({"--interval", "1", "--points", "1000000"}));
    QCOMPARE(result.exitStatus, 1);
    QVERIFY2(result.errors.startsWith("aveldoran: " + output() +
                                      ": can't be written: It would take 35.8 TB, and the disk has "),
             qPrintable(result.errors));
    QVERIFY(result.errors.endsWith("B; give a longer --interval or fewer --points\n"));
    QCOMPARE(m_folder->read("drive.mdr"), QByteArray("old"));
}

void TestRecordCommand::showsProgressOnATerminalOnly()
{
    const Run result = runOnTerminal(command());
    QCOMPARE(result.exitStatus, 0);
    const Run piped = run(command());
    QCOMPARE(piped.errors, QString());
    // The size that it tells beforehand is that of the file.
    const QString size = piped.told.section(", ", -1).trimmed();
    QVERIFY2(result.errors.contains("recording " + output() + ", " + size + " [..."), qPrintable(result.errors));
    QVERIFY(result.errors.endsWith("\r\033[K" + output() +
                                   ": written; 3409 sweeps of 51 points, 87.5 MHz to 108 MHz, " + size + "\r\n"));
}

void TestRecordCommand::refusesWrongUsage_data()
{
    addWrongUsageColumns();
    const QStringList whole = {"--simulate", "--gpx", kGpx, "--output", "drive.mdr"};
    QTest::newRow("no analyser") << QStringList(whole.mid(1)) << "record: --simulate is missing";
    QTest::newRow("no track") << QStringList{"--simulate", "--output", "drive.mdr"} << "record: --gpx is missing";
    QTest::newRow("no output") << QStringList{"--simulate", "--gpx", kGpx} << "record: --output is missing";
    QTest::newRow("an empty output") << QStringList{"--simulate", "--gpx", kGpx, "--output", ""}
                                     << "record: --output expects the name of a file";
    QTest::newRow("the track as output") << QStringList{"--simulate", "--gpx", kGpx, "--output", kGpx}
                                         << "record: --output would replace '" + kGpx + "'";
    QTest::newRow("an argument") << QStringList(whole + QStringList{"more"})
                                 << "record: expected no argument, found 'more'";
    QTest::newRow("an unknown option") << QStringList(whole + QStringList{"--loud"}) << "unknown option '--loud'";
    QTest::newRow("no interval") << QStringList(whole + QStringList{"--interval", "0"})
                                 << "record: --interval expects a whole number from 1 to 3600000, not '0'";
    QTest::newRow("one point") << QStringList(whole + QStringList{"--points", "1"})
                               << "record: --points expects a whole number from 2 to 1000000, not '1'";
    QTest::newRow("too many points") << QStringList(whole + QStringList{"--points", "1000001"}) << "not '1000001'";
    QTest::newRow("a negative seed") << QStringList(whole + QStringList{"--seed", "-1"})
                                     << "record: --seed expects a whole number from 0";
    QTest::newRow("no frequency") << QStringList(whole + QStringList{"--start", "low"})
                                  << "record: --start expects a frequency such as '100 MHz', not 'low'";
    QTest::newRow("an end below the begin")
        << QStringList(whole + QStringList{"--start", "200MHz"})
        << "record: --start expects a frequency below that of --stop, 108 MHz, not '200 MHz'";
}

void TestRecordCommand::refusesWrongUsage()
{
    const QByteArray track = contentOf(kGpx);
    verifyRefused({"record"});
    QCOMPARE(contentOf(kGpx), track);
}

void TestRecordCommand::helps()
{
    verifyHelps("record", {});
}

QTEST_GUILESS_MAIN(TestRecordCommand)
#include "tst_record_command.moc"
