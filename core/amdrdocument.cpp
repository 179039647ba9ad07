#include "core/amdrdocument.h"

#include "core/atomicfile.h"
#include "core/mdrformat.h"
#include "core/recordeddevice.h"
#include "core/xmldocument.h"

#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QSaveFile>

#include <optional>
#include <utility>
#include <vector>

#include <unistd.h>

using MdrFormat::Input;
using MdrFormat::Output;

namespace {

constexpr std::size_t kMaxRecords = std::numeric_limits<int>::max();

void setText(QString *text, const QString &value)
{
    if (text)
        *text = value;
}

// What fits() refuses makes no chunk at all.
template<typename Record>
bool writeRecord(Output *output, const Record &record)
{
    if (!MdrFormat::fits(record))
        return false;
    output->write(record);
    return true;
}

} // namespace

struct AMdrDocument::Private
{
    struct Entry
    {
        qint64 at;   // offset of the chunk in the file, or index into the records in memory of its type
        qint64 time; // or MdrFormat::kNoTime
        RecordType type;
        bool isInFile;
    };

    std::vector<Entry> entries;
    std::vector<int> sweeps; // their entries
    std::vector<ASweep> sweepsInMemory;
    std::vector<AGeoData> geoDataInMemory;
    std::optional<DeviceRecord> device;
    std::unique_ptr<QFile> file; // of the entries that are in a file
    qint64 fileBytes = 0;        // that hold whole chunks
    mutable Input input;         // of that file

    std::unique_ptr<QFile> recorder; // the same file while it is being recorded
    std::unique_ptr<Output> output;
    quint64 recordedChunks = 0;
    QString recordingError;

    void clear();
    void append(const Entry &entry);
    bool has(int record, RecordType type) const;
    void setFile(std::unique_ptr<QFile> newFile, qint64 bytes);

    bool index(QString *errorText);
    bool indexChunk(quint32 type, qint64 at, quint64 chunksBefore, bool *isEnd);

    bool openEntry(const Entry &entry, QString *errorText) const;
    QString unreadableText() const;
    bool copyChunk(const Entry &entry, Output *output, QString *errorText) const;
    bool writeEntry(const Entry &entry, Output *output, QString *errorText) const;
    bool writeAll(const QString &fileName, std::vector<qint64> *offsets, qint64 *endOffset, QString *errorText) const;

    bool isBeingRecorded(const QString &fileName) const;
    template<typename Record>
    bool record(const Record &record, qint64 *at);
    void stopRecordingBecause(const QString &reason);
    template<typename Record>
    void add(const Record &record, RecordType type, std::vector<Record> *inMemory);
};

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

// --- reading ---

