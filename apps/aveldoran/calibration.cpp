#include "apps/aveldoran/commandline.h"
#include "apps/aveldoran/commands.h"
#include "apps/aveldoran/console.h"
#include "apps/aveldoran/inputfile.h"
#include "apps/aveldoran/jsonlist.h"
#include "apps/aveldoran/options.h"
#include "apps/aveldoran/plot.h"
#include "apps/aveldoran/valuetext.h"

#include <core/acalibrationdata.h>

#include <QtCore/QCommandLineParser>
#include <QtCore/QDirIterator>
#include <QtCore/QFileInfo>
#include <QtCore/QJsonObject>

#include <algorithm>
#include <cmath>

namespace {

constexpr char kCommand[] = "calibration";

struct Options
{
    bool hasFrequency = false;
    AFrequency frequency; // at which gains are printed
    bool asJson = false;
    QString picture;
    QStringList paths;
};

bool readOptions(const QStringList &arguments, Options *options, int *exitStatus)
{
    QCommandLineParser parser;
    CommandLine::describe(
        &parser,
        QStringLiteral("Reads calibration files and lists their objects by type: label, number of entries, range, and "
                       "the least and the highest gain. Nothing is written to them."),
        {QStringLiteral("aveldoran calibration --at '145 MHz' --plot gains.png examples/data/calibration")});
    const QCommandLineOption at(
        QStringLiteral("at"),
        QStringLiteral("Print the gains at this frequency too, such as '145 MHz'; in hertz if it has no unit."),
        QStringLiteral("FREQ"));
    parser.addOptions(
        {at, formatOption(), plotOption(QStringLiteral("Draw the gains over frequency into a PNG file."))});
    parser.addPositionalArgument(
        QStringLiteral("PATH"),
        QStringLiteral("A calibration file, or a directory of them (%1), which is read with all below it.")
            .arg(ACalibrationData::nameFilters().join(QStringLiteral(", "))),
        QStringLiteral("PATH..."));
    if (!CommandLine::parse(&parser, kCommand, arguments, exitStatus))
        return false;

    *exitStatus = ExitUsage;
    options->hasFrequency = parser.isSet(at);
    return readArguments(parser, kCommand, QStringLiteral("calibration file"), &options->paths) &&
           readFrequencyOption(parser, kCommand, QStringLiteral("at"), &options->frequency) &&
           readFormatOption(parser, kCommand, &options->asJson) &&
           readPlotOption(parser, kCommand, options->paths, &options->picture);
}

struct Objects
{
    QList<ACalibrationData> all;
    QStringList files; // of each the one that it came from
};

bool readFile(const QString &fileName, Objects *objects)
{
    if (!canBeRead(fileName))
        return false;
    Console::progress(QStringLiteral("reading %1").arg(fileName));
    const bool isRead = Console::attempt([&](QString *errorText) {
        return ACalibrationData::readAll(fileName, objects->all, ACalibrationData::AnyType, errorText);
    });
    while (objects->files.size() < objects->all.size())
        objects->files.append(fileName);
    return isRead;
}

bool readPath(const QString &path, Objects *objects)
{
    if (!QFileInfo(path).isDir())
        return readFile(path, objects);
    QStringList files;
    QDirIterator entries(path, ACalibrationData::nameFilters(), QDir::Files, QDirIterator::Subdirectories);
    while (entries.hasNext())
        files.append(entries.next());
    std::sort(files.begin(), files.end());
    if (files.isEmpty())
        Console::error(QStringLiteral("%1: no calibration files (%2) below this directory")
                           .arg(path, ACalibrationData::nameFilters().join(QStringLiteral(", "))));
    bool complete = !files.isEmpty();
    for (const QString &file : qAsConst(files))
        complete = readFile(file, objects) && complete;
    return complete;
}

QString nameOf(const ACalibrationData &object)
{
    return Console::oneLineOrDash(object.label());
}

QString unitOf(const ACalibrationData &object)
{
    return object.type() == ACalibrationData::Antenna ? QStringLiteral("dBi") : QStringLiteral("dB");
}

QString gainText(double gain, const ACalibrationData &object)
{
    return QStringLiteral("%1 %2").arg(decibelText(gain), unitOf(object));
}

// The gains that are numbers, least and highest; false if there is none.
bool gainRange(const ACalibrationData &object, double *least, double *highest)
{
    bool found = false;
    for (const double gain : object.level()) {
        if (std::isnan(gain))
            continue;
        *least = found ? std::min(*least, gain) : gain;
        *highest = found ? std::max(*highest, gain) : gain;
        found = true;
    }
    return found;
}

// Whether the gain there is that of an end of the table, which has entries.
bool isHeldAt(const ACalibrationData &object, const AFrequency &frequency)
{
    return frequency < object.level().firstKey() || object.level().lastKey() < frequency;
}

void printObject(const ACalibrationData &object, const Options &options)
{
    const QMap<AFrequency, double> &level = object.level();
    QString line = QStringLiteral("  ") + nameOf(object);
    if (level.isEmpty()) {
        Console::write(line + QStringLiteral("  no entries\n"));
        return;
    }
    line += QStringLiteral("  %1  %2")
                .arg(countText(level.size(), "entry"), frequencyRangeText(level.firstKey(), level.lastKey()));
    double least = 0.0;
    double highest = 0.0;
    if (gainRange(object, &least, &highest)) {
        line += QStringLiteral("  ") + gainText(least, object);
        if (highest != least)
            line += QStringLiteral(" to ") + gainText(highest, object);
    }
    if (options.hasFrequency) {
        line += QStringLiteral("; at %1: %2")
                    .arg(shortFrequency(options.frequency), gainText(object.valueAt(options.frequency, true), object));
        if (isHeldAt(object, options.frequency))
            line += QStringLiteral(", held from the end of the table");
    }
    Console::write(line + QLatin1Char('\n'));
}

struct Kind
{
    ACalibrationData::CalibrationType type;
    const char *name; // as in files
    const char *heading;
};

// In the order in which they are printed.
constexpr Kind kKinds[] = {{ACalibrationData::Preamplifier, "preamplifier", "Preamplifiers"},
                           {ACalibrationData::Antenna, "antenna", "Antennas"},
                           {ACalibrationData::Cable, "cable", "Cables"},
                           {ACalibrationData::Attenuator, "attenuator", "Attenuators"},
                           {ACalibrationData::AnyType, "any", "Of no particular type"}};

void printText(const Objects &objects, const Options &options)
{
    for (const Kind &kind : kKinds) {
        bool isEmpty = true;
        for (const ACalibrationData &object : objects.all) {
            if (object.type() != kind.type)
                continue;
            if (isEmpty)
                Console::write(QLatin1String(kind.heading) + QLatin1Char('\n'));
            isEmpty = false;
            printObject(object, options);
        }
    }
}

QJsonObject objectAsJson(const ACalibrationData &object, const Options &options)
{
    const QMap<AFrequency, double> &level = object.level();
    QJsonObject json{{QStringLiteral("label"), object.label()},
                     {QStringLiteral("unit"), unitOf(object)},
                     {QStringLiteral("entries"), level.size()}};
    if (level.isEmpty())
        return json;
    json[QStringLiteral("beginHz")] = level.firstKey().floatValue(AFrequency::Hz);
    json[QStringLiteral("endHz")] = level.lastKey().floatValue(AFrequency::Hz);
    double least = 0.0;
    double highest = 0.0;
    if (gainRange(object, &least, &highest)) {
        json[QStringLiteral("lowestGain")] = numberOrNull(least);
        json[QStringLiteral("highestGain")] = numberOrNull(highest);
    }
    if (options.hasFrequency) {
        json[QStringLiteral("targetHz")] = options.frequency.floatValue(AFrequency::Hz);
        json[QStringLiteral("gain")] = numberOrNull(object.valueAt(options.frequency, true));
        json[QStringLiteral("held")] = isHeldAt(object, options.frequency);
    }
    return json;
}

void printJson(const Objects &objects, const Options &options)
{
    JsonList json;
    for (const Kind &kind : kKinds) {
        for (int i = 0; i < objects.all.size(); ++i) {
            if (objects.all.at(i).type() != kind.type)
                continue;
            QJsonObject object = objectAsJson(objects.all.at(i), options);
            object[QStringLiteral("file")] = objects.files.at(i);
            object[QStringLiteral("type")] = QLatin1String(kind.name);
            json.add(object);
        }
    }
    json.end();
}

// Of the axis that all objects share.
QString unitOf(const QList<ACalibrationData> &objects)
{
    const auto isAntenna = [](const ACalibrationData &object) { return object.type() == ACalibrationData::Antenna; };
    const auto antennas = std::count_if(objects.begin(), objects.end(), isAntenna);
    if (antennas == 0)
        return QStringLiteral("dB");
    return antennas == objects.size() ? QStringLiteral("dBi") : QStringLiteral("dB, of antennas dBi");
}

bool draw(const QList<ACalibrationData> &objects, const Options &options)
{
    Console::progress(QStringLiteral("drawing %1").arg(options.picture));
    Plot plot(options.hasFrequency
                  ? QStringLiteral("Calibration, with the gains at %1").arg(shortFrequency(options.frequency))
                  : QStringLiteral("Calibration"),
              QStringLiteral("Gain"), unitOf(objects));
    plot.setFrequencyScale(Plot::LogarithmicFrequency);
    const double atHz = options.frequency.floatValue(AFrequency::Hz);
    QVector<double> marked; // gains
    for (const ACalibrationData &object : objects) {
        QVector<Plot::Point> points;
        points.reserve(object.level().size());
        for (auto entry = object.level().begin(); entry != object.level().end(); ++entry)
            points.append({entry.key().floatValue(AFrequency::Hz), entry.value()});
        QString name = nameOf(object);
        if (options.hasFrequency && !points.isEmpty() && points.constFirst().frequencyHz <= atHz &&
            atHz <= points.constLast().frequencyHz) {
            const double gain = object.valueAt(options.frequency, true);
            name += QStringLiteral(": ") + gainText(gain, object);
            if (std::isfinite(gain))
                marked.append(gain);
        }
        plot.addCurve(name, points, Plot::TableCurve);
    }
    // One line leads through all marks to the lowest; which gain is whose, the legend tells.
    std::sort(marked.begin(), marked.end());
    for (int i = 0; i < marked.size(); ++i)
        plot.addMarker(atHz, marked.at(i), i == 0 ? shortFrequency(options.frequency) : QString(), Plot::AbovePoint);
    if (!Console::attempt([&](QString *errorText) { return plot.save(options.picture, errorText); }))
        return false;
    Console::tellWritten(options.picture, countText(objects.size(), "object"));
    return true;
}

} // namespace

// Without the registry, which writes files when two objects share a label.
int runCalibration(const QStringList &arguments)
{
    Options options;
    int exitStatus = ExitDone;
    if (!readOptions(arguments, &options, &exitStatus))
        return exitStatus;

    Objects objects;
    bool complete = true;
    for (const QString &path : qAsConst(options.paths))
        complete = readPath(path, &objects) && complete;
    if (options.asJson)
        printJson(objects, options);
    else
        printText(objects, options);
    complete = Console::finish() && complete;
    const bool isAnyRead = complete || !objects.all.isEmpty(); // else an old picture says more than an empty one
    if (!options.picture.isEmpty() && isAnyRead)
        complete = draw(objects.all, options) && complete;
    return complete ? ExitDone : ExitFailed;
}
