#include "apps/aveldoran/commandline.h"
#include "apps/aveldoran/commands.h"
#include "apps/aveldoran/console.h"
#include "apps/aveldoran/levelraster.h"
#include "apps/aveldoran/options.h"
#include "apps/aveldoran/recordedtimes.h"
#include "apps/aveldoran/recordingfile.h"
#include "apps/aveldoran/valuetext.h"
#include "apps/aveldoran/waterfallplot.h"

#include <core/amdrdocument.h>
#include <core/emu.h>
#include <display/acolorlookuptable.h>

#include <QtCore/QCommandLineParser>
#include <QtCore/QDateTime>
#include <QtCore/QFileInfo>

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

constexpr char kCommand[] = "waterfall";

constexpr int kLeastWidth = 800;
constexpr int kMostWidth = 8000;
constexpr int kDefaultWidth = 1680;
constexpr int kMostDynamic = 1000;       // dB
constexpr int kMostDefaultDynamic = 120; // dB

constexpr int kLevelStep = 5;        // dB, to which the ends of the scale are rounded
constexpr double kHeadroom = 1.0;    // dB at least, above the highest level
constexpr double kFloorShare = 0.02; // of the levels lie below the lower end
constexpr double kMostLevel = 1e6;   // dB; beyond it nobody measures, and a scale would lose its ticks

// The table counts in tenths of a decibel, so that a ramp of few decibels has no visible steps.
constexpr int kEntriesPerDecibel = 10;

constexpr char kDefaultFrom[] = "#150a33";
constexpr char kDefaultTo[] = "#ffee66";
constexpr QRgb kNothingColor = qRgb(228, 228, 228); // where nothing was measured

struct Options
{
    QString recording;
    QString output;
    int width = kDefaultWidth;
    int dynamic = 0; // 0 for what the recording needs
    QColor from;
    QColor to;
};

// --- the command line ---

bool readColor(const QCommandLineParser &parser, const QString &option, QColor *color)
{
    const QString name = parser.value(option);
    if (QColor::isValidColor(name))
        color->setNamedColor(name);
    if (color->isValid() && color->alpha() == 255)
        return true;
    return refuseOption(kCommand, option, QStringLiteral("an opaque colour such as 'navy' or '#102040'"), name);
}

void addOptions(QCommandLineParser *parser)
{
    CommandLine::describe(
        parser,
        QStringLiteral("Draws a recording into a PNG file: level over frequency and time as colours, and above it the "
                       "highest level that each frequency had. Linear units are drawn in decibels."),
        {QStringLiteral("aveldoran waterfall drive.mdr --output drive.png")});
    const QString color = QStringLiteral("COLOR");
    parser->addOptions(
        {{QStringLiteral("output"), QStringLiteral("The picture. Required."), QStringLiteral("FILE.png")},
         optionWithDefault(QStringLiteral("width"),
                           QStringLiteral("The width of the picture in pixels, %1 to %2")
                               .arg(QString::number(kLeastWidth), QString::number(kMostWidth)),
                           QStringLiteral("N"), QString::number(kDefaultWidth)),
         {QStringLiteral("dynamic"),
          QStringLiteral("How many decibels the colours span, down from the highest level. If not given, as many as "
                         "there are down to the noise, %1 at most.")
              .arg(kMostDefaultDynamic),
          QStringLiteral("DB")},
         optionWithDefault(QStringLiteral("from"), QStringLiteral("The colour of the lowest levels"), color,
                           QLatin1String(kDefaultFrom)),
         optionWithDefault(QStringLiteral("to"),
                           QStringLiteral("The colour of the highest levels, to which the ramp runs through the hues"),
                           color, QLatin1String(kDefaultTo))});
    parser->addPositionalArgument(QStringLiteral("RECORDING"), QStringLiteral("The recording, an MDR file."));
}

