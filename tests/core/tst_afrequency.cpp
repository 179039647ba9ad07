#include "core/afrequency.h"

#include "core/testbasics.h"

#include <QtTest/QtTest>

#include <cmath>
#include <cstring>
#include <limits>
#include <random>

using testbasics::hertz;

namespace {

QByteArray canonical(const AFrequency &frequency)
{
    return frequency.formatString(QStringLiteral("%1 %2"), AFrequency::NoUnit, 0, 'f', -1).toLatin1();
}

constexpr qint64 kMax = std::numeric_limits<qint64>::max();
constexpr qint64 kMin = std::numeric_limits<qint64>::min();

} // namespace

class TestAFrequency : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup() { QLocale::setDefault(QLocale::c()); }

    void aDefaultFrequencyIsNullAndAllZeroMemory();
    void textsAreRead_data();
    void textsAreRead();
    void unreadableTextsAreZero_data();
    void unreadableTextsAreZero();
    void suffixesAreRecognised_data();
    void suffixesAreRecognised();
    void suffixTexts();
    void doublesGiveTheWholeHertzTheyName_data();
    void doublesGiveTheWholeHertzTheyName();
    void everyThreeDecimalMegahertzIsWhole();
    void valuesBeyondTheRangeStayAtItsEdge();
    void intValueCutsTowardsZero();
    void wholeNumbersOfAnyTypeAreExact();
    void noUnitIsHertzForNumbers();
    void formats_data();
    void formats();
    void largeValuesAreFormattedExactly_data();
    void largeValuesAreFormattedExactly();
    void canonicalTextsReadBack();
    void paddedHertzSortAsNumbers();
    void autoUnitGoesByMagnitude();
    void comparesByValue();
    void addsAndSubtracts();
    void multipliesAndDivides();
    void fractionsOfAHertzAreKept();
};

void TestAFrequency::aDefaultFrequencyIsNullAndAllZeroMemory()
{
    const AFrequency frequency;
    QVERIFY(frequency.isNull());
    QCOMPARE(frequency, AFrequency("0"));
    const char zeros[sizeof(AFrequency)] = {};
    QCOMPARE(std::memcmp(static_cast<const void *>(&frequency), zeros, sizeof zeros), 0);
    QCOMPARE(canonical(frequency), QByteArray("0.000000 Hz"));
    QCOMPARE(sizeof(AFrequency), size_t(16));
}

void TestAFrequency::textsAreRead_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<qint64>("hertz");
    QTest::newRow("unit") << QByteArray("5 MHz") << qint64(5000000);
    QTest::newRow("no blank") << QByteArray("5MHz") << qint64(5000000);
    QTest::newRow("many blanks") << QByteArray(" \t 5 \n MHz \r\n") << qint64(5000000);
    QTest::newRow("rare blanks") << QByteArray("\v\f 5 \f\v MHz \f\v") << qint64(5000000);
    QTest::newRow("no unit") << QByteArray("5") << qint64(5);
    QTest::newRow("point") << QByteArray("2.4 GHz") << qint64(2400000000);
    QTest::newRow("comma") << QByteArray("2,4 GHz") << qint64(2400000000);
    QTest::newRow("minus") << QByteArray("-7.6 MHz") << qint64(-7600000);
    QTest::newRow("plus") << QByteArray("+1 kHz") << qint64(1000);
    QTest::newRow("minus zero") << QByteArray("-0") << qint64(0);
    QTest::newRow("exponent") << QByteArray("1e+06") << qint64(1000000);
    QTest::newRow("exponent and unit") << QByteArray("1.5E3kHz") << qint64(1500000);
    QTest::newRow("negative exponent") << QByteArray("1001e-3 MHz") << qint64(1001000);
    QTest::newRow("no leading digit") << QByteArray(".5 kHz") << qint64(500);
    QTest::newRow("no trailing digit") << QByteArray("5. kHz") << qint64(5000);
    QTest::newRow("leading zeros") << QByteArray("000000000000000000000000000012 Hz") << qint64(12);
    QTest::newRow("1.001") << QByteArray("1.001 MHz") << qint64(1001000);
    QTest::newRow("above 2^53") << QByteArray("9007199254.740993 MHz") << qint64(9007199254740993);
    QTest::newRow("largest") << QByteArray("9223372036854775807") << kMax;
    QTest::newRow("smallest") << QByteArray("-9223372036854775808 Hz") << kMin;
    QTest::newRow("beyond the largest") << QByteArray("9223372036854775808") << kMax;
    QTest::newRow("far beyond") << QByteArray("-1e999999999999999999 GHz") << kMin;
    QTest::newRow("far below a hertz") << QByteArray("1e-999999999999999999 GHz") << qint64(0);
    QTest::newRow("zero with exponent") << QByteArray("0e999999999") << qint64(0);
}

