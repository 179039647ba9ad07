#include "marker/aspectrummarker.h"

#include "core/emsi.h"
#include "core/emu.h"
#include "core/virtualtable.h"
#include "marker/markertraces.h"

#include <limits>
#include <type_traits>

using namespace markertest;

namespace {

constexpr int kUnknownUnit = 200;
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

static_assert(!std::is_copy_constructible_v<ASpectrumMarker> && std::has_virtual_destructor_v<ASpectrumMarker>);
static_assert(std::is_same_v<std::underlying_type_t<ASpectrumMarker::Type>, int> &&
              std::is_same_v<std::underlying_type_t<ASpectrumMarker::Scope>, int>);

class RenamedMarker : public ASpectrumMarker
{
public:
    using ASpectrumMarker::ASpectrumMarker;
    QString name() const override { return QStringLiteral("carrier"); }
};

class ShortMarker : public ASpectrumMarker
{
public:
    explicit ShortMarker(const QStringList &items)
        : ASpectrumMarker(TypeMax)
        , m_items(items)
    {}
    QStringList labelItems(const emu_entry *, const emsi_unit *) const override { return m_items; }

private:
    QStringList m_items;
};

emu_entry unitNamed(const char32_t *name)
{
    emu_entry unit = *emu_find(dBm);
    unit.name = name;
    return unit;
}

// A marker and the one that it refers to, with their values.
struct MarkerPair
{
    MarkerPair(const AMeasurementValue &own, const AMeasurementValue &other)
    {
        marker.setReferenceMarker(&reference);
        marker.setValue(own);
        reference.setValue(other);
    }

    ASpectrumMarker marker{Max};
    ASpectrumMarker reference{Max};
};

} // namespace

class TestASpectrumMarker : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup() { QLocale::setDefault(QLocale::c()); }

    void aNewMarkerHasItsInitialState();
    void theNumbersOfTheEnumerationsAreFixed();
    void everyFieldIsStoredAsGiven();
    void nameScopeAndPersistenceFollowFromTheType_data();
    void nameScopeAndPersistenceFollowFromTheType();
    void theNumberInTheNameDoesNotOverflow();

    void aValueIsFormatted_data();
    void aValueIsFormatted();
    void theScaleDividesAndPrefixesTheUnit();
    void theScaleAppliesToAnUnknownUnitToo();
    void numbersAreThoseOfTheLocale();
    void theOwnValueIsFormattedWithoutAnArgument();

    void aDeltaNeedsBothValues();
    void aDeltaHasAPlusOnlyAboveZero_data();
    void aDeltaHasAPlusOnlyAboveZero();
    void aDeltaConvertsBothValues();
    void aDeltaWithoutUnitWarnsForEachValue();
    void aDeltaThatIsAnEmptyValueIsASign();

    void withoutAValueThereAreTwoItems();
    void withAValueThereAreSevenItems();
    void theFrequencyItemTakesItsOwnUnit_data();
    void theFrequencyItemTakesItsOwnUnit();
    void aReferenceTurnsTheItemsIntoDifferences();
    void theFrequencySuffixOfADifferenceIsThatOfTheMarker();
    void theReferenceFrequencyIsItsTargetWhileItHasNoValue_data();
    void theReferenceFrequencyIsItsTargetWhileItHasNoValue();
    void noFrequencyDifferenceAgainstZero();
    void anUnknownUnitGivesAnEmptyUnitItem();
    void aUnitSymbolIsCutAtItsBlank();
    void aReferenceWithoutValueGivesASign();

    void aLabelRepeatsNameAndNumber();
    void aShortLabelHasNoFrequency();
    void aLabelWithoutValueIsShort();
    void aLabelRemovesOnlyItemsThatExist_data();
    void aLabelRemovesOnlyItemsThatExist();
    void namesAndItemsAreCalledVirtually();
    void virtualOperationsComeInTheAgreedOrder();
    void placeholdersInNamesStayWhole();
};

