#include "core/areplayprocessor.h"
#include "core/recordings.h"

#include <QtCore/QElapsedTimer>
#include <QtCore/QEventLoop>
#include <QtCore/QPointer>
#include <QtCore/QTimer>
#include <QtTest/QtTest>

#include <limits>

namespace {

constexpr int kFast = -1;

QString markOf(const ASweep &sweep)
{
    return QStringLiteral("s%1").arg(sweep.values.isEmpty() ? 0.0 : sweep.values.first().level);
}

// Notes what a processor delivers: "s1 p10 s2 true".
class Log : public QObject
{
public:
    QStringList entries;
    QList<qint64> times; // ms since the log began
    int stops = 0;

    explicit Log(AReplayProcessor *processor)
    {
        m_clock.start();
        connect(processor, &AReplayProcessor::gpsData, this, [this](const AGeoData &position) {
            add(QStringLiteral("p%1").arg(static_cast<double>(position.latitude)));
        });
        connect(processor, &AReplayProcessor::sweepFinished, this, [this](ASweep &sweep) { add(markOf(sweep)); });
        connect(processor, &AReplayProcessor::playbackStopped, this, [this](bool status) {
            add(status ? QStringLiteral("true") : QStringLiteral("false"));
            ++stops;
        });
    }

    QString text() const { return entries.join(QLatin1Char(' ')); }

private:
    void add(const QString &entry)
    {
        entries += entry;
        times += m_clock.elapsed();
    }

    QElapsedTimer m_clock;
};

} // namespace

class TestAReplayProcessor : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void recordsComeInRecordedOrder_data();
    void recordsComeInRecordedOrder();
    void whatComesIsWhatWasRecorded();
    void nothingIsEmittedFromInsideStartPlayback();
    void theEventLoopRunsBetweenTwoRecords();
    void rangesOfSweeps_data();
    void rangesOfSweeps();
    void withoutPositionsOnlySweepsCome();
    void anEmptyDocumentIsPlayedAtOnce();
    void positionsAloneArePlayed();
    void recordsOfALaterProgramArePassedOver();
    void aNullDocumentStopsEarly();
    void theDocumentsRecordsAtTheStartCount();

    void speeds_data();
    void speeds();
    void recordsComeAtTheirTimes();
    void clocksOfTheirOwnDoNotDelayEachOther();
    void strangeTimesAreNotWaitedFor_data();
    void strangeTimesAreNotWaitedFor();
    void aSlowReceiverIsCaughtUp();

    void loopGoesOnUntilItIsStopped();
    void loopOfNothingStops();
    void stoppingTellsFromTheEventLoop();
    void stoppingWhatIsNotPlayingDoesNothing();
    void aNewStartReplacesTheOldReplay();
    void aReplayCanBeStartedAgain_data();
    void aReplayCanBeStartedAgain();
    void aReplayIsPlayingUntilItTellsItsEnd();

    void aReceiversChangesReachNoLaterReplay_data();
    void aReceiversChangesReachNoLaterReplay();
    void aReceiverMayKeepItsSweeps();
    void sweepsWithoutAPositionStayWithout();
    void peaksAreSuppressedBeforeDelivery();
    void anEventLoopInASlotPausesTheReplay();
    void deletingTheProcessorInASlotIsSafe_data();
    void deletingTheProcessorInASlotIsSafe();
    void deletingTheDocumentInASlotStopsEarly_data();
    void deletingTheDocumentInASlotStopsEarly();
    void deletingTheDocumentWhileWaitingStopsEarly();
    void loadingTheDocumentStopsEarly();
    void stoppingInASlotStopsEarly();
    void startingInASlotBeginsAnew();
    void aFileThatBreaksStopsEarly();

    void theDeviceIsTheRecordings();
    void theDeviceOutlivesTheDocument();
    void itIsAChildOfItsParent();

private:
    QString path(const char *name) const { return m_dir.filePath(QString::fromLatin1(name)); }
    static QString play(AMdrDocument *document, int first = -1, int last = -1);

    QTemporaryDir m_dir;
};

QString TestAReplayProcessor::play(AMdrDocument *document, int first, int last)
{
    AReplayProcessor processor(document, nullptr, true);
    Log log(&processor);
    processor.startPlayback(kFast, false, first, last);
    return QTest::qWaitFor([&] { return log.stops > 0; }) ? log.text() : QStringLiteral("no end");
}

