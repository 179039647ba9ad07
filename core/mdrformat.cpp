#include "core/mdrformat.h"

#include "core/crc32.h"
#include "core/recordeddevice.h"

#include <QtCore/QtEndian>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <type_traits>

namespace {

constexpr qint64 kBlockBytes = 1 << 17;
constexpr char kMagic[] = "\x89MDR\r\n\x1a\n";
constexpr qint64 kMagicBytes = sizeof kMagic - 1;
constexpr qint64 kTimeBytes = 13;
constexpr qint64 kValueBytes = 42;
constexpr qint64 kGeoDataBytes = 4 + kTimeBytes + 2 * 4 + 1 + 4 * 4 + 9 * 4; // without its texts
constexpr qint64 kDeviceBytes = 4 + 1 + 2 + 4 + 4 + 2 + 2 + 4 + 4;           // without its texts

constexpr qint64 kMaxMilliseconds = qint64(1) << 53; // beyond it no QDateTime is safe from overflow
constexpr int kMaxOffsetSeconds = 24 * 60 * 60;

enum TimeKind : quint8
{
    NoTime = 0,
    UtcTime = 1,
    LocalTime = 2,
    OffsetTime = 3,
};

template<typename Number>
auto bitsOf(Number number)
{
    if constexpr (std::is_floating_point_v<Number>) {
        std::conditional_t<sizeof(Number) == 4, quint32, quint64> bits;
        static_assert(sizeof bits == sizeof number);
        std::memcpy(&bits, &number, sizeof bits);
        return bits;
    } else {
        return number;
    }
}

template<typename Number>
void store(Number number, char *to)
{
    qToLittleEndian(bitsOf(number), to);
}

template<typename Number>
void fetch(const char *from, Number *number)
{
    using Bits = decltype(bitsOf(Number()));
    const Bits bits = qFromLittleEndian<Bits>(from);
    std::memcpy(number, &bits, sizeof bits);
}

// The two words of a frequency; AFrequency is a plain record of them.
struct FrequencyWords
{
    qint64 hertz;
    double fraction;
};
static_assert(sizeof(FrequencyWords) == sizeof(AFrequency) && std::is_trivially_copyable_v<AFrequency>);

FrequencyWords wordsOf(const AFrequency &frequency)
{
    FrequencyWords words;
    std::memcpy(&words, &frequency, sizeof words);
    return words;
}

AFrequency fromUnusualWords(const FrequencyWords &words)
{
    AFrequency frequency;
    frequency.setValue(static_cast<long long>(words.hertz), AFrequency::Hz);
    if (!std::isfinite(words.fraction))
        return frequency;
    AFrequency one;
    one.setValue(1, AFrequency::Hz);
    return frequency + one * words.fraction;
}

// A fraction that AFrequency would not keep itself (another writer's) is added by arithmetic.
AFrequency frequencyOf(const FrequencyWords &words)
{
    if (bitsOf(words.fraction) != 0)
        return fromUnusualWords(words);
    AFrequency frequency;
    std::memcpy(static_cast<void *>(&frequency), &words, sizeof words);
    return frequency;
}

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

bool isStorable(const QDateTime &time)
{
    if (!time.isValid())
        return false;
    const qint64 milliseconds = time.toMSecsSinceEpoch();
    return milliseconds >= -kMaxMilliseconds && milliseconds <= kMaxMilliseconds;
}

bool fitsText(const QString &text)
{
    return text.size() <= MdrFormat::kMaxTextLength;
}

} // namespace

namespace MdrFormat {

qint64 timeOf(const ASweep &sweep)
{
    for (const QDateTime &time : {sweep.stopTime(), sweep.startTime()}) {
        if (isStorable(time))
            return time.toMSecsSinceEpoch();
    }
    return kNoTime;
}

qint64 timeOf(const AGeoData &geoData)
{
    return isStorable(geoData.recordTime) ? geoData.recordTime.toMSecsSinceEpoch() : kNoTime;
}

bool fits(const ASweep &sweep)
{
    return sweep.values.size() <= kMaxValues && fits(sweep.geoData());
}

bool fits(const AGeoData &geoData)
{
    return fitsText(geoData.recordName) && fitsText(geoData.description);
}

bool fits(const DeviceRecord &device)
{
    return std::all_of(device.informationList.begin(), device.informationList.end(), fitsText) &&
           fitsText(device.customOptionText) && fitsText(device.chipInformation.name) &&
           fitsText(device.chipInformation.description);
}

// --- output ---

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
    // A device may take less than it was given without an error.
    m_ok = m_ok && m_device->write(m_block.constData(), m_used) == m_used;
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

// --- input ---

struct Input::Time
{
    quint8 kind = NoTime;
    qint64 milliseconds = 0;
    qint32 offsetSeconds = 0;

