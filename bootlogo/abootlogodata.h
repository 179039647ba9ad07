#pragma once

#include "bootlogo/bootlogofont.h"
#include "core/aveldoranexport.h"

#include <QtCore/QBitArray>
#include <QtCore/QByteArray>
#include <QtCore/QList>
#include <QtCore/QMap>
#include <QtCore/QObject>
#include <QtCore/QPoint>
#include <QtCore/QRect>
#include <QtCore/QSettings>
#include <QtCore/QString>

class AVeldoranDevice;
class QBitmap;

// A rendered glyph or text. The points are the lit pixels, relative to the origin of the bounds, y counting upwards.
struct LetterBits
{
    QRect bounds;         // left 0, top 0, bottom 4; the right edge is -1 if there is no column
    QList<QPoint> points; // each once, in no order to rely on
};

// The small monochrome picture that a device shows at start-up, one bit a pixel: read and written as the bit stream
// that a device takes and as a bitmap, written on in a pixel font, or composed from what is known of a device.
//
// A pixel is addressed by column and row. Column 0 is the left edge, row 0 the bottom row: rows count upwards. A lit
// pixel has the colour Qt::color1 of a bitmap. The operations with a QBitmap need a QGuiApplication.
class AVELDORAN_DATA_EXPORT ABootlogoData : public QObject
{
    Q_OBJECT

public:
    // A picture of 0 by 0 pixels. Writes the default layout into the application's default settings, over whatever
    // stands there under its keys: an own layout goes into a QSettings given to fromDeviceInformation.
    explicit ABootlogoData(QObject *parent = nullptr);
    ~ABootlogoData() override;

    // The size of the picture in pixels.
    int cols() const { return m_cols; }
    int rows() const { return m_rows; }

    // One bit a pixel, the bottom row first, each row from left to right, without padding between rows. The first pixel
    // is the least significant bit of the first byte; unused bits of the last byte are 0.
    QByteArray toBitstream() const;

    // Takes over a stream of any length, which changes neither cols() nor rows(): of one that is too short the missing
    // pixels are not lit and can't be lit, of one that is too long toBitstream() gives all bits back. No signal is
    // emitted. Always true. Bytes beyond the 268,435,454th are dropped.
    bool loadBitstream(const QByteArray &data);

    // The picture with its top row first, as bitmaps have it. Null if it has no pixels.
    QBitmap toBitmap() const;

    // Scales the bitmap to the size of the picture. Always true; a null bitmap gives a clear picture.
    bool loadBitmap(const QBitmap &bitmap);

    // The glyph of a character, of small letters that of the capital. Null if the font has none.
    static const FontLetter *findLetter(QChar character);

    // Null is an empty glyph.
    static LetterBits letterToBits(const FontLetter *letter);

    // The glyphs side by side with one clear column between them. A character without a glyph is no more than the
    // column that follows it. Characters beyond the 16,777,216th are dropped: no list would hold their points.
    static LetterBits textToBits(const QString &text);

    // Paints the text with its lower left corner at the given pixel, over all that was there: clear pixels and gaps
    // included. What lies outside the picture is left out.
    void writeText(int col, int row, const QString &text);

    bool pixel(int col, int row) const; // false outside the picture

    // Outside the picture nothing happens. The signal comes also if the pixel has that state already.
    void setPixel(int col, int row, bool lit);

    // Composes the logo of a device: a background with the device's type, model, firmware version, serial number and
    // option numbers written on it, and an inverted area; or, if its calibration is overdue, a reminder and nothing
    // else. False, before anything is changed, for a null or unsuitable device, and if the background can't be had.
    //
    // - bitmapFile: a picture of up to 16,777,216 pixels, which gives the logo its size; empty for the template, 51 by
    //   25 pixels.
    // - settings: where what goes, see docs/formats.md; a field whose key is absent is left out. Null: the default
    //   settings of the application.
    // - memory: what was read from the device: at 38 its firmware versions, at 31 its calibration date, in the forms of
    //   docs/formats.md ("Device memory"). Not changed.
    // - firmware: the firmware version; if empty that of the memory, and else the device's own.
    // - options: option bits to print beside those of the device.
    bool fromDeviceInformation(const QString &bitmapFile, QSettings *settings, AVeldoranDevice *device,
                               QMap<unsigned short, QByteArray> &memory, QString firmware, unsigned short options);

public Q_SLOTS:
    void clear(); // all pixels; the size stays

    // A clear picture of that size; nothing happens if it is the current one. A negative size, and one of more than
    // 2,147,483,632 pixels, is refused with a warning.
    void resize(int cols, int rows);

Q_SIGNALS:
    void pixelChanged(int col, int row);   // one was painted, be its state another or not
    void imageResized(int cols, int rows); // imageReset() follows
    void imageReset();                     // anything may have changed

private:
    Q_DISABLE_COPY(ABootlogoData)

    QBitArray m_bits; // the pixel (col, row) is bit row * cols + col; a loaded stream makes it shorter or longer
    int m_rows = 0;
    int m_cols = 0;
    QSettings m_settings;
};
