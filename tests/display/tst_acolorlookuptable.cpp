#include "display/acolorlookuptable.h"

#include <QtTest/QtTest>

#include <cmath>
#include <limits>

namespace {

const QColor kBlue = QColor::fromHsvF(0.7, 0.9, 0.3, 0.5);
const QColor kYellow = QColor::fromHsvF(0.1, 0.4, 1.0, 1.0);

// Entry i as it is written, with the hues of both ends given.
QColor entryOf(const QColor &begin, double beginHue, const QColor &end, double endHue, int dynamic, int i)
{
    const int m = std::max(1, std::min(dynamic, 1000));
    const double x = i * (double(dynamic) / m);
    const auto along = [dynamic, x](double from, double to) { return from + (to - from) / dynamic * x; };
    return QColor::fromHsvF(along(beginHue, endHue), along(begin.saturationF(), end.saturationF()),
                            along(begin.valueF(), end.valueF()), along(begin.alphaF(), end.alphaF()))
        .toRgb();
}

QVector<QColor> entriesOf(const AColorLookupTable &table)
{
    QVector<QColor> entries;
    for (int i = 0; i < table.count(); ++i)
        entries += table.at(i);
    return entries;
}

} // namespace

class TestColorLookupTable : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void keepsItsArguments();
    void hasOneSignal();
    void theRampIsStraightInAllFourComponents_data();
    void theRampIsStraightInAllFourComponents();
    void theLastEntryStopsOneStepShort();
    void theRampTakesNoShorterWayAround();
    void entriesAreRgb();
    void anEndWithoutHueTakesThatOfTheOther_data();
    void anEndWithoutHueTakesThatOfTheOther();
    void invalidColorsCountAsBlack();
    void aDynamicBelowOneGivesOneEntry_data();
    void aDynamicBelowOneGivesOneEntry();
    void everyLevelOfTheRangeHasItsEntry_data();
    void everyLevelOfTheRangeHasItsEntry();
    void theLevelIsCutInSinglePrecision();
    void levelsBelowOneEntryBeforeZeroAreTheFirst();
    void rebuildReplacesWhatIsValid();
    void rebuildWithInvalidColorsKeepsTheOldOnes();
    void rebuildTakesItsOwnColors();
    void theSignalComesWhenAllIsDone();
    void creatingTheTableAloneKeepsWhatIsStored();
};

void TestColorLookupTable::keepsItsArguments()
{
    QObject parent;
    const AColorLookupTable table(&parent, 2000, kBlue, kYellow);
    QCOMPARE(table.parent(), &parent);
    QCOMPARE(table.dynamic(), 2000);
    QCOMPARE(table.count(), 1000);
    QCOMPARE(table.begin(), kBlue);
    QCOMPARE(table.end(), kYellow);
}

void TestColorLookupTable::hasOneSignal()
{
    const QMetaObject &meta = AColorLookupTable::staticMetaObject;
    QCOMPARE(meta.methodCount() - meta.methodOffset(), 1);
    QCOMPARE(meta.method(meta.methodOffset()).methodSignature(), QByteArray("colorsChanged()"));
    QCOMPARE(meta.method(meta.methodOffset()).methodType(), QMetaMethod::Signal);
}

void TestColorLookupTable::theRampIsStraightInAllFourComponents_data()
{
    QTest::addColumn<int>("dynamic");
    QTest::addColumn<int>("count");

    QTest::newRow("1") << 1 << 1;
    QTest::newRow("2") << 2 << 2;
    QTest::newRow("100") << 100 << 100;
    QTest::newRow("999") << 999 << 999;
    QTest::newRow("1000") << 1000 << 1000;
    QTest::newRow("1001") << 1001 << 1000;
    QTest::newRow("1500, spread over the whole range") << 1500 << 1000;
    QTest::newRow("2000") << 2000 << 1000;
    QTest::newRow("a thousand million") << 1000000000 << 1000;
    QTest::newRow("the largest") << std::numeric_limits<int>::max() << 1000;
}

