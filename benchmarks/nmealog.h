#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QFile>
#include <QtCore/QMap>
#include <QtCore/QTemporaryDir>

#include <cstdio>
#include <cstdlib>

// An NMEA log on disk with two sentences for each second.

inline QByteArray nmeaSentence(const char *body)
{
    unsigned int sum = 0;
    for (const char *byte = body; *byte; ++byte)
        sum ^= static_cast<unsigned char>(*byte);
    char checksum[8];
    std::snprintf(checksum, sizeof checksum, "*%02X\r\n", sum);
    return QByteArray("$") + QByteArray(body) + QByteArray(checksum);
}

inline QByteArray nmeaLog(int times)
{
    QByteArray bytes;
    for (int i = 0; i < times; ++i) {
        const int second = i % 86400;
        char clock[16];
        std::snprintf(clock, sizeof clock, "%02d%02d%02d.000", second / 3600, second / 60 % 60, second % 60);
        const int minutes = i % 599999; // in ten-thousandths
        char body[128];
        std::snprintf(body, sizeof body, "GPGGA,%s,48%02d.%04d,N,011%02d.%04d,E,1,08,0.9,%d.%d,M,46.9,M,,", clock,
                      minutes / 10000, minutes % 10000, minutes / 10000, minutes % 10000, 400 + i % 300, i % 10);
        bytes += nmeaSentence(body);
        std::snprintf(body, sizeof body, "GPRMC,%s,A,48%02d.%04d,N,011%02d.%04d,E,%03d.4,%03d.4,%02d0524,,", clock,
                      minutes / 10000, minutes % 10000, minutes / 10000, minutes % 10000, i % 100, i % 360,
                      17 + i / 86400);
        bytes += nmeaSentence(body);
    }
    return bytes;
}

// The log of so many times on disk, made once.
inline const QString &nmeaLogFile(int times)
{
    static const QTemporaryDir directory;
    static QMap<int, QString> names;
    QString &name = names[times];
    if (name.isEmpty()) {
        name = directory.filePath(QStringLiteral("%1.nmea").arg(times));
        QFile file(name);
        const QByteArray bytes = nmeaLog(times);
        if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
            std::abort();
    }
    return name;
}
