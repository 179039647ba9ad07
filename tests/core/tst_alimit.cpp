#include "core/alimit.h"

#include "core/testbasics.h"
#include "core/virtualtable.h"

#include <QtTest/QtTest>

#include <cmath>
#include <random>

using testbasics::hertz;

namespace {

ALimit::Section section(const char *begin, double beginValue, const char *end, double endValue,
                        unsigned int interpolation = ALimit::Linear)
{
    return {AFrequency(begin), AFrequency(end), beginValue, endValue, interpolation};
}

ALimit::Level level(const char *frequency, double value, unsigned int interpolation = ALimit::Step)
{
    return {AFrequency(frequency), value, interpolation};
}

// "-" where nothing governs
QString valueText(const ALimit &limit, const AFrequency &frequency)
{
    bool ok = false;
    const double value = limit.valueAt(frequency, &ok);
    if (!ok && !std::isnan(value))
        return QStringLiteral("a value without ok");
    return ok ? QString::number(value, 'g', 12) : QStringLiteral("-");
}

QStringList valueTexts(const ALimit &limit, const QList<AFrequency> &frequencies)
{
    QStringList texts;
    for (const AFrequency &frequency : frequencies)
        texts << valueText(limit, frequency);
    return texts;
}

} // namespace

class TestALimit : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aFreshLimitHasTheDefaultsOfTheFile();
    void settersChangeWhatTheGettersSay();
    void theRangeIncludesItsEdges();
    void virtualOperationsComeInTheAgreedOrder();
    void operationsAreVirtual();
    void unitsAreNumbersOrSymbols_data();
    void unitsAreNumbersOrSymbols();

    void anEmptyCurveGovernsNothing();
    void sectionsGovernFromBeginToEnd_data();
    void sectionsGovernFromBeginToEnd();
    void theFirstSectionInDocumentOrderGoverns();
    void overlapsAreAsInAPlainSearch();
    void aReversedSectionGovernsNothing();
    void levelsGovernBetweenEachOther_data();
    void levelsGovernBetweenEachOther();
    void levelsHoldToTheEdgesOfTheRange();
    void levelsGovernBesideSections();
    void ofLevelsAtOneFrequencyTheLastCounts();
    void theCurveFollowsChanges();
    void aNullOkIsLegal();
};

void TestALimit::aFreshLimitHasTheDefaultsOfTheFile()
{
    QObject parent;
    const auto *limit = new ALimit(&parent);
    QCOMPARE(limit->parent(), &parent);
    QCOMPARE(limit->name(), QString());
    QVERIFY(limit->begin().isNull());
    QCOMPARE(limit->end(), AFrequency("30 GHz"));
    QCOMPARE(limit->unit(), QString("8"));
    QCOMPARE(limit->unitId(), 8);
    QVERIFY(limit->sections().isEmpty() && limit->levels().isEmpty());
}

void TestALimit::settersChangeWhatTheGettersSay()
{
    ALimit limit;
    limit.setName("Mask");
    limit.setRange(AFrequency("1 MHz"), AFrequency("2 MHz"));
    limit.setUnit("9");
    limit.setDescription("text");
    limit.setColor("#ff0000");
    limit.addSection(section("1 MHz", 1, "2 MHz", 2));
    limit.addLevel(level("3 MHz", 3));
    QCOMPARE(limit.name(), QString("Mask"));
    QCOMPARE(limit.begin(), AFrequency("1 MHz"));
    QCOMPARE(limit.end(), AFrequency("2 MHz"));
    QCOMPARE(limit.unit(), QString("9"));
    QCOMPARE(limit.description(), QString("text"));
    QCOMPARE(limit.color(), QString("#ff0000"));
    QCOMPARE(limit.sections().size(), 1);
    QCOMPARE(limit.levels().size(), 1);
    limit.clearCurve();
    QVERIFY(limit.sections().isEmpty() && limit.levels().isEmpty());
}