    qint64 inIndex() const { return kind == NoTime ? kNoTime : milliseconds; }

    QDateTime toDateTime() const
    {
        if (kind == NoTime)
            return {};
        if (kind == UtcTime)
            return QDateTime::fromMSecsSinceEpoch(milliseconds, Qt::UTC);
        if (kind == LocalTime) {
            const QDateTime local = QDateTime::fromMSecsSinceEpoch(milliseconds, Qt::LocalTime);
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

bool Input::readHeader(bool *isRecording, quint32 *version)
{
    *isRecording = false;
    if (!have(kHeaderBytes))
        return false;
    const char *header = m_block.constData() + m_at;
    *isRecording = std::memcmp(header, kMagic, kMagicBytes) == 0;
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
    fetch(m_block.constData() + m_at + 4, &length);
    if (length > static_cast<quint64>(room))
        return false;
    m_at += 4 + 8;
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
    if (!have(4))
        return false;
    quint32 expected = 0;
    fetch(m_block.constData() + m_at, &expected);
    m_at += 4;
    m_summed = m_at;
    return expected == m_sum;
}

bool Input::read(ASweep *sweep)
{
    Time start;
    Time stop;
    AGeoData geoData;
    QList<AMeasurementValue> values;
    values.swap(sweep->values);
    if (!getTime(&start) || !getTime(&stop) || !getGeoData(&geoData) || !getValues(&values))
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
    if (!getTime(&start) || !getTime(&stop) || !scanGeoData(&positionTime) || !get(&count))
        return false;
    *time = stop.kind == NoTime ? start.inIndex() : stop.inIndex();
    return count <= kMaxValues && m_left == kValueBytes * count;
}

bool Input::scanGeoData(qint64 *time)
{
    Time recordTime;
    if (!skip(4) || !getTime(&recordTime) || !skip(kGeoDataBytes - 4 - kTimeBytes) || !skipText() || !skipText())
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

// A time that no writer of this library writes counts as none.
bool Input::getTime(Time *time)
{
    if (!get(&time->kind) || !get(&time->milliseconds) || !get(&time->offsetSeconds))
        return false;
    const bool isTime = time->kind <= OffsetTime && time->milliseconds >= -kMaxMilliseconds &&
                        time->milliseconds <= kMaxMilliseconds && time->offsetSeconds >= -kMaxOffsetSeconds &&
                        time->offsetSeconds <= kMaxOffsetSeconds;
    if (!isTime)
        *time = Time();
    return true;
}

bool Input::getText(QString *text)
{
    quint32 length = 0;
    if (!get(&length) || length > kMaxTextLength || 2 * qint64(length) > m_left)
        return false;
    text->clear();
    if (length > 0)
        text->resize(static_cast<int>(length));
    for (QChar &unit : *text) {
        quint16 code = 0;
        if (!get(&code))
            return false;
        unit = QChar(code);
    }
    return true;
}

bool Input::getGeoData(AGeoData *geoData)
{
    qint32 source = 0;
    Time time;
    if (!get(&source) || !getTime(&time) || !get(&geoData->latitude) || !get(&geoData->longitude) ||
        !get(&geoData->fix))
        return false;
    for (float *number : {&geoData->speed, &geoData->course, &geoData->altitude, &geoData->airPressure}) {
        if (!get(number))
            return false;
    }
    for (auto *vector : {&geoData->accelerometer, &geoData->magnetometer, &geoData->gyroscope}) {
        for (float &component : *vector) {
            if (!get(&component))
                return false;
        }
    }
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
