#include "channel/achannelinfo.h"

#include "channel/channeldefinition.h"
#include "core/aprofile.h"
#include "core/asettings.h"

#include <QtCore/QDebug>
#include <QtXml/QDomDocument>

#include <vector>

// The channel section of a profile, read into nodes.

namespace {

// Mirrored ranges inside mirrored ranges multiply. A section that asks for more copies than this in all (see copyCost)
// gets no further ones.
constexpr qint64 kMaxMirrorCost = 1000000;

QString lowerTag(const QDomElement &element)
{
    return element.tagName().toLower();
}

AFrequency frequencyFromLatin1(const QString &text)
{
    return AFrequency(text.toLatin1().constData());
}

AChannelInfo::RangeType typeFromAttribute(const QString &text)
{
    const QString type = text.toLower();
    if (type == QLatin1String("direction"))
        return AChannelInfo::Direction;
    if (type == QLatin1String("channel"))
        return AChannelInfo::Channel;
    if (type == QLatin1String("provider"))
        return AChannelInfo::Provider;
    return AChannelInfo::Generic;
}

void setText(QDomElement element, const QString &text)
{
    while (element.hasChildNodes())
        element.removeChild(element.firstChild());
    element.appendChild(element.ownerDocument().createTextNode(text));
}

// Does nothing if there is no such child.
void setTextOfFirstChild(const QDomElement &parent, QLatin1String tag, const QString &text)
{
    for (QDomElement child = parent.firstChildElement(); !child.isNull(); child = child.nextSiblingElement()) {
        if (lowerTag(child) == tag) {
            setText(child, text);
            return;
        }
    }
}

void prependElement(QDomElement parent, const QString &tag, const QString &text)
{
    const QDomElement element = parent.ownerDocument().createElement(tag);
    setText(element, text);
    parent.insertBefore(element, parent.firstChildElement());
}

// All elements below `top`, in document order.
std::vector<QDomElement> elementsBelow(const QDomElement &top)
{
    std::vector<QDomElement> elements;
    QDomElement element = top.firstChildElement();
    while (!element.isNull()) {
        elements.push_back(element);
        QDomElement next = element.firstChildElement();
        while (next.isNull() && element != top) {
            next = element.nextSiblingElement();
            if (next.isNull())
                element = element.parentNode().toElement();
        }
        element = next;
    }
    return elements;
}

qint64 textCost(const QString &text)
{
    constexpr int kCharactersPerUnit = 16;
    return text.size() / kCharactersPerUnit;
}

// What a copy of a node alone costs: one for itself and for each of its attributes, and its texts by their length. A
// definition costs more, since it is read into a map of texts.
qint64 copyCost(const QDomNode &node)
{
    constexpr qint64 kDefinitionUnits = 8;
    qint64 cost = 1 + textCost(node.nodeValue());
    const QDomNamedNodeMap attributes = node.attributes();
    for (int i = 0; i < attributes.size(); ++i)
        cost += 1 + textCost(attributes.item(i).nodeValue());
    if (node.isElement() && lowerTag(node.toElement()) == QLatin1String("channels"))
        cost += kDefinitionUnits;
    return cost;
}

// Of the whole subtree, or of a part of it that costs more than `limit`.
qint64 copyCost(const QDomNode &top, qint64 limit)
{
    qint64 cost = copyCost(top);
    QDomNode node = top.firstChild();
    while (!node.isNull() && cost <= limit) {
        cost += copyCost(node);
        QDomNode next = node.firstChild();
        while (next.isNull() && node != top) {
            next = node.nextSibling();
            if (next.isNull())
                node = node.parentNode();
        }
        node = next;
    }
    return cost;
}

bool liesInside(const QDomNode &node, const QDomNode &top)
{
    QDomNode ancestor = node.parentNode();
    while (!ancestor.isNull() && ancestor != top)
        ancestor = ancestor.parentNode();
    return !ancestor.isNull();
}

// Removes mirror elements from a copy, so that it is not mirrored again. Deliberately not all of them: those of nested
// ranges stay and take effect there, and since the search result shrinks while it is walked by rising index, whatever
// follows a removed one stays too. Plans with several mirrors in one range depend on it.
void removeMirrors(QDomElement copy, const std::vector<QDomElement> &elements, const QString &tag)
{
    std::vector<QDomElement> mirrors;
    for (const QDomElement &element : elements) {
        if (element.tagName() == tag)
            mirrors.push_back(element);
    }
    for (std::size_t i = 0; i < mirrors.size();) {
        if (mirrors[i].parentNode() != copy) {
            ++i;
            continue;
        }
        std::size_t next = i + 1;
        while (next < mirrors.size() && liesInside(mirrors[next], mirrors[i]))
            ++next;
        copy.removeChild(mirrors[i]);
        i = next + 1;
    }
}

// What a profile puts around its channel section: read as if it were the section's first and last elements.
struct ProfileFrame
{
    QString label;
    QString begin;
    QString end;
    QString comment; // none if empty
};

// A copy of the section with the frame as elements.
QDomElement framedCopy(const QDomElement &section, const ProfileFrame &frame)
{
    QDomElement copy = section.cloneNode(true).toElement();
    copy.setTagName(QStringLiteral("range"));
    copy.setAttribute(QStringLiteral("label"), frame.label);
    prependElement(copy, QStringLiteral("end"), frame.end);
    prependElement(copy, QStringLiteral("begin"), frame.begin);
    if (!frame.comment.isEmpty()) {
        const QDomElement comment = copy.ownerDocument().createElement(QStringLiteral("comment"));
        setText(comment, frame.comment);
        copy.appendChild(comment);
    }
    return copy;
}

} // namespace

