#include "apps/aveldoran/valuereading.h"

#include <core/emu.h>

#include <QtTest/QtTest>

class TestValueReading : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void readsFrequencies_data();
    void readsFrequencies();
    void aNumberAloneHasTheUnitThatIsMeant();
    void splitsNumberAndUnit_data();
    void splitsNumberAndUnit();
    void unitsAreKnownInAnySpelling_data();
    void unitsAreKnownInAnySpelling();
    void allUnitsAreNamedInTheOrderOfTheirIds();
};

void TestValueReading::readsFrequencies_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<double>("hertz"); // below 0 for what is none
    QTest::newRow("with a unit") << QByteArray("100 MHz") << 100e6;
    QTest::newRow("without a blank") << QByteArray("2.4GHz") << 2.4e9;
    QTest::newRow("decimal comma") << QByteArray("87,5 MHz") << 87.5e6;
    QTest::newRow("no separator of thousands") << QByteArray("1,000 MHz") << 1e6;
    QTest::newRow("exponent") << QByteArray("1e6") << 1e6;
    QTest::newRow("zero") << QByteArray("0 Hz") << 0.0;
    QTest::newRow("high") << QByteArray("8000000000 GHz") << 8e18;
    QTest::newRow("too high") << QByteArray("9000000001 GHz") << -1.0;
    QTest::newRow("negative") << QByteArray("-1 Hz") << -1.0;
    QTest::newRow("empty") << QByteArray() << -1.0;
    QTest::newRow("a unit alone") << QByteArray("MHz") << -1.0;
    QTest::newRow("unknown unit") << QByteArray("1 THz") << -1.0;
    QTest::newRow("unit in another case") << QByteArray("1 mhz") << -1.0;
    QTest::newRow("two decimal signs") << QByteArray("1.000,5") << -1.0;
    QTest::newRow("infinite") << QByteArray("1e999") << -1.0;
    QTest::newRow("a byte 0") << QByteArray("1\0MHz", 5) << -1.0;
}

void TestValueReading::readsFrequencies()
{
    QFETCH(QByteArray, text);
    QFETCH(double, hertz);
    AFrequency frequency;
    QCOMPARE(readFrequency(text, AFrequency::Hz, &frequency), hertz >= 0.0);
    if (hertz >= 0.0)
        QCOMPARE(frequency, AFrequency::fromValue(hertz, AFrequency::Hz));
}

void TestValueReading::aNumberAloneHasTheUnitThatIsMeant()
{
    AFrequency frequency;
    QVERIFY(readFrequency("1.5", AFrequency::MHz, &frequency));
    QCOMPARE(frequency, AFrequency("1500 kHz"));
    QVERIFY(readFrequency("1.5 Hz", AFrequency::MHz, &frequency));
    QCOMPARE(frequency, AFrequency("1.5 Hz"));
}

void TestValueReading::splitsNumberAndUnit_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QByteArray>("expectedNumber");
    QTest::addColumn<QByteArray>("expectedUnit");
    QTest::newRow("both") << QByteArray("-87,5 dBm") << QByteArray("-87.5") << QByteArray("dBm");
    QTest::newRow("together") << QByteArray("1e-3V") << QByteArray("1e-3") << QByteArray("V");
    QTest::newRow("no exponent") << QByteArray("1eV") << QByteArray("1") << QByteArray("eV");
    QTest::newRow("no unit") << QByteArray("5") << QByteArray("5") << QByteArray();
    QTest::newRow("no number") << QByteArray("dBm") << QByteArray() << QByteArray("dBm");
    QTest::newRow("nothing") << QByteArray() << QByteArray() << QByteArray();
}

void TestValueReading::splitsNumberAndUnit()
{
    QFETCH(QByteArray, text);
    QByteArray number;
    QByteArray unit;
    splitNumber(text, &number, &unit);
    QTEST(number, "expectedNumber");
    QTEST(unit, "expectedUnit");
}

void TestValueReading::unitsAreKnownInAnySpelling_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<int>("id");
    QTest::newRow("plain") << QByteArray("dBm") << 0;
    QTest::newRow("micro sign") << QByteArray("dB\xc2\xb5V") << 4;
    QTest::newRow("Greek mu") << QByteArray("dB\xce\xbcV") << 4;
    QTest::newRow("Latin-1") << QByteArray("dB\xb5V") << 4;
    QTest::newRow("keyboard") << QByteArray("dBuV") << 4;
    QTest::newRow("square") << QByteArray("W/m2") << 11;
    QTest::newRow("square in Latin-1") << QByteArray("dBmW/m\xb2") << 7;
    QTest::newRow("empty") << QByteArray() << -1;
    QTest::newRow("unknown") << QByteArray("dBfoo") << -1;
    QTest::newRow("another case") << QByteArray("dbm") << -1;
    QTest::newRow("another code") << QByteArray("dBm\xff") << -1;
    QTest::newRow("a byte 0 behind") << QByteArray("dBm\0", 4) << -1;
}

void TestValueReading::unitsAreKnownInAnySpelling()
{
    QFETCH(QByteArray, text);
    QTEST(unitId(text), "id");
}

void TestValueReading::allUnitsAreNamedInTheOrderOfTheirIds()
{
    const QStringList names = unitNames();
    const QStringList typed = typedUnitNames();
    QCOMPARE(names.size(), kEmuCount);
    QCOMPARE(typed.size(), kEmuCount);
    for (int id = 0; id < kEmuCount; ++id) {
        QCOMPARE(names.at(id), QString::fromUcs4(emu_find(id)->name));
        QCOMPARE(unitId(names.at(id).toUtf8()), id);
        QCOMPARE(unitId(typed.at(id).toUtf8()), id);
    }
    QCOMPARE(typed.at(8), QString("dBuV/m"));
    QCOMPARE(typed.at(12), QString("dBW/m2"));
}

QTEST_GUILESS_MAIN(TestValueReading)
#include "tst_valuereading.moc"
