#include "display/adisplayvaluecache.h"

#include <QtTest/QtTest>

#include <algorithm>
#include <cmath>
#include <limits>
#include <random>

using Values = QList<AMeasurementValue>;

namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();

// A point whose every member tells where it comes from.
AMeasurementValue point(int i, double level)
{
    AFrequency frequency;
    frequency.setValue(100 + i, AFrequency::kHz);
    AMeasurementValue value(level, 3, frequency, static_cast<unsigned int>(i), i + 0.5);
    value.reserved = static_cast<quint8>(i % 251);
    return value;
}

Values points(const QVector<double> &levels)
{
    Values values;
    for (int i = 0; i < levels.size(); ++i)
        values += point(i, levels[i]);
    return values;
}

// Of the numbers 0 to n - 1 in an order of their own.
Values scrambled(int n)
{
    Values values;
    values.reserve(n);
    for (int i = 0; i < n; ++i)
        values += point(i, (i * 7919LL + 13) % n);
    return values;
}

const AMeasurementValue &untouched()
{
    static const AMeasurementValue value = point(-50, 1e9);
    return value;
}

void mark(ADisplayValueCache *cache)
{
    for (int i = 0; i < cache->count(); ++i)
        (*cache)[i] = untouched();
}

// NaN equals NaN.
bool isSame(const AMeasurementValue &a, const AMeasurementValue &b)
{
    AMeasurementValue x = a;
    AMeasurementValue y = b;
    const bool bothNaN = std::isnan(x.level) && std::isnan(y.level);
    if (bothNaN)
        x.level = y.level = 0.0;
    return x == y;
}

// What is written of the cache, step by step, one test of every condition at a time.
Values reference(Values columns, const Values &values, int first, int last)
{
    const int n = values.size();
    const int c = columns.size();
    if (n <= c || c == 0) {
        if (n != c || !(last < n) || first > last)
            return columns;
        for (int i = first; i <= last; ++i) {
            if (i >= 0)
                columns[i] = values[i];
        }
        return columns;
    }
    if (last < 0 || first >= n)
        return columns;
    const double r = static_cast<double>(c) / n;
    const int a = static_cast<int>(first * r);
    const int b = static_cast<int>(last * r);
    if (b < a)
        return columns;
    for (int j = a; j <= b; ++j) {
        if (j < 0 || j >= c)
            continue;
        AMeasurementValue best;
        int k = static_cast<int>(j / r);
        bool goesOn = !(j < static_cast<int>(k * r)) && !(k > last) && k < n;
        while (goesOn) {
            const AMeasurementValue &candidate = values[k];
            if (!std::isnan(candidate.level)) {
                if (best.isEmpty())
                    best = candidate;
                else if (candidate.level > best.level)
                    best = candidate;
            }
            ++k;
            goesOn = !(j < static_cast<int>(k * r)) && !(k > last) && k < n;
        }
        columns[j] = best;
    }
    return columns;
}

QString difference(const Values &actual, const Values &expected)
{
    if (actual.size() != expected.size())
        return QStringLiteral("%1 columns instead of %2").arg(actual.size()).arg(expected.size());
    for (int i = 0; i < actual.size(); ++i) {
        if (!isSame(actual[i], expected[i]))
            return QStringLiteral("column %1 holds point %2 (%3) instead of %4 (%5)")
                .arg(i)
                .arg(actual[i].leading)
                .arg(actual[i].level)
                .arg(expected[i].leading)
                .arg(expected[i].level);
    }
    return {};
}

// The columns that are not as they were marked.
QVector<int> touchedColumns(const ADisplayValueCache &cache)
{
    QVector<int> touched;
    for (int i = 0; i < cache.count(); ++i) {
        if (!(cache.at(i) == untouched()))
            touched += i;
    }
    return touched;
}

