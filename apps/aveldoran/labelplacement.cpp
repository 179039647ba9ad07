#include "apps/aveldoran/labelplacement.h"

namespace {

// Labels that have been pushed against each other. Without the distances between them they stand at one place.
struct Group
{
    int count;
    double sum; // of the places wanted

    double place() const { return sum / count; }
};

} // namespace

QVector<double> placeLabels(const QVector<double> &wanted, double distance, double begin, double end)
{
    const int count = wanted.size();
    if (count == 0)
        return {};
    if (count > 1)
        distance = qMin(distance, (end - begin) / (count - 1));

    // With the distances taken off, the places have only to ascend: groups that don't are joined at their mean.
    QVector<Group> groups;
    for (int i = 0; i < count; ++i) {
        groups.append({1, wanted[i] - i * distance});
        while (groups.size() > 1 && groups[groups.size() - 2].place() >= groups.last().place()) {
            const Group last = groups.takeLast();
            groups.last().count += last.count;
            groups.last().sum += last.sum;
        }
    }

    QVector<double> places;
    places.reserve(count);
    const double lastPlace = qMax(begin, end - (count - 1) * distance);
    for (const Group &group : qAsConst(groups)) {
        for (int i = 0; i < group.count; ++i)
            places.append(qBound(begin, group.place(), lastPlace) + places.size() * distance);
    }
    return places;
}
