#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QFile>
#include <QtCore/QString>

#include <cstdint>
#include <cstdlib>

#include <sys/mman.h>
#include <unistd.h>

// A regular file in memory that holds an input, for readers that take a file name. Gone with the object.
class MemoryFile
{
public:
    MemoryFile(const std::uint8_t *data, std::size_t size)
        : m_descriptor(::memfd_create("input", 0))
    {
        if (m_descriptor < 0 || ::write(m_descriptor, data, size) != static_cast<ssize_t>(size))
            std::abort();
    }
    ~MemoryFile() { ::close(m_descriptor); }
    MemoryFile(const MemoryFile &) = delete;
    MemoryFile &operator=(const MemoryFile &) = delete;

    QByteArray content() const
    {
        QFile file(name());
        if (!file.open(QIODevice::ReadOnly))
            std::abort();
        return file.readAll();
    }

    QString name() const { return QStringLiteral("/proc/self/fd/%1").arg(m_descriptor); }

private:
    int m_descriptor;
};