QVector<double> levelsOf(const ADisplayValueCache &cache)
{
    QVector<double> levels;
    for (int i = 0; i < cache.count(); ++i)
        levels += cache.at(i).level;
    return levels;
}

int messages = 0;

void countMessage(QtMsgType, const QMessageLogContext &, const QString &)
{
    ++messages;
}

} // namespace

class TestDisplayValueCache : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void startsWithTheColumnsAskedFor();
    void belongsToItsParent();
    void hasNoSignalsAndSlotsOfItsOwn();
    void resizingKeepsWhatFits();
    void writingToAColumnLeavesEarlierCopiesAlone();

    void equalSizesCopyAllValuesWhole();
    void equalSizesCopyOnlyTheStretch();
    void anExactFitRefusesARangeThatDoesNot_data();
    void anExactFitRefusesARangeThatDoesNot();
    void aShorterListLeavesTheCacheAlone();
    void withoutColumnsNothingHappens();

    void eachColumnHoldsTheHighestOfItsPoints();
    void equalHighsKeepTheLowerFrequency();
    void thePointOnABorderCountsOnBothSides();
    void notANumberNeverWins_data();
    void notANumberNeverWins();
    void infiniteLevelsAreLevels();
    void anEmptyBestGivesWayToTheNext();
    void aPartialUpdateTouchesExactlyItsColumns_data();
    void aPartialUpdateTouchesExactlyItsColumns();
    void theFirstColumnIsWholeAndTheLastEndsWithTheStretch();
    void aCrossedRangeWithinAColumnCutsItsPointsOff();
    void rangesBeyondTheListAreCut_data();
    void rangesBeyondTheListAreCut();
    void largeListsAreThinned_data();
    void largeListsAreThinned();
    void agreesWithTheReferenceOnRandomSizes();
    void agreesWithTheReferenceOnEverySmallSize();

private:
    void checkTouchedColumns(int columns, int n);
};

void TestDisplayValueCache::startsWithTheColumnsAskedFor()
{
    const ADisplayValueCache none(nullptr);
    QCOMPARE(none.count(), 0);
    QVERIFY(none.data().isEmpty());
    const ADisplayValueCache three(3, nullptr);
    QCOMPARE(three.count(), 3);
    for (int i = 0; i < 3; ++i)
        QVERIFY(three.at(i).isEmpty());
    QCOMPARE(ADisplayValueCache(0, nullptr).count(), 0);
    QCOMPARE(ADisplayValueCache(-1, nullptr).count(), 0);
    QCOMPARE(ADisplayValueCache(std::numeric_limits<int>::min(), nullptr).count(), 0);
}

void TestDisplayValueCache::belongsToItsParent()
{
    auto *parent = new QObject;
    const QPointer<ADisplayValueCache> first = new ADisplayValueCache(parent);
    const QPointer<ADisplayValueCache> second = new ADisplayValueCache(5, parent);
    QCOMPARE(first->parent(), parent);
    QCOMPARE(second->parent(), parent);
    delete parent;
    QVERIFY(first.isNull() && second.isNull());
}

void TestDisplayValueCache::hasNoSignalsAndSlotsOfItsOwn()
{
    const QMetaObject &meta = ADisplayValueCache::staticMetaObject;
    QCOMPARE(meta.methodCount(), meta.methodOffset());
    QCOMPARE(meta.className(), "ADisplayValueCache");
}

void TestDisplayValueCache::resizingKeepsWhatFits()
{
    ADisplayValueCache cache(3, nullptr);
    const Values values = points({1, 2, 3});
    cache.update(values, 0, 2);
    cache.resize(5);
    QCOMPARE(cache.count(), 5);
    QVERIFY(cache.at(2) == values[2]);
    QVERIFY(cache.at(3).isEmpty() && cache.at(4).isEmpty());
    cache.resize(2);
    QCOMPARE(cache.data(), values.mid(0, 2));
    cache.resize(4);
    QVERIFY(cache.at(2).isEmpty()); // what was cut off does not come back
    cache.resize(-3);
    QCOMPARE(cache.count(), 0);
    cache.resize(10000000);
    QCOMPARE(cache.count(), 10000000);
    QVERIFY(cache.at(9999999).isEmpty());
}

