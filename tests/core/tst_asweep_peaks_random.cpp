#include "core/peaksearch.h"

#include <QtTest/QtTest>

#include <random>

// The peak search against a search that is written for being right alone, on many random lists.

namespace {

using Random = std::mt19937;

int number(Random &random, int from, int to)
{
    return std::uniform_int_distribution<int>(from, to)(random);
}

bool chance(Random &random, double probability)
{
    return std::bernoulli_distribution(probability)(random);
}

// The shapes are those on which a search that keeps too little goes wrong: long chains of peaks, each better than the
// last and within the spacing, and equal levels.
enum Shape
{
    FewLevels,
    ManyLevels,
    RisingTeeth,
    FallingTeeth,
    Mountain,
    Constant,
    ShapeCount
};

double randomLevel(Random &random, int shape, int i, int count)
{
    const double tooth = i % 2 ? 1000.0 : 0.0;
    switch (shape) {
    case FewLevels:
        return number(random, -3, 3);
    case ManyLevels:
        return std::normal_distribution<double>(-100.0, 6.0)(random);
    case RisingTeeth:
        return tooth + 0.1 * i + (chance(random, 0.1) ? number(random, -2, 2) : 0);
    case FallingTeeth:
        return tooth - 0.1 * i + (chance(random, 0.1) ? number(random, -2, 2) : 0);
    case Mountain:
        return tooth - std::fabs(i - count / 2.0);
    default:
        return 1.0;
    }
}

QList<AMeasurementValue> randomData(Random &random, int size)
{
    constexpr double kSteps[] = {1.0, 10.0, 0.125, 1e6};
    constexpr int kUnits[] = {kdBm, kdBuV, kV, kWattPerSquareMetre};
    const int shape = number(random, 0, ShapeCount - 1);
    const double step = kSteps[number(random, 0, 3)];
    const bool irregular = chance(random, 0.3);
    const bool holes = chance(random, 0.3);
    const bool units = chance(random, 0.2);
    QList<AMeasurementValue> data;
    double frequency = number(random, -5, 5);
    for (int i = 0; i < size; ++i) {
        double level = randomLevel(random, shape, i, size);
        if (holes && chance(random, 0.2))
            level = std::initializer_list<double>{kNaN, kNaN, kInfinity, -kInfinity}.begin()[number(random, 0, 3)];
        data.append(point(level, frequency, units ? kUnits[number(random, 0, 3)] : kdBm));
        frequency += step * (irregular ? number(random, 0, 4) : 1);
    }
    return data;
}

PeakRequest randomRequest(Random &random, const QList<AMeasurementValue> &data)
{
    PeakRequest request;
    const int size = data.size();
    if (chance(random, 0.5)) {
        request.first = number(random, -2, size);
        request.last = number(random, request.first - 1, size + 2);
    }
    request.maxima = chance(random, 0.1) ? 0 : chance(random, 0.2) ? number(random, 20, 200) : number(random, 1, 8);
    request.minima = chance(random, 0.3) ? 0 : number(random, 1, 30);
    const int units[] = {kdBm, kdBm, kV, kNoSuchUnit};
    request.unit = units[number(random, 0, 3)];
    const AFrequency span = size > 1 ? data.last().frequency - data.first().frequency : AFrequency();
    const double parts[] = {0.0, 0.002, 0.01, 0.05, 0.2, 0.5, 1.0, 3.0, -1.0};
    request.spacing = span * (parts[number(random, 0, 8)] * number(random, 1, 4));
    if (chance(random, 0.3) && size > 1)
        request.spacing = (data[1].frequency - data[0].frequency) * number(random, 1, 5);
    return request;
}

std::vector<AMeasurementValue> filledUp(std::vector<AMeasurementValue> peaks, int capacity)
{
    peaks.resize(static_cast<std::size_t>(capacity));
    return peaks;
}

bool sameBits(const std::vector<AMeasurementValue> &a, const std::vector<AMeasurementValue> &b)
{
    return std::equal(a.begin(), a.end(), b.begin(), b.end());
}

} // namespace

class TestASweepPeaksRandom : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyAnswerIsThatOfTheReference_data();
    void everyAnswerIsThatOfTheReference();
};

void TestASweepPeaksRandom::everyAnswerIsThatOfTheReference_data()
{
    QTest::addColumn<int>("smallest");
    QTest::addColumn<int>("largest");
    QTest::addColumn<int>("rounds");

    QTest::newRow("a few points") << 0 << 8 << 20000;
    QTest::newRow("some points") << 9 << 120 << 10000;
    QTest::newRow("many points") << 500 << 3000 << 800;
}

void TestASweepPeaksRandom::everyAnswerIsThatOfTheReference()
{
    QFETCH(int, smallest);
    QFETCH(int, largest);
    QFETCH(int, rounds);
    int shortened = 0; // how often the spacing mattered
    for (int round = 0; round < rounds; ++round) {
        Random random(static_cast<unsigned>(round));
        const QList<AMeasurementValue> data = randomData(random, number(random, smallest, largest));
        const PeakRequest request = randomRequest(random, data);
        const std::vector<AMeasurementValue> maxima = referencePeaks(data, request, 1.0, request.maxima);
        const std::vector<AMeasurementValue> minima = referencePeaks(data, request, -1.0, request.minima);
        const FoundPeaks found = findPeaks(data, request);
        const auto message = [&](const char *sort) {
            return QStringLiteral("%1 of round %2, %3 points from %4 to %5, spacing %6")
                .arg(QLatin1String(sort))
                .arg(round)
                .arg(data.size())
                .arg(request.first)
                .arg(request.last)
                .arg(request.spacing.canonicalText())
                .toUtf8();
        };
        QVERIFY2(sameBits(found.maxima, filledUp(maxima, request.maxima)), message("maxima"));
        QVERIFY2(sameBits(found.minima, filledUp(minima, request.minima)), message("minima"));
        QCOMPARE(found.count, static_cast<int>(std::max(maxima.size(), minima.size())));

        PeakRequest close = request;
        close.spacing = AFrequency();
        shortened += referencePeaks(data, close, 1.0, request.maxima).size() != maxima.size();
    }
    QVERIFY2(shortened > rounds / 50, QByteArray::number(shortened));
}

QTEST_APPLESS_MAIN(TestASweepPeaksRandom)
#include "tst_asweep_peaks_random.moc"
