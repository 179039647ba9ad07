#pragma once

#include "channel/achannelinfo.h"

#include "core/aprofile.h"
#include "core/asettings.h"

#include <QtXml/QDomDocument>

#include <algorithm>

// The channel section's reader in its plainest form, which copies and edits the XML for every mirror, with a tree of
// its own. Slow, but each line is one rule. The library's reader must give the same trees.
namespace referencereader {

struct Node
{
    Node *parent = nullptr;
    AFrequency begin;
    AFrequency end;
    QString label;
    bool selectable = false;
    QList<Node *> children;
    QVariant color = QVariant(QColor());
    int type = AChannelInfo::Generic;
    QString profileId;
    QString comment;
    QList<AChannelInfo::Definition> definitions;
    AFrequency mirror;

    Node() = default;
    Node(const Node &) = delete;
    Node &operator=(const Node &) = delete;
    ~Node() { qDeleteAll(children); }
};

struct Flags
{
    bool expandMirrors = false;
    bool expandAutoChannels = false;
};

inline QString canonical(const AFrequency &frequency)
{
    return frequency.formatString(QStringLiteral("%1 %2"), AFrequency::NoUnit, 0, 'f', -1);
}

inline AFrequency parsed(const QString &text)
{
    return AFrequency(text.toLatin1().constData());
}

inline AFrequency parsedEdge(const QString &text)
{
    if (AFrequency::unitForSuffix(text.toLatin1().constData()) != AFrequency::NoUnit)
        return parsed(text);
    AFrequency frequency;
    frequency.setValue(text.toDouble(), AFrequency::MHz);
    return frequency;
}

inline QString name(const QDomElement &element)
{
    return element.tagName().toLower();
}

inline int typeOf(const QDomElement &element)
{
    const QString type = element.attribute(QStringLiteral("type")).toLower();
    if (type == QLatin1String("direction"))
        return AChannelInfo::Direction;
    if (type == QLatin1String("channel"))
        return AChannelInfo::Channel;
    if (type == QLatin1String("provider"))
        return AChannelInfo::Provider;
    return AChannelInfo::Generic;
}

inline QDomElement firstChild(const QDomElement &parent, const QString &wanted)
{
    for (QDomElement child = parent.firstChildElement(); !child.isNull(); child = child.nextSiblingElement()) {
        if (name(child) == wanted)
            return child;
    }
    return QDomElement();
}

inline void replaceText(QDomElement element, const QString &text)
{
    if (element.isNull())
        return;
    while (element.hasChildNodes())
        element.removeChild(element.firstChild());
    element.appendChild(element.ownerDocument().createTextNode(text));
}

inline void shiftStarts(const QDomElement &parent, const AFrequency &from, const AFrequency &to)
{
    for (QDomElement child = parent.firstChildElement(); !child.isNull(); child = child.nextSiblingElement()) {
        const QString start = QStringLiteral("start");
        if (name(child) == QLatin1String("channels") && child.hasAttribute(start))
            child.setAttribute(start, canonical(parsed(child.attribute(start)) - from + to));
        shiftStarts(child, from, to);
    }
}

inline AChannelInfo::Definition definitionOf(const QDomElement &element, const Node &node)
{
    AChannelInfo::Definition definition;
    const auto frequency = [&](const char *key, const QString &absent) {
        const QString name = QString::fromLatin1(key);
        definition.insert(name, canonical(parsed(element.attribute(name, absent))));
    };
    const auto number = [&](const char *key) {
        const QString name = QString::fromLatin1(key);
        definition.insert(name, element.attribute(name, QStringLiteral("1")).toInt());
    };
    frequency("start", canonical(node.begin));
    frequency("width", QStringLiteral("5 MHz"));
    frequency("space", QStringLiteral("0"));
    number("first");
    number("count");
    number("step");
    definition.insert(QStringLiteral("color"), node.color);
    return definition;
}

inline void expand(Node *node)
{
    for (Node *child : qAsConst(node->children))
        expand(child);
    for (const AChannelInfo::Definition &definition : qAsConst(node->definitions)) {
        const auto frequency = [&definition](const char *key) {
            return AFrequency(definition.value(QString::fromLatin1(key)).toByteArray().constData());
        };
        const auto number = [&definition](const char *key) {
            return definition.value(QString::fromLatin1(key)).toInt();
        };
        const QVariant colorValue = definition.value(QStringLiteral("color"));
        const QColor color = colorValue.value<QColor>();
        for (int n = 0; n < number("count"); ++n) {
            auto *channel = new Node;
            channel->parent = node;
            channel->begin = frequency("start") + (frequency("width") + frequency("space")) * double(n);
            channel->end = channel->begin + frequency("width");
            channel->label = QStringLiteral("%1").arg(n * number("step") + number("first"), 0, 10, QLatin1Char(' '));
            channel->type = AChannelInfo::AutoChannel;
            channel->color = color.isValid() ? QVariant(color) : node->color;
            node->children.append(channel);
        }
    }
    node->definitions.clear();
}

inline QList<Node *> readElement(const QDomElement &element, Node *parent, bool selectable, const Flags &flags)
{
    QList<Node *> result;
    if (name(element) != QLatin1String("range"))
        return result;
    auto *node = new Node;
    node->parent = parent;
    node->selectable = selectable;
    node->label = element.attribute(QStringLiteral("label"));
    node->type = typeOf(element);

    for (QDomNode child = element.firstChild(); !child.isNull(); child = child.nextSibling()) {
        const QDomElement part = child.toElement();
        if (part.isNull())
            continue;
        const QString partName = name(part);
        if (partName == QLatin1String("begin")) {
            node->begin = parsedEdge(part.text());
            if (node->parent && !node->parent->end.isNull() && node->begin >= node->parent->end)
                node->parent = nullptr;
        } else if (partName == QLatin1String("end")) {
            node->end = parsedEdge(part.text());
            if (node->parent && !node->parent->begin.isNull() && node->end <= node->parent->begin)
                node->parent = nullptr;
        } else if (partName == QLatin1String("color")) {
            node->color = part.text();
        } else if (partName == QLatin1String("comment")) {
            node->comment = part.text();
        } else if (partName == QLatin1String("range")) {
            readElement(part, node,
                        part.attribute(QStringLiteral("selectable"), QStringLiteral("0")) != QLatin1String("0"), flags);
        } else if (partName == QLatin1String("channels")) {
            node->definitions.append(definitionOf(part, *node));
        } else if (partName == QLatin1String("mirror")) {
            AFrequency mirror = parsed(part.text());
            if (part.attribute(QStringLiteral("mode"), QStringLiteral("relative")) == QLatin1String("relative"))
                mirror += node->begin;
            if (!flags.expandMirrors) {
                node->mirror = mirror;
                continue;
            }
            QDomElement clone = element.cloneNode(true).toElement();
            replaceText(firstChild(clone, QStringLiteral("begin")), canonical(mirror));
            replaceText(firstChild(clone, QStringLiteral("end")), canonical(mirror + (node->end - node->begin)));
            shiftStarts(clone, node->begin, mirror);
            const QDomNodeList mirrors = clone.elementsByTagName(part.tagName());
            for (int i = 0; i < mirrors.count(); ++i) // the list shrinks under the index: every second one stays
                clone.removeChild(mirrors.at(i));
            result += readElement(clone, parent, node->selectable, flags);
        }
    }

    if (flags.expandAutoChannels)
        expand(node);
    if (!node->parent) {
        delete node;
        return result;
    }
    result.append(node);
    parent->children.append(node);
    return result;
}

inline bool readProfile(AProfile *profile, Node *parent, const Flags &flags)
{
    if (!profile || !profile->isValid())
        return false;
    QDomDocument document;
    const QDomNode section = profile->channelData();
    QDomElement working = section.isElement() ? document.importNode(section, true).toElement()
                                              : document.createElement(QStringLiteral("range"));
    document.appendChild(working);
    const auto prepend = [&](const char *tag, const QString &text) {
        QDomElement made = document.createElement(QString::fromLatin1(tag));
        made.appendChild(document.createTextNode(text));
        working.insertBefore(made, working.firstChildElement());
    };
    prepend("end", canonical(profile->end()));
    prepend("begin", canonical(profile->begin()));
    prepend("author", profile->id());
    working.setTagName(QStringLiteral("range"));
    working.setAttribute(QStringLiteral("selectable"), QStringLiteral("1"));
    working.setAttribute(QStringLiteral("label"), profile->label(ASettings::language()));
    const QString description = profile->description(ASettings::language());
    if (!description.isEmpty()) {
        QDomElement comment = document.createElement(QStringLiteral("comment"));
        comment.appendChild(document.createTextNode(description));
        working.appendChild(comment);
    }
    const QList<Node *> nodes = readElement(working, parent, profile->showInChannelList(), flags);
    for (Node *node : nodes)
        node->profileId = profile->id();
    return true;
}

// --- comparison ---

inline bool isSame(const QVariant &a, const QVariant &b)
{
    return a.userType() == b.userType() && a == b;
}

inline bool isSame(const QList<AChannelInfo::Definition> &a, const QList<AChannelInfo::Definition> &b)
{
    const auto isSameDefinition = [](const AChannelInfo::Definition &one, const AChannelInfo::Definition &other) {
        return one.keys() == other.keys() && std::all_of(one.keyBegin(), one.keyEnd(), [&](const QString &key) {
                   return isSame(one.value(key), other.value(key));
               });
    };
    return a.size() == b.size() && std::equal(a.begin(), a.end(), b.begin(), isSameDefinition);
}

// The first difference between a tree of the library and one of the reference, or an empty text.
inline QString difference(AChannelInfo *tree, const Node *reference, const QString &path = QStringLiteral("root"))
{
    const auto differs = [&path](const char *field) { return path + QLatin1String(": ") + QLatin1String(field); };
    if (tree->beginFrequency() != reference->begin)
        return differs("begin");
    if (tree->endFrequency() != reference->end)
        return differs("end");
    if (tree->label() != reference->label)
        return differs("label");
    if (tree->selectable() != reference->selectable)
        return differs("selectable");
    if (tree->type() != reference->type)
        return differs("type");
    if (!isSame(tree->data(AChannelInfo::ColumnColor), reference->color))
        return differs("color");
    if (tree->data(AChannelInfo::ColumnProfileId).toString() != reference->profileId)
        return differs("profile id");
    if (tree->comment() != reference->comment)
        return differs("comment");
    if (!isSame(tree->channelDefinitions(), reference->definitions))
        return differs("definitions");
    if (tree->data(AChannelInfo::ColumnMirrorEntryFreq).toLongLong() != reference->mirror.intValue(AFrequency::Hz))
        return differs("mirror");
    if (tree->childCount() != reference->children.size())
        return differs("number of children");
    for (int row = 0; row < tree->childCount(); ++row) {
        AChannelInfo *child = tree->child(row);
        const QString childPath = QStringLiteral("%1/%2").arg(path).arg(row);
        if (child->parent() != tree || child->row() != row)
            return childPath + QStringLiteral(": parent");
        const QString below = difference(child, reference->children.at(row), childPath);
        if (!below.isEmpty())
            return below;
    }
    return QString();
}

inline int nodeCount(const Node *node)
{
    int count = 1;
    for (const Node *child : node->children)
        count += nodeCount(child);
    return count;
}

} // namespace referencereader
