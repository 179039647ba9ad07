#include "core/profilefiles.h"
#include "core/recordings.h"

#include <QtTest/QtTest>

#include <algorithm>

// What load() makes of files that are damaged, cut short, foreign or none at all.

namespace {

using profilefiles::inChild;

// Every type of chunk, small enough to try each of its bytes.
QByteArray smallRecording(const QString &name)
{
    AMdrDocument document;
    OtherDevice device;
    device.m_information = QStringList{QStringLiteral("a")};
    document.setDevice(device);
    ASweep sweep = markedSweep(1, 0, 2);
    AGeoData position = markedPosition(5);
    position.recordName = QStringLiteral("n");
    sweep.setGeoData(position);
    document.addSweep(sweep);
    document.addGeoData(markedPosition(10));
    document.addSweep(markedSweep(2, 100, 1));
    return document.save(name) ? readFile(name) : QByteArray();
}

// What is left of it when its first `chunks` chunks are whole.
QString recordsOfFirst(int chunks)
{
    const QStringList records = {QStringLiteral("s1"), QStringLiteral("p10"), QStringLiteral("s2")};
    return records.mid(0, std::max(chunks - 1, 0)).join(QLatin1Char(' '));
}

int wholeChunksBefore(const QList<Chunk> &chunks, int offset)
{
    return static_cast<int>(
        std::count_if(chunks.begin(), chunks.end(), [offset](const Chunk &chunk) { return chunk.end <= offset; }));
}

} // namespace

class TestAMdrDocumentDamage : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyFlippedByteLeavesTheChunksBefore_data();
    void everyFlippedByteLeavesTheChunksBefore();
    void everyLengthLeavesTheWholeChunks();
    void aCutBetweenChunksIsNoticed();
    void bytesBehindTheEndAreNoticed_data();
    void bytesBehindTheEndAreNoticed();
    void missingAndExchangedChunksAreNoticed_data();
    void missingAndExchangedChunksAreNoticed();
    void aRecoveredRecordingCanBeSavedWhole();
    void anUnreadableFileLeavesTheDocumentEmpty_data();
    void anUnreadableFileLeavesTheDocumentEmpty();
    void aFormThatDoesNotFitItsChunkIsDamage_data();
    void aFormThatDoesNotFitItsChunkIsDamage();
    void lengthsThatLieCostNoMemory_data();
    void lengthsThatLieCostNoMemory();
    void noErrorTextIsNeeded();

private:
    QString path(const char *name) const { return m_dir.filePath(QString::fromLatin1(name)); }

    QTemporaryDir m_dir;
};

void TestAMdrDocumentDamage::everyFlippedByteLeavesTheChunksBefore_data()
{
    QTest::addColumn<int>("mask");
    for (const int mask : {0x01, 0x80, 0xff})
        QTest::addRow("0x%02x", mask) << mask;
}

void TestAMdrDocumentDamage::everyFlippedByteLeavesTheChunksBefore()
{
    QFETCH(int, mask);
    const QByteArray whole = smallRecording(path("small.mdr"));
    const QList<Chunk> chunks = chunksOf(whole);
    QCOMPARE(chunks.size(), 5);
    AMdrDocument document;
    for (int i = 0; i < whole.size(); ++i) {
        QByteArray damaged = whole;
        damaged[i] = static_cast<char>(damaged[i] ^ mask);
        QVERIFY(writeFile(path("flipped.mdr"), damaged));
        QString errorText;
        const bool ok = document.load(path("flipped.mdr"), &errorText);
        const QByteArray where = QByteArray::number(i);
        QVERIFY2(!ok, where);
        QVERIFY2(!errorText.isEmpty(), where);
        QVERIFY2(recordsText(document) == recordsOfFirst(wholeChunksBefore(chunks, i)), where);
        const std::unique_ptr<AVeldoranDevice> device(document.createDevice());
        QVERIFY2((device != nullptr) == (i >= chunks[0].end), where);
    }
}

void TestAMdrDocumentDamage::everyLengthLeavesTheWholeChunks()
{
    const QByteArray whole = smallRecording(path("small.mdr"));
    const QList<Chunk> chunks = chunksOf(whole);
    AMdrDocument document;
    for (int length = 0; length < whole.size(); ++length) {
        QVERIFY(writeFile(path("cut.mdr"), whole.left(length)));
        QString errorText;
        const bool ok = document.load(path("cut.mdr"), &errorText);
        const QByteArray where = QByteArray::number(length);
        QVERIFY2(!ok, where);
        QVERIFY2(!errorText.isEmpty(), where);
        QVERIFY2(recordsText(document) == recordsOfFirst(wholeChunksBefore(chunks, length)), where);
    }
    QVERIFY(writeFile(path("cut.mdr"), whole));
    QVERIFY(document.load(path("cut.mdr")));
    QCOMPARE(recordsText(document), QStringLiteral("s1 p10 s2"));
}

