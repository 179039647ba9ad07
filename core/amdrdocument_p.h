#pragma once

#include "core/amdrdocument.h"
#include "core/failure.h"
#include "core/mdrformat.h"
#include "core/recordeddevice.h"

#include <QtCore/QFile>
#include <QtCore/QTimer>

#include <optional>
#include <vector>

// Private to core/. What a recording holds, and where.

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
    std::unique_ptr<QFile> file;    // of the entries that are in a file
    qint64 fileBytes = 0;           // that hold whole chunks
    mutable MdrFormat::Input input; // of that file

    std::unique_ptr<QFile> recorder; // the same file while it is being recorded
    std::unique_ptr<MdrFormat::Output> output;
    quint64 recordedChunks = 0;
    QString recordingError;
    qint64 recordedFrom = 0;   // where the output began
    QTimer *turnEnd = nullptr; // writes to the file what was added in one turn of the event loop

    void clear();
    void append(const Entry &entry);
    bool has(int record, RecordType type) const;
    void setFile(std::unique_ptr<QFile> newFile, qint64 bytes);

    bool index(QString *errorText);
    bool indexChunk(quint32 type, qint64 at, quint64 chunksBefore, bool *isEnd);

    bool openEntry(const Entry &entry, QString *errorText) const;
    template<typename Record>
    bool readRecord(const Entry &entry, const std::vector<Record> &inMemory, Record *record, QString *errorText);
    QString unreadableText() const;
    bool copyChunk(const Entry &entry, MdrFormat::Output *to, QString *errorText) const;
    bool writeEntry(const Entry &entry, MdrFormat::Output *to, QString *errorText) const;
    bool writeAll(const QString &fileName, std::vector<qint64> *offsets, qint64 *endOffset, QString *errorText) const;

    bool isBeingRecorded(const QString &fileName) const;
    template<typename Record>
    bool record(const Record &record, qint64 *at);
    bool isWaiting(const Entry &entry) const { return entry.isInFile && entry.at >= fileBytes; }
    bool writeWaiting();
    void writeAtEndOfTurn();
    void keepUnwritten();
    void stopRecordingBecause(const QString &reason);
    template<typename Record>
    void add(const Record &record, RecordType type, std::vector<Record> *inMemory);
};

// What fits() refuses makes no chunk at all.
template<typename Record>
bool writeRecord(MdrFormat::Output *output, const Record &record)
{
    if (!MdrFormat::fits(record))
        return false;
    output->write(record);
    return true;
}