bool readOptions(const QStringList &arguments, Options *options, int *exitStatus)
{
    QCommandLineParser parser;
    addOptions(&parser);
    if (!CommandLine::parse(&parser, kCommand, arguments, exitStatus))
        return false;

    *exitStatus = ExitUsage;
    return readOneArgument(parser, kCommand, QStringLiteral("recording"), &options->recording) &&
           requireOption(parser, kCommand, QStringLiteral("output")) &&
           readOutputOption(parser, kCommand, QStringLiteral("output"), {options->recording}, {QStringLiteral(".png")},
                            &options->output) &&
           readNumberOption(parser, kCommand, QStringLiteral("width"), kLeastWidth, kMostWidth, &options->width) &&
           readNumberOption(parser, kCommand, QStringLiteral("dynamic"), 1, kMostDynamic, &options->dynamic) &&
           readColor(parser, QStringLiteral("from"), &options->from) &&
           readColor(parser, QStringLiteral("to"), &options->to);
}

// --- reading ---

// The sweeps of a recording one by one, all of them levels in one unit. Only one is in memory at a time.
class Sweeps
{
public:
    Sweeps(const AMdrDocument &document, const QString &name)
        : m_document(document)
        , m_name(name)
    {}

    // Goes through all of them, calling `use` with each and its number. False, with a message, if one can't be read any
    // more; all before it were used.
    template<typename Use>
    bool forEach(const QString &what, const Use &use)
    {
        const int count = m_document.sweepCount();
        const QString text = what + QLatin1Char(' ') + m_name;
        for (int i = 0; i < count; ++i) {
            Console::progressBar(text, i, count);
            QString reason;
            if (!m_document.readSweep(m_document.recordOfSweep(i), &m_sweep, &reason)) {
                Console::error(QStringLiteral("%1: %2").arg(m_name, reason));
                return false;
            }
            use(m_sweep, i);
        }
        Console::clearProgress();
        return true;
    }

private:
    const AMdrDocument &m_document;
    QString m_name;
    ASweep m_sweep; // one for all: its points are used again
};

// What the axes have to know beforehand.
struct Extent
{
    double beginHz = std::numeric_limits<double>::infinity();
    double endHz = -std::numeric_limits<double>::infinity();
    int unit = -1; // of the first point
    int mostPoints = 0;

    bool isEmpty() const { return beginHz > endHz; }

    void include(const ASweep &sweep)
    {
        for (const AMeasurementValue &value : sweep.values) {
            const double hertz = value.frequency.floatValue(AFrequency::Hz);
            beginHz = std::min(beginHz, hertz);
            endHz = std::max(endHz, hertz);
        }
        if (unit < 0 && !sweep.values.isEmpty())
            unit = sweep.values.constFirst().unit;
        mostPoints = std::max(mostPoints, sweep.values.size());
    }

    // A single frequency is given some width.
    void widen()
    {
        if (beginHz < endHz)
            return;
        const double margin = std::max(1.0, std::fabs(beginHz) * 1e-6);
        beginHz -= margin;
        endHz += margin;
    }
};

// The unit in which levels of that unit are drawn: a linear one's last decibels, which are those in use (dBµV for V).
int decibelsFor(int unit)
{
    const emu_entry *own = emu_find(unit);
    if (!own || own->logarithmic)
        return unit;
    int decibels = unit;
    for (int id = 0; emu_find(id); ++id) {
        if (emu_find(id)->logarithmic && emu_find(id)->linear == unit)
            decibels = id;
    }
    return decibels;
}

// How many levels have no number in the unit that is drawn.
struct Lost
{
    qint64 byUnit = 0;
    qint64 byLevel = 0; // below 0, while the unit converts
};

// Those without a number in the unit become NaN.
void convert(QList<AMeasurementValue> *values, int unit, Lost *lost)
{
    for (AMeasurementValue &value : *values) {
        if (value.unit == unit)
            continue;
        const AMeasurementValue before = value;
        value = value.convertTo(unit);
        if (std::isnan(before.level) || !std::isnan(value.level))
            continue;
        AMeasurementValue one = before;
        one.level = 1.0;
        ++(std::isnan(one.convertTo(unit).level) ? lost->byUnit : lost->byLevel);
    }
}