class Q_DECL_HIDDEN AChannelInfo::Reader
{
public:
    // `name` tells the section from others in a message.
    Reader(bool expandMirrors, bool expandAutoChannels, const QString &name = {})
        : m_name(name)
        , m_expandMirrors(expandMirrors)
        , m_expandAutoChannels(expandAutoChannels)
    {}

    QList<AChannelInfo *> read(const QDomElement &element, AChannelInfo *parent, bool selectable);
    QList<AChannelInfo *> readFramed(const QDomElement &section, const ProfileFrame *frame, AChannelInfo *parent,
                                     bool selectable);

private:
    void readElement(const QDomElement &element, AChannelInfo *node);
    void readBegin(const QString &text, AChannelInfo *node);
    void readEnd(const QString &text, AChannelInfo *node);
    void readDefinition(const QDomElement &element, AChannelInfo *node);
    QList<AChannelInfo *> readMirror(const QDomElement &mirror, const ProfileFrame *frame, AChannelInfo *node,
                                     AChannelInfo *parent);

    const QString m_name;
    const bool m_expandMirrors;
    const bool m_expandAutoChannels;
    qint64 m_mirrorBudget = kMaxMirrorCost;
};

QList<AChannelInfo *> AChannelInfo::Reader::read(const QDomElement &element, AChannelInfo *parent, bool selectable)
{
    if (lowerTag(element) != QLatin1String("range"))
        return {};
    return readFramed(element, nullptr, parent, selectable);
}

// `frame` is null for all but the outermost range of a profile.
QList<AChannelInfo *> AChannelInfo::Reader::readFramed(const QDomElement &section, const ProfileFrame *frame,
                                                       AChannelInfo *parent, bool selectable)
{
    const QString label = frame ? frame->label : section.attribute(QStringLiteral("label"));
    auto *node = new AChannelInfo(parent, typeFromAttribute(section.attribute(QStringLiteral("type"))), {}, {}, label,
                                  selectable);
    if (frame) {
        readBegin(frame->begin, node);
        readEnd(frame->end, node);
    }
    QList<AChannelInfo *> nodes;
    for (QDomElement child = section.firstChildElement(); !child.isNull(); child = child.nextSiblingElement()) {
        if (lowerTag(child) == QLatin1String("mirror"))
            nodes += readMirror(child, frame, node, parent);
        else
            readElement(child, node);
    }
    if (frame && !frame->comment.isEmpty())
        node->m_comment = frame->comment;

    if (m_expandAutoChannels) { // as processChannelDefinitions(true, false): the ranges below are finished
        node->expandOwnDefinitions();
        node->m_channelDefinitions.clear();
    }
    if (node->m_parent) {
        parent->enter(node);
        nodes.append(node);
    } else {
        delete node; // without a parent, or outside its parent's edges
    }
    return nodes;
}

void AChannelInfo::Reader::readElement(const QDomElement &element, AChannelInfo *node)
{
    const QString tag = lowerTag(element);
    if (tag == QLatin1String("begin"))
        readBegin(element.text(), node);
    else if (tag == QLatin1String("end"))
        readEnd(element.text(), node);
    else if (tag == QLatin1String("color"))
        node->m_color = element.text();
    else if (tag == QLatin1String("comment"))
        node->m_comment = element.text();
    else if (tag == QLatin1String("channels"))
        readDefinition(element, node);
    else if (tag == QLatin1String("range"))
        read(element, node, element.attribute(QStringLiteral("selectable"), QStringLiteral("0")) != QLatin1String("0"));
}

// A range that begins at or above its parent's end, or ends at or below its parent's begin, loses its parent and with
// it its place in the tree. A parent's edge of zero passes everything.
void AChannelInfo::Reader::readBegin(const QString &text, AChannelInfo *node)
{
    node->m_beginFrequency = AProfile::frequencyFromText(text);
    const AChannelInfo *parent = node->m_parent;
    if (parent && !parent->m_endFrequency.isNull() && node->m_beginFrequency >= parent->m_endFrequency)
        node->m_parent = nullptr;
}

