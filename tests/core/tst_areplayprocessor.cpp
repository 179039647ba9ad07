#include "core/replaylog.h"

#include <QtCore/QPointer>

#include <limits>

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
    void aLatePositionDelaysThoseBehindIt();
    void aLoopBeginsAtOnce();
    void strangeTimesAreNotWaitedFor_data();
    void strangeTimesAreNotWaitedFor();
    void aSlowReceiverIsCaughtUp();

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
    Replay replay(document);
    return replay.playToTheEnd(kFast, first, last) ? replay.log.text() : QStringLiteral("no end");
}

void TestAReplayProcessor::recordsComeInRecordedOrder_data()
{
    addMemoryAndFile();
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
    Replay replay(&document);
    int atOnce = 0;
    int most = 0;
    connect(&replay.processor, &AReplayProcessor::sweepFinished, this, [&] {
        most = std::max(most, ++atOnce);
        QMetaObject::invokeMethod(
            this, [&] { atOnce = 0; }, Qt::QueuedConnection);
    });
    QVERIFY(replay.playToTheEnd());
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
    Replay replay(&document, false);
    QVERIFY(replay.playToTheEnd());
    QCOMPARE(replay.log.text(), QStringLiteral("s1 s2 s3 true"));
}

void TestAReplayProcessor::anEmptyDocumentIsPlayedAtOnce()
{
    AMdrDocument document;
    QCOMPARE(play(&document), QStringLiteral("true"));
    QCOMPARE(play(&document, 0, -1), QStringLiteral("false")); // there is no such sweep
    QCOMPARE(play(&document, -1, 0), QStringLiteral("false"));
}

void TestAReplayProcessor::positionsAloneArePlayed()
{
    AMdrDocument document;
    document.addGeoData(markedPosition(1));
    document.addGeoData(markedPosition(2));
    QCOMPARE(play(&document), QStringLiteral("p1 p2 true"));
    QCOMPARE(play(&document, 0, -1), QStringLiteral("false"));
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
    Replay replay(&document);
    connect(&replay.processor, &AReplayProcessor::sweepFinished, this, [&] { document.addSweep(markedSweep(9)); });
    QVERIFY(replay.playToTheEnd());
    QCOMPARE(replay.log.text(), QStringLiteral("s1 p10 s2 s3 p20 true"));
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
    QTest::newRow("as fast as it goes") << kFast << 0 << 590;
    QTest::newRow("0 is that too") << 0 << 0 << 590;
    QTest::newRow("the largest") << std::numeric_limits<int>::max() << 0 << 590;
}

void TestAReplayProcessor::speeds()
{
    QFETCH(int, speed);
    QFETCH(int, least);
    QFETCH(int, most);
    AMdrDocument document;
    for (int i = 0; i <= 6; ++i)
        document.addSweep(markedSweep(i, 100 * i));
    Replay replay(&document);
    QVERIFY(replay.playToTheEnd(speed));
    QVERIFY2(replay.log.times.last() >= least && replay.log.times.last() <= most,
             qPrintable(QString::number(replay.log.times.last())));
}

void TestAReplayProcessor::recordsComeAtTheirTimes()
{
    AMdrDocument document;
    document.addSweep(markedSweep(1, 0));
    document.addSweep(markedSweep(2, 200));
    document.addSweep(markedSweep(3, 210));
    document.addSweep(markedSweep(4, 400));
    Replay replay(&document);
    QVERIFY(replay.playToTheEnd(1));
    QVERIFY(replay.log.times[0] < 200);
    QVERIFY(replay.log.times[1] >= 199);
    QVERIFY(replay.log.times[2] >= 209);
    QVERIFY(replay.log.times[3] >= 399);
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
    Replay replay(&document);
    QVERIFY(replay.playToTheEnd(1));
    QCOMPARE(replay.log.text(), QStringLiteral("s0 p0 s1 p1 s2 p2 s3 p3 true"));
    QVERIFY(replay.log.times.last() >= 299);
    QVERIFY(replay.log.times.last() < 3000);
}

// It waits for the sweep before it, and the positions keep their distance.
void TestAReplayProcessor::aLatePositionDelaysThoseBehindIt()
{
    AMdrDocument document;
    document.addSweep(markedSweep(1, 0));
    document.addGeoData(markedPosition(1, 0));
    document.addSweep(markedSweep(2, 300));
    document.addGeoData(markedPosition(2, 50));
    document.addGeoData(markedPosition(3, 250));
    Replay replay(&document);
    QVERIFY(replay.playToTheEnd(1));
    QCOMPARE(replay.log.text(), QStringLiteral("s1 p1 s2 p2 p3 true"));
    QVERIFY(replay.log.times[3] >= 299);
    QVERIFY(replay.log.times[4] >= 499);
}

// Here the first record is the latest.
void TestAReplayProcessor::aLoopBeginsAtOnce()
{
    AMdrDocument document;
    document.addSweep(markedSweep(1, 5000));
    document.addGeoData(markedPosition(1, 5000));
    document.addSweep(markedSweep(2, 0));
    document.addGeoData(markedPosition(2, 0));
    AReplayProcessor processor(&document, nullptr, true);
    Log log(&processor);
    processor.startPlayback(1, true, -1, -1);
    QTRY_VERIFY(log.entries.size() >= 10);
    QVERIFY2(log.times[9] < 5000, qPrintable(QString::number(log.times[9])));
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
    Replay replay(&document);
    QVERIFY(replay.playToTheEnd(1));
    QCOMPARE(replay.log.text(), QStringLiteral("s1 s2 s3 true"));
    QVERIFY(replay.log.times.last() >= (time.isValid() ? 99 : 0));
}

void TestAReplayProcessor::aSlowReceiverIsCaughtUp()
{
    AMdrDocument document;
    for (int i = 0; i < 10; ++i)
        document.addSweep(markedSweep(i, 60 * i));
    Replay replay(&document);
    bool isFirst = true;
    connect(&replay.processor, &AReplayProcessor::sweepFinished, this, [&] {
        if (isFirst)
            QTest::qSleep(500);
        isFirst = false;
    });
    QVERIFY(replay.playToTheEnd(1));
    QVERIFY2(replay.log.times.last() < 950, qPrintable(QString::number(replay.log.times.last()))); // not 500 + 540
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
