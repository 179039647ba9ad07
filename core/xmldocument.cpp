#include "core/xmldocument.h"

#include "core/boundedxmlreader.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QXmlStreamReader>

#include <functional>
#include <set>
#include <vector>

namespace {

constexpr int kMaxEntityLength = 100;

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
    for (const QXmlStreamAttribute &attribute : reader.attributes())
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

} // namespace

QString nestingErrorText()
{
    return QCoreApplication::translate("AveldoranCore", "Elements are nested more than %1 deep").arg(kMaxXmlDepth);
}

bool isShortEntity(const QString &value)
{
    QString rest = value;
    for (const char *predefined : {"&amp;", "&lt;", "&gt;", "&quot;", "&apos;"})
        rest.remove(QLatin1String(predefined));
    return value.size() <= kMaxEntityLength && !rest.contains(QLatin1Char('&'));
}

QString entityErrorText()
{
    return QCoreApplication::translate("AveldoranCore", "Entities longer than %1 characters, or that name others, are "
                                                        "not read")
        .arg(kMaxEntityLength);
}

bool openRegularFile(QFile *file, QString *errorText)
{
    const QFileInfo info(file->fileName());
    if (info.exists() && !info.isFile() && !info.isDir()) { // opening a pipe would wait for its other end
        *errorText = QCoreApplication::translate("AveldoranCore", "Not a regular file");
        return false;
    }
    if (!file->open(QIODevice::ReadOnly)) {
        *errorText = file->errorString();
        return false;
    }
    return true;
}

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
        *error = {QCoreApplication::translate("AveldoranCore", "Invalid name of a processing instruction"),
                  xml.lineNumber(), xml.columnNumber()};
        return {};
    }
    return cursor.document;
}

QByteArray writeXmlDocument(const QDomDocument &document)
{
    constexpr int kIndent = 2;
    return QByteArrayLiteral("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n") + document.toByteArray(kIndent);
}

QString xmlText(const QString &text)
{
    QString result;
    result.reserve(text.size());
    for (int i = 0; i < text.size(); ++i) {
        const QChar c = text.at(i);
        if (c.isHighSurrogate() && i + 1 < text.size() && text.at(i + 1).isLowSurrogate()) {
            result += c;
            result += text.at(++i);
        } else if (!c.isSurrogate() && c.unicode() < 0xfffe &&
                   (c.unicode() >= 0x20 || c == QLatin1Char('\t') || c == QLatin1Char('\n') ||
                    c == QLatin1Char('\r'))) {
            result += c;
        }
    }
    return result;
}
