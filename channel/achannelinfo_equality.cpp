#include "channel/achannelinfo.h"

#include <QtCore/QHash>

#include <algorithm>
#include <memory>
#include <vector>

// Equality of trees by content. It asks for each child of one side whether any child of the other equals it, so it is
// a comparison of sets; candidates are found by their fields, which keeps it below the comparison of all pairs. A tree
// that has to be compared expanded is looked at as if it were: only the channels of one node at a time are made, and
// none where both sides define the same.

namespace {

// By the fields whose equality is plain. Not by the colour: a QVariant that holds a colour may equal one with a text.
bool isBefore(const AChannelInfo *a, const AChannelInfo *b)
{
    if (a->beginFrequency() != b->beginFrequency())
        return a->beginFrequency() < b->beginFrequency();
    if (a->endFrequency() != b->endFrequency())
        return a->endFrequency() < b->endFrequency();
    if (a->type() != b->type())
        return a->type() < b->type();
    return a->label() < b->label();
}

QString fingerprint(const AChannelInfo::Definition &definition)
{
    QString text;
    for (auto entry = definition.cbegin(); entry != definition.cend(); ++entry)
        text += entry.key() + QLatin1Char('=') + entry.value().toString() + QLatin1Char('\n');
    return text;
}

bool hasEqualDefinitions(const QList<AChannelInfo::Definition> &left, const QList<AChannelInfo::Definition> &right)
{
    if (left.size() != right.size())
        return false;
    QMultiHash<QString, int> rightByFingerprint; // filled when the first definition stands at another place
    for (int i = 0; i < left.size(); ++i) {
        const AChannelInfo::Definition &wanted = left.at(i);
        if (wanted == right.at(i))
            continue;
        if (rightByFingerprint.isEmpty()) {
            for (int k = 0; k < right.size(); ++k)
                rightByFingerprint.insert(fingerprint(right.at(k)), k);
        }
        const QList<int> candidates = rightByFingerprint.values(fingerprint(wanted));
        const bool found =
            std::any_of(candidates.cbegin(), candidates.cend(), [&](int k) { return wanted == right.at(k); });
        if (found)
            continue;
        // Equal values may have different texts. Not QList::contains: it compares in the other direction, and the
        // comparison of QVariants has one.
        if (std::none_of(right.cbegin(), right.cend(), [&](const auto &other) { return wanted == other; }))
            return false;
    }
    return true;
}

} // namespace

// A node as it stands, or as processChannelDefinitions(true, true) would leave it and all below it.
struct Q_DECL_HIDDEN AChannelInfo::ComparedNode
{
    const AChannelInfo *node;
    bool expanded;

    QList<Definition> definitions() const { return expanded ? QList<Definition>() : node->m_channelDefinitions; }
    qint64 childCount() const { return expanded ? node->expandedChildCount() : node->m_children.size(); }

    // `generated` keeps the channels that the definitions give; null leaves them out.
    std::vector<ComparedNode> children(std::unique_ptr<AChannelInfo> *generated) const
    {
        std::vector<ComparedNode> list;
        for (const AChannelInfo *child : node->m_children) {
            if (!expanded || (child->m_type & AutoChannel) == 0)
                list.push_back({child, expanded});
        }
        if (expanded && generated) {
            *generated = std::make_unique<AChannelInfo>(nullptr, node->m_type, node->m_beginFrequency,
                                                        node->m_endFrequency, QString(), false);
            (*generated)->copyFields(*node);
            (*generated)->expandOwnDefinitions();
            for (const AChannelInfo *channel : qAsConst((*generated)->m_children))
                list.push_back({channel, false});
        }
        return list;
    }

    bool equals(const ComparedNode &other) const;
    static bool haveEqualChildren(const ComparedNode &left, const ComparedNode &right);
};

bool AChannelInfo::operator==(const AChannelInfo &other) const
{
    return ComparedNode{this, false}.equals({&other, false});
}

bool AChannelInfo::ComparedNode::equals(const ComparedNode &other) const
{
    if (!node->hasEqualFields(*other.node) || node->m_mirrorEntryFrequency != other.node->m_mirrorEntryFrequency)
        return false;
    const QList<Definition> ownDefinitions = definitions();
    const QList<Definition> otherDefinitions = other.definitions();
    const bool definesDifferently = ownDefinitions.size() != otherDefinitions.size();
    const bool mayBeExpanded = !ownDefinitions.isEmpty() &&
                               (node->hasChildsWithType(AutoChannel) || other.node->hasChildsWithType(AutoChannel));
    if (!definesDifferently && !mayBeExpanded)
        return haveEqualChildren(*this, other) && hasEqualDefinitions(ownDefinitions, otherDefinitions);
    return haveEqualChildren({node, expanded || !ownDefinitions.isEmpty()},
                             {other.node, other.expanded || !otherDefinitions.isEmpty()});
}

// A child that matched is not used up: two children of this node may match the same child of the other.
bool AChannelInfo::ComparedNode::haveEqualChildren(const ComparedNode &left, const ComparedNode &right)
{
    if (left.childCount() != right.childCount()) // known without making the channels, however many they are
        return false;
    // A channel of a definition equals no child of another type, so equal runs of channels need no look.
    const bool generateEqually = left.expanded && right.expanded && left.node->generatesLike(*right.node);
    std::unique_ptr<AChannelInfo> leftGenerated;
    std::unique_ptr<AChannelInfo> rightGenerated;
    const std::vector<ComparedNode> wanted = left.children(generateEqually ? nullptr : &leftGenerated);
    const std::vector<ComparedNode> others = right.children(generateEqually ? nullptr : &rightGenerated);

    std::vector<ComparedNode> candidates; // sorted when the first child stands at another place
    const auto isBeforeNode = [](const ComparedNode &a, const ComparedNode &b) { return isBefore(a.node, b.node); };
    for (std::size_t i = 0; i < wanted.size(); ++i) {
        if (wanted[i].equals(others[i]))
            continue;
        if (candidates.empty()) {
            candidates = others;
            std::stable_sort(candidates.begin(), candidates.end(), isBeforeNode);
        }
        const auto [first, last] = std::equal_range(candidates.cbegin(), candidates.cend(), wanted[i], isBeforeNode);
        const bool found = std::any_of(first, last, [&](const ComparedNode &candidate) {
            return candidate.node != others[i].node && wanted[i].equals(candidate);
        });
        if (!found)
            return false;
    }
    return true;
}

bool AChannelInfo::hasEqualFields(const AChannelInfo &other) const
{
    return m_beginFrequency == other.m_beginFrequency && m_endFrequency == other.m_endFrequency &&
           m_type == other.m_type && m_label == other.m_label && m_comment == other.m_comment &&
           m_color == other.m_color;
}
