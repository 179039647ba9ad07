#pragma once

#include "core/xmldocument.h"

class QIODevice;

// QDomDocument::setContent() without namespaces, with its results and its messages, for files of any content. It stops
// with an error where elements are nested more than kMaxXmlDepth deep, on which Qt's parser and
// DOM would overflow the stack, where the document type has an internal subset, whose declarations could multiply the
// file, and where a token or all texts together are longer than BoundedXmlReader takes (core/boundedxmlreader.h). After
// an error the document holds what stands before it. Opens a device that isn't open. Private to the two libraries.
bool setBoundedContent(QDomDocument *document, QIODevice *device, XmlError *error);
