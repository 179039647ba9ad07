#include "apps/aveldoran/logfrequencyaxis.h"

#include <QtGui/QFontMetricsF>
#include <QtTest/QtTest>

#include <cmath>
#include <qwt_plot.h>

namespace {

constexpr double kCanvasWidth = 850.0; // of the layout

QStringList labelsOf(QwtPlot *plot)
{
    plot->updateAxes();
    QStringList labels;
    const auto *draw = plot->axisScaleDraw(QwtPlot::xBottom);
    for (const double tick : draw->scaleDiv().ticks(QwtScaleDiv::MajorTick))
        labels += draw->label(tick).text();
    return labels;
}

} // namespace

class TestLogFrequencyAxis : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void eachTickHasItsUnit_data();
    void eachTickHasItsUnit();
    void edgesThatAreTicksAreNumbered_data();
    void edgesThatAreTicksAreNumbered();
    void labelsKeepClearOfEachOther_data();
    void labelsKeepClearOfEachOther();
    void theAxisNamesNoUnit();
};

void TestLogFrequencyAxis::eachTickHasItsUnit_data()
{
    QTest::addColumn<double>("begin");
    QTest::addColumn<double>("end");
    QTest::addColumn<QStringList>("labels");

    QTest::newRow("seven decades") << 9e3 << 18e9
                                   << QStringList(
                                          {"10 kHz", "100 kHz", "1 MHz", "10 MHz", "100 MHz", "1 GHz", "10 GHz"});
    QTest::newRow("three decades") << 1e6 << 1e9
                                   << QStringList({"1 MHz", "2 MHz", "5 MHz", "10 MHz", "20 MHz", "50 MHz", "100 MHz",
                                                   "200 MHz", "500 MHz", "1 GHz"});
    QTest::newRow("a decade") << 150e3 << 1.5e6 << QStringList({"200 kHz", "300 kHz", "500 kHz", "700 kHz", "1 MHz"});
    QTest::newRow("less than a decade") << 300e6 << 1e9
                                        << QStringList({"300 MHz", "400 MHz", "500 MHz", "600 MHz", "700 MHz",
                                                        "800 MHz", "900 MHz", "1 GHz"});
    QTest::newRow("a band") << 2.4e9 << 2.5e9
                            << QStringList({"2.4 GHz", "2.42 GHz", "2.44 GHz", "2.46 GHz", "2.48 GHz", "2.5 GHz"});
    QTest::newRow("a channel") << 2437.25e6 << 2437.2504e6
                               << QStringList({"2.43725 GHz", "2.4372501 GHz", "2.4372502 GHz", "2.4372503 GHz",
                                               "2.4372504 GHz"});
    QTest::newRow("hertz") << 1.0 << 100.0
                           << QStringList({"1 Hz", "2 Hz", "5 Hz", "10 Hz", "20 Hz", "50 Hz", "100 Hz"});
    QTest::newRow("18 decades") << 1.0 << 1e18
                                << QStringList({"1 Hz", "1 kHz", "1 MHz", "1 GHz", "1 THz", "1000 THz", "1e+06 THz"});
}

void TestLogFrequencyAxis::eachTickHasItsUnit()
{
    QFETCH(double, begin);
    QFETCH(double, end);
    QFETCH(QStringList, labels);
    QwtPlot plot;
    PlotLook::setLogarithmicFrequencyAxis(&plot, begin, end);
    QCOMPARE(labelsOf(&plot), labels);
}

void TestLogFrequencyAxis::edgesThatAreTicksAreNumbered_data()
{
    QTest::addColumn<double>("begin");
    QTest::addColumn<double>("end");
    QTest::addColumn<QStringList>("labels");

    const QStringList narrow{"32.2 kHz", "32.22 kHz", "32.24 kHz", "32.26 kHz", "32.28 kHz", "32.3 kHz"};
    QTest::newRow("exact") << 32200.0 << 32300.0 << narrow;
    QTest::newRow("rounded inwards") << 32200.000000000004 << 32299.999999999996 << narrow;
    QTest::newRow("rounded outwards") << 32199.999999999996 << 32300.000000000004 << narrow;
    const QStringList decade{"100 MHz", "200 MHz", "300 MHz", "500 MHz", "700 MHz", "1 GHz"};
    QTest::newRow("a decade, exact") << 1e8 << 1e9 << decade;
    QTest::newRow("a decade, rounded inwards") << std::nextafter(1e8, 2e8) << std::nextafter(1e9, 1e8) << decade;
}

void TestLogFrequencyAxis::edgesThatAreTicksAreNumbered()
{
    QFETCH(double, begin);
    QFETCH(double, end);
    QFETCH(QStringList, labels);
    QwtPlot plot;
    PlotLook::setLogarithmicFrequencyAxis(&plot, begin, end);
    QCOMPARE(labelsOf(&plot), labels);
    const QwtScaleDiv scale = plot.axisScaleDiv(QwtPlot::xBottom);
    for (const double tick : scale.ticks(QwtScaleDiv::MajorTick))
        QVERIFY2(scale.contains(tick), qPrintable(QString::number(tick, 'g', 17))); // else it would not be drawn
}

void TestLogFrequencyAxis::labelsKeepClearOfEachOther_data()
{
    QTest::addColumn<double>("begin");
    QTest::addColumn<double>("ratio");

    for (const double begin : {1.0, 95.0, 9e3, 105e3, 47e6, 110e6, 2.437e9}) {
        for (const double ratio : {1.0001, 1.003, 1.2, 1.9, 3.9, 4.0, 9.0, 31.0, 32.0, 300.0, 9.9e3, 1.1e4, 1e8})
            QTest::addRow("%g Hz, times %g", begin, ratio) << begin << ratio;
    }
}

void TestLogFrequencyAxis::labelsKeepClearOfEachOther()
{
    QFETCH(double, begin);
    QFETCH(double, ratio);
    QwtPlot plot;
    PlotLook::setLogarithmicFrequencyAxis(&plot, begin, begin * ratio);
    const QStringList labels = labelsOf(&plot);
    const QList<double> ticks = plot.axisScaleDiv(QwtPlot::xBottom).ticks(QwtScaleDiv::MajorTick);
    QVERIFY2(ticks.size() >= 2, qPrintable(labels.join(' ')));
    const QFontMetricsF metrics(PlotLook::layoutFont(PlotLook::kTextPixels));
    double free = -HUGE_VAL;
    for (int i = 0; i < ticks.size(); ++i) {
        const double place = std::log(ticks[i] / begin) / std::log(ratio) * kCanvasWidth;
        const double width = metrics.horizontalAdvance(labels[i]);
        QVERIFY2(place - width / 2 > free + 2.0, qPrintable(labels.join(' ')));
        free = place + width / 2;
    }
    QCOMPARE(QSet<QString>(labels.begin(), labels.end()).size(), labels.size());
}

void TestLogFrequencyAxis::theAxisNamesNoUnit()
{
    QwtPlot plot;
    PlotLook::setLogarithmicFrequencyAxis(&plot, 1e3, 1e9);
    QCOMPARE(plot.axisTitle(QwtPlot::xBottom).text(), QString("Frequency"));
}

QTEST_MAIN(TestLogFrequencyAxis)
#include "tst_logfrequencyaxis.moc"
