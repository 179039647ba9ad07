#pragma once

#include "core/asweep.h"

#include <QtCore/QByteArray>
#include <QtCore/QIODevice>

#include <limits>
#include <memory>

struct DeviceRecord;

// The bytes of a recording, described in docs/formats.md. Private to core/.
namespace MdrFormat {

constexpr quint32 chunkType(const char (&name)[5])
{
    quint32 type = 0;
    for (int i = 3; i >= 0; --i)
        type = type << 8 | static_cast<unsigned char>(name[i]);
    return type;
}

constexpr quint32 kVersion = 1;
constexpr quint32 kSweepChunk = chunkType("SWEP");
constexpr quint32 kGeoDataChunk = chunkType("GEOD");
constexpr quint32 kDeviceChunk = chunkType("DEVC");
constexpr quint32 kEndChunk = chunkType("END ");

constexpr qint64 kHeaderBytes = 12; // of the file
constexpr qint64 kTypeBytes = 4;    // of a chunk, as the two that follow
constexpr qint64 kLengthBytes = 8;
constexpr qint64 kChecksumBytes = 4;
constexpr qint64 kChunkOverhead = kTypeBytes + kLengthBytes + kChecksumBytes;
constexpr int kMaxValues = 1 << 27;     // of a sweep
constexpr int kMaxTextLength = 1 << 28; // UTF-16 units
constexpr qint64 kNoTime = std::numeric_limits<qint64>::min();

// Time of a record for an index: milliseconds since the epoch, or kNoTime.
qint64 timeOf(const ASweep &sweep); // its stop, else its start
qint64 timeOf(const AGeoData &geoData);

// Whether the record can be written at all: nothing in it is longer than a reader takes.
bool fits(const ASweep &sweep);
bool fits(const AGeoData &geoData);
bool fits(const DeviceRecord &device);

// Of the record's whole chunk.
qint64 chunkBytes(const ASweep &sweep);
qint64 chunkBytes(const AGeoData &geoData);
qint64 chunkBytes(const DeviceRecord &device);

// Writes a recording in blocks, whatever the size of its records. After a failure all else does nothing.
class Output
{
public:
    explicit Output(QIODevice *device);

    qint64 position() const { return m_position + m_used; } // from where the output began
    void writeHeader();
    void write(const ASweep &sweep);
    void write(const AGeoData &geoData);
    void write(const DeviceRecord &device);
    void writeEnd(quint64 chunks);

    void beginChunk(quint32 type, qint64 payloadBytes);
    void putBytes(const char *bytes, qint64 count);
    void endChunk();

    // A chunk of another recording, with its checksum.
    void putWholeChunk(const char *bytes, qint64 count);

    bool flush(); // false if anything has failed

    qint64 waitingBytes() const { return m_used; } // for the next flush
    bool hasRoom(qint64 bytes) const;              // whether they could wait too
    QByteArray lastBlock() const;                  // what the last flush wrote, or should have written

private:
    template<typename Number>
    void put(Number number);
    void putTime(const QDateTime &time);
    void putText(const QString &text);
    void putGeoData(const AGeoData &geoData);
    char *room(qint64 bytes);
    void sum();

    QIODevice *m_device;
    std::unique_ptr<char[]> m_block;
    qint64 m_position = 0; // of the block
    qint64 m_used = 0;
    qint64 m_flushed = 0; // by the last flush
    qint64 m_summed = 0;  // up to here the block is in the sum
    quint32 m_sum = 0;
    bool m_ok = true;
};

// Reads a recording in blocks. All operations but seek() go forward, give false where the file or the chunk has no more
// bytes, and allocate nothing that the chunk's length doesn't bear out.
class Input
{
public:
    Input();
    void setDevice(QIODevice *device); // null for none
    bool seek(qint64 position);
    qint64 position() const { return m_position + m_at; }

    bool readHeader(bool *hasMagic, quint32 *version);

    // The chunk at the position; false if it does not end within the first fileSize bytes.
    bool beginChunk(qint64 fileSize, quint32 *type);
    qint64 payloadLeft() const { return m_left; }
    bool getBytes(const char **bytes, qint64 *count); // of the payload, as many as are at hand
    bool endChunk();                                  // passes over the rest; false if the checksum is another

    // The chunk at the position with all its bytes, if it fits into the block and the checksum is right. After false
    // the position is anywhere.
    bool getWholeChunk(const char **bytes, qint64 *count);

    bool read(ASweep *sweep);
    bool read(AGeoData *geoData);
    bool read(DeviceRecord *device);
    bool read(quint64 *number);

    // Whether the payload has the form of such a record, and its time.
    bool scanSweep(qint64 *time);
    bool scanGeoData(qint64 *time);

private:
    struct Time;

    template<typename Number>
    bool get(Number *number);
    bool getText(QString *text);
    bool getGeoData(AGeoData *geoData);
    bool getValues(QList<AMeasurementValue> *values);
    bool skip(qint64 bytes);
    bool skipText();
    bool have(qint64 bytes); // of the file, in the block
    bool havePayload(qint64 bytes);
    void consume(qint64 bytes);
    void sum();

    QIODevice *m_device = nullptr;
    QByteArray m_block;
    qint64 m_position = 0; // of the block
    qint64 m_at = 0;
    qint64 m_end = 0;
    qint64 m_summed = 0; // up to here the block is in the sum
    qint64 m_left = 0;   // of the chunk's payload
    quint32 m_sum = 0;
};

} // namespace MdrFormat
