#include "core/recordings.h"

#include <QtCore/QScopedPointer>
#include <QtCore/QTimeZone>
#include <QtTest/QtTest>

#include <limits>

// What a document holds, and what of it comes back from a file.

class TestAMdrDocument : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aNewDocumentIsEmpty();
    void recordsKeepTheirOrder();
    void recordsOutOfRangeAreNotThere();
    void aRecordOfAnotherTypeIsNotRead();
    void aCallersSweepChangesNothing();
    void readingOverAnOldSweepGivesTheNewOne_data();
    void readingOverAnOldSweepGivesTheNewOne();

    void sweepsSurviveAFile_data();
    void sweepsSurviveAFile();
    void positionsSurviveAFile();
    void timesSurviveAFile_data();
    void timesSurviveAFile();
    void localTimeOfAnotherZoneKeepsWhatItsClockShowed();
    void timesThatNoFileHoldsAreNone();
    void frequenciesSurviveAFile_data();
    void frequenciesSurviveAFile();
    void theOrderSurvivesAFile();
    void anEmptyDocumentSurvivesAFile();
    void aDeviceSurvivesAFile();
    void withoutADeviceThereIsNone();
    void theLastDeviceCounts();
    void recordTimesAreThoseOfTheRecords();

    void loadReplacesTheContent();
    void loadTellsThatTheContentWasReplaced();
    void aLoadedFileMayBeReplacedOrDeleted();
    void aLoadedDocumentCanBeSavedOverItsFile();
    void recordsAreAddedToALoadedDocument();
    void aLoadedFileThatIsChangedInPlaceIsNoticed();

private:
    QString path(const char *name) const { return m_dir.filePath(QString::fromLatin1(name)); }
    bool saveAndLoad(const AMdrDocument &document, AMdrDocument *loaded) const;
    bool loadFive(AMdrDocument *loaded) const;

    QTemporaryDir m_dir;
};

bool TestAMdrDocument::saveAndLoad(const AMdrDocument &document, AMdrDocument *loaded) const
{
    QString errorText;
    const bool ok = document.save(path("a.mdr"), &errorText) && loaded->load(path("a.mdr"), &errorText);
    if (!ok)
        qWarning("%s", qPrintable(errorText));
    return ok && errorText.isEmpty();
}

bool TestAMdrDocument::loadFive(AMdrDocument *loaded) const
{
    AMdrDocument document;
    fillWithFive(&document);
    return saveAndLoad(document, loaded);
}

void TestAMdrDocument::aNewDocumentIsEmpty()
{
    const AMdrDocument document;
    QCOMPARE(document.sweepCount(), 0);
    QCOMPARE(document.recordCount(), 0);
    QVERIFY(!document.isRecording());
    QVERIFY(!document.createDevice());
}

void TestAMdrDocument::recordsKeepTheirOrder()
{
    AMdrDocument document;
    fillWithFive(&document);
    QCOMPARE(document.sweepCount(), 3);
    QCOMPARE(document.recordCount(), 5);
    QCOMPARE(recordsText(document), QStringLiteral("s1 p10 s2 s3 p20"));
    QCOMPARE(document.recordOfSweep(0), 0);
    QCOMPARE(document.recordOfSweep(1), 2);
    QCOMPARE(document.recordOfSweep(2), 3);
    QCOMPARE(document.recordType(2), AMdrDocument::SweepRecord);
    QCOMPARE(document.recordType(1), AMdrDocument::GeoDataRecord);
}

void TestAMdrDocument::recordsOutOfRangeAreNotThere()
{
    AMdrDocument document;
    fillWithFive(&document);
    qint64 time = 0;
    for (const int record : {-1, 5, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()}) {
        ASweep sweep;
        AGeoData position;
        QString errorText;
        QCOMPARE(document.recordType(record), AMdrDocument::OtherRecord);
        QVERIFY(!document.readSweep(record, &sweep, &errorText));
        QVERIFY(!errorText.isEmpty());
        QVERIFY(!document.readGeoData(record, &position));
        QVERIFY(!document.recordTime(record, &time));
    }
    for (const int sweep : {-1, 3})
        QCOMPARE(document.recordOfSweep(sweep), -1);
}