void TestAMdrDocumentDamage::aCutBetweenChunksIsNoticed()
{
    const QByteArray whole = smallRecording(path("small.mdr"));
    const QList<Chunk> chunks = chunksOf(whole);
    AMdrDocument document;
    for (int i = 0; i + 1 < chunks.size(); ++i) {
        QVERIFY(writeFile(path("cut.mdr"), whole.left(chunks[i].end)));
        QString errorText;
        QVERIFY(!document.load(path("cut.mdr"), &errorText));
        QVERIFY2(errorText.contains(QString::number(chunks[i].end)), qPrintable(errorText));
        QCOMPARE(recordsText(document), recordsOfFirst(i + 1));
    }
}

void TestAMdrDocumentDamage::bytesBehindTheEndAreNoticed_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("a zero") << QByteArray(1, '\0');
    QTest::newRow("a line feed") << QByteArray("\n");
    QTest::newRow("a second end") << chunkBytes("END ", littleEndian(quint64(4)));
    QTest::newRow("a second recording") << fileBytes({});
}

void TestAMdrDocumentDamage::bytesBehindTheEndAreNoticed()
{
    QFETCH(QByteArray, bytes);
    QVERIFY(writeFile(path("long.mdr"), smallRecording(path("small.mdr")) + bytes));
    AMdrDocument document;
    QString errorText;
    QVERIFY(!document.load(path("long.mdr"), &errorText));
    QVERIFY(!errorText.isEmpty());
    QCOMPARE(recordsText(document), QStringLiteral("s1 p10 s2"));
}

void TestAMdrDocumentDamage::missingAndExchangedChunksAreNoticed_data()
{
    QTest::addColumn<QList<int>>("kept"); // numbers of chunks of the small recording
    QTest::addColumn<QString>("records");
    QTest::newRow("one is missing") << QList<int>{0, 1, 3, 4} << "s1 s2";
    QTest::newRow("one is doubled") << QList<int>{0, 1, 1, 2, 3, 4} << "s1 s1 p10 s2";
    QTest::newRow("the end alone") << QList<int>{4} << "";
    QTest::newRow("the end amid") << QList<int>{0, 1, 4, 2, 3} << "s1";
}

void TestAMdrDocumentDamage::missingAndExchangedChunksAreNoticed()
{
    QFETCH(QList<int>, kept);
    QFETCH(QString, records);
    const QByteArray whole = smallRecording(path("small.mdr"));
    const QList<Chunk> chunks = chunksOf(whole);
    QByteArray file = whole.left(12);
    for (const int i : kept)
        file += whole.mid(chunks[i].begin, chunks[i].end - chunks[i].begin);
    QVERIFY(writeFile(path("mixed.mdr"), file));
    AMdrDocument document;
    QString errorText;
    QVERIFY(!document.load(path("mixed.mdr"), &errorText));
    QVERIFY(!errorText.isEmpty());
    QCOMPARE(recordsText(document), records);
}

void TestAMdrDocumentDamage::aRecoveredRecordingCanBeSavedWhole()
{
    const QByteArray whole = smallRecording(path("small.mdr"));
    QVERIFY(writeFile(path("cut.mdr"), whole.left(whole.size() - 30)));
    AMdrDocument document;
    QVERIFY(!document.load(path("cut.mdr")));
    QCOMPARE(recordsText(document), QStringLiteral("s1 p10"));
    QVERIFY(document.save(path("cut.mdr")));
    QVERIFY(document.load(path("cut.mdr")));
    QCOMPARE(recordsText(document), QStringLiteral("s1 p10"));
    QVERIFY(std::unique_ptr<AVeldoranDevice>(document.createDevice()));
}

void TestAMdrDocumentDamage::anUnreadableFileLeavesTheDocumentEmpty_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("name");
    QTest::newRow("missing") << QByteArray() << path("missing.mdr");
    QTest::newRow("no name") << QByteArray() << QString();
    QTest::newRow("a directory") << QByteArray() << m_dir.path();
    QTest::newRow("a device") << QByteArray() << QStringLiteral("/dev/zero");
    QTest::newRow("empty") << QByteArray("") << path("x.mdr");
    QTest::newRow("text") << QByteArray("<?xml version=\"1.0\"?>\n<gpx></gpx>\n") << path("x.mdr");
    QTest::newRow("zeros") << QByteArray(1000, '\0') << path("x.mdr");
    QTest::newRow("carriage returns lost") << fileBytes({}).replace("\r\n", "\n") << path("x.mdr");
    QTest::newRow("version 0") << fileBytes({}).replace(8, 4, littleEndian(quint32(0))) << path("x.mdr");
    QTest::newRow("version 2") << fileBytes({}).replace(8, 4, littleEndian(quint32(2))) << path("x.mdr");
}

void TestAMdrDocumentDamage::anUnreadableFileLeavesTheDocumentEmpty()
{
    QFETCH(QByteArray, content);
    QFETCH(QString, name);
    if (!content.isNull())
        QVERIFY(writeFile(name, content));
    AMdrDocument document;
    fillWithFive(&document);
    document.setDevice(OtherDevice());
    QString errorText;
    QVERIFY(!document.load(name, &errorText));
    QVERIFY(!errorText.isEmpty());
    QCOMPARE(document.recordCount(), 0);
    QCOMPARE(document.sweepCount(), 0);
    QVERIFY(!document.createDevice());
}

