#include "geo/kmlwriter.h"

#include <QtCore/QIODevice>
#include <QtXml/QDomDocument>

namespace {

class Writer
{
public:
    explicit Writer(QIODevice *device)
        : m_device(device)
    {
        m_buffer.reserve(kBufferBytes + kBufferBytes / 4);
    }

    void write(const char *text) { m_buffer.append(text); }
    void write(const QString &text) { m_buffer.append(text.toUtf8()); }

    void indent(int depth) { m_buffer.append(depth, ' '); }

    void writeEscaped(const QString &text, bool isAttribute)
    {
        const QChar *const data = text.constData();
        int from = 0; // what isn't written yet
        for (int i = 0; i < text.size(); ++i) {
            if (const char *escape = escapeOf(text, i, isAttribute)) {
                m_buffer.append(QString::fromRawData(data + from, i - from).toUtf8());
                m_buffer.append(escape);
                from = i + 1;
            }
        }
        m_buffer.append(QString::fromRawData(data + from, text.size() - from).toUtf8());
        if (m_buffer.size() > kBufferBytes)
            flush();
    }

    bool flush()
    {
        m_isWhole = m_isWhole && m_device->write(m_buffer) == m_buffer.size();
        m_buffer.resize(0); // keeps the reserved memory
        return m_isWhole;
    }

private:
    static constexpr int kBufferBytes = 1 << 18;

    static const char *escapeOf(const QString &text, int at, bool isAttribute)
    {
        switch (text.at(at).unicode()) {
        case '<':
            return "&lt;";
        case '&':
            return "&amp;";
        case '>': // only where it would end a CDATA section
            return at >= 2 && text.at(at - 1) == QLatin1Char(']') && text.at(at - 2) == QLatin1Char(']') ? "&gt;"
                                                                                                         : nullptr;
        case '\r':
            return "&#xd;";
        case '"':
            return isAttribute ? "&quot;" : nullptr;
        case '\n':
            return isAttribute ? "&#xa;" : nullptr;
        case '\t':
            return isAttribute ? "&#x9;" : nullptr;
        default:
            return nullptr;
        }
    }

    QIODevice *m_device;
    QByteArray m_buffer;
    bool m_isWhole = true;
};

void beginElement(Writer *out, const QDomElement &element, int depth)
{
    if (!element.previousSibling().isText())
        out->indent(depth);
    out->write("<");
    out->write(element.tagName());
    const QDomNamedNodeMap attributes = element.attributes();
    for (int i = 0; i < attributes.size(); ++i) {
        const QDomNode attribute = attributes.item(i);
        out->write(" ");
        out->write(attribute.nodeName());
        out->write("=\"");
        out->writeEscaped(attribute.nodeValue(), true);
        out->write("\"");
    }
    const QDomNode first = element.firstChild();
    if (first.isNull())
        out->write("/>");
    else
        out->write(first.isText() ? ">" : ">\n");
}

void endElement(Writer *out, const QDomElement &element, int depth)
{
    if (!element.lastChild().isText())
        out->indent(depth);
    out->write("</");
    out->write(element.tagName());
    out->write(">");
}

void endLine(Writer *out, const QDomNode &node)
{
    if (!node.nextSibling().isText())
        out->write("\n");
}

// A node without its children.
void writeNode(Writer *out, const QDomNode &node, int depth)
{
    switch (node.nodeType()) {
    case QDomNode::ElementNode:
        beginElement(out, node.toElement(), depth);
        if (!node.hasChildNodes())
            endLine(out, node);
        break;
    case QDomNode::TextNode:
        out->writeEscaped(node.nodeValue(), !node.parentNode().isElement());
        break;
    case QDomNode::CDATASectionNode:
        out->write("<![CDATA[");
        out->write(node.nodeValue());
        out->write("]]>");
        break;
    case QDomNode::CommentNode:
        if (!node.previousSibling().isText())
            out->indent(depth);
        out->write("<!--");
        out->write(node.nodeValue());
        out->write(node.nodeValue().endsWith(QLatin1Char('-')) ? " -->" : "-->");
        endLine(out, node);
        break;
    case QDomNode::ProcessingInstructionNode:
        out->write("<?");
        out->write(node.nodeName());
        out->write(" ");
        out->write(node.nodeValue());
        out->write("?>\n");
        break;
    default:
        break;
    }
}

} // namespace

bool writeKml(const QDomDocument &document, QIODevice *device)
{
    Writer out(device);
    QDomNode node = document.firstChild();
    int depth = 0;
    while (!node.isNull()) {
        writeNode(&out, node, depth);
        const QDomNode child = node.firstChild();
        if (!child.isNull()) {
            node = child;
            ++depth;
            continue;
        }
        while (depth > 0 && node.nextSibling().isNull()) {
            node = node.parentNode();
            --depth;
            endElement(&out, node.toElement(), depth);
            endLine(&out, node);
        }
        node = node.nextSibling();
    }
    return out.flush();
}