void TestALimit::theRangeIncludesItsEdges()
{
    ALimit limit;
    limit.setRange(AFrequency("1 MHz"), AFrequency("2 MHz"));
    QVERIFY(limit.contains(AFrequency("1 MHz")));
    QVERIFY(limit.contains(AFrequency("1.5 MHz")));
    QVERIFY(limit.contains(AFrequency("2 MHz")));
    QVERIFY(!limit.contains(AFrequency("999999.5")));
    QVERIFY(!limit.contains(AFrequency("2000000.5")));
}

void TestALimit::virtualOperationsComeInTheAgreedOrder()
{
    const auto contains = tableOffset(&ALimit::contains);
    const auto name = tableOffset(&ALimit::name);
    const auto valueAt = tableOffset(&ALimit::valueAt);
    const auto lastOfQObject = tableOffset(&QObject::metaObject);
    QVERIFY(contains > lastOfQObject);
    QCOMPARE(name - contains, std::ptrdiff_t(sizeof(void *)));
    QCOMPARE(valueAt - name, std::ptrdiff_t(sizeof(void *)));
    QVERIFY(tableOffset(&ALimit::begin) > valueAt);
    QVERIFY(tableOffset(&ALimit::color) > valueAt);
}

void TestALimit::operationsAreVirtual()
{
    class Constant : public ALimit
    {
    public:
        explicit Constant(bool *isDeleted)
            : m_isDeleted(isDeleted)
        {}
        ~Constant() override { *m_isDeleted = true; }
        bool contains(const AFrequency &) const override { return true; }
        QString name() const override { return QStringLiteral("constant"); }
        double valueAt(const AFrequency &, bool *ok) const override { return *ok = true, 5.0; }

    private:
        bool *m_isDeleted;
    };
    bool isDeleted = false;
    bool ok = false;
    const ALimit *limit = new Constant(&isDeleted);
    QVERIFY(limit->contains(hertz(-1)));
    QCOMPARE(limit->name(), QString("constant"));
    QCOMPARE(limit->valueAt(hertz(-1), &ok), 5.0);
    delete limit;
    QVERIFY(isDeleted);
}

void TestALimit::unitsAreNumbersOrSymbols_data()
{
    QTest::addColumn<QString>("unit");
    QTest::addColumn<int>("id");
    QTest::newRow("number") << "10" << 10;
    QTest::newRow("blanks") << " 2 " << 2;
    QTest::newRow("symbol") << QStringLiteral("W/m\u00b2") << 11;
    QTest::newRow("W") << " W " << 10;
    QTest::newRow("unknown number") << "99" << 99;
    QTest::newRow("unknown symbol") << "furlong" << 0;
    QTest::newRow("empty") << "" << 0;
}

void TestALimit::unitsAreNumbersOrSymbols()
{
    QFETCH(QString, unit);
    ALimit limit;
    limit.setUnit(unit);
    QCOMPARE(limit.unit(), unit);
    QTEST(limit.unitId(), "id");
}

void TestALimit::anEmptyCurveGovernsNothing()
{
    ALimit limit;
    bool ok = true;
    QVERIFY(std::isnan(limit.valueAt(AFrequency("1 MHz"), &ok)));
    QVERIFY(!ok);
}

void TestALimit::sectionsGovernFromBeginToEnd_data()
{
    QTest::addColumn<unsigned int>("interpolation");
    QTest::addColumn<QStringList>("values"); // at 1, 10, 50.5, 100 and 101 MHz, and just below 1 MHz
    QTest::newRow("step") << 0u << QStringList{"20", "20", "20", "20", "-", "-"};
    QTest::newRow("linear") << 1u << QStringList{"20", "21.8181818182", "30", "40", "-", "-"};
    QTest::newRow("logarithmic") << 2u << QStringList{"20", "30", "37.0329137812", "40", "-", "-"};
    QTest::newRow("unknown") << 3u << QStringList{"20", "21.8181818182", "30", "40", "-", "-"};
    QTest::newRow("largest") << 4294967295u << QStringList{"20", "21.8181818182", "30", "40", "-", "-"};
}

