#include "benchmarks/channelplan.h"

#include <channel/achannelinfo.h>
#include <core/aprofile.h>

#include <QtCore/QFile>
#include <QtCore/QTemporaryDir>
#include <QtXml/QDomDocument>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <memory>
#include <random>
#include <vector>

// The channel plan at sizes beyond any real one. Each benchmark stands beside the peer or the smaller size that it is
// measured against; docs/performance.md states the limits.

using namespace channelplan;

namespace {

std::unique_ptr<AChannelInfo> rootWithDefinition(int count)
{
    auto root = emptyRoot();
    root->setChannelDefinitions({{{QStringLiteral("start"), QStringLiteral("100 MHz")},
                                  {QStringLiteral("width"), QStringLiteral("12.5 kHz")},
                                  {QStringLiteral("space"), QStringLiteral("0 Hz")},
                                  {QStringLiteral("count"), count},
                                  {QStringLiteral("first"), 1},
                                  {QStringLiteral("step"), 1}}});
    return root;
}

// 10^4 against 10^6: the time per channel may at most double.
void expandDefinition(benchmark::State &state)
{
    const auto count = static_cast<int>(state.range(0));
    for (auto _ : state) {
        state.PauseTiming();
        auto root = rootWithDefinition(count);
        state.ResumeTiming();
        root->processChannelDefinitions(true, false);
        state.PauseTiming();
        root.reset();
        state.ResumeTiming();
    }
    state.SetItemsProcessed(state.iterations() * count);
}

void deleteTree(benchmark::State &state)
{
    const auto count = static_cast<int>(state.range(0));
    for (auto _ : state) {
        state.PauseTiming();
        auto root = rootWithDefinition(count);
        root->processChannelDefinitions(true, false);
        state.ResumeTiming();
        root.reset();
    }
    state.SetItemsProcessed(state.iterations() * count);
}

void clearExpandedChannels(benchmark::State &state)
{
    const auto count = static_cast<int>(state.range(0));
    for (auto _ : state) {
        state.PauseTiming();
        auto root = rootWithDefinition(count);
        addRange(root.get(), 1, 2, QStringLiteral("kept"));
        root->processChannelDefinitions(true, false);
        state.ResumeTiming();
        benchmark::DoNotOptimize(root->clearExpandedAutoChannels());
    }
    state.SetItemsProcessed(state.iterations() * count);
}

// Every removal with a look at the row of a node behind it, as views do it.
void askRowsWhileRemoving(benchmark::State &state, int (*victim)(int count, std::mt19937 &random))
{
    const auto count = static_cast<int>(state.range(0));
    std::mt19937 random(2);
    for (auto _ : state) {
        state.PauseTiming();
        auto root = neighbours(shuffled(count), 500);
        state.ResumeTiming();
        for (int left = count; left > 1; --left) {
            delete root->child(victim(left, random));
            const int asked = static_cast<int>(random() % static_cast<unsigned>(left - 1));
            if (root->child(asked)->row() != asked)
                state.SkipWithError("not its row");
        }
    }
    state.SetItemsProcessed(state.iterations() * count);
}

int firstChild(int count, std::mt19937 &random)
{
    Q_UNUSED(count)
    Q_UNUSED(random)
    return 0;
}

int secondChild(int count, std::mt19937 &random)
{
    Q_UNUSED(random)
    return count > 2 ? 1 : 0;
}

int anyChild(int count, std::mt19937 &random)
{
    return static_cast<int>(random() % static_cast<unsigned>(count));
}

constexpr int kStackedChildren = 20000;
constexpr int kStackedLevels = 40;

// Every child overlaps the 39 that follow it, so the children need 40 levels.
std::unique_ptr<AChannelInfo> overlappingChildren()
{
    return neighbours(shuffled(kStackedChildren), kStackedLevels * 1000LL);
}

void stackOverlappingChildren(benchmark::State &state)
{
    const auto root = overlappingChildren();
    for (auto _ : state) {
        const AChannelInfo::FlatList list = root->stackedChannels(0);
        if (list.size() != kStackedChildren + 1)
            state.SkipWithError("children are missing");
        benchmark::DoNotOptimize(list);
    }
}

// The peer of stackOverlappingChildren.
void sortOverlappingChildren(benchmark::State &state)
{
    const auto root = overlappingChildren();
    std::vector<AChannelInfo *> children;
    for (int row = 0; row < root->childCount(); ++row)
        children.push_back(root->child(row));
    for (auto _ : state) {
        std::vector<AChannelInfo *> sorted = children;
        std::stable_sort(sorted.begin(), sorted.end(), [](const AChannelInfo *a, const AChannelInfo *b) {
            return a->beginFrequency() < b->beginFrequency();
        });
        benchmark::DoNotOptimize(sorted.data());
    }
}

struct ShuffledPair
{
    explicit ShuffledPair(int count)
        : left(neighbours(shuffled(count), 500))
    {
        std::vector<int> order = shuffled(count);
        std::reverse(order.begin(), order.end());
        right = neighbours(order, 500);
    }
    std::unique_ptr<AChannelInfo> left;
    std::unique_ptr<AChannelInfo> right;
};

// Growth with the number of children: a comparison of all pairs would grow by 16 from 500 to 2,000.
void compareShuffledTrees(benchmark::State &state)
{
    const ShuffledPair trees(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        if (!(*trees.left == *trees.right))
            state.SkipWithError("the trees differ");
    }
}

// The peer of compareShuffledTrees: each child against the other side's children in order.
void compareShuffledTreesByAllPairs(benchmark::State &state)
{
    const ShuffledPair trees(static_cast<int>(state.range(0)));
    const int count = trees.left->childCount();
    for (auto _ : state) {
        for (int i = 0; i < count; ++i) {
            int k = 0;
            while (k < count && !(*trees.left->child(i) == *trees.right->child(k)))
                ++k;
            if (k == count)
                state.SkipWithError("the trees differ");
        }
    }
}

// 100,000 nodes: 100 groups of 1,000 ranges. The name is that of the last one.
std::unique_ptr<AChannelInfo> plan()
{
    auto root = emptyRoot();
    for (int g = 0; g < 100; ++g) {
        AChannelInfo *group =
            addRange(root.get(), g * 1000000LL, (g + 1) * 1000000LL, QStringLiteral("Group %1").arg(g));
        for (int c = 0; c < 999; ++c)
            addRange(group, g * 1000000LL + c * 1000, g * 1000000LL + c * 1000 + 1000,
                     QStringLiteral("Channel %1").arg(c));
    }
    return root;
}

QString lastName()
{
    return QStringLiteral("Group 99 Channel 998");
}

void findByQualifiedName(benchmark::State &state)
{
    const auto root = plan();
    const QString wanted = lastName();
    for (auto _ : state) {
        if (!root->findByName(wanted))
            state.SkipWithError("not found");
    }
}

// The peer of findByQualifiedName: the texts are built and compared.
void findByBuiltNames(benchmark::State &state)
{
    const auto root = plan();
    const QString wanted = lastName();
    for (auto _ : state) {
        const AChannelInfo *found = nullptr;
        const AChannelInfo::FlatList nodes = root->channels(0);
        for (const auto &node : nodes) {
            if (node.first->label() == wanted || node.first->name(false) == wanted) {
                found = node.first;
                break;
            }
        }
        if (!found)
            state.SkipWithError("not found");
    }
}

// A profile of about 50 MB.
class BigProfile
{
public:
    BigProfile()
        : m_fileName(m_directory.filePath(QStringLiteral("big.profile")))
    {
        QByteArray text = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<profile id=\"big\">\n<begin>0</begin>\n"
                          "<end>100000</end>\n<channels>\n";
        for (int i = 0; text.size() < 50000000; ++i) {
            const QByteArray begin = QByteArray::number(i / 10.0, 'f', 1);
            const QByteArray end = QByteArray::number((i + 1) / 10.0, 'f', 1);
            text += "  <range label=\"Channel " + QByteArray::number(i) +
                    "\" type=\"channel\" selectable=\"1\">\n    <begin>" + begin + " MHz</begin>\n    <end>" + end +
                    " MHz</end>\n    <color>#336699</color>\n  </range>\n";
        }
        text += "</channels>\n</profile>\n";
        QFile file(m_fileName);
        if (!file.open(QIODevice::WriteOnly) || file.write(text) != text.size())
            qFatal("could not write %s", qPrintable(m_fileName));
    }
    const QString &fileName() const { return m_fileName; }

private:
    QTemporaryDir m_directory;
    QString m_fileName;
};

const BigProfile &bigProfile()
{
    static const BigProfile profile;
    return profile;
}

void readProfileToTree(benchmark::State &state)
{
    const QString fileName = bigProfile().fileName();
    for (auto _ : state) {
        const std::unique_ptr<AProfile> profile(AProfile::fromFile(fileName));
        auto root = emptyRoot();
        AChannelInfo::fromProfile(profile.get(), root.get(), true, false);
        if (root->channels(0).size() < 200000)
            state.SkipWithError("ranges are missing");
    }
}

// The peer of readProfileToTree.
void parseWithQDomDocument(benchmark::State &state)
{
    const QString fileName = bigProfile().fileName();
    for (auto _ : state) {
        QFile file(fileName);
        QDomDocument document;
        if (!file.open(QIODevice::ReadOnly) || !document.setContent(&file))
            state.SkipWithError("not parsed");
    }
}

} // namespace

