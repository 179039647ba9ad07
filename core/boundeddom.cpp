#include "core/boundeddom.h"

#include "core/boundedxmlreader.h"

#include <QtCore/QIODevice>
#include <QtXml/QDomDocument>
#include <QtXml/QXmlDefaultHandler>
#include <QtXml/QXmlSimpleReader>

// Qt 5 deprecates the parser behind QDomDocument::setContent(), but that can be bounded through its classes alone.
QT_WARNING_PUSH
QT_WARNING_DISABLE_DEPRECATED

namespace {

// Hands on a device, and ends where a token has become too long.
class TokenDevice : public QIODevice
{
public:
    explicit TokenDevice(QIODevice *device)
        : m_device(device)
    {
        if (m_device && !m_device->isOpen())
            m_device->open(QIODevice::ReadOnly);
        open(QIODevice::ReadOnly | QIODevice::Unbuffered);
    }
    void tokenEnds() { m_left = kMaxXmlTokenBytes; }
    bool isTokenTooLong() const { return m_left == 0; }
    bool isSequential() const override { return true; }

protected:
    qint64 readData(char *data, qint64 maxSize) override
    {
        if (!m_device || !m_device->isReadable())
            return -1;
        const qint64 count = m_device->read(data, qMin(maxSize, m_left));
        m_left -= qMax<qint64>(count, 0);
        return count;
    }
    qint64 writeData(const char *, qint64) override { return -1; }

private:
    QIODevice *m_device;
    qint64 m_left = kMaxXmlTokenBytes;
};

// Knows the character that the parser stands on.
class CharacterSource : public QXmlInputSource
{
public:
    using QXmlInputSource::QXmlInputSource;
    QChar next() override { return m_last = QXmlInputSource::next(); }
    QChar last() const { return m_last; }

private:
    QChar m_last;
};

// Stands between the parser and the handlers that the document installs, and tells the parser to stop.
class BoundedHandler : public QXmlDefaultHandler
{
public:
    BoundedHandler(TokenDevice *device, const CharacterSource *source)
        : m_device(device)
        , m_source(source)
    {}
    void setContent(QXmlContentHandler *content) { m_content = content; }
    void setLexical(QXmlLexicalHandler *lexical) { m_lexical = lexical; }

    void setDocumentLocator(QXmlLocator *locator) override { m_content->setDocumentLocator(locator); }
    bool startDocument() override { return m_content->startDocument(); }
    bool endDocument() override { return m_content->endDocument(); }
    bool startPrefixMapping(const QString &prefix, const QString &uri) override
    {
        return m_content->startPrefixMapping(prefix, uri);
    }
    bool endPrefixMapping(const QString &prefix) override { return m_content->endPrefixMapping(prefix); }
    bool startElement(const QString &uri, const QString &localName, const QString &name,
                      const QXmlAttributes &attributes) override
    {
        m_device->tokenEnds();
        if (++m_depth > kMaxXmlDepth)
            return refuse(XmlBound::Depth);
        return m_content->startElement(uri, localName, name, attributes);
    }
    bool endElement(const QString &uri, const QString &localName, const QString &name) override
    {
        m_device->tokenEnds();
        --m_depth;
        return m_content->endElement(uri, localName, name);
    }
    bool characters(const QString &text) override
    {
        m_device->tokenEnds();
        m_characters += text.size();
        if (m_characters > kMaxXmlCharacters)
            return refuse(XmlBound::Characters);
        return m_content->characters(text);
    }
    bool ignorableWhitespace(const QString &text) override { return m_content->ignorableWhitespace(text); }
    bool processingInstruction(const QString &target, const QString &data) override
    {
        m_device->tokenEnds();
        return m_content->processingInstruction(target, data);
    }
    bool skippedEntity(const QString &name) override { return m_content->skippedEntity(name); }

    bool startDTD(const QString &name, const QString &publicId, const QString &systemId) override
    {
        // The parser stands on the end of the document type, or on its internal subset, in which it would read content
        // models with recursion of any depth.
        if (m_source->last() != QLatin1Char('>'))
            return refuse(XmlBound::InternalSubset);
        return m_lexical->startDTD(name, publicId, systemId);
    }
    bool endDTD() override { return m_lexical->endDTD(); }
    bool startEntity(const QString &name) override { return m_lexical->startEntity(name); }
    bool endEntity(const QString &name) override { return m_lexical->endEntity(name); }
    bool startCDATA() override { return m_lexical->startCDATA(); }
    bool endCDATA() override { return m_lexical->endCDATA(); }
    bool comment(const QString &text) override
    {
        m_device->tokenEnds();
        return m_lexical->comment(text);
    }

    QString errorString() const override { return m_refusal.isEmpty() ? m_content->errorString() : m_refusal; }

private:
    bool refuse(XmlBound bound)
    {
        m_refusal = xmlBoundText(bound);
        return false;
    }

    TokenDevice *m_device;
    const CharacterSource *m_source;
    QXmlContentHandler *m_content = nullptr;
    QXmlLexicalHandler *m_lexical = nullptr;
    QString m_refusal;
    int m_depth = 0;
    qint64 m_characters = 0;
};

class BoundedReader : public QXmlSimpleReader
{
public:
    explicit BoundedReader(BoundedHandler *handler)
        : m_handler(handler)
    {}
    void setContentHandler(QXmlContentHandler *handler) override
    {
        m_handler->setContent(handler);
        QXmlSimpleReader::setContentHandler(m_handler);
    }
    void setLexicalHandler(QXmlLexicalHandler *handler) override
    {
        m_handler->setLexical(handler);
        QXmlSimpleReader::setLexicalHandler(m_handler);
    }

private:
    BoundedHandler *m_handler;
};

} // namespace

bool setBoundedContent(QDomDocument *document, QIODevice *device, XmlError *error)
{
    TokenDevice tokens(device);
    CharacterSource source(&tokens);
    BoundedHandler handler(&tokens, &source);
    BoundedReader reader(&handler); // with the features that setContent() sets
    reader.setFeature(QStringLiteral("http://xml.org/sax/features/namespaces"), false);
    reader.setFeature(QStringLiteral("http://xml.org/sax/features/namespace-prefixes"), true);
    reader.setFeature(QStringLiteral("http://qt-project.org/xml/features/report-whitespace-only-CharData"), false);
    int line = 0;
    int column = 0;
    const bool ok = document->setContent(&source, &reader, &error->text, &line, &column);
    error->line = line;
    error->column = column;
    if (!ok && tokens.isTokenTooLong())
        error->text = xmlBoundText(XmlBound::Token);
    return ok;
}

QT_WARNING_POP
