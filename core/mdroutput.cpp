#include "core/crc32.h"
#include "core/mdrlayout.h"
#include "core/recordeddevice.h"

#include <algorithm>

using namespace MdrFormat;

namespace {

void storeValue(const AMeasurementValue &value, char *to)
{
    const FrequencyWords words = wordsOf(value.frequency);
    store(value.leading, to);
    store(value.unit, to + 8);
    store(value.reserved, to + 9);
    store(words.hertz, to + 10);
    store(words.fraction, to + 18);
    store(value.level, to + 26);
    store(value.trailing, to + 34);
}

char *storeTime(const QDateTime &time, char *to)
{
    qint64 milliseconds = 0;
    if (!isStorable(time, &milliseconds))
        return storeAll(to, static_cast<quint8>(NoTime), qint64(0), qint32(0));
    const Qt::TimeSpec spec = time.timeSpec();
    if (spec == Qt::UTC)
        return storeAll(to, static_cast<quint8>(UtcTime), milliseconds, qint32(0));
    return storeAll(to, static_cast<quint8>(spec == Qt::LocalTime ? LocalTime : OffsetTime), milliseconds,
                    static_cast<qint32>(time.offsetFromUtc()));
}

// Without the texts.
char *storeGeoData(const AGeoData &geoData, char *to)
{
    to = storeAll(to, static_cast<qint32>(geoData.source));
    to = storeTime(geoData.recordTime, to);
    to = storeAll(to, geoData.latitude, geoData.longitude, geoData.fix, geoData.speed, geoData.course, geoData.altitude,
                  geoData.airPressure);
    for (const auto *vector : {&geoData.accelerometer, &geoData.magnetometer, &geoData.gyroscope})
        to = storeAll(to, (*vector)[0], (*vector)[1], (*vector)[2]);
    return to;
}

qint64 textBytes(const QString &text)
{
    return kTextLengthBytes + kTextUnitBytes * qint64(text.size());
}

qint64 geoDataBytes(const AGeoData &geoData)
{
    return kGeoDataBytes + textBytes(geoData.recordName) + textBytes(geoData.description);
}

qint64 sweepBytes(const ASweep &sweep)
{
    return 2 * kTimeBytes + geoDataBytes(sweep.geoData()) + 4 + kValueBytes * sweep.values.size();
}

qint64 deviceBytes(const DeviceRecord &device)
{
    qint64 bytes = kDeviceBytes + textBytes(device.customOptionText) + textBytes(device.chipInformation.name) +
                   textBytes(device.chipInformation.description);
    for (const QString &text : device.informationList)
        bytes += textBytes(text);
    return bytes;
}

} // namespace