void TestDisplayValueCache::writingToAColumnLeavesEarlierCopiesAlone()
{
    ADisplayValueCache cache(2, nullptr);
    cache.update(points({1, 2}), 0, 1);
    const Values before = cache.data();
    const ADisplayValueCache &constant = cache;
    constant[1] = point(7, 70);
    QVERIFY(cache.at(1) == point(7, 70));
    QVERIFY(before[1] == point(1, 2));
    QCOMPARE(cache.data(), Values({point(0, 1), point(7, 70)}));
}

void TestDisplayValueCache::equalSizesCopyAllValuesWhole()
{
    const Values values = points({-3, kNaN, kInfinity, -kInfinity, 0});
    ADisplayValueCache cache(5, nullptr);
    mark(&cache);
    cache.update(values, 0, 4);
    QCOMPARE(difference(cache.data(), values), QString());
}

void TestDisplayValueCache::equalSizesCopyOnlyTheStretch()
{
    ADisplayValueCache cache(6, nullptr);
    mark(&cache);
    cache.update(scrambled(6), 2, 4);
    QCOMPARE(touchedColumns(cache), QVector<int>({2, 3, 4}));
    mark(&cache);
    cache.update(scrambled(6), 5, 5);
    QCOMPARE(touchedColumns(cache), QVector<int>({5}));
    mark(&cache);
    cache.update(scrambled(6), -4, 1);
    QCOMPARE(touchedColumns(cache), QVector<int>({0, 1}));
}

void TestDisplayValueCache::anExactFitRefusesARangeThatDoesNot_data()
{
    QTest::addColumn<int>("first");
    QTest::addColumn<int>("last");

    QTest::newRow("last is the size") << 0 << 6;
    QTest::newRow("last is far behind") << 0 << std::numeric_limits<int>::max();
    QTest::newRow("crossed") << 3 << 2;
    QTest::newRow("both behind") << 7 << 9;
    QTest::newRow("both before") << -5 << -2;
    QTest::newRow("far before") << std::numeric_limits<int>::min() << -1;
}

void TestDisplayValueCache::anExactFitRefusesARangeThatDoesNot()
{
    QFETCH(int, first);
    QFETCH(int, last);
    ADisplayValueCache cache(6, nullptr);
    mark(&cache);
    cache.update(scrambled(6), first, last);
    QCOMPARE(touchedColumns(cache), QVector<int>());
}

void TestDisplayValueCache::aShorterListLeavesTheCacheAlone()
{
    ADisplayValueCache cache(6, nullptr);
    mark(&cache);
    messages = 0;
    const QtMessageHandler handler = qInstallMessageHandler(countMessage);
    cache.update(scrambled(5), 0, 4);
    cache.update({}, 0, 0);
    cache.update({}, 0, -1);
    qInstallMessageHandler(handler);
    QCOMPARE(messages, 0);
    QCOMPARE(touchedColumns(cache), QVector<int>());
}

void TestDisplayValueCache::withoutColumnsNothingHappens()
{
    ADisplayValueCache cache(nullptr);
    cache.update(scrambled(10), 0, 9);
    cache.update({}, 0, -1);
    cache.update({}, -1, -1);
    cache.update({}, 0, 0);
    QCOMPARE(cache.count(), 0);
}

void TestDisplayValueCache::eachColumnHoldsTheHighestOfItsPoints()
{
    const Values values = scrambled(1000);
    ADisplayValueCache cache(100, nullptr);
    mark(&cache);
    cache.update(values, 0, 999);
    for (int column = 0; column < 100; ++column) {
        const Values own = values.mid(column * 10, 10);
        const auto highest =
            std::max_element(own.begin(), own.end(), [](const auto &a, const auto &b) { return a.level < b.level; });
        QVERIFY(cache.at(column) == *highest); // all of it, so also its frequency
    }
}

