#pragma once

#include <QtCore/QList>
#include <QtCore/QMap>

#include <memory>
#include <vector>

// The rules of numbering and order, one by one and without regard to cost, for comparison with ASpectrumMarkerList.
class PlainMarkerList
{
public:
    struct Marker
    {
        int id;
        int type;
        int trace;
        int index;
    };

    void add(int id, int type, int trace)
    {
        m_markers.push_back(std::make_unique<Marker>(Marker{id, type, trace, 0}));
        Marker *marker = m_markers.back().get();
        m_traces[trace].append(marker);
        marker->index = ++m_counters[family(type)];
        rebuild(type);
    }

    void remove(int id)
    {
        Marker *marker = find(id);
        m_traces[marker->trace].removeOne(marker);
        if (m_traces[marker->trace].isEmpty())
            m_traces.remove(marker->trace);
        --m_counters[family(marker->type)];
        rebuild(marker->type);
    }

    void changeType(int id, int type)
    {
        Marker *marker = find(id);
        m_traces[marker->trace].removeOne(marker);
        --m_counters[family(marker->type)];
        rebuild(marker->type);
        marker->type = type;
        m_traces[marker->trace].append(marker);
        marker->index = ++m_counters[family(type)];
        rebuild(type);
    }

    void changeTrace(int id, int trace)
    {
        Marker *marker = find(id);
        m_traces[marker->trace].removeOne(marker);
        if (m_traces[marker->trace].isEmpty())
            m_traces.remove(marker->trace);
        marker->trace = trace;
        m_traces[trace].append(marker);
        rebuild(marker->type);
    }

    QList<Marker *> all() const
    {
        QMap<int, Marker *> sorted;
        for (const QList<Marker *> &markers : m_traces)
            for (Marker *marker : markers)
                sorted.insert(marker->index + marker->trace * 10 + family(marker->type) * 10000, marker);
        return sorted.values();
    }

    const QMap<int, QList<Marker *>> &traces() const { return m_traces; }

private:
    static int family(int type)
    {
        constexpr int families[] = {1, 2, 1, 2, 1, 2, 3, 4};
        return type >= 0 && type < 8 ? families[type] : -1;
    }

    Marker *find(int id) const
    {
        for (const auto &marker : m_markers)
            if (marker->id == id)
                return marker.get();
        return nullptr;
    }

    void rebuild(int type)
    {
        QMap<int, Marker *> sorted;
        for (const QList<Marker *> &markers : qAsConst(m_traces))
            for (Marker *marker : markers)
                if (marker->type == type)
                    sorted.insert(marker->index + marker->trace * 10 + family(type) * 1000, marker);
        int count = 0;
        for (Marker *marker : qAsConst(sorted)) {
            marker->index = count++;
            m_traces[marker->trace].removeOne(marker);
        }
        for (auto it = m_traces.begin(); it != m_traces.end(); ++it) {
            int position = 0;
            while (position < it->size() && it->at(position)->type <= type)
                ++position;
            for (Marker *marker : qAsConst(sorted))
                if (marker->trace == it.key())
                    it->insert(position++, marker);
        }
    }

    std::vector<std::unique_ptr<Marker>> m_markers;
    QMap<int, QList<Marker *>> m_traces;
    QMap<int, int> m_counters; // by family
};
