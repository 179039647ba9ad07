#include "core/limitcurve.h"

#include "core/interpolation.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <numeric>
#include <queue>

namespace {

// The value at a frequency from `begin` up to `end`, at which `endValue` holds unless a step keeps the begin value.
double interpolated(unsigned int interpolation, const AFrequency &begin, double beginValue, const AFrequency &end,
                    double endValue, const AFrequency &frequency)
{
    if (interpolation == ALimit::Step || frequency == begin)
        return beginValue;
    if (frequency == end)
        return endValue;
    double position = positionBetween(begin, end, frequency);
    if (interpolation == ALimit::Logarithmic && begin > AFrequency())
        position = std::log1p((frequency - begin) / begin) / std::log1p((end - begin) / begin);
    return valueBetween(beginValue, endValue, position);
}

} // namespace

LimitCurve::LimitCurve(const QVector<ALimit::Section> &sections, const QVector<ALimit::Level> &levels)
    : m_sections(sections)
    , m_levels(levels.begin(), levels.end())
{
    std::stable_sort(m_levels.begin(), m_levels.end(),
                     [](const ALimit::Level &a, const ALimit::Level &b) { return a.frequency < b.frequency; });
    arrangeSections();
}

bool LimitCurve::valueAt(const AFrequency &frequency, bool inRange, double *value) const
{
    if (const int index = sectionAt(frequency); index >= 0) {
        const ALimit::Section &section = m_sections.at(index);
        *value = interpolated(section.interpolation, section.begin, section.beginValue, section.end, section.endValue,
                              frequency);
        return true;
    }
    const auto right =
        std::upper_bound(m_levels.begin(), m_levels.end(), frequency,
                         [](const AFrequency &f, const ALimit::Level &level) { return f < level.frequency; });
    const bool hasLeft = right != m_levels.begin();
    const bool hasRight = right != m_levels.end();
    if (hasLeft && (hasRight || std::prev(right)->frequency == frequency)) {
        const auto left = std::prev(right);
        const ALimit::Level &end = hasRight ? *right : *left;
        *value = interpolated(left->interpolation, left->frequency, left->value, end.frequency, end.value, frequency);
        return true;
    }
    if (m_levels.empty() || !inRange)
        return false;
    *value = hasLeft ? m_levels.back().value : m_levels.front().value;
    return true;
}

void LimitCurve::arrangeSections()
{
    std::vector<int> byBegin; // sections that govern something
    for (int i = 0; i < m_sections.size(); ++i) {
        if (m_sections.at(i).begin <= m_sections.at(i).end) {
            byBegin.push_back(i);
            m_edges.push_back({m_sections.at(i).begin});
            m_edges.push_back({m_sections.at(i).end});
        }
    }
    std::sort(byBegin.begin(), byBegin.end(),
              [this](int a, int b) { return m_sections.at(a).begin < m_sections.at(b).begin; });
    std::sort(m_edges.begin(), m_edges.end(), [](const Edge &a, const Edge &b) { return a.frequency < b.frequency; });
    m_edges.erase(std::unique(m_edges.begin(), m_edges.end(),
                              [](const Edge &a, const Edge &b) { return a.frequency == b.frequency; }),
                  m_edges.end());

    // The sections that have begun, first in document order on top; one that has ended goes when it comes to the top.
    std::priority_queue<int, std::vector<int>, std::greater<>> open;
    const auto firstOpen = [&](auto hasEnded) {
        while (!open.empty() && hasEnded(m_sections.at(open.top())))
            open.pop();
        return open.empty() ? -1 : open.top();
    };
    auto next = byBegin.begin();
    for (Edge &edge : m_edges) {
        for (; next != byBegin.end() && m_sections.at(*next).begin == edge.frequency; ++next)
            open.push(*next);
        edge.section = firstOpen([&](const ALimit::Section &section) { return section.end < edge.frequency; });
        edge.sectionBehind = firstOpen([&](const ALimit::Section &section) { return section.end <= edge.frequency; });
    }
}

int LimitCurve::sectionAt(const AFrequency &frequency) const
{
    const auto above = std::upper_bound(m_edges.begin(), m_edges.end(), frequency,
                                        [](const AFrequency &f, const Edge &edge) { return f < edge.frequency; });
    if (above == m_edges.begin())
        return -1;
    const Edge &edge = *std::prev(above);
    return edge.frequency == frequency ? edge.section : edge.sectionBehind;
}