void TestAFrequency::textsAreRead()
{
    QFETCH(QByteArray, text);
    QFETCH(qint64, hertz);
    QCOMPARE(AFrequency(text.constData()), ::hertz(hertz));
}

void TestAFrequency::unreadableTextsAreZero_data()
{
    QTest::addColumn<QByteArray>("text");
    for (const char *text : {"",     " ",  "MHz", "nan", "inf",   "-inf",    "NaN MHz", "1.234,5 MHz", "1,2,3",
                             "1..2", "..", ".",   "-",   "5 KHz", "5 THz",   "5 mhz",   "5 \xb5Hz",    "5 M Hz",
                             "0x10", "1e", "1e+", "1 2", "five",  "5 MHz 3", "--5",     "5-",          "1e5.5"})
        QTest::newRow(text) << QByteArray(text);
}

void TestAFrequency::unreadableTextsAreZero()
{
    QFETCH(QByteArray, text);
    QVERIFY(AFrequency(text.constData()).isNull());
    QVERIFY(AFrequency(static_cast<const char *>(nullptr)).isNull());
}

void TestAFrequency::suffixesAreRecognised_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<int>("unit");
    const auto row = [](const char *text, AFrequency::Unit unit) {
        QTest::newRow(text) << QByteArray(text) << int(unit);
    };
    row("Hz", AFrequency::Hz);
    row("kHz", AFrequency::kHz);
    row("MHz", AFrequency::MHz);
    row("GHz", AFrequency::GHz);
    row(" MHz ", AFrequency::MHz);
    row("88.5 MHz", AFrequency::MHz);
    row("88.5MHz", AFrequency::MHz);
    row("x MHz", AFrequency::MHz);
    row("88.5", AFrequency::NoUnit);
    row("", AFrequency::NoUnit);
    row("5 KHz", AFrequency::NoUnit);
    row("5 THz", AFrequency::NoUnit);
    row("mhz", AFrequency::NoUnit);
    row("MHzz", AFrequency::NoUnit);
    row("kMHz", AFrequency::NoUnit);
    row("MHz 5", AFrequency::NoUnit);
}

void TestAFrequency::suffixesAreRecognised()
{
    QFETCH(QByteArray, text);
    QFETCH(int, unit);
    QCOMPARE(int(AFrequency::unitForSuffix(text.constData())), unit);
    QCOMPARE(int(AFrequency::unitForSuffix(nullptr)), int(AFrequency::NoUnit));
}

void TestAFrequency::suffixTexts()
{
    QCOMPARE(AFrequency::suffixForUnit(AFrequency::NoUnit), "");
    QCOMPARE(AFrequency::suffixForUnit(AFrequency::Hz), "Hz");
    QCOMPARE(AFrequency::suffixForUnit(AFrequency::kHz), "kHz");
    QCOMPARE(AFrequency::suffixForUnit(AFrequency::MHz), "MHz");
    QCOMPARE(AFrequency::suffixForUnit(AFrequency::GHz), "GHz");
    QCOMPARE(AFrequency::kHz_Suffix, "kHz");
    QCOMPARE(AFrequency::MHz_Suffix, "MHz");
}

void TestAFrequency::doublesGiveTheWholeHertzTheyName_data()
{
    QTest::addColumn<double>("value");
    QTest::addColumn<int>("unit");
    QTest::addColumn<qint64>("hertz");
    QTest::newRow("1.001 MHz") << 1.001 << int(AFrequency::MHz) << qint64(1001000);
    QTest::newRow("88.1 MHz") << 88.1 << int(AFrequency::MHz) << qint64(88100000);
    QTest::newRow("-0.3 kHz") << -0.3 << int(AFrequency::kHz) << qint64(-300);
    QTest::newRow("30 GHz") << 30.0 << int(AFrequency::GHz) << qint64(30000000000);
    QTest::newRow("2.4000001 GHz") << 2.4000001 << int(AFrequency::GHz) << qint64(2400000100);
    QTest::newRow("not a number") << std::nan("") << int(AFrequency::MHz) << qint64(0);
    QTest::newRow("infinite") << std::numeric_limits<double>::infinity() << int(AFrequency::Hz) << kMax;
    QTest::newRow("too small") << -1e300 << int(AFrequency::GHz) << kMin;
    QTest::newRow("2^63") << 9223372036854775808.0 << int(AFrequency::Hz) << kMax;
}

