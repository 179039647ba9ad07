#include "core/crc32.h"
#include "core/mdrlayout.h"
#include "core/recordeddevice.h"

#include <algorithm>
#include <cmath>

using namespace MdrFormat;

namespace {

AFrequency sumOf(const FrequencyWords &words)
{
    const AFrequency frequency = AFrequency::fromValue(static_cast<long long>(words.hertz), AFrequency::Hz);
    if (!std::isfinite(words.fraction))
        return frequency;
    const AFrequency one = AFrequency::fromValue(1, AFrequency::Hz);
    return frequency + one * words.fraction;
}

// A fraction is added by arithmetic: another writer's may be one that AFrequency doesn't keep.
AFrequency frequencyOf(const FrequencyWords &words)
{
    if (bitsOf(words.fraction) != 0)
        return sumOf(words);
    AFrequency frequency;
    std::memcpy(static_cast<void *>(&frequency), &words, sizeof words);
    return frequency;
}

AMeasurementValue fetchValue(const char *from)
{
    AMeasurementValue value;
    FrequencyWords words;
    fetch(from, &value.leading);
    fetch(from + 8, &value.unit);
    fetch(from + 9, &value.reserved);
    fetch(from + 10, &words.hertz);
    fetch(from + 18, &words.fraction);
    fetch(from + 26, &value.level);
    fetch(from + 34, &value.trailing);
    value.frequency = frequencyOf(words);
    return value;
}

} // namespace

namespace MdrFormat {

struct Input::Time
{
    quint8 kind = NoTime;
    qint64 milliseconds = 0;
    qint32 offsetSeconds = 0;

    // A time that no writer of this library writes counts as none.
    const char *fetchFrom(const char *from)
    {
        const char *behind = fetchAll(from, &kind, &milliseconds, &offsetSeconds);
        const bool isTime = kind <= OffsetTime && milliseconds >= -kMaxMilliseconds &&
                            milliseconds <= kMaxMilliseconds && offsetSeconds >= -kMaxOffsetSeconds &&
                            offsetSeconds <= kMaxOffsetSeconds;
        if (!isTime)
            *this = Time();
        return behind;
    }

    qint64 inIndex() const { return kind == NoTime ? kNoTime : milliseconds; }

