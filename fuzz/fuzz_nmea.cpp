#include "core/nmearecords.h"
#include "fuzz/require.h"

#include <core/agpsloggerdevice.h>

#include <QtCore/QBuffer>
#include <QtCore/QCoreApplication>
#include <QtCore/QEventLoop>
#include <QtCore/QList>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdlib>

// Any bytes give records with a time, coordinates of the earth and numbers, the same ones in whatever pieces the bytes
// come. A receiver that pauses between any two sentences gives all of them too, and others that come too early.

namespace {

// Gives at most a few bytes at a time.
class Pieces : public QBuffer
{
public:
    explicit Pieces(qint64 size)
        : m_size(size)
    {}

protected:
    qint64 readData(char *data, qint64 maximum) override { return QBuffer::readData(data, std::min(maximum, m_size)); }

private:
    qint64 m_size;
};

QList<AGeoData> read(const QByteArray &content, qint64 pieceSize)
{
    auto *io = new Pieces(pieceSize);
    io->setData(content);
    if (!io->open(QIODevice::ReadOnly | QIODevice::Unbuffered))
        std::abort();
    AGpsLoggerDevice logger(nullptr, io);
    QList<AGeoData> records;
    QEventLoop loop;
    QObject::connect(&logger, &AGpsLoggerDevice::gpsRecordRead, &loop,
                     [&records](const AGeoData &record) { records.append(record); });
    QObject::connect(&logger, &AGpsLoggerDevice::finished, &loop, &QEventLoop::quit);
    require(logger.init());
    loop.exec();
    return records;
}

void checkRecord(const AGeoData &record)
{
    require(record.recordTime.isValid() && record.recordTime.timeSpec() == Qt::UTC);
    require(std::abs(record.convertNmeaLatLonToDecimal(static_cast<double>(record.latitude))) <= 90.0);
    require(std::abs(record.convertNmeaLatLonToDecimal(static_cast<double>(record.longitude))) <= 180.0);
    require(std::isfinite(record.altitude) && std::isfinite(record.speed) && std::isfinite(record.course));
    require(std::isfinite(record.airPressure));
    for (const bool tiltCompensated : {false, true}) {
        const double heading = record.estimateHeading(tiltCompensated);
        require(heading >= 0.0 && heading < 360.0);
    }
    const QVector3D tilt = record.convertTiltToDegree();
    require(std::abs(tilt.x()) <= 90.001F && std::abs(tilt.y()) <= 180.001F);
}

// As a receiver's sentences are read, with a pause behind every `pauseAfter` of them; 0 for none.
QList<AGeoData> readLive(const QByteArray &content, int pauseAfter)
{
    QList<AGeoData> list;
    NmeaRecords records;
    Nmea::Text text;
    Nmea::Sentence sentence;
    AGeoData record;
    int count = 0;
    const char *position = content.constData();
    while (Nmea::nextSentence(position, content.constData() + content.size(), true, &text)) {
        if (Nmea::readSentence(text, &sentence) && records.add(sentence, &record))
            list.append(record);
        if (pauseAfter > 0 && ++count % pauseAfter == 0 && records.take(&record))
            list.append(record);
    }
    if (records.take(&record))
        list.append(record);
    return list;
}

void checkPauses(const QByteArray &content)
{
    const QList<AGeoData> whole = readLive(content, 0);
    std::for_each(whole.cbegin(), whole.cend(), checkRecord);
    for (const int pauseAfter : {1, 2, 3}) {
        const QList<AGeoData> paused = readLive(content, pauseAfter);
        std::for_each(paused.cbegin(), paused.cend(), checkRecord);
        auto record = paused.cbegin();
        for (const AGeoData &expected : whole) {
            record = std::find_if(record, paused.cend(), [&expected](const AGeoData &candidate) {
                return candidate.recordTime.time() == expected.recordTime.time() &&
                       candidate.latitude == expected.latitude && candidate.longitude == expected.longitude;
            });
            require(record != paused.cend());
            ++record;
        }
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    constexpr std::size_t kMaximumSize = 1U << 20;
    constexpr std::size_t kPieces = 16;
    if (size > kMaximumSize)
        return 0;
    int argc = 0;
    static const QCoreApplication application(argc, nullptr);

    const QByteArray content(reinterpret_cast<const char *>(data), static_cast<int>(size));
    checkPauses(content);
    const QDate today = QDateTime::currentDateTimeUtc().date(); // which is that of records without a date
    const QList<AGeoData> records = read(content, static_cast<qint64>(size) + 1);
    std::for_each(records.cbegin(), records.cend(), checkRecord);

    const QList<AGeoData> fromPieces = read(content, static_cast<qint64>(size / kPieces) + 1);
    const bool isOneDay = QDateTime::currentDateTimeUtc().date() == today;
    require(fromPieces.size() == records.size());
    for (int i = 0; i < records.size(); ++i) {
        require(fromPieces.at(i).recordTime.time() == records.at(i).recordTime.time());
        require(!isOneDay || fromPieces.at(i).recordTime == records.at(i).recordTime);
        require(fromPieces.at(i).latitude == records.at(i).latitude);
        require(fromPieces.at(i).longitude == records.at(i).longitude);
        require(fromPieces.at(i).altitude == records.at(i).altitude);
    }
    return 0;
}
