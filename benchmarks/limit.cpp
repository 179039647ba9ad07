#include <core/alimit.h>
#include <limit/alimitmodel.h>

#include <QtCore/QFile>
#include <QtCore/QTemporaryDir>
#include <QtGui/QStandardItemModel>
#include <QtXml/QDomDocument>

#include <benchmark/benchmark.h>

#include <memory>

// Limit files at sizes beyond any real one. Each benchmark stands beside the peer or the smaller size that it is
// measured against; docs/performance.md states the limits.

namespace {

constexpr int kPiecesPerLimit = 20;

// A file of that many limits, half of their pieces sections.
class LimitFile
{
public:
    explicit LimitFile(int limits)
        : m_fileName(m_directory.filePath(QStringLiteral("limits.xml")))
    {
        QByteArray text = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<data>\n";
        for (int limit = 0; limit < limits; ++limit) {
            text += "    <limit name=\"Limit " + QByteArray::number(limit) +
                    "\" begin=\"30000000\" end=\"1000000000\" measureunit=\"8\" color=\"#cc0000\">\n";
            for (int piece = 0; piece < kPiecesPerLimit / 2; ++piece) {
                const QByteArray begin = QByteArray::number(30000000 + piece * 50000000);
                const QByteArray end = QByteArray::number(55000000 + piece * 50000000);
                text += "        <section beginFrequency=\"" + begin + "\" endFrequency=\"" + end +
                        "\" beginValue=\"30.5\" endValue=\"37\" interpolation=\"2\"/>\n";
            }
            for (int piece = 0; piece < kPiecesPerLimit / 2; ++piece)
                text += "        <level frequency=\"" + QByteArray::number(60000000 + piece * 50000000) +
                        "\" interpolation=\"0\">40.25</level>\n";
            text += "    </limit>\n";
        }
        text += "</data>\n";
        QFile file(m_fileName);
        if (!file.open(QIODevice::WriteOnly) || file.write(text) != text.size())
            qFatal("could not write %s", qPrintable(m_fileName));
    }
    const QString &fileName() const { return m_fileName; }
    QString otherName() const { return m_directory.filePath(QStringLiteral("saved.xml")); }

private:
    QTemporaryDir m_directory;
    QString m_fileName;
};

// 1,000 against 10,000 limits: the time per limit may at most double.
void loadModel(benchmark::State &state)
{
    const auto limits = static_cast<int>(state.range(0));
    const LimitFile file(limits);
    for (auto _ : state) {
        ALimitModel model;
        if (!model.loadFromFile(file.fileName()) || model.rowCount() != limits)
            state.SkipWithError("limits are missing");
    }
    state.SetItemsProcessed(state.iterations() * limits);
}

// The peer of loadModel: Qt's own parse, and as many items with a text each.
void parseAndFillPlainItems(benchmark::State &state)
{
    constexpr int kItemsOfLimit = 8;
    constexpr int kItemsOfSection = 5;
    constexpr int kItemsOfLevel = 3;
    const auto limits = static_cast<int>(state.range(0));
    const LimitFile file(limits);
    const QString text = QStringLiteral("30.5");
    const auto row = [&text](int empty, int filled) {
        QList<QStandardItem *> items;
        for (int i = 0; i < empty; ++i)
            items.append(nullptr);
        for (int i = 0; i < filled; ++i)
            items.append(new QStandardItem(text));
        return items;
    };
    for (auto _ : state) {
        QFile source(file.fileName());
        QDomDocument document;
        if (!source.open(QIODevice::ReadOnly) || !document.setContent(source.readAll(), false))
            state.SkipWithError("not parsed");
        QStandardItemModel model;
        for (int limit = 0; limit < limits; ++limit) {
            const QList<QStandardItem *> cells = row(0, kItemsOfLimit);
            for (int piece = 0; piece < kPiecesPerLimit; ++piece)
                cells.first()->appendRow(row(6, piece % 2 == 0 ? kItemsOfSection : kItemsOfLevel));
            model.appendRow(cells);
        }
        benchmark::DoNotOptimize(model.rowCount());
    }
    state.SetItemsProcessed(state.iterations() * limits);
}

void saveModel(benchmark::State &state)
{
    const auto limits = static_cast<int>(state.range(0));
    const LimitFile file(limits);
    ALimitModel model;
    if (!model.loadFromFile(file.fileName()))
        state.SkipWithError("not loaded");
    for (auto _ : state) {
        if (!model.saveToFile(file.otherName()))
            state.SkipWithError("not saved");
    }
    state.SetItemsProcessed(state.iterations() * limits);
}

void readLimits(benchmark::State &state)
{
    const auto limits = static_cast<int>(state.range(0));
    const LimitFile file(limits);
    for (auto _ : state) {
        QList<const ALimit *> list;
        if (!ALimit::readAll(file.fileName(), list, nullptr) || list.size() != limits)
            state.SkipWithError("limits are missing");
        qDeleteAll(list);
    }
    state.SetItemsProcessed(state.iterations() * limits);
}

AFrequency kilohertz(int value)
{
    return AFrequency::fromValue(value, AFrequency::kHz);
}

// A curve of sections and levels in turn. 100 against 10,000 pieces: the steps of a look-up double, and it leaves the
// cache, so it may take four times as long.
void askValue(benchmark::State &state)
{
    const auto pieces = static_cast<int>(state.range(0));
    ALimit limit;
    for (int i = 0; i < pieces; ++i) {
        if (i % 2 == 0)
            limit.addSection({kilohertz(i * 10 + 1), kilohertz(i * 10 + 9), 1.0, 2.0, ALimit::Logarithmic});
        else
            limit.addLevel({kilohertz(i * 10 + 5), 3.0, ALimit::Linear});
    }
    bool ok = false;
    limit.valueAt(kilohertz(1), &ok); // sorts the curve
    int at = 0;
    for (auto _ : state) {
        at = (at + 7919) % (pieces * 10);
        benchmark::DoNotOptimize(limit.valueAt(kilohertz(at + 1), &ok));
    }
    if (!ok)
        state.SkipWithError("nothing governs");
}

} // namespace

BENCHMARK(parseAndFillPlainItems)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond);
BENCHMARK(loadModel)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond);
BENCHMARK(saveModel)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond);
BENCHMARK(readLimits)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond);
BENCHMARK(askValue)->Arg(100)->Arg(10000);

BENCHMARK_MAIN();
