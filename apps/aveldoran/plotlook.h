#pragma once

#include <QtCore/QSize>
#include <QtCore/QString>
#include <QtGui/QFont>
#include <QtGui/QImage>

#include <qwt_scale_draw.h>
#include <qwt_text.h>

class QwtPlot;

// The one look that all pictures of the program have, for those that draw them with Qwt.
namespace PlotLook {

// Pictures are laid out in points of a screen and drawn larger, so that they stay sharp on paper.
constexpr int kLayoutWidth = 960;
constexpr double kMagnification = 1.75;

constexpr int kTextPoints = 9;
constexpr int kTitlePoints = 11;
constexpr int kTextPixels = 12; // as kTextPoints, in the layout

constexpr QRgb kTraceColor = 0xff1f4e9e;

QFont textFont(int points, bool bold);
QFont layoutFont(int pixels); // of texts that are drawn into the layout: a size in points would be magnified twice
QwtText text(const QString &content, int points, bool bold);

QwtText title(const QString &content); // cut in the middle if it is longer than the picture is wide

// "Level (dBm)", or the quantity alone if there is no unit.
QwtText axisTitle(const QString &quantity, const QString &unit);

struct FrequencyUnit
{
    const char *name;
    double hertz;
};
FrequencyUnit unitFor(double hertz);

// 1, 2 or 5 times a power of ten, so that about `divisions` of it fill the span.
double niceStep(double span, int divisions);

// A number without a sign between thousands, which not everybody reads alike, and with as many digits as tell the ticks
// of that scale from each other.
QString tickNumber(double value, const QwtScaleDraw &scale);

class ScaleDraw : public QwtScaleDraw
{
public:
    ScaleDraw() { enableComponent(Backbone, false); } // the canvas has a frame

    QwtText label(double value) const override;
};

// Colours, fonts and frame; the axes at the left and at the bottom.
void dress(QwtPlot *plot);
void addGrid(QwtPlot *plot);

// The axis at the bottom from `beginHz` to `endHz` in that unit, with its title.
void setLinearFrequencyAxis(QwtPlot *plot, double beginHz, double endHz, const FrequencyUnit &unit);

QImage blankPicture(const QSize &layoutSize, double magnification);

// Writes a PNG file, as a whole or not at all. False if it can't be written, with a text for the user that names the
// file.
bool savePicture(const QImage &image, const QString &fileName, QString *errorText);

} // namespace PlotLook