void AChannelInfo::Reader::readEnd(const QString &text, AChannelInfo *node)
{
    node->m_endFrequency = AProfile::frequencyFromText(text);
    const AChannelInfo *parent = node->m_parent;
    if (parent && !parent->m_beginFrequency.isNull() && node->m_endFrequency <= parent->m_beginFrequency)
        node->m_parent = nullptr;
}

void AChannelInfo::Reader::readDefinition(const QDomElement &element, AChannelInfo *node)
{
    const auto frequency = [&element](const QString &name, const QString &absent) {
        return frequencyFromLatin1(element.attribute(name, absent)).canonicalText();
    };
    const auto number = [&element](const QString &name) {
        return element.attribute(name, QStringLiteral("1")).toInt();
    };
    const QString start = definitionkey::start();
    Definition definition;
    definition[start] = element.hasAttribute(start) ? frequency(start, {}) : node->m_beginFrequency.canonicalText();
    definition[definitionkey::width()] = frequency(definitionkey::width(), QStringLiteral("5 MHz"));
    definition[definitionkey::space()] = frequency(definitionkey::space(), QStringLiteral("0"));
    definition[definitionkey::first()] = number(definitionkey::first());
    definition[definitionkey::count()] = number(definitionkey::count());
    definition[definitionkey::step()] = number(definitionkey::step());
    definition[definitionkey::color()] = node->m_color;
    node->m_channelDefinitions.append(definition);
}

// Stores where the copy begins or, with mirrors expanded, reads the copy as a sibling of `node`.
QList<AChannelInfo *> AChannelInfo::Reader::readMirror(const QDomElement &mirror, const ProfileFrame *frame,
                                                       AChannelInfo *node, AChannelInfo *parent)
{
    const QString relative = QStringLiteral("relative");
    AFrequency mirrorBegin = frequencyFromLatin1(mirror.text());
    if (mirror.attribute(QStringLiteral("mode"), relative) == relative)
        mirrorBegin += node->m_beginFrequency;
    if (!m_expandMirrors) {
        node->m_mirrorEntryFrequency = mirrorBegin;
        return {};
    }
    if (m_mirrorBudget < 0)
        return {};

    const QDomElement range = mirror.parentNode().toElement();
    m_mirrorBudget -= copyCost(range, m_mirrorBudget);
    if (frame)
        m_mirrorBudget -= textCost(frame->label) + textCost(frame->comment);
    if (m_mirrorBudget < 0) {
        qWarning("channel section%s: its mirrors ask for more copies than are made, further ones are left out",
                 qPrintable(m_name));
        return {};
    }

    const QDomElement copy = frame ? framedCopy(range, *frame) : range.cloneNode(true).toElement();
    const AFrequency mirrorEnd = mirrorBegin + (node->m_endFrequency - node->m_beginFrequency);
    setTextOfFirstChild(copy, QLatin1String("begin"), mirrorBegin.canonicalText());
    setTextOfFirstChild(copy, QLatin1String("end"), mirrorEnd.canonicalText());
    const std::vector<QDomElement> elements = elementsBelow(copy); // without what stood inside the replaced texts
    const QString start = definitionkey::start();
    for (QDomElement element : elements) {
        if (lowerTag(element) == QLatin1String("channels") && element.hasAttribute(start)) {
            const AFrequency original = frequencyFromLatin1(element.attribute(start));
            element.setAttribute(start, (original - node->m_beginFrequency + mirrorBegin).canonicalText());
        }
    }
    removeMirrors(copy, elements, mirror.tagName());
    return read(copy, parent, node->m_selectable);
}

bool AChannelInfo::fromProfile(AProfile *profile, AChannelInfo *parent, bool expandMirrors, bool expandAutoChannels)
{
    if (!profile || !profile->isValid())
        return false;

    const QString language = ASettings::language();
    const ProfileFrame frame{profile->label(language), profile->begin().canonicalText(), profile->end().canonicalText(),
                             profile->description(language)};
    QDomDocument emptySection;
    QDomElement section = profile->channelData().toElement();
    if (section.isNull())
        section = emptySection.createElement(QStringLiteral("range"));

    Reader reader(expandMirrors, expandAutoChannels, QStringLiteral(" of profile '%1'").arg(profile->id()));
    const QList<AChannelInfo *> nodes = reader.readFramed(section, &frame, parent, profile->showInChannelList());
    const QString id = profile->id();
    for (AChannelInfo *node : nodes)
        node->m_profileId = id;
    return true;
}

QList<AChannelInfo *> AChannelInfo::processXmlElement(QDomElement *element, AChannelInfo *parent, bool selectable,
                                                      bool expandMirrors, bool expandAutoChannels)
{
    if (!element) {
        qWarning("processXmlElement: the element is null");
        return {};
    }
    return Reader(expandMirrors, expandAutoChannels).read(*element, parent, selectable);
}