    QDateTime toDateTime() const
    {
        if (kind == NoTime)
            return {};
        if (kind == UtcTime)
            return QDateTime::fromMSecsSinceEpoch(milliseconds, Qt::UTC);
        if (kind == LocalTime) {
            QDateTime local = QDateTime::fromMSecsSinceEpoch(milliseconds, Qt::LocalTime);
            if (local.offsetFromUtc() == offsetSeconds)
                return local;
        }
        // What the clock showed where it was recorded.
        return QDateTime::fromMSecsSinceEpoch(milliseconds, Qt::OffsetFromUTC, offsetSeconds);
    }
};

Input::Input()
    : m_block(static_cast<int>(kBlockBytes), Qt::Uninitialized)
{}

void Input::setDevice(QIODevice *device)
{
    m_device = device;
    m_position = device ? device->pos() : 0;
    m_at = m_end = m_summed = m_left = 0;
}

bool Input::seek(qint64 position)
{
    m_left = 0;
    if (position >= m_position && position <= m_position + m_end) {
        m_at = m_summed = position - m_position;
        return true;
    }
    m_position = position;
    m_at = m_end = m_summed = 0;
    return m_device && m_device->seek(position);
}

bool Input::readHeader(bool *hasMagic, quint32 *version)
{
    *hasMagic = false;
    if (!have(kHeaderBytes))
        return false;
    const char *header = m_block.constData() + m_at;
    *hasMagic = std::memcmp(header, kMagic, kMagicBytes) == 0;
    fetch(header + kMagicBytes, version);
    m_at += kHeaderBytes;
    return true;
}

bool Input::beginChunk(qint64 fileSize, quint32 *type)
{
    const qint64 room = fileSize - position() - kChunkOverhead;
    if (room < 0 || !have(kChunkOverhead))
        return false;
    m_sum = 0;
    m_summed = m_at;
    quint64 length = 0;
    fetch(m_block.constData() + m_at, type);
    fetch(m_block.constData() + m_at + kTypeBytes, &length);
    if (length > static_cast<quint64>(room))
        return false;
    m_at += kTypeBytes + kLengthBytes;
    m_left = static_cast<qint64>(length);
    return true;
}

bool Input::getBytes(const char **bytes, qint64 *count)
{
    if (!havePayload(1))
        return false;
    *bytes = m_block.constData() + m_at;
    *count = std::min(m_left, m_end - m_at);
    consume(*count);
    return true;
}

bool Input::endChunk()
{
    if (!skip(m_left))
        return false;
    sum();
    if (!have(kChecksumBytes))
        return false;
    quint32 expected = 0;
    fetch(m_block.constData() + m_at, &expected);
    m_at += kChecksumBytes;
    m_summed = m_at;
    return expected == m_sum;
}

bool Input::getWholeChunk(const char **bytes, qint64 *count)
{
    if (!have(kChunkOverhead))
        return false;
    quint64 length = 0;
    fetch(m_block.constData() + m_at + kTypeBytes, &length);
    if (length > static_cast<quint64>(kBlockBytes - kChunkOverhead))
        return false;
    *count = static_cast<qint64>(length) + kChunkOverhead;
    if (!have(*count))
        return false;
    *bytes = m_block.constData() + m_at;
    quint32 expected = 0;
    fetch(*bytes + *count - kChecksumBytes, &expected);
    m_at += *count;
    m_summed = m_at;
    return crc32(0, *bytes, *count - kChecksumBytes) == expected;
}

bool Input::read(ASweep *sweep)
{
    Time start;
    Time stop;
    AGeoData geoData;
    QList<AMeasurementValue> values;
    values.swap(sweep->values);
    if (!havePayload(2 * kTimeBytes))
        return false;
    stop.fetchFrom(start.fetchFrom(m_block.constData() + m_at));
    consume(2 * kTimeBytes);
    if (!getGeoData(&geoData) || !getValues(&values))
        return false;
    *sweep = ASweep({}, start.toDateTime(), stop.toDateTime());
    sweep->values.swap(values);
    sweep->setGeoData(geoData);
    return m_left == 0;
}

bool Input::read(AGeoData *geoData)
{
    return getGeoData(geoData) && m_left == 0;
}

bool Input::read(DeviceRecord *device)
{
    quint8 isReady = 0;
    qint32 id = 0;
    quint32 texts = 0;
    AVeldoranChipInformation &chip = device->chipInformation;
    if (!get(&device->hardwareRevision) || !get(&isReady) || !get(&device->optionMask) || !get(&device->capabilities) ||
        !get(&id) || !get(&chip.vendorId) || !get(&chip.productId) || !get(&chip.location) || !getText(&chip.name) ||
        !getText(&chip.description) || !getText(&device->customOptionText) || !get(&texts))
        return false;
    device->isReady = isReady != 0;
    chip.id = id;
    device->informationList.clear();
    for (quint32 i = 0; i < texts; ++i) { // each is at least four bytes long, so a wrong number ends soon
        QString text;
        if (!getText(&text))
            return false;
        device->informationList.append(text);
    }
    return m_left == 0;
}

bool Input::read(quint64 *number)
{
    return get(number) && m_left == 0;
}

bool Input::scanSweep(qint64 *time)
{
    Time start;
    Time stop;
    qint64 positionTime = 0;
    quint32 count = 0;
    if (!havePayload(2 * kTimeBytes))
        return false;
    stop.fetchFrom(start.fetchFrom(m_block.constData() + m_at));
    consume(2 * kTimeBytes);
    if (!scanGeoData(&positionTime) || !get(&count))
        return false;
    *time = stop.kind == NoTime ? start.inIndex() : stop.inIndex();
    return count <= kMaxValues && m_left == kValueBytes * count;
}

bool Input::scanGeoData(qint64 *time)
{
    if (!havePayload(kGeoDataBytes))
        return false;
    Time recordTime;
    recordTime.fetchFrom(m_block.constData() + m_at + 4);
    consume(kGeoDataBytes);
    if (!skipText() || !skipText())
        return false;
    *time = recordTime.inIndex();
    return true;
}

template<typename Number>
bool Input::get(Number *number)
{
    if (!havePayload(sizeof *number))
        return false;
    fetch(m_block.constData() + m_at, number);
    consume(sizeof *number);
    return true;
}

bool Input::getText(QString *text)
{
    quint32 length = 0;
    if (!get(&length) || length > kMaxTextLength || kTextUnitBytes * qint64(length) > m_left)
        return false;
    text->clear();
    if (length == 0)
        return true;
    text->resize(static_cast<int>(length));
    QChar *unit = text->data();
    for (qint64 left = length; left > 0;) {
        if (!havePayload(kTextUnitBytes))
            return false;
        const qint64 count = std::min(left, (m_end - m_at) / kTextUnitBytes);
        qFromLittleEndian<quint16>(m_block.constData() + m_at, count, unit);
        consume(count * kTextUnitBytes);
        unit += count;
        left -= count;
    }
    return true;
}

bool Input::getGeoData(AGeoData *geoData)
{
    if (!havePayload(kGeoDataBytes))
        return false;
    qint32 source = 0;
    Time time;
    const char *from = fetchAll(m_block.constData() + m_at, &source);
    from = time.fetchFrom(from);
    from = fetchAll(from, &geoData->latitude, &geoData->longitude, &geoData->fix, &geoData->speed, &geoData->course,
                    &geoData->altitude, &geoData->airPressure);
    for (auto *vector : {&geoData->accelerometer, &geoData->magnetometer, &geoData->gyroscope})
        from = fetchAll(from, &(*vector)[0], &(*vector)[1], &(*vector)[2]);
    consume(kGeoDataBytes);
    geoData->source = source;
    geoData->recordTime = time.toDateTime();
    return getText(&geoData->recordName) && getText(&geoData->description);
}

// The points that the list has are written over: to allocate each anew takes twice as long as all the rest.
bool Input::getValues(QList<AMeasurementValue> *values)
{
    quint32 left = 0;
    if (!get(&left) || left > kMaxValues || m_left != kValueBytes * left)
        return false;
    if (!values->isDetached())
        values->clear();
    values->reserve(static_cast<int>(left));
    while (values->size() > static_cast<int>(left))
        values->removeLast();
    auto old = values->begin();
    auto oldCount = static_cast<quint32>(values->size());
    while (left > 0) {
        if (!havePayload(kValueBytes))
            return false;
        const auto count = static_cast<quint32>(std::min<qint64>((m_end - m_at) / kValueBytes, left));
        const char *from = m_block.constData() + m_at;
        const quint32 reused = std::min(count, oldCount);
        for (quint32 i = 0; i < reused; ++i, from += kValueBytes)
            *old++ = fetchValue(from);
        for (quint32 i = reused; i < count; ++i, from += kValueBytes)
            values->append(fetchValue(from));
        oldCount -= reused;
        consume(count * kValueBytes);
        left -= count;
    }
    return true;
}

bool Input::skip(qint64 bytes)
{
    while (bytes > 0) {
        if (!havePayload(1))
            return false;
        const qint64 part = std::min(bytes, std::min(m_left, m_end - m_at));
        consume(part);
        bytes -= part;
    }
    return true;
}

bool Input::skipText()
{
    quint32 length = 0;
    return get(&length) && length <= kMaxTextLength && 2 * qint64(length) <= m_left && skip(2 * qint64(length));
}

bool Input::have(qint64 bytes)
{
    if (m_end - m_at >= bytes)
        return true;
    if (!m_device)
        return false;
    sum();
    std::memmove(m_block.data(), m_block.constData() + m_at, static_cast<std::size_t>(m_end - m_at));
    m_position += m_at;
    m_end -= m_at;
    m_at = m_summed = 0;
    while (m_end < bytes) {
        const qint64 got = m_device->read(m_block.data() + m_end, kBlockBytes - m_end);
        if (got <= 0)
            return false;
        m_end += got;
    }
    return true;
}

bool Input::havePayload(qint64 bytes)
{
    return bytes <= m_left && have(bytes);
}

void Input::consume(qint64 bytes)
{
    m_at += bytes;
    m_left -= bytes;
}

void Input::sum()
{
    m_sum = crc32(m_sum, m_block.constData() + m_summed, m_at - m_summed);
    m_summed = m_at;
}

} // namespace MdrFormat
