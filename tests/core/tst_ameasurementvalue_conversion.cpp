#include "core/ameasurementvalue.h"
#include "core/emu.h"

#include <QtTest/QtTest>

#include <cmath>
#include <limits>

namespace {

constexpr int kUnitCount = 18;
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();

enum UnitId
{
    dBm,
    dBW,
    dBV,
    dBmV,
    dBuV,
    V,
    dBV_m,
    dBmW_m2,
    dBuV_m,
    V_m,
    W,
    W_m2,
    dBW_m2,
    dBA_m,
    dBuA_m,
    A_m,
    dB,
    Times
};

AMeasurementValue value(double level, int unit)
{
    return AMeasurementValue(level, static_cast<unsigned char>(unit), AFrequency("100 MHz"), 0, 0.0);
}

double converted(double level, int from, int to)
{
    return value(level, from).convertTo(to).level;
}

bool isAmplitude(int unit)
{
    return unit == V || unit == V_m || unit == A_m || unit == Times;
}

bool isLinear(int unit)
{
    return isAmplitude(unit) || unit == W || unit == W_m2;
}

int familyOf(int unit)
{
    if (unit <= V || unit == W)
        return 0;
    return unit >= dB ? 2 : 1;
}

// The textbook formulas by way of volts, volts per metre or the plain ratio.
long double toAmplitude(long double level, int unit)
{
    constexpr long double r = 50.0L;
    constexpr long double z = 376.73L;
    switch (unit) {
    case dBm:
        return std::sqrt(r * 0.001L * std::pow(10.0L, level / 10.0L));
    case dBW:
        return std::sqrt(r * std::pow(10.0L, level / 10.0L));
    case dBV:
    case dBV_m:
    case dB:
        return std::pow(10.0L, level / 20.0L);
    case dBmV:
        return 1e-3L * std::pow(10.0L, level / 20.0L);
    case dBuV:
    case dBuV_m:
        return 1e-6L * std::pow(10.0L, level / 20.0L);
    case V:
    case V_m:
    case Times:
        return level;
    case W:
        return std::sqrt(r * level);
    case dBmW_m2:
        return std::sqrt(z * 0.001L * std::pow(10.0L, level / 10.0L));
    case dBW_m2:
        return std::sqrt(z * std::pow(10.0L, level / 10.0L));
    case W_m2:
        return std::sqrt(z * level);
    case dBA_m:
        return z * std::pow(10.0L, level / 20.0L);
    case dBuA_m:
        return z * 1e-6L * std::pow(10.0L, level / 20.0L);
    case A_m:
        return z * level;
    }
    return kNaN;
}

long double fromAmplitude(long double amplitude, int unit)
{
    constexpr long double r = 50.0L;
    constexpr long double z = 376.73L;
    switch (unit) {
    case dBm:
        return 10.0L * std::log10(amplitude * amplitude / r / 0.001L);
    case dBW:
        return 10.0L * std::log10(amplitude * amplitude / r);
    case dBV:
    case dBV_m:
    case dB:
        return 20.0L * std::log10(amplitude);
    case dBmV:
        return 20.0L * std::log10(amplitude / 1e-3L);
    case dBuV:
    case dBuV_m:
        return 20.0L * std::log10(amplitude / 1e-6L);
    case V:
    case V_m:
    case Times:
        return amplitude;
    case W:
        return amplitude * amplitude / r;
    case dBmW_m2:
        return 10.0L * std::log10(amplitude * amplitude / z / 0.001L);
    case dBW_m2:
        return 10.0L * std::log10(amplitude * amplitude / z);
    case W_m2:
        return amplitude * amplitude / z;
    case dBA_m:
        return 20.0L * std::log10(amplitude / z);
    case dBuA_m:
        return 20.0L * std::log10(amplitude / z / 1e-6L);
    case A_m:
        return amplitude / z;
    }
    return kNaN;
}

bool isClose(double actual, long double expected)
{
    return std::fabs(actual - expected) <= 1e-9L * std::fabs(expected);
}

QByteArray symbol(int unit)
{
    return QString::fromUcs4(emu_find(unit)->name).toUtf8();
}

QByteArray bits(double number)
{
    return QByteArray(reinterpret_cast<const char *>(&number), sizeof number).toHex();
}

struct Message
{
    QtMsgType type;
    QString text;
    QByteArray category;
};

// Collects the messages of its lifetime.
class MessageLog
{
public:
    MessageLog()
        : m_previous(qInstallMessageHandler(&MessageLog::handle))
    {
        messages().clear();
    }
    ~MessageLog() { qInstallMessageHandler(m_previous); }
    static QList<Message> &messages()
    {
        static QList<Message> list;
        return list;
    }

private:
    Q_DISABLE_COPY(MessageLog)
    static void handle(QtMsgType type, const QMessageLogContext &context, const QString &text)
    {
        messages().append({type, text, context.category});
    }
    QtMessageHandler m_previous;
};

} // namespace

