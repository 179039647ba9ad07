#include "channel/achannelinfo.h"

#include "channel/achannelinfo_walk.h"
#include "channel/channeldefinition.h"

#include <algorithm>
#include <vector>

// Definitions turned into channels.

namespace {

AFrequency frequencyOf(const AChannelInfo::Definition &definition, const QString &key)
{
    return AFrequency(definition.value(key).toByteArray().constData());
}

int numberOf(const AChannelInfo::Definition &definition, const QString &key)
{
    return definition.value(key).toInt();
}

qint64 channelCountOf(const AChannelInfo::Definition &definition)
{
    return std::max(numberOf(definition, definitionkey::count()), 0);
}

// What a definition says, with its texts and numbers read.
struct ChannelRun
{
    ChannelRun(const AChannelInfo::Definition &definition, const QVariant &channelColor)
        : count(channelCountOf(definition))
        , start(frequencyOf(definition, definitionkey::start()))
        , width(frequencyOf(definition, definitionkey::width()))
        , raster(width + frequencyOf(definition, definitionkey::space()))
        , first(numberOf(definition, definitionkey::first()))
        , step(numberOf(definition, definitionkey::step()))
        , color(channelColor)
    {}

    bool operator==(const ChannelRun &other) const
    {
        return count == other.count && start == other.start && width == other.width && raster == other.raster &&
               first == other.first && step == other.step && color == other.color;
    }

    qint64 count;
    AFrequency start;
    AFrequency width;
    AFrequency raster;
    qint64 first;
    qint64 step;
    QVariant color;
};

} // namespace

void AChannelInfo::processChannelDefinitions(bool clearDefinitions, bool clearExpanded)
{
    // All nodes are known before the first channel is made: generated channels are not themselves visited.
    std::vector<AChannelInfo *> nodes;
    for (Walk walk(this); walk.next();) {
        if (clearExpanded)
            walk.node()->clearExpandedAutoChannels();
        nodes.push_back(walk.node());
    }
    for (AChannelInfo *node : nodes) {
        node->expandOwnDefinitions();
        if (clearDefinitions)
            node->m_channelDefinitions.clear();
    }
}

QVariant AChannelInfo::channelColor(const Definition &definition) const
{
    const QColor ownColor = colorFromVariant(definition.value(definitionkey::color()));
    return ownColor.isValid() ? QVariant(ownColor) : m_color;
}

void AChannelInfo::expandOwnDefinitions()
{
    for (const Definition &definition : qAsConst(m_channelDefinitions)) {
        const ChannelRun run(definition, channelColor(definition));
        for (qint64 n = 0; n < run.count; ++n) {
            const AFrequency lowerEdge = run.start + run.raster * static_cast<double>(n);
            auto *channel = new AChannelInfo(this, AutoChannel, lowerEdge, lowerEdge + run.width,
                                             QString::number(n * run.step + run.first), false);
            channel->m_color = run.color;
            enter(channel);
        }
    }
}

// Whether both define the same channels in the same order. It may be false where they are the same.
bool AChannelInfo::generatesLike(const AChannelInfo &other) const
{
    return std::equal(m_channelDefinitions.cbegin(), m_channelDefinitions.cend(), other.m_channelDefinitions.cbegin(),
                      other.m_channelDefinitions.cend(), [&](const Definition &own, const Definition &others) {
                          return ChannelRun(own, channelColor(own)) == ChannelRun(others, other.channelColor(others));
                      });
}

qint64 AChannelInfo::definedChannelCount() const
{
    qint64 count = 0;
    for (Walk walk(const_cast<AChannelInfo *>(this)); walk.next();) { // only read
        for (const Definition &definition : qAsConst(walk.node()->m_channelDefinitions))
            count += channelCountOf(definition);
    }
    return count;
}

// The number of children that processChannelDefinitions(true, true) would leave.
qint64 AChannelInfo::expandedChildCount() const
{
    qint64 count = std::count_if(m_children.cbegin(), m_children.cend(),
                                 [](const AChannelInfo *child) { return (child->m_type & AutoChannel) == 0; });
    for (const Definition &definition : m_channelDefinitions)
        count += channelCountOf(definition);
    return count;
}

int AChannelInfo::clearExpandedAutoChannels()
{
    const auto firstExpanded =
        std::stable_partition(m_children.begin(), m_children.end(),
                              [](const AChannelInfo *child) { return (child->m_type & AutoChannel) == 0; });
    const std::vector<AChannelInfo *> expanded(firstExpanded, m_children.end());
    m_children.erase(firstExpanded, m_children.end());
    numberChildren();
    for (AChannelInfo *child : expanded) {
        if (child->m_parent == this) // out of the list already, so it need not search it
            child->m_parent = nullptr;
        delete child;
    }
    return static_cast<int>(expanded.size());
}