BENCHMARK(expandDefinition)->Arg(10000)->Arg(1000000)->Unit(benchmark::kMillisecond);
BENCHMARK(deleteTree)->Arg(10000)->Arg(1000000)->Unit(benchmark::kMillisecond);
BENCHMARK(clearExpandedChannels)->Arg(10000)->Arg(1000000)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(askRowsWhileRemoving, first, firstChild)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(askRowsWhileRemoving, second, secondChild)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(askRowsWhileRemoving, any, anyChild)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);
BENCHMARK(sortOverlappingChildren)->Unit(benchmark::kMicrosecond);
BENCHMARK(stackOverlappingChildren)->Unit(benchmark::kMicrosecond);
BENCHMARK(compareShuffledTrees)->Arg(500)->Arg(2000)->Unit(benchmark::kMicrosecond);
BENCHMARK(compareShuffledTreesByAllPairs)->Arg(500)->Arg(2000)->Unit(benchmark::kMicrosecond);
BENCHMARK(findByQualifiedName)->Unit(benchmark::kMicrosecond);
BENCHMARK(findByBuiltNames)->Unit(benchmark::kMicrosecond);
BENCHMARK(parseWithQDomDocument)->Unit(benchmark::kMillisecond);
BENCHMARK(readProfileToTree)->Unit(benchmark::kMillisecond);

BENCHMARK_MAIN();