void TestAReplayProcessor::recordsComeInRecordedOrder_data()
{
    QTest::addColumn<bool>("isFromFile");
    QTest::newRow("memory") << false;
    QTest::newRow("file") << true;
}

void TestAReplayProcessor::recordsComeInRecordedOrder()
{
    QFETCH(bool, isFromFile);
    AMdrDocument document;
    fillWithFive(&document);
    if (isFromFile)
        QVERIFY(document.save(path("a.mdr")) && document.load(path("a.mdr")));
    QCOMPARE(play(&document), QStringLiteral("s1 p10 s2 s3 p20 true"));
}

void TestAReplayProcessor::whatComesIsWhatWasRecorded()
{
    AMdrDocument document;
    ASweep recorded = markedSweep(1, 0, 100);
    recorded.setGeoData(richPosition());
    document.addSweep(recorded);
    document.addGeoData(richPosition());
    AReplayProcessor processor(&document, nullptr, true);
    int same1 = 0;
    int same2 = 0;
    connect(&processor, &AReplayProcessor::sweepFinished, this,
            [&](ASweep &sweep) { same1 += same(sweep, recorded) ? 1 : 100; });
    connect(&processor, &AReplayProcessor::gpsData, this,
            [&](const AGeoData &position) { same2 += same(position, richPosition()) ? 1 : 100; });
    QSignalSpy stopped(&processor, &AReplayProcessor::playbackStopped);
    processor.startPlayback(kFast, false, -1, -1);
    QVERIFY(stopped.wait());
    QCOMPARE(same1, 1);
    QCOMPARE(same2, 1);
}

void TestAReplayProcessor::nothingIsEmittedFromInsideStartPlayback()
{
    AMdrDocument document;
    fillWithFive(&document);
    AMdrDocument nothing;
    for (AMdrDocument *one : {&document, &nothing, static_cast<AMdrDocument *>(nullptr)}) {
        for (const int speed : {kFast, 0, 1, 1000}) {
            AReplayProcessor processor(one, nullptr, true);
            Log log(&processor);
            processor.startPlayback(speed, false, -1, -1);
            processor.startPlayback(speed, true, 7, 3);
            processor.stopPlayback();
            QVERIFY(log.entries.isEmpty());
        }
    }
}

void TestAReplayProcessor::theEventLoopRunsBetweenTwoRecords()
{
    AMdrDocument document;
    for (int i = 0; i < 50; ++i)
        document.addSweep(markedSweep(i));
    AReplayProcessor processor(&document, nullptr, true);
    Log log(&processor);
    int atOnce = 0;
    int most = 0;
    connect(&processor, &AReplayProcessor::sweepFinished, this, [&] {
        most = std::max(most, ++atOnce);
        QMetaObject::invokeMethod(
            this, [&] { atOnce = 0; }, Qt::QueuedConnection);
    });
    processor.startPlayback(kFast, false, -1, -1);
    QTRY_COMPARE(log.stops, 1);
    QCOMPARE(most, 1);
}

void TestAReplayProcessor::rangesOfSweeps_data()
{
    QTest::addColumn<int>("first");
    QTest::addColumn<int>("last");
    QTest::addColumn<QString>("expected");
    // p5 s0 s1 p10 s2 s3 p20
    QTest::newRow("all") << -1 << -1 << "p5 s0 s1 p10 s2 s3 p20 true";
    QTest::newRow("from the first sweep") << 0 << -1 << "s0 s1 p10 s2 s3 p20 true";
    QTest::newRow("to the last sweep") << -1 << 3 << "p5 s0 s1 p10 s2 s3 true";
    QTest::newRow("from one to another") << 1 << 2 << "s1 p10 s2 true";
    QTest::newRow("one") << 2 << 2 << "s2 true";
    QTest::newRow("to one") << -1 << 1 << "p5 s0 s1 true";
    QTest::newRow("from one") << 2 << -1 << "s2 s3 p20 true";
    QTest::newRow("to behind the end") << 1 << 99 << "s1 p10 s2 s3 true";
    QTest::newRow("from behind the end") << 4 << -1 << "false";
    QTest::newRow("wholly behind the end") << 4 << 9 << "false";
    QTest::newRow("backwards") << 2 << 1 << "false";
    QTest::newRow("any negative number") << -7 << std::numeric_limits<int>::min() << "p5 s0 s1 p10 s2 s3 p20 true";
    QTest::newRow("largest") << std::numeric_limits<int>::max() << std::numeric_limits<int>::max() << "false";
}

