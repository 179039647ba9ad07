#pragma once

#include "core/asweep.h"
#include "core/aveldoranexport.h"

#include <QtCore/QObject>
#include <QtCore/QString>

#include <memory>

class AVeldoranDevice;

// A recording: sweeps and position records in the order in which they were recorded, and the device that measured them.
// "Mdr", as in the suffix of its files, is measured data, recorded.
//
// What was added lies in memory. What was loaded, and what is added while a file is being recorded, stays in the file,
// which is read on demand: a recording may be larger than memory. docs/formats.md describes the file. No error text
// names the file.
class AVELDORAN_CORE_EXPORT AMdrDocument : public QObject
{
    Q_OBJECT

public:
    // What a record is.
    enum RecordType
    {
        SweepRecord,
        GeoDataRecord,
        OtherRecord, // of a later program; kept by save()
    };

    explicit AMdrDocument(QObject *parent = nullptr); // empty
    ~AMdrDocument() override;                         // ends a running recording

    // Replaces the content by that of a file, whose checksums are all tested. The file stays open and must not be
    // changed in place; replacing or deleting it does no harm.
    //
    // A recording that is running is ended, and what could not be written of it is dropped with the rest of the
    // content: call finishRecording() before to learn of it.
    //
    // False, with the reason in *errorText where that is not null, if the file can't be read, is no recording, or is
    // damaged or cut short anywhere. Every record before the damage is there then, so that the recording of a program
    // that crashed can be saved whole; a missing or foreign file leaves the document empty.
    bool load(const QString &fileName, QString *errorText = nullptr);

    // Writes everything to a file, which is replaced in one step: on failure the old one is whole. False with the
    // reason if it can't be written, if a record can't be read, or if that file is being recorded just now.
    bool save(const QString &fileName, QString *errorText = nullptr) const;

    // Writes everything to a file, as save() does, and from then on what is added: whole records, those of one turn of
    // the event loop together at its end, or sooner if they come to 64 KiB. If this program ends in any way, load()
    // finds all records but those added in the last turn. Without an event loop up to 64 KiB wait until more is added,
    // one of them is read, or the end. False leaves the document as it was; a recording that is already running is
    // ended first.
    bool startRecording(const QString &fileName, QString *errorText = nullptr);

    // Closes the recording. False if a record could not be written: the file then ends with the last one that could,
    // load() tells that it is not complete, and this document has all of them. False too if none is running, and if
    // the file was deleted or replaced meanwhile, while this document still has the records.
    bool finishRecording(QString *errorText = nullptr);
    bool isRecording() const; // also after a record could not be written

    // Why records could not be written since startRecording(); empty as long as all were. A record that waits for the
    // end of the turn counts as soon as that was tried.
    QString recordingError() const;

    // While a file is being recorded a record that can't be written is kept in memory, and so are those after it.
    void addSweep(const ASweep &sweep);
    void addGeoData(const AGeoData &geoData);

    // Keeps what the device says of itself now.
    void setDevice(const AVeldoranDevice &device);

    // A device that says again what the recorded one said; the caller owns it. Null for a recording that names none.
    AVeldoranDevice *createDevice() const;

    int sweepCount() const; // of them, recordOfSweep() takes 0 to below it

    // All records in recorded order; `record` is from 0 to below recordCount().
    int recordCount() const;
    RecordType recordType(int record) const;
    int recordOfSweep(int sweep) const; // -1 out of range

    // When the record was made (a sweep: when it stopped) in milliseconds since the epoch. False if it doesn't say.
    bool recordTime(int record, qint64 *milliseconds) const;

    // A copy of a record. False with the reason if it is of another type, or can't be read from the file any more. Who
    // reads sweep after sweep into one object spares the allocation of each point, if nobody else holds its values.
    bool readSweep(int record, ASweep *sweep, QString *errorText = nullptr) const;
    bool readGeoData(int record, AGeoData *geoData, QString *errorText = nullptr) const;

Q_SIGNALS:
    void contentReplaced(); // at the end of load()

private:
    struct Q_DECL_HIDDEN Private;
    std::unique_ptr<Private> d;
};
