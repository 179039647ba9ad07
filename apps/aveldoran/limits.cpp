#include "apps/aveldoran/commandline.h"
#include "apps/aveldoran/commands.h"
#include "apps/aveldoran/console.h"
#include "apps/aveldoran/inputfile.h"
#include "apps/aveldoran/limitcurves.h"
#include "apps/aveldoran/options.h"
#include "apps/aveldoran/outputfile.h"
#include "apps/aveldoran/tracefile.h"
#include "apps/aveldoran/valuetext.h"

#include <core/alimit.h>
#include <core/emu.h>
#include <limit/alimitmodel.h>

#include <QtCore/QCommandLineParser>
#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QTemporaryDir>

#include <algorithm>
#include <cmath>
#include <functional>

namespace {

constexpr char kCommand[] = "limits";

struct Options
{
    QString traceFile;
    QString rewritten;
    QString picture;
    QStringList files;
};

bool readOptions(const QStringList &arguments, Options *options, int *exitStatus)
{
    QCommandLineParser parser;
    CommandLine::describe(
        &parser,
        QStringLiteral(
            "Reads limit files and prints their limits: name, range, unit, and the pieces of the curve, those that "
            "govern first on top. With a trace it prints instead where the trace exceeds a limit within the limit's "
            "range, one line for each run of neighbouring points, with the worst of them; the exit status is then 1."),
        {QStringLiteral("aveldoran limits examples/data/limits/en55032-radiated.xml"),
         QStringLiteral("aveldoran limits --check examples/data/traces/broadband.csv --plot check.png "
                        "examples/data/limits/short-range-device-spurious.xml")});
    const QCommandLineOption check(QStringLiteral("check"), QStringLiteral("Print where this trace exceeds a limit."),
                                   QStringLiteral("TRACE.csv"));
    const QCommandLineOption rewrite(
        QStringLiteral("rewrite"),
        QStringLiteral("Write the limits of one file anew, as a limit editor does: without descriptions."),
        QStringLiteral("FILE.xml"));
    parser.addOptions({check, rewrite, plotOption(QStringLiteral("Draw the limits, and the trace, into a PNG file."))});
    parser.addPositionalArgument(
        QStringLiteral("PATH"),
        QStringLiteral("A limit file, or a directory of them (*.xml); directories below it are not read."),
        QStringLiteral("PATH..."));
    if (!CommandLine::parse(&parser, kCommand, arguments, exitStatus))
        return false;

    *exitStatus = ExitUsage;
    if (!readArguments(parser, kCommand, QStringLiteral("limit file"), &options->files))
        return false;
    if (parser.isSet(rewrite) && (options->files.size() != 1 || QFileInfo(options->files.constFirst()).isDir())) {
        CommandLine::usageError(kCommand, QStringLiteral("--rewrite expects one limit file"));
        return false;
    }
    // A file may be written anew onto itself.
    return readFileOption(parser, kCommand, QStringLiteral("check"), &options->traceFile) &&
           readOutputOption(parser, kCommand, QStringLiteral("rewrite"), {options->traceFile}, {},
                            &options->rewritten) &&
           readPlotOption(parser, kCommand, options->files + QStringList{options->traceFile, options->rewritten},
                          &options->picture);
}

// The limits of all files that were read.
struct Limits
{
    struct File
    {
        QString name;
        int end; // in `all`: behind the last limit of the file
    };
    QList<const ALimit *> all;
    QVector<File> files;

    Limits() = default;
    ~Limits() { qDeleteAll(all); }

    bool read(const QString &fileName)
    {
        if (!canBeRead(fileName))
            return false;
        Console::progress(QStringLiteral("reading %1").arg(fileName));
        const bool isRead =
            Console::attempt([&](QString *errorText) { return ALimit::readAll(fileName, all, errorText); });
        if (isRead)
            files.append({fileName, all.size()});
        return isRead;
    }

    bool readPath(const QString &path)
    {
        if (!QFileInfo(path).isDir())
            return read(path);
        const QFileInfoList entries = QDir(path).entryInfoList({QStringLiteral("*.xml")}, QDir::Files);
        if (entries.isEmpty())
            Console::error(QStringLiteral("%1: no limit files (*.xml) in this directory").arg(path));
        bool complete = !entries.isEmpty();
        for (const QFileInfo &entry : entries)
            complete = read(entry.filePath()) && complete;
        return complete;
    }

    // "FILE: LIMIT: TEXT".
    void report(int index, const QString &text) const
    {
        const auto file =
            std::find_if(files.begin(), files.end(), [index](const File &each) { return index < each.end; });
        Console::error(
            QStringLiteral("%1: %2: %3").arg(file->name, Console::oneLineOrDash(all.at(index)->name()), text));
    }

