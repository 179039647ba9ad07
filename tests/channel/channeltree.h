#pragma once

#include "channel/achannelinfo.h"
#include "core/testbasics.h"

#include <QtCore/QDebug>
#include <QtCore/QStringList>

#include <memory>

// What the tests of the channel tree build trees with, and the texts that they compare trees by.
namespace channeltree {

using Tree = std::unique_ptr<AChannelInfo>;

using testbasics::hertz;

inline AFrequency megahertz(qint64 value)
{
    return hertz(value * 1000000);
}

inline QString canonical(const AFrequency &frequency)
{
    return frequency.formatString(QStringLiteral("%1 %2"), AFrequency::NoUnit, 0, 'f', -1);
}

// A node that stands below `parent`, or a root. Edges in hertz texts, so that parts of a hertz can be named.
inline AChannelInfo *node(AChannelInfo *parent, const QString &label, const char *begin = "0", const char *end = "0",
                          AChannelInfo::RangeType type = AChannelInfo::Generic)
{
    auto *made = new AChannelInfo(parent, type, AFrequency(begin), AFrequency(end), label, false);
    if (parent)
        parent->appendChild(made);
    return made;
}

inline AChannelInfo::Definition definition(const char *start, const char *width, const char *space, int count,
                                           int first = 1, int step = 1)
{
    return {{QStringLiteral("start"), QString::fromLatin1(start)},
            {QStringLiteral("width"), QString::fromLatin1(width)},
            {QStringLiteral("space"), QString::fromLatin1(space)},
            {QStringLiteral("count"), count},
            {QStringLiteral("first"), first},
            {QStringLiteral("step"), step}};
}

inline AChannelInfo::Definition with(AChannelInfo::Definition definition, const char *key, const QVariant &value)
{
    definition.insert(QString::fromLatin1(key), value);
    return definition;
}

// A tree in which no field has the value that it starts with.
inline AChannelInfo *fullTree()
{
    auto *root = new AChannelInfo(nullptr, AChannelInfo::Direction, AFrequency("10.5"), AFrequency("20.25"),
                                  QStringLiteral("root"), true);
    root->setData(AChannelInfo::ColumnColor, QStringLiteral("red"));
    root->setData(AChannelInfo::ColumnProfileId, QStringLiteral("profile"));
    root->setData(AChannelInfo::ColumnComment, QStringLiteral("comment"));
    root->setData(AChannelInfo::ColumnMirrorEntryFreq, QStringLiteral("7 kHz"));
    root->setChannelDefinitions({definition("1 MHz", "2 MHz", "3 kHz", 4, 5, 6), definition("1", "2", "3", 0)});
    node(root, QStringLiteral("b"), "1", "2", AChannelInfo::Provider)
        ->setData(AChannelInfo::ColumnColor, QColor(Qt::blue));
    AChannelInfo *a = node(root, QStringLiteral("a"), "3", "4", AChannelInfo::Channel);
    a->setData(AChannelInfo::ColumnSelectable, true);
    a->setData(AChannelInfo::ColumnColor, QVariant());
    AChannelInfo *deep = node(a, QStringLiteral("deep"), "5", "6", AChannelInfo::AutoChannel);
    deep->setData(AChannelInfo::ColumnType, 48);
    deep->setData(AChannelInfo::ColumnMirrorEntryFreq, 9);
    deep->setChannelDefinitions({definition("3", "2", "1", 1)});
    return root;
}

// A node of 100 to 200 MHz.
inline AChannelInfo *band()
{
    return node(nullptr, QStringLiteral("band"), "100 MHz", "200 MHz");
}

inline AChannelInfo *bandWith(const QList<AChannelInfo::Definition> &definitions)
{
    AChannelInfo *made = band();
    made->setChannelDefinitions(definitions);
    return made;
}

inline QStringList childLabels(AChannelInfo *parent)
{
    QStringList labels;
    for (int row = 0; row < parent->childCount(); ++row)
        labels.append(parent->child(row)->label());
    return labels;
}

inline QStringList words(const char *text)
{
    return QString::fromLatin1(text).split(QLatin1Char(' '), Qt::SkipEmptyParts);
}

// "label:number" for each entry
inline QStringList listing(const AChannelInfo::FlatList &list)
{
    QStringList texts;
    for (const auto &entry : list)
        texts.append(QStringLiteral("%1:%2").arg(entry.first->label()).arg(entry.second));
    return texts;
}

// A value with its type.
inline QString inspect(const QVariant &value)
{
    QString text;
    QDebug(&text) << value;
    return text;
}

// Every field of every node of the subtree, one line a node, indented by depth. `parent` shows as whether the node
// is linked to the one above it.
inline QStringList outline(AChannelInfo *top, int depth = 0)
{
    const auto exact = [](const AFrequency &frequency) {
        return frequency.toString() + QLatin1Char('/') + QString::number(frequency.floatValue(AFrequency::Hz), 'g', 17);
    };
    QStringList fields{QString(depth * 2, QLatin1Char(' ')) + top->label(),
                       exact(top->beginFrequency()),
                       exact(top->endFrequency()),
                       QString::number(top->type()),
                       top->selectable() ? QStringLiteral("selectable") : QString(),
                       inspect(top->data(AChannelInfo::ColumnColor)),
                       top->data(AChannelInfo::ColumnProfileId).toString(),
                       top->comment(),
                       inspect(top->data(AChannelInfo::ColumnAutoChannelDefinition)),
                       inspect(top->data(AChannelInfo::ColumnMirrorEntryFreq))};
    QStringList lines{fields.join(QStringLiteral(" | "))};
    for (int row = 0; row < top->childCount(); ++row) {
        if (top->child(row)->parent() != top)
            lines.append(QStringLiteral("child %1 is not linked").arg(row));
        lines.append(outline(top->child(row), depth + 1));
    }
    return lines;
}

} // namespace channeltree