void TestAReplayProcessor::rangesOfSweeps()
{
    QFETCH(int, first);
    QFETCH(int, last);
    QFETCH(QString, expected);
    AMdrDocument document;
    document.addGeoData(markedPosition(5));
    document.addSweep(markedSweep(0));
    fillWithFive(&document);
    QCOMPARE(play(&document, first, last), expected);
}

void TestAReplayProcessor::withoutPositionsOnlySweepsCome()
{
    AMdrDocument document;
    fillWithFive(&document);
    AReplayProcessor processor(&document, nullptr, false);
    Log log(&processor);
    processor.startPlayback(kFast, false, -1, -1);
    QTRY_COMPARE(log.stops, 1);
    QCOMPARE(log.text(), QStringLiteral("s1 s2 s3 true"));
}

void TestAReplayProcessor::anEmptyDocumentIsPlayedAtOnce()
{
    AMdrDocument document;
    QCOMPARE(play(&document), QStringLiteral("true"));
    QCOMPARE(play(&document, 0, -1), QStringLiteral("false")); // there is no such sweep
}

void TestAReplayProcessor::positionsAloneArePlayed()
{
    AMdrDocument document;
    document.addGeoData(markedPosition(1));
    document.addGeoData(markedPosition(2));
    QCOMPARE(play(&document), QStringLiteral("p1 p2 true"));
}

void TestAReplayProcessor::recordsOfALaterProgramArePassedOver()
{
    AMdrDocument document;
    document.addSweep(markedSweep(1));
    QVERIFY(document.save(path("a.mdr")));
    const QByteArray sweep = chunkBytes("SWEP", chunksOf(readFile(path("a.mdr"))).first().payload);
    const QByteArray other = chunkBytes("NEW ", "n");
    QVERIFY(writeFile(path("new.mdr"), fileBytes({other, sweep, other, other, sweep, other})));
    QVERIFY(document.load(path("new.mdr")));
    QCOMPARE(play(&document), QStringLiteral("s1 s1 true"));
    QVERIFY(writeFile(path("new.mdr"), fileBytes({other})));
    QVERIFY(document.load(path("new.mdr")));
    QCOMPARE(play(&document), QStringLiteral("true"));
}

void TestAReplayProcessor::aNullDocumentStopsEarly()
{
    QCOMPARE(play(nullptr), QStringLiteral("false"));
    AReplayProcessor processor(nullptr, nullptr, true);
    QVERIFY(!processor.device());
}

void TestAReplayProcessor::theDocumentsRecordsAtTheStartCount()
{
    AMdrDocument document;
    fillWithFive(&document);
    AReplayProcessor processor(&document, nullptr, true);
    Log log(&processor);
    connect(&processor, &AReplayProcessor::sweepFinished, this, [&] { document.addSweep(markedSweep(9)); });
    processor.startPlayback(kFast, false, -1, -1);
    QTRY_COMPARE(log.stops, 1);
    QCOMPARE(log.text(), QStringLiteral("s1 p10 s2 s3 p20 true"));
    QCOMPARE(document.sweepCount(), 6);
}

// --- time ---

void TestAReplayProcessor::speeds_data()
{
    QTest::addColumn<int>("speed");
    QTest::addColumn<int>("least"); // ms for a recording of 600 ms
    QTest::addColumn<int>("most");  // generous, for a busy machine
    QTest::newRow("real time") << 1 << 599 << 3000;
    QTest::newRow("twice") << 2 << 299 << 2500;
    QTest::newRow("ten times") << 10 << 59 << 2000;
    QTest::newRow("as fast as it goes") << kFast << 0 << 400;
    QTest::newRow("0 is that too") << 0 << 0 << 400;
    QTest::newRow("the largest") << std::numeric_limits<int>::max() << 0 << 400;
}

void TestAReplayProcessor::speeds()
{
    QFETCH(int, speed);
    QFETCH(int, least);
    QFETCH(int, most);
    AMdrDocument document;
    for (int i = 0; i <= 6; ++i)
        document.addSweep(markedSweep(i, 100 * i));
    AReplayProcessor processor(&document, nullptr, true);
    Log log(&processor);
    processor.startPlayback(speed, false, -1, -1);
    QTRY_COMPARE(log.stops, 1);
    QVERIFY2(log.times.last() >= least && log.times.last() <= most, qPrintable(QString::number(log.times.last())));
}