    // Prints each file's name and, by `printLimit` with the index of each, its limits.
    void print(const std::function<void(int index)> &printLimit) const
    {
        int index = 0;
        for (const File &file : files) {
            Console::write(
                QStringLiteral("%1: %2\n").arg(Console::oneLine(file.name), countText(file.end - index, "limit")));
            for (; index < file.end; ++index)
                printLimit(index);
        }
    }

private:
    Q_DISABLE_COPY(Limits)
};

QString nameOf(const ALimit &limit)
{
    return Console::oneLineOrDash(limit.name());
}

QString unitOf(const ALimit &limit)
{
    const emu_entry *unit = emu_find(limit.unitId());
    return unit ? QString::fromUcs4(unit->name) : QStringLiteral("unit %1").arg(Console::oneLine(limit.unit()));
}

QString interpolationText(unsigned int interpolation)
{
    switch (interpolation) {
    case ALimit::Step:
        return QStringLiteral("step");
    case ALimit::Logarithmic:
        return QStringLiteral("logarithmic");
    default:
        return QStringLiteral("linear");
    }
}

void printPiece(const QString &where, const QString &value)
{
    constexpr int kWidth = 30;
    Console::write(QStringLiteral("    ") + where.leftJustified(kWidth) + QStringLiteral("  ") + value +
                   QLatin1Char('\n'));
}

void printLimit(const ALimit &limit)
{
    QString line = QStringLiteral("  %1  %2  %3")
                       .arg(nameOf(limit), frequencyRangeText(limit.begin(), limit.end()), unitOf(limit));
    if (!limit.description().isEmpty())
        line += QStringLiteral("  # ") + Console::oneLine(limit.description());
    Console::write(line + QLatin1Char('\n'));
    for (const ALimit::Section &section : limit.sections()) {
        const bool isFlat = section.beginValue == section.endValue || section.interpolation == ALimit::Step;
        printPiece(frequencyRangeText(section.begin, section.end),
                   isFlat ? levelText(section.beginValue, limit.unitId())
                          : QStringLiteral("%1 to %2, %3")
                                .arg(levelText(section.beginValue, limit.unitId()),
                                     levelText(section.endValue, limit.unitId()),
                                     interpolationText(section.interpolation)));
    }
    for (const ALimit::Level &level : limit.levels())
        printPiece(QStringLiteral("at ") + shortFrequency(level.frequency),
                   QStringLiteral("%1, %2").arg(levelText(level.value, limit.unitId()),
                                                interpolationText(level.interpolation)));
}

void printExcess(const LimitExcess &excess, int traceUnit)
{
    QString run = countText(excess.points, "point");
    if (excess.points > 1)
        run += QStringLiteral(", ") + frequencyRangeText(excess.begin, excess.end);
    const double above = excess.level - excess.limit;
    Console::write(QStringLiteral("    %1  %2, limit %3, excess %4  (%5)\n")
                       .arg(shortFrequency(excess.frequency).leftJustified(16), levelText(excess.level, traceUnit),
                            levelText(excess.limit, traceUnit),
                            emu_find(traceUnit)->logarithmic != 0 ? decibelText(above) + QStringLiteral(" dB")
                                                                  : levelText(above, traceUnit),
                            run));
}

// True if the trace was compared with the limit and doesn't exceed it.
bool checkTrace(const Limits &limits, int index, const Trace &trace)
{
    const ALimit &limit = *limits.all.at(index);
    int compared = 0;
    QVector<LimitExcess> found;
    if (!areComparable(limit.unitId(), trace.unit)) {
        limits.report(index, QStringLiteral("the trace in %1 can't be compared with a limit in %2")
                                 .arg(QString::fromUcs4(emu_find(trace.unit)->name), unitOf(limit)));
    } else {
        found = findExcesses(limit, trace, &compared);
        if (compared == 0)
            limits.report(index, QStringLiteral("no point of the trace lies where it governs"));
    }
    Console::write(QStringLiteral("  %1: %2; %3 compared\n")
                       .arg(nameOf(limit),
                            QLatin1String(compared == 0     ? "not checked"
                                          : found.isEmpty() ? "kept"
                                                            : "exceeded"),
                            countText(compared, "point")));
    for (const LimitExcess &excess : qAsConst(found))
        printExcess(excess, trace.unit);
    return found.isEmpty() && compared > 0;
}

int countPieces(const ALimitModel &model)
{
    int pieces = 0;
    for (int row = 0; row < model.rowCount(); ++row)
        pieces += model.rowCount(model.index(row, ALimitModel::ColumnName));
    return pieces;
}

int countDescriptions(const ALimitModel &model)
{
    int descriptions = 0;
    for (int row = 0; row < model.rowCount(); ++row)
        descriptions += model.index(row, ALimitModel::ColumnDescription).data().toString().isEmpty() ? 0 : 1;
    return descriptions;
}

// The model doesn't notice a full disk, so the file is read back before it takes the place of an old one.
bool rewrite(const QString &fileName, const QString &target)
{
    ALimitModel model;
    QObject::connect(&model, &ALimitModel::loadError, &Console::error);
    QObject::connect(&model, &ALimitModel::saveError, &Console::error);
    const QTemporaryDir directory;
    if (!directory.isValid()) {
        Console::error(
            QStringLiteral("%1: can't be written: No directory can be made in %2").arg(target, QDir::tempPath()));
        return false;
    }
    const QString written = directory.filePath(QStringLiteral("limits.xml"));
    if (!model.loadFromFile(fileName) || !model.saveToFile(written))
        return false;
    ALimitModel again;
    if (!again.loadFromFile(written) || again.rowCount() != model.rowCount() ||
        countPieces(again) != countPieces(model)) {
        Console::error(QStringLiteral("%1: can't be written: The limits would not be whole").arg(target));
        return false;
    }
    QFile source(written);
    if (!source.open(QIODevice::ReadOnly)) {
        Console::error(QStringLiteral("%1: can't be read: %2").arg(written, source.errorString()));
        return false;
    }
    if (!Console::attempt([&](QString *errorText) { return writeOutputFile(target, source.readAll(), errorText); }))
        return false;
    Console::tellWritten(target, QStringLiteral("%1, %2").arg(countText(model.rowCount(), "limit"),
                                                              countText(countPieces(model), "piece")));
    if (const int descriptions = countDescriptions(model); descriptions > 0)
        Console::tellLeftOut(target, countText(descriptions, "description"));
    return true;
}

// The title names what was measured, or else where the limits stand.
bool draw(const Limits &limits, const Trace *trace, const Options &options)
{
    const QString &picture = options.picture;
    const QString &subject = trace ? options.traceFile : options.files.constFirst();
    const QString title = options.files.size() > 1 && !trace ? QStringLiteral("Limits") : QFileInfo(subject).fileName();
    Console::progress(QStringLiteral("drawing %1").arg(picture));
    const int unit = trace ? trace->unit : limits.all.isEmpty() ? 0 : limits.all.constFirst()->unitId();
    if (!emu_find(unit)) {
        limits.report(0, QStringLiteral("%1 is not known and can't be drawn").arg(unitOf(*limits.all.constFirst())));
        return false;
    }
    bool complete = true;
    QList<const ALimit *> drawn;
    for (int i = 0; i < limits.all.size(); ++i) {
        const ALimit *limit = limits.all.at(i);
        if (areComparable(limit->unitId(), unit)) {
            drawn.append(limit);
            continue;
        }
        limits.report(i, QStringLiteral("a limit in %1 can't be drawn over %2")
                             .arg(unitOf(*limit), QString::fromUcs4(emu_find(unit)->name)));
        complete = false;
    }
    const bool saved = Console::attempt([&](QString *errorText) {
        return drawLimits(Console::oneLine(title), drawn, trace, unit, picture, errorText);
    });
    if (!saved)
        return false;
    QString content = countText(drawn.size(), "limit");
    if (trace)
        content += QStringLiteral(", ") + countText(trace->values.size(), "point");
    Console::tellWritten(picture, content);
    return complete;
}

} // namespace