namespace MdrFormat {

qint64 chunkBytes(const ASweep &sweep)
{
    return kChunkOverhead + sweepBytes(sweep);
}

qint64 chunkBytes(const AGeoData &geoData)
{
    return kChunkOverhead + geoDataBytes(geoData);
}

qint64 chunkBytes(const DeviceRecord &device)
{
    return kChunkOverhead + deviceBytes(device);
}

Output::Output(QIODevice *device)
    : m_device(device)
    , m_block(new char[kBlockBytes])
{}

void Output::writeHeader()
{
    putBytes(kMagic, kMagicBytes);
    put(kVersion);
}

void Output::write(const ASweep &sweep)
{
    beginChunk(kSweepChunk, sweepBytes(sweep));
    putTime(sweep.startTime());
    putTime(sweep.stopTime());
    putGeoData(sweep.geoData());
    put(static_cast<quint32>(sweep.values.size()));
    for (auto value = sweep.values.begin(); value != sweep.values.end();) {
        char *to = room(kValueBytes);
        const qint64 count = std::min<qint64>((kBlockBytes - m_used) / kValueBytes, sweep.values.end() - value);
        for (qint64 i = 0; i < count; ++i, ++value, to += kValueBytes)
            storeValue(*value, to);
        m_used += count * kValueBytes;
    }
    endChunk();
}

void Output::write(const AGeoData &geoData)
{
    if (!geoData.recordName.isEmpty() || !geoData.description.isEmpty()) {
        beginChunk(kGeoDataChunk, geoDataBytes(geoData));
        putGeoData(geoData);
        endChunk();
        return;
    }
    // Most have no texts, and come by the hundred thousand: all in one go.
    constexpr qint64 kPayloadBytes = kGeoDataBytes + 2 * kTextLengthBytes;
    char *const begin = room(kPayloadBytes + kChunkOverhead);
    char *to = storeAll(begin, kGeoDataChunk, static_cast<quint64>(kPayloadBytes));
    to = storeAll(storeGeoData(geoData, to), quint32(0), quint32(0));
    store(crc32(0, begin, to - begin), to);
    m_used += kPayloadBytes + kChunkOverhead;
    m_summed = m_used;
}

void Output::write(const DeviceRecord &device)
{
    beginChunk(kDeviceChunk, deviceBytes(device));
    put(device.hardwareRevision);
    put(static_cast<quint8>(device.isReady ? 1 : 0));
    put(device.optionMask);
    put(device.capabilities);
    put(static_cast<qint32>(device.chipInformation.id));
    put(static_cast<quint16>(device.chipInformation.vendorId));
    put(static_cast<quint16>(device.chipInformation.productId));
    put(device.chipInformation.location);
    putText(device.chipInformation.name);
    putText(device.chipInformation.description);
    putText(device.customOptionText);
    put(static_cast<quint32>(device.informationList.size()));
    for (const QString &text : device.informationList)
        putText(text);
    endChunk();
}

void Output::writeEnd(quint64 chunks)
{
    beginChunk(kEndChunk, sizeof chunks);
    put(chunks);
    endChunk();
}

void Output::beginChunk(quint32 type, qint64 payloadBytes)
{
    room(kTypeBytes + kLengthBytes);
    m_sum = 0;
    m_summed = m_used;
    put(type);
    put(static_cast<quint64>(payloadBytes));
}

void Output::putBytes(const char *bytes, qint64 count)
{
    while (count > 0) {
        char *to = room(1);
        const qint64 part = std::min(count, kBlockBytes - m_used);
        std::memcpy(to, bytes, static_cast<std::size_t>(part));
        m_used += part;
        bytes += part;
        count -= part;
    }
}

void Output::endChunk()
{
    sum();
    put(m_sum);
    m_summed = m_used;
}

bool Output::flush()
{
    sum();
    // A device may take less than it was given without an error; why, it says when it is given the rest.
    for (qint64 written = 0; m_ok && written < m_used;) {
        const qint64 size = m_device->write(m_block.get() + written, m_used - written);
        m_ok = size > 0;
        written += size;
    }
    m_position += m_used;
    m_flushed = m_used;
    m_used = 0;
    m_summed = 0;
    return m_ok;
}

void Output::putWholeChunk(const char *bytes, qint64 count)
{
    putBytes(bytes, count);
    m_summed = m_used;
}

bool Output::hasRoom(qint64 bytes) const
{
    return m_used + bytes <= kBlockBytes;
}

QByteArray Output::lastBlock() const
{
    return QByteArray(m_block.get(), static_cast<int>(m_flushed));
}

template<typename Number>
void Output::put(Number number)
{
    store(number, room(sizeof number));
    m_used += static_cast<qint64>(sizeof number);
}

void Output::putTime(const QDateTime &time)
{
    storeTime(time, room(kTimeBytes));
    m_used += kTimeBytes;
}

void Output::putText(const QString &text)
{
    put(static_cast<quint32>(text.size()));
    const QChar *unit = text.constData();
    for (qint64 left = text.size(); left > 0;) {
        char *to = room(kTextUnitBytes);
        const qint64 count = std::min(left, (kBlockBytes - m_used) / kTextUnitBytes);
        qToLittleEndian<quint16>(unit, count, to);
        m_used += count * kTextUnitBytes;
        unit += count;
        left -= count;
    }
}

void Output::putGeoData(const AGeoData &geoData)
{
    storeGeoData(geoData, room(kGeoDataBytes));
    m_used += kGeoDataBytes;
    putText(geoData.recordName);
    putText(geoData.description);
}

// Where the next bytes go; there are that many free in the block.
char *Output::room(qint64 bytes)
{
    if (m_used + bytes > kBlockBytes)
        flush();
    return m_block.get() + m_used;
}

void Output::sum()
{
    m_sum = crc32(m_sum, m_block.get() + m_summed, m_used - m_summed);
    m_summed = m_used;
}

} // namespace MdrFormat