void TestASpectrumMarker::aNewMarkerHasItsInitialState()
{
    const ASpectrumMarker marker(ASpectrumMarker::TypeStd);
    QCOMPARE(marker.type(), ASpectrumMarker::TypeStd);
    QVERIFY(marker.value() == AMeasurementValue(0.0, 0, AFrequency(), 0, 0.0));
    QVERIFY(marker.value().isEmpty());
    QCOMPARE(marker.trace(), 0);
    QVERIFY(!marker.referenceMarker());
    QCOMPARE(marker.index(), -1);
    QVERIFY(marker.targetFrequency().isNull());
    QCOMPARE(static_cast<int>(marker.displayOptions()), 25);
    QVERIFY(marker.isEnabled());
}

void TestASpectrumMarker::theNumbersOfTheEnumerationsAreFixed()
{
    QCOMPARE(static_cast<int>(ASpectrumMarker::TypePMax), 0);
    QCOMPARE(static_cast<int>(ASpectrumMarker::TypePMin), 1);
    QCOMPARE(static_cast<int>(ASpectrumMarker::TypeMax), 2);
    QCOMPARE(static_cast<int>(ASpectrumMarker::TypeMin), 3);
    QCOMPARE(static_cast<int>(ASpectrumMarker::TypeFMax), 4);
    QCOMPARE(static_cast<int>(ASpectrumMarker::TypeFMin), 5);
    QCOMPARE(static_cast<int>(ASpectrumMarker::TypeStd), 6);
    QCOMPARE(static_cast<int>(ASpectrumMarker::TypeCal), 7);
    QCOMPARE(static_cast<int>(ASpectrumMarker::ScopeTrace), 0);
    QCOMPARE(static_cast<int>(ASpectrumMarker::ScopeFrequency), 1);
}

void TestASpectrumMarker::everyFieldIsStoredAsGiven()
{
    ASpectrumMarker marker(ASpectrumMarker::TypeMax);
    ASpectrumMarker other(ASpectrumMarker::TypeMax);
    const AMeasurementValue value(-3.5, 4, megahertz(7), 8, 9.25);
    marker.setType(static_cast<Type>(-99));
    marker.setTrace(-1);
    marker.setIndex(123456);
    marker.setValue(value);
    marker.setTargetFrequency(hertz(-5));
    marker.setDisplayOptions(ASpectrumMarker::DisplayOptions(QFlag(-7)));
    marker.setReferenceMarker(&other);
    marker.setEnabled(false);
    QCOMPARE(static_cast<int>(marker.type()), -99);
    QCOMPARE(marker.trace(), -1);
    QCOMPARE(marker.index(), 123456);
    QVERIFY(marker.value() == value);
    QVERIFY(marker.targetFrequency() == hertz(-5));
    QCOMPARE(static_cast<int>(marker.displayOptions()), -7);
    QCOMPARE(marker.referenceMarker(), &other);
    QVERIFY(!marker.isEnabled());
    marker.setReferenceMarker(nullptr);
    QVERIFY(!marker.referenceMarker());
}

void TestASpectrumMarker::nameScopeAndPersistenceFollowFromTheType_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("scope");
    QTest::addColumn<bool>("persistent");
    QTest::newRow("pMax") << 0 << "pMax 1" << 0 << true;
    QTest::newRow("pMin") << 1 << "pMin 1" << 0 << true;
    QTest::newRow("Max") << 2 << "Max 1" << 0 << false;
    QTest::newRow("Min") << 3 << "Min 1" << 0 << false;
    QTest::newRow("fMax") << 4 << "fMax 1" << 1 << true;
    QTest::newRow("fMin") << 5 << "fMin 1" << 1 << true;
    QTest::newRow("Std") << 6 << "Std 1" << 1 << false;
    QTest::newRow("Cal") << 7 << "Cal 1" << 1 << false;
    QTest::newRow("above") << 8 << "1 %2" << 0 << false;
    QTest::newRow("below") << -1 << "1 %2" << 0 << false;
    QTest::newRow("bits of a persistent type") << 0x104 << "1 %2" << 0 << false;
    QTest::newRow("smallest") << std::numeric_limits<int>::min() << "1 %2" << 0 << false;
}

void TestASpectrumMarker::nameScopeAndPersistenceFollowFromTheType()
{
    QFETCH(int, type);
    ASpectrumMarker marker(static_cast<Type>(type));
    marker.setIndex(0);
    QTEST(marker.name(), "name");
    QTEST(static_cast<int>(marker.scope()), "scope");
    QTEST(marker.isPersistent(), "persistent");
}