void TestAFrequency::doublesGiveTheWholeHertzTheyName()
{
    QFETCH(double, value);
    QFETCH(int, unit);
    QFETCH(qint64, hertz);
    AFrequency frequency;
    frequency.setValue(value, static_cast<AFrequency::Unit>(unit));
    QCOMPARE(frequency, ::hertz(hertz));
    QCOMPARE(AFrequency::fromValue(value, static_cast<AFrequency::Unit>(unit)), frequency);
}

void TestAFrequency::everyThreeDecimalMegahertzIsWhole()
{
    AFrequency frequency;
    for (int kilohertz = 0; kilohertz <= 3000000; kilohertz += 7) {
        frequency.setValue(kilohertz / 1000.0, AFrequency::MHz);
        if (frequency != hertz(qint64(kilohertz) * 1000))
            QFAIL(qPrintable(QString::number(kilohertz)));
    }
}

void TestAFrequency::valuesBeyondTheRangeStayAtItsEdge()
{
    AFrequency frequency;
    frequency.setValue(kMax, AFrequency::GHz);
    QCOMPARE(frequency, hertz(kMax));
    frequency.setValue(kMin, AFrequency::kHz);
    QCOMPARE(frequency, hertz(kMin));
    QCOMPARE(AFrequency::fromValue(kMin, AFrequency::kHz), hertz(kMin));
    QCOMPARE(hertz(kMax) + hertz(1), hertz(kMax));
    QCOMPARE(hertz(kMin) - hertz(kMax), hertz(kMin));
    QCOMPARE(hertz(kMax) * 3.0, hertz(kMax));
    QCOMPARE(hertz(5) / 0.0, hertz(kMax));
    QCOMPARE(hertz(-5) / 0.0, hertz(kMin));
    QVERIFY((hertz(0) / 0.0).isNull());
    QVERIFY((hertz(5) * std::nan("")).isNull());
}

void TestAFrequency::intValueCutsTowardsZero()
{
    QCOMPARE(hertz(1999).intValue(AFrequency::kHz), 1LL);
    QCOMPARE(hertz(-1999).intValue(AFrequency::kHz), -1LL);
    QCOMPARE(AFrequency("-0.9").intValue(AFrequency::Hz), 0LL);
    QCOMPARE(AFrequency("1.9").intValue(AFrequency::Hz), 1LL);
    QCOMPARE(hertz(2400000000).intValue(AFrequency::GHz), 2LL);
    QCOMPARE(hertz(kMin).intValue(AFrequency::Hz), kMin);
}

void TestAFrequency::wholeNumbersOfAnyTypeAreExact()
{
    QCOMPARE(AFrequency::fromValue(3, AFrequency::kHz), hertz(3000));
    QCOMPARE(AFrequency::fromValue(9007199254740993LL, AFrequency::Hz), hertz(9007199254740993));
    QCOMPARE(AFrequency::fromValue(qint64(-9007199254740993), AFrequency::Hz), hertz(-9007199254740993));
}

void TestAFrequency::noUnitIsHertzForNumbers()
{
    AFrequency frequency;
    frequency.setValue(5, AFrequency::NoUnit);
    QCOMPARE(frequency, hertz(5));
    frequency.setValue(6.0, AFrequency::NoUnit);
    QCOMPARE(frequency, hertz(6));
    QCOMPARE(frequency.intValue(AFrequency::NoUnit), 6LL);
    QCOMPARE(frequency.floatValue(AFrequency::NoUnit), 6.0);
    QCOMPARE(hertz(88100000).floatValue(AFrequency::MHz), 88.1);
}

