#pragma once

#include <QtCore/QString>

class QDomDocument;
class QIODevice;

struct DomError
{
    QString text;
    int line = 0;
    int column = 0;
};

// QDomDocument::setContent without namespaces, with its results and its messages, for files of any content: refuses
// elements nested more than kMaxXmlDepth (core/xmldocument.h) deep, which would overflow the stack, and entities with
// which a small file would fill the memory. Private to libaveldorandata.
bool setBoundedContent(QDomDocument *document, QIODevice *file, DomError *error);
