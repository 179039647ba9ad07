#pragma once

#include <QtCore/QSize>
#include <QtCore/QString>
#include <QtCore/QVector>
#include <QtGui/QColor>

#include <memory>

// A picture of levels over frequency, in the one look that all pictures of the program have. It is filled, then saved;
// frequencies are in hertz throughout, and the axis chooses its own unit. Needs a QApplication, but no display: the
// platform "offscreen" will do.
class Plot
{
public:
    enum FrequencyScale
    {
        LinearFrequency,
        LogarithmicFrequency // frequencies of 0 and below are left out
    };

    enum CurveRole
    {
        TraceCurve, // what was measured; each has a colour of its own
        TableCurve, // a table whose entries show as symbols; between them it is linear over frequency
        LimitCurve  // what must not be crossed
    };

    enum MarkerSide
    {
        AbovePoint,
        BelowPoint // of a minimum
    };

    struct Point
    {
        double frequencyHz;
        double level; // NaN and infinities are gaps
    };

    // The title may be empty. `quantity` and `unit` name the vertical axis: "Level" and "dBm".
    Plot(const QString &title, const QString &quantity, const QString &unit);
    ~Plot();
    Plot(const Plot &) = delete;
    Plot &operator=(const Plot &) = delete;

    void setFrequencyScale(FrequencyScale scale);

    // Without it, or if `end` is not above `begin`, the axis spans what the curves have.
    void setFrequencyRange(double beginHz, double endHz);

    // The points are in ascending frequency. Curves with a name stand in the legend, below the picture, which grows by
    // it. Of many points in one column of the picture, those are drawn that show. Without a valid colour, the curve
    // has the next one of its role.
    void addCurve(const QString &name, const QVector<Point> &points, CurveRole role, const QColor &color = {});

    // A marker on a point, on that side of it, with its label upright above all curves. Labels keep clear of each
    // other; where there are too many for the width, the last ones added go without. A marker without a level is left
    // out.
    void addMarker(double frequencyHz, double level, const QString &label, MarkerSide side);

    // Writes a PNG file, as a whole or not at all. False if it can't be written, with a text for the user that names
    // the file.
    bool save(const QString &fileName, QString *errorText) const;

    static QSize pictureSize(); // of the file without a legend, in pixels

private:
    struct Private;
    std::unique_ptr<Private> d;
};