void TestASpectrumMarker::theNumberInTheNameDoesNotOverflow()
{
    ASpectrumMarker marker(ASpectrumMarker::TypeMin);
    QCOMPARE(marker.name(), QStringLiteral("Min 0"));
    marker.setIndex(std::numeric_limits<int>::max());
    QCOMPARE(marker.name(), QStringLiteral("Min 2147483648"));
}

void TestASpectrumMarker::aValueIsFormatted_data()
{
    QTest::addColumn<double>("level");
    QTest::addColumn<int>("valueUnit");
    QTest::addColumn<int>("unit"); // -1 for none
    QTest::addColumn<bool>("withUnit");
    QTest::addColumn<QString>("text");
    QTest::newRow("own unit") << -42.126 << int(dBm) << -1 << true << "-42.13 dBm";
    QTest::newRow("number alone") << -42.126 << int(dBm) << -1 << false << "-42.13";
    QTest::newRow("same unit") << -42.126 << int(dBm) << int(dBm) << true << "-42.13 dBm";
    QTest::newRow("converted") << 30.0 << int(dBm) << int(W) << true << "1.00 W";
    QTest::newRow("converted number alone") << 40.0 << int(dBm) << int(W) << false << "10.00";
    QTest::newRow("of another family") << 30.0 << int(dBm) << int(W_m2) << true << QStringLiteral("nan W/m²");
    QTest::newRow("unknown unit ends in a blank") << 1.5 << kUnknownUnit << -1 << true << "1.50 ";
    QTest::newRow("unknown unit, number alone") << 1.5 << kUnknownUnit << -1 << false << "1.50";
    QTest::newRow("not a number") << kNaN << int(dBm) << -1 << true << "nan dBm";
    QTest::newRow("zero at a frequency") << 0.0 << int(dBm) << -1 << true << "0.00 dBm";
    QTest::newRow("large") << 1234567.891 << int(V) << -1 << true << "1234567.89 V";
}

void TestASpectrumMarker::aValueIsFormatted()
{
    QFETCH(double, level);
    QFETCH(int, valueUnit);
    QFETCH(int, unit);
    QFETCH(bool, withUnit);
    const ASpectrumMarker marker(ASpectrumMarker::TypeMax);
    const AMeasurementValue value = point(level, megahertz(1), valueUnit);
    QTEST(marker.valueAsString(value, emu_find(unit), nullptr, withUnit), "text");
    QCOMPARE(marker.valueAsString(AMeasurementValue(), emu_find(unit), nullptr, withUnit), QStringLiteral("-"));
}

void TestASpectrumMarker::theScaleDividesAndPrefixesTheUnit()
{
    const ASpectrumMarker marker(ASpectrumMarker::TypeMax);
    const emsi_unit *milli = emsi_find_scale(0.0015, 5000.0);
    const AMeasurementValue value = point(0.0155, megahertz(1), V);
    const emsi_unit plainMilli = {1e-3L, U"m"};
    QCOMPARE(marker.valueAsString(value, nullptr, &plainMilli, true), QStringLiteral("15.50 mV"));
    QCOMPARE(marker.valueAsString(value, nullptr, &plainMilli, false), QStringLiteral("15.50"));
    QVERIFY(milli);
    QVERIFY(marker.valueAsString(value, emu_find(V), milli, true).endsWith(QStringLiteral("V")));
    QCOMPARE(marker.valueAsString(point(0.0, megahertz(1), dBm), emu_find(W), &plainMilli, true),
             QStringLiteral("1.00 mW"));
}

void TestASpectrumMarker::theScaleAppliesToAnUnknownUnitToo()
{
    const ASpectrumMarker marker(ASpectrumMarker::TypeMax);
    const emsi_unit kilo = {1e3L, U"k"};
    QCOMPARE(marker.valueAsString(point(1500, megahertz(1), kUnknownUnit), nullptr, &kilo, true),
             QStringLiteral("1.50 k"));
}

