#pragma once

#include <QtCore/QString>

class AMdrDocument;

// Reads a recording. False, with an error, if nothing of it is there to go on with. Of a damaged one what was read is
// used: that is reported too, and *complete then false.
bool loadRecording(const QString &fileName, AMdrDocument *document, bool *complete);
