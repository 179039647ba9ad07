#include "apps/aveldoran/curvelook.h"

#include "apps/aveldoran/plotlegend.h"

#include <QtGui/QImage>
#include <QtGui/QPainter>
#include <QtTest/QtTest>

#include <algorithm>
#include <array>
#include <cmath>

namespace {

using Triple = std::array<double, 3>;
using Matrix = std::array<Triple, 3>;

// How colours look to somebody without one sort of cones, for linear RGB (Machado, Oliveira and Fernandes, 2009).
constexpr Matrix kUsual = {{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}};
constexpr Matrix kProtanope = {
    {{0.152286, 1.052583, -0.204868}, {0.114503, 0.786281, 0.099216}, {-0.003882, -0.048116, 1.051998}}};
constexpr Matrix kDeuteranope = {
    {{0.367322, 0.860646, -0.227968}, {0.280085, 0.672501, 0.047413}, {-0.011820, 0.042940, 0.968881}}};
constexpr Matrix kTritanope = {
    {{1.255528, -0.076749, -0.178779}, {-0.078411, 0.930809, 0.147602}, {0.004733, 0.691367, 0.303900}}};
constexpr Matrix kToXyz = {{{0.4124, 0.3576, 0.1805}, {0.2126, 0.7152, 0.0722}, {0.0193, 0.1192, 0.9505}}};

Triple times(const Matrix &matrix, const Triple &vector)
{
    Triple result = {};
    for (int row = 0; row < 3; ++row) {
        for (int column = 0; column < 3; ++column)
            result[row] += matrix[row][column] * vector[column];
        result[row] = qBound(0.0, result[row], 1.1);
    }
    return result;
}

double linear(double component)
{
    return component <= 0.04045 ? component / 12.92 : std::pow((component + 0.055) / 1.055, 2.4);
}

// In CIE Lab, where distances are those that an eye sees.
Triple labOf(const QColor &color, const Matrix &eye)
{
    const Triple rgb = {linear(color.redF()), linear(color.greenF()), linear(color.blueF())};
    Triple xyz = times(kToXyz, times(eye, rgb));
    const Triple white = {0.95047, 1.0, 1.08883};
    for (int i = 0; i < 3; ++i) {
        const double part = xyz[i] / white[i];
        xyz[i] = part > 0.008856 ? std::cbrt(part) : 7.787 * part + 16.0 / 116;
    }
    return {116 * xyz[1] - 16, 500 * (xyz[0] - xyz[1]), 200 * (xyz[1] - xyz[2])};
}

double distance(const Triple &a, const Triple &b)
{
    return std::sqrt(std::pow(a[0] - b[0], 2) + std::pow(a[1] - b[1], 2) + std::pow(a[2] - b[2], 2));
}

// As it stands in the legend, in black.
QImage iconOf(CurveLook look)
{
    constexpr int kMagnification = 2;
    QImage image(qRound(PlotLegend::kIconWidth) * kMagnification, qRound(PlotLegend::kIconHeight) * kMagnification,
                 QImage::Format_Grayscale8);
    image.fill(Qt::white);
    QPainter painter(&image);
    painter.scale(kMagnification, kMagnification);
    look.color = Qt::black;
    PlotLegend::drawIcon(&painter, {0, 0}, look);
    return image;
}

// Pixels that are dark in one and light in the other.
int difference(const QImage &a, const QImage &b)
{
    int count = 0;
    for (int y = 0; y < a.height(); ++y) {
        for (int x = 0; x < a.width(); ++x)
            count += std::abs(qGray(a.pixel(x, y)) - qGray(b.pixel(x, y))) > 100 ? 1 : 0;
    }
    return count;
}

} // namespace

Q_DECLARE_METATYPE(Matrix)

class TestCurveLook : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void coloursStayApartForEveryEye_data();
    void coloursStayApartForEveryEye();
    void coloursAreDarkOnWhite();
    void curvesAreToldApartWithoutTheirColours_data();
    void curvesAreToldApartWithoutTheirColours();
    void theFirstCurvesAreWholeLines();
};

void TestCurveLook::coloursStayApartForEveryEye_data()
{
    QTest::addColumn<Matrix>("eye");

    QTest::newRow("usual") << kUsual;
    QTest::newRow("protanope") << kProtanope;
    QTest::newRow("deuteranope") << kDeuteranope;
    QTest::newRow("tritanope") << kTritanope;
}

void TestCurveLook::coloursStayApartForEveryEye()
{
    QFETCH(Matrix, eye);
    constexpr double kDistinct = 15.0; // 2 is seen side by side
    for (int i = 0; i < CurveLooks::kColorCount; ++i) {
        for (int j = 0; j < i; ++j) {
            const QColor a = CurveLooks::ofTable(i).color;
            const QColor b = CurveLooks::ofTable(j).color;
            QVERIFY2(distance(labOf(a, eye), labOf(b, eye)) > kDistinct, qPrintable(a.name() + " " + b.name()));
        }
    }
}

void TestCurveLook::coloursAreDarkOnWhite()
{
    for (int i = 0; i < CurveLooks::kColorCount; ++i)
        QVERIFY(labOf(CurveLooks::ofTable(i).color, kUsual)[0] < 75.0);
}

void TestCurveLook::curvesAreToldApartWithoutTheirColours_data()
{
    QTest::addColumn<bool>("areTables");

    QTest::newRow("tables") << true;
    QTest::newRow("limits") << false;
}

void TestCurveLook::curvesAreToldApartWithoutTheirColours()
{
    QFETCH(bool, areTables);
    constexpr int kCount = CurveLooks::kDashCount * CurveLooks::kSymbolCount;
    QVector<QImage> icons;
    for (int i = 0; i < kCount; ++i) {
        icons += iconOf(areTables ? CurveLooks::ofTable(i) : CurveLooks::ofLimit(i));
        for (int j = 0; j < i; ++j) {
            const int pixels = difference(icons[i], icons[j]);
            QVERIFY2(pixels >= 12, qPrintable(QStringLiteral("%1 and %2: %3").arg(i).arg(j).arg(pixels)));
        }
    }
}

void TestCurveLook::theFirstCurvesAreWholeLines()
{
    QCOMPARE(CurveLooks::pen(CurveLooks::ofTable(0)).style(), Qt::SolidLine);
    QCOMPARE(CurveLooks::pen(CurveLooks::ofLimit(0)).style(), Qt::SolidLine);
    for (int i = 0; i < CurveLooks::kColorCount; ++i) {
        QCOMPARE(CurveLooks::pen(CurveLooks::ofTrace(i)).style(), Qt::SolidLine);
        QVERIFY(!CurveLooks::symbol(CurveLooks::ofTrace(i)));
    }
    QCOMPARE(CurveLooks::pen(CurveLooks::ofTrace(CurveLooks::kColorCount)).style(), Qt::CustomDashLine);
}

QTEST_MAIN(TestCurveLook)
#include "tst_curvelook.moc"
