#pragma once

#include "core/afrequency.h"

#include <QtCore/QByteArray>
#include <QtCore/QFile>
#include <QtCore/QString>

// What tests of several subsystems share: frequencies, small files, and every damage that a file can take.
namespace testbasics {

inline AFrequency hertz(qint64 value)
{
    AFrequency frequency;
    frequency.setValue(static_cast<long long>(value), AFrequency::Hz);
    return frequency;
}

inline bool writeFile(const QString &name, const QByteArray &content)
{
    QFile file(name);
    return file.open(QIODevice::WriteOnly) && file.write(content) == content.size() && file.flush();
}

inline QByteArray readFile(const QString &name)
{
    QFile file(name);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

// Hands on the content with each of its bits flipped in turn.
template<typename TryToRead>
void flipEveryBit(const QByteArray &whole, const TryToRead &tryToRead)
{
    for (int i = 0; i < whole.size(); ++i) {
        for (int bit = 0; bit < 8; ++bit) {
            QByteArray flipped = whole;
            flipped[i] = char(flipped.at(i) ^ (1 << bit));
            tryToRead(flipped);
        }
    }
}

// Hands on the content cut at each length, from none to one byte less than the whole.
template<typename TryToRead>
void cutAtEveryLength(const QByteArray &whole, const TryToRead &tryToRead)
{
    for (int length = 0; length < whole.size(); ++length)
        tryToRead(whole.left(length));
}

} // namespace testbasics
