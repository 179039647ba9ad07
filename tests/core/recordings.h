#pragma once

#include "core/amdrdocument.h"
#include "core/aveldorandevice.h"

#include "core/peaksearch.h"
#include "core/plaincrc32.h"
#include "core/testbasics.h"

#include <QtCore/QFile>
#include <QtCore/QTemporaryDir>
#include <QtCore/QtEndian>

#include <cstring>

// What the tests of recordings and of their replay share.

// A new file: what replaces the content of an old one is flushed to the disk by some file systems, which takes long.
inline bool writeFile(const QString &name, const QByteArray &content)
{
    QFile::remove(name);
    QFile file(name);
    return file.open(QIODevice::WriteOnly) && file.write(content) == content.size() && file.flush();
}

using testbasics::readFile;

inline QDateTime utc(qint64 milliseconds)
{
    return QDateTime(QDate(2024, 5, 17), QTime(12, 30), Qt::UTC).addMSecs(milliseconds);
}

// A sweep whose levels begin with `mark`, from `milliseconds` on, 20 ms long.
inline ASweep markedSweep(double mark, qint64 milliseconds = 0, int count = 3)
{
    QList<AMeasurementValue> values;
    for (int i = 0; i < count; ++i)
        values.append(point(mark + i, 1000.0 * (i + 1)));
    return ASweep(values, utc(milliseconds - 20), utc(milliseconds));
}

inline AGeoData markedPosition(float mark, qint64 milliseconds = 0)
{
    AGeoData position;
    position.recordTime = utc(milliseconds);
    position.latitude = mark;
    position.longitude = 1134.5F;
    return position;
}

// A record in which no member has its default.
inline AGeoData richPosition()
{
    AGeoData position;
    position.source = -7;
    position.recordTime = utc(123);
    position.latitude = -4811.25F;
    position.longitude = 1134.5F;
    position.fix = 200;
    position.speed = 1.5F;
    position.course = 2.5F;
    position.altitude = 3.5F;
    position.airPressure = 4.5F;
    for (int i = 0; i < 3; ++i) {
        position.accelerometer[i] = 10.0F + static_cast<float>(i);
        position.magnetometer[i] = 20.0F + static_cast<float>(i);
        position.gyroscope[i] = 30.0F + static_cast<float>(i);
    }
    position.recordName = QString::fromUtf8("Hügel \xf0\x9f\x93\xa1");
    position.description = QStringLiteral("<table>") + QChar(0) + QChar(0xd800); // no text that UTF-8 could hold
    return position;
}

inline bool sameBits(double a, double b)
{
    return std::memcmp(&a, &b, sizeof a) == 0;
}

inline bool sameTime(const QDateTime &a, const QDateTime &b)
{
    return a.isValid() == b.isValid() &&
           (!a.isValid() || (a == b && a.timeSpec() == b.timeSpec() && a.offsetFromUtc() == b.offsetFromUtc()));
}

// Equal to the last bit, NaN too.
inline bool same(const AGeoData &a, const AGeoData &b)
{
    bool vectors = true;
    for (int i = 0; i < 3; ++i) {
        vectors = vectors && sameBits(a.accelerometer[i], b.accelerometer[i]) &&
                  sameBits(a.magnetometer[i], b.magnetometer[i]) && sameBits(a.gyroscope[i], b.gyroscope[i]);
    }
    return vectors && a.source == b.source && sameTime(a.recordTime, b.recordTime) &&
           sameBits(a.latitude, b.latitude) && sameBits(a.longitude, b.longitude) && a.fix == b.fix &&
           sameBits(a.speed, b.speed) && sameBits(a.course, b.course) && sameBits(a.altitude, b.altitude) &&
           sameBits(a.airPressure, b.airPressure) && a.recordName == b.recordName && a.description == b.description;
}

inline bool same(const QList<AMeasurementValue> &a, const QList<AMeasurementValue> &b)
{
    return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](const auto &one, const auto &other) {
        return one.leading == other.leading && one.unit == other.unit && one.reserved == other.reserved &&
               one.frequency == other.frequency && sameBits(one.level, other.level) &&
               sameBits(one.trailing, other.trailing);
    });
}