RecordedTimes timesOf(const AMdrDocument &document)
{
    QVector<qint64> times;
    times.reserve(document.sweepCount());
    ASweep first;
    const bool hasFirst = document.readSweep(document.recordOfSweep(0), &first) && first.startTime().isValid();
    for (int i = 0; i < document.sweepCount(); ++i) {
        qint64 time = 0;
        if (!document.recordTime(document.recordOfSweep(i), &time))
            return {RecordedTimes::kUnknown, {}};
        times += time;
    }
    return {hasFirst ? first.startTime().toMSecsSinceEpoch() : RecordedTimes::kUnknown, times};
}

// Between which rows of the waterfall a sweep stands: by its time where the times make an axis, else by its number.
class SweepRows
{
public:
    SweepRows(const RecordedTimes &times, int sweeps, int rows)
        : m_times(times)
        , m_rowsPerUnit(rows / (times.areAnAxis() ? static_cast<double>(times.endMs() - times.beginMs()) : sweeps))
    {}

    double begin(int sweep) const { return m_rowsPerUnit * (isByTime() ? sinceBegin(m_times.beginMs(sweep)) : sweep); }
    double end(int sweep) const { return m_rowsPerUnit * (isByTime() ? sinceBegin(m_times.endMs(sweep)) : sweep + 1); }

private:
    bool isByTime() const { return m_times.areAnAxis(); }
    double sinceBegin(qint64 timeMs) const { return static_cast<double>(timeMs - m_times.beginMs()); }

    const RecordedTimes &m_times;
    double m_rowsPerUnit;
};

// --- colours ---

struct LevelScale
{
    double highest;
    int dynamic;

    double lowest() const { return highest - dynamic; }
};

// From the highest level down to the noise, at multiples of a step; of a span that was asked for, down from the highest
// level itself. False if no level is a finite number.
bool chooseScale(const LevelRaster &raster, int dynamic, LevelScale *scale)
{
    std::vector<float> levels;
    std::copy_if(raster.levels().begin(), raster.levels().end(), std::back_inserter(levels),
                 [](float level) { return std::isfinite(level); });
    if (levels.empty())
        return false;
    const auto rounded = [](double level, double (*round)(double)) {
        return qBound(-kMostLevel, round(level / kLevelStep) * kLevelStep, kMostLevel);
    };
    const auto floor =
        levels.begin() + static_cast<std::ptrdiff_t>(static_cast<double>(levels.size() - 1) * kFloorShare);
    std::nth_element(levels.begin(), floor, levels.end());
    const auto highest = static_cast<double>(*std::max_element(floor, levels.end()));
    if (dynamic > 0) {
        *scale = {qBound(-kMostLevel, highest, kMostLevel), dynamic};
        return true;
    }
    scale->highest = rounded(highest + kHeadroom, std::ceil);
    const double needed = scale->highest - rounded(*floor, std::floor);
    scale->dynamic = static_cast<int>(qBound<double>(2 * kLevelStep, needed, kMostDefaultDynamic));
    return true;
}

QImage imageOf(const LevelRaster &raster, const LevelScale &scale, const AColorLookupTable &table)
{
    // The table takes levels from 0 to below its dynamic; this is as near to it as rounding allows.
    const double top = table.dynamic() * (1.0 - 1e-6);
    QImage image(raster.size(), QImage::Format_RGB32);
    for (int row = 0; row < image.height(); ++row) {
        auto *pixel = reinterpret_cast<QRgb *>(image.scanLine(row));
        for (int column = 0; column < image.width(); ++column, ++pixel) {
            const double level = raster.level(column, row);
            *pixel =
                std::isnan(level)
                    ? kNothingColor
                    : table.colorAt(static_cast<float>(qBound(0.0, (level - scale.lowest()) * kEntriesPerDecibel, top)))
                          .rgb();
        }
    }
    return image;
}

// --- the command ---

void tellContent(const Options &options, const AMdrDocument &document, const Extent &extent, const RecordedTimes &times,
                 const AMeasurementValue &highest)
{
    const auto frequency = [](double hertz) { return AFrequency::fromValue(hertz, AFrequency::Hz); };
    const auto time = [](qint64 timeMs) { return QDateTime::fromMSecsSinceEpoch(timeMs, Qt::UTC); };
    QString text = QStringLiteral("%1 of at most %2, %3")
                       .arg(countText(document.sweepCount(), "sweep"), countText(extent.mostPoints, "point"),
                            frequencyRangeText(frequency(extent.beginHz), frequency(extent.endHz)));
    if (times.areAnAxis())
        text += QStringLiteral(", ") + timeSpanText(time(times.beginMs()), time(times.endMs()));
    if (!highest.isEmpty())
        text += QStringLiteral(", highest level ") + measuredValueText(highest);
    Console::tellWritten(options.output, text);
}