void TestDisplayValueCache::equalHighsKeepTheLowerFrequency()
{
    QVector<double> levels(1000, -90.0);
    for (int column = 0; column < 100; ++column)
        levels[column * 10 + 3] = levels[column * 10 + 4] = levels[column * 10 + 8] = -20.0;
    const Values values = points(levels);
    ADisplayValueCache cache(100, nullptr);
    cache.update(values, 0, 999);
    for (int column = 0; column < 100; ++column)
        QVERIFY(cache.at(column) == values[column * 10 + 3]);
    cache.update(points(QVector<double>(1000, -1.0)), 0, 999);
    for (int column = 0; column < 100; ++column)
        QCOMPARE(cache.at(column).leading, quint64(column * 10));
}

void TestDisplayValueCache::thePointOnABorderCountsOnBothSides()
{
    // Two columns of five points: point 2 lies in the first, and the second begins to look there.
    ADisplayValueCache cache(2, nullptr);
    cache.update(points({1, 2, 9, 3, 4}), 0, 4);
    QCOMPARE(levelsOf(cache), QVector<double>({9, 9}));
    cache.update(points({1, 9, 2, 3, 4}), 0, 4);
    QCOMPARE(levelsOf(cache), QVector<double>({9, 4}));
}

void TestDisplayValueCache::notANumberNeverWins_data()
{
    QTest::addColumn<QVector<double>>("levels");
    QTest::addColumn<double>("best");

    QTest::newRow("first") << QVector<double>({kNaN, -5, -7}) << -5.0;
    QTest::newRow("last") << QVector<double>({-7, -5, kNaN}) << -5.0;
    QTest::newRow("all but the lowest of all") << QVector<double>({kNaN, -kInfinity, kNaN}) << -kInfinity;
}

void TestDisplayValueCache::notANumberNeverWins()
{
    QFETCH(QVector<double>, levels);
    QFETCH(double, best);
    ADisplayValueCache cache(1, nullptr);
    cache.update(points(levels), 0, 2);
    QCOMPARE(cache.at(0).level, best);
    cache.update(points({kNaN, kNaN, kNaN}), 0, 2);
    QVERIFY(cache.at(0).isEmpty()); // and not what it held before
    QVERIFY(cache.at(0) == AMeasurementValue());
}

void TestDisplayValueCache::infiniteLevelsAreLevels()
{
    ADisplayValueCache cache(2, nullptr);
    cache.update(points({-kInfinity, -3, kInfinity, -kInfinity, -kInfinity, -kInfinity}), 0, 5);
    QCOMPARE(levelsOf(cache), QVector<double>({kInfinity, -kInfinity}));
    QCOMPARE(cache.at(1).leading, quint64(3));
}

void TestDisplayValueCache::anEmptyBestGivesWayToTheNext()
{
    const Values values = {AMeasurementValue(), point(1, -50), AMeasurementValue(), point(3, -60)};
    QVERIFY(values[0].isEmpty());
    ADisplayValueCache cache(1, nullptr);
    cache.update(values, 0, 3);
    QVERIFY(cache.at(0) == values[3]); // 0 is above -50, and -60 comes after an empty value
    cache.update(values, 0, 2);
    QVERIFY(cache.at(0) == values[2]);

    AMeasurementValue emptyWithUnit;
    emptyWithUnit.unit = 4;
    emptyWithUnit.trailing = 2.5;
    cache.update({point(0, -1), emptyWithUnit}, 0, 1);
    QVERIFY(cache.at(0) == emptyWithUnit); // whole
}

