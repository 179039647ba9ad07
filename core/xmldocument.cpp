#include "core/xmldocument.h"

#include "core/boundedxmlreader.h"
#include "core/coretext.h"

#include <QtCore/QXmlStreamReader>
#include <QtCore/QXmlStreamWriter>

#include <functional>
#include <map>
#include <set>
#include <vector>

namespace {

// Where the reader stands in the tree that it builds.
struct Cursor
{
    QDomDocument document;
    QDomNode node;             // the innermost open element, or the document
    std::vector<char> hasText; // of each open element: whether text that is no white space stands in it
    bool isWritable = true;    // nothing was read that no parser would read back
    QString pendingBlank;      // white space that is dropped if an element follows: it only indents

    Cursor()
    {
        document.createDocumentFragment(); // a null document takes no nodes before it has made one
        node = document;
    }
    void append(const QDomNode &child) { node.appendChild(child); }

    // One shared text for each name: a large document repeats few of them.
    const QString &shared(const QStringRef &name)
    {
        const auto known = names.find(name);
        return known != names.end() ? *known : *names.insert(compactCopy(name)).first;
    }

    std::set<QString, std::less<>> names;
};

void startElement(Cursor *cursor, const QXmlStreamReader &reader)
{
    QDomElement element = cursor->document.createElement(cursor->shared(reader.qualifiedName()));
    const QXmlStreamAttributes attributes = reader.attributes();
    for (const QXmlStreamAttribute &attribute : attributes)
        element.setAttribute(cursor->shared(attribute.qualifiedName()), compactCopy(attribute.value()));
    cursor->pendingBlank.clear();
    cursor->append(element);
    cursor->node = element;
    cursor->hasText.push_back(0);
}

void endElement(Cursor *cursor)
{
    if (!cursor->pendingBlank.isEmpty() && !cursor->node.hasChildNodes())
        cursor->append(cursor->document.createTextNode(cursor->pendingBlank));
    cursor->pendingBlank.clear();
    cursor->node = cursor->node.parentNode();
    cursor->hasText.pop_back();
}

void characters(Cursor *cursor, const QXmlStreamReader &reader)
{
    const QString text = compactCopy(reader.text());
    if (cursor->hasText.empty())
        return; // white space around the root element
    if (!reader.isWhitespace())
        cursor->hasText.back() = 1;
    if (reader.isCDATA())
        cursor->append(cursor->document.createCDATASection(text));
    else if (cursor->hasText.back())
        cursor->append(cursor->document.createTextNode(text));
    else
        cursor->pendingBlank = text;
}

// With the namespaces that a document built by an application names without declaring them.
void writeAttributes(QXmlStreamWriter *xml, const QDomElement &element)
{
    std::map<QString, QString> byName; // QtXml keeps them in an order that differs from run to run
    const auto declareNamespace = [&byName](const QDomNode &node) {
        const QString prefix = node.prefix().isEmpty() ? QString() : QLatin1Char(':') + node.prefix();
        if (!node.namespaceURI().isEmpty())
            byName[QLatin1String("xmlns") + prefix] = node.namespaceURI();
    };
    declareNamespace(element);
    const QDomNamedNodeMap attributes = element.attributes();
    for (int i = 0; i < attributes.size(); ++i) {
        const QDomNode attribute = attributes.item(i);
        declareNamespace(attribute);
        byName[attribute.nodeName()] = attribute.nodeValue();
    }
    for (const auto &[name, value] : byName)
        xml->writeAttribute(name, value);
}

// A reader takes a bare carriage return for a line feed.
void writeText(QXmlStreamWriter *xml, const QString &text)
{
    const QStringList lines = text.split(QLatin1Char('\r'));
    for (int i = 0; i < lines.size(); ++i) {
        if (i > 0)
            xml->writeEntityReference(QStringLiteral("#xd"));
        xml->writeCharacters(lines.at(i));
    }
}

// Writes a node's beginning, which for all but an element with children is the whole node.
void writeNode(QXmlStreamWriter *xml, const QDomNode &node)
{
    switch (node.nodeType()) {
    case QDomNode::ElementNode:
        if (node.hasChildNodes())
            xml->writeStartElement(node.nodeName());
        else
            xml->writeEmptyElement(node.nodeName());
        writeAttributes(xml, node.toElement());
        break;
    case QDomNode::TextNode:
        writeText(xml, node.nodeValue());
        break;
    case QDomNode::CDATASectionNode:
        xml->writeCDATA(node.nodeValue());
        break;
    case QDomNode::CommentNode:
        xml->writeComment(node.nodeValue());
        break;
    case QDomNode::ProcessingInstructionNode:
        xml->writeProcessingInstruction(node.nodeName(), node.nodeValue());
        break;
    default:
        break;
    }
}

// White space may be added to an element if nothing but elements and comments stands in it.
bool holdsText(const QDomNode &element)
{
    for (QDomNode child = element.firstChild(); !child.isNull(); child = child.nextSibling()) {
        if (child.nodeType() == QDomNode::TextNode || child.nodeType() == QDomNode::CDATASectionNode)
            return true;
    }
    return false;
}

void breakLine(QXmlStreamWriter *xml, std::size_t depth)
{
    constexpr int kIndent = 2;
    xml->writeCharacters(QLatin1Char('\n') + QString(kIndent * static_cast<int>(depth), QLatin1Char(' ')));
}

// Without recursion: an application may hand over a tree of any depth.
void writeTree(QXmlStreamWriter *xml, const QDomNode &top)
{
    std::vector<char> indented; // of each open element: whether each of its children gets a line
    QDomNode node = top;
    writeNode(xml, node);
    while (true) {
        if (node.isElement() && node.hasChildNodes()) {
            indented.push_back(!holdsText(node) && (indented.empty() || indented.back()));
            node = node.firstChild();
        } else {
            while (node != top && node.nextSibling().isNull()) {
                node = node.parentNode();
                if (indented.back())
                    breakLine(xml, indented.size() - 1);
                indented.pop_back();
                xml->writeEndElement();
            }
            if (node == top)
                return;
            node = node.nextSibling();
        }
        if (indented.back())
            breakLine(xml, indented.size());
        writeNode(xml, node);
    }
}

// Of the character at an index, in UTF-16 units; 0 if XML 1.0 can't hold it.
int xmlCharacterLength(const QString &text, int at)
{
    const QChar c = text.at(at);
    if (c.isHighSurrogate() && at + 1 < text.size() && text.at(at + 1).isLowSurrogate())
        return 2;
    const bool isBlank = c == QLatin1Char('\t') || c == QLatin1Char('\n') || c == QLatin1Char('\r');
    return !c.isSurrogate() && c.unicode() < 0xfffe && (c.unicode() >= 0x20 || isBlank) ? 1 : 0;
}

} // namespace