bool AMdrDocument::Private::index(QString *errorText)
{
    bool isRecording = false;
    quint32 version = 0;
    if (!input.readHeader(&isRecording, &version) || !isRecording) {
        setText(errorText, tr("Not a recording"));
        return false;
    }
    if (version != MdrFormat::kVersion) {
        setText(errorText, tr("A recording of the unknown version %1").arg(version));
        return false;
    }
    bool isEnd = false;
    for (quint64 chunks = 0; !isEnd; ++chunks) {
        const qint64 at = input.position();
        quint32 type = 0;
        if (!input.beginChunk(fileBytes, &type)) {
            setText(errorText, tr("The recording breaks off or is damaged at byte %1").arg(at));
            return false;
        }
        if (!indexChunk(type, at, chunks, &isEnd)) {
            setText(errorText, tr("The recording is damaged in the part that begins at byte %1").arg(at));
            return false;
        }
    }
    if (input.position() != fileBytes) {
        setText(errorText, tr("The recording ends at byte %1, but the file goes on").arg(input.position()));
        return false;
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
    setText(errorText, unreadableText());
    return false;
}

QString AMdrDocument::Private::unreadableText() const
{
    return file->error() == QFileDevice::NoError ? tr("The file of the recording was changed") : file->errorString();
}

bool AMdrDocument::load(const QString &fileName, QString *errorText)
{
    finishRecording();
    d->recordingError.clear();
    d->clear();
    auto file = std::make_unique<QFile>(fileName);
    QString reason;
    bool ok = openRegularFile(file.get(), &reason);
    file->close();
    ok = ok && file->open(QIODevice::ReadOnly | QIODevice::Unbuffered); // Input has a block of its own
    if (ok) {
        const qint64 bytes = file->size();
        d->setFile(std::move(file), bytes);
        ok = d->index(errorText);
    } else {
        setText(errorText, reason.isEmpty() ? file->errorString() : reason);
    }
    if (d->entries.empty())
        d->setFile(nullptr, 0);
    Q_EMIT contentReplaced();
    return ok;
}

bool AMdrDocument::readSweep(int record, ASweep *sweep, QString *errorText) const
{
    if (!d->has(record, SweepRecord)) {
        setText(errorText, tr("The recording has no such sweep"));
        return false;
    }
    const Private::Entry &entry = d->entries[static_cast<std::size_t>(record)];
    if (!entry.isInFile) {
        *sweep = d->sweepsInMemory[static_cast<std::size_t>(entry.at)];
        return true;
    }
    if (!d->openEntry(entry, errorText))
        return false;
    if (d->input.read(sweep) && d->input.endChunk())
        return true;
    setText(errorText, d->unreadableText());
    return false;
}

bool AMdrDocument::readGeoData(int record, AGeoData *geoData, QString *errorText) const
{
    if (!d->has(record, GeoDataRecord)) {
        setText(errorText, tr("The recording has no such position record"));
        return false;
    }
    const Private::Entry &entry = d->entries[static_cast<std::size_t>(record)];
    if (!entry.isInFile) {
        *geoData = d->geoDataInMemory[static_cast<std::size_t>(entry.at)];
        return true;
    }
    if (!d->openEntry(entry, errorText))
        return false;
    if (d->input.read(geoData) && d->input.endChunk())
        return true;
    setText(errorText, d->unreadableText());
    return false;
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

// --- writing ---

bool AMdrDocument::Private::copyChunk(const Entry &entry, Output *to, QString *errorText) const
{
    quint32 type = 0;
    bool ok = input.seek(entry.at) && input.beginChunk(fileBytes, &type);
    if (ok)
        to->beginChunk(type, input.payloadLeft());
    while (ok && input.payloadLeft() > 0) {
        const char *bytes = nullptr;
        qint64 count = 0;
        ok = input.getBytes(&bytes, &count);
        if (ok)
            to->putBytes(bytes, count);
    }
    if (ok && input.endChunk()) {
        to->endChunk();
        return true;
    }
    setText(errorText, unreadableText());
    return false;
}

bool AMdrDocument::Private::writeEntry(const Entry &entry, Output *to, QString *errorText) const
{
    if (entry.isInFile)
        return copyChunk(entry, to, errorText);
    const auto at = static_cast<std::size_t>(entry.at);
    if (entry.type == SweepRecord ? writeRecord(to, sweepsInMemory[at]) : writeRecord(to, geoDataInMemory[at]))
        return true;
    setText(errorText, tr("A record is too large for a recording"));
    return false;
}

// Gives the offset of each entry's chunk in the new file, and that of the end chunk.
bool AMdrDocument::Private::writeAll(const QString &fileName, std::vector<qint64> *offsets, qint64 *endOffset,
                                     QString *errorText) const
{
    if (!isReplaceable(fileName)) {
        setText(errorText, tr("Not a regular file"));
        return false;
    }
    QSaveFile target(fileName);
    if (!target.open(QIODevice::WriteOnly | QIODevice::Unbuffered)) {
        setText(errorText, target.errorString());
        return false;
    }
    Output to(&target);
    to.writeHeader();
    bool ok = true;
    if (device && !writeRecord(&to, *device)) {
        setText(errorText, tr("A record is too large for a recording"));
        ok = false;
    }
    for (auto entry = entries.begin(); ok && entry != entries.end(); ++entry) {
        offsets->push_back(to.position());
        ok = writeEntry(*entry, &to, errorText);
    }
    if (!ok) {
        target.cancelWriting();
        return false;
    }
    *endOffset = to.position();
    to.writeEnd(entries.size() + (device ? 1 : 0));
    ok = to.flush();
    if (!ok)
        target.cancelWriting();
    if (ok && target.commit())
        return true;
    setText(errorText, target.errorString());
    return false;
}

bool AMdrDocument::save(const QString &fileName, QString *errorText) const
{
    if (d->isBeingRecorded(fileName)) {
        setText(errorText, tr("The file is being recorded"));
        return false;
    }
    std::vector<qint64> offsets;
    qint64 endOffset = 0;
    return d->writeAll(fileName, &offsets, &endOffset, errorText);
}

// --- recording ---

bool AMdrDocument::Private::isBeingRecorded(const QString &fileName) const
{
    return recorder && QFileInfo(fileName).canonicalFilePath() == QFileInfo(*recorder).canonicalFilePath();
}

bool AMdrDocument::startRecording(const QString &fileName, QString *errorText)
{
    finishRecording();
    std::vector<qint64> offsets;
    qint64 endOffset = 0;
    if (!d->writeAll(fileName, &offsets, &endOffset, errorText))
        return false;
    auto file = std::make_unique<QFile>(fileName);
    auto recorder = std::make_unique<QFile>(fileName);
    for (const auto &[one, mode] :
         {std::pair(file.get(), QFile::ReadOnly), std::pair(recorder.get(), QFile::ReadWrite)}) {
        if (!one->open(mode | QIODevice::Unbuffered)) {
            setText(errorText, one->errorString());
            return false;
        }
    }
    // A recording without its end is one that goes on.
    if (!recorder->resize(endOffset) || !recorder->seek(endOffset)) {
        setText(errorText, recorder->errorString());
        return false;
    }
    for (std::size_t i = 0; i < offsets.size(); ++i) {
        d->entries[i].at = offsets[i];
        d->entries[i].isInFile = true;
    }
    d->sweepsInMemory.clear();
    d->geoDataInMemory.clear();
    d->setFile(std::move(file), endOffset);
    d->output = std::make_unique<Output>(recorder.get());
    d->recorder = std::move(recorder);
    d->recordedChunks = offsets.size() + (d->device ? 1 : 0);
    d->recordingError.clear();
    return true;
}

bool AMdrDocument::finishRecording(QString *errorText)
{
    if (!d->recorder) {
        setText(errorText, tr("Nothing is being recorded"));
        return false;
    }
    if (d->recordingError.isEmpty()) {
        d->output->writeEnd(d->recordedChunks);
        if (!d->output->flush() || ::fsync(d->recorder->handle()) != 0)
            d->stopRecordingBecause(d->recorder->errorString());
    }
    d->output.reset();
    d->recorder.reset();
    if (d->recordingError.isEmpty())
        return true;
    setText(errorText, d->recordingError);
    return false;
}

bool AMdrDocument::isRecording() const
{
    return d->recorder != nullptr;
}

QString AMdrDocument::recordingError() const
{
    return d->recordingError;
}

// Writes a record to the file that is being recorded, if it can be; *at is where.
template<typename Record>
bool AMdrDocument::Private::record(const Record &record, qint64 *at)
{
    if (!recorder || !recordingError.isEmpty())
        return false;
    if (!writeRecord(output.get(), record)) {
        stopRecordingBecause(tr("A record is too large for a recording"));
        return false;
    }
    if (!output->flush()) {
        stopRecordingBecause(recorder->errorString());
        return false;
    }
    *at = fileBytes;
    fileBytes = recorder->pos();
    ++recordedChunks;
    return true;
}

void AMdrDocument::Private::stopRecordingBecause(const QString &reason)
{
    recordingError = reason;
    recorder->resize(fileBytes); // takes away the part of a chunk; a reader copes with one too
}

template<typename Record>
void AMdrDocument::Private::add(const Record &record, RecordType type, std::vector<Record> *inMemory)
{
    Entry entry = {0, MdrFormat::timeOf(record), type, true};
    if (!this->record(record, &entry.at)) {
        entry.isInFile = false;
        entry.at = static_cast<qint64>(inMemory->size());
        inMemory->push_back(record);
    }
    append(entry);
}

void AMdrDocument::addSweep(const ASweep &sweep)
{
    d->add(sweep, SweepRecord, &d->sweepsInMemory);
}

void AMdrDocument::addGeoData(const AGeoData &geoData)
{
    d->add(geoData, GeoDataRecord, &d->geoDataInMemory);
}

void AMdrDocument::setDevice(const AVeldoranDevice &device)
{
    d->device = DeviceRecord::of(device);
    qint64 at = 0;
    d->record(*d->device, &at);
}

AMdrDocument::AMdrDocument(QObject *parent)
    : QObject(parent)
    , d(std::make_unique<Private>())
{}

AMdrDocument::~AMdrDocument()
{
    finishRecording();
}