void TestAMdrDocument::aRecordOfAnotherTypeIsNotRead()
{
    AMdrDocument document;
    fillWithFive(&document);
    ASweep sweep;
    AGeoData position;
    QString sweepError;
    QString positionError;
    QVERIFY(!document.readSweep(1, &sweep, &sweepError));
    QVERIFY(!document.readGeoData(0, &position, &positionError));
    QVERIFY(!sweepError.isEmpty());
    QVERIFY(!positionError.isEmpty());
}

void TestAMdrDocument::aCallersSweepChangesNothing()
{
    AMdrDocument document;
    ASweep sweep = markedSweep(1);
    document.addSweep(sweep);
    sweep.values[0].level = 99.0;
    ASweep read;
    QVERIFY(document.readSweep(0, &read));
    QCOMPARE(read.values[0].level, 1.0);
    read.values[0].level = 77.0;
    QCOMPARE(recordsText(document), QStringLiteral("s1"));
}

void TestAMdrDocument::readingOverAnOldSweepGivesTheNewOne_data()
{
    QTest::addColumn<int>("oldCount");
    for (const int count : {0, 1, 4999, 5000, 5001, 20000})
        QTest::addRow("%d", count) << count;
}

void TestAMdrDocument::readingOverAnOldSweepGivesTheNewOne()
{
    QFETCH(int, oldCount);
    AMdrDocument document;
    AMdrDocument loaded;
    const ASweep expected = markedSweep(3, 40, 5000);
    document.addSweep(expected);
    QVERIFY(saveAndLoad(document, &loaded));

    ASweep sweep = markedSweep(7, 50, oldCount);
    sweep.setGeoData(richPosition());
    QVERIFY(loaded.readSweep(0, &sweep));
    QVERIFY(same(sweep, expected));

    sweep = markedSweep(7, 50, oldCount);
    const ASweep kept = sweep; // somebody else holds the values
    QVERIFY(loaded.readSweep(0, &sweep));
    QVERIFY(same(sweep, expected));
    QVERIFY(same(kept, markedSweep(7, 50, oldCount)));
}

void TestAMdrDocument::sweepsSurviveAFile_data()
{
    QTest::addColumn<ASweep>("sweep");
    QTest::newRow("default") << ASweep();
    QTest::newRow("empty with times") << ASweep({}, utc(0), utc(5));
    QTest::newRow("one point") << markedSweep(1, 0, 1);
    QTest::newRow("many points") << markedSweep(1, 0, 50000); // of several blocks

    ASweep positioned = markedSweep(2);
    positioned.setGeoData(richPosition());
    QTest::newRow("with a position") << positioned;

    QList<AMeasurementValue> values = points({kNaN, kInfinity, -kInfinity, -0.0, 4.9e-324, 1.7e308});
    quint64 payload = 0x7ff8123456789abc; // of a NaN
    std::memcpy(&values[0].level, &payload, sizeof payload);
    values[1].leading = std::numeric_limits<quint64>::max();
    values[1].unit = 255;
    values[1].reserved = 254;
    values[2].trailing = kNaN;
    QTest::newRow("every bit of a value") << ASweep(values, utc(0), utc(1));

    ASweep longText = markedSweep(3);
    AGeoData position = richPosition();
    position.description = QString(300000, QChar(0x3b1)); // of several blocks
    longText.setGeoData(position);
    QTest::newRow("a long text") << longText;
}

void TestAMdrDocument::sweepsSurviveAFile()
{
    QFETCH(ASweep, sweep);
    AMdrDocument document;
    AMdrDocument loaded;
    document.addSweep(sweep);
    document.addSweep(markedSweep(9));
    QVERIFY(saveAndLoad(document, &loaded));
    QCOMPARE(loaded.sweepCount(), 2);
    ASweep read;
    QVERIFY(loaded.readSweep(0, &read));
    QVERIFY(same(read, sweep));
    QVERIFY(loaded.readSweep(1, &read)); // and what stands behind it
    QVERIFY(same(read, markedSweep(9)));
}

void TestAMdrDocument::positionsSurviveAFile()
{
    AMdrDocument document;
    AMdrDocument loaded;
    document.addGeoData(richPosition());
    document.addGeoData(AGeoData());
    QVERIFY(saveAndLoad(document, &loaded));
    AGeoData position;
    QVERIFY(loaded.readGeoData(0, &position));
    QVERIFY(same(position, richPosition()));
    QVERIFY(loaded.readGeoData(1, &position));
    QVERIFY(same(position, AGeoData()));
}

