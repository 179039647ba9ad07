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
    void chunksOfALaterProgramAreKept();

    void theBytesAreAsDocumented();
    void aFileOfAnotherWriterIsRead();
    void strangeNumbersOfAnotherWriterAreRead();

private:
    QString path(const char *name) const { return m_dir.filePath(QString::fromLatin1(name)); }
    bool saveAndLoad(const AMdrDocument &document, AMdrDocument *loaded) const;

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
    AMdrDocument document;
    AMdrDocument loaded;
    fillWithFive(&document);
    QVERIFY(saveAndLoad(document, &loaded));
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
    AMdrDocument document;
    AMdrDocument loaded;
    fillWithFive(&document);
    QVERIFY(saveAndLoad(document, &loaded));
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
    AMdrDocument document;
    AMdrDocument loaded;
    fillWithFive(&document);
    QVERIFY(saveAndLoad(document, &loaded));
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

void TestAMdrDocument::chunksOfALaterProgramAreKept()
{
    AMdrDocument document;
    AMdrDocument loaded;
    document.addSweep(markedSweep(1));
    QVERIFY(document.save(path("a.mdr")));
    const QList<Chunk> chunks = chunksOf(readFile(path("a.mdr")));
    QCOMPARE(chunks.size(), 2);
    const QByteArray sweepChunk = chunkBytes("SWEP", chunks[0].payload);
    const QByteArray file =
        fileBytes({chunkBytes("NEW ", QByteArray(200000, 'n')), sweepChunk, chunkBytes("void", {}), sweepChunk});
    QVERIFY(writeFile(path("new.mdr"), file));
    QString errorText;
    QVERIFY2(loaded.load(path("new.mdr"), &errorText), qPrintable(errorText));
    QCOMPARE(loaded.sweepCount(), 2);
    QCOMPARE(recordsText(loaded), QStringLiteral("? s1 ? s1"));
    QVERIFY(loaded.save(path("kept.mdr")));
    QCOMPARE(readFile(path("kept.mdr")), file);
}

// Number by number, as docs/formats.md has it.
void TestAMdrDocument::theBytesAreAsDocumented()
{
    AMdrDocument document;
    OtherDevice device;
    device.m_information = QStringList{QStringLiteral("ab")};
    document.setDevice(device);
    ASweep sweep({AMeasurementValue(-1.5, 4, AFrequency("2.5"), 7, 0.25)},
                 QDateTime::fromMSecsSinceEpoch(1000, Qt::UTC),
                 QDateTime::fromMSecsSinceEpoch(-2, Qt::OffsetFromUTC, 3600));
    document.addSweep(sweep);
    document.addGeoData(richPosition());
    QVERIFY(document.save(path("a.mdr")));

    const auto bits = [](double number) {
        quint64 word = 0;
        std::memcpy(&word, &number, sizeof word);
        return littleEndian(word);
    };
    const auto floatBits = [](float number) {
        quint32 word = 0;
        std::memcpy(&word, &number, sizeof word);
        return littleEndian(word);
    };
    const auto time = [](quint8 kind, qint64 milliseconds, qint32 offset) {
        return littleEndian(kind) + littleEndian(milliseconds) + littleEndian(offset);
    };
    const auto text = [](const QString &string) {
        QByteArray bytes = littleEndian(static_cast<quint32>(string.size()));
        for (const QChar unit : string)
            bytes += littleEndian(unit.unicode());
        return bytes;
    };
    const QByteArray deviceBytes =
        littleEndian(qint32(-3)) + '\1' + littleEndian(quint16(0x8005)) + littleEndian(quint32(0x40000002)) +
        littleEndian(qint32(0x04036010)) + littleEndian(quint16(0x0403)) + littleEndian(quint16(0x6010)) +
        littleEndian(quint32(0x80000102)) + text(QStringLiteral("FT1A")) + text(QStringLiteral("Analyser A")) +
        text(QString::fromUtf8("µ8")) + littleEndian(quint32(1)) + text(QStringLiteral("ab"));
    const QByteArray noPosition =
        littleEndian(qint32(0)) + time(0, 0, 0) + QByteArray(8 + 1 + 16 + 36, '\0') + text(QString()) + text(QString());
    const QByteArray sweepBytes = time(1, 1000, 0) + time(3, -2, 3600) + noPosition + littleEndian(quint32(1)) +
                                  littleEndian(quint64(7)) + '\4' + '\0' + littleEndian(qint64(2)) + bits(0.5) +
                                  bits(-1.5) + bits(0.25);
    QByteArray positionBytes = littleEndian(qint32(-7)) + time(1, utc(123).toMSecsSinceEpoch(), 0);
    positionBytes += floatBits(-4811.25F) + floatBits(1134.5F) + '\xc8';
    for (const float number : {1.5F, 2.5F, 3.5F, 4.5F, 10.0F, 11.0F, 12.0F, 20.0F, 21.0F, 22.0F, 30.0F, 31.0F, 32.0F})
        positionBytes += floatBits(number);
    positionBytes += text(richPosition().recordName) + text(richPosition().description);

    QCOMPARE(
        readFile(path("a.mdr")).toHex(),
        fileBytes({chunkBytes("DEVC", deviceBytes), chunkBytes("SWEP", sweepBytes), chunkBytes("GEOD", positionBytes)})
            .toHex());
}

