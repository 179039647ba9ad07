#include "apps/aveldoran/recordingfile.h"

#include "apps/aveldoran/console.h"
#include "apps/aveldoran/inputfile.h"

#include <core/amdrdocument.h>

bool loadRecording(const QString &fileName, AMdrDocument *document, bool *complete)
{
    if (!canBeRead(fileName))
        return false;
    Console::progress(QStringLiteral("reading %1").arg(fileName));
    QString errorText;
    const bool isWhole = document->load(fileName, &errorText);
    Console::clearProgress();
    *complete = isWhole;
    if (!isWhole)
        Console::error(QStringLiteral("%1: %2").arg(fileName, errorText));
    if (document->sweepCount() > 0)
        return true;
    if (isWhole || document->recordCount() > 0)
        Console::error(QStringLiteral("%1: no sweeps in this recording").arg(fileName));
    return false;
}
