#pragma once

#include "core/aveldoranexport.h"

class QDomDocument;
class QIODevice;

// Writes a document as QDomDocument::save() does with an indent of 1, in UTF-8 and to the same bytes, but much faster:
// a drive has millions of nodes, and save() flushes the file behind each. For documents as AGeoDataProcessor::toKml()
// makes them: elements, attributes and texts, also comments, CDATA sections and processing instructions; a document
// type and namespaces given by URI are not written.
//
// False if the device doesn't take all of it; its errorString() says why. The device is open; a QSaveFile replaces a
// file in one step.
AVELDORAN_DATA_EXPORT bool writeKml(const QDomDocument &document, QIODevice *device);
