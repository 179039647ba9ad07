#include "apps/aveldoran/plotlook.h"

#include <QtTest/QtTest>

#include <cmath>
#include <qwt_scale_div.h>

class TestPlotLook : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void labelsTellTheirTicksApart_data();
    void labelsTellTheirTicksApart();
    void stepsAreNice_data();
    void stepsAreNice();
};

void TestPlotLook::labelsTellTheirTicksApart_data()
{
    QTest::addColumn<double>("first");
    QTest::addColumn<double>("step");
    QTest::addColumn<QStringList>("labels");

    QTest::newRow("whole") << 88.0 << 2.0 << QStringList({"88", "90", "92"});
    QTest::newRow("over zero") << -0.1 << 0.1 << QStringList({"-0.1", "0", "0.1"});
    QTest::newRow("a narrow range") << 2437.25 << 0.0002 << QStringList({"2437.25", "2437.2502", "2437.2504"});
    QTest::newRow("hertz of a megahertz")
        << 5800.123456 << 0.000001 << QStringList({"5800.123456", "5800.123457", "5800.123458"});
    QTest::newRow("thousands") << 19000.0 << 1000.0 << QStringList({"19000", "20000", "21000"});
}

void TestPlotLook::labelsTellTheirTicksApart()
{
    QFETCH(double, first);
    QFETCH(double, step);
    QFETCH(QStringList, labels);
    QList<double> ticks;
    for (int i = 0; i < 3; ++i)
        ticks += first + i * step;
    PlotLook::ScaleDraw draw;
    draw.setScaleDiv(QwtScaleDiv(ticks.first(), ticks.last(), {}, {}, ticks));
    QStringList found;
    for (const double tick : qAsConst(ticks))
        found += draw.label(tick).text();
    QCOMPARE(found, labels);
}

void TestPlotLook::stepsAreNice_data()
{
    QTest::addColumn<double>("span");
    QTest::addColumn<double>("step");

    QTest::newRow("20.5") << 20.5 << 5.0;
    QTest::newRow("10") << 10.0 << 1.0;
    QTest::newRow("15") << 15.0 << 2.0;
    QTest::newRow("0.003") << 0.003 << 0.0005;
}

void TestPlotLook::stepsAreNice()
{
    QFETCH(double, span);
    QFETCH(double, step);
    QVERIFY(std::fabs(PlotLook::niceStep(span, 10) / step - 1.0) < 1e-9);
}

QTEST_MAIN(TestPlotLook)
#include "tst_plotlook.moc"
