#include "apps/aveldoran/plotlook.h"

#include "apps/aveldoran/outputfile.h"

#include <QtCore/QBuffer>
#include <QtGui/QFontMetrics>

#include <algorithm>
#include <cmath>
#include <qwt_plot.h>
#include <qwt_plot_canvas.h>
#include <qwt_plot_grid.h>
#include <qwt_plot_layout.h>
#include <qwt_scale_widget.h>

namespace PlotLook {

namespace {

constexpr double kDotsPerInch = 96.0;
constexpr QRgb kMajorGridColor = 0xffd0d0d0;
constexpr QRgb kMinorGridColor = 0xffececec;

constexpr int kUsualDigits = 6;
constexpr int kMostDigits = 15;

QString number(double value, int digits)
{
    QLocale locale;
    locale.setNumberOptions(QLocale::OmitGroupSeparator);
    return locale.toString(value, 'g', digits);
}

// So many that each tick's number is near to the tick.
int digitsFor(const QList<double> &ticks)
{
    if (ticks.size() < 2)
        return kUsualDigits;
    const double step = std::fabs(ticks[1] - ticks[0]);
    for (int digits = kUsualDigits; digits < kMostDigits; ++digits) {
        const bool isEnough = std::all_of(ticks.begin(), ticks.end(), [step, digits](double tick) {
            return std::fabs(QString::number(tick, 'g', digits).toDouble() - tick) < step * 0.05;
        });
        if (isEnough)
            return digits;
    }
    return kMostDigits;
}

} // namespace

QFont textFont(int points, bool bold)
{
    QFont font(QStringLiteral("DejaVu Sans"));
    font.setStyleHint(QFont::SansSerif);
    font.setPointSize(points);
    font.setBold(bold);
    return font;
}

QFont layoutFont(int pixels)
{
    QFont font = textFont(kTextPoints, false);
    font.setPixelSize(pixels);
    return font;
}

QwtText text(const QString &content, int points, bool bold)
{
    QwtText result(content, QwtText::PlainText);
    result.setFont(textFont(points, bold));
    return result;
}

QwtText title(const QString &content)
{
    constexpr int kMostWidth = kLayoutWidth * 3 / 4;
    const QFontMetrics metrics(textFont(kTitlePoints, true));
    return text(metrics.elidedText(content, Qt::ElideMiddle, kMostWidth), kTitlePoints, true);
}

QwtText axisTitle(const QString &quantity, const QString &unit)
{
    return text(unit.isEmpty() ? quantity : QStringLiteral("%1 (%2)").arg(quantity, unit), kTextPoints, false);
}

FrequencyUnit unitFor(double hertz)
{
    if (hertz >= 1e10)
        return {"GHz", 1e9};
    if (hertz >= 1e6)
        return {"MHz", 1e6};
    return hertz >= 1e3 ? FrequencyUnit{"kHz", 1e3} : FrequencyUnit{"Hz", 1.0};
}

double niceStep(double span, int divisions)
{
    const double power = std::pow(10.0, std::floor(std::log10(span / divisions)));
    const double lead = span / divisions / power;
    return (lead <= 1.0 ? 1.0 : lead <= 2.0 ? 2.0 : lead <= 5.0 ? 5.0 : 10.0) * power;
}

QString tickNumber(double value, const QwtScaleDraw &scale)
{
    return number(value, digitsFor(scale.scaleDiv().ticks(QwtScaleDiv::MajorTick)));
}

QwtText ScaleDraw::label(double value) const
{
    constexpr double kZero = 1e-12; // what remains of 0 after steps to it
    return {tickNumber(std::fabs(value) < kZero ? 0.0 : value, *this)};
}

void dress(QwtPlot *plot)
{
    plot->setAutoFillBackground(true);
    plot->setPalette(QPalette(Qt::black, Qt::white, Qt::white, Qt::gray, Qt::gray, Qt::black, Qt::white));
    plot->setContentsMargins(10, 10, 18, 8);
    plot->setCanvasBackground(Qt::white);
    plot->setFont(textFont(kTextPoints, false));
    for (const int axis : {QwtPlot::xBottom, QwtPlot::yLeft}) {
        plot->setAxisFont(axis, textFont(kTextPoints, false));
        plot->setAxisScaleDraw(axis, new ScaleDraw);
        plot->axisWidget(axis)->setMargin(0);
    }
    plot->plotLayout()->setAlignCanvasToScales(true);
    auto *canvas = static_cast<QwtPlotCanvas *>(plot->canvas());
    canvas->setFrameStyle(QFrame::Box | QFrame::Plain); // NOLINT(hicpp-signed-bitwise): Qt's own enumerations
    canvas->setLineWidth(1);
    canvas->setBorderRadius(0);
}

void addGrid(QwtPlot *plot)
{
    auto *grid = new QwtPlotGrid; // the plot's own, like all items
    grid->setMajorPen(QColor(kMajorGridColor), 0.8);
    grid->setMinorPen(QColor(kMinorGridColor), 0.6);
    grid->enableXMin(true);
    grid->enableYMin(true);
    grid->setZ(0.0);
    grid->attach(plot);
}

void setLinearFrequencyAxis(QwtPlot *plot, double beginHz, double endHz, const FrequencyUnit &unit)
{
    plot->setAxisTitle(QwtPlot::xBottom, axisTitle(QStringLiteral("Frequency"), QLatin1String(unit.name)));
    plot->setAxisMaxMinor(QwtPlot::xBottom, 5);
    const double begin = beginHz / unit.hertz;
    const double end = endHz / unit.hertz;
    // Fewer where the numbers are long, as those of a narrow range at a high frequency are.
    const bool isNarrow = end - begin < 1e-4 * std::max(std::fabs(begin), std::fabs(end));
    plot->setAxisScale(QwtPlot::xBottom, begin, end, niceStep(end - begin, isNarrow ? 5 : 12));
}

QImage blankPicture(const QSize &layoutSize, double magnification)
{
    QImage image(layoutSize * magnification, QImage::Format_RGB32);
    const int dotsPerMetre = qRound(kDotsPerInch * magnification / 0.0254);
    image.setDotsPerMeterX(dotsPerMetre);
    image.setDotsPerMeterY(dotsPerMetre);
    image.fill(Qt::white);
    return image;
}

bool savePicture(const QImage &image, const QString &fileName, QString *errorText)
{
    QByteArray content;
    QBuffer buffer(&content);
    if (image.save(&buffer, "PNG"))
        return writeOutputFile(fileName, content, errorText);
    *errorText = QStringLiteral("%1: can't be written: The picture can't be encoded").arg(fileName);
    return false;
}

} // namespace PlotLook
