#include <bootlogo/abootlogodata.h>
#include <core/aveldorandevice.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QDate>
#include <QtCore/QSettings>
#include <QtCore/QTemporaryDir>

#include <benchmark/benchmark.h>

// A logo is composed in microseconds, and texts cost by their length at most.

namespace {

constexpr int kCols = 51;
constexpr int kRows = 25;

class Device : public AVeldoranDevice
{
public:
    QString customOptionText() const override { return QStringLiteral("custom"); }
    int hardwareRevision() const override { return 5; }
    bool isReady() const override { return true; }
    QStringList informationList() const override { return m_information; }
    quint16 optionMask() const override { return 0x1f; }
    bool hasCapability(int capability) const override { return capability == BootLogo; }

private:
    QStringList m_information = {QStringLiteral("60105X3"), {}, {}, {}, QStringLiteral("2.07"), {},
                                 QStringLiteral("002311")};
};

QByteArray calibratedOn(const QDate &date)
{
    const QByteArray digits = date.toString(QStringLiteral("MMddyyyy")).toLatin1();
    return QByteArray::fromHex(digits.mid(0, 4) + digits.mid(6, 2) + digits.mid(4, 2));
}

void composeCalibrated(benchmark::State &state, const QDate &date)
{
    ABootlogoData logo(nullptr);
    Device device;
    QMap<unsigned short, QByteArray> memory = {{38, "2.1=a;2.2=b;_3=c"}, {31, calibratedOn(date)}};
    for (auto _ : state) {
        if (!logo.fromDeviceInformation(QString(), nullptr, &device, memory, QString(), 0))
            state.SkipWithError("refused");
    }
    // The inverted band is lit, the reminder leaves the corner dark.
    const bool isOverdue = !logo.pixel(kCols - 1, kRows - 1);
    if (isOverdue != (date.daysTo(QDate::currentDate()) > 730))
        state.SkipWithError("another logo than expected");
}

// All fields, the inverted area and the calibration date.
void compose(benchmark::State &state)
{
    composeCalibrated(state, QDate::currentDate());
}

// The same, and the reminder over it.
void composeOverdue(benchmark::State &state)
{
    composeCalibrated(state, QDate(2000, 1, 1));
}

// The same with an editor that follows each pixel.
void composeWatched(benchmark::State &state)
{
    ABootlogoData logo(nullptr);
    int pixels = 0;
    QObject::connect(&logo, &ABootlogoData::pixelChanged, &logo, [&pixels] { ++pixels; });
    Device device;
    QMap<unsigned short, QByteArray> memory;
    for (auto _ : state) {
        if (!logo.fromDeviceInformation(QString(), nullptr, &device, memory, QStringLiteral("2.2"), 0))
            state.SkipWithError("refused");
    }
    benchmark::DoNotOptimize(pixels);
}

// The peer of compose: the same settings read, and nothing done.
void readSettings(benchmark::State &state)
{
    const ABootlogoData defaults(nullptr);
    const QSettings settings;
    for (auto _ : state) {
        for (const char *key : {"LogoPositionType", "LogoPositionModel", "LogoPositionFirmware", "LogoPositionSerial",
                                "LogoPositionOptions", "LogoInvertArea", "CalibrationWarningDays"})
            benchmark::DoNotOptimize(settings.value(QLatin1String(key)).toString());
    }
}

// A text that ends at the edge of the picture, and one that goes on far behind it: the time may at most double.
void writeText(benchmark::State &state)
{
    ABootlogoData logo(nullptr);
    logo.resize(kCols, kRows);
    const QString text(static_cast<int>(state.range(0)), QLatin1Char('A'));
    for (auto _ : state)
        logo.writeText(0, 0, text);
}

// The time for a character may at most double.
void renderText(benchmark::State &state)
{
    const auto length = static_cast<int>(state.range(0));
    const QString text(length, QLatin1Char('A'));
    for (auto _ : state)
        benchmark::DoNotOptimize(ABootlogoData::textToBits(text));
    state.SetItemsProcessed(state.iterations() * length);
}

void streamThereAndBack(benchmark::State &state)
{
    ABootlogoData logo(nullptr);
    logo.resize(kCols, kRows);
    QByteArray stream(160, '\x55');
    for (auto _ : state) {
        logo.loadBitstream(stream);
        stream = logo.toBitstream();
    }
}

} // namespace

BENCHMARK(compose)->Unit(benchmark::kMicrosecond);
BENCHMARK(composeOverdue)->Unit(benchmark::kMicrosecond);
BENCHMARK(composeWatched)->Unit(benchmark::kMicrosecond);
BENCHMARK(readSettings)->Unit(benchmark::kMicrosecond);
BENCHMARK(writeText)->Arg(13)->Arg(100000)->Unit(benchmark::kMicrosecond);
BENCHMARK(renderText)->Arg(10)->Arg(1000)->Arg(100000)->Unit(benchmark::kMicrosecond);
BENCHMARK(streamThereAndBack)->Unit(benchmark::kMicrosecond);

int main(int argc, char **argv)
{
    // The default settings go into a directory of this run.
    const QTemporaryDir directory;
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, directory.path());
    QCoreApplication::setOrganizationName(QStringLiteral("Aveldoran"));
    QCoreApplication::setApplicationName(QStringLiteral("benchmark_bootlogo"));
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
