#include "benchmarks/channelplan.h"

#include <channel/achannelinfo.h>
#include <channel/achannelinfomodel.h>

#include <QtGui/QStandardItemModel>

#include <benchmark/benchmark.h>

#include <memory>
#include <random>
#include <vector>

// The channel model under a view that shows, scrolls and sorts very many siblings.

using namespace channelplan;

namespace {

constexpr int kSiblings = 100000;
constexpr int kColumns = 11;

// In a random order by every column.
std::unique_ptr<AChannelInfo> siblings(int count)
{
    auto root = neighbours(shuffled(count), 500);
    std::mt19937 random(3);
    for (int row = 0; row < count; ++row) {
        AChannelInfo *node = root->child(row);
        const unsigned number = random();
        node->setData(AChannelInfo::ColumnName, QStringLiteral("Channel %1").arg(number % 50000));
        node->setData(AChannelInfo::ColumnType, 2 << (number % 5));
        node->setData(AChannelInfo::ColumnSelectable, number % 3 == 0);
        node->setData(AChannelInfo::ColumnColor, QColor::fromRgb(number & 0xffffff));
        node->setData(AChannelInfo::ColumnProfileId, QStringLiteral("profile-%1").arg(number % 100));
        node->setData(AChannelInfo::ColumnComment, QStringLiteral("Comment %1").arg(number));
        node->setData(AChannelInfo::ColumnAutoChannelDefinition,
                      QVariantList{QVariantMap{{QStringLiteral("count"), static_cast<int>(number % 100)}}});
        node->setData(AChannelInfo::ColumnMirrorEntryFreq, static_cast<qlonglong>(number));
    }
    return root;
}

// What a view asks for a cell, and a proxy or a delegate for the way up. `data` at any row of a thousand siblings and
// of a hundred thousand: the time for one may at most double.
void scroll(benchmark::State &state)
{
    const auto count = static_cast<int>(state.range(0));
    constexpr int kRowsShown = 50;
    AChannelInfoModel model(nullptr, nullptr);
    model.setModelRoot(siblings(count).release());
    std::mt19937 random(4);
    for (auto _ : state) {
        const int first = static_cast<int>(random() % static_cast<unsigned>(count - kRowsShown));
        for (int row = first; row < first + kRowsShown; ++row) {
            for (int column = 0; column < kColumns; ++column) {
                const QModelIndex index = model.index(row, column);
                benchmark::DoNotOptimize(index.data(Qt::DisplayRole));
                benchmark::DoNotOptimize(index.data(Qt::BackgroundRole));
                benchmark::DoNotOptimize(index.parent());
            }
        }
    }
    state.SetItemsProcessed(state.iterations() * kRowsShown * kColumns);
}

// The way up from nodes that have many siblings themselves: the row of each parent is asked. One row is removed at
// the front before each look.
void climb(benchmark::State &state)
{
    const auto count = static_cast<int>(state.range(0));
    AChannelInfoModel model(nullptr, nullptr);
    for (auto _ : state) {
        state.PauseTiming();
        auto root = neighbours(shuffled(count), 500);
        for (int row = 0; row < count; ++row)
            addRange(root->child(row), 0, 1, QString());
        delete model.setModelRoot(root.release());
        state.ResumeTiming();
        for (int left = count - 1; left > count / 2; --left) {
            model.removeItem(model.index(0, 0), true);
            const QModelIndex parent = model.index(0, 0, model.index(left / 2, 0)).parent();
            if (parent.row() != left / 2)
                state.SkipWithError("not its row");
        }
    }
    state.SetItemsProcessed(state.iterations() * (count / 2));
}

// The rows of sortModel as a table of Qt's own, with the values of the columns, and a twelfth one that brings the
// first order back.
class Table
{
public:
    Table()
    {
        const auto root = siblings(kSiblings);
        for (int row = 0; row < kSiblings; ++row) {
            QList<QStandardItem *> items;
            for (int column = 0; column <= kColumns; ++column) {
                items.append(new QStandardItem);
                items.last()->setData(column < kColumns ? root->child(row)->data(column) : QVariant(row),
                                      Qt::DisplayRole);
            }
            m_model.appendRow(items);
        }
    }
    QStandardItemModel &inFirstOrder()
    {
        m_model.sort(kColumns);
        return m_model;
    }

private:
    QStandardItemModel m_model;
};

void sortModel(benchmark::State &state)
{
    const auto column = static_cast<int>(state.range(0));
    const auto root = siblings(kSiblings);
    AChannelInfoModel model(nullptr, nullptr);
    for (auto _ : state) {
        state.PauseTiming();
        delete model.setModelRoot(new AChannelInfo(*root));
        state.ResumeTiming();
        model.sort(column, Qt::AscendingOrder);
    }
}

// The peer of sortModel.
void sortStandardItemModel(benchmark::State &state)
{
    static Table &table = *new Table; // kept to the end: deleting it searches the siblings for each item
    const auto column = static_cast<int>(state.range(0));
    for (auto _ : state) {
        state.PauseTiming();
        QStandardItemModel &model = table.inFirstOrder();
        state.ResumeTiming();
        model.sort(column, Qt::AscendingOrder);
    }
}

} // namespace

BENCHMARK(scroll)->Arg(1000)->Arg(kSiblings)->Unit(benchmark::kMicrosecond);
BENCHMARK(climb)->Arg(1000)->Arg(kSiblings)->Unit(benchmark::kMillisecond);
BENCHMARK(sortModel)->DenseRange(0, kColumns - 1)->Unit(benchmark::kMillisecond);
BENCHMARK(sortStandardItemModel)->DenseRange(0, kColumns - 1)->Unit(benchmark::kMillisecond);

BENCHMARK_MAIN();
