#pragma once

#include <QtXml/QDomDocument>

class QIODevice;

// Reading and writing of the suite's XML files. Private to the two libraries.

// Deepest element nesting that is read. Qt's DOM and the channel tree recurse over it, so it bounds their stacks.
constexpr int kMaxXmlDepth = 1000;

struct XmlError
{
    QString text; // empty: no error
    qint64 line = 0;
    qint64 column = 0;
};

// Parses a whole XML document as it is read, without holding its text: damage early in a large file costs little.
// The document type is dropped, and so is white space that only indents elements. On failure the document is null and
// *error says where.
QDomDocument readXmlDocument(QIODevice *device, XmlError *error);

// The document's text in UTF-8 with the XML declaration, indented where that adds nothing to a text, and with the
// attributes of each element by name: equal documents give equal bytes.
QByteArray writeXmlDocument(const QDomDocument &document);

// Whether XML 1.0 can hold all characters of a text, so that it can be read back.
bool isXmlText(const QString &text);

// `text` without those that it can't hold. Shares the data of a text that has none.
QString withoutNonXmlCharacters(const QString &text);
