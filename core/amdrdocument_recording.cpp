#include "core/amdrdocument_p.h"

#include <QtCore/QAbstractEventDispatcher>
#include <QtCore/QBuffer>

#include <cerrno>
#include <utility>

#include <sys/stat.h>
#include <unistd.h>

using MdrFormat::Input;
using MdrFormat::Output;

namespace {

// Of what was added, so much at most waits for being written together.
constexpr qint64 kMostWaitingBytes = 1 << 16;

bool isSameFile(const QFile &open, const QString &fileName)
{
    struct stat one = {};
    struct stat other = {};
    return ::fstat(open.handle(), &one) == 0 && ::stat(QFile::encodeName(fileName).constData(), &other) == 0 &&
           one.st_dev == other.st_dev && one.st_ino == other.st_ino;
}

bool isDeleted(const QFile &open)
{
    struct stat status = {};
    return ::fstat(open.handle(), &status) == 0 && status.st_nlink == 0;
}

} // namespace

bool AMdrDocument::Private::isBeingRecorded(const QString &fileName) const
{
    return recorder && isSameFile(*recorder, fileName);
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
        if (!one->open(mode | QIODevice::Unbuffered))
            return fail(errorText, one->errorString());
    }
    // A recording without its end is one that goes on.
    if (!recorder->resize(endOffset) || !recorder->seek(endOffset))
        return fail(errorText, recorder->errorString());
    for (std::size_t i = 0; i < offsets.size(); ++i) {
        d->entries[i].at = offsets[i];
        d->entries[i].isInFile = true;
    }
    d->sweepsInMemory.clear();
    d->geoDataInMemory.clear();
    d->setFile(std::move(file), endOffset);
    d->output = std::make_unique<Output>(recorder.get());
    d->recorder = std::move(recorder);
    d->recordedFrom = endOffset;
    d->recordedChunks = offsets.size() + (d->device ? 1 : 0);
    d->recordingError.clear();
    return true;
}

bool AMdrDocument::finishRecording(QString *errorText)
{
    if (!d->recorder)
        return fail(errorText, AMdrDocument::tr("Nothing is being recorded"));
    if (d->writeWaiting()) {
        d->output->writeEnd(d->recordedChunks);
        if (!d->output->flush())
            d->stopRecordingBecause(d->recorder->errorString());
        else if (::fsync(d->recorder->handle()) != 0)
            d->stopRecordingBecause(qt_error_string(errno));
        else if (isDeleted(*d->recorder))
            d->recordingError = AMdrDocument::tr("The file of the recording was deleted or replaced");
    }
    d->turnEnd->stop();
    d->output.reset();
    d->recorder.reset();
    if (d->recordingError.isEmpty())
        return true;
    return fail(errorText, d->recordingError);
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
    // The block of the output holds whole chunks alone, or a part of this one alone: see keepUnwritten().
    const qint64 bytes = MdrFormat::chunkBytes(record);
    if (!output->hasRoom(bytes) && !writeWaiting())
        return false;
    const bool isLarge = !output->hasRoom(bytes);
    const bool isFirst = output->waitingBytes() == 0;
    const qint64 begin = recordedFrom + output->position();
    if (!writeRecord(output.get(), record)) {
        if (writeWaiting())
            stopRecordingBecause(AMdrDocument::tr("A record is too large for a recording"));
        return false;
    }
    if ((isLarge || output->waitingBytes() >= kMostWaitingBytes) && !writeWaiting())
        return false;
    *at = begin;
    ++recordedChunks;
    if (isFirst)
        writeAtEndOfTurn();
    return true;
}

// False if records can't be written any more, or nothing is recorded.
bool AMdrDocument::Private::writeWaiting()
{
    if (!recorder || !recordingError.isEmpty())
        return false;
    if (output->flush()) {
        fileBytes = recordedFrom + output->position();
        return true;
    }
    const QString reason = recorder->errorString();
    keepUnwritten();
    stopRecordingBecause(reason);
    return false;
}

void AMdrDocument::Private::writeAtEndOfTurn()
{
    if (!turnEnd->isActive() && QAbstractEventDispatcher::instance())
        turnEnd->start();
}

// Takes the records that were to be written from the block into memory, but for those that have got into the file
// whole.
void AMdrDocument::Private::keepUnwritten()
{
    auto entry = entries.end();
    while (entry != entries.begin() && isWaiting(*(entry - 1)))
        --entry;
    QByteArray block = output->lastBlock();
    QBuffer buffer(&block);
    buffer.open(QIODevice::ReadOnly);
    Input reader;
    reader.setDevice(&buffer);
    const qint64 begin = fileBytes;
    const qint64 writtenEnd = recorder->size();
    quint32 type = 0;
    while (entry != entries.end() && reader.beginChunk(block.size(), &type)) {
        ASweep sweep;
        AGeoData geoData;
        const bool isSweep = type == MdrFormat::kSweepChunk && reader.read(&sweep);
        const bool isGeoData = type == MdrFormat::kGeoDataChunk && reader.read(&geoData);
        if (!reader.endChunk())
            return;
        const qint64 end = begin + reader.position();
        if (end <= writtenEnd)
            fileBytes = end;
        if (isSweep || isGeoData) {
            if (end > writtenEnd) {
                entry->isInFile = false;
                entry->at = static_cast<qint64>(isSweep ? sweepsInMemory.size() : geoDataInMemory.size());
                if (isSweep)
                    sweepsInMemory.push_back(sweep);
                else
                    geoDataInMemory.push_back(geoData);
            }
            ++entry;
        }
    }
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
