#include "bootlogo/logobackground.h"

#include <QtCore/QByteArray>
#include <QtCore/QIODevice>
#include <QtCore/QSize>
#include <QtCore/QString>
#include <QtCore/QtEndian>
#include <QtGui/QBitmap>
#include <QtGui/QImage>
#include <QtGui/QImageReader>

#include <cstdlib>

namespace {

constexpr qint64 kMaxPixels = 1 << 24;

// A bitmap that is stored from the top downwards has a negative height.
bool isTooLarge(const QSize &size)
{
    return std::abs(qint64{size.width()}) * std::abs(qint64{size.height()}) > kMaxPixels;
}

QByteArray bytesAt(QIODevice *device, qint64 position, qint64 size)
{
    return device->seek(position) ? device->read(size) : QByteArray();
}

// Icons hold whole pictures, PNG files or bitmaps of twice the height, whose size need not be the one that the icon
// gives for them. Invalid if none can be read.
QSize sizeInIcon(QIODevice *icon)
{
    constexpr qint64 kOffsetAt = 18; // of the first picture
    constexpr int kHeadSize = 24;

    const QByteArray offset = bytesAt(icon, kOffsetAt, sizeof(quint32));
    if (offset.size() != sizeof(quint32))
        return {};
    const QByteArray head = bytesAt(icon, qFromLittleEndian<quint32>(offset.constData()), kHeadSize);
    if (head.size() != kHeadSize)
        return {};
    if (head.startsWith("\x89PNG"))
        return {qFromBigEndian<qint32>(head.constData() + 16), qFromBigEndian<qint32>(head.constData() + 20)};
    return {qFromLittleEndian<qint32>(head.constData() + 4), qFromLittleEndian<qint32>(head.constData() + 8) / 2};
}

} // namespace

// Past the cache that QPixmap::load keeps by name, size and second: a file just drawn anew would come as it was.
QBitmap readLogoBackground(const QString &fileName)
{
    QImageReader reader(fileName);
    const QByteArray format = reader.format(); // known only as long as nothing else was asked
    if (isTooLarge(reader.size()))
        return {};
    if (format == "ico" || format == "cur") {
        const qint64 position = reader.device()->pos();
        const bool holdsTooMuch = isTooLarge(sizeInIcon(reader.device()));
        reader.device()->seek(position);
        if (holdsTooMuch)
            return {};
    }
    // A reader that said too little has said nothing.
    const QImage image = reader.read();
    return image.isNull() || isTooLarge(image.size()) ? QBitmap() : QBitmap::fromImage(image);
}
