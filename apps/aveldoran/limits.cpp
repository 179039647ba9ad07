#include "apps/aveldoran/commandline.h"
#include "apps/aveldoran/commands.h"
#include "apps/aveldoran/console.h"
#include "apps/aveldoran/inputfile.h"
#include "apps/aveldoran/jsonlist.h"
#include "apps/aveldoran/limitcurves.h"
#include "apps/aveldoran/limittext.h"
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
#include <QtCore/QJsonObject>
#include <QtCore/QTemporaryDir>

#include <algorithm>

namespace {

constexpr char kCommand[] = "limits";

struct Options
{
    bool asJson = false;
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
            "range, one line for each run of neighbouring points, with the worst of them; the exit status is then 1. "
            "As JSON it prints the limits too."),
        {QStringLiteral("aveldoran limits examples/data/limits/en55032-radiated.xml"),
         QStringLiteral("aveldoran limits --check examples/data/traces/broadband.csv --plot check.png "
                        "examples/data/limits/short-range-device-spurious.xml")});
    const QCommandLineOption check(QStringLiteral("check"), QStringLiteral("Print where this trace exceeds a limit."),
                                   QStringLiteral("TRACE.csv"));
    const QCommandLineOption rewrite(
        QStringLiteral("rewrite"),
        QStringLiteral("Write the limits of one file anew, as a limit editor does: without descriptions."),
        QStringLiteral("FILE.xml"));
    parser.addOptions({check, rewrite, formatOption(),
                       plotOption(QStringLiteral("Draw the limits, and the trace, into a PNG file."))});
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
           readFormatOption(parser, kCommand, &options->asJson) &&
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

    const QString &fileOf(int index) const
    {
        return std::upper_bound(files.begin(), files.end(), index,
                                [](int each, const File &file) { return each < file.end; })
            ->name;
    }

    // "FILE: LIMIT: TEXT".
    void report(int index, const QString &text) const
    {
        Console::error(QStringLiteral("%1: %2: %3").arg(fileOf(index), limitName(*all.at(index)), text));
    }

private:
    Q_DISABLE_COPY(Limits)
};

// What can't be compared is reported.
LimitCheck checkTrace(const Limits &limits, int index, const Trace &trace)
{
    const ALimit &limit = *limits.all.at(index);
    if (!areComparable(limit.unitId(), trace.unit)) {
        limits.report(index, QStringLiteral("the trace in %1 can't be compared with a limit in %2")
                                 .arg(QString::fromUcs4(emu_find(trace.unit)->name), limitUnitText(limit)));
        return {};
    }
    LimitCheck check = checkLimit(limit, trace);
    if (check.compared == 0)
        limits.report(index, QStringLiteral("no point of the trace lies where it governs"));
    return check;
}

// Prints each file's name and its limits, or what came of checking a trace against them. True if there is no trace, or
// it keeps them all.
bool printText(const Limits &limits, const Trace *trace)
{
    bool areKept = true;
    int index = 0;
    for (const Limits::File &file : limits.files) {
        Console::write(
            QStringLiteral("%1: %2\n").arg(Console::oneLine(file.name), countText(file.end - index, "limit")));
        for (; index < file.end; ++index) {
            const ALimit &limit = *limits.all.at(index);
            if (!trace) {
                Console::write(limitAsText(limit));
                continue;
            }
            const LimitCheck check = checkTrace(limits, index, *trace);
            Console::write(checkAsText(limit, check, trace->unit));
            areKept = areKept && check.isKept();
        }
    }
    return areKept;
}

// The same as JSON.
bool printJson(const Limits &limits, const Trace *trace)
{
    bool areKept = true;
    JsonList json;
    for (int index = 0; index < limits.all.size(); ++index) {
        QJsonObject object = limitAsJson(*limits.all.at(index));
        object[QStringLiteral("file")] = limits.fileOf(index);
        if (trace) {
            const LimitCheck check = checkTrace(limits, index, *trace);
            addCheck(check, trace->unit, &object);
            areKept = areKept && check.isKept();
        }
        json.add(object);
    }
    json.end();
    return areKept;
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
        limits.report(
            0, QStringLiteral("%1 is not known and can't be drawn").arg(limitUnitText(*limits.all.constFirst())));
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
                             .arg(limitUnitText(*limit), QString::fromUcs4(emu_find(unit)->name)));
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
    Trace trace;
    const Trace *checked = nullptr;
    if (!options.traceFile.isEmpty()) {
        Console::progress(QStringLiteral("reading %1").arg(options.traceFile));
        if (Console::attempt([&](QString *errorText) { return readTraceFile(options.traceFile, &trace, errorText); }))
            checked = &trace;
    }
    const bool isPrinted = options.traceFile.isEmpty() || checked;
    complete = isPrinted && complete;
    if (isPrinted)
        complete = (options.asJson ? printJson(limits, checked) : printText(limits, checked)) && complete;
    else if (options.asJson)
        JsonList().end();
    if (!options.rewritten.isEmpty() && areRead) // else that is told
        complete = rewrite(options.files.constFirst(), options.rewritten) && complete;
    complete = Console::finish() && complete;
    const bool isAnyRead = complete || !limits.all.isEmpty(); // else an old picture says more than an empty one
    if (!options.picture.isEmpty() && isAnyRead)
        complete = draw(limits, checked, options) && complete;
    return complete ? ExitDone : ExitFailed;
}
