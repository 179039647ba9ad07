#include "apps/aveldoran/commandline.h"
#include "apps/aveldoran/commands.h"
#include "apps/aveldoran/console.h"
#include "apps/aveldoran/inputfile.h"
#include "apps/aveldoran/jsonlist.h"
#include "apps/aveldoran/options.h"
#include "apps/aveldoran/plantext.h"
#include "apps/aveldoran/planxml.h"
#include "apps/aveldoran/valuetext.h"

#include <datamanager/adatamanager.h>

#include <QtCore/QCommandLineParser>
#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QHash>
#include <QtCore/QJsonObject>
#include <QtCore/QLoggingCategory>
#include <QtCore/QSet>

#include <algorithm>
#include <memory>

namespace {

constexpr char kCommand[] = "channels";

constexpr qint64 kMaxExpandedChannels = 10000000;
constexpr qint64 kMaxRangesAsXml = 250000; // a document of them takes 700 MB

// The root and the group of all profiles are of no use to a reader: the plan begins with the profiles, and with the
// ranges of EFIS exports, which stand in the same group.
constexpr int kHiddenLevels = 2;

enum class Format
{
    Text,
    Json,
    Xml,
};

struct Options
{
    bool expand = false;
    bool stacked = false;
    Format format = Format::Text;
    QStringList efisFiles;
    QStringList paths;
};

bool readOptions(const QStringList &arguments, Options *options, int *exitStatus)
{
    QCommandLineParser parser;
    CommandLine::describe(
        &parser,
        QStringLiteral("Reads profile files and EFIS exports, builds their channel plan and prints it, one range a "
                       "line."),
        {QStringLiteral("aveldoran channels --expand --format json examples/data/profiles/fm-broadcast.profile"),
         QStringLiteral("aveldoran channels --format xml --efis examples/data/efis/allocations.csv > plan.xml")});
    const QCommandLineOption expand(QStringLiteral("expand"),
                                    QStringLiteral("Turn channel definitions into channels (at most %1, as xml %2).")
                                        .arg(QString::number(kMaxExpandedChannels), QString::number(kMaxRangesAsXml)));
    const QCommandLineOption stacked(QStringLiteral("stacked"),
                                     QStringLiteral("Print for each range a level on which it overlaps no neighbour."));
    const QCommandLineOption format = optionWithDefault(
        QStringLiteral("format"), QStringLiteral("How to print, xml being a channel section: text, json or xml"),
        QStringLiteral("FORMAT"), QStringLiteral("text"));
    const QCommandLineOption efis(
        QStringLiteral("efis"),
        QStringLiteral("Add what is valid today of an EFIS export (CSV). May be given several times."),
        QStringLiteral("FILE"));
    parser.addOptions({expand, stacked, format, efis});
    parser.addPositionalArgument(
        QStringLiteral("PATH"),
        QStringLiteral("A profile file, or a directory of them (*.profile); directories below it are not read."),
        QStringLiteral("[PATH...]"));
    if (!CommandLine::parse(&parser, kCommand, arguments, exitStatus, efis.names()))
        return false;

    *exitStatus = ExitUsage;
    options->expand = parser.isSet(expand);
    options->stacked = parser.isSet(stacked);
    options->paths = parser.positionalArguments();
    if (!readFilesOption(parser, kCommand, QStringLiteral("efis"), &options->efisFiles))
        return false;
    if (options->paths.isEmpty() && options->efisFiles.isEmpty())
        return CommandLine::refuseMissing(kCommand, QStringLiteral("a profile file or directory"));
    int choice = 0;
    if (!readChoiceOption(parser, kCommand, QStringLiteral("format"),
                          {QStringLiteral("text"), QStringLiteral("json"), QStringLiteral("xml")}, &choice))
        return false;
    options->format = static_cast<Format>(choice);
    if (options->stacked && options->format == Format::Xml) {
        CommandLine::usageError(kCommand, QStringLiteral("the xml format has no place for stacking levels"));
        return false;
    }
    return true;
}

// Says why a file that can be read gave no profile. False if it would give one now.
bool reportInvalidProfile(const QString &file, const AProfile &profile)
{
    if (profile.isValid())
        return false;
    Console::error(QStringLiteral("%1: no valid profile: %2").arg(file, profile.errorText()));
    return true;
}

// The manager skips in silence what it can't use of a directory; a user who named the directory is told.
bool addDirectory(ADataManager *manager, const QString &path)
{
    manager->addProfilePath(path, AProfile::UserProfile);
    QSet<QString> takenOver;
    const QList<AProfile *> profiles = manager->getProfiles();
    for (const AProfile *profile : profiles)
        takenOver.insert(profile->source());

    const QFileInfoList files =
        QDir(path).entryInfoList({QStringLiteral("*.profile")}, QDir::Files | QDir::CaseSensitive);
    if (files.isEmpty())
        Console::error(QStringLiteral("%1: no profile files (*.profile) in this directory").arg(path));
    bool complete = !files.isEmpty();
    for (const QFileInfo &file : files) {
        const QString name = file.absoluteFilePath();
        if (takenOver.contains(name))
            continue;
        const std::unique_ptr<AProfile> profile(AProfile::fromFile(name));
        if (!profile && canBeRead(name)) // else it tells why not
            Console::error(QStringLiteral("%1: can't be read").arg(name));
        if (!profile || reportInvalidProfile(name, *profile))
            complete = false; // else its id came again in a later file, which replaced it
    }
    return complete;
}

bool addFile(ADataManager *manager, const QString &path)
{
    if (!canBeRead(path))
        return false;
    if (manager->addProfileFile(path, AProfile::UserProfile))
        return true;
    const std::unique_ptr<AProfile> profile(AProfile::fromFile(path));
    if (profile) // what can't be read, the manager has reported
        reportInvalidProfile(path, *profile);
    return false;
}

bool loadProfiles(ADataManager *manager, const QStringList &paths)
{
    bool complete = true;
    for (const QString &path : paths) {
        Console::progress(QStringLiteral("reading %1").arg(path));
        const bool added = QFileInfo(path).isDir() ? addDirectory(manager, path) : addFile(manager, path);
        complete = added && complete;
    }
    Console::clearProgress();
    return complete;
}

// The files that the ranges of a plan came from. Each of them gave one range of the group.
using Files = QHash<const AChannelInfo *, QString>;

// One range for the file, named after it, with the allocations below.
bool addEfisFile(AChannelInfo *group, const QString &fileName, Files *sources)
{
    Console::progress(QStringLiteral("reading %1").arg(fileName));
    QFile file(fileName);
    if (!canBeRead(fileName) || !file.open(QIODevice::ReadOnly))
        return false;
    auto range = std::make_unique<AChannelInfo>(group, AChannelInfo::Generic, AFrequency(), AFrequency(),
                                                QFileInfo(fileName).completeBaseName(), true);
    const bool anyTaken = AChannelInfo::fromEfisCSV(&file, range.get());
    if (file.error() != QFileDevice::NoError) {
        Console::error(QStringLiteral("%1: can't be read: %2").arg(fileName, file.errorString()));
        return false;
    }
    if (!anyTaken) {
        Console::error(QStringLiteral("%1: no line is an allocation that is valid today").arg(fileName));
        return false;
    }
    sources->insert(range.get(), fileName);
    group->appendChild(range.release());
    return true;
}

bool loadEfisFiles(AChannelInfo *group, const QStringList &files, Files *sources)
{
    QLoggingCategory::defaultCategory()->setEnabled(QtDebugMsg, false); // what they tell is told with the file's name
    bool complete = true;
    for (const QString &file : files)
        complete = addEfisFile(group, file, sources) && complete;
    Console::clearProgress();
    return complete;
}

Files filesOfProfiles(const ADataManager &manager, AChannelInfo *group)
{
    Files files;
    for (int row = 0; row < group->childCount(); ++row) {
        const AChannelInfo *range = group->child(row);
        const AProfile *profile = manager.getProfileForId(range->data(AChannelInfo::ColumnProfileId).toString());
        if (profile)
            files.insert(range, profile->source());
    }
    return files;
}

bool refuseAmount(const QString &whose, const QString &amount, qint64 most, const char *whatIsDone)
{
    Console::error(QStringLiteral("%1: %2, expected at most %3 to be %4")
                       .arg(whose, amount, QString::number(most), QLatin1String(whatIsDone)));
    return false;
}

// False, with a message, if the plan has too much of what `amountOf` counts. The file is named which alone has too
// much.
template<typename AmountOf>
bool checkAmount(AChannelInfo *group, const Files &files, qint64 most, const AmountOf &amountOf, const char *noun,
                 const char *whatIsDone)
{
    qint64 all = 0;
    for (int row = 0; row < group->childCount(); ++row) {
        const qint64 amount = amountOf(group->child(row));
        if (amount > most)
            return refuseAmount(files.value(group->child(row), QLatin1String(kCommand)), countText(amount, noun), most,
                                whatIsDone);
        all += amount;
    }
    return all <= most || refuseAmount(QLatin1String(kCommand), countText(all, noun), most, whatIsDone);
}

bool expandDefinitions(AChannelInfo *plan, const Files &files, Format format)
{
    const auto amountOf = [](const AChannelInfo *range) { return range->definedChannelCount(); };
    const qint64 most = format == Format::Xml ? kMaxRangesAsXml : kMaxExpandedChannels;
    if (!checkAmount(plan->child(0), files, most, amountOf, "defined channel", "expanded"))
        return false;
    Console::progress(QStringLiteral("expanding %1").arg(countText(plan->definedChannelCount(), "channel")));
    plan->processChannelDefinitions(true, true);
    Console::clearProgress();
    return true;
}

int depthOf(const AChannelInfo *range)
{
    int depth = -kHiddenLevels;
    for (const AChannelInfo *above = range->parent(); above; above = above->parent())
        ++depth;
    return depth;
}

void print(const AChannelInfo::FlatList &plan, const Options &options)
{
    JsonList json;
    for (const auto &[range, level] : plan) {
        const int depth = depthOf(range);
        if (depth < 0)
            continue;
        const int shownLevel = level - kHiddenLevels;
        if (options.format == Format::Json) {
            QJsonObject object = rangeAsJson(*range, depth);
            if (options.stacked)
                object[QStringLiteral("stackingLevel")] = shownLevel;
            json.add(object);
        } else {
            const QString prefix = options.stacked ? QStringLiteral("%1  ").arg(shownLevel, 3) : QString();
            Console::write(prefix + rangeAsText(*range, depth));
        }
    }
    if (options.format == Format::Json)
        json.end();
}

void printAsXml(AChannelInfo *group, const Files &files)
{
    qSetGlobalQHashSeed(0); // Qt's document orders attributes by it: the same plan gives the same text
    Console::write(xmlBegin());
    for (int row = 0; row < group->childCount(); ++row) {
        AChannelInfo *range = group->child(row);
        int readable = 0;
        Console::write(rangeAsXml(*range, &readable));
        const int unreadable = range->channels(0).size() - readable;
        if (unreadable > 0)
            Console::remark(QStringLiteral("%1: dropped by whoever reads this plan: %2 at or outside the edges of "
                                           "the one around, with all within")
                                .arg(files.value(range, QLatin1String(kCommand)), countText(unreadable, "range")));
    }
    Console::write(xmlEnd());
}

// True if there are none.
bool reportWithoutLevel(AChannelInfo *group, const AChannelInfo::FlatList &stacked, const Files &files)
{
    QSet<const AChannelInfo *> shown;
    for (const auto &entry : stacked)
        shown.insert(entry.first);
    bool complete = true;
    for (int row = 0; row < group->childCount(); ++row) {
        const AChannelInfo::FlatList ranges = group->child(row)->channels(0);
        const auto leftOut = std::count_if(ranges.begin(), ranges.end(),
                                           [&shown](const auto &entry) { return !shown.contains(entry.first); });
        if (leftOut == 0)
            continue;
        Console::error(QStringLiteral("%1: left out: %2, for which there is no level")
                           .arg(files.value(group->child(row), QLatin1String(kCommand)), countText(leftOut, "range")));
        complete = false;
    }
    return complete;
}

bool buildAndPrint(ADataManager *manager, const Options &options)
{
    manager->createChannelInfoFromProfiles();
    AChannelInfo *plan = manager->getChannelInfoRoot();
    AChannelInfo *group = plan->child(0);
    Files files = filesOfProfiles(*manager, group);
    const bool complete = loadEfisFiles(group, options.efisFiles, &files);
    if (options.expand && !expandDefinitions(plan, files, options.format))
        return false;
    if (options.format == Format::Xml) {
        const auto amountOf = [](AChannelInfo *range) { return range->channels(0).size(); };
        if (!checkAmount(group, files, kMaxRangesAsXml, amountOf, "range", "printed as xml"))
            return false;
        printAsXml(group, files);
        return Console::finish() && complete;
    }

    const AChannelInfo::FlatList ranges = options.stacked ? plan->stackedChannels(0) : plan->channels(0);
    print(ranges, options);
    const bool printed = Console::finish();
    return (!options.stacked || reportWithoutLevel(group, ranges, files)) && printed && complete;
}

} // namespace

int runChannels(const QStringList &arguments)
{
    Options options;
    int exitStatus = ExitDone;
    if (!readOptions(arguments, &options, &exitStatus))
        return exitStatus;

    ADataManager *manager = ADataManager::instance();
    QObject::connect(manager, &ADataManager::error, &Console::error);
    const bool complete = loadProfiles(manager, options.paths);
    const bool printed = buildAndPrint(manager, options);

    const QList<AProfile *> profiles = manager->getProfiles(); // they outlive the manager
    delete manager;
    qDeleteAll(profiles);
    return complete && printed ? ExitDone : ExitFailed;
}