class TestAMeasurementValueConversion : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyConversionFollowsTheFormulas_data();
    void everyConversionFollowsTheFormulas();
    void knownPairs_data();
    void knownPairs();
    void offsetsWithinACounterpartAreExact_data();
    void offsetsWithinACounterpartAreExact();
    void roundTripsGiveTheLevelBack_data();
    void roundTripsGiveTheLevelBack();
    void theSameUnitKeepsTheBits();
    void referenceLevelsAreExactlyZeroDecibels_data();
    void referenceLevelsAreExactlyZeroDecibels();
    void wholeDecadesAreExactLevels();
    void tinyDecibelsAreKept();
    void extremeLevelsOfDecibelsDoNotOverflow();
    void extremeLinearLevels();
    void logarithmsOfZeroAndNegativeLevels();
    void negativeAmplitudes();
    void infinitiesAndNaNPassThrough();
    void betweenFamiliesTheLevelIsNaN();
    void anUnknownTargetLeavesTheValueUnchanged_data();
    void anUnknownTargetLeavesTheValueUnchanged();
    void anUnknownSourceIsNaNInTheTargetUnit();
    void conversionKeepsTheOtherMembers();
    void aUnitRecordConvertsLikeItsId();
    void aNullUnitWarnsOnceAndChangesNothing();
};

void TestAMeasurementValueConversion::everyConversionFollowsTheFormulas_data()
{
    QTest::addColumn<int>("from");
    QTest::addColumn<int>("to");
    for (int from = 0; from < kUnitCount; ++from) {
        for (int to = 0; to < kUnitCount; ++to)
            QTest::newRow((symbol(from) + " to " + symbol(to)).constData()) << from << to;
    }
}

void TestAMeasurementValueConversion::everyConversionFollowsTheFormulas()
{
    QFETCH(int, from);
    QFETCH(int, to);
    const QVector<double> levels =
        isLinear(from)
            ? QVector<double>{1e-18, 3.7e-9, 1e-6, 0.001, 0.02, 0.5, 1.0, 2.0, 50.0, 376.73, 1e4, 7.1e9, 1e15}
            : QVector<double>{-174.0, -120.0, -73.25, -30.0, -1.0, 0.0, 0.1, 3.0, 16.99, 60.0, 97.7, 107.0, 300.0};
    for (double level : levels) {
        const AMeasurementValue result = value(level, from).convertTo(to);
        QCOMPARE(int(result.unit), to);
        if (familyOf(from) != familyOf(to)) {
            QVERIFY(std::isnan(result.level));
            continue;
        }
        const long double expected = fromAmplitude(toAmplitude(level, from), to);
        // Decibels near 0 by the residue of the reference formulas; all else by 1e-9 of the result.
        const bool good = !isLinear(to) && std::fabs(expected) < 1e-6L ? std::fabs(result.level - expected) < 1e-15L
                                                                       : isClose(result.level, expected);
        if (!good)
            QFAIL(qPrintable(QStringLiteral("%1 gives %2 instead of %3")
                                 .arg(level)
                                 .arg(result.level, 0, 'g', 17)
                                 .arg(double(expected), 0, 'g', 17)));
    }
}

