#include "core/recordings.h"

#include <QtTest/QtTest>

#include <limits>

// The bytes of a recording by docs/formats.md: those that are written, and those of other writers.

class TestAMdrDocumentFormat : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theBytesAreAsDocumented();
    void aFileOfAnotherWriterIsRead();
    void strangeNumbersOfAnotherWriterAreRead();
    void chunksOfALaterProgramAreKept();

private:
    QString path(const char *name) const { return m_dir.filePath(QString::fromLatin1(name)); }

    QTemporaryDir m_dir;
};

// Number by number, as docs/formats.md has it.
void TestAMdrDocumentFormat::theBytesAreAsDocumented()
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

void TestAMdrDocumentFormat::aFileOfAnotherWriterIsRead()
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
    QVERIFY(std::unique_ptr<AVeldoranDevice>(loaded.createDevice()));
}

void TestAMdrDocumentFormat::strangeNumbersOfAnotherWriterAreRead()
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

void TestAMdrDocumentFormat::chunksOfALaterProgramAreKept()
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

QTEST_GUILESS_MAIN(TestAMdrDocumentFormat)
#include "tst_amdrdocument_format.moc"
