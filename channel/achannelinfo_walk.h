#pragma once

#include "channel/achannelinfo.h"

#include <utility>
#include <vector>

// Visits a subtree depth first, each node before those below it, without recursion. A visited node's children may be
// changed until next() is called again. Private to libaveldorandata.
class AChannelInfo::Walk
{
public:
    using Step = std::pair<AChannelInfo *, int>; // a node and its depth

    explicit Walk(AChannelInfo *top, int depth = 0)
        : m_current(nullptr, depth)
        , m_pending{{top, depth}}
    {}

    // False after the last node.
    bool next()
    {
        if (m_current.first) {
            const QList<AChannelInfo *> &children = m_current.first->m_children;
            for (auto child = children.crbegin(); child != children.crend(); ++child)
                m_pending.emplace_back(*child, m_current.second + 1);
        }
        if (m_pending.empty())
            return false;
        m_current = m_pending.back();
        m_pending.pop_back();
        return true;
    }

    AChannelInfo *node() const { return m_current.first; }
    int depth() const { return m_current.second; }

private:
    Step m_current;
    std::vector<Step> m_pending;
};
