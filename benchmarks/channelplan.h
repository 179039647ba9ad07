#pragma once

#include <channel/achannelinfo.h>

#include <algorithm>
#include <memory>
#include <numeric>
#include <random>
#include <vector>

// What the benchmarks of the channel plan build trees with.
namespace channelplan {

inline AFrequency hertz(qint64 value)
{
    return AFrequency::fromValue(static_cast<long long>(value), AFrequency::Hz);
}

inline AChannelInfo *addRange(AChannelInfo *parent, qint64 begin, qint64 end, const QString &label)
{
    auto *node = new AChannelInfo(parent, AChannelInfo::Generic, hertz(begin), hertz(end), label, false);
    parent->appendChild(node);
    return node;
}

inline std::unique_ptr<AChannelInfo> emptyRoot()
{
    return std::make_unique<AChannelInfo>(nullptr, AChannelInfo::Generic, AFrequency(), AFrequency(), QString(), false);
}

inline std::vector<int> shuffled(int count)
{
    std::vector<int> order(static_cast<std::size_t>(count));
    std::iota(order.begin(), order.end(), 0);
    std::shuffle(order.begin(), order.end(), std::mt19937(1));
    return order;
}

inline std::unique_ptr<AChannelInfo> neighbours(const std::vector<int> &order, qint64 width)
{
    auto root = emptyRoot();
    for (const int i : order)
        addRange(root.get(), i * 1000LL, i * 1000LL + width, QString::number(i));
    return root;
}

} // namespace channelplan