bool failWithoutLevels(const Options &options)
{
    Console::error(QStringLiteral("%1: no levels in this recording").arg(options.recording));
    return false;
}

// True if there are none.
bool reportLost(const Options &options, const Lost &lost, const QString &unitName)
{
    const auto report = [&options](qint64 count, const QString &reason) {
        if (count > 0)
            Console::error(
                QStringLiteral("%1: left out: %2, %3").arg(options.recording, countText(count, "level"), reason));
    };
    report(lost.byUnit, QStringLiteral("in a unit that doesn't convert to %1").arg(unitName));
    report(lost.byLevel, QStringLiteral("below 0, which is no number of %1").arg(unitName));
    return lost.byUnit == 0 && lost.byLevel == 0;
}

// The colours of the levels and the scale beside them. False if there are none.
bool colour(const LevelRaster &raster, const Options &options, WaterfallPlot *plot)
{
    LevelScale scale{};
    if (!chooseScale(raster, options.dynamic, &scale))
        return false;
    const AColorLookupTable table(nullptr, scale.dynamic * kEntriesPerDecibel, options.from, options.to);
    QVector<QRgb> colors;
    for (int i = 0; i < table.count(); ++i)
        colors += table.at(i).rgb();
    plot->setLevels(scale.lowest(), scale.highest, colors);
    plot->setWaterfall(imageOf(raster, scale, table));
    return true;
}

// False if something was left out, or nothing drawn.
bool draw(const Options &options, const AMdrDocument &document)
{
    Sweeps sweeps(document, options.recording);
    Extent extent;
    bool complete =
        sweeps.forEach(QStringLiteral("reading"), [&extent](const ASweep &sweep, int) { extent.include(sweep); });
    if (extent.isEmpty())
        return failWithoutLevels(options);
    const int unit = decibelsFor(extent.unit);
    const emu_entry *unitEntry = emu_find(unit);
    const QString unitName = unitEntry ? QString::fromUcs4(unitEntry->name) : QString();
    const RecordedTimes times = timesOf(document);
    Extent shown = extent;
    shown.widen();

    WaterfallPlot plot(Console::oneLine(QFileInfo(options.recording).fileName()), QStringLiteral("Level"), unitName,
                       options.width);
    plot.setFrequencyRange(shown.beginHz, shown.endHz);
    if (times.areAnAxis())
        plot.setTimeRange(times.beginMs(), times.endMs());
    else
        plot.setNumberRange(document.sweepCount());

    LevelRaster raster(plot.waterfallSize(), extent.beginHz, extent.endHz);
    const SweepRows rows(times, document.sweepCount(), raster.size().height());
    Lost lost;
    const bool allAreAdded = sweeps.forEach(QStringLiteral("drawing"), [&](ASweep &sweep, int number) {
        convert(&sweep.values, unit, &lost);
        raster.add(sweep.values, rows.begin(number), rows.end(number));
    });
    complete = reportLost(options, lost, unitName) && allAreAdded && complete;
    if (!colour(raster, options, &plot))
        return failWithoutLevels(options);
    plot.setCurve(QStringLiteral("Maximum hold"), raster.maximumHold());
    if (!Console::attempt([&](QString *errorText) { return plot.save(options.output, errorText); }))
        return false;
    tellContent(options, document, extent, times, raster.highest());
    return complete;
}

} // namespace

int runWaterfall(const QStringList &arguments)
{
    Options options;
    int exitStatus = ExitDone;
    if (!readOptions(arguments, &options, &exitStatus))
        return exitStatus;

    AMdrDocument document;
    bool complete = true;
    if (!loadRecording(options.recording, &document, &complete))
        return ExitFailed;
    return draw(options, document) && complete ? ExitDone : ExitFailed;
}
