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

qint64 textBytes(const QString &text)
{
    return 4 + 2 * qint64(text.size());
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

Output::Output(QIODevice *device)
    : m_device(device)
    , m_block(static_cast<int>(kBlockBytes), Qt::Uninitialized)
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
    beginChunk(kGeoDataChunk, geoDataBytes(geoData));
    putGeoData(geoData);
    endChunk();
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
    beginChunk(kEndChunk, 8);
    put(chunks);
    endChunk();
}

void Output::beginChunk(quint32 type, qint64 payloadBytes)
{
    room(4 + 8);
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
        const qint64 size = m_device->write(m_block.constData() + written, m_used - written);
        m_ok = size > 0;
        written += size;
    }
    m_position += m_used;
    m_used = 0;
    m_summed = 0;
    return m_ok;
}

template<typename Number>
void Output::put(Number number)
{
    store(number, room(sizeof number));
    m_used += static_cast<qint64>(sizeof number);
}

void Output::putTime(const QDateTime &time)
{
    const bool isTime = isStorable(time);
    TimeKind kind = NoTime;
    if (isTime)
        kind = time.timeSpec() == Qt::UTC ? UtcTime : time.timeSpec() == Qt::LocalTime ? LocalTime : OffsetTime;
    put(static_cast<quint8>(kind));
    put(isTime ? static_cast<qint64>(time.toMSecsSinceEpoch()) : qint64(0));
    put(isTime ? static_cast<qint32>(time.offsetFromUtc()) : qint32(0));
}

void Output::putText(const QString &text)
{
    put(static_cast<quint32>(text.size()));
    for (const QChar unit : text)
        put(unit.unicode());
}

void Output::putGeoData(const AGeoData &geoData)
{
    put(static_cast<qint32>(geoData.source));
    putTime(geoData.recordTime);
    put(geoData.latitude);
    put(geoData.longitude);
    put(geoData.fix);
    for (const float number : {geoData.speed, geoData.course, geoData.altitude, geoData.airPressure})
        put(number);
    for (const auto *vector : {&geoData.accelerometer, &geoData.magnetometer, &geoData.gyroscope}) {
        for (const float component : *vector)
            put(component);
    }
    putText(geoData.recordName);
    putText(geoData.description);
}

// Where the next bytes go; there are that many free in the block.
char *Output::room(qint64 bytes)
{
    if (m_used + bytes > kBlockBytes)
        flush();
    return m_block.data() + m_used;
}

void Output::sum()
{
    m_sum = crc32(m_sum, m_block.constData() + m_summed, m_used - m_summed);
    m_summed = m_used;
}

} // namespace MdrFormat
