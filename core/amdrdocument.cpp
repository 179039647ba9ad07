#include "core/amdrdocument_p.h"

#include "core/regularfile.h"

#include <utility>

#include <fcntl.h>
#include <unistd.h>

namespace {

constexpr std::size_t kMaxRecords = std::numeric_limits<int>::max();

// The same file, whatever its name leads to by now.
bool openUnbuffered(const QFile &opened, QFile *file)
{
    const int descriptor = ::fcntl(opened.handle(), F_DUPFD_CLOEXEC, 0);
    if (descriptor >= 0 &&
        file->open(descriptor, QIODevice::ReadOnly | QIODevice::Unbuffered, QFileDevice::AutoCloseHandle))
        return true;
    if (descriptor >= 0)
        ::close(descriptor);
    return false;
}

} // namespace

void AMdrDocument::Private::clear()
{
    entries.clear();
    sweeps.clear();
    sweepsInMemory.clear();
    geoDataInMemory.clear();
    device.reset();
    setFile(nullptr, 0);
}

void AMdrDocument::Private::append(const Entry &entry)
{
    if (entry.type == SweepRecord)
        sweeps.push_back(static_cast<int>(entries.size()));
    entries.push_back(entry);
}

bool AMdrDocument::Private::has(int record, RecordType type) const
{
    return record >= 0 && static_cast<std::size_t>(record) < entries.size() &&
           entries[static_cast<std::size_t>(record)].type == type;
}

void AMdrDocument::Private::setFile(std::unique_ptr<QFile> newFile, qint64 bytes)
{
    input.setDevice(newFile.get());
    file = std::move(newFile);
    fileBytes = bytes;
}

bool AMdrDocument::Private::index(QString *errorText)
{
    bool hasMagic = false;
    quint32 version = 0;
    if (!input.readHeader(&hasMagic, &version) || !hasMagic)
        return fail(errorText, AMdrDocument::tr("Not a recording"));
    if (version != MdrFormat::kVersion)
        return fail(errorText, AMdrDocument::tr("A recording of the unknown version %1").arg(version));
    bool isEnd = false;
    for (quint64 chunks = 0; !isEnd; ++chunks) {
        const qint64 at = input.position();
        quint32 type = 0;
        if (!input.beginChunk(fileBytes, &type))
            return fail(errorText, AMdrDocument::tr("The recording breaks off or is damaged at byte %1").arg(at));
        if (!indexChunk(type, at, chunks, &isEnd)) {
            return fail(errorText,
                        AMdrDocument::tr("The recording is damaged in the part that begins at byte %1").arg(at));
        }
    }
    if (input.position() != fileBytes) {
        return fail(errorText,
                    AMdrDocument::tr("The recording ends at byte %1, but the file goes on").arg(input.position()));
    }
    return true;
}

// Nothing of a chunk is kept before its checksum was seen to be right.
bool AMdrDocument::Private::indexChunk(quint32 type, qint64 at, quint64 chunksBefore, bool *isEnd)
{
    Entry entry = {at, MdrFormat::kNoTime, OtherRecord, true};
    quint64 chunks = 0;
    DeviceRecord deviceRecord;
    bool ok = true;
    switch (type) {
    case MdrFormat::kSweepChunk:
        entry.type = SweepRecord;
        ok = input.scanSweep(&entry.time);
        break;
    case MdrFormat::kGeoDataChunk:
        entry.type = GeoDataRecord;
        ok = input.scanGeoData(&entry.time) && input.payloadLeft() == 0;
        break;
    case MdrFormat::kDeviceChunk:
        ok = input.read(&deviceRecord);
        break;
    case MdrFormat::kEndChunk:
        ok = input.read(&chunks) && chunks == chunksBefore;
        break;
    default:
        break;
    }
    if (!ok || !input.endChunk() || entries.size() == kMaxRecords)
        return false;
    *isEnd = type == MdrFormat::kEndChunk;
    if (type == MdrFormat::kDeviceChunk)
        device = deviceRecord;
    else if (!*isEnd)
        append(entry);
    return true;
}