void TestAMeasurementValueConversion::knownPairs_data()
{
    QTest::addColumn<double>("level");
    QTest::addColumn<int>("from");
    QTest::addColumn<double>("expected");
    QTest::addColumn<int>("to");
    const auto row = [](double level, int from, double expected, int to) {
        QTest::newRow((QByteArray::number(level) + ' ' + symbol(from) + " to " + symbol(to)).constData())
            << level << from << expected << to;
    };
    row(0.0, dBm, 106.98970004336018805, dBuV);
    row(0.0, dBm, 46.98970004336018805, dBmV);
    row(0.0, dBm, -13.01029995663981195, dBV);
    row(0.0, dBm, -30.0, dBW);
    row(0.0, dBm, 0.001, W);
    row(0.0, dBm, 0.22360679774997896964, V);
    row(-107.0, dBm, std::sqrt(50e-3 * std::pow(10.0, -10.7)), V);
    row(1.0, V, 120.0, dBuV);
    row(1.0, V, 60.0, dBmV);
    row(1.0, V, 0.02, W);
    row(1.0, V, 13.01029995663981195, dBm);
    row(50.0, W, 50.0, V);
    row(2.0, W, 10.0, V);
    row(1.0, W, 30.0, dBm);
    row(120.0, dBuV_m, 1.0, V_m);
    row(120.0, dBuV_m, 0.0, dBV_m);
    row(1.0, W_m2, 19.409533739891847, V_m); // the root of 376.73
    row(19.409533739891847, V_m, 1.0, W_m2);
    row(1.0, V_m, 1.0 / 376.73, W_m2);
    row(376.73, V_m, 1.0, A_m);
    row(1.0, A_m, 376.73, V_m);
    row(1.0, A_m, 376.73, W_m2);
    row(1.0, A_m, 120.0, dBuA_m);
    row(1.0, W_m2, 30.0, dBmW_m2);
    row(-30.0, dBW_m2, 0.0, dBmW_m2);
    row(0.0, dBuA_m, 51.520604111826603, dBuV_m);  // 20 lg 376.73
    row(0.0, dBuV_m, -145.76030205591330, dBW_m2); // -120 - 10 lg 376.73
    row(20.0, dB, 10.0, Times);
    row(2.0, Times, 6.0205999132796239043, dB);
    row(0.0, dB, 1.0, Times);
}

void TestAMeasurementValueConversion::knownPairs()
{
    QFETCH(double, level);
    QFETCH(int, from);
    QFETCH(double, expected);
    QFETCH(int, to);
    const double result = converted(level, from, to);
    QVERIFY2(isClose(result, expected), QByteArray::number(result, 'g', 17).constData());
}

void TestAMeasurementValueConversion::offsetsWithinACounterpartAreExact_data()
{
    QTest::addColumn<int>("from");
    QTest::addColumn<int>("to");
    QTest::addColumn<int>("decibels");
    const auto row = [](int from, int to, int decibels) {
        QTest::newRow((symbol(from) + " to " + symbol(to)).constData()) << from << to << decibels;
        QTest::newRow((symbol(to) + " to " + symbol(from)).constData()) << to << from << -decibels;
    };
    row(dBW, dBm, 30);
    row(dBV, dBmV, 60);
    row(dBV, dBuV, 120);
    row(dBmV, dBuV, 60);
    row(dBV_m, dBuV_m, 120);
    row(dBW_m2, dBmW_m2, 30);
    row(dBA_m, dBuA_m, 120);
}

void TestAMeasurementValueConversion::offsetsWithinACounterpartAreExact()
{
    QFETCH(int, from);
    QFETCH(int, to);
    QFETCH(int, decibels);
    for (double level : {-173.8, -30.0, -1e-7, 0.0, 0.1, 33.3, 1e5, 1e300})
        QCOMPARE(bits(converted(level, from, to)), bits(level + decibels));
}

void TestAMeasurementValueConversion::roundTripsGiveTheLevelBack_data()
{
    everyConversionFollowsTheFormulas_data();
}