void TestALimit::sectionsGovernFromBeginToEnd()
{
    QFETCH(unsigned int, interpolation);
    ALimit limit;
    limit.addSection(section("1 MHz", 20, "100 MHz", 40, interpolation));
    QTEST(valueTexts(limit, {"1 MHz", "10 MHz", "50.5 MHz", "100 MHz", "101 MHz", "999999.999"}), "values");
    limit.setRange(AFrequency("40 MHz"), AFrequency("41 MHz")); // a section is bounded by its own ends alone
    QTEST(valueTexts(limit, {"1 MHz", "10 MHz", "50.5 MHz", "100 MHz", "101 MHz", "999999.999"}), "values");

    ALimit fromZero; // no logarithm there
    fromZero.addSection(section("0 MHz", 20, "100 MHz", 40, ALimit::Logarithmic));
    fromZero.addSection(section("-100 MHz", 0, "-50 MHz", 40, ALimit::Logarithmic));
    QCOMPARE(valueTexts(fromZero, {"0", "50 MHz", "100 MHz", "-75 MHz"}), (QStringList{"20", "30", "40", "20"}));
}

void TestALimit::theFirstSectionInDocumentOrderGoverns()
{
    ALimit limit;
    limit.addSection(section("30 MHz", 3, "40 MHz", 3));
    limit.addSection(section("10 MHz", 1, "20 MHz", 1));
    limit.addSection(section("20 MHz", 2, "35 MHz", 2));
    limit.addSection(section("12 MHz", 4, "12 MHz", 5));
    limit.addSection(section("50 MHz", 6, "50 MHz", 7));
    QCOMPARE(valueTexts(limit, {"10 MHz", "12 MHz", "20 MHz", "20.1 MHz", "29.9 MHz", "30 MHz", "36 MHz", "41 MHz",
                                "50 MHz", "50.1 MHz"}),
             (QStringList{"1", "1", "1", "2", "2", "3", "3", "-", "6", "-"}));
}

void TestALimit::overlapsAreAsInAPlainSearch()
{
    std::mt19937 random(1);
    for (int round = 0; round < 300; ++round) {
        ALimit limit;
        for (unsigned int i = random() % 12; i > 0; --i) {
            const qint64 begin = random() % 30;
            const qint64 end = begin + random() % 12 - 1;
            limit.addSection({hertz(begin), hertz(end), double(i), double(i), ALimit::Linear});
        }
        for (int half = -2; half < 90; ++half) {
            const AFrequency frequency = hertz(half) / 2.0;
            QString expected = QStringLiteral("-");
            for (const ALimit::Section &candidate : limit.sections()) {
                if (candidate.begin <= frequency && frequency <= candidate.end) {
                    expected = QString::number(candidate.beginValue);
                    break;
                }
            }
            QCOMPARE(valueText(limit, frequency), expected);
        }
    }
}

void TestALimit::aReversedSectionGovernsNothing()
{
    ALimit limit;
    limit.addSection(section("20 MHz", 1, "10 MHz", 2));
    QCOMPARE(valueTexts(limit, {"10 MHz", "15 MHz", "20 MHz"}), (QStringList{"-", "-", "-"}));
}

void TestALimit::levelsGovernBetweenEachOther_data()
{
    QTest::addColumn<unsigned int>("interpolation");
    QTest::addColumn<QStringList>("values"); // at 1, 10, 50.5, 99.999999, 100 and 200 MHz
    QTest::newRow("step") << 0u << QStringList{"20", "20", "20", "20", "40", "40"};
    QTest::newRow("linear") << 1u << QStringList{"20", "21.8181818182", "30", "39.999999798", "40", "37.5"};
    QTest::newRow("logarithmic") << 2u
                                 << QStringList{"20", "30", "37.0329137812", "39.9999999566", "40", "35.6932344193"};
    QTest::newRow("unknown") << 9u << QStringList{"20", "21.8181818182", "30", "39.999999798", "40", "37.5"};
}

