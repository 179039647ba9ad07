#include "apps/aveldoran/plotlegend.h"

#include "apps/aveldoran/plotlook.h"

#include <QtGui/QFontMetricsF>
#include <QtTest/QtTest>

namespace {

QString nameOf(QString name, int number)
{
    return name.replace("%1", QString::number(number));
}

PlotLegend legendOf(int count, const QString &name)
{
    PlotLegend legend;
    for (int i = 0; i < count; ++i)
        legend.add(nameOf(name, i + 1), CurveLooks::ofTable(i));
    return legend;
}

// The number of places that stand beside each other.
int columnsOf(const PlotLegend &legend)
{
    QSet<int> places;
    for (const PlotLegend::Cell &cell : legend.cells())
        places.insert(qRound(cell.place.x()));
    return places.size();
}

} // namespace

class TestPlotLegend : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void anEmptyOneTakesNoRoom();
    void everyNameIsThere_data();
    void everyNameIsThere();
    void cellsKeepClearOfEachOther_data();
    void cellsKeepClearOfEachOther();
    void itSaysHowManyItLeavesOut();
    void longNamesAreShortenedInTheMiddle();
};

void TestPlotLegend::anEmptyOneTakesNoRoom()
{
    QCOMPARE(PlotLegend().height(), 0.0);
    QVERIFY(PlotLegend().cells().isEmpty());
}

void TestPlotLegend::everyNameIsThere_data()
{
    QTest::addColumn<int>("count");
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("columns");

    QTest::newRow("one") << 1 << "Cable %1" << 1;
    QTest::newRow("a row") << 4 << "Cable %1" << 4;
    QTest::newRow("thirty") << 30 << "Cable number %1" << 5;
    QTest::newRow("long names") << 9 << "A biconical antenna from 30 MHz to 300 MHz, number %1" << 2;
    QTest::newRow("as many as there is room for") << 4 * PlotLegend::kMostRows << "Cable number %1" << 4;
    QTest::newRow("no text") << 3 << "" << 3;
}

void TestPlotLegend::everyNameIsThere()
{
    QFETCH(int, count);
    QFETCH(QString, name);
    QFETCH(int, columns);
    const PlotLegend legend = legendOf(count, name);
    const QVector<PlotLegend::Cell> cells = legend.cells();
    QCOMPARE(cells.size(), count);
    for (int i = 0; i < count; ++i) {
        QCOMPARE(cells[i].text, nameOf(name, i + 1));
        QCOMPARE(cells[i].entry, i);
    }
    QCOMPARE(columnsOf(legend), columns);
}

void TestPlotLegend::cellsKeepClearOfEachOther_data()
{
    QTest::addColumn<int>("count");
    QTest::addColumn<QString>("name");

    QTest::newRow("short") << 60 << "C%1";
    QTest::newRow("middling") << 31 << "Cable number %1, LMR-400";
    QTest::newRow("long") << 9 << QString(200, 'x');
    QTest::newRow("too many") << 1000 << "Cable number %1";
}

void TestPlotLegend::cellsKeepClearOfEachOther()
{
    QFETCH(int, count);
    QFETCH(QString, name);
    const PlotLegend legend = legendOf(count, name);
    const QVector<PlotLegend::Cell> cells = legend.cells();
    const QFontMetricsF metrics(PlotLook::layoutFont(PlotLook::kTextPixels));
    QVector<QRectF> areas;
    for (const PlotLegend::Cell &cell : cells) {
        const QRectF area(
            cell.place, QSizeF(PlotLegend::kIconWidth + metrics.horizontalAdvance(cell.text), PlotLegend::kIconHeight));
        QVERIFY(QRectF(0, 0, PlotLook::kLayoutWidth, legend.height()).contains(area));
        for (const QRectF &other : qAsConst(areas))
            QVERIFY(!other.intersects(area));
        areas += area;
    }
}

void TestPlotLegend::itSaysHowManyItLeavesOut()
{
    const PlotLegend full = legendOf(1000, "A cable of this number: %1");
    const PlotLegend fuller = legendOf(2000, "A cable of this number: %1");
    const QVector<PlotLegend::Cell> cells = full.cells();
    QCOMPARE(cells.size() % PlotLegend::kMostRows, 0);
    QCOMPARE(cells.last().entry, -1);
    QCOMPARE(cells.last().text, QStringLiteral("and %L1 more").arg(1000 - (cells.size() - 1)));
    QCOMPARE(cells[cells.size() - 2].entry, cells.size() - 2);
    QCOMPARE(fuller.height(), full.height());
    // No picture says "and 1 more" where that one would have had its place.
    const int room = cells.size();
    QCOMPARE(legendOf(room, "A cable of this number: %1").cells().last().entry, room - 1);
    QCOMPARE(legendOf(room + 1, "A cable of this number: 100%1").cells().last().text, QString("and 2 more"));
}

void TestPlotLegend::longNamesAreShortenedInTheMiddle()
{
    PlotLegend legend;
    legend.add("begin" + QString(10000, 'x') + "end", CurveLooks::ofTable(0));
    legend.add("short", CurveLooks::ofTable(1));
    const QVector<PlotLegend::Cell> cells = legend.cells();
    QVERIFY(cells[0].text.startsWith("begin") && cells[0].text.endsWith("end") && cells[0].text.size() < 100);
    QCOMPARE(cells[1].text, QString("short"));
}

QTEST_MAIN(TestPlotLegend)
#include "tst_plotlegend.moc"