inline bool same(const ASweep &a, const ASweep &b)
{
    return same(a.values, b.values) && sameTime(a.startTime(), b.startTime()) && sameTime(a.stopTime(), b.stopTime()) &&
           same(a.geoData(), b.geoData());
}

// Which records a document has, such as "s1 p4811 s2": sweeps by their first level, positions by their latitude.
inline QString recordsText(const AMdrDocument &document)
{
    QStringList texts;
    for (int i = 0; i < document.recordCount(); ++i) {
        ASweep sweep;
        AGeoData position;
        if (document.readSweep(i, &sweep))
            texts += QStringLiteral("s%1").arg(sweep.values.isEmpty() ? 0.0 : sweep.values.first().level);
        else if (document.readGeoData(i, &position))
            texts += QStringLiteral("p%1").arg(static_cast<double>(position.latitude));
        else
            texts += QStringLiteral("?");
    }
    return texts.join(QLatin1Char(' '));
}

// s1 p10 s2 s3 p20
inline void fillWithFive(AMdrDocument *document)
{
    document->addSweep(markedSweep(1, 0));
    document->addGeoData(markedPosition(10, 50));
    document->addSweep(markedSweep(2, 100));
    document->addSweep(markedSweep(3, 200));
    document->addGeoData(markedPosition(20, 250));
}

class OtherDevice : public AVeldoranDevice
{
public:
    QStringList m_information = {QStringLiteral("HF-60"), {}, {}, {}, QStringLiteral("1.2"), {}, QStringLiteral("777")};
    int m_capabilities = AVeldoranDevice::NoiseFloorSuppression | 0x40000000;

    QString customOptionText() const override { return QString::fromUtf8("µ8"); }
    int hardwareRevision() const override { return -3; }
    bool isReady() const override { return true; }
    QStringList informationList() const override { return m_information; }
    quint16 optionMask() const override { return 0x8005; }
    bool hasCapability(int capability) const override { return (m_capabilities & capability) != 0; }
    AVeldoranChipInformation chipInformation() const override
    {
        AVeldoranChipInformation chip;
        chip.id = 0x04036010;
        chip.name = QStringLiteral("FT1A");
        chip.description = QStringLiteral("Analyser A");
        chip.vendorId = 0x0403;
        chip.productId = 0x6010;
        chip.location = 0x80000102;
        return chip;
    }
};

// --- a second reader of the bytes, by docs/formats.md alone ---

struct Chunk
{
    QByteArray type;
    QByteArray payload;
    int begin = 0; // offsets in the file
    int end = 0;
};

// The chunks of a file, without a look at the checksums.
inline QList<Chunk> chunksOf(const QByteArray &file)
{
    QList<Chunk> chunks;
    for (int at = 12; at + 16 <= file.size();) {
        const auto length = qFromLittleEndian<quint64>(file.constData() + at + 4);
        if (length > static_cast<quint64>(file.size() - at - 16))
            break;
        const int end = at + 16 + static_cast<int>(length);
        chunks.append({file.mid(at, 4), file.mid(at + 12, static_cast<int>(length)), at, end});
        at = end;
    }
    return chunks;
}

template<typename Number>
QByteArray littleEndian(Number number)
{
    QByteArray bytes(sizeof number, '\0');
    qToLittleEndian(number, bytes.data());
    return bytes;
}

inline QByteArray chunkBytes(const QByteArray &type, const QByteArray &payload)
{
    const QByteArray head = type + littleEndian(static_cast<quint64>(payload.size())) + payload;
    return head + littleEndian(plainCrc32(head));
}

inline QByteArray fileBytes(const QList<QByteArray> &chunks)
{
    QByteArray file = QByteArray("\x89MDR\r\n\x1a\n") + littleEndian(quint32(1));
    for (const QByteArray &chunk : chunks)
        file += chunk;
    return file + chunkBytes("END ", littleEndian(static_cast<quint64>(chunks.size())));
}