void TestAReplayProcessor::recordsComeAtTheirTimes()
{
    AMdrDocument document;
    document.addSweep(markedSweep(1, 0));
    document.addSweep(markedSweep(2, 200));
    document.addSweep(markedSweep(3, 210));
    document.addSweep(markedSweep(4, 400));
    AReplayProcessor processor(&document, nullptr, true);
    Log log(&processor);
    processor.startPlayback(1, false, -1, -1);
    QTRY_COMPARE(log.stops, 1);
    QVERIFY(log.times[0] < 200);
    QVERIFY(log.times[1] >= 199);
    QVERIFY(log.times[2] >= 209);
    QVERIFY(log.times[3] >= 399);
}

// The positions' clock is two hours ahead; each kind keeps its own distances.
void TestAReplayProcessor::clocksOfTheirOwnDoNotDelayEachOther()
{
    const qint64 ahead = 2 * 3600 * 1000;
    AMdrDocument document;
    for (int i = 0; i < 4; ++i) {
        document.addSweep(markedSweep(i, 100 * i));
        document.addGeoData(markedPosition(static_cast<float>(i), ahead + 100 * i + 50));
    }
    AReplayProcessor processor(&document, nullptr, true);
    Log log(&processor);
    processor.startPlayback(1, false, -1, -1);
    QTRY_COMPARE(log.stops, 1);
    QCOMPARE(log.text(), QStringLiteral("s0 p0 s1 p1 s2 p2 s3 p3 true"));
    QVERIFY(log.times.last() >= 299);
    QVERIFY(log.times.last() < 3000);
}

void TestAReplayProcessor::strangeTimesAreNotWaitedFor_data()
{
    QTest::addColumn<QDateTime>("time"); // of the second of three sweeps
    QTest::newRow("none") << QDateTime();
    QTest::newRow("an hour back") << utc(-3600 * 1000);
    QTest::newRow("years ahead") << utc(0).addYears(20);
    QTest::newRow("years back") << utc(0).addYears(-44);
    QTest::newRow("the same") << utc(0);
}

void TestAReplayProcessor::strangeTimesAreNotWaitedFor()
{
    QFETCH(QDateTime, time);
    AMdrDocument document;
    document.addSweep(markedSweep(1, 0));
    document.addSweep(ASweep(points({2}), time, time));
    document.addSweep(ASweep(points({3}), time, time.isValid() ? time.addMSecs(100) : QDateTime()));
    AReplayProcessor processor(&document, nullptr, true);
    Log log(&processor);
    processor.startPlayback(1, false, -1, -1);
    QTRY_COMPARE(log.stops, 1);
    QCOMPARE(log.text(), QStringLiteral("s1 s2 s3 true"));
    QVERIFY(log.times.last() >= (time.isValid() ? 99 : 0));
}

void TestAReplayProcessor::aSlowReceiverIsCaughtUp()
{
    AMdrDocument document;
    for (int i = 0; i < 10; ++i)
        document.addSweep(markedSweep(i, 30 * i));
    AReplayProcessor processor(&document, nullptr, true);
    Log log(&processor);
    bool isFirst = true;
    connect(&processor, &AReplayProcessor::sweepFinished, this, [&] {
        if (isFirst)
            QTest::qSleep(300);
        isFirst = false;
    });
    processor.startPlayback(1, false, -1, -1);
    QTRY_COMPARE(log.stops, 1);
    QVERIFY2(log.times.last() < 550, qPrintable(QString::number(log.times.last()))); // not 300 + 270
}

// --- starting and stopping ---

void TestAReplayProcessor::loopGoesOnUntilItIsStopped()
{
    AMdrDocument document;
    fillWithFive(&document);
    AReplayProcessor processor(&document, nullptr, true);
    Log log(&processor);
    processor.startPlayback(kFast, true, 1, 2);
    QTRY_VERIFY(log.entries.size() >= 20);
    QCOMPARE(log.stops, 0);
    processor.stopPlayback();
    QTRY_COMPARE(log.stops, 1);
    QCOMPARE(log.entries.takeLast(), QStringLiteral("false"));
    for (int i = 0; i < log.entries.size(); ++i)
        QCOMPARE(log.entries[i], i % 2 == 0 ? QStringLiteral("s2") : QStringLiteral("s3"));
}

