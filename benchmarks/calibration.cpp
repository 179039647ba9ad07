#include <calibration/acalibrationobjectmodel.h>
#include <core/acalibrationdata.h>
#include <datamanager/adatamanager.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QTemporaryDir>
#include <QtWidgets/QApplication>
#include <QtWidgets/QTreeView>

#include <benchmark/benchmark.h>

#include <vector>

// Calibration files at sizes beyond any real one, and a registry of many objects. docs/performance.md states the
// limits.

namespace {

constexpr const char *kForms[] = {"xml", "caldata", "offsets"};

QList<ACalibrationData> table(int entries)
{
    ACalibrationData object(QStringLiteral("table"), ACalibrationData::Cable);
    for (int i = 0; i < entries; ++i) {
        const AFrequency frequency = AFrequency::fromValue(9000LL + i * 6000LL, AFrequency::Hz);
        object.addLevel(frequency, -0.001 * (i % 10000));
    }
    return {object};
}

// 100,000 against 1,000,000 entries: the time per entry may at most double.
void save(benchmark::State &state)
{
    const QTemporaryDir directory;
    const QString name = directory.filePath(QStringLiteral("a.") + QLatin1String(kForms[state.range(0)]));
    const QList<ACalibrationData> objects = table(static_cast<int>(state.range(1)));
    for (auto _ : state) {
        if (!ACalibrationData::saveAll(name, objects))
            state.SkipWithError("could not be saved");
    }
    state.SetItemsProcessed(state.iterations() * state.range(1));
}

void load(benchmark::State &state)
{
    const QTemporaryDir directory;
    const QString name = directory.filePath(QStringLiteral("a.") + QLatin1String(kForms[state.range(0)]));
    ACalibrationData::saveAll(name, table(static_cast<int>(state.range(1))));
    for (auto _ : state) {
        QList<ACalibrationData> objects;
        if (!ACalibrationData::readAll(name, objects, ACalibrationData::AnyType) || objects.size() != 1 ||
            objects.constFirst().level().size() != state.range(1))
            state.SkipWithError("could not be read");
    }
    state.SetItemsProcessed(state.iterations() * state.range(1));
}

// Reading one file of that many objects into the registry.
void addFile(benchmark::State &state)
{
    const QTemporaryDir directory;
    const QString name = directory.filePath(QStringLiteral("a.caldata"));
    QList<ACalibrationData> objects;
    for (int i = 0; i < state.range(0); ++i) {
        objects.append(ACalibrationData(QString::number(i), ACalibrationData::Cable));
        for (int k = 0; k < 10; ++k)
            objects.last().addLevel(AFrequency(QByteArray::number(k).constData()), k);
    }
    ACalibrationData::saveAll(name, objects);
    for (auto _ : state) {
        ADataManager manager;
        if (manager.addCalibrationFile(name, ACalibrationData::Cable).size() != state.range(0))
            state.SkipWithError("could not be read");
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

// Files of ten objects each, all of different labels.
void writeFiles(const QTemporaryDir &directory, int files)
{
    for (int i = 0; i < files; ++i) {
        QList<ACalibrationData> objects;
        for (int k = 0; k < 10; ++k) {
            objects.append(ACalibrationData(QStringLiteral("%1 of %2").arg(k).arg(i), ACalibrationData::Cable));
            objects.last().addLevel(AFrequency("1 MHz"), k);
        }
        ACalibrationData::saveAll(directory.filePath(QStringLiteral("%1.caldata").arg(i)), objects);
    }
}

void addFiles(benchmark::State &state)
{
    const QTemporaryDir directory;
    const int files = static_cast<int>(state.range(0));
    writeFiles(directory, files);
    for (auto _ : state) {
        ADataManager manager;
        if (manager.addCalibrationPath(directory.path(), ACalibrationData::Cable).size() != files * 10)
            state.SkipWithError("could not be read");
    }
    state.SetItemsProcessed(state.iterations() * files);
}

// Forgetting as many files, and their watches.
void clearFiles(benchmark::State &state)
{
    const QTemporaryDir directory;
    const int files = static_cast<int>(state.range(0));
    writeFiles(directory, files);
    for (auto _ : state) {
        state.PauseTiming();
        ADataManager manager;
        manager.addCalibrationPath(directory.path(), ACalibrationData::Cable);
        state.ResumeTiming();
        manager.clearCalibrationData(ACalibrationData::AllTypes);
    }
    state.SetItemsProcessed(state.iterations() * files);
}

// Looking up gains all over a table.
void valueAt(benchmark::State &state)
{
    const ACalibrationData object = table(static_cast<int>(state.range(0))).constFirst();
    const long long span = state.range(0) * 6000LL;
    std::vector<AFrequency> frequencies(4096);
    unsigned int seed = 1;
    for (AFrequency &frequency : frequencies) {
        seed = seed * 1664525U + 1013904223U;
        frequency.setValue(9000LL + static_cast<long long>(seed) * span / 4294967296LL, AFrequency::Hz);
    }
    double sum = 0.0;
    for (auto _ : state) {
        for (const AFrequency &frequency : frequencies)
            sum += object.valueAt(frequency, true);
    }
    benchmark::DoNotOptimize(sum);
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(frequencies.size()));
}

void addObjects(ADataManager *manager, int objects, int entries)
{
    for (int i = 0; i < objects; ++i) {
        ACalibrationData object(QStringLiteral("Object number %1").arg(i),
                                static_cast<ACalibrationData::CalibrationType>(i % 4));
        for (int k = 0; k < entries; ++k) {
            const AFrequency frequency = AFrequency::fromValue(1000000LL * (k + 1), AFrequency::Hz);
            object.addLevel(frequency, 0.1 * k);
        }
        manager->addCalibrationData(object, QStringLiteral("-"));
    }
}

// Opening all of a calibration editor: objects of a hundred entries each.
void expandView(benchmark::State &state)
{
    ADataManager *manager = ADataManager::instance();
    addObjects(manager, static_cast<int>(state.range(0)), 100);
    {
        ACalibrationObjectModel model;
        for (auto _ : state) {
            QTreeView view;
            view.setModel(&model);
            view.setRootIndex(model.index(0, 0));
            view.resize(400, 600);
            view.show();
            view.expandAll();
            QCoreApplication::processEvents();
        }
    }
    delete manager;
    state.SetItemsProcessed(state.iterations() * state.range(0) * 101);
}

// The gains of one object of so many entries, from the first to the last.
void modelColumn(benchmark::State &state)
{
    ADataManager *manager = ADataManager::instance();
    const int entries = static_cast<int>(state.range(0));
    addObjects(manager, 1, entries);
    {
        const ACalibrationObjectModel model;
        const QModelIndex object = model.index(0, 0, model.index(0, 0, model.index(0, 0)));
        for (auto _ : state) {
            for (int row = 0; row < entries; ++row)
                benchmark::DoNotOptimize(model.index(row, 1, object).data());
        }
    }
    delete manager;
    state.SetItemsProcessed(state.iterations() * entries);
}

// What a view asks for one cell of a table, among that many objects: each answer walks all labels.
void modelCell(benchmark::State &state)
{
    ADataManager *manager = ADataManager::instance();
    const int objects = static_cast<int>(state.range(0));
    addObjects(manager, objects, 1);
    {
        const ACalibrationObjectModel model;
        const QModelIndex type = model.index(ACalibrationData::Cable, 0, model.index(0, 0));
        const QModelIndex cell = model.index(0, 1, model.index(model.rowCount(type) / 2, 0, type));
        for (auto _ : state)
            benchmark::DoNotOptimize(cell.data());
    }
    delete manager;
}

} // namespace

BENCHMARK(save)->ArgsProduct({{0, 1, 2}, {100000, 1000000}})->Unit(benchmark::kMillisecond);
BENCHMARK(load)->ArgsProduct({{0, 1, 2}, {100000, 1000000}})->Unit(benchmark::kMillisecond);
BENCHMARK(addFile)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond);
BENCHMARK(addFiles)->Arg(250)->Arg(1000)->Arg(4000)->Unit(benchmark::kMillisecond);
BENCHMARK(clearFiles)->Arg(1000)->Arg(4000)->Iterations(3)->Unit(benchmark::kMillisecond);
BENCHMARK(valueAt)->Arg(100)->Arg(10000)->Arg(1000000)->Unit(benchmark::kMicrosecond);
BENCHMARK(expandView)->Arg(30)->Arg(100)->Arg(300)->Iterations(1)->Unit(benchmark::kMillisecond);
BENCHMARK(modelColumn)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond);
BENCHMARK(modelCell)->Arg(10)->Arg(100)->Arg(1000)->Unit(benchmark::kMicrosecond);

int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv); // the registry watches files, and a view needs a screen
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