void TestColorLookupTable::theRampIsStraightInAllFourComponents()
{
    QFETCH(int, dynamic);
    QFETCH(int, count);
    const AColorLookupTable table(nullptr, dynamic, kBlue, kYellow);
    QCOMPARE(table.count(), count);
    QCOMPARE(table.dynamic(), dynamic);
    for (int i = 0; i < count; ++i)
        QCOMPARE(table.at(i), entryOf(kBlue, kBlue.hueF(), kYellow, kYellow.hueF(), dynamic, i));
    QCOMPARE(table.at(0), kBlue.toRgb());
}

void TestColorLookupTable::theLastEntryStopsOneStepShort()
{
    const QColor dark = QColor::fromHsvF(0.5, 1.0, 0.0);
    const QColor bright = QColor::fromHsvF(0.5, 1.0, 1.0);
    const AColorLookupTable four(nullptr, 4, dark, bright);
    QCOMPARE(four.at(3).valueF(), QColor::fromHsvF(0.5, 1.0, 0.75).valueF());
    const AColorLookupTable many(nullptr, 1500, dark, bright);
    QVERIFY(std::fabs(many.at(999).valueF() - 0.999) < 1e-4);
    QVERIFY(std::fabs(many.at(500).valueF() - 0.5) < 1e-4); // and not 500 levels of 1500
}

void TestColorLookupTable::theRampTakesNoShorterWayAround()
{
    // From 0.9 to 0.1 the short way would lead through red.
    const QColor begin = QColor::fromHsvF(0.9, 1.0, 1.0);
    const QColor end = QColor::fromHsvF(0.1, 1.0, 1.0);
    const AColorLookupTable table(nullptr, 100, begin, end);
    QVERIFY(std::fabs(table.at(50).hueF() - 0.5) < 1e-3);
    for (int i = 1; i < table.count(); ++i)
        QVERIFY(table.at(i).hueF() < table.at(i - 1).hueF());
}

void TestColorLookupTable::entriesAreRgb()
{
    const AColorLookupTable table(nullptr, 10, kBlue, QColor::fromCmykF(0.2, 0.3, 0.4, 0.1));
    for (const QColor &entry : entriesOf(table))
        QCOMPARE(entry.spec(), QColor::Rgb);
}

void TestColorLookupTable::anEndWithoutHueTakesThatOfTheOther_data()
{
    QTest::addColumn<QColor>("grey");

    QTest::newRow("black") << QColor(Qt::black);
    QTest::newRow("white") << QColor(Qt::white);
    QTest::newRow("grey") << QColor(128, 128, 128);
    QTest::newRow("transparent") << QColor(Qt::transparent);
}

void TestColorLookupTable::anEndWithoutHueTakesThatOfTheOther()
{
    QFETCH(QColor, grey);
    const double hue = kYellow.hueF();
    const AColorLookupTable up(nullptr, 50, grey, kYellow);
    const AColorLookupTable down(nullptr, 50, kYellow, grey);
    const AColorLookupTable none(nullptr, 50, grey, Qt::black);
    for (int i = 0; i < 50; ++i) {
        QCOMPARE(up.at(i), entryOf(grey, hue, kYellow, hue, 50, i));
        QCOMPARE(down.at(i), entryOf(kYellow, hue, grey, hue, 50, i));
        QCOMPARE(none.at(i), entryOf(grey, -1.0, Qt::black, -1.0, 50, i));
        QVERIFY(none.at(i).isValid());
        QCOMPARE(none.at(i).red(), none.at(i).green());
        QCOMPARE(none.at(i).red(), none.at(i).blue());
    }
}

void TestColorLookupTable::invalidColorsCountAsBlack()
{
    const AColorLookupTable table(nullptr, 20, QColor(), kYellow);
    QVERIFY(!table.begin().isValid());
    QCOMPARE(entriesOf(table), entriesOf(AColorLookupTable(nullptr, 20, Qt::black, kYellow)));
    const AColorLookupTable none(nullptr, 20, QColor(), QColor());
    QCOMPARE(entriesOf(none), QVector<QColor>(20, QColor(Qt::black)));
}