void TestASpectrumMarker::numbersAreThoseOfTheLocale()
{
    QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
    ASpectrumMarker marker(ASpectrumMarker::TypeMax);
    marker.setIndex(0);
    marker.setValue(point(-1234.5, hertz(2400500000), dBm));
    QCOMPARE(marker.valueAsString(nullptr, nullptr, true), QStringLiteral("-1.234,50 dBm"));
    QCOMPARE(marker.labelItems(nullptr, nullptr).at(4), QStringLiteral("2.400,500"));
}

void TestASpectrumMarker::theOwnValueIsFormattedWithoutAnArgument()
{
    ASpectrumMarker marker(ASpectrumMarker::TypeMax);
    QCOMPARE(marker.valueAsString(nullptr, nullptr, true), QStringLiteral("-"));
    marker.setValue(point(-7, megahertz(1)));
    QCOMPARE(marker.valueAsString(nullptr, nullptr, true), QStringLiteral("-7.00 dBm"));
}

void TestASpectrumMarker::aDeltaNeedsBothValues()
{
    ASpectrumMarker marker(ASpectrumMarker::TypeMax);
    ASpectrumMarker reference(ASpectrumMarker::TypeMax);
    const auto delta = [&] { return marker.deltaAsString(emu_find(dBm), nullptr, true); };
    QCOMPARE(delta(), QStringLiteral("-"));
    marker.setValue(point(-7, megahertz(1)));
    QCOMPARE(delta(), QStringLiteral("-"));
    marker.setReferenceMarker(&reference);
    QCOMPARE(delta(), QStringLiteral("-"));
    reference.setValue(point(-9, megahertz(2)));
    QCOMPARE(delta(), QStringLiteral("+2.00 dBm"));
    marker.setValue(AMeasurementValue());
    QCOMPARE(delta(), QStringLiteral("-"));
}

void TestASpectrumMarker::aDeltaHasAPlusOnlyAboveZero_data()
{
    QTest::addColumn<double>("own");
    QTest::addColumn<double>("other");
    QTest::addColumn<QString>("text");
    QTest::newRow("above") << -10.0 << -12.5 << "+2.50 dBm";
    QTest::newRow("below") << -12.5 << -10.0 << "-2.50 dBm";
    QTest::newRow("equal") << -10.0 << -10.0 << "0.00 dBm";
    QTest::newRow("above by less than is shown") << -10.0 << -10.001 << "+0.00 dBm";
    QTest::newRow("not a number") << kNaN << -10.0 << "nan dBm";
}

void TestASpectrumMarker::aDeltaHasAPlusOnlyAboveZero()
{
    QFETCH(double, own);
    QFETCH(double, other);
    MarkerPair pair(point(own, megahertz(1)), point(other, megahertz(1)));
    QTEST(pair.marker.deltaAsString(emu_find(dBm), nullptr, true), "text");
}

void TestASpectrumMarker::aDeltaConvertsBothValues()
{
    MarkerPair pair(point(40, megahertz(1), dBm), point(2, megahertz(1), W));
    QCOMPARE(pair.marker.deltaAsString(emu_find(W), nullptr, true), QStringLiteral("+8.00 W"));
    QCOMPARE(pair.marker.deltaAsString(emu_find(W), nullptr, false), QStringLiteral("+8.00"));
    const emsi_unit kilo = {1e3L, U"k"};
    pair.reference.setValue(point(4010, megahertz(1), W));
    QCOMPARE(pair.marker.deltaAsString(emu_find(W), &kilo, true), QStringLiteral("-4.00 kW"));
}

void TestASpectrumMarker::aDeltaWithoutUnitWarnsForEachValue()
{
    ASpectrumMarker marker(ASpectrumMarker::TypeMax);
    ASpectrumMarker reference(ASpectrumMarker::TypeMax);
    marker.setReferenceMarker(&reference);
    marker.setValue(point(-7, megahertz(1)));
    MessageLog log;
    QCOMPARE(marker.deltaAsString(nullptr, nullptr, true), QStringLiteral("-"));
    QCOMPARE(log.take(), QStringList());
    reference.setValue(point(-9, megahertz(1)));
    QCOMPARE(marker.deltaAsString(nullptr, nullptr, true), QStringLiteral("+2.00 dBm"));
    const QString warning = QStringLiteral("warning: warning: converting to null-pointer unit is undefined");
    QCOMPARE(log.take(), QStringList({warning, warning}));
}