void TestAFrequency::formats_data()
{
    QTest::addColumn<QString>("format");
    QTest::addColumn<int>("unit");
    QTest::addColumn<int>("width");
    QTest::addColumn<int>("numberFormat");
    QTest::addColumn<int>("precision");
    QTest::addColumn<QString>("inEnglish");
    QTest::addColumn<QString>("inGerman");
    const QString both = QStringLiteral("%1 %2");
    QTest::newRow("canonical") << both << 0 << 0 << int('f') << -1 << "1234567.890000 MHz"
                               << "1234567.890000 MHz";
    QTest::newRow("hertz field") << "%1" << 1 << 20 << int('d') << -1 << "       1234567890000"
                                 << "       1234567890000";
    QTest::newRow("limit cell") << "%1" << 3 << 15 << int('f') << 7 << "1234567.8900000"
                                << "1234567.8900000";
    QTest::newRow("editor") << both << 0 << 0 << int('f') << 3 << "1234567.890 MHz"
                            << "1234567.890 MHz";
    QTest::newRow("shown") << "%L1 %2" << 0 << 0 << int('f') << -1 << "1,234,567.890000 MHz"
                           << "1.234.567,890000 MHz";
    QTest::newRow("shown, 3") << "%L1 %2" << 0 << 0 << int('f') << 3 << "1,234,567.890 MHz"
                              << "1.234.567,890 MHz";
    QTest::newRow("marker") << "%L1" << 0 << 0 << int('f') << 3 << "1,234,567.890"
                            << "1.234.567,890";
    QTest::newRow("unit alone") << "in %2" << 0 << 0 << int('f') << 3 << "in MHz"
                                << "in MHz";
    QTest::newRow("no placeholder") << "text" << 0 << 0 << int('f') << 3 << "text"
                                    << "text";
    QTest::newRow("gigahertz") << both << 4 << 0 << int('f') << 3 << "1234.568 GHz"
                               << "1234.568 GHz";
}

void TestAFrequency::formats()
{
    QFETCH(QString, format);
    QFETCH(int, unit);
    QFETCH(int, width);
    QFETCH(int, numberFormat);
    QFETCH(int, precision);
    const auto text = [&] {
        return hertz(1234567890000)
            .formatString(format, static_cast<AFrequency::Unit>(unit), width, char(numberFormat), precision);
    };
    QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedStates));
    QTEST(text(), "inEnglish");
    QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
    QTEST(text(), "inGerman");
}

void TestAFrequency::largeValuesAreFormattedExactly_data()
{
    QTest::addColumn<qint64>("hertz");
    QTest::addColumn<int>("unit");
    QTest::addColumn<int>("precision");
    QTest::addColumn<QString>("text");
    QTest::newRow("2^53 + 1") << qint64(9007199254740993) << 3 << -1 << "9,007,199,254.740993";
    QTest::newRow("just below 2^53") << qint64(8999999999999999) << 3 << -1 << "8,999,999,999.999999";
    QTest::newRow("largest") << kMax << 0 << -1 << "9,223,372,036,854.775807";
    QTest::newRow("smallest") << kMin << 1 << 2 << "-9,223,372,036,854,775,808.00";
    QTest::newRow("fewer decimals") << kMax << 4 << 2 << "9,223,372,036.85";
    QTest::newRow("more decimals") << qint64(9007199254740993) << 2 << 5 << "9,007,199,254,740.99300";
    QTest::newRow("none, rounded") << qint64(9007199254740993) << 3 << 0 << "9,007,199,255";
    QTest::newRow("tie to even") << qint64(9007199254500000) << 3 << 0 << "9,007,199,254";
}

void TestAFrequency::largeValuesAreFormattedExactly()
{
    QFETCH(qint64, hertz);
    QFETCH(int, unit);
    QFETCH(int, precision);
    QFETCH(QString, text);
    QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedStates));
    const auto format = [&](const char *pattern, int width) {
        return ::hertz(hertz).formatString(QLatin1String(pattern), static_cast<AFrequency::Unit>(unit), width, 'f',
                                           precision);
    };
    QCOMPARE(format("%L1", 0), text);
    QCOMPARE(format("%L1", 40), text.rightJustified(40));
    QCOMPARE(format("%1", 0), QString(text).remove(QLatin1Char(',')));
}

void TestAFrequency::canonicalTextsReadBack()
{
    std::mt19937_64 random(1);
    for (int i = 0; i < 20000; ++i) {
        const qint64 value = static_cast<qint64>(random()) >> (random() % 64);
        const QByteArray text = canonical(hertz(value));
        if (AFrequency(text.constData()) != hertz(value))
            QFAIL(text.constData());
    }
}

void TestAFrequency::paddedHertzSortAsNumbers()
{
    const auto key = [](qint64 value) {
        return hertz(value).formatString(QStringLiteral("%1"), AFrequency::Hz, 20, 'd', -1);
    };
    QCOMPARE(key(9000000).size(), 20);
    QVERIFY(key(9000000) < key(100000000));
    QVERIFY(key(0) < key(kMax));
}