void TestColorLookupTable::aDynamicBelowOneGivesOneEntry_data()
{
    QTest::addColumn<int>("dynamic");

    QTest::newRow("0") << 0;
    QTest::newRow("-1") << -1;
    QTest::newRow("the least") << std::numeric_limits<int>::min();
}

void TestColorLookupTable::aDynamicBelowOneGivesOneEntry()
{
    QFETCH(int, dynamic);
    const AColorLookupTable table(nullptr, dynamic, kBlue, kYellow);
    QCOMPARE(table.count(), 1);
    QCOMPARE(table.dynamic(), dynamic);
    QCOMPARE(table.at(0), kBlue.toRgb());
}

void TestColorLookupTable::everyLevelOfTheRangeHasItsEntry_data()
{
    QTest::addColumn<int>("dynamic");

    for (const int dynamic : {1, 2, 3, 80, 100, 997, 1000, 1001, 1500, 1609, 2000, 123457, 1000000000})
        QTest::addRow("%d", dynamic) << dynamic;
}

void TestColorLookupTable::everyLevelOfTheRangeHasItsEntry()
{
    QFETCH(int, dynamic);
    const AColorLookupTable table(nullptr, dynamic, kBlue, kYellow);
    const auto isEntry = [&table](float level, int i) { return &table.colorAt(level) == &table.at(i); };
    const int m = table.count();
    for (int i = 0; i < m; ++i) {
        const double middle = (i + 0.5) * dynamic / m;
        QVERIFY2(isEntry(static_cast<float>(middle), i), QByteArray::number(i));
    }
    QVERIFY(isEntry(0.0F, 0));
    const float top = static_cast<float>(dynamic);
    if (dynamic <= 1000)
        QVERIFY(isEntry(std::nextafter(top, 0.0F), m - 1));
    QVERIFY(isEntry(static_cast<float>(dynamic * (1 - 1e-6)), m - 1));
    QCOMPARE(table.colorAt(std::nextafter(top, 0.0F)), table.at(m - 1)); // rounding may lift it
    QCOMPARE(table.colorAt(top), table.at(m - 1));
}

void TestColorLookupTable::theLevelIsCutInSinglePrecision()
{
    const AColorLookupTable table(nullptr, 2000, kBlue, kYellow);
    QCOMPARE(&table.colorAt(1999), &table.at(999));
    QCOMPARE(&table.colorAt(1), &table.at(0));
    QCOMPARE(&table.colorAt(2), &table.at(1));
    // Just below each border, where rounding decides.
    const AColorLookupTable thirds(nullptr, 1500, kBlue, kYellow);
    const float factor = 1000.0F / 1500.0F;
    int differing = 0;
    for (int i = 1; i < 1000; ++i) {
        const float level = std::nextafter(1.5F * static_cast<float>(i), 0.0F);
        const int entry = static_cast<int>(level * factor);
        QCOMPARE(&thirds.colorAt(level), &thirds.at(entry));
        differing += entry == static_cast<int>(level * (1000.0 / 1500.0)) ? 0 : 1;
    }
    QVERIFY(differing > 0);
}

void TestColorLookupTable::levelsBelowOneEntryBeforeZeroAreTheFirst()
{
    // Cutting is towards zero, so there is room of one entry below.
    const AColorLookupTable table(nullptr, 10, kBlue, kYellow);
    QCOMPARE(&table.colorAt(-0.0F), &table.at(0));
    QCOMPARE(&table.colorAt(-0.99F), &table.at(0));
}

void TestColorLookupTable::rebuildReplacesWhatIsValid()
{
    AColorLookupTable table(nullptr, 10, kBlue, kYellow);
    QSignalSpy spy(&table, &AColorLookupTable::colorsChanged);
    table.rebuild(20, Qt::red, QColor());
    QCOMPARE(table.begin(), QColor(Qt::red));
    QCOMPARE(table.end(), kYellow);
    QCOMPARE(entriesOf(table), entriesOf(AColorLookupTable(nullptr, 20, Qt::red, kYellow)));
    table.rebuild(30, QColor(), Qt::green);
    QCOMPARE(table.begin(), QColor(Qt::red));
    QCOMPARE(table.end(), QColor(Qt::green));
    QCOMPARE(entriesOf(table), entriesOf(AColorLookupTable(nullptr, 30, Qt::red, Qt::green)));
    QCOMPARE(spy.count(), 2);
}