void TestAMeasurementValueConversion::roundTripsGiveTheLevelBack()
{
    QFETCH(int, from);
    QFETCH(int, to);
    if (familyOf(from) != familyOf(to)) {
        QVERIFY(std::isnan(value(1.0, from).convertTo(to).convertTo(from).level));
        return;
    }
    for (double level : {1e-9, 0.003, 0.7, 1.0, 12.5, 99.0, 250.0}) {
        const AMeasurementValue start = value(level, from);
        const AMeasurementValue back = start.convertTo(to).convertTo(from);
        QCOMPARE(int(back.unit), from);
        // A decibel is as fine as a linear double near 1 allows.
        const double tolerance = isLinear(from) ? 1e-12 * level : 1e-12;
        if (!(std::fabs(back.level - level) <= tolerance))
            QFAIL(qPrintable(QStringLiteral("%1 comes back as %2").arg(level).arg(back.level, 0, 'g', 17)));
    }
    // 0 dB comes back as 0 dB itself over every other logarithmic unit.
    if (!isLinear(from) && !isLinear(to))
        QCOMPARE(bits(value(0.0, from).convertTo(to).convertTo(from).level), bits(0.0));
}

void TestAMeasurementValueConversion::theSameUnitKeepsTheBits()
{
    const double signalling = std::numeric_limits<double>::signaling_NaN();
    for (int unit = 0; unit < kUnitCount; ++unit) {
        for (double level : {0.1, -0.0, -5.5, 1e308, 5e-324, kInfinity, -kInfinity, kNaN, -kNaN, signalling}) {
            const AMeasurementValue v = value(level, unit);
            const AMeasurementValue same = v.convertTo(unit);
            QCOMPARE(bits(same.level), bits(v.level));
            QCOMPARE(int(same.unit), unit);
        }
    }
}

void TestAMeasurementValueConversion::referenceLevelsAreExactlyZeroDecibels_data()
{
    QTest::addColumn<double>("level");
    QTest::addColumn<int>("from");
    QTest::addColumn<int>("to");
    QTest::newRow("1 mW") << 1e-3 << int(W) << int(dBm);
    QTest::newRow("1 W") << 1.0 << int(W) << int(dBW);
    QTest::newRow("1 V") << 1.0 << int(V) << int(dBV);
    QTest::newRow("1 mV") << 1e-3 << int(V) << int(dBmV);
    QTest::newRow("1 uV") << 1e-6 << int(V) << int(dBuV);
    QTest::newRow("1 uV/m") << 1e-6 << int(V_m) << int(dBuV_m);
    QTest::newRow("1 uA/m") << 1e-6 << int(A_m) << int(dBuA_m);
    QTest::newRow("1 mW/m2") << 1e-3 << int(W_m2) << int(dBmW_m2);
    QTest::newRow("0.02 W") << 0.02 << int(W) << int(dBV);
    QTest::newRow("0.2236 V") << std::sqrt(0.05) << int(V) << int(dBm);
    QTest::newRow("ratio 1") << 1.0 << int(Times) << int(dB);
}

void TestAMeasurementValueConversion::referenceLevelsAreExactlyZeroDecibels()
{
    QFETCH(double, level);
    QFETCH(int, from);
    QFETCH(int, to);
    QCOMPARE(bits(converted(level, from, to)), bits(0.0));
    // A step of a few roundings is seen.
    QVERIFY(converted(level * (1.0 + 1e-15), from, to) > 0.0);
    QVERIFY(converted(level * (1.0 - 1e-15), from, to) < 0.0);
}

void TestAMeasurementValueConversion::wholeDecadesAreExactLevels()
{
    QCOMPARE(bits(converted(0.0, dBuV, V)), bits(1e-6));
    QCOMPARE(bits(converted(60.0, dBuV, V)), bits(1e-3));
    QCOMPARE(bits(converted(120.0, dBuV_m, V_m)), bits(1.0));
    QCOMPARE(bits(converted(0.0, dBm, W)), bits(1e-3));
    QCOMPARE(bits(converted(-70.0, dBm, W)), bits(1e-10));
    QCOMPARE(bits(converted(30.0, dBmW_m2, W_m2)), bits(1.0));
    QCOMPARE(bits(converted(40.0, dB, Times)), bits(100.0));
}

void TestAMeasurementValueConversion::tinyDecibelsAreKept()
{
    const double level = 1.0 + 1e-9; // as a double, so the expectation is that of the rounded number
    const long double expected = 20.0L * std::log10(static_cast<long double>(level));
    QVERIFY(isClose(converted(level, Times, dB), expected));
    QVERIFY(isClose(converted(level, V, dBV), expected));
    QCOMPARE(converted(std::nextafter(1.0, 2.0), W, dBW) > 0.0, true);
    QCOMPARE(converted(std::nextafter(1.0, 0.0), W, dBW) < 0.0, true);
    QCOMPARE(converted(1e-20, dBW, dBm), 30.0);
}