void TestALimit::levelsGovernBetweenEachOther()
{
    QFETCH(unsigned int, interpolation);
    ALimit limit; // not in order of frequency
    limit.addLevel(level("500 MHz", 30, 0));
    limit.addLevel(level("1 MHz", 20, interpolation));
    limit.addLevel(level("100 MHz", 40, interpolation));
    const QStringList values =
        valueTexts(limit, {"1 MHz", "10 MHz", "50.5 MHz", "99.999999 MHz", "100 MHz", "200 MHz"});
    QTEST(values, "values");
}

void TestALimit::levelsHoldToTheEdgesOfTheRange()
{
    ALimit limit;
    limit.setRange(AFrequency("10 MHz"), AFrequency("50 MHz"));
    limit.addLevel(level("20 MHz", 2, ALimit::Linear));
    limit.addLevel(level("30 MHz", 3, ALimit::Linear));
    QCOMPARE(
        valueTexts(limit, {"9 MHz", "10 MHz", "19 MHz", "20 MHz", "25 MHz", "30 MHz", "31 MHz", "50 MHz", "51 MHz"}),
        (QStringList{"-", "2", "2", "2", "2.5", "3", "3", "3", "-"}));
    limit.setRange(AFrequency("22 MHz"), AFrequency("24 MHz")); // the range doesn't cut what lies between levels
    QCOMPARE(valueTexts(limit, {"19 MHz", "20 MHz", "25 MHz", "30 MHz", "31 MHz"}),
             (QStringList{"-", "2", "2.5", "3", "-"}));
}

void TestALimit::levelsGovernBesideSections()
{
    ALimit limit;
    limit.addLevel(level("10 MHz", 1));
    limit.addLevel(level("20 MHz", 2));
    limit.addSection(section("12 MHz", 7, "14 MHz", 9));
    QCOMPARE(valueTexts(limit, {"5 MHz", "11.9 MHz", "12 MHz", "13 MHz", "14 MHz", "14.1 MHz", "25 MHz"}),
             (QStringList{"1", "1", "7", "8", "9", "1", "2"}));
}

void TestALimit::ofLevelsAtOneFrequencyTheLastCounts()
{
    ALimit limit; // a jump at 20 MHz from 2 to 5
    limit.addLevel(level("10 MHz", 1, ALimit::Linear));
    limit.addLevel(level("20 MHz", 2, ALimit::Linear));
    limit.addLevel(level("20 MHz", 5, ALimit::Linear));
    limit.addLevel(level("30 MHz", 6, ALimit::Linear));
    QCOMPARE(valueTexts(limit, {"15 MHz", "20 MHz", "25 MHz"}), (QStringList{"1.5", "5", "5.5"}));
}

void TestALimit::theCurveFollowsChanges()
{
    ALimit limit;
    QCOMPARE(valueText(limit, "15 MHz"), QString("-"));
    limit.addLevel(level("10 MHz", 1));
    QCOMPARE(valueText(limit, "15 MHz"), QString("1"));
    limit.addSection(section("10 MHz", 2, "20 MHz", 2));
    QCOMPARE(valueText(limit, "15 MHz"), QString("2"));
    limit.clearCurve();
    QCOMPARE(valueText(limit, "15 MHz"), QString("-"));
}

void TestALimit::aNullOkIsLegal()
{
    ALimit limit;
    QVERIFY(std::isnan(limit.valueAt(hertz(5), nullptr)));
    limit.addLevel(level("10 MHz", 1));
    QCOMPARE(limit.valueAt(hertz(5), nullptr), 1.0);
}

QTEST_GUILESS_MAIN(TestALimit)
#include "tst_alimit.moc"
