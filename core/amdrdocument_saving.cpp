#include "core/amdrdocument_p.h"

#include "core/atomicfile.h"

#include <QtCore/QSaveFile>

using MdrFormat::Output;

bool AMdrDocument::Private::copyChunk(const Entry &entry, Output *to, QString *errorText) const
{
    const char *chunk = nullptr;
    qint64 chunkBytes = 0;
    if (input.seek(entry.at) && input.getWholeChunk(&chunk, &chunkBytes)) {
        to->putWholeChunk(chunk, chunkBytes);
        return true;
    }
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
    return fail(errorText, unreadableText());
}

bool AMdrDocument::Private::writeEntry(const Entry &entry, Output *to, QString *errorText) const
{
    if (entry.isInFile)
        return copyChunk(entry, to, errorText);
    const auto at = static_cast<std::size_t>(entry.at);
    if (entry.type == SweepRecord ? writeRecord(to, sweepsInMemory[at]) : writeRecord(to, geoDataInMemory[at]))
        return true;
    return fail(errorText, AMdrDocument::tr("A record is too large for a recording"));
}

// Gives, where that is wanted, the offset of each entry's chunk in the new file, and that of the end chunk.
bool AMdrDocument::Private::writeAll(const QString &fileName, std::vector<qint64> *offsets, qint64 *endOffset,
                                     QString *errorText) const
{
    if (!isReplaceable(fileName))
        return fail(errorText, AMdrDocument::tr("Not a regular file"));
    QSaveFile target(fileName);
    if (!target.open(QIODevice::WriteOnly | QIODevice::Unbuffered))
        return fail(errorText, target.errorString());
    Output to(&target);
    to.writeHeader();
    bool ok = true;
    if (device && !writeRecord(&to, *device)) {
        ok = fail(errorText, AMdrDocument::tr("A record is too large for a recording"));
    }
    for (auto entry = entries.begin(); ok && entry != entries.end(); ++entry) {
        if (offsets)
            offsets->push_back(to.position());
        ok = writeEntry(*entry, &to, errorText);
    }
    if (!ok) {
        target.cancelWriting();
        return false;
    }
    if (endOffset)
        *endOffset = to.position();
    to.writeEnd(entries.size() + (device ? 1 : 0));
    ok = to.flush();
    if (!ok)
        target.cancelWriting();
    if (ok && target.commit())
        return true;
    return fail(errorText, target.errorString());
}

bool AMdrDocument::save(const QString &fileName, QString *errorText) const
{
    if (d->isBeingRecorded(fileName))
        return fail(errorText, AMdrDocument::tr("The file is being recorded"));
    d->writeWaiting();
    return d->writeAll(fileName, nullptr, nullptr, errorText);
}