void TestAMdrDocumentDamage::aFormThatDoesNotFitItsChunkIsDamage_data()
{
    QTest::addColumn<QByteArray>("type");
    QTest::addColumn<QByteArray>("payload");
    AMdrDocument document;
    document.addSweep(markedSweep(1, 0, 2));
    document.addGeoData(markedPosition(10));
    document.setDevice(OtherDevice());
    QVERIFY(document.save(path("forms.mdr")));
    const QList<Chunk> chunks = chunksOf(readFile(path("forms.mdr")));
    for (const Chunk &chunk : chunks) {
        const QByteArray name = chunk.type.trimmed();
        QTest::newRow(name + " empty") << chunk.type << QByteArray();
        QTest::newRow(name + " cut") << chunk.type << chunk.payload.left(chunk.payload.size() - 1);
        QTest::newRow(name + " longer") << chunk.type << chunk.payload + 'x';
    }
    QByteArray sweep = chunks[1].payload;
    const int count = sweep.size() - 2 * 42 - 4;
    for (const quint32 wrong : {0U, 1U, 3U, 0xffffffffU})
        QTest::addRow("SWEP of %u values", wrong) << QByteArray("SWEP") << sweep.replace(count, 4, littleEndian(wrong));
    for (const quint32 wrong : {1U, 0x7fffffffU, 0x80000000U, 0xffffffffU}) {
        QByteArray position = chunks[2].payload;
        QTest::addRow("GEOD with a text of %u", wrong)
            << QByteArray("GEOD") << position.replace(position.size() - 8, 4, littleEndian(wrong));
        QByteArray device = chunks[0].payload.left(23) + littleEndian(wrong);
        QTest::addRow("DEVC with a text of %u", wrong) << QByteArray("DEVC") << device;
    }
    QTest::newRow("DEVC with too many texts")
        << QByteArray("DEVC") << QByteArray(23 + 12, '\0') + littleEndian(0xffffffffU) + QByteArray(40, '\0');
}

void TestAMdrDocumentDamage::aFormThatDoesNotFitItsChunkIsDamage()
{
    QFETCH(QByteArray, type);
    QFETCH(QByteArray, payload);
    const QByteArray good = chunkBytes("SWEP", [this] {
        AMdrDocument document;
        document.addSweep(markedSweep(7));
        return document.save(path("good.mdr")) ? chunksOf(readFile(path("good.mdr"))).first().payload : QByteArray();
    }());
    QVERIFY(writeFile(path("form.mdr"), fileBytes({good, chunkBytes(type, payload), good})));
    AMdrDocument document;
    QString errorText;
    QVERIFY(!document.load(path("form.mdr"), &errorText));
    QVERIFY(!errorText.isEmpty());
    QCOMPARE(recordsText(document), QStringLiteral("s7"));
    QVERIFY(!document.createDevice());
}

void TestAMdrDocumentDamage::lengthsThatLieCostNoMemory_data()
{
    QTest::addColumn<quint64>("length");
    QTest::newRow("more than the file") << (quint64(1) << 40);
    QTest::newRow("the largest") << ~quint64(0);
    QTest::newRow("the largest signed") << ~quint64(0) / 2;
    QTest::newRow("nearly the file") << quint64(290) * 1000 * 1000;
}

// A sparse file of 300 MB, whose only chunk says that it is that large.
void TestAMdrDocumentDamage::lengthsThatLieCostNoMemory()
{
    QFETCH(quint64, length);
    const QString name = path("sparse.mdr");
    const auto load = [&name] {
        AMdrDocument document;
        QString errorText;
        return document.load(name, &errorText) || errorText.isEmpty() || document.recordCount() != 0 ? 1 : 0;
    };
    for (const char *type : {"SWEP", "GEOD", "DEVC", "NEW "}) {
        QVERIFY(writeFile(name, fileBytes({}).left(12) + type + littleEndian(length)));
        QVERIFY(QFile::resize(name, 300 * 1000 * 1000));
        const profilefiles::ChildResult result = inChild(load);
        QCOMPARE(result.status, 0);
        QVERIFY2(result.megabytes < 200, qPrintable(QString::number(result.megabytes)));
    }
    QVERIFY(QFile::remove(name));
}

void TestAMdrDocumentDamage::noErrorTextIsNeeded()
{
    AMdrDocument document;
    QVERIFY(!document.load(path("missing.mdr")));
    QVERIFY(writeFile(path("x.mdr"), "x"));
    QVERIFY(!document.load(path("x.mdr"), nullptr));
    QVERIFY(!document.save(path("missing/x.mdr"), nullptr));
    QVERIFY(!document.startRecording(path("missing/x.mdr"), nullptr));
    QVERIFY(!document.finishRecording(nullptr));
    ASweep sweep;
    QVERIFY(!document.readSweep(0, &sweep, nullptr));
}

QTEST_GUILESS_MAIN(TestAMdrDocumentDamage)
#include "tst_amdrdocument_damage.moc"