void TestASpectrumMarker::aDeltaThatIsAnEmptyValueIsASign()
{
    MarkerPair pair(point(-7, AFrequency()), point(-7, megahertz(1)));
    QCOMPARE(pair.marker.deltaAsString(emu_find(dBm), nullptr, true), QStringLiteral("-"));
}

void TestASpectrumMarker::withoutAValueThereAreTwoItems()
{
    ASpectrumMarker marker(ASpectrumMarker::TypeMax);
    ASpectrumMarker reference(ASpectrumMarker::TypeMax);
    marker.setIndex(0);
    QCOMPARE(marker.labelItems(nullptr, nullptr), texts({"Max 1", "-"}));
    marker.setReferenceMarker(&reference);
    reference.setValue(point(-7, megahertz(1)));
    QCOMPARE(marker.labelItems(nullptr, nullptr), texts({"Max 1", "-"}));
}

void TestASpectrumMarker::withAValueThereAreSevenItems()
{
    ASpectrumMarker marker(ASpectrumMarker::TypeStd);
    marker.setIndex(1);
    marker.setValue(point(-42.5, hertz(98765432)));
    QCOMPARE(marker.labelItems(nullptr, nullptr), texts({"Std 2", "-42.50", "dBm", "@", "98.765", "MHz", ""}));
    const emsi_unit micro = {1e-6L, U"µ"};
    QCOMPARE(marker.labelItems(emu_find(W), &micro), texts({"Std 2", "0.06", "µW", "@", "98.765", "MHz", ""}));
}

void TestASpectrumMarker::theFrequencyItemTakesItsOwnUnit_data()
{
    QTest::addColumn<qint64>("frequency");
    QTest::addColumn<QString>("number");
    QTest::addColumn<QString>("unit");
    QTest::newRow("Hz") << qint64(999) << "999.000"
                        << "Hz";
    QTest::newRow("kHz") << qint64(1500) << "1.500"
                         << "kHz";
    QTest::newRow("MHz") << qint64(2400000000) << "2400.000"
                         << "MHz";
    QTest::newRow("none") << qint64(0) << "0.000"
                          << "Hz";
}

void TestASpectrumMarker::theFrequencyItemTakesItsOwnUnit()
{
    QFETCH(qint64, frequency);
    ASpectrumMarker marker(ASpectrumMarker::TypeMax);
    marker.setValue(point(-1, hertz(frequency)));
    const QStringList items = marker.labelItems(nullptr, nullptr);
    QTEST(items.value(4), "number");
    QTEST(items.value(5), "unit");
}

void TestASpectrumMarker::aReferenceTurnsTheItemsIntoDifferences()
{
    ASpectrumMarker marker(ASpectrumMarker::TypeMax);
    ASpectrumMarker reference(ASpectrumMarker::TypeStd);
    marker.setIndex(0);
    reference.setIndex(2);
    marker.setReferenceMarker(&reference);
    marker.setValue(point(-10, hertz(105500000)));
    reference.setValue(point(-30, megahertz(100)));
    QCOMPARE(marker.labelItems(emu_find(dBm), nullptr),
             texts({"Max 1", "+20.00", "dBm", "@", "+5.500", "MHz", "(Δ Std 3)"}));

    reference.setValue(point(10, megahertz(110)));
    QCOMPARE(marker.labelItems(emu_find(dBm), nullptr),
             texts({"Max 1", "-20.00", "dBm", "@", "-4.500", "MHz", "(Δ Std 3)"}));

    reference.setValue(point(10, hertz(105500000)));
    QCOMPARE(marker.labelItems(emu_find(dBm), nullptr).at(4), QStringLiteral("0.000"));
}

void TestASpectrumMarker::theFrequencySuffixOfADifferenceIsThatOfTheMarker()
{
    MarkerPair pair(point(-10, hertz(100005500)), point(-30, megahertz(100)));
    const QStringList items = pair.marker.labelItems(emu_find(dBm), nullptr);
    QCOMPARE(items.at(4), QStringLiteral("+5.500")); // kHz
    QCOMPARE(items.at(5), QStringLiteral("MHz"));
}

