#include "channel/achannelinfo.h"

#include "channel/achannelinfo_walk.h"

#include <algorithm>
#include <utility>
#include <vector>

// Sorting by texts: each child has one for the column, made once. O(n log n) in the children of a node, O(n) in depth.

namespace {

constexpr int kFrequencyKeyWidth = 20; // that of -2^63, the longest number

using Keyed = std::pair<QString, AChannelInfo *>;

bool isBlank(const QString &text)
{
    return std::all_of(text.cbegin(), text.cend(), [](QChar c) { return c.isSpace(); });
}

} // namespace

void AChannelInfo::sortChildren(int column, Qt::SortOrder order)
{
    std::vector<Keyed> keyed;
    std::vector<bool> showsText; // for the current node and each above it: whether its qualified name has any text
    for (Walk walk(this); walk.next();) {
        AChannelInfo *node = walk.node();
        if (column == ColumnQualifiedName) {
            const auto depth = static_cast<std::size_t>(walk.depth());
            showsText.resize(depth);
            const bool shows = depth == 0
                                   ? !node->name(false).isEmpty()
                                   : !node->hasDefaultProfile() && (showsText[depth - 1] || !isBlank(node->m_label));
            showsText.push_back(shows);
        }

        QList<AChannelInfo *> &children = node->m_children;
        if (children.size() < 2)
            continue;
        keyed.clear();
        keyed.reserve(static_cast<std::size_t>(children.size()));
        for (AChannelInfo *child : qAsConst(children))
            keyed.emplace_back(child->sortKey(column, !showsText.empty() && showsText.back()), child);
        std::stable_sort(keyed.begin(), keyed.end(), [](const Keyed &a, const Keyed &b) { return a.first < b.first; });
        if (order != Qt::AscendingOrder)
            std::reverse(keyed.begin(), keyed.end());
        std::transform(keyed.cbegin(), keyed.cend(), children.begin(), [](const Keyed &entry) { return entry.second; });
        node->numberChildren();
    }
}

// The text that stands for this node among its siblings. `showsTextAbove` is whether the parent's qualified name has
// any text; it matters to the qualified name alone.
QString AChannelInfo::sortKey(int column, bool showsTextAbove) const
{
    switch (column) {
    case ColumnQualifiedName: {
        // Siblings have the labels above in common, so a stand-in for them does, and depth costs nothing.
        if (hasDefaultProfile())
            return {};
        const QLatin1String above(showsTextAbove ? "x " : "");
        return QString(above + m_label).trimmed();
    }
    case ColumnStartFreq:
    case ColumnStopFreq: {
        // Taken as megahertz deliberately. Above 9.2 THz that is the edge of the range, so such keys are equal; the
        // texts of negative numbers stand in the order of their digits.
        const AFrequency scaled = AFrequency::fromValue(data(column).toDouble(), AFrequency::MHz);
        return scaled.formatString(QStringLiteral("%1"), AFrequency::Hz, kFrequencyKeyWidth, 'd', -1);
    }
    case ColumnAutoChannelDefinition: // a list has no text
        return {};
    default:
        return data(column).toString();
    }
}
