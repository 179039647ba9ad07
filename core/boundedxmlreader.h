#pragma once

#include <QtCore/QXmlStreamReader>

#include <memory>

// Reads an XML file of any size as a stream, for forms with too many elements to hold as a tree, and bounds what a file
// can cost. An error is raised where elements are nested more than kMaxXmlDepth deep (core/xmldocument.h), where a
// token, which the parser holds as a whole, is longer than kMaxXmlTokenBytes, where a tag has more than
// kMaxXmlAttributes attributes or the document type has an internal subset, even an empty one (core/xmltagguard.h),
// where the encoding is one in which that can't be seen, and where all texts together are longer than
// kMaxXmlCharacters. Namespaces are not processed. Private to the two libraries.
constexpr qint64 kMaxXmlTokenBytes = qint64(1) << 28;
constexpr qint64 kMaxXmlCharacters = qint64(1) << 29; // half of what one QString holds

enum class XmlBound
{
    Depth,
    Token,
    Attributes,
    InternalSubset,
    Characters,
};

// What a user reads of a file that goes beyond.
QString xmlBoundText(XmlBound bound);

class BoundedXmlReader
{
public:
    explicit BoundedXmlReader(QIODevice *file);
    ~BoundedXmlReader();

    // False at the end of the document and at an error.
    bool readNext();
    const QXmlStreamReader &xml() const { return m_xml; } // at the current token
    int depth() const { return m_depth; } // open elements, with the one that starts or ends at the current token

    bool isNamed(const char *name) const { return m_xml.qualifiedName() == QLatin1String(name); }

private:
    Q_DISABLE_COPY(BoundedXmlReader)
    class Device;
    std::unique_ptr<Device> m_device;
    QXmlStreamReader m_xml;
    int m_depth = 0;
    qint64 m_characters = 0;
};

// QStringRef::toString() may share the parser's buffer and keep all of it.
inline QString compactCopy(const QStringRef &text)
{
    return QString(text.unicode(), text.size());
}