int runLimits(const QStringList &arguments)
{
    Options options;
    int exitStatus = ExitDone;
    if (!readOptions(arguments, &options, &exitStatus))
        return exitStatus;

    Limits limits;
    bool areRead = true;
    for (const QString &path : qAsConst(options.files))
        areRead = limits.readPath(path) && areRead;

    bool complete = areRead;
    bool hasTrace = false;
    Trace trace;
    if (options.traceFile.isEmpty()) {
        limits.print([&limits](int index) { printLimit(*limits.all.at(index)); });
    } else {
        Console::progress(QStringLiteral("reading %1").arg(options.traceFile));
        hasTrace =
            Console::attempt([&](QString *errorText) { return readTraceFile(options.traceFile, &trace, errorText); });
        complete = hasTrace && complete;
        if (hasTrace)
            limits.print([&](int index) { complete = checkTrace(limits, index, trace) && complete; });
    }
    if (!options.rewritten.isEmpty() && areRead) // else that is told
        complete = rewrite(options.files.constFirst(), options.rewritten) && complete;
    complete = Console::finish() && complete;
    const bool isAnyRead = complete || !limits.all.isEmpty(); // else an old picture says more than an empty one
    if (!options.picture.isEmpty() && isAnyRead)
        complete = draw(limits, hasTrace ? &trace : nullptr, options) && complete;
    return complete ? ExitDone : ExitFailed;
}