// Goes to the payload of a chunk in the file.
bool AMdrDocument::Private::openEntry(const Entry &entry, QString *errorText) const
{
    quint32 type = 0;
    if (input.seek(entry.at) && input.beginChunk(fileBytes, &type))
        return true;
    return fail(errorText, unreadableText());
}

QString AMdrDocument::Private::unreadableText() const
{
    return file->error() == QFileDevice::NoError ? AMdrDocument::tr("The file of the recording was changed")
                                                 : file->errorString();
}

template<typename Record>
bool AMdrDocument::Private::readRecord(const Entry &entry, const std::vector<Record> &inMemory, Record *record,
                                       QString *errorText)
{
    if (isWaiting(entry))
        writeWaiting();
    if (!entry.isInFile) {
        *record = inMemory[static_cast<std::size_t>(entry.at)];
        return true;
    }
    if (!openEntry(entry, errorText))
        return false;
    if (input.read(record) && input.endChunk())
        return true;
    return fail(errorText, unreadableText());
}

AMdrDocument::AMdrDocument(QObject *parent)
    : QObject(parent)
    , d(std::make_unique<Private>())
{
    d->turnEnd = new QTimer(this);
    d->turnEnd->setSingleShot(true);
    connect(d->turnEnd, &QTimer::timeout, this, [this] { d->writeWaiting(); });
}

AMdrDocument::~AMdrDocument()
{
    finishRecording();
}

bool AMdrDocument::load(const QString &fileName, QString *errorText)
{
    finishRecording();
    d->recordingError.clear();
    d->clear();
    QFile opened(fileName);
    auto file = std::make_unique<QFile>(fileName);
    QString reason;
    bool ok = openRegularFile(&opened, &reason);
    if (ok) // Input has a block of its own
        ok = openUnbuffered(opened, file.get());
    if (ok) {
        const qint64 bytes = file->size();
        d->setFile(std::move(file), bytes);
        ok = d->index(errorText);
    } else {
        fail(errorText, reason.isEmpty() ? file->errorString() : reason);
    }
    if (d->entries.empty())
        d->setFile(nullptr, 0);
    Q_EMIT contentReplaced();
    return ok;
}

bool AMdrDocument::readSweep(int record, ASweep *sweep, QString *errorText) const
{
    if (d->has(record, SweepRecord))
        return d->readRecord(d->entries[static_cast<std::size_t>(record)], d->sweepsInMemory, sweep, errorText);
    return fail(errorText, AMdrDocument::tr("The recording has no such sweep"));
}

bool AMdrDocument::readGeoData(int record, AGeoData *geoData, QString *errorText) const
{
    if (d->has(record, GeoDataRecord))
        return d->readRecord(d->entries[static_cast<std::size_t>(record)], d->geoDataInMemory, geoData, errorText);
    return fail(errorText, AMdrDocument::tr("The recording has no such position record"));
}

AVeldoranDevice *AMdrDocument::createDevice() const
{
    return d->device ? new RecordedDevice(*d->device) : nullptr;
}

int AMdrDocument::sweepCount() const
{
    return static_cast<int>(d->sweeps.size());
}

int AMdrDocument::recordCount() const
{
    return static_cast<int>(d->entries.size());
}

AMdrDocument::RecordType AMdrDocument::recordType(int record) const
{
    return record >= 0 && record < recordCount() ? d->entries[static_cast<std::size_t>(record)].type : OtherRecord;
}

int AMdrDocument::recordOfSweep(int sweep) const
{
    return sweep >= 0 && sweep < sweepCount() ? d->sweeps[static_cast<std::size_t>(sweep)] : -1;
}

bool AMdrDocument::recordTime(int record, qint64 *milliseconds) const
{
    if (record < 0 || record >= recordCount())
        return false;
    *milliseconds = d->entries[static_cast<std::size_t>(record)].time;
    return *milliseconds != MdrFormat::kNoTime;
}