void TestAMeasurementValueConversion::extremeLevelsOfDecibelsDoNotOverflow()
{
    for (int from = 0; from < kUnitCount; ++from) {
        for (int to = 0; to < kUnitCount; ++to) {
            if (isLinear(from) || isLinear(to) || familyOf(from) != familyOf(to))
                continue;
            const double shift = converted(0.0, from, to);
            for (double level : {-1e6, -1000.0, 1000.0, 1e6})
                QVERIFY(isClose(converted(level, from, to), static_cast<long double>(level) + shift));
            QVERIFY(std::isfinite(converted(1e308, from, to)));
            QVERIFY(std::isfinite(converted(-1e308, from, to)));
        }
    }
    QVERIFY(isClose(converted(1000.0, dBm, W), 1e97L));
    QVERIFY(isClose(converted(-1000.0, dBm, W), 1e-103L));
    QVERIFY(isClose(converted(6000.0, dB, Times), 1e300L));
    QCOMPARE(converted(1e5, dB, Times), kInfinity);
    QCOMPARE(converted(-1e5, dB, Times), 0.0);
    QCOMPARE(converted(1e308, dBm, V), kInfinity);
}

void TestAMeasurementValueConversion::extremeLinearLevels()
{
    const double largest = std::numeric_limits<double>::max();
    const double smallest = std::numeric_limits<double>::denorm_min();
    QVERIFY(isClose(converted(largest, V, dBV), 20.0L * std::log10(static_cast<long double>(largest))));
    QVERIFY(isClose(converted(smallest, V, dBV), 20.0L * std::log10(static_cast<long double>(smallest))));
    QVERIFY(isClose(converted(largest, V, dBm),
                    20.0L * std::log10(static_cast<long double>(largest)) + 30.0L - 10.0L * std::log10(50.0L)));
    QCOMPARE(converted(1e200, V, W), kInfinity);
    QCOMPARE(converted(1e-200, V, W), 0.0);
    QVERIFY(isClose(converted(largest, W, V), std::sqrt(50.0L) * std::sqrt(static_cast<long double>(largest))));
    QVERIFY(isClose(converted(1e150, V_m, W_m2), 1e300L / 376.73L));
    QVERIFY(isClose(converted(1e-150, V_m, W_m2), 1e-300L / 376.73L));
}

void TestAMeasurementValueConversion::logarithmsOfZeroAndNegativeLevels()
{
    for (int from = 0; from < kUnitCount; ++from) {
        for (int to = 0; to < kUnitCount; ++to) {
            if (!isLinear(from) || isLinear(to) || familyOf(from) != familyOf(to))
                continue;
            QCOMPARE(converted(0.0, from, to), -kInfinity);
            QCOMPARE(converted(-0.0, from, to), -kInfinity);
            QVERIFY(std::isnan(converted(-1.0, from, to)));
            QVERIFY(std::isnan(converted(-1e-300, from, to)));
        }
    }
}

void TestAMeasurementValueConversion::negativeAmplitudes()
{
    QVERIFY(isClose(converted(-376.73, V_m, A_m), -1.0L));
    QVERIFY(isClose(converted(-2.0, A_m, V_m), -753.46L));
    QVERIFY(isClose(converted(-10.0, V, W), 2.0L));
    QVERIFY(isClose(converted(-1.0, A_m, W_m2), 376.73L));
    QVERIFY(std::isnan(converted(-2.0, W, V)));
    QVERIFY(std::isnan(converted(-2.0, W_m2, V_m)));
    QVERIFY(std::isnan(converted(-2.0, W_m2, A_m)));
    QCOMPARE(converted(0.0, V, W), 0.0);
    QCOMPARE(converted(0.0, W, V), 0.0);
    QCOMPARE(bits(converted(-0.0, V_m, A_m)), bits(-0.0));
}