void TestASpectrumMarker::theReferenceFrequencyIsItsTargetWhileItHasNoValue_data()
{
    QTest::addColumn<bool>("hasValue");
    QTest::addColumn<qint64>("target");
    QTest::addColumn<QString>("difference");
    QTest::newRow("target") << false << qint64(90000000) << "+10.000";
    QTest::newRow("value before target") << true << qint64(90000000) << "+20.000";
    QTest::newRow("no target") << false << qint64(0) << "";
    QTest::newRow("target below zero") << false << qint64(-90000000) << "";
}

void TestASpectrumMarker::theReferenceFrequencyIsItsTargetWhileItHasNoValue()
{
    QFETCH(bool, hasValue);
    QFETCH(qint64, target);
    ASpectrumMarker marker(ASpectrumMarker::TypeMax);
    ASpectrumMarker reference(ASpectrumMarker::TypeStd);
    marker.setReferenceMarker(&reference);
    marker.setValue(point(-10, megahertz(100)));
    reference.setTargetFrequency(hertz(target));
    if (hasValue)
        reference.setValue(point(-10, megahertz(80)));
    QTEST(marker.labelItems(emu_find(dBm), nullptr).value(4), "difference");
}

void TestASpectrumMarker::noFrequencyDifferenceAgainstZero()
{
    MarkerPair pair(point(-10, AFrequency()), point(-20, megahertz(1)));
    QCOMPARE(pair.marker.labelItems(emu_find(dBm), nullptr).mid(1, 5), texts({"+10.00", "dBm", "@", "", "Hz"}));
    pair.marker.setValue(point(-10, megahertz(1)));
    pair.reference.setValue(point(-20, AFrequency()));
    QCOMPARE(pair.marker.labelItems(emu_find(dBm), nullptr).mid(1, 5), texts({"+10.00", "dBm", "@", "", "MHz"}));
}

void TestASpectrumMarker::anUnknownUnitGivesAnEmptyUnitItem()
{
    ASpectrumMarker marker(ASpectrumMarker::TypeMax);
    marker.setIndex(0);
    marker.setValue(point(1.5, megahertz(1), kUnknownUnit));
    QCOMPARE(marker.labelItems(nullptr, nullptr), texts({"Max 1", "1.50", "", "@", "1.000", "MHz", ""}));
}

void TestASpectrumMarker::aUnitSymbolIsCutAtItsBlank()
{
    ASpectrumMarker marker(ASpectrumMarker::TypeMax);
    marker.setValue(point(1.5, megahertz(1)));
    const emu_entry unit = unitNamed(U"dB over noise");
    QCOMPARE(marker.valueAsString(&unit, nullptr, true), QStringLiteral("1.50 dB over noise"));
    const QStringList items = marker.labelItems(&unit, nullptr);
    QCOMPARE(items.size(), 7);
    QCOMPARE(items.mid(1, 3), texts({"1.50", "dB", "@"}));
}

void TestASpectrumMarker::aReferenceWithoutValueGivesASign()
{
    ASpectrumMarker marker(ASpectrumMarker::TypeMax);
    ASpectrumMarker reference(ASpectrumMarker::TypeMin);
    marker.setIndex(0);
    reference.setIndex(0);
    marker.setReferenceMarker(&reference);
    marker.setValue(point(1.5, megahertz(1)));
    QCOMPARE(marker.labelItems(emu_find(dBm), nullptr), texts({"Max 1", "-", "", "@", "", "MHz", "(Δ Min 1)"}));
}

void TestASpectrumMarker::aLabelRepeatsNameAndNumber()
{
    ASpectrumMarker marker(ASpectrumMarker::TypeMax);
    marker.setIndex(0);
    marker.setValue(point(-42.5, megahertz(100)));
    QCOMPARE(marker.label(true, nullptr, nullptr),
             QStringLiteral("Max 1: -42.50 Max 1 -42.50 dBm @ 100.000 MHz ")); // the last item is empty
}