void TestAReplayProcessor::loopOfNothingStops()
{
    AMdrDocument document;
    AReplayProcessor processor(&document, nullptr, true);
    Log log(&processor);
    processor.startPlayback(kFast, true, -1, -1);
    QTRY_COMPARE(log.stops, 1);
    QCOMPARE(log.text(), QStringLiteral("true"));

    document.addGeoData(markedPosition(1));
    AReplayProcessor withoutPositions(&document, nullptr, false);
    Log second(&withoutPositions);
    withoutPositions.startPlayback(kFast, true, -1, -1);
    QTRY_COMPARE(second.stops, 1);
}

void TestAReplayProcessor::stoppingTellsFromTheEventLoop()
{
    AMdrDocument document;
    fillWithFive(&document);
    AReplayProcessor processor(&document, nullptr, true);
    Log log(&processor);
    processor.startPlayback(1, false, -1, -1);
    processor.stopPlayback();
    processor.stopPlayback();
    QCOMPARE(log.stops, 0);
    QTRY_COMPARE(log.stops, 1);
    QTest::qWait(20);
    QCOMPARE(log.text(), QStringLiteral("false"));
}

void TestAReplayProcessor::stoppingWhatIsNotPlayingDoesNothing()
{
    AMdrDocument document;
    AReplayProcessor processor(&document, nullptr, true);
    Log log(&processor);
    processor.stopPlayback();
    QTest::qWait(20);
    QVERIFY(log.entries.isEmpty());
}

void TestAReplayProcessor::aNewStartReplacesTheOldReplay()
{
    AMdrDocument document;
    fillWithFive(&document);
    AReplayProcessor processor(&document, nullptr, true);
    Log log(&processor);
    processor.startPlayback(1, true, -1, -1);
    processor.startPlayback(kFast, false, 2, 2);
    QTRY_COMPARE(log.stops, 1);
    processor.startPlayback(1, false, -1, -1);
    processor.stopPlayback();
    processor.startPlayback(kFast, false, 0, 0);
    QTRY_COMPARE(log.stops, 2);
    QTest::qWait(20);
    QCOMPARE(log.text(), QStringLiteral("s3 true s1 true"));
}

void TestAReplayProcessor::aReplayCanBeStartedAgain_data()
{
    recordsComeInRecordedOrder_data();
}

void TestAReplayProcessor::aReplayCanBeStartedAgain()
{
    QFETCH(bool, isFromFile);
    AMdrDocument document;
    fillWithFive(&document);
    if (isFromFile)
        QVERIFY(document.save(path("a.mdr")) && document.load(path("a.mdr")));
    AReplayProcessor processor(&document, nullptr, true);
    Log log(&processor);
    for (int i = 1; i <= 3; ++i) {
        processor.startPlayback(kFast, false, 1, -1);
        QTRY_COMPARE(log.stops, i);
    }
    QCOMPARE(log.text(), QStringLiteral("s2 s3 p20 true s2 s3 p20 true s2 s3 p20 true"));
}

void TestAReplayProcessor::aReplayIsPlayingUntilItTellsItsEnd()
{
    AMdrDocument document;
    fillWithFive(&document);
    AReplayProcessor processor(&document, nullptr, true);
    QVERIFY(!processor.isPlaying());
    bool wasPlaying = false;
    bool isPlayingAtStop = true;
    connect(&processor, &AReplayProcessor::gpsData, this, [&] { wasPlaying = processor.isPlaying(); });
    connect(&processor, &AReplayProcessor::playbackStopped, this, [&] { isPlayingAtStop = processor.isPlaying(); });
    processor.startPlayback(kFast, false, -1, -1);
    QVERIFY(processor.isPlaying());
    QTRY_VERIFY(!processor.isPlaying());
    QVERIFY(wasPlaying);
    QVERIFY(!isPlayingAtStop);
}

// --- receivers ---

void TestAReplayProcessor::aReceiversChangesReachNoLaterReplay_data()
{
    recordsComeInRecordedOrder_data();
}