void TestAFrequency::autoUnitGoesByMagnitude()
{
    QCOMPARE(hertz(0).autoUnit(), AFrequency::Hz);
    QCOMPARE(hertz(999).autoUnit(), AFrequency::Hz);
    QCOMPARE(AFrequency("999.999").autoUnit(), AFrequency::Hz);
    QCOMPARE(hertz(1000).autoUnit(), AFrequency::kHz);
    QCOMPARE(hertz(999999).autoUnit(), AFrequency::kHz);
    QCOMPARE(hertz(1000000).autoUnit(), AFrequency::MHz);
    QCOMPARE(hertz(-1000000).autoUnit(), AFrequency::MHz);
    QCOMPARE(hertz(kMin).autoUnit(), AFrequency::MHz);
    QCOMPARE(hertz(30000000000).autoUnit(), AFrequency::MHz);
}

void TestAFrequency::comparesByValue()
{
    const QList<AFrequency> ascending = {hertz(kMin), hertz(-1),          AFrequency("-0.5"),
                                         hertz(0),    AFrequency("0.25"), AFrequency("0.5"),
                                         hertz(1),    AFrequency("1.5"),  hertz(kMax)};
    for (int i = 0; i < ascending.size(); ++i) {
        for (int k = 0; k < ascending.size(); ++k) {
            const AFrequency &a = ascending.at(i);
            const AFrequency &b = ascending.at(k);
            QCOMPARE(a == b, i == k);
            QCOMPARE(a != b, i != k);
            QCOMPARE(a < b, i < k);
            QCOMPARE(a <= b, i <= k);
            QCOMPARE(a > b, i > k);
            QCOMPARE(a >= b, i >= k);
        }
    }
    QCOMPARE(AFrequency("1 MHz"), AFrequency("1000 kHz"));
    QCOMPARE(qHash(AFrequency("1 MHz")), qHash(AFrequency("1000 kHz")));
}

void TestAFrequency::addsAndSubtracts()
{
    AFrequency frequency("100 MHz");
    frequency += AFrequency("1 kHz");
    QCOMPARE(frequency, hertz(100001000));
    QCOMPARE(frequency - AFrequency("200 MHz"), hertz(-99999000));
    QCOMPARE(AFrequency("0.75") + AFrequency("0.75"), AFrequency("1.5"));
    QCOMPARE(AFrequency("1.25") - AFrequency("2"), AFrequency("-0.75"));
    QCOMPARE(AFrequency("-1.25") + AFrequency("2"), AFrequency("0.75"));
    QCOMPARE(hertz(kMax) - hertz(kMax), hertz(0));
}

void TestAFrequency::multipliesAndDivides()
{
    QCOMPARE(AFrequency("5 MHz") * 3.0, AFrequency("15 MHz"));
    QCOMPARE(AFrequency("5 MHz") * 0.1, AFrequency("500 kHz"));
    QCOMPARE(AFrequency("5 MHz") * -2.0, AFrequency("-10 MHz"));
    QCOMPARE(AFrequency("9007199254740993") * 1.0, AFrequency("9007199254740993"));
    QCOMPARE(AFrequency("9007199254740993") / 1.0, AFrequency("9007199254740993"));
    QCOMPARE(AFrequency("5 MHz") / 2.0, AFrequency("2.5 MHz"));
    QCOMPARE(AFrequency("5") / 2.0, AFrequency("2.5"));
    QCOMPARE(AFrequency("-5") / 2.0, AFrequency("-2.5"));
    QCOMPARE(AFrequency("5 MHz") / AFrequency("2 MHz"), 2.5);
    QVERIFY(std::isinf(AFrequency("5 MHz") / AFrequency()));
    QVERIFY(std::isnan(AFrequency() / AFrequency()));
}

void TestAFrequency::fractionsOfAHertzAreKept()
{
    AFrequency frequency;
    frequency.setValue(0.0000015, AFrequency::MHz);
    QCOMPARE(frequency, AFrequency("1.5"));
    QCOMPARE(frequency.floatValue(AFrequency::Hz), 1.5);
    QCOMPARE(frequency.toString(), QStringLiteral("1"));
    QCOMPARE(AFrequency("8333.333333").floatValue(AFrequency::Hz), 8333.333333);
    QVERIFY(!AFrequency("0.001").isNull());
    QCOMPARE(AFrequency("0.99999999999999999999999"), hertz(1));
    QCOMPARE(AFrequency("-0.99999999999999999999999"), hertz(-1));
}

QTEST_APPLESS_MAIN(TestAFrequency)
#include "tst_afrequency.moc"