QDomDocument readXmlDocument(QIODevice *device, XmlError *error)
{
    Cursor cursor;
    BoundedXmlReader reader(device);
    const QXmlStreamReader &xml = reader.xml();
    while (reader.readNext()) {
        switch (xml.tokenType()) {
        case QXmlStreamReader::StartElement:
            startElement(&cursor, xml);
            break;
        case QXmlStreamReader::EndElement:
            endElement(&cursor);
            break;
        case QXmlStreamReader::Characters:
            characters(&cursor, xml);
            break;
        case QXmlStreamReader::Comment:
            cursor.append(cursor.document.createComment(compactCopy(xml.text())));
            break;
        case QXmlStreamReader::ProcessingInstruction:
            if (xml.processingInstructionTarget().contains(QChar(0))) // the parser lets it pass, and no other does
                cursor.isWritable = false;
            cursor.append(cursor.document.createProcessingInstruction(compactCopy(xml.processingInstructionTarget()),
                                                                      compactCopy(xml.processingInstructionData())));
            break;
        default:
            break;
        }
    }
    if (xml.hasError()) {
        *error = {xml.errorString(), xml.lineNumber(), xml.columnNumber()};
        return {};
    }
    if (!cursor.isWritable) {
        *error = {CoreText::tr("Invalid name of a processing instruction"), xml.lineNumber(), xml.columnNumber()};
        return {};
    }
    return cursor.document;
}

QByteArray writeXmlDocument(const QDomDocument &document)
{
    QByteArray content;
    QXmlStreamWriter xml(&content);
    xml.writeStartDocument();
    for (QDomNode node = document.firstChild(); !node.isNull(); node = node.nextSibling()) {
        breakLine(&xml, 0);
        writeTree(&xml, node);
    }
    breakLine(&xml, 0);
    return content;
}

bool isXmlText(const QString &text)
{
    int at = 0;
    int length = 1;
    for (; at < text.size() && length > 0; at += length)
        length = xmlCharacterLength(text, at);
    return length > 0;
}

QString withoutNonXmlCharacters(const QString &text)
{
    QString result;
    int from = 0; // what isn't copied yet
    int at = 0;
    while (at < text.size()) {
        const int length = xmlCharacterLength(text, at);
        if (length == 0) {
            result += text.midRef(from, at - from);
            from = at + 1;
        }
        at += qMax(length, 1);
    }
    if (from == 0)
        return text;
    result += text.midRef(from);
    return result;
}
