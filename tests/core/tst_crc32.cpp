#include "core/crc32.h"

#include <QtTest/QtTest>

#include <random>

// The sum is private to the library; its source is compiled into this program.

namespace {

// Bit by bit, as the definition has it.
quint32 plainCrc32(const QByteArray &bytes)
{
    quint32 sum = 0xffffffffU;
    for (const char byte : bytes) {
        sum ^= static_cast<unsigned char>(byte);
        for (int bit = 0; bit < 8; ++bit)
            sum = (sum >> 1) ^ ((sum & 1) != 0 ? 0xEDB88320U : 0);
    }
    return ~sum;
}

QByteArray randomBytes(int size)
{
    std::mt19937 random(static_cast<unsigned>(size));
    QByteArray bytes;
    for (int i = 0; i < size; ++i)
        bytes.append(static_cast<char>(random()));
    return bytes;
}

quint32 crc32(const QByteArray &bytes)
{
    return ::crc32(0, bytes.constData(), bytes.size());
}

} // namespace

class TestCrc32 : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void thePublishedSums_data();
    void thePublishedSums();
    void everySizeGivesTheSumOfTheDefinition();
    void everyAlignmentGivesTheSameSum();
    void aSumGoesOnFromWhatWasBefore();
};

void TestCrc32::thePublishedSums_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<quint32>("sum");
    QTest::newRow("nothing") << QByteArray() << quint32(0);
    QTest::newRow("the check value") << QByteArray("123456789") << quint32(0xCBF43926);
    QTest::newRow("a letter") << QByteArray("a") << quint32(0xE8B7BE43);
    QTest::newRow("32 zeros") << QByteArray(32, '\0') << quint32(0x190A55AD);
    QTest::newRow("32 ones") << QByteArray(32, '\xff') << quint32(0xFF6CAB0B);
}

void TestCrc32::thePublishedSums()
{
    QFETCH(QByteArray, bytes);
    QFETCH(quint32, sum);
    QCOMPARE(crc32(bytes), sum);
}

void TestCrc32::everySizeGivesTheSumOfTheDefinition()
{
    for (int size = 0; size < 1000; ++size) {
        const QByteArray bytes = randomBytes(size);
        QVERIFY2(crc32(bytes) == plainCrc32(bytes), qPrintable(QString::number(size)));
    }
    const QByteArray large = randomBytes(1000003);
    QCOMPARE(crc32(large), plainCrc32(large));
}

void TestCrc32::everyAlignmentGivesTheSameSum()
{
    const QByteArray bytes = randomBytes(700);
    for (int offset = 0; offset < 32; ++offset) {
        const QByteArray shifted = QByteArray(offset, 'x') + bytes;
        QCOMPARE(::crc32(0, shifted.constData() + offset, bytes.size()), plainCrc32(bytes));
    }
}

void TestCrc32::aSumGoesOnFromWhatWasBefore()
{
    const QByteArray bytes = randomBytes(800);
    for (int cut = 0; cut <= bytes.size(); ++cut) {
        const quint32 before = ::crc32(0, bytes.constData(), cut);
        QCOMPARE(::crc32(before, bytes.constData() + cut, bytes.size() - cut), crc32(bytes));
    }
}

QTEST_APPLESS_MAIN(TestCrc32)
#include "tst_crc32.moc"
