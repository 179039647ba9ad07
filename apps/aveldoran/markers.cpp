#include "apps/aveldoran/commandline.h"
#include "apps/aveldoran/commands.h"
#include "apps/aveldoran/console.h"
#include "apps/aveldoran/jsonlist.h"
#include "apps/aveldoran/options.h"
#include "apps/aveldoran/plot.h"
#include "apps/aveldoran/texttable.h"
#include "apps/aveldoran/tracefile.h"
#include "apps/aveldoran/valuetext.h"

#include <core/emu.h>
#include <marker/aspectrummarkerlist.h>

#include <QtCore/QCommandLineParser>
#include <QtCore/QFileInfo>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonObject>

#include <limits>

namespace {

constexpr char kCommand[] = "markers";

constexpr int kTrace = 0; // the one that the markers sit on
constexpr int kMaxPeakMarkers = 100;
constexpr int kMaxFrequencyMarkers = 1000;
constexpr int kDefaultMaxima = 6; // if no marker is asked for

using Markers = QList<ASpectrumMarker *>;

struct Options
{
    int maxima = 0;
    int minima = 0;
    QVector<AFrequency> frequencies;
    AFrequency spacing;
    int reference = 0; // the number of a row, from 1; 0 for none
    bool asJson = false;
    QString picture;
    QString traceFile;
};

void addOptions(QCommandLineParser *parser)
{
    CommandLine::describe(
        parser,
        QStringLiteral(
            "Sets markers on a trace and prints them, one a line: number, name, level, difference to the "
            "reference marker, and a label for a display. Maxima come highest first, minima lowest first, "
            "from the second point of the trace on; a marker at a frequency reads the level between the "
            "points beside it. A marker that finds no such peak, or stands beyond the trace, has '-' for its "
            "values."),
        {QStringLiteral("aveldoran markers examples/data/traces/broadband.csv --max 3 --at '100 MHz' --reference 1 "
                        "--plot broadband.png")});
    const auto number = QStringLiteral("N");
    const auto frequency = QStringLiteral("FREQ");
    parser->addOptions(
        {{QStringLiteral("max"),
          QStringLiteral("Markers on the N highest maxima (%1 if no marker is asked for).").arg(kDefaultMaxima),
          number},
         {QStringLiteral("min"), QStringLiteral("Markers on the N lowest minima."), number},
         {QStringLiteral("at"),
          QStringLiteral("A marker at a frequency, such as '100 MHz'; in hertz if it has no unit. May be given several "
                         "times."),
          frequency},
         {QStringLiteral("spacing"),
          QStringLiteral("How far peaks of one kind lie apart at least; in hertz if it has no unit."), frequency},
         {QStringLiteral("reference"), QStringLiteral("Show all others as differences to the Nth marker."), number},
         formatOption(),
         plotOption(QStringLiteral("Draw the trace with its markers into a PNG file."))});
    parser->addPositionalArgument(QStringLiteral("TRACE.csv"), QStringLiteral("The trace: frequencies and levels."));
}

bool readFrequencies(const QStringList &texts, QVector<AFrequency> *frequencies)
{
    if (texts.size() > kMaxFrequencyMarkers) {
        CommandLine::usageError(kCommand,
                                QStringLiteral("--at is given %1 times, expected at most %2")
                                    .arg(QString::number(texts.size()), QString::number(kMaxFrequencyMarkers)));
        return false;
    }
    for (const QString &text : texts) {
        AFrequency frequency;
        if (!readFrequencyOption(kCommand, QStringLiteral("at"), text, &frequency))
            return false;
        frequencies->append(frequency);
    }
    return true;
}

bool readOptions(const QStringList &arguments, Options *options, int *exitStatus)
{
    const QString max = QStringLiteral("max");
    const QString min = QStringLiteral("min");
    const QString at = QStringLiteral("at");
    QCommandLineParser parser;
    addOptions(&parser);
    if (!CommandLine::parse(&parser, kCommand, arguments, exitStatus, {at}))
        return false;

    *exitStatus = ExitUsage;
    const bool isDefault = !parser.isSet(max) && !parser.isSet(min) && !parser.isSet(at);
    options->maxima = isDefault ? kDefaultMaxima : 0;
    if (!readOneArgument(parser, kCommand, QStringLiteral("trace file"), &options->traceFile) ||
        !readNumberOption(parser, kCommand, max, 0, kMaxPeakMarkers, &options->maxima) ||
        !readNumberOption(parser, kCommand, min, 0, kMaxPeakMarkers, &options->minima) ||
        !readFrequencies(parser.values(at), &options->frequencies) ||
        !readFrequencyOption(parser, kCommand, QStringLiteral("spacing"), &options->spacing))
        return false;

    const int count = options->maxima + options->minima + options->frequencies.size();
    if (count == 0) {
        CommandLine::usageError(kCommand, QStringLiteral("no marker is asked for"));
        return false;
    }
    return readNumberOption(parser, kCommand, QStringLiteral("reference"), 1, count, &options->reference) &&
           readFormatOption(parser, kCommand, &options->asJson) &&
           readPlotOption(parser, kCommand, {options->traceFile}, &options->picture);
}

void setMarkers(const Trace &trace, const Options &options, ASpectrumMarkerList *list)
{
    for (int i = 0; i < options.maxima; ++i)
        list->addMarker(ASpectrumMarker::TypeMax, kTrace, AFrequency());
    for (int i = 0; i < options.minima; ++i)
        list->addMarker(ASpectrumMarker::TypeMin, kTrace, AFrequency());
    for (const AFrequency &frequency : options.frequencies)
        list->addMarker(ASpectrumMarker::TypeStd, kTrace, frequency);
    // A marker without a value keeps it if its peak has the level 0, so there are values that no peak equals.
    const AMeasurementValue noLevel(std::numeric_limits<double>::quiet_NaN(), static_cast<unsigned char>(trace.unit),
                                    trace.values.constFirst().frequency, 0, 0.0);
    for (int i = 0; i < options.maxima + options.minima; ++i)
        list->at(i)->setValue(noLevel); // maxima and minima come first
    list->updateMarkerValues(trace.values, kTrace, trace.values.constFirst().frequency,
                             trace.values.constLast().frequency, trace.unit, options.spacing);
    if (options.reference == 0)
        return;
    ASpectrumMarker *reference = list->at(options.reference - 1);
    const Markers all = list->all();
    for (ASpectrumMarker *marker : all) {
        if (marker != reference)
            marker->setReferenceMarker(reference);
    }
}

bool hasFrequencyDifference(const ASpectrumMarker &marker)
{
    const ASpectrumMarker *reference = marker.referenceMarker();
    return reference && !marker.value().isEmpty() &&
           (!reference->value().isEmpty() || reference->targetFrequency() > AFrequency());
}

// To where the reference was pinned if it has no value.
AFrequency frequencyDifference(const ASpectrumMarker &marker)
{
    const ASpectrumMarker &reference = *marker.referenceMarker();
    return marker.value().frequency -
           (reference.value().isEmpty() ? reference.targetFrequency() : reference.value().frequency);
}

const emsi_unit *scaleOfValue(const ASpectrumMarker &marker, const emu_entry *unit)
{
    return levelScale(marker.value().level, *unit);
}

const emsi_unit *scaleOfDifference(const ASpectrumMarker &marker, const emu_entry *unit)
{
    const ASpectrumMarker *reference = marker.referenceMarker();
    return reference ? levelScale(marker.value().level - reference->value().level, *unit) : nullptr;
}

// Of a label, which shows the difference where there is one.
const emsi_unit *scaleOfLabel(const ASpectrumMarker &marker, const emu_entry *unit)
{
    return marker.referenceMarker() ? scaleOfDifference(marker, unit) : scaleOfValue(marker, unit);
}

// The label items, where number and unit of a difference of frequencies belong together: in the library's items the
// unit is that of the marker's own frequency.
QStringList labelItems(const ASpectrumMarker &marker, const emu_entry *unit)
{
    constexpr int kFrequency = 4;
    constexpr int kFrequencyUnit = 5;
    QStringList items = marker.labelItems(unit, scaleOfLabel(marker, unit));
    if (hasFrequencyDifference(marker) && !items.at(kFrequency).isEmpty())
        items[kFrequencyUnit] = QLatin1String(AFrequency::suffixForUnit(frequencyDifference(marker).autoUnit()));
    return items;
}

// The texts of one line, a cell for each column.
QStringList rowOf(int number, const ASpectrumMarker &marker, const emu_entry *unit)
{
    const QString frequency = marker.value().isEmpty() ? QStringLiteral("-") : shortFrequency(marker.value().frequency);
    QStringList row = {QString::number(number), marker.name(), frequency,
                       marker.valueAsString(unit, scaleOfValue(marker, unit), true),
                       marker.deltaAsString(unit, scaleOfDifference(marker, unit), true)};
    QStringList items = labelItems(marker, unit);
    items.removeFirst(); // the name
    while (items.size() < 6)
        items += QString();
    return row + items;
}

void printText(const Trace &trace, const Markers &markers, const Options &options)
{
    const emu_entry *unit = emu_find(trace.unit);
    Console::write(QStringLiteral("%1: %2, %3, in %4\n\n")
                       .arg(Console::oneLine(options.traceFile), countText(trace.values.size(), "point"),
                            frequencyRangeText(trace.values.constFirst().frequency, trace.values.constLast().frequency),
                            QString::fromUcs4(unit->name)));

    QVector<QStringList> rows = {{QStringLiteral("No"), QStringLiteral("Marker"), QStringLiteral("Frequency"),
                                  QStringLiteral("Level"), QStringLiteral("Delta"), QStringLiteral("Label"), QString(),
                                  QString(), QString(), QString(), QString()}};
    for (int i = 0; i < markers.size(); ++i)
        rows += rowOf(i + 1, *markers.at(i), unit);
    // The items of a label stand close together.
    const QVector<TableColumn> columns = {{TableColumn::Number, 2}, {TableColumn::Word, 2},   {TableColumn::Number, 2},
                                          {TableColumn::Number, 2}, {TableColumn::Number, 2}, {TableColumn::Number, 1},
                                          {TableColumn::Word, 1},   {TableColumn::Word, 1},   {TableColumn::Number, 1},
                                          {TableColumn::Word, 1},   {TableColumn::Word, 1}};
    Console::write(textTable(rows, columns));
}

QJsonObject markerAsJson(const ASpectrumMarker &marker, const emu_entry *unit)
{
    QJsonObject object;
    object[QStringLiteral("name")] = marker.name();
    if (!marker.value().isEmpty()) {
        object[QStringLiteral("frequencyHz")] = marker.value().frequency.floatValue(AFrequency::Hz);
        object[QStringLiteral("level")] = numberOrNull(marker.value().level);
        object[QStringLiteral("unit")] = QString::fromUcs4(unit->name);
    }
    if (marker.scope() == ASpectrumMarker::ScopeFrequency)
        object[QStringLiteral("targetHz")] = marker.targetFrequency().floatValue(AFrequency::Hz);
    if (marker.referenceMarker())
        object[QStringLiteral("reference")] = marker.referenceMarker()->name();
    if (hasFrequencyDifference(marker))
        object[QStringLiteral("deltaHz")] = frequencyDifference(marker).floatValue(AFrequency::Hz);
    object[QStringLiteral("valueText")] = marker.valueAsString(unit, scaleOfValue(marker, unit), true);
    object[QStringLiteral("deltaText")] = marker.deltaAsString(unit, scaleOfDifference(marker, unit), true);
    object[QStringLiteral("labelItems")] =
        QJsonArray::fromStringList(marker.labelItems(unit, scaleOfLabel(marker, unit)));
    object[QStringLiteral("label")] = marker.label(false, unit, scaleOfLabel(marker, unit));
    object[QStringLiteral("detailedLabel")] = marker.label(true, unit, scaleOfLabel(marker, unit));
    return object;
}

void printJson(const Trace &trace, const Markers &markers)
{
    JsonList json;
    for (const ASpectrumMarker *marker : markers)
        json.add(markerAsJson(*marker, emu_find(trace.unit)));
    json.end();
}

bool drawPicture(const Trace &trace, const Markers &markers, const Options &options)
{
    Console::progress(QStringLiteral("drawing %1").arg(options.picture));
    const emu_entry *unit = emu_find(trace.unit);
    Plot plot(Console::oneLine(QFileInfo(options.traceFile).fileName()), QStringLiteral("Level"),
              QString::fromUcs4(unit->name));
    QVector<Plot::Point> points;
    points.reserve(trace.values.size());
    for (const AMeasurementValue &value : trace.values)
        points.append({value.frequency.floatValue(AFrequency::Hz), value.level});
    plot.addCurve(QString(), points, Plot::TraceCurve);
    int drawn = 0;
    for (const ASpectrumMarker *marker : markers) {
        if (marker->value().isEmpty())
            continue;
        plot.addMarker(marker->value().frequency.floatValue(AFrequency::Hz), marker->value().level,
                       labelItems(*marker, unit).join(QLatin1Char(' ')).trimmed(),
                       marker->type() == ASpectrumMarker::TypeMin ? Plot::BelowPoint : Plot::AbovePoint);
        ++drawn;
    }
    if (!Console::attempt([&](QString *errorText) { return plot.save(options.picture, errorText); }))
        return false;
    Console::tellWritten(options.picture,
                         QStringLiteral("%1, %2").arg(countText(points.size(), "point"), countText(drawn, "marker")));
    return true;
}

} // namespace

int runMarkers(const QStringList &arguments)
{
    Options options;
    int exitStatus = ExitDone;
    if (!readOptions(arguments, &options, &exitStatus))
        return exitStatus;

    Console::progress(QStringLiteral("reading %1").arg(options.traceFile));
    Trace trace;
    if (!Console::attempt([&](QString *errorText) { return readTraceFile(options.traceFile, &trace, errorText); }))
        return ExitFailed;

    ASpectrumMarkerList list;
    setMarkers(trace, options, &list);
    const Markers markers = list.all();
    if (options.asJson)
        printJson(trace, markers);
    else
        printText(trace, markers, options);
    const bool printed = Console::finish();
    const bool drawn = options.picture.isEmpty() || drawPicture(trace, markers, options);
    return printed && drawn ? ExitDone : ExitFailed;
}