void TestDisplayValueCache::aPartialUpdateTouchesExactlyItsColumns_data()
{
    QTest::addColumn<int>("first");
    QTest::addColumn<int>("last");
    QTest::addColumn<int>("begin");
    QTest::addColumn<int>("count");

    QTest::newRow("one column") << 20 << 29 << 2 << 1;
    QTest::newRow("within a column") << 22 << 27 << 2 << 1;
    QTest::newRow("one point") << 25 << 25 << 2 << 1;
    QTest::newRow("over a border") << 29 << 30 << 2 << 2;
    QTest::newRow("first point") << 0 << 0 << 0 << 1;
    QTest::newRow("last point") << 999 << 999 << 99 << 1;
    QTest::newRow("one percent") << 500 << 509 << 50 << 1;
    QTest::newRow("all") << 0 << 999 << 0 << 100;
    QTest::newRow("crossed") << 30 << 29 << 0 << 0;
    QTest::newRow("far crossed") << 999 << 0 << 0 << 0;
}

void TestDisplayValueCache::aPartialUpdateTouchesExactlyItsColumns()
{
    checkTouchedColumns(100, 1000);
}

// Of an update from "first" to "last", those from "begin" on, "count" of them.
void TestDisplayValueCache::checkTouchedColumns(int columns, int n)
{
    QFETCH(int, first);
    QFETCH(int, last);
    QFETCH(int, begin);
    QFETCH(int, count);
    ADisplayValueCache cache(columns, nullptr);
    mark(&cache);
    cache.update(scrambled(n), first, last);
    QVector<int> expected;
    for (int i = 0; i < count; ++i)
        expected += begin + i;
    QCOMPARE(touchedColumns(cache), expected);
}

void TestDisplayValueCache::theFirstColumnIsWholeAndTheLastEndsWithTheStretch()
{
    QVector<double> levels(30, -90.0);
    levels[11] = -10.0; // before the stretch, in its first column
    levels[25] = -10.0; // behind it, in its last column
    ADisplayValueCache cache(3, nullptr);
    cache.update(points(levels), 15, 22);
    QVERIFY(cache.at(0).isEmpty());
    QCOMPARE(cache.at(1).level, -10.0);
    QCOMPARE(cache.at(1).leading, quint64(11));
    QCOMPARE(cache.at(2).level, -90.0);
    cache.update(points(levels), 15, 25);
    QCOMPARE(cache.at(2).leading, quint64(25));
}

void TestDisplayValueCache::aCrossedRangeWithinAColumnCutsItsPointsOff()
{
    ADisplayValueCache cache(3, nullptr);
    cache.update(scrambled(30), 18, 12);
    const Values values = scrambled(30);
    const auto highest = std::max_element(values.begin() + 10, values.begin() + 13,
                                          [](const auto &a, const auto &b) { return a.level < b.level; });
    QVERIFY(cache.at(1) == *highest);
    QVERIFY(cache.at(0).isEmpty() && cache.at(2).isEmpty());
}

void TestDisplayValueCache::rangesBeyondTheListAreCut_data()
{
    QTest::addColumn<int>("first");
    QTest::addColumn<int>("last");
    QTest::addColumn<int>("begin");
    QTest::addColumn<int>("count");
    constexpr int kLeast = std::numeric_limits<int>::min();
    constexpr int kMost = std::numeric_limits<int>::max();

    QTest::newRow("one behind") << 0 << 30 << 0 << 3;
    QTest::newRow("far behind") << 20 << kMost << 2 << 1;
    QTest::newRow("one before") << -1 << 5 << 0 << 1;
    QTest::newRow("far before") << kLeast << 10 << 0 << 2;
    QTest::newRow("on both sides") << kLeast << kMost << 0 << 3;
    QTest::newRow("nothing of the list before") << -9 << -1 << 0 << 0;
    QTest::newRow("an empty stretch at the beginning") << 0 << -1 << 0 << 0;
    QTest::newRow("nothing of the list behind") << 30 << 40 << 0 << 0;
    QTest::newRow("far crossed") << kMost << kLeast << 0 << 0;
}