void TestASpectrumMarker::aShortLabelHasNoFrequency()
{
    ASpectrumMarker marker(ASpectrumMarker::TypeMax);
    ASpectrumMarker reference(ASpectrumMarker::TypeStd);
    marker.setIndex(0);
    reference.setIndex(0);
    marker.setValue(point(-42.5, megahertz(100)));
    QCOMPARE(marker.label(false, nullptr, nullptr), QStringLiteral("Max 1: -42.50 Max 1 -42.50 dBm "));
    reference.setValue(point(-40, megahertz(90)));
    marker.setReferenceMarker(&reference);
    QCOMPARE(marker.label(false, emu_find(dBm), nullptr), QString::fromUtf8("Max 1: -2.50 Max 1 -2.50 dBm (Δ Std 1)"));
    QCOMPARE(marker.label(true, emu_find(dBm), nullptr),
             QString::fromUtf8("Max 1: -2.50 Max 1 -2.50 dBm @ +10.000 MHz (Δ Std 1)"));
}

void TestASpectrumMarker::aLabelWithoutValueIsShort()
{
    ASpectrumMarker marker(ASpectrumMarker::TypeMax);
    marker.setIndex(0);
    QCOMPARE(marker.label(false, nullptr, nullptr), QStringLiteral("Max 1: - Max 1 -"));
    QCOMPARE(marker.label(true, nullptr, nullptr), QStringLiteral("Max 1: - Max 1 -"));
}

void TestASpectrumMarker::aLabelRemovesOnlyItemsThatExist_data()
{
    QTest::addColumn<QStringList>("items");
    QTest::addColumn<QString>("label");
    QTest::newRow("none") << QStringList() << ":  ";
    QTest::newRow("one") << texts({"a"}) << "a:  a";
    QTest::newRow("three") << texts({"a", "b", "c"}) << "a: b a b c";
    QTest::newRow("four") << texts({"a", "b", "c", "d"}) << "a: b a b c";
    QTest::newRow("five") << texts({"a", "b", "c", "d", "e"}) << "a: b a b c";
    QTest::newRow("eight") << texts({"a", "b", "c", "d", "e", "f", "g", "h"}) << "a: b a b c g h";
}

void TestASpectrumMarker::aLabelRemovesOnlyItemsThatExist()
{
    QFETCH(QStringList, items);
    QTEST(ShortMarker(items).label(false, nullptr, nullptr), "label");
}

void TestASpectrumMarker::virtualOperationsComeInTheAgreedOrder()
{
    constexpr auto kPlace = std::ptrdiff_t(sizeof(void *));
    QCOMPARE(tableOffset(&ASpectrumMarker::name), 2 * kPlace); // a destructor has two places
    QCOMPARE(tableOffset(&ASpectrumMarker::label), 3 * kPlace);
    QCOMPARE(tableOffset(&ASpectrumMarker::labelItems), 4 * kPlace);
}

void TestASpectrumMarker::namesAndItemsAreCalledVirtually()
{
    RenamedMarker marker(ASpectrumMarker::TypeMax);
    RenamedMarker reference(ASpectrumMarker::TypeMax);
    marker.setValue(point(-1, megahertz(1)));
    reference.setValue(point(-1, megahertz(1)));
    marker.setReferenceMarker(&reference);
    const ASpectrumMarker &base = marker;
    QCOMPARE(base.labelItems(emu_find(dBm), nullptr).first(), QStringLiteral("carrier"));
    QCOMPARE(base.labelItems(emu_find(dBm), nullptr).last(), QString::fromUtf8("(Δ carrier)"));
    QVERIFY(base.label(true, emu_find(dBm), nullptr).startsWith(QStringLiteral("carrier: 0.00 carrier")));
}

void TestASpectrumMarker::placeholdersInNamesStayWhole()
{
    ASpectrumMarker marker(static_cast<Type>(8));
    marker.setIndex(0);
    marker.setValue(point(-1, megahertz(1)));
    QCOMPARE(marker.label(false, nullptr, nullptr), QStringLiteral("1 %2: -1.00 1 %2 -1.00 dBm "));
    ASpectrumMarker second(ASpectrumMarker::TypeMax);
    second.setReferenceMarker(&marker);
    second.setValue(point(-1, megahertz(1)));
    QCOMPARE(second.labelItems(emu_find(dBm), nullptr).last(), QString::fromUtf8("(Δ 1 %2)"));
}

QTEST_APPLESS_MAIN(TestASpectrumMarker)
#include "tst_aspectrummarker.moc"
