#pragma once

#include <core/agpsloggerdevice.h>

#include <QtCore/QBuffer>
#include <QtCore/QByteArray>
#include <QtCore/QEventLoop>
#include <QtCore/QList>
#include <QtCore/QTimer>
#include <QtTest/QtTest>

// Builds NMEA content for tests, and reads it with a logger.

// "$body*hh" and an end of line.
inline QByteArray nmea(const QByteArray &body, const QByteArray &endOfLine = "\r\n")
{
    unsigned char sum = 0;
    for (const char byte : body)
        sum = static_cast<unsigned char>(sum ^ static_cast<unsigned char>(byte));
    return '$' + body + '*' + QByteArray::number(sum, 16).toUpper().rightJustified(2, '0') + endOfLine;
}

inline QByteArray rmc(const QByteArray &time, const QByteArray &date = "170524", const QByteArray &status = "A")
{
    return nmea("GPRMC," + time + ',' + status + ",4807.038,N,01131.000,E,022.4,084.4," + date + ",003.1,W");
}

inline QByteArray gga(const QByteArray &time, const QByteArray &altitude = "545.4", const QByteArray &quality = "1")
{
    return nmea("GPGGA," + time + ",4807.038,N,01131.000,E," + quality + ",08,0.9," + altitude + ",M,46.9,M,,");
}

inline QByteArray gll(const QByteArray &time, const QByteArray &status = "A")
{
    return nmea("GPGLL,4807.038,N,01131.000,E," + time + ',' + status);
}

inline QDateTime utc(int year, int month, int day, int hour, int minute, int second, int milliseconds = 0)
{
    return {QDate(year, month, day), QTime(hour, minute, second, milliseconds), Qt::UTC};
}

// Gathers what a logger delivers.
class RecordList
{
public:
    explicit RecordList(AGpsLoggerDevice &logger)
    {
        QObject::connect(&logger, &AGpsLoggerDevice::gpsRecordRead, &m_context,
                         [this](const AGeoData &record) { records.append(record); });
        QObject::connect(&logger, &AGpsLoggerDevice::finished, &m_context, [this] {
            ++finishedCount;
            m_loop.quit();
        });
    }

    bool waitForEnd()
    {
        constexpr int kLimitMs = 60000;
        QTimer::singleShot(kLimitMs, &m_loop, &QEventLoop::quit);
        if (finishedCount == 0)
            m_loop.exec();
        return finishedCount > 0;
    }

    bool waitForCount(int count) const
    {
        return QTest::qWaitFor([this, count] { return records.size() >= count; });
    }

    QList<AGeoData> records;
    int finishedCount = 0;

private:
    QEventLoop m_loop;
    QObject m_context;
};

inline QList<AGeoData> recordsOf(const QByteArray &content)
{
    auto *buffer = new QBuffer;
    buffer->setData(content);
    AGpsLoggerDevice logger(nullptr, buffer);
    RecordList list(logger);
    if (!logger.init() || !list.waitForEnd())
        QTest::qFail("the content was not read to its end", __FILE__, __LINE__);
    return list.records;
}

inline QList<QDateTime> timesOf(const QList<AGeoData> &records)
{
    QList<QDateTime> times;
    for (const AGeoData &record : records)
        times.append(record.recordTime);
    return times;
}

inline bool operator==(const AGeoData &a, const AGeoData &b)
{
    const auto equal = [](const float(&left)[3], const float(&right)[3]) {
        return std::equal(std::begin(left), std::end(left), std::begin(right));
    };
    return a.source == b.source && a.recordTime == b.recordTime && a.latitude == b.latitude &&
           a.longitude == b.longitude && a.fix == b.fix && a.speed == b.speed && a.course == b.course &&
           a.altitude == b.altitude && a.airPressure == b.airPressure && equal(a.accelerometer, b.accelerometer) &&
           equal(a.magnetometer, b.magnetometer) && equal(a.gyroscope, b.gyroscope) && a.recordName == b.recordName &&
           a.description == b.description;
}
