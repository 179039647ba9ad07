#include "limit/boundeddom.h"

#include "core/xmldocument.h"

#include <QtCore/QCoreApplication>
#include <QtXml/QDomDocument>
#include <QtXml/QXmlDeclHandler>
#include <QtXml/QXmlSimpleReader>

// The classes behind QDomDocument::setContent are deprecated in favour of QXmlStreamReader, but the parser that it runs
// can be bounded through them alone.
QT_WARNING_PUSH
QT_WARNING_DISABLE_DEPRECATED

namespace {

constexpr int kMaxEntityLength = 100;

QString nestingErrorText()
{
    return QCoreApplication::translate("ALimitModel", "Elements are nested more than %1 deep").arg(kMaxXmlDepth);
}

QString entityErrorText()
{
    return QCoreApplication::translate("ALimitModel",
                                       "Entities longer than %1 characters, or that name others, are not read")
        .arg(kMaxEntityLength);
}

// The parser bounds what one reference to an entity expands to, but not their sum: a small file could name a long
// entity often enough to fill the memory.
bool isShortEntity(const QString &value)
{
    QString rest = value;
    for (const char *predefined : {"&amp;", "&lt;", "&gt;", "&quot;", "&apos;"})
        rest.remove(QLatin1String(predefined));
    return value.size() <= kMaxEntityLength && !rest.contains(QLatin1Char('&'));
}

// Hands all events on to the document, but those that go too deep.
class BoundedContent : public QXmlContentHandler
{
public:
    void setTarget(QXmlContentHandler *target) { m_target = target; }

    void setDocumentLocator(QXmlLocator *locator) override { m_target->setDocumentLocator(locator); }
    bool startDocument() override { return m_target->startDocument(); }
    bool endDocument() override { return m_target->endDocument(); }
    bool startPrefixMapping(const QString &prefix, const QString &uri) override
    {
        return m_target->startPrefixMapping(prefix, uri);
    }
    bool endPrefixMapping(const QString &prefix) override { return m_target->endPrefixMapping(prefix); }
    bool startElement(const QString &uri, const QString &localName, const QString &name,
                      const QXmlAttributes &attributes) override
    {
        ++m_depth;
        return m_depth <= kMaxXmlDepth && m_target->startElement(uri, localName, name, attributes);
    }
    bool endElement(const QString &uri, const QString &localName, const QString &name) override
    {
        --m_depth;
        return m_target->endElement(uri, localName, name);
    }
    bool characters(const QString &text) override { return m_target->characters(text); }
    bool ignorableWhitespace(const QString &text) override { return m_target->ignorableWhitespace(text); }
    bool processingInstruction(const QString &target, const QString &data) override
    {
        return m_target->processingInstruction(target, data);
    }
    bool skippedEntity(const QString &name) override { return m_target->skippedEntity(name); }
    QString errorString() const override
    {
        return m_depth > kMaxXmlDepth ? nestingErrorText() : m_target->errorString();
    }

private:
    QXmlContentHandler *m_target = nullptr;
    int m_depth = 0;
};

class BoundedDeclarations : public QXmlDeclHandler
{
public:
    void setTarget(QXmlDeclHandler *target) { m_target = target; }

    bool attributeDecl(const QString &element, const QString &attribute, const QString &type,
                       const QString &valueDefault, const QString &value) override
    {
        return m_target->attributeDecl(element, attribute, type, valueDefault, value);
    }
    bool internalEntityDecl(const QString &name, const QString &value) override
    {
        m_isTooLong = !isShortEntity(value);
        return !m_isTooLong && m_target->internalEntityDecl(name, value);
    }
    bool externalEntityDecl(const QString &name, const QString &publicId, const QString &systemId) override
    {
        return m_target->externalEntityDecl(name, publicId, systemId);
    }
    QString errorString() const override { return m_isTooLong ? entityErrorText() : m_target->errorString(); }

private:
    QXmlDeclHandler *m_target = nullptr;
    bool m_isTooLong = false;
};

// Puts itself between the parser and the handlers that the document installs.
class BoundedReader : public QXmlSimpleReader
{
public:
    void setContentHandler(QXmlContentHandler *handler) override
    {
        m_content.setTarget(handler);
        QXmlSimpleReader::setContentHandler(&m_content);
    }
    void setDeclHandler(QXmlDeclHandler *handler) override
    {
        m_declarations.setTarget(handler);
        QXmlSimpleReader::setDeclHandler(&m_declarations);
    }

private:
    BoundedContent m_content;
    BoundedDeclarations m_declarations;
};

} // namespace

bool setBoundedContent(QDomDocument *document, QIODevice *file, DomError *error)
{
    BoundedReader reader; // with the features that setContent sets
    reader.setFeature(QStringLiteral("http://xml.org/sax/features/namespaces"), false);
    reader.setFeature(QStringLiteral("http://xml.org/sax/features/namespace-prefixes"), true);
    reader.setFeature(QStringLiteral("http://qt-project.org/xml/features/report-whitespace-only-CharData"), false);
    QXmlInputSource source(file);
    return document->setContent(&source, &reader, &error->text, &error->line, &error->column);
}

QT_WARNING_POP