void TestAReplayProcessor::aReceiversChangesReachNoLaterReplay()
{
    QFETCH(bool, isFromFile);
    AMdrDocument document;
    for (int i = 1; i <= 3; ++i)
        document.addSweep(markedSweep(i, i, 100 * i));
    if (isFromFile)
        QVERIFY(document.save(path("a.mdr")) && document.load(path("a.mdr")));
    AReplayProcessor processor(&document, nullptr, true);
    int wrong = 0;
    int number = 0;
    connect(&processor, &AReplayProcessor::sweepFinished, this, [&](ASweep &sweep) {
        number = number % 3 + 1;
        wrong += same(sweep, markedSweep(number, number, 100 * number)) ? 0 : 1;
        sweep.setGeoData(richPosition());
        sweep.values[0].level = 1e9;
        sweep.values.append(point(5, 5));
        sweep.values.removeAt(1);
        if (number == 2)
            sweep = ASweep();
    });
    QSignalSpy stopped(&processor, &AReplayProcessor::playbackStopped);
    for (int i = 0; i < 3; ++i) {
        processor.startPlayback(kFast, false, -1, -1);
        QVERIFY(stopped.wait());
    }
    QCOMPARE(number, 3);
    QCOMPARE(wrong, 0);
}

void TestAReplayProcessor::aReceiverMayKeepItsSweeps()
{
    AMdrDocument document;
    for (int i = 0; i < 20; ++i)
        document.addSweep(markedSweep(i, i, 50 + i % 3));
    QVERIFY(document.save(path("a.mdr")) && document.load(path("a.mdr")));
    AReplayProcessor processor(&document, nullptr, true);
    QList<ASweep> kept;
    connect(&processor, &AReplayProcessor::sweepFinished, this, [&](ASweep &sweep) {
        if (kept.size() % 2 == 0)
            sweep.values[1].level = 77.0;
        kept.append(sweep);
    });
    QSignalSpy stopped(&processor, &AReplayProcessor::playbackStopped);
    processor.startPlayback(kFast, false, -1, -1);
    QVERIFY(stopped.wait());
    QCOMPARE(kept.size(), 20);
    for (int i = 0; i < 20; ++i) {
        ASweep expected = markedSweep(i, i, 50 + i % 3);
        if (i % 2 == 0)
            expected.values[1].level = 77.0;
        QVERIFY(same(kept[i], expected));
    }
}

void TestAReplayProcessor::sweepsWithoutAPositionStayWithout()
{
    AMdrDocument document;
    fillWithFive(&document); // with positions beside the sweeps
    AReplayProcessor processor(&document, nullptr, true);
    int positioned = 0;
    int sweeps = 0;
    connect(&processor, &AReplayProcessor::sweepFinished, this, [&](ASweep &sweep) {
        ++sweeps;
        positioned += sweep.geoData().isEmpty() ? 0 : 1;
    });
    QSignalSpy stopped(&processor, &AReplayProcessor::playbackStopped);
    processor.startPlayback(kFast, false, -1, -1);
    QVERIFY(stopped.wait());
    QCOMPARE(sweeps, 3);
    QCOMPARE(positioned, 0);
}

void TestAReplayProcessor::peaksAreSuppressedBeforeDelivery()
{
    ASweep recorded(points(std::vector<double>(50, -100.0)));
    recorded.values[25].level = -70.0;
    AMdrDocument document;
    document.addSweep(recorded);
    document.addSweep(ASweep());
    document.addSweep(ASweep(points(std::vector<double>(50, kNaN))));
    AReplayProcessor processor(&document, nullptr, true);
    QList<double> peaks;
    connect(&processor, &AReplayProcessor::sweepFinished, this, [&](ASweep &sweep) {
        if (!sweep.values.isEmpty() && !std::isnan(sweep.values[0].level))
            peaks += sweep.values[25].level;
    });
    QSignalSpy stopped(&processor, &AReplayProcessor::playbackStopped);
    for (int mode = 0; mode <= 4; ++mode) {
        processor.setPeakSuppression(static_cast<ASweepProcessor::PeakSuppressionMode>(mode));
        processor.startPlayback(kFast, false, -1, -1);
        QVERIFY(stopped.wait());
    }
    QCOMPARE(peaks, QList<double>({-80.0, -90.0, -100.0, -70.0, -70.0}));
    ASweep kept;
    QVERIFY(document.readSweep(0, &kept));
    QVERIFY(same(kept, recorded));
}

