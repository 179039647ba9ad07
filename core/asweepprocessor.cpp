#include "core/asweepprocessor.h"

#include "core/astoragelocation.h"
#include "core/failure.h"
#include "core/peaksuppression.h"

#include <limits>

struct ASweepProcessor::Private
{
    PeakSuppressionMode mode = NoSuppression;
    QString file;
    std::vector<SuppressedRange> ranges; // of the file
    PeakSuppressor suppressor;
};

ASweepProcessor::ASweepProcessor(QObject *parent)
    : QObject(parent)
    , d(std::make_unique<Private>())
{}

ASweepProcessor::~ASweepProcessor() = default;

bool ASweepProcessor::setPeakSuppression(const QString &file, bool isDataFile, QString *errorText)
{
    d->file = file;
    d->ranges.clear();
    if (file.isEmpty())
        return true;
    QString reason;
    const QString path = isDataFile ? AStorageLocation::dataFilename(file, true) : file;
    if (readPeakSuppressionFile(path, &d->ranges, &reason))
        return true;
    return fail(errorText, reason);
}

void ASweepProcessor::setPeakSuppression(ASweepProcessor::PeakSuppressionMode mode)
{
    d->mode = mode >= Suppression10 && mode <= NoSuppression ? mode : NoSuppression;
}

ASweepProcessor::PeakSuppressionMode ASweepProcessor::peakSuppressionMode() const
{
    return d->mode;
}

QString ASweepProcessor::peakSuppressionFile() const
{
    return d->file;
}

void ASweepProcessor::deliver(ASweep *sweep)
{
    switch (d->mode) {
    case Suppression10:
        d->suppressor.suppress(&sweep->values, 10.0);
        break;
    case Suppression20:
        d->suppressor.suppress(&sweep->values, 20.0);
        break;
    case SuppressionNF:
        d->suppressor.suppress(&sweep->values, std::numeric_limits<double>::infinity());
        break;
    case SuppressionCustom:
        d->suppressor.suppress(&sweep->values, d->ranges);
        break;
    case NoSuppression:
        break;
    }
    Q_EMIT sweepFinished(*sweep);
}
