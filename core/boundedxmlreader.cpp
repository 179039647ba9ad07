#include "core/boundedxmlreader.h"

#include "core/coretext.h"
#include "core/xmldocument.h"
#include "core/xmltagguard.h"

namespace {

// Whether XmlTagGuard sees the markup that a parser sees: in some encodings "<" is another byte, or several.
bool isGuarded(const QString &encoding, bool isWideText)
{
    const QString name = encoding.toUpper();
    if (isWideText)
        return name.isEmpty() || name.startsWith(QLatin1String("UTF-16"));
    for (const char *prefix : {"UTF-8", "US-ASCII", "ASCII", "ISO-8859-", "WINDOWS-125", "CP125", "KOI8-"}) {
        if (name.startsWith(QLatin1String(prefix)))
            return true;
    }
    return name.isEmpty();
}

} // namespace

QString xmlBoundText(XmlBound bound)
{
    switch (bound) {
    case XmlBound::Depth:
        return CoreText::tr("Elements are nested more than %1 deep").arg(kMaxXmlDepth);
    case XmlBound::Token:
        return CoreText::tr("A tag, comment or text is longer than %1 bytes").arg(kMaxXmlTokenBytes);
    case XmlBound::Attributes:
        return CoreText::tr("A tag has more than %1 attributes").arg(kMaxXmlAttributes);
    case XmlBound::InternalSubset:
        return CoreText::tr("The internal subset of a document type is not read");
    case XmlBound::Characters:
        return CoreText::tr("The texts of the file are longer than %1 characters").arg(kMaxXmlCharacters);
    }
    return {};
}

// Hands on a file, and ends it where the current token has become too long or would cost too much.
class BoundedXmlReader::Device : public QIODevice
{
public:
    explicit Device(QIODevice *file)
        : m_file(file)
    {
        open(QIODevice::ReadOnly | QIODevice::Unbuffered);
    }
    void tokenEnds() { m_left = kMaxXmlTokenBytes; }
    bool isTokenTooLong() const { return m_left == 0; }
    XmlTagGuard::Finding finding() const { return m_finding; }
    bool isWideText() const { return m_tagGuard.isWideText(); }
    bool isSequential() const override { return true; }
    bool atEnd() const override { return isTokenTooLong() || m_finding != XmlTagGuard::Harmless || m_file->atEnd(); }

protected:
    qint64 readData(char *data, qint64 maxSize) override
    {
        if (m_finding != XmlTagGuard::Harmless)
            return -1;
        const qint64 count = m_file->read(data, qMin(maxSize, m_left));
        m_left -= qMax<qint64>(count, 0);
        m_finding = m_tagGuard.accept(data, count);
        return m_finding == XmlTagGuard::Harmless ? count : -1;
    }
    qint64 writeData(const char *, qint64) override { return -1; }

private:
    QIODevice *m_file;
    qint64 m_left = kMaxXmlTokenBytes;
    XmlTagGuard m_tagGuard;
    XmlTagGuard::Finding m_finding = XmlTagGuard::Harmless;
};

BoundedXmlReader::BoundedXmlReader(QIODevice *file)
    : m_device(std::make_unique<Device>(file))
    , m_xml(m_device.get())
{
    m_xml.setNamespaceProcessing(false);
}

BoundedXmlReader::~BoundedXmlReader() = default;

bool BoundedXmlReader::readNext()
{
    m_depth -= m_xml.isEndElement() ? 1 : 0;
    if (m_xml.atEnd())
        return false;
    m_xml.readNext();
    if (m_device->finding() == XmlTagGuard::TooManyAttributes)
        m_xml.raiseError(xmlBoundText(XmlBound::Attributes));
    else if (m_device->finding() == XmlTagGuard::InternalSubset)
        m_xml.raiseError(xmlBoundText(XmlBound::InternalSubset));
    else if (m_device->isTokenTooLong())
        m_xml.raiseError(xmlBoundText(XmlBound::Token));
    m_device->tokenEnds();

    if (m_xml.isStartDocument() && !isGuarded(m_xml.documentEncoding().toString(), m_device->isWideText()))
        m_xml.raiseError(CoreText::tr("The encoding '%1' is not read").arg(m_xml.documentEncoding()));
    m_depth += m_xml.isStartElement() ? 1 : 0;
    if (m_depth > kMaxXmlDepth)
        m_xml.raiseError(xmlBoundText(XmlBound::Depth));
    m_characters += m_xml.isCharacters() ? m_xml.text().size() : 0;
    if (m_characters > kMaxXmlCharacters)
        m_xml.raiseError(xmlBoundText(XmlBound::Characters));
    return !m_xml.hasError();
}
