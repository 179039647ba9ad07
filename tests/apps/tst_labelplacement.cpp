#include "apps/aveldoran/labelplacement.h"

#include <QtTest/QtTest>

#include <algorithm>
#include <random>

using Places = QVector<double>;

class TestLabelPlacement : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void places_data();
    void places();
    void randomLabelsKeepOrderDistanceAndBounds();
    void noOtherPlacesAreNearer();
};

void TestLabelPlacement::places_data()
{
    QTest::addColumn<Places>("wanted");
    QTest::addColumn<Places>("expected");

    // 10 apart, from 0 to 100.
    QTest::newRow("none") << Places{} << Places{};
    QTest::newRow("one") << Places{42} << Places{42};
    QTest::newRow("with room between them") << Places{10, 30, 50} << Places{10, 30, 50};
    QTest::newRow("just the distance") << Places{10, 20, 30} << Places{10, 20, 30};
    QTest::newRow("two that are pushed apart") << Places{50, 54} << Places{47, 57};
    QTest::newRow("three at one place") << Places{50, 50, 50} << Places{40, 50, 60};
    QTest::newRow("a group that meets another")
        << Places{40, 42, 49} << Places{34 - 1.0 / 3, 44 - 1.0 / 3, 54 - 1.0 / 3};
    QTest::newRow("at the beginning") << Places{1, 2} << Places{0, 10};
    QTest::newRow("at the end") << Places{99, 99} << Places{90, 100};
    QTest::newRow("outside") << Places{-50, 300} << Places{0, 100};
    QTest::newRow("as many as there is room for")
        << Places(11, 50.0) << Places{0, 10, 20, 30, 40, 50, 60, 70, 80, 90, 100};
    QTest::newRow("more than there is room for")
        << Places(21, 7.0) << Places{0, 5, 10, 15, 20, 25, 30, 35, 40, 45, 50, 55, 60, 65, 70, 75, 80, 85, 90, 95, 100};
}

void TestLabelPlacement::places()
{
    QFETCH(Places, wanted);
    QFETCH(Places, expected);
    const Places found = placeLabels(wanted, 10.0, 0.0, 100.0);
    QCOMPARE(found.size(), expected.size());
    for (int i = 0; i < found.size(); ++i)
        QVERIFY2(std::fabs(found[i] - expected[i]) < 1e-9, QByteArray::number(found[i]));
}

void TestLabelPlacement::randomLabelsKeepOrderDistanceAndBounds()
{
    std::mt19937 random(1);
    for (int round = 0; round < 2000; ++round) {
        Places wanted(std::uniform_int_distribution<int>(0, 12)(random));
        for (double &place : wanted)
            place = std::uniform_real_distribution<double>(-20.0, 120.0)(random);
        std::sort(wanted.begin(), wanted.end());
        const Places found = placeLabels(wanted, 8.0, 0.0, 100.0);
        QCOMPARE(found.size(), wanted.size());
        for (int i = 0; i < found.size(); ++i) {
            QVERIFY(found[i] >= -1e-9 && found[i] <= 100.0 + 1e-9);
            QVERIFY(i == 0 || found[i] - found[i - 1] >= 8.0 - 1e-9);
        }
    }
}

void TestLabelPlacement::noOtherPlacesAreNearer()
{
    std::mt19937 random(2);
    const auto farness = [](const Places &places, const Places &wanted) {
        double sum = 0.0;
        for (int i = 0; i < places.size(); ++i)
            sum += (places[i] - wanted[i]) * (places[i] - wanted[i]);
        return sum;
    };
    for (int round = 0; round < 100; ++round) {
        Places wanted(4);
        for (double &place : wanted)
            place = std::uniform_int_distribution<int>(0, 50)(random);
        std::sort(wanted.begin(), wanted.end());
        const double found = farness(placeLabels(wanted, 10.0, 0.0, 50.0), wanted);
        for (int a = 0; a <= 20; ++a) {
            for (int b = a + 10; b <= 30; ++b) {
                for (int c = b + 10; c <= 40; ++c) {
                    for (int d = c + 10; d <= 50; ++d)
                        QVERIFY(found <= farness({double(a), double(b), double(c), double(d)}, wanted) + 1e-9);
                }
            }
        }
    }
}

QTEST_APPLESS_MAIN(TestLabelPlacement)
#include "tst_labelplacement.moc"