void TestColorLookupTable::rebuildWithInvalidColorsKeepsTheOldOnes()
{
    AColorLookupTable table(nullptr, 10, kBlue, kYellow);
    QSignalSpy spy(&table, &AColorLookupTable::colorsChanged);
    table.rebuild(2000, QColor(), QColor());
    QCOMPARE(spy.count(), 1);
    QCOMPARE(table.dynamic(), 2000);
    QCOMPARE(table.begin(), kBlue);
    QCOMPARE(table.end(), kYellow);
    QCOMPARE(entriesOf(table), entriesOf(AColorLookupTable(nullptr, 2000, kBlue, kYellow)));
    table.rebuild(2000, QColor(), QColor());
    QCOMPARE(spy.count(), 2); // nothing has changed, and it says so all the same
    table.rebuild(0, QColor(), QColor());
    QCOMPARE(table.count(), 1);
    QCOMPARE(table.dynamic(), 0);
}

void TestColorLookupTable::rebuildTakesItsOwnColors()
{
    AColorLookupTable table(nullptr, 10, kBlue, kYellow);
    table.rebuild(10, table.end(), table.begin());
    QCOMPARE(table.begin(), kYellow);
    QCOMPARE(table.end(), kBlue);
    QCOMPARE(entriesOf(table), entriesOf(AColorLookupTable(nullptr, 10, kYellow, kBlue)));
    const QColor first = table.at(0);
    const QColor second = table.at(9);
    table.rebuild(500, table.at(0), table.at(9));
    QCOMPARE(table.begin(), first);
    QCOMPARE(table.end(), second);
    QCOMPARE(entriesOf(table), entriesOf(AColorLookupTable(nullptr, 500, first, second)));
    const QColor third = table.at(499);
    const QColor fourth = table.at(0);
    table.createColorLookupTable(table.at(499), table.at(0), 1000);
    QCOMPARE(entriesOf(table), entriesOf(AColorLookupTable(nullptr, 1000, third, fourth)));
}

void TestColorLookupTable::theSignalComesWhenAllIsDone()
{
    AColorLookupTable table(nullptr, 10, kBlue, kYellow);
    int signalsSeen = 0;
    connect(&table, &AColorLookupTable::colorsChanged, this, [&table, &signalsSeen] {
        ++signalsSeen;
        QCOMPARE(table.dynamic(), 40);
        QCOMPARE(table.count(), 40);
        QCOMPARE(table.begin(), QColor(Qt::red));
        QCOMPARE(table.at(39), entryOf(Qt::red, 0.0, kYellow, kYellow.hueF(), 40, 39));
    });
    table.rebuild(40, Qt::red, QColor());
    QCOMPARE(signalsSeen, 1);
}

void TestColorLookupTable::creatingTheTableAloneKeepsWhatIsStored()
{
    AColorLookupTable table(nullptr, 100, kBlue, kYellow);
    QSignalSpy spy(&table, &AColorLookupTable::colorsChanged);
    table.createColorLookupTable(Qt::red, Qt::green, 500);
    QCOMPARE(spy.count(), 1);
    QCOMPARE(table.count(), 500);
    QCOMPARE(table.dynamic(), 100);
    QCOMPARE(table.begin(), kBlue);
    QCOMPARE(table.end(), kYellow);
    QCOMPARE(entriesOf(table), entriesOf(AColorLookupTable(nullptr, 500, Qt::red, Qt::green)));
    QCOMPARE(&table.colorAt(50), &table.at(250)); // by the stored range
    table.rebuild(100, QColor(), QColor());
    QCOMPARE(entriesOf(table), entriesOf(AColorLookupTable(nullptr, 100, kBlue, kYellow)));
}

QTEST_GUILESS_MAIN(TestColorLookupTable)
#include "tst_acolorlookuptable.moc"