void TestAMdrDocument::timesSurviveAFile_data()
{
    QTest::addColumn<QDateTime>("time");
    QTest::newRow("none") << QDateTime();
    QTest::newRow("UTC") << utc(1);
    QTest::newRow("epoch") << QDateTime::fromMSecsSinceEpoch(0, Qt::UTC);
    QTest::newRow("local, summer") << QDateTime(QDate(2024, 7, 1), QTime(12, 0));
    QTest::newRow("local, winter") << QDateTime(QDate(2024, 1, 1), QTime(12, 0));
    QTest::newRow("offset") << QDateTime(QDate(2024, 7, 1), QTime(12, 0), Qt::OffsetFromUTC, -12600);
    QTest::newRow("before the epoch") << QDateTime(QDate(1900, 1, 1), QTime(0, 0, 0, 1), Qt::UTC);
    QTest::newRow("far future") << QDateTime(QDate(12000, 1, 1), QTime(0, 0), Qt::UTC);
}

void TestAMdrDocument::timesSurviveAFile()
{
    QFETCH(QDateTime, time);
    AMdrDocument document;
    AMdrDocument loaded;
    document.addSweep(ASweep({}, time, {}));
    document.addSweep(ASweep({}, {}, time));
    AGeoData position;
    position.recordTime = time;
    document.addGeoData(position);
    QVERIFY(saveAndLoad(document, &loaded));
    ASweep sweep;
    QVERIFY(loaded.readSweep(0, &sweep));
    QVERIFY(sameTime(sweep.startTime(), time));
    QVERIFY(!sweep.stopTime().isValid());
    QVERIFY(loaded.readSweep(1, &sweep));
    QVERIFY(sameTime(sweep.stopTime(), time));
    QVERIFY(loaded.readGeoData(2, &position));
    QVERIFY(sameTime(position.recordTime, time));
}

void TestAMdrDocument::localTimeOfAnotherZoneKeepsWhatItsClockShowed()
{
    const QByteArray oldZone = qgetenv("TZ");
    qputenv("TZ", "UTC-5"); // POSIX counts the other way: five hours ahead
    tzset();
    const QDateTime time(QDate(2024, 5, 17), QTime(12, 30));
    QCOMPARE(time.offsetFromUtc(), 5 * 3600);
    AMdrDocument document;
    document.addSweep(ASweep({}, time, time));
    QVERIFY(document.save(path("zone.mdr")));
    qputenv("TZ", "UTC+3");
    tzset();
    AMdrDocument loaded;
    QVERIFY(loaded.load(path("zone.mdr")));
    ASweep sweep;
    QVERIFY(loaded.readSweep(0, &sweep));
    const QDateTime read = sweep.startTime();
    if (oldZone.isNull())
        qunsetenv("TZ");
    else
        qputenv("TZ", oldZone);
    tzset();
    QCOMPARE(read.offsetFromUtc(), 5 * 3600);
    QCOMPARE(read.time(), QTime(12, 30));
    QCOMPARE(read.toUTC().time(), QTime(7, 30));
}

void TestAMdrDocument::timesThatNoFileHoldsAreNone()
{
    AMdrDocument document;
    AMdrDocument loaded;
    document.addSweep(ASweep({}, QDateTime::fromMSecsSinceEpoch(std::numeric_limits<qint64>::max() / 2, Qt::UTC), {}));
    QVERIFY(saveAndLoad(document, &loaded));
    ASweep sweep;
    QVERIFY(loaded.readSweep(0, &sweep));
    QVERIFY(!sweep.startTime().isValid());
}

void TestAMdrDocument::frequenciesSurviveAFile_data()
{
    QTest::addColumn<AFrequency>("frequency");
    for (const char *text : {"0", "1", "-1", "0.5", "-0.25", "8333.333333", "-1234567.75", "9223372036854775807",
                             "-9223372036854775807", "2.4 GHz", "1e-9"})
        QTest::newRow(text) << AFrequency(text);
    QTest::newRow("a third") << AFrequency("1") / 3.0;
    QTest::newRow("a third of 100 MHz") << AFrequency("100 MHz") / 3.0;
}

