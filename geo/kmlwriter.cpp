#include "geo/kmlwriter.h"

#include <QtCore/QIODevice>
#include <QtXml/QDomDocument>

namespace {

// Gathers UTF-8 for a device.
class Output
{
public:
    explicit Output(QIODevice *device)
        : m_device(device)
    {
        m_buffer.reserve(2 * kBufferBytes);
    }

    void write(const char *text) { m_buffer.append(text); }
    void writeSpaces(int count) { m_buffer.append(count, ' '); }
    void writePlain(const QString &name) { writeRun(name.constData(), name.size()); }
    void writeEscaped(const QString &text, bool isAttribute)
    {
        const QChar *const data = text.constData();
        int from = 0; // what isn't written yet
        for (int i = 0; i < text.size(); ++i) {
            if (const char *escape = escapeOf(data, i, isAttribute)) {
                writeRun(data + from, i - from);
                m_buffer.append(escape);
                from = i + 1;
            }
        }
        writeRun(data + from, text.size() - from);
        if (m_buffer.size() > kBufferBytes)
            flush();
    }

    bool flush()
    {
        // A device may take less than it was given without an error; why, it says when it is given the rest.
        for (qint64 written = 0; m_isWhole && written < m_buffer.size();) {
            const qint64 size = m_device->write(m_buffer.constData() + written, m_buffer.size() - written);
            m_isWhole = size > 0;
            written += size;
        }
        m_buffer.resize(0); // keeps the memory
        return m_isWhole;
    }

private:
    static constexpr int kBufferBytes = 1 << 18;
    static constexpr ushort kFirstNonAscii = 0x80;

    void writeRun(const QChar *text, int size)
    {
        const int begin = m_buffer.size();
        m_buffer.resize(begin + size);
        char *const out = m_buffer.data() + begin;
        int i = 0;
        for (; i < size && text[i].unicode() < kFirstNonAscii; ++i)
            out[i] = static_cast<char>(text[i].unicode());
        if (i < size) {
            m_buffer.truncate(begin + i);
            m_buffer.append(QString::fromRawData(text + i, size - i).toUtf8());
        }
    }

    static const char *escapeOf(const QChar *text, int at, bool isAttribute)
    {
        const ushort c = text[at].unicode();
        if (c > '>')
            return nullptr;
        switch (c) {
        case '<':
            return "&lt;";
        case '&':
            return "&amp;";
        case '>': // only where it would end a CDATA section
            return at >= 2 && text[at - 1] == QLatin1Char(']') && text[at - 2] == QLatin1Char(']') ? "&gt;" : nullptr;
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

// Walks a document and writes it with the white space of QDomDocument::save(): every node but a text begins a line,
// unless a text is beside it. The writer of core's files, writeXmlDocument(), gives other bytes, all in memory.
class DocumentWriter
{
public:
    explicit DocumentWriter(QIODevice *device)
        : m_out(device)
    {}

    bool write(const QDomDocument &document)
    {
        QDomNode node = document.firstChild();
        int depth = 0;
        while (!node.isNull()) {
            const QDomNode child = begin(node, depth);
            if (!child.isNull()) {
                node = child;
                ++depth;
                continue;
            }
            QDomNode next = node.nextSibling();
            end(node, next);
            while (next.isNull() && depth > 0) {
                node = node.parentNode();
                --depth;
                next = node.nextSibling();
                endElement(node, next, depth);
            }
            node = next;
        }
        return m_out.flush();
    }

private:
    // Writes a node, of an element that has more than a text the beginning. Returns the first child that is left to
    // write, or null.
    QDomNode begin(const QDomNode &node, int depth)
    {
        const bool isText = node.isText();
        if (!isText && !m_isAfterText && !node.isProcessingInstruction())
            m_out.writeSpaces(depth);
        m_isAfterText = isText;
        switch (node.nodeType()) {
        case QDomNode::ElementNode:
            return beginElement(node);
        case QDomNode::TextNode:
            m_out.writeEscaped(node.nodeValue(), false);
            break;
        case QDomNode::CDATASectionNode:
            m_out.write("<![CDATA[");
            m_out.writePlain(node.nodeValue());
            m_out.write("]]>");
            break;
        case QDomNode::CommentNode:
            m_out.write("<!--");
            m_out.writePlain(node.nodeValue());
            m_out.write(node.nodeValue().endsWith(QLatin1Char('-')) ? " -->" : "-->");
            break;
        case QDomNode::ProcessingInstructionNode:
            m_out.write("<?");
            m_out.writePlain(node.nodeName());
            m_out.write(" ");
            m_out.writePlain(node.nodeValue());
            m_out.write("?>\n");
            break;
        default:
            break;
        }
        return {};
    }

    QDomNode beginElement(const QDomNode &element)
    {
        const QString name = element.nodeName();
        m_out.write("<");
        m_out.writePlain(name);
        const QDomNamedNodeMap attributes = element.attributes();
        for (int i = 0; i < attributes.size(); ++i) {
            const QDomNode attribute = attributes.item(i);
            m_out.write(" ");
            m_out.writePlain(attribute.nodeName());
            m_out.write("=\"");
            m_out.writeEscaped(attribute.nodeValue(), true);
            m_out.write("\"");
        }
        const QDomNode first = element.firstChild();
        if (first.isNull()) {
            m_out.write("/>");
            return first;
        }
        if (first.nodeType() != QDomNode::TextNode || !first.nextSibling().isNull()) {
            m_out.write(first.isText() ? ">" : ">\n");
            return first;
        }
        // Nearly all elements are like this.
        m_out.write(">");
        m_out.writeEscaped(first.nodeValue(), false);
        m_out.write("</");
        m_out.writePlain(name);
        m_out.write(">");
        return {};
    }

    void end(const QDomNode &node, const QDomNode &next)
    {
        if (!node.isText() && !node.isProcessingInstruction() && !next.isText())
            m_out.write("\n");
    }

    void endElement(const QDomNode &element, const QDomNode &next, int depth)
    {
        if (!m_isAfterText)
            m_out.writeSpaces(depth);
        m_isAfterText = false;
        m_out.write("</");
        m_out.writePlain(element.nodeName());
        m_out.write(">");
        end(element, next);
    }

    Output m_out;
    bool m_isAfterText = false; // the node before, in the same element
};

} // namespace

bool writeKml(const QDomDocument &document, QIODevice *device)
{
    return DocumentWriter(device).write(document);
}
