#pragma once

#include "core/aveldoranchipinformation.h"
#include "core/aveldoranexport.h"

#include <QtCore/QObject>

#include <memory>

class AVeldoranDeviceFilter;

// The attached USB devices, as the system lists them. No device is opened.
class AVELDORAN_CORE_EXPORT AVeldoranDeviceList : public QObject
{
    Q_OBJECT

public:
    explicit AVeldoranDeviceList(QObject *parent);
    ~AVeldoranDeviceList() override;

    // The next fetch() ends with the first chip that the filter accepts. Off at first.
    void setStopAtFirstMatch(bool stop);

    // The list takes ownership, and deletes the filter that it had. Null, as at first: every USB device is listed.
    void setDeviceFilter(AVeldoranDeviceFilter *filter);

    // Begins to list the devices anew, in short turns of the event loop; finished() tells the end. The entries stay
    // what they were until then. A further call begins again, with one finished() for both.
    void fetch();

    // The chips in the order of their places in the system. One with two channels is two entries, whose names and
    // descriptions end in "A" and "B".
    int count() const;

    // Valid until the next finished(); of an index out of range an empty record.
    const AVeldoranChipInformation &at(int index) const;

Q_SIGNALS:
    void finished(); // also if the devices could not be listed: there are none then

private:
    Q_DISABLE_COPY(AVeldoranDeviceList)
    struct Q_DECL_HIDDEN Private;
    std::unique_ptr<Private> d;
};
