#pragma once

#include "core/asweep.h"
#include "core/aveldoranexport.h"

#include <QtCore/QObject>
#include <QtCore/QString>

#include <memory>

// Delivers sweeps, and suppresses peaks in each of them before. A subclass says where they come from.
//
// A narrow peak is up to 5 points wide and stands more than 6 dB above its surroundings, the median of the 21 points
// around a point. Suppression lowers it, never below its surroundings. Points that are part of no narrow peak keep
// their bits, and so does everything but the levels. docs/recordings.md shows the modes on a spectrum.
class AVELDORAN_CORE_EXPORT ASweepProcessor : public QObject
{
    Q_OBJECT

public:
    // By how much narrow peaks are lowered.
    enum PeakSuppressionMode
    {
        Suppression10 = 0,     // narrow peaks are lowered by up to 10 dB
        Suppression20 = 1,     // by up to 20 dB
        SuppressionNF = 2,     // down to the noise floor around them, whatever their height
        SuppressionCustom = 3, // by what the peak suppression file says for their frequency; not at all without a file
        NoSuppression = 4,     // sweeps stay as they are
    };
    Q_ENUM(PeakSuppressionMode)

    explicit ASweepProcessor(QObject *parent = nullptr);
    ~ASweepProcessor() override;

    // Reads the peak suppression file for SuppressionCustom; it has no effect in another mode. `isDataFile`: the name
    // is one that AStorageLocation::dataFilename finds, else it is a path. An empty name is no file. False, with the
    // reason in *errorText where that is not null, if it can't be read: nothing is suppressed by it then. The reason
    // doesn't name the file.
    bool setPeakSuppression(const QString &file, bool isDataFile, QString *errorText = nullptr);

    // NoSuppression at first; any other number counts as that.
    void setPeakSuppression(ASweepProcessor::PeakSuppressionMode mode);
    PeakSuppressionMode peakSuppressionMode() const;
    QString peakSuppressionFile() const; // the name as it was given, also if it could not be read

Q_SIGNALS:
    // The sweep is the receiver's to change during the call.
    void sweepFinished(ASweep &sweep);

protected:
    // Suppresses the peaks of the sweep and emits it. A receiver may delete this object.
    void deliver(ASweep *sweep);

private:
    struct Q_DECL_HIDDEN Private;
    std::unique_ptr<Private> d;
};
