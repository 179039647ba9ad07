#include "core/replaylog.h"

#include <QtCore/QEventLoop>
#include <QtCore/QPointer>
#include <QtCore/QTimer>

// How a replay begins and ends, and what its receivers may do meanwhile.

class TestAReplayProcessorReceivers : public QObject
{
    Q_OBJECT

private Q_SLOTS:
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

private:
    QString path(const char *name) const { return m_dir.filePath(QString::fromLatin1(name)); }

    QTemporaryDir m_dir;
};

// --- starting and stopping ---

void TestAReplayProcessorReceivers::loopGoesOnUntilItIsStopped()
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

void TestAReplayProcessorReceivers::loopOfNothingStops()
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

void TestAReplayProcessorReceivers::stoppingTellsFromTheEventLoop()
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

void TestAReplayProcessorReceivers::stoppingWhatIsNotPlayingDoesNothing()
{
    AMdrDocument document;
    AReplayProcessor processor(&document, nullptr, true);
    Log log(&processor);
    processor.stopPlayback();
    QTest::qWait(20);
    QVERIFY(log.entries.isEmpty());
}

void TestAReplayProcessorReceivers::aNewStartReplacesTheOldReplay()
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

void TestAReplayProcessorReceivers::aReplayCanBeStartedAgain_data()
{
    addMemoryAndFile();
}

void TestAReplayProcessorReceivers::aReplayCanBeStartedAgain()
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

void TestAReplayProcessorReceivers::aReplayIsPlayingUntilItTellsItsEnd()
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

void TestAReplayProcessorReceivers::aReceiversChangesReachNoLaterReplay_data()
{
    addMemoryAndFile();
}

void TestAReplayProcessorReceivers::aReceiversChangesReachNoLaterReplay()
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

void TestAReplayProcessorReceivers::aReceiverMayKeepItsSweeps()
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

void TestAReplayProcessorReceivers::sweepsWithoutAPositionStayWithout()
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

void TestAReplayProcessorReceivers::peaksAreSuppressedBeforeDelivery()
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

void TestAReplayProcessorReceivers::anEventLoopInASlotPausesTheReplay()
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

void TestAReplayProcessorReceivers::deletingTheProcessorInASlotIsSafe_data()
{
    QTest::addColumn<QString>("at");
    for (const char *at : {"s1", "p10", "s3", "stop"})
        QTest::newRow(at) << at;
}

void TestAReplayProcessorReceivers::deletingTheProcessorInASlotIsSafe()
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

void TestAReplayProcessorReceivers::deletingTheDocumentInASlotStopsEarly_data()
{
    QTest::addColumn<QString>("at");
    QTest::addColumn<int>("speed");
    for (const char *at : {"s1", "p10", "s3", "p20"}) {
        for (const int speed : {kFast, 100})
            QTest::addRow("%s at %d", at, speed) << at << speed;
    }
}

void TestAReplayProcessorReceivers::deletingTheDocumentInASlotStopsEarly()
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

void TestAReplayProcessorReceivers::deletingTheDocumentWhileWaitingStopsEarly()
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

void TestAReplayProcessorReceivers::loadingTheDocumentStopsEarly()
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

void TestAReplayProcessorReceivers::stoppingInASlotStopsEarly()
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

void TestAReplayProcessorReceivers::startingInASlotBeginsAnew()
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

void TestAReplayProcessorReceivers::aFileThatBreaksStopsEarly()
{
    AMdrDocument document;
    document.addSweep(markedSweep(1));
    document.addSweep(markedSweep(2, 0, 10000)); // more than the reader holds
    document.addSweep(markedSweep(3));
    QVERIFY(document.save(path("a.mdr")) && document.load(path("a.mdr")));
    QVERIFY(QFile::resize(path("a.mdr"), 200000));
    AReplayProcessor processor(&document, nullptr, true);
    Log log(&processor);
    processor.startPlayback(kFast, false, -1, -1);
    QTRY_COMPARE(log.stops, 1);
    QCOMPARE(log.text(), QStringLiteral("s1 false"));
}

QTEST_GUILESS_MAIN(TestAReplayProcessorReceivers)
#include "tst_areplayprocessor_receivers.moc"
