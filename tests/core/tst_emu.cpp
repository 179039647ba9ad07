#include "core/emu.h"

#include <QtTest/QtTest>

#include <cmath>
#include <limits>

class TestEmu : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theUnitsHaveTheirSymbols_data();
    void theUnitsHaveTheirSymbols();
    void idsAreFoundAndNothingElse_data();
    void idsAreFoundAndNothingElse();
    void theNamedIdsAreThoseOfTheirUnits();
    void findGivesTheSameRecordEachTime();
    void everyLinearCounterpartIsALinearUnitOfTheFamily();
    void symbolsAreUniqueAndHoldNoBlank();
    void theReferenceImpedances();
};

void TestEmu::theUnitsHaveTheirSymbols_data()
{
    QTest::addColumn<int>("id");
    QTest::addColumn<QString>("symbol");
    QTest::addColumn<bool>("logarithmic");
    QTest::addColumn<int>("linear");
    const auto row = [](int id, const char *symbol, bool logarithmic, int linear) {
        QTest::newRow(symbol) << id << QString::fromUtf8(symbol) << logarithmic << linear;
    };
    row(0, "dBm", true, 10);
    row(1, "dBW", true, 10);
    row(2, "dBV", true, 5);
    row(3, "dBmV", true, 5);
    row(4, "dB\xc2\xb5V", true, 5);
    row(5, "V", false, 5);
    row(6, "dBV/m", true, 9);
    row(7, "dBmW/m\xc2\xb2", true, 11);
    row(8, "dB\xc2\xb5V/m", true, 9);
    row(9, "V/m", false, 9);
    row(10, "W", false, 10);
    row(11, "W/m\xc2\xb2", false, 11);
    row(12, "dBW/m\xc2\xb2", true, 11);
    row(13, "dBA/m", true, 15);
    row(14,
        "dB\xc2\xb5"
        "A/m",
        true, 15);
    row(15, "A/m", false, 15);
    row(16, "dB", true, 17);
    row(17, "\xc3\x97", false, 17);
}

void TestEmu::theUnitsHaveTheirSymbols()
{
    QFETCH(int, id);
    QFETCH(QString, symbol);
    QFETCH(bool, logarithmic);
    QFETCH(int, linear);
    const emu_entry *unit = emu_find(id);
    QVERIFY(unit);
    QCOMPARE(unit->id, id);
    QCOMPARE(QString::fromUcs4(unit->name), symbol);
    QCOMPARE(unit->logarithmic != 0, logarithmic);
    QCOMPARE(unit->linear, linear);
}

void TestEmu::idsAreFoundAndNothingElse_data()
{
    QTest::addColumn<int>("id");
    QTest::addColumn<bool>("exists");
    for (int id = -3; id <= 20; ++id)
        QTest::newRow(QByteArray::number(id).constData()) << id << (id >= 0 && id <= 17);
    for (int id : {255, 256, 65536 + 5, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()})
        QTest::newRow(QByteArray::number(id).constData()) << id << false;
}

void TestEmu::idsAreFoundAndNothingElse()
{
    QFETCH(int, id);
    QFETCH(bool, exists);
    QCOMPARE(emu_find(id) != nullptr, exists);
}

void TestEmu::theNamedIdsAreThoseOfTheirUnits()
{
    const auto symbolOf = [](int id) { return QString::fromUcs4(emu_find(id)->name); };
    QCOMPARE(symbolOf(kEmuDecibelMilliwatt), QStringLiteral("dBm"));
    QCOMPARE(symbolOf(kEmuDecibelMicrovoltPerMetre), QString::fromUtf8("dB\xc2\xb5V/m"));
    QCOMPARE(symbolOf(kEmuWatt), QStringLiteral("W"));
    QCOMPARE(symbolOf(kEmuWattPerSquareMetre), QString::fromUtf8("W/m\xc2\xb2"));
    QVERIFY(emu_find(kEmuCount - 1));
    QVERIFY(!emu_find(kEmuCount));
}

void TestEmu::findGivesTheSameRecordEachTime()
{
    for (int id = 0; id <= 17; ++id)
        QCOMPARE(emu_find(id), emu_find(id));
}

void TestEmu::everyLinearCounterpartIsALinearUnitOfTheFamily()
{
    for (int id = 0; id <= 17; ++id) {
        const emu_entry *unit = emu_find(id);
        const emu_entry *linear = emu_find(unit->linear);
        QVERIFY(linear);
        QCOMPARE(linear->logarithmic, 0);
        QCOMPARE(int(linear->family), int(unit->family));
        QCOMPARE(linear->decibelsPerDecade, unit->decibelsPerDecade);
        QCOMPARE(linear->offset, 0);
        QVERIFY(linear->power == unit->power);
    }
}

void TestEmu::symbolsAreUniqueAndHoldNoBlank()
{
    QStringList symbols;
    for (int id = 0; id <= 17; ++id)
        symbols << QString::fromUcs4(emu_find(id)->name);
    QCOMPARE(symbols.size(), 18);
    QCOMPARE(symbols.removeDuplicates(), 0);
    for (const QString &symbol : qAsConst(symbols)) {
        QVERIFY(!symbol.isEmpty());
        QVERIFY(!symbol.contains(QLatin1Char(' ')));
    }
}

void TestEmu::theReferenceImpedances()
{
    QCOMPARE(double(kReferenceImpedanceOhm), 50.0);
    QCOMPARE(double(kFreeSpaceImpedanceOhm), 376.73);
}

QTEST_APPLESS_MAIN(TestEmu)
#include "tst_emu.moc"
