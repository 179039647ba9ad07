#include "fuzz/memoryfile.h"
#include "fuzz/require.h"
#include "tests/core/plaincrc32.h"

#include <core/amdrdocument.h>
#include <core/aveldorandevice.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QDir>
#include <QtCore/QFile>

#include <cstdint>
#include <memory>

// A file of any bytes gives records, and an error text exactly if it is not a whole recording. All of its records can
// be read, and saving them gives a recording that has them again, byte by byte. The first four bytes of an input are
// the type of a chunk that holds the rest with the right checksum, since no mutation finds one; with "many" the rest is
// several chunks, each with its type, the length of its payload in two bytes and the payload; with "file" it is a file
// as it stands.

namespace {

constexpr int kTypeBytes = 4;
constexpr qint64 kLargest = 1 << 20;

QByteArray littleEndian(quint64 number, int bytes)
{
    QByteArray text;
    for (int i = 0; i < bytes; ++i)
        text.append(static_cast<char>(number >> (8 * i)));
    return text;
}

QByteArray chunk(const QByteArray &type, const QByteArray &payload)
{
    const QByteArray head = type + littleEndian(static_cast<quint64>(payload.size()), 8) + payload;
    return head + littleEndian(plainCrc32(head), 4);
}

QByteArray fileOf(const QByteArray &input)
{
    const QByteArray type = input.left(kTypeBytes);
    const QByteArray rest = input.mid(kTypeBytes);
    if (type == "file")
        return rest;
    const QByteArray header("\x89MDR\r\n\x1a\n\1\0\0\0", 12);
    if (type != "many")
        return header + chunk(type, rest) + chunk("END ", littleEndian(1, 8));
    constexpr int kLengthBytes = 2;
    QByteArray file = header;
    quint64 count = 0;
    for (int at = 0; at + kTypeBytes + kLengthBytes <= rest.size(); ++count) {
        const int length = static_cast<unsigned char>(rest.at(at + kTypeBytes)) |
                           static_cast<unsigned char>(rest.at(at + kTypeBytes + 1)) << 8;
        const QByteArray payload = rest.mid(at + kTypeBytes + kLengthBytes, length);
        file += chunk(rest.mid(at, kTypeBytes), payload);
        at += kTypeBytes + kLengthBytes + payload.size();
    }
    return file + chunk("END ", littleEndian(count, 8));
}

void readAll(const AMdrDocument &document)
{
    int sweeps = 0;
    for (int i = 0; i < document.recordCount(); ++i) {
        ASweep sweep;
        AGeoData position;
        qint64 time = 0;
        document.recordTime(i, &time);
        const AMdrDocument::RecordType type = document.recordType(i);
        require(document.readSweep(i, &sweep) == (type == AMdrDocument::SweepRecord));
        require(document.readGeoData(i, &position) == (type == AMdrDocument::GeoDataRecord));
        if (type == AMdrDocument::SweepRecord)
            require(document.recordOfSweep(sweeps++) == i);
    }
    require(document.sweepCount() == sweeps);
}

QByteArray content(const QString &name)
{
    QFile file(name);
    require(file.open(QIODevice::ReadOnly));
    return file.readAll();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    if (size < std::size_t(kTypeBytes) || size > std::size_t(kLargest))
        return 0;
    const QByteArray bytes = fileOf(QByteArray(reinterpret_cast<const char *>(data), static_cast<int>(size)));
    const MemoryFile file(reinterpret_cast<const std::uint8_t *>(bytes.constData()),
                          static_cast<std::size_t>(bytes.size()));
    AMdrDocument document;
    QString errorText;
    const bool ok = document.load(file.name(), &errorText);
    require(ok == errorText.isEmpty());
    readAll(document);

    const QString name =
        QDir::tempPath() + QStringLiteral("/fuzz_recording-%1").arg(QCoreApplication::applicationPid());
    require(document.save(name));
    const QByteArray saved = content(name);
    AMdrDocument again;
    require(again.load(name));
    readAll(again);
    require(again.recordCount() == document.recordCount());
    const std::unique_ptr<AVeldoranDevice> device(document.createDevice());
    const std::unique_ptr<AVeldoranDevice> deviceAgain(again.createDevice());
    require((device == nullptr) == (deviceAgain == nullptr));
    require(!device || device->informationList() == deviceAgain->informationList());
    require(again.save(name));
    require(content(name) == saved);
    QFile::remove(name);
    return 0;
}
