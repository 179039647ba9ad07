#pragma once

#include "apps/folder.h"
#include "apps/programrun.h"

#include <core/amdrdocument.h>

#include <QtTest/QtTest>

#include <QtGui/QImage>

#include <cmath>
#include <functional>
#include <limits>

// Recordings, and the pictures that the program draws of them.

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr int kdBm = 0;
constexpr int kVolt = 5;
constexpr int kWatt = 10;
constexpr QRgb kNothing = qRgb(228, 228, 228);
constexpr QRgb kTrace = qRgb(0x1f, 0x4e, 0x9e);

// 2024-05-17, 08:00:00 UTC
inline const QDateTime &startOfRecording()
{
    static const QDateTime time = QDateTime::fromMSecsSinceEpoch(1715932800000LL, Qt::UTC);
    return time;
}

// A sweep from `beginMHz` on with a second for its time, 0 for the first.
inline ASweep sweep(int second, double beginMHz, double stepMHz, const QVector<double> &levels, int unit = kdBm)
{
    QList<AMeasurementValue> values;
    for (int i = 0; i < levels.size(); ++i) {
        AFrequency frequency;
        frequency.setValue(beginMHz + i * stepMHz, AFrequency::MHz);
        values += AMeasurementValue(levels[i], static_cast<unsigned char>(unit), frequency, 0, 0.0);
    }
    return ASweep(values, startOfRecording().addSecs(second), startOfRecording().addSecs(second + 1));
}

// Levels of -100, and of others where they are given.
inline QVector<double> levels(int count, const QMap<int, double> &others = {})
{
    QVector<double> all(count, -100.0);
    for (auto it = others.begin(); it != others.end(); ++it)
        all[it.key()] = it.value();
    return all;
}

// A picture drawn with colours that nothing else in it has: a ramp of one hue, from dark to bright.
inline const QStringList kRamp = {"--from", "#300030", "--to", "#ff00ff"};

inline bool isRamp(QRgb color)
{
    return qGreen(color) == 0 && std::abs(qRed(color) - qBlue(color)) <= 1 && qRed(color) >= 0x2f;
}

inline bool isWaterfall(QRgb color)
{
    return isRamp(color) || color == kNothing;
}

// From `from` on as long as `holds`.
inline int runLength(int from, int end, const std::function<bool(int)> &holds)
{
    int i = from;
    while (i < end && holds(i))
        ++i;
    return i - from;
}

class Picture
{
public:
    explicit Picture(const QString &fileName)
        : image(QImage(fileName).convertToFormat(QImage::Format_RGB32))
    {
        const int y = image.height() * 3 / 4;
        for (int x = 0; x < image.width();) {
            const int length = runLength(x, image.width(), [this, y](int i) { return isWaterfall(image.pixel(i, y)); });
            if (length > waterfall.width())
                waterfall = QRect(x, 0, length, 0);
            else if (length > 2)
                bar.setRect(x, 0, length, 0); // the last one is that of the colours
            x += std::max(length, 1);
        }
        setRows(&waterfall);
        setRows(&bar);
    }

    // The brightness at a share of width and height; -1 where nothing was measured.
    int brightness(double x, double y) const { return brightnessAt(pixelOf(x, y)); }

    int brightnessAt(const QPoint &point) const
    {
        const QRgb color = image.pixel(point);
        return color == kNothing ? -1 : qRed(color);
    }

    QPoint pixelOf(double x, double y) const
    {
        return {waterfall.left() + std::min(static_cast<int>(x * waterfall.width()), waterfall.width() - 1),
                waterfall.top() + std::min(static_cast<int>(y * waterfall.height()), waterfall.height() - 1)};
    }

    // Where pixels at least that bright lie, as shares of width and height.
    QRectF area(int least) const
    {
        QRect found;
        for (int y = waterfall.top(); y <= waterfall.bottom(); ++y) {
            for (int x = waterfall.left(); x <= waterfall.right(); ++x) {
                if (brightnessAt({x, y}) >= least)
                    found |= QRect(x, y, 1, 1);
            }
        }
        const QRect own = found.translated(-waterfall.topLeft());
        return {double(own.x()) / waterfall.width(), double(own.y()) / waterfall.height(),
                double(own.width()) / waterfall.width(), double(own.height()) / waterfall.height()};
    }

    QImage image;
    QRect waterfall;
    QRect bar;

private:
    void setRows(QRect *area) const
    {
        const int middle = image.height() * 3 / 4;
        const int x = area->center().x();
        const auto isInside = [this, x](int y) { return isWaterfall(image.pixel(x, y)); };
        const int up = runLength(0, middle, [&](int i) { return isInside(middle - i); });
        area->setTop(middle - up + 1);
        area->setBottom(middle + runLength(middle, image.height(), isInside) - 1);
    }
};

// Draws recordings in a folder of its own.
class WaterfallRuns : public Folder
{
public:
    // As "a.mdr".
    QString record(const QList<ASweep> &sweeps) const
    {
        AMdrDocument document;
        for (const ASweep &one : sweeps)
            document.addSweep(one);
        if (!document.save(path("a.mdr")))
            qFatal("could not write a recording");
        return path("a.mdr");
    }

    // Into "a.png", with the ramp of above.
    Run drawIt(const QString &recording, const QStringList &options = {}) const
    {
        return run(QStringList({"waterfall", recording, "--output", path("a.png")}) + kRamp + options);
    }

    Picture drawn(const QList<ASweep> &sweeps, const QStringList &options = {}) const
    {
        const Run result = drawIt(record(sweeps), options);
        if (result.exitStatus != 0 || !result.errors.isEmpty())
            qWarning("exit status %d: %s", result.exitStatus, qPrintable(result.errors));
        return Picture(path("a.png"));
    }
};

#define COMPARE_NEAR(actual, expected, most)                                                                           \
    QVERIFY2(std::fabs((actual) - (expected)) <= (most),                                                               \
             qPrintable(QStringLiteral("%1 instead of %2").arg(actual).arg(expected)))