void TestAMdrDocument::frequenciesSurviveAFile()
{
    QFETCH(AFrequency, frequency);
    AMdrDocument document;
    AMdrDocument loaded;
    document.addSweep(ASweep({AMeasurementValue(1.0, 0, frequency, 0, 0.0)}));
    QVERIFY(saveAndLoad(document, &loaded));
    ASweep sweep;
    QVERIFY(loaded.readSweep(0, &sweep));
    QCOMPARE(sweep.values.size(), 1);
    QVERIFY(sweep.values[0].frequency == frequency);
}

void TestAMdrDocument::theOrderSurvivesAFile()
{
    AMdrDocument loaded;
    QVERIFY(loadFive(&loaded));
    QCOMPARE(recordsText(loaded), QStringLiteral("s1 p10 s2 s3 p20"));
    QCOMPARE(loaded.sweepCount(), 3);
    QCOMPARE(loaded.recordOfSweep(2), 3);
    // in any order of reading
    for (const int record : {3, 0, 2, 0}) {
        ASweep sweep;
        QVERIFY(loaded.readSweep(record, &sweep));
        QCOMPARE(sweep.values.first().level, record == 0 ? 1.0 : record);
    }
}

void TestAMdrDocument::anEmptyDocumentSurvivesAFile()
{
    const AMdrDocument document;
    AMdrDocument loaded;
    fillWithFive(&loaded);
    QVERIFY(saveAndLoad(document, &loaded));
    QCOMPARE(loaded.recordCount(), 0);
}

void TestAMdrDocument::aDeviceSurvivesAFile()
{
    AMdrDocument document;
    AMdrDocument loaded;
    const OtherDevice device;
    document.setDevice(device);
    QVERIFY(saveAndLoad(document, &loaded));
    for (const AMdrDocument *one :
         {static_cast<const AMdrDocument *>(&document), static_cast<const AMdrDocument *>(&loaded)}) {
        const std::unique_ptr<AVeldoranDevice> recorded(one->createDevice());
        QVERIFY(recorded);
        QCOMPARE(recorded->informationList(), device.informationList());
        QCOMPARE(recorded->customOptionText(), device.customOptionText());
        QCOMPARE(recorded->hardwareRevision(), -3);
        QVERIFY(recorded->isReady());
        QCOMPARE(recorded->optionMask(), quint16(0x8005));
        QVERIFY(recorded->chipInformation() == device.chipInformation());
        for (int bit = 0; bit < 31; ++bit)
            QCOMPARE(recorded->hasCapability(1 << bit), bit == 1 || bit == 30);
        QVERIFY(!recorded->gpsDevice());
    }
}

void TestAMdrDocument::withoutADeviceThereIsNone()
{
    AMdrDocument document;
    AMdrDocument loaded;
    loaded.setDevice(OtherDevice());
    fillWithFive(&document);
    QVERIFY(saveAndLoad(document, &loaded));
    QVERIFY(!loaded.createDevice());
}

void TestAMdrDocument::theLastDeviceCounts()
{
    AMdrDocument document;
    OtherDevice device;
    document.setDevice(device);
    device.m_information[0] = QStringLiteral("second");
    document.setDevice(device);
    device.m_information[0] = QStringLiteral("changed later");
    const std::unique_ptr<AVeldoranDevice> recorded(document.createDevice());
    QCOMPARE(recorded->informationList().first(), QStringLiteral("second"));
}

void TestAMdrDocument::recordTimesAreThoseOfTheRecords()
{
    AMdrDocument document;
    AMdrDocument loaded;
    document.addSweep(ASweep({}, utc(10), utc(30)));
    document.addSweep(ASweep({}, utc(10), {}));
    document.addSweep(ASweep());
    document.addGeoData(markedPosition(1, 70));
    document.addGeoData(AGeoData());
    QVERIFY(saveAndLoad(document, &loaded));
    for (const AMdrDocument *one :
         {static_cast<const AMdrDocument *>(&document), static_cast<const AMdrDocument *>(&loaded)}) {
        QStringList times;
        for (int i = 0; i < one->recordCount(); ++i) {
            qint64 time = 0;
            const bool ok = one->recordTime(i, &time);
            times += ok ? QString::number(time - utc(0).toMSecsSinceEpoch()) : QStringLiteral("-");
        }
        QCOMPARE(times.join(QLatin1Char(' ')), QStringLiteral("30 10 - 70 -"));
    }
}

