#include "channel/achannelinfo.h"

#include <QtCore/QHash>

#include <algorithm>
#include <memory>
#include <vector>

// Equality of trees by content. It asks for each child of one side whether any child of the other equals it, so it is
// a comparison of sets; candidates are found by their fields, which keeps it below the comparison of all pairs.

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

bool AChannelInfo::operator==(const AChannelInfo &other) const
{
    if (!hasEqualFields(other) || m_mirrorEntryFrequency != other.m_mirrorEntryFrequency)
        return false;

    const bool definesDifferently = m_channelDefinitions.size() != other.m_channelDefinitions.size();
    const bool mayBeExpanded =
        !m_channelDefinitions.isEmpty() && (hasChildsWithType(AutoChannel) || other.hasChildsWithType(AutoChannel));
    const AChannelInfo *left = this;
    const AChannelInfo *right = &other;
    std::unique_ptr<AChannelInfo> expandedLeft;
    std::unique_ptr<AChannelInfo> expandedRight;
    if (definesDifferently || mayBeExpanded) {
        const auto childCount = [](const AChannelInfo *side) {
            return side->m_channelDefinitions.isEmpty() ? side->m_children.size() : side->expandedChildCount();
        };
        if (childCount(left) != childCount(right)) // known without making the channels, however many they are
            return false;
        const auto expandIfDefined = [](const AChannelInfo **side, std::unique_ptr<AChannelInfo> *expanded) {
            if ((*side)->m_channelDefinitions.isEmpty())
                return;
            *expanded = std::make_unique<AChannelInfo>(**side);
            (*expanded)->processChannelDefinitions(true, true);
            *side = expanded->get();
        };
        expandIfDefined(&left, &expandedLeft);
        expandIfDefined(&right, &expandedRight);
    }
    return left->hasEqualChildren(*right) &&
           hasEqualDefinitions(left->m_channelDefinitions, right->m_channelDefinitions);
}

bool AChannelInfo::hasEqualFields(const AChannelInfo &other) const
{
    return m_beginFrequency == other.m_beginFrequency && m_endFrequency == other.m_endFrequency &&
           m_type == other.m_type && m_label == other.m_label && m_comment == other.m_comment &&
           m_color == other.m_color;
}

// A child that matched is not used up: two children of this node may match the same child of the other.
bool AChannelInfo::hasEqualChildren(const AChannelInfo &other) const
{
    if (m_children.size() != other.m_children.size())
        return false;
    std::vector<const AChannelInfo *> candidates; // sorted when the first child stands at another place
    for (int i = 0; i < m_children.size(); ++i) {
        const AChannelInfo *wanted = m_children.at(i);
        const AChannelInfo *atSamePlace = other.m_children.at(i);
        if (*wanted == *atSamePlace)
            continue;
        if (candidates.empty()) {
            candidates.assign(other.m_children.cbegin(), other.m_children.cend());
            std::stable_sort(candidates.begin(), candidates.end(), isBefore);
        }
        const auto [first, last] = std::equal_range(candidates.cbegin(), candidates.cend(), wanted, isBefore);
        const bool found = std::any_of(first, last, [&](const AChannelInfo *candidate) {
            return candidate != atSamePlace && *wanted == *candidate;
        });
        if (!found)
            return false;
    }
    return true;
}
