#include "channel/achannelinfo.h"

#include "channel/channeldefinition.h"

#include <QtXml/QDomDocument>

#include <vector>

// A tree written as a channel section. What differs from reading is part of the format: docs/formats.md lists it.

namespace {

void appendElement(QDomDocument *document, QDomElement *parent, const QString &tag, const QString &text)
{
    QDomElement element = document->createElement(tag);
    element.appendChild(document->createTextNode(text));
    parent->appendChild(element);
}

// Empty for a type that is not written. "autochannel" is written, although it is read as a plain range: a reader of the
// file can tell generated channels.
QString attributeForType(int type)
{
    switch (type) {
    case AChannelInfo::Direction:
        return QStringLiteral("direction");
    case AChannelInfo::Provider:
        return QStringLiteral("provider");
    case AChannelInfo::Channel:
    case AChannelInfo::Channel | AChannelInfo::AutoChannel:
    case AChannelInfo::Channel | AChannelInfo::AutoChannel | AChannelInfo::Provider:
        return QStringLiteral("channel");
    case AChannelInfo::AutoChannel:
        return QStringLiteral("autochannel");
    default:
        return {};
    }
}

// A node while its children are written.
struct OpenElement
{
    const AChannelInfo *node;
    QDomElement element;
    int nextChild;
};

} // namespace

QDomElement AChannelInfo::toDomNode(QDomDocument *document) const
{
    if (!document) {
        qWarning("toDomNode: the document is null");
        return {};
    }
    std::vector<OpenElement> open{{this, fieldsToDomNode(document), 0}};
    for (;;) {
        OpenElement &innermost = open.back();
        if (innermost.nextChild < innermost.node->m_children.size()) {
            const AChannelInfo *child = innermost.node->m_children.at(innermost.nextChild++);
            const QDomElement element = child->fieldsToDomNode(document);
            innermost.element.appendChild(element);
            open.push_back({child, element, 0});
            continue;
        }
        innermost.node->appendDefinitions(document, &innermost.element);
        if (open.size() == 1)
            return innermost.element;
        open.pop_back();
    }
}

// All but the nested ranges and the definitions.
QDomElement AChannelInfo::fieldsToDomNode(QDomDocument *document) const
{
    QDomElement element = document->createElement(QStringLiteral("Range"));
    if (m_selectable)
        element.setAttribute(QStringLiteral("selectable"), 1);
    if (!m_label.isEmpty())
        element.setAttribute(QStringLiteral("label"), m_label);
    const QString type = attributeForType(m_type);
    if (!type.isEmpty())
        element.setAttribute(QStringLiteral("type"), type);

    const AFrequency zero;
    if (m_beginFrequency > zero)
        appendElement(document, &element, QStringLiteral("begin"), m_beginFrequency.canonicalText());
    if (m_endFrequency > zero)
        appendElement(document, &element, QStringLiteral("end"), m_endFrequency.canonicalText());
    if (color().isValid())
        appendElement(document, &element, QStringLiteral("color"), m_color.toString());
    if (!m_comment.isEmpty())
        appendElement(document, &element, QStringLiteral("comment"), m_comment);
    if (!m_mirrorEntryFrequency.isNull()) {
        const AFrequency distance = m_mirrorEntryFrequency - m_beginFrequency;
        appendElement(document, &element, QStringLiteral("mirror"), distance.canonicalText());
    }
    return element;
}

// What a reader supplies by itself is left out.
void AChannelInfo::appendDefinitions(QDomDocument *document, QDomElement *element) const
{
    const QString one = QStringLiteral("1");
    const QString zero = AFrequency().canonicalText();
    for (const Definition &definition : m_channelDefinitions) {
        QDomElement channels = document->createElement(QStringLiteral("channels"));
        const auto write = [&](const QString &key, const QString &absent) {
            const QString text = definition.value(key).toString();
            if (text != absent)
                channels.setAttribute(key, text);
        };
        const auto writeAlways = [&](const QString &key) {
            channels.setAttribute(key, definition.value(key).toString());
        };
        write(definitionkey::start(), m_beginFrequency.canonicalText());
        write(definitionkey::first(), one);
        writeAlways(definitionkey::width());
        writeAlways(definitionkey::count());
        write(definitionkey::step(), one);
        write(definitionkey::space(), zero);
        const QColor ownColor = colorFromVariant(definition.value(definitionkey::color()));
        // The colour is on the left: a comparison of two QVariants converts the right one, here a text to its colour.
        if (ownColor.isValid() && QVariant(ownColor) != m_color)
            channels.setAttribute(definitionkey::color(), ownColor.name());
        element->appendChild(channels);
    }
}