void TestAMdrDocument::loadReplacesTheContent()
{
    AMdrDocument document;
    AMdrDocument loaded;
    document.addSweep(markedSweep(5));
    fillWithFive(&loaded);
    QVERIFY(saveAndLoad(document, &loaded));
    QCOMPARE(recordsText(loaded), QStringLiteral("s5"));
    document.addSweep(markedSweep(6));
    QVERIFY(saveAndLoad(document, &loaded));
    QCOMPARE(recordsText(loaded), QStringLiteral("s5 s6"));
}

void TestAMdrDocument::loadTellsThatTheContentWasReplaced()
{
    AMdrDocument document;
    fillWithFive(&document);
    QVERIFY(document.save(path("told.mdr")));
    QStringList seen;
    connect(&document, &AMdrDocument::contentReplaced, this, [&] { seen += recordsText(document); });
    QVERIFY(document.load(path("told.mdr")));
    QVERIFY(!document.load(path("missing.mdr")));
    QCOMPARE(seen, QStringList({QStringLiteral("s1 p10 s2 s3 p20"), QString()}));
}

void TestAMdrDocument::aLoadedFileMayBeReplacedOrDeleted()
{
    AMdrDocument loaded;
    QVERIFY(loadFive(&loaded));
    AMdrDocument other;
    other.addSweep(markedSweep(8, 0, 10000));
    QVERIFY(other.save(path("a.mdr")));
    QCOMPARE(recordsText(loaded), QStringLiteral("s1 p10 s2 s3 p20"));
    QVERIFY(QFile::remove(path("a.mdr")));
    QCOMPARE(recordsText(loaded), QStringLiteral("s1 p10 s2 s3 p20"));
    QVERIFY(loaded.save(path("b.mdr")));
    QVERIFY(loaded.load(path("b.mdr")));
    QCOMPARE(recordsText(loaded), QStringLiteral("s1 p10 s2 s3 p20"));
}

void TestAMdrDocument::aLoadedDocumentCanBeSavedOverItsFile()
{
    AMdrDocument document;
    AMdrDocument loaded;
    fillWithFive(&document);
    document.setDevice(OtherDevice());
    QVERIFY(saveAndLoad(document, &loaded));
    const QByteArray before = readFile(path("a.mdr"));
    QVERIFY(loaded.save(path("a.mdr")));
    QCOMPARE(readFile(path("a.mdr")), before);
    QCOMPARE(recordsText(loaded), QStringLiteral("s1 p10 s2 s3 p20"));
}

void TestAMdrDocument::recordsAreAddedToALoadedDocument()
{
    AMdrDocument loaded;
    QVERIFY(loadFive(&loaded));
    loaded.addSweep(markedSweep(4));
    loaded.addGeoData(markedPosition(30));
    QCOMPARE(loaded.sweepCount(), 4);
    QVERIFY(loaded.save(path("more.mdr")));
    QVERIFY(loaded.load(path("more.mdr")));
    QCOMPARE(recordsText(loaded), QStringLiteral("s1 p10 s2 s3 p20 s4 p30"));
}

void TestAMdrDocument::aLoadedFileThatIsChangedInPlaceIsNoticed()
{
    AMdrDocument document;
    AMdrDocument loaded;
    document.addSweep(markedSweep(1, 0, 5000)); // more than the reader's block holds
    document.addSweep(markedSweep(2));
    QVERIFY(saveAndLoad(document, &loaded));
    QFile file(path("a.mdr"));
    QVERIFY(file.open(QIODevice::ReadWrite));
    QVERIFY(file.seek(5000));
    QVERIFY(file.putChar('x'));
    QVERIFY(file.flush());
    ASweep sweep;
    QString errorText;
    QVERIFY(!loaded.readSweep(0, &sweep, &errorText));
    QVERIFY(!errorText.isEmpty());
    QVERIFY(loaded.readSweep(1, &sweep));
    errorText.clear();
    QVERIFY(!loaded.save(path("changed.mdr"), &errorText));
    QVERIFY(!errorText.isEmpty());
    QVERIFY(!QFile::exists(path("changed.mdr")));
    QVERIFY(file.resize(6000));
    QVERIFY(!loaded.readSweep(0, &sweep));
}

QTEST_GUILESS_MAIN(TestAMdrDocument)
#include "tst_amdrdocument.moc"
