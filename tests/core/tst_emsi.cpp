#include "core/emsi.h"

#include <QtTest/QtTest>

#include <cmath>
#include <limits>

namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();

} // namespace

class TestEmsi : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theSmallestScaleBelowTheLimitIsChosen_data();
    void theSmallestScaleBelowTheLimitIsChosen();
    void nothingSuitsZeroInfinitiesAndNaN_data();
    void nothingSuitsZeroInfinitiesAndNaN();
    void factorsRunInStepsOfAThousand();
    void thePowersOfAThousandAreOneOfTheirOwnScale();
    void everyMagnitudeKeepsTheRule();
};

void TestEmsi::theSmallestScaleBelowTheLimitIsChosen_data()
{
    QTest::addColumn<double>("value");
    QTest::addColumn<double>("limit");
    QTest::addColumn<QString>("prefix");
    QTest::addColumn<double>("factor");
    const auto row = [](const char *name, double value, double limit, const char *prefix, double factor) {
        QTest::newRow(name) << value << limit << QString::fromUtf8(prefix) << factor;
    };
    row("1", 1.0, 1000.0, "", 1.0);
    row("999.99", 999.99, 1000.0, "", 1.0);
    row("1000 is not below", 1000.0, 1000.0, "k", 1e3);
    row("just below 1", std::nextafter(1.0, 0.0), 1000.0, "m", 1e-3);
    row("4999 below 5000", 4999.0, 5000.0, "", 1.0);
    row("5000 of 5000", 5000.0, 5000.0, "k", 1e3);
    row("1 below 5000", 1.0, 5000.0, "m", 1e-3);
    row("5 of 5000", 5.0, 5000.0, "", 1.0);
    row("0.004999", 0.004999, 5000.0, "\xc2\xb5", 1e-6);
    row("femto", 2e-15, 1000.0, "f", 1e-15);
    row("pico", 2e-12, 1000.0, "p", 1e-12);
    row("nano", 2e-9, 1000.0, "n", 1e-9);
    row("micro", 2e-6, 1000.0, "\xc2\xb5", 1e-6);
    row("milli", 2e-3, 1000.0, "m", 1e-3);
    row("kilo", 2e3, 1000.0, "k", 1e3);
    row("mega", 2e6, 1000.0, "M", 1e6);
    row("giga", 2e9, 1000.0, "G", 1e9);
    row("tera", 2e12, 1000.0, "T", 1e12);
    row("negative", -0.5, 1000.0, "m", 1e-3);
    row("below femto", 1e-30, 1000.0, "f", 1e-15);
    row("smallest double", std::numeric_limits<double>::denorm_min(), 1000.0, "f", 1e-15);
    row("above tera", 1e30, 1000.0, "T", 1e12);
    row("largest double", std::numeric_limits<double>::max(), 1000.0, "T", 1e12);
    row("limit zero", 1.0, 0.0, "T", 1e12);
    row("limit below zero", 1.0, -5.0, "T", 1e12);
    row("limit NaN", 1.0, std::nan(""), "T", 1e12);
    row("limit infinite", 1e30, kInfinity, "f", 1e-15);
    row("limit huge", 1e300, std::numeric_limits<double>::max(), "\xc2\xb5", 1e-6);
}

void TestEmsi::theSmallestScaleBelowTheLimitIsChosen()
{
    QFETCH(double, value);
    QFETCH(double, limit);
    const emsi_unit *scale = emsi_find_scale(value, limit);
    QVERIFY(scale);
    QTEST(QString::fromUcs4(scale->prefix), "prefix");
    QTEST(double(scale->factor), "factor");
}

void TestEmsi::nothingSuitsZeroInfinitiesAndNaN_data()
{
    QTest::addColumn<double>("value");
    QTest::newRow("0") << 0.0;
    QTest::newRow("-0") << -0.0;
    QTest::newRow("infinity") << kInfinity;
    QTest::newRow("-infinity") << -kInfinity;
    QTest::newRow("NaN") << std::nan("");
}

void TestEmsi::nothingSuitsZeroInfinitiesAndNaN()
{
    QFETCH(double, value);
    QVERIFY(!emsi_find_scale(value, 1000.0));
    QVERIFY(!emsi_find_scale(value, 5000.0));
    QVERIFY(!emsi_find_scale(value, kInfinity));
}

void TestEmsi::factorsRunInStepsOfAThousand()
{
    QStringList prefixes;
    for (int exponent = -15; exponent <= 12; exponent += 3) {
        const emsi_unit *scale = emsi_find_scale(2.0 * std::pow(10.0, exponent), 1000.0);
        QVERIFY(scale);
        // The full extended precision, not that of a double.
        QVERIFY(std::fabs(scale->factor / std::pow(10.0L, exponent) - 1.0L) < 1e-18L);
        prefixes << QString::fromUcs4(scale->prefix);
    }
    QCOMPARE(prefixes.join(QLatin1Char(',')), QString::fromUtf8("f,p,n,\xc2\xb5,m,,k,M,G,T"));
}

void TestEmsi::thePowersOfAThousandAreOneOfTheirOwnScale()
{
    for (int exponent = -12; exponent <= 12; exponent += 3) {
        const QByteArray text = "1e" + QByteArray::number(exponent);
        const double value = text.toDouble();
        const emsi_unit *scale = emsi_find_scale(value, 1000.0);
        QVERIFY(scale);
        QCOMPARE(double(value / scale->factor), 1.0);
        const double fiveTimes = ("5e" + QByteArray::number(exponent)).toDouble();
        QCOMPARE(emsi_find_scale(fiveTimes, 5000.0), scale);
        QVERIFY(emsi_find_scale(std::nextafter(value, 0.0), 1000.0) < scale);
    }
}

void TestEmsi::everyMagnitudeKeepsTheRule()
{
    for (double limit : {10.0, 1000.0, 5000.0}) {
        for (double value = 1.1e-14; value < 0.9e12 * limit; value *= 1.37) {
            const emsi_unit *scale = emsi_find_scale(value, limit);
            QVERIFY(scale);
            QVERIFY(value / scale->factor < limit);
            if (scale->factor > 1e-14L)
                QVERIFY(value / (scale->factor / 1000.0L) >= limit);
        }
    }
}

QTEST_APPLESS_MAIN(TestEmsi)
#include "tst_emsi.moc"
