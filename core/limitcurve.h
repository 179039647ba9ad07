#pragma once

#include "core/alimit.h"

#include <vector>

// The curve of a limit, arranged for look-ups in O(log n). Private to core/.
class LimitCurve
{
public:
    // O(n log n), however the sections overlap.
    LimitCurve(const QVector<ALimit::Section> &sections, const QVector<ALimit::Level> &levels);

    // False, with *value untouched, where nothing governs. `inRange`: the limit contains the frequency.
    bool valueAt(const AFrequency &frequency, bool inRange, double *value) const;

private:
    // An edge of sections, with the sections that govern there and from there to the next edge. Both can differ, as
    // sections include their ends. -1 is none.
    struct Edge
    {
        AFrequency frequency;
        int section = -1;
        int sectionBehind = -1;
    };

    void arrangeSections();
    int sectionAt(const AFrequency &frequency) const;

    QVector<ALimit::Section> m_sections; // in document order
    std::vector<Edge> m_edges;           // by frequency, which is unique
    std::vector<ALimit::Level> m_levels; // by frequency, then in document order
};