void TestAReplayProcessor::anEventLoopInASlotPausesTheReplay()
{
    AMdrDocument document;
    fillWithFive(&document);
    AReplayProcessor processor(&document, nullptr, true);
    QStringList order;
    connect(&processor, &AReplayProcessor::sweepFinished, this, [&](ASweep &sweep) {
        const QString mark = markOf(sweep);
        order += mark + QStringLiteral(" begins");
        QEventLoop loop;
        QTimer::singleShot(10, &loop, &QEventLoop::quit);
        loop.exec();
        order += markOf(sweep) + QStringLiteral(" ends");
    });
    QSignalSpy stopped(&processor, &AReplayProcessor::playbackStopped);
    processor.startPlayback(kFast, false, -1, -1);
    QVERIFY(stopped.wait());
    QCOMPARE(order.join(QLatin1String(", ")),
             QStringLiteral("s1 begins, s1 ends, s2 begins, s2 ends, s3 begins, s3 ends"));
}

void TestAReplayProcessor::deletingTheProcessorInASlotIsSafe_data()
{
    QTest::addColumn<QString>("at");
    for (const char *at : {"s1", "p10", "s3", "stop"})
        QTest::newRow(at) << at;
}

void TestAReplayProcessor::deletingTheProcessorInASlotIsSafe()
{
    QFETCH(QString, at);
    AMdrDocument document;
    fillWithFive(&document);
    QVERIFY(document.save(path("a.mdr")) && document.load(path("a.mdr")));
    QPointer<AReplayProcessor> processor = new AReplayProcessor(&document, nullptr, true);
    processor->setPeakSuppression(ASweepProcessor::SuppressionNF);
    QStringList seen;
    connect(processor, &AReplayProcessor::sweepFinished, this, [&](ASweep &sweep) {
        seen += markOf(sweep);
        if (seen.last() == at)
            delete processor;
        sweep.values.clear(); // still the receiver's
    });
    connect(processor, &AReplayProcessor::gpsData, this, [&] {
        seen += QStringLiteral("p10");
        if (at == seen.last())
            delete processor;
    });
    connect(processor, &AReplayProcessor::playbackStopped, this, [&] { delete processor; });
    processor->startPlayback(kFast, false, -1, 2);
    QTRY_VERIFY(!processor);
    QTest::qWait(20);
    QCOMPARE(seen.last(), at == QLatin1String("stop") ? QStringLiteral("s3") : at);
}

void TestAReplayProcessor::deletingTheDocumentInASlotStopsEarly_data()
{
    QTest::addColumn<QString>("at");
    QTest::addColumn<int>("speed");
    for (const char *at : {"s1", "p10", "s3", "p20"}) {
        for (const int speed : {kFast, 100})
            QTest::addRow("%s at %d", at, speed) << at << speed;
    }
}

void TestAReplayProcessor::deletingTheDocumentInASlotStopsEarly()
{
    QFETCH(QString, at);
    QFETCH(int, speed);
    auto document = std::make_unique<AMdrDocument>();
    fillWithFive(document.get());
    QVERIFY(document->save(path("a.mdr")) && document->load(path("a.mdr")));
    AReplayProcessor processor(document.get(), nullptr, true);
    Log log(&processor);
    const auto deleteAt = [&] {
        if (log.entries.last() == at)
            document.reset();
    };
    connect(&processor, &AReplayProcessor::sweepFinished, this, deleteAt);
    connect(&processor, &AReplayProcessor::gpsData, this, deleteAt);
    processor.startPlayback(speed, true, -1, -1);
    QTRY_COMPARE(log.stops, 1);
    QVERIFY(!document);
    QVERIFY2(log.text().endsWith(at + QStringLiteral(" false")), qPrintable(log.text()));
    processor.startPlayback(kFast, false, -1, -1);
    QTRY_COMPARE(log.stops, 2);
    QCOMPARE(log.entries.last(), QStringLiteral("false"));
}

void TestAReplayProcessor::deletingTheDocumentWhileWaitingStopsEarly()
{
    auto document = std::make_unique<AMdrDocument>();
    document->addSweep(markedSweep(1, 0));
    document->addSweep(markedSweep(2, 3600 * 1000));
    AReplayProcessor processor(document.get(), nullptr, true);
    Log log(&processor);
    processor.startPlayback(1, false, -1, -1);
    QTRY_COMPARE(log.text(), QStringLiteral("s1"));
    document.reset();
    QCOMPARE(log.stops, 0);
    QTRY_COMPARE(log.text(), QStringLiteral("s1 false"));
}

