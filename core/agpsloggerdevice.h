#pragma once

#include "core/ageodata.h"
#include "core/aveldoranchipinformation.h"
#include "core/aveldoranexport.h"

#include <QtCore/QObject>

#include <memory>

class QIODevice;

// Reads position records from NMEA 0183 content: a file, or what a receiver sends over a serial port, a socket, a pipe
// or a pseudo terminal. docs/formats.md lists the sentences that are read and how they become records.
//
// Everything runs on the thread of the event loop, in turns; records are delivered from there alone, never from inside
// a call. Of a file a turn reads a piece with records, or up to the next record, but for at most a second.
class AVELDORAN_CORE_EXPORT AGpsLoggerDevice : public QObject
{
    Q_OBJECT

public:
    // Takes ownership of an `io` that has no parent; another one has to outlive the reading, or ends it. An open `io`
    // is read from where it stands, with the settings that the application has made; one that isn't is opened by
    // init().
    AGpsLoggerDevice(QObject *parent, QIODevice *io);
    ~AGpsLoggerDevice() override;

    // Makes ready to read; from then on a receiver's records are delivered. False if there is no `io`, or it can't be
    // opened or read. A further call changes nothing.
    bool init();

    // Asks a receiver with a memory for its stored file of a number from 1 on. False if the number is below that, the
    // `io` is a file, or it can't be written.
    bool loadFile(int number);

    // A file on disk, whose reading waits for setStreaming(true); not a terminal, a pipe or a buffer.
    bool ioIsFile() const;

    // Starts and halts the delivery of records. A file stands still while it is halted and goes on where it was, what a
    // receiver sends meanwhile is passed over.
    void setStreaming(bool streaming);
    bool isStreaming() const;

    // How long in milliseconds a receiver rests before what it has sent of a record counts as all of it; 200 unless it
    // was set. Sentences of the same time that come later make the record be delivered again.
    int pause() const;
    void setPause(int milliseconds);

    // The chip of the receiver, as far as the application has set it.
    AVeldoranChipInformation chipinfo() const;
    void setChipinfo(const AVeldoranChipInformation &chipInformation);

Q_SIGNALS:
    // One record, with its coordinates in the NMEA form.
    void gpsRecordRead(AGeoData record);

    // The end of the input was reached, after its last record.
    void finished();

private:
    Q_DISABLE_COPY(AGpsLoggerDevice)
    struct Q_DECL_HIDDEN Private;
    std::unique_ptr<Private> d;
};
