#include <channel/achannelinfo.h>
#include <channel/efisimport.h>

#include <QtCore/QFile>
#include <QtCore/QTemporaryDir>
#include <QtCore/QTextStream>
#include <QtXml/QDomDocument>

#include <benchmark/benchmark.h>

#include <memory>
#include <random>

// The channel plan's files at sizes beyond any real one. Each benchmark stands beside the peer or the smaller size that
// it is measured against; docs/performance.md states the limits.

namespace {

std::unique_ptr<AChannelInfo> emptyRoot()
{
    return std::make_unique<AChannelInfo>(nullptr, AChannelInfo::Generic, AFrequency(), AFrequency(), QString(), false);
}

// Lines of about 100 bytes, every other one with two directions, one in eight expired, in no order.
QByteArray efisLines(int count)
{
    std::mt19937 random(1);
    QByteArray text =
        "\"Two directions\";\"Range\";\"Uplink\";\"Region\";\"Name\";\"From\";\"To\";\"Use\";\"Source\";\"\"\n";
    for (int i = 0; i < count; ++i) {
        const double begin = double(random() % 30000000) / 1000;
        const double uplink = begin + 45;
        const bool twoDirections = i % 2 == 0;
        const auto range = [](double from) {
            return '"' + QByteArray::number(from, 'f', 3) + " - " + QByteArray::number(from + 5, 'f', 3) + " MHz\"";
        };
        text += (twoDirections ? QByteArray("\"yes\";") : QByteArray("\"no\";")) + range(begin) + ';' +
                (twoDirections ? range(uplink) : QByteArray("\"\"")) + ";\"CEPT\";\"Allocation " +
                QByteArray::number(i) + "\";\"2001-01-01\";\"" + (i % 8 == 7 ? "2019" : "2199") +
                "-12-31\";\"mobile\";\"ECA\";\"\"\n";
    }
    return text;
}

class EfisFile
{
public:
    explicit EfisFile(int lines)
        : m_file(m_directory.filePath(QStringLiteral("efis.csv")))
    {
        const QByteArray text = efisLines(lines);
        if (!m_file.open(QIODevice::ReadWrite) || m_file.write(text) != text.size())
            qFatal("could not write %s", qPrintable(m_file.fileName()));
    }
    QFile *rewound()
    {
        m_file.seek(0);
        return &m_file;
    }

private:
    QTemporaryDir m_directory;
    QFile m_file;
};

// 25,000 against 100,000 lines: the time per line may not grow.
void importEfis(benchmark::State &state)
{
    EfisFile file(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        auto root = emptyRoot();
        if (!AChannelInfo::fromEfisCSV(file.rewound(), root.get()))
            state.SkipWithError("nothing was imported");
        state.PauseTiming();
        root.reset();
        state.ResumeTiming();
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

// The peer of importEfis.
void readAndSplitLines(benchmark::State &state)
{
    EfisFile file(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        QFile *io = file.rewound();
        while (!io->atEnd()) {
            const QList<QByteArray> fields = io->readLine().split(';');
            benchmark::DoNotOptimize(fields.size());
        }
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

std::unique_ptr<AChannelInfo> importedTree(int lines)
{
    EfisFile file(lines);
    auto root = emptyRoot();
    if (!AChannelInfo::fromEfisCSV(file.rewound(), root.get()))
        qFatal("nothing was imported");
    return root;
}

// 10,000 against 100,000 lines, so 14,000 against 140,000 ranges: the time per range may not grow.
void writeTree(benchmark::State &state)
{
    const auto root = importedTree(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        QDomDocument document;
        benchmark::DoNotOptimize(root->toDomNode(&document));
    }
    state.SetItemsProcessed(state.iterations() * root->channels(0).size());
}

// The peer of writeTree: the same document from Qt's own builder, without parsing a text.
void cloneWrittenTree(benchmark::State &state)
{
    const auto root = importedTree(static_cast<int>(state.range(0)));
    QDomDocument document;
    const QDomElement written = root->toDomNode(&document);
    for (auto _ : state)
        benchmark::DoNotOptimize(written.cloneNode(true));
    state.SetItemsProcessed(state.iterations() * root->channels(0).size());
}

} // namespace

BENCHMARK(readAndSplitLines)->Arg(25000)->Arg(100000)->Unit(benchmark::kMillisecond);
BENCHMARK(importEfis)->Arg(25000)->Arg(100000)->Unit(benchmark::kMillisecond);
BENCHMARK(cloneWrittenTree)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);
BENCHMARK(writeTree)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);

BENCHMARK_MAIN();
