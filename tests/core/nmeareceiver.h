#pragma once

#include "core/nmealog.h"

#include <QtCore/QIODevice>

#include <algorithm>

// Where the tests of loggers take content from that comes bit by bit.

inline const QByteArray kThreeTimes = rmc("123519") + gga("123519") + rmc("123520") + gga("123520") + rmc("123521");

// A receiver whose bytes come when the test says so.
class Receiver : public QIODevice
{
public:
    explicit Receiver(bool isOpen = true)
    {
        if (isOpen)
            open(QIODevice::ReadWrite | QIODevice::Unbuffered);
    }

    bool isSequential() const override { return true; }
    qint64 bytesAvailable() const override { return m_bytes.size() + QIODevice::bytesAvailable(); }

    void send(const QByteArray &bytes)
    {
        sendUnnoticed(bytes);
        Q_EMIT readyRead();
    }

    // As while the event loop is blocked.
    void sendUnnoticed(const QByteArray &bytes) { m_bytes += bytes; }

    QByteArray written;

protected:
    qint64 readData(char *data, qint64 maximum) override
    {
        const int size = static_cast<int>(std::min<qint64>(maximum, m_bytes.size()));
        std::copy_n(m_bytes.constData(), size, data);
        m_bytes.remove(0, size);
        return size;
    }
    qint64 writeData(const char *data, qint64 size) override
    {
        written.append(data, static_cast<int>(size));
        return size;
    }

private:
    QByteArray m_bytes;
};
