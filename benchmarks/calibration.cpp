#include <calibration/acalibrationobjectmodel.h>
#include <core/acalibrationdata.h>
#include <datamanager/adatamanager.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QTemporaryDir>

#include <benchmark/benchmark.h>

// Calibration files at sizes beyond any real one, and a registry of many objects. docs/performance.md states the
// limits.

namespace {

constexpr const char *kForms[] = {"xml", "caldata", "offsets"};

QList<ACalibrationData> table(int entries)
{
    ACalibrationData object(QStringLiteral("table"), ACalibrationData::Cable);
    for (int i = 0; i < entries; ++i) {
        AFrequency frequency;
        frequency.setValue(9000LL + i * 6000LL, AFrequency::Hz);
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

// What a view asks for one cell of a table, among that many objects: each answer walks all labels.
void modelCell(benchmark::State &state)
{
    ADataManager *manager = ADataManager::instance();
    const int objects = static_cast<int>(state.range(0));
    for (int i = 0; i < objects; ++i) {
        ACalibrationData object(QString::number(i), static_cast<ACalibrationData::CalibrationType>(i % 4));
        object.addLevel(AFrequency("1 MHz"), i);
        manager->addCalibrationData(object, QStringLiteral("-"));
    }
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
BENCHMARK(modelCell)->Arg(10)->Arg(100)->Arg(1000)->Unit(benchmark::kMicrosecond);

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv); // the registry watches files
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
