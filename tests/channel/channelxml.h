#pragma once

#include "channel/achannelinfo.h"

#include <QtCore/QStringList>
#include <QtCore/QTextStream>
#include <QtXml/QDomDocument>

#include <memory>

// What the tests of the channel section's reader share: reading a text below a root of its own, and the tree in short.
namespace channelxml {

using NodePtr = std::unique_ptr<AChannelInfo>;

inline AFrequency megahertz(double value)
{
    AFrequency frequency;
    frequency.setValue(value, AFrequency::MHz);
    return frequency;
}

inline QString canonical(const AFrequency &frequency)
{
    return frequency.formatString(QStringLiteral("%1 %2"), AFrequency::NoUnit, 0, 'f', -1);
}

inline NodePtr makeRoot(const AFrequency &begin = AFrequency(), const AFrequency &end = AFrequency())
{
    return std::make_unique<AChannelInfo>(nullptr, AChannelInfo::Generic, begin, end, QString(), false);
}

struct Flags
{
    bool selectable = false;
    bool expandMirrors = true;
    bool expandAutoChannels = false;
};

struct Reading
{
    NodePtr root;
    QList<AChannelInfo *> nodes; // as processXmlElement returned them
    QString elementBefore;
    QString elementAfter;

    AChannelInfo *only() const { return root->childCount() == 1 ? root->child(0) : nullptr; }
};

inline QString textOf(const QDomNode &node)
{
    QString text;
    QTextStream stream(&text);
    node.save(stream, 1);
    return text;
}

// Reads the root element of `xml` below `root`, or below one without edges.
inline Reading read(const QByteArray &xml, const Flags &flags = Flags(), NodePtr root = nullptr)
{
    Reading result;
    result.root = root ? std::move(root) : makeRoot();
    QDomDocument document;
    document.setContent(xml);
    QDomElement element = document.documentElement();
    result.elementBefore = textOf(document);
    result.nodes = AChannelInfo::processXmlElement(&element, result.root.get(), flags.selectable, flags.expandMirrors,
                                                   flags.expandAutoChannels);
    result.elementAfter = textOf(document);
    return result;
}

// "label 100-110 { child 101-102, child 103-104 }", in megahertz.
inline QString outline(AChannelInfo *node)
{
    QString text = QStringLiteral("%1 %2-%3")
                       .arg(node->label())
                       .arg(node->beginFrequency().floatValue(AFrequency::MHz))
                       .arg(node->endFrequency().floatValue(AFrequency::MHz))
                       .trimmed();
    QStringList below;
    for (int row = 0; row < node->childCount(); ++row)
        below.append(outline(node->child(row)));
    if (!below.isEmpty())
        text += QStringLiteral(" { ") + below.join(QLatin1String(", ")) + QStringLiteral(" }");
    return text;
}

// The children of a root.
inline QString outlines(const Reading &reading)
{
    QStringList texts;
    for (int row = 0; row < reading.root->childCount(); ++row)
        texts.append(outline(reading.root->child(row)));
    return texts.join(QLatin1String(", "));
}

inline QString mirrorText(AChannelInfo *node)
{
    return canonical(AFrequency(node->data(AChannelInfo::ColumnMirrorEntryFreq).toByteArray().constData()));
}

} // namespace channelxml
