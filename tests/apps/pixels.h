#pragma once

#include <QtGui/QColor>
#include <QtGui/QImage>

// `counts` is asked of the colour of each pixel.
template<typename Counts>
int countPixelsIf(const QImage &image, const Counts &counts)
{
    int count = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            count += counts(image.pixelColor(x, y)) ? 1 : 0;
    }
    return count;
}

inline int countPixels(const QImage &image, QRgb color)
{
    return countPixelsIf(image, [color](const QColor &pixel) { return pixel.rgb() == (color | 0xff000000); });
}