void TestAMeasurementValueConversion::infinitiesAndNaNPassThrough()
{
    for (int from = 0; from < kUnitCount; ++from) {
        for (int to = 0; to < kUnitCount; ++to) {
            if (familyOf(from) != familyOf(to))
                continue;
            QVERIFY(std::isnan(converted(kNaN, from, to)));
            QCOMPARE(converted(kInfinity, from, to), kInfinity);
            if (isLinear(from))
                continue;
            QCOMPARE(converted(-kInfinity, from, to), isLinear(to) ? 0.0 : -kInfinity);
        }
    }
    QCOMPARE(converted(-kInfinity, V_m, A_m), -kInfinity);
}

void TestAMeasurementValueConversion::betweenFamiliesTheLevelIsNaN()
{
    AMeasurementValue v = value(-50.0, dBm);
    v.trailing = 3.0;
    const AMeasurementValue result = v.convertTo(int(dBuV_m));
    QVERIFY(std::isnan(result.level));
    QCOMPARE(int(result.unit), int(dBuV_m));
    QCOMPARE(result.frequency, v.frequency);
    QCOMPARE(result.trailing, 3.0);
    QVERIFY(std::isnan(AMeasurementValue().convertTo(int(dB)).level));
}

void TestAMeasurementValueConversion::anUnknownTargetLeavesTheValueUnchanged_data()
{
    QTest::addColumn<int>("target");
    for (int target :
         {-1, -2, 18, 200, 255, 256, 261, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()})
        QTest::newRow(QByteArray::number(target).constData()) << target;
}

void TestAMeasurementValueConversion::anUnknownTargetLeavesTheValueUnchanged()
{
    QFETCH(int, target);
    for (int unit : {0, 5, 17, 18, 200, 255}) {
        AMeasurementValue v(-12.5, static_cast<unsigned char>(unit), AFrequency("7 MHz"), 4, 5.0);
        v.reserved = 6;
        QVERIFY(v.convertTo(target) == v);
    }
}

void TestAMeasurementValueConversion::anUnknownSourceIsNaNInTheTargetUnit()
{
    for (int unit : {18, 100, 255}) {
        for (int target = 0; target < kUnitCount; ++target) {
            const AMeasurementValue result = value(1.0, unit).convertTo(target);
            QVERIFY(std::isnan(result.level));
            QCOMPARE(int(result.unit), target);
            QCOMPARE(result.frequency, AFrequency("100 MHz"));
        }
    }
}

void TestAMeasurementValueConversion::conversionKeepsTheOtherMembers()
{
    AMeasurementValue v(0.0, dBm, AFrequency("7 MHz"), 0xffffffffu, -2.5);
    v.reserved = 200;
    const AMeasurementValue original = v;
    AMeasurementValue expected = v;
    expected.unit = dBW;
    expected.level = -30.0;
    QVERIFY(v.convertTo(int(dBW)) == expected);
    QVERIFY(v == original);
}

void TestAMeasurementValueConversion::aUnitRecordConvertsLikeItsId()
{
    MessageLog log;
    for (int target = 0; target < kUnitCount; ++target) {
        const AMeasurementValue byId = value(12.0, dBm).convertTo(target);
        const AMeasurementValue byRecord = value(12.0, dBm).convertTo(emu_find(target));
        QCOMPARE(bits(byRecord.level), bits(byId.level));
        QCOMPARE(byRecord.unit, byId.unit);
    }
    QVERIFY(log.messages().isEmpty());
}

void TestAMeasurementValueConversion::aNullUnitWarnsOnceAndChangesNothing()
{
    const AMeasurementValue v = value(12.0, dBm);
    const emu_entry *none = nullptr;
    QList<Message> messages;
    AMeasurementValue result;
    {
        MessageLog log;
        result = v.convertTo(none);
        messages = log.messages();
    }
    QVERIFY(result == v);
    QCOMPARE(messages.size(), 1);
    QCOMPARE(int(messages.first().type), int(QtWarningMsg));
    QCOMPARE(messages.first().text, QStringLiteral("warning: converting to null-pointer unit is undefined"));
    QCOMPARE(messages.first().category, QByteArray("default"));
}

QTEST_APPLESS_MAIN(TestAMeasurementValueConversion)
#include "tst_ameasurementvalue_conversion.moc"
