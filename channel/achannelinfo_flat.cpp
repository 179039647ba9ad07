#include "channel/achannelinfo.h"

#include "channel/achannelinfo_walk.h"

#include <algorithm>
#include <utility>
#include <vector>

// The flat views of a tree: by depth, and by levels on which no siblings overlap.

namespace {

constexpr int kStackingLevels = 49; // children that find no place on these are left out

struct Edges
{
    AFrequency begin;
    AFrequency end;
    AChannelInfo *node;
};

// The children by rising lower edge in whole hertz; among equal edges the last one comes first.
std::vector<Edges> byLowerEdge(const QList<AChannelInfo *> &children)
{
    std::vector<Edges> sorted;
    sorted.reserve(static_cast<std::size_t>(children.size()));
    for (auto child = children.crbegin(); child != children.crend(); ++child)
        sorted.push_back({(*child)->beginFrequency(), (*child)->endFrequency(), *child});
    std::stable_sort(sorted.begin(), sorted.end(), [](const Edges &a, const Edges &b) {
        return a.begin.intValue(AFrequency::Hz) < b.begin.intValue(AFrequency::Hz);
    });
    return sorted;
}

// The children in the order in which they find a place on the levels above `level`: each pass fills one level from the
// lowest edge upwards with what does not overlap. At most kStackingLevels passes over the children.
std::vector<std::pair<AChannelInfo *, int>> stacked(const QList<AChannelInfo *> &children, int level)
{
    std::vector<std::pair<AChannelInfo *, int>> placed;
    placed.reserve(static_cast<std::size_t>(children.size()));
    std::vector<Edges> unplaced = byLowerEdge(children);
    for (int pass = 1; pass <= kStackingLevels && !unplaced.empty(); ++pass) {
        AFrequency lastUpperEdge;    // 0 Hz, so what begins below it finds no place at all
        std::size_t overlapping = 0; // kept at the front of `unplaced` for the next pass
        for (const Edges &child : unplaced) {
            if (child.begin < lastUpperEdge) {
                unplaced[overlapping++] = child;
            } else {
                placed.emplace_back(child.node, level + pass);
                lastUpperEdge = child.end;
            }
        }
        unplaced.resize(overlapping);
    }
    return placed;
}

} // namespace

AChannelInfo::FlatList AChannelInfo::channels(int level)
{
    FlatList list;
    for (Walk walk(this, level); walk.next();)
        list.append({walk.node(), walk.depth()});
    return list;
}

AChannelInfo::FlatList AChannelInfo::stackedChannels(int level) const
{
    FlatList list;
    std::vector<std::pair<AChannelInfo *, int>> pending{{const_cast<AChannelInfo *>(this), level}};
    while (!pending.empty()) {
        const auto [node, nodeLevel] = pending.back();
        pending.pop_back();
        list.append({node, nodeLevel});
        const auto placed = stacked(node->m_children, nodeLevel);
        pending.insert(pending.end(), placed.crbegin(), placed.crend());
    }
    return list;
}