void TestAReplayProcessor::loadingTheDocumentStopsEarly()
{
    AMdrDocument document;
    fillWithFive(&document);
    QVERIFY(document.save(path("a.mdr")));
    AReplayProcessor processor(&document, nullptr, true);
    Log log(&processor);
    connect(&processor, &AReplayProcessor::gpsData, this, [&] { QVERIFY(document.load(path("a.mdr"))); });
    processor.startPlayback(kFast, false, -1, -1);
    QTRY_COMPARE(log.stops, 1);
    QCOMPARE(log.text(), QStringLiteral("s1 p10 false"));
}

void TestAReplayProcessor::stoppingInASlotStopsEarly()
{
    AMdrDocument document;
    fillWithFive(&document);
    AReplayProcessor processor(&document, nullptr, true);
    Log log(&processor);
    connect(&processor, &AReplayProcessor::gpsData, this, [&] { processor.stopPlayback(); });
    processor.startPlayback(kFast, false, -1, -1);
    QTRY_COMPARE(log.stops, 1);
    QTest::qWait(20);
    QCOMPARE(log.text(), QStringLiteral("s1 p10 false"));
}

void TestAReplayProcessor::startingInASlotBeginsAnew()
{
    AMdrDocument document;
    fillWithFive(&document);
    AReplayProcessor processor(&document, nullptr, true);
    Log log(&processor);
    int starts = 0;
    const auto startAgain = [&] {
        if (++starts < 3)
            processor.startPlayback(kFast, false, 1, -1);
    };
    connect(&processor, &AReplayProcessor::gpsData, this, startAgain);
    processor.startPlayback(kFast, false, -1, -1);
    QTRY_COMPARE(log.stops, 1);
    QCOMPARE(log.text(), QStringLiteral("s1 p10 s2 s3 p20 s2 s3 p20 true"));

    int again = 0;
    connect(&processor, &AReplayProcessor::playbackStopped, this, [&] {
        if (++again == 1)
            processor.startPlayback(kFast, false, 0, 0);
    });
    log.entries.clear();
    processor.startPlayback(kFast, false, 2, 2);
    QTRY_COMPARE(log.stops, 3);
    QCOMPARE(log.text(), QStringLiteral("s3 true s1 true"));
}

void TestAReplayProcessor::aFileThatBreaksStopsEarly()
{
    AMdrDocument document;
    document.addSweep(markedSweep(1));
    document.addSweep(markedSweep(2, 0, 10000)); // more than the reader holds
    document.addSweep(markedSweep(3));
    QVERIFY(document.save(path("a.mdr")) && document.load(path("a.mdr")));
    QVERIFY(QFile::resize(path("a.mdr"), 200000));
    QCOMPARE(play(&document), QStringLiteral("s1 false"));
}

// --- the device ---

void TestAReplayProcessor::theDeviceIsTheRecordings()
{
    AMdrDocument document;
    document.addSweep(markedSweep(1));
    const AReplayProcessor without(&document, nullptr, true);
    QVERIFY(!without.device());
    document.setDevice(OtherDevice());
    QVERIFY(document.save(path("a.mdr")) && document.load(path("a.mdr")));
    const AReplayProcessor processor(&document, nullptr, true);
    QVERIFY(processor.device());
    QVERIFY(processor.device()->hasCapability(AVeldoranDevice::NoiseFloorSuppression));
    QCOMPARE(processor.device()->informationList(), OtherDevice().informationList());
    const AVeldoranInterface &interface = processor;
    QCOMPARE(interface.device(), processor.device());
}

void TestAReplayProcessor::theDeviceOutlivesTheDocument()
{
    auto document = std::make_unique<AMdrDocument>();
    document->setDevice(OtherDevice());
    const AReplayProcessor processor(document.get(), nullptr, true);
    document.reset();
    QCOMPARE(processor.device()->informationList().at(AVeldoranDevice::SerialNumber), QStringLiteral("777"));
}

void TestAReplayProcessor::itIsAChildOfItsParent()
{
    AMdrDocument document;
    fillWithFive(&document);
    auto parent = std::make_unique<QObject>();
    QPointer<AReplayProcessor> processor = new AReplayProcessor(&document, parent.get(), true);
    processor->startPlayback(kFast, true, -1, -1);
    parent.reset();
    QVERIFY(!processor);
    QTest::qWait(10);
}

QTEST_GUILESS_MAIN(TestAReplayProcessor)
#include "tst_areplayprocessor.moc"