void TestDisplayValueCache::rangesBeyondTheListAreCut()
{
    checkTouchedColumns(3, 30);
}

void TestDisplayValueCache::largeListsAreThinned_data()
{
    QTest::addColumn<int>("count");
    QTest::addColumn<int>("columns");

    QTest::newRow("one column") << 200000 << 1;
    QTest::newRow("a display") << 1000000 << 1920;
    QTest::newRow("nearly as many columns") << 100000 << 99999;
}

void TestDisplayValueCache::largeListsAreThinned()
{
    QFETCH(int, count);
    QFETCH(int, columns);
    const Values values = scrambled(count);
    ADisplayValueCache cache(columns, nullptr);
    cache.update(values, 0, count - 1);
    QCOMPARE(difference(cache.data(), reference(ADisplayValueCache(columns, nullptr).data(), values, 0, count - 1)),
             QString());
}

void TestDisplayValueCache::agreesWithTheReferenceOnRandomSizes()
{
    std::mt19937 generator(20);
    const auto number = [&generator](int from, int to) {
        return std::uniform_int_distribution<int>(from, to)(generator);
    };
    constexpr double kOddLevels[] = {kNaN, kInfinity, -kInfinity, 0.0, -0.0, 1e308, -1e308};
    int thinned = 0;
    int copied = 0;
    int changed = 0;
    for (int round = 0; round < 3000; ++round) {
        const int columns = number(0, 9) == 0 ? number(0, 3) : number(1, 150);
        const int n = number(0, 5) == 0 ? columns : number(0, 600);
        Values values;
        for (int i = 0; i < n; ++i) {
            // Few distinct levels, so that many are equal; now and then an odd one, or an empty value.
            const int sort = number(0, 29);
            if (sort == 0)
                values += AMeasurementValue();
            else
                values += point(i, sort == 1 ? kOddLevels[number(0, 6)] : number(-20, 20));
        }
        ADisplayValueCache cache(columns, nullptr);
        mark(&cache);
        for (int update = 0; update < 4; ++update) {
            const bool isWhole = number(0, 4) == 0;
            const int first = isWhole ? 0 : number(-n / 8 - 2, n + n / 8 + 2);
            const int last = isWhole ? n - 1 : number(0, 3) == 0 ? number(-5, n + 5) : first + number(0, 40);
            const Values before = cache.data();
            cache.update(values, first, last);
            const QString found = difference(cache.data(), reference(before, values, first, last));
            QVERIFY2(found.isEmpty(), qPrintable(QStringLiteral("%1 points, %2 columns, %3 to %4: %5")
                                                     .arg(n)
                                                     .arg(columns)
                                                     .arg(first)
                                                     .arg(last)
                                                     .arg(found)));
            thinned += n > columns && columns > 0 ? 1 : 0;
            copied += n == columns ? 1 : 0;
            changed += difference(before, cache.data()).isEmpty() ? 0 : 1;
        }
    }
    QVERIFY(thinned > 4000 && copied > 800 && changed > 4000);
}

void TestDisplayValueCache::agreesWithTheReferenceOnEverySmallSize()
{
    for (int columns = 0; columns <= 12; ++columns) {
        for (int n = 0; n <= 20; ++n) {
            const Values values = scrambled(n);
            for (int first = -2; first <= n + 1; ++first) {
                for (int last = -2; last <= n + 1; ++last) {
                    ADisplayValueCache cache(columns, nullptr);
                    mark(&cache);
                    const Values expected = reference(cache.data(), values, first, last);
                    cache.update(values, first, last);
                    QCOMPARE(difference(cache.data(), expected), QString());
                }
            }
        }
    }
}

QTEST_GUILESS_MAIN(TestDisplayValueCache)
#include "tst_adisplayvaluecache.moc"