void TestAMdrDocument::aFileOfAnotherWriterIsRead()
{
    AMdrDocument document;
    document.setDevice(OtherDevice());
    fillWithFive(&document);
    QVERIFY(document.save(path("a.mdr")));
    // The same chunks in another order, the device at the end.
    const QList<Chunk> chunks = chunksOf(readFile(path("a.mdr")));
    QList<QByteArray> other;
    for (const int i : {2, 1, 3, 5, 4, 0})
        other.append(chunkBytes(chunks[i].type, chunks[i].payload));
    QVERIFY(writeFile(path("other.mdr"), fileBytes(other)));
    AMdrDocument loaded;
    QVERIFY(loaded.load(path("other.mdr")));
    QCOMPARE(recordsText(loaded), QStringLiteral("p10 s1 s2 p20 s3"));
    QVERIFY(QScopedPointer<AVeldoranDevice>(loaded.createDevice()));
}

void TestAMdrDocument::strangeNumbersOfAnotherWriterAreRead()
{
    AMdrDocument document;
    document.addSweep(markedSweep(1, 0, 6));
    QVERIFY(document.save(path("a.mdr")));
    QByteArray payload = chunksOf(readFile(path("a.mdr"))).first().payload;
    const int firstValue = payload.size() - 6 * 42;
    const auto set = [&](int value, qint64 hertz, double fraction) {
        payload.replace(firstValue + value * 42 + 10, 8, littleEndian(hertz));
        std::memcpy(payload.data() + firstValue + value * 42 + 18, &fraction, sizeof fraction);
    };
    set(0, 5, -0.25);
    set(1, 5, 2.5);
    set(2, 5, kNaN);
    set(3, 5, -0.0);
    set(4, std::numeric_limits<qint64>::max(), 1e300);
    set(5, 5, kInfinity);
    payload.replace(0, 13, '\4' + littleEndian(qint64(1)) + littleEndian(qint32(0))); // no such kind
    payload.replace(13, 13, '\1' + littleEndian(std::numeric_limits<qint64>::min()) + QByteArray(4, '\xff'));
    QVERIFY(writeFile(path("strange.mdr"), fileBytes({chunkBytes("SWEP", payload)})));
    AMdrDocument loaded;
    QVERIFY(loaded.load(path("strange.mdr")));
    ASweep sweep;
    QVERIFY(loaded.readSweep(0, &sweep));
    QVERIFY(!sweep.startTime().isValid());
    QVERIFY(!sweep.stopTime().isValid());
    QStringList frequencies;
    for (const AMeasurementValue &value : qAsConst(sweep.values))
        frequencies += QString::number(value.frequency.floatValue(AFrequency::Hz), 'g', 5);
    QCOMPARE(frequencies.join(QLatin1Char(' ')), QStringLiteral("4.75 7.5 5 5 9.2234e+18 5"));
    QVERIFY(sweep.values[3].frequency == AFrequency("5"));
}

QTEST_GUILESS_MAIN(TestAMdrDocument)
#include "tst_amdrdocument.moc"
