#include "apps/aveldoran/commandline.h"
#include "apps/aveldoran/commands.h"
#include "apps/aveldoran/console.h"
#include "apps/aveldoran/inputfile.h"
#include "apps/aveldoran/jsonlist.h"
#include "apps/aveldoran/options.h"
#include "apps/aveldoran/plantext.h"
#include "apps/aveldoran/planxml.h"

#include <datamanager/adatamanager.h>

#include <QtCore/QCommandLineParser>
#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QHash>
#include <QtCore/QJsonObject>
#include <QtCore/QLoggingCategory>
#include <QtCore/QSet>

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
                                        .arg(kMaxExpandedChannels)
                                        .arg(kMaxRangesAsXml));
    const QCommandLineOption stacked(QStringLiteral("stacked"),
                                     QStringLiteral("Print for each range a level on which it overlaps no neighbour."));
    const QCommandLineOption format = optionWithDefault(
        QStringLiteral("format"), QStringLiteral("How to print: text, json, or xml: a channel section"),
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
    if (options->paths.isEmpty() && options->efisFiles.isEmpty()) {
        CommandLine::usageError(kCommand, QStringLiteral("a profile file or directory is missing"));
        return false;
    }
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

// One range for the file, named after it, with the allocations below.
bool addEfisFile(AChannelInfo *group, const QString &fileName)
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
    group->appendChild(range.release());
    return true;
}

bool loadEfisFiles(AChannelInfo *group, const QStringList &files)
{
    QLoggingCategory::defaultCategory()->setEnabled(QtDebugMsg, false); // what they tell is told with the file's name
    bool complete = true;
    for (const QString &file : files)
        complete = addEfisFile(group, file) && complete;
    Console::clearProgress();
    return complete;
}

bool expandDefinitions(AChannelInfo *plan, Format format)
{
    const qint64 count = plan->definedChannelCount();
    const qint64 limit = format == Format::Xml ? kMaxRangesAsXml : kMaxExpandedChannels;
    if (count > limit) {
        Console::error(QStringLiteral("channels: the definitions ask for %1 channels, at most %2 are expanded")
                           .arg(count)
                           .arg(limit));
        return false;
    }
    Console::progress(QStringLiteral("expanding %1 channels").arg(count));
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
                object[QStringLiteral("level")] = shownLevel;
            json.add(object);
        } else {
            const QString prefix = options.stacked ? QStringLiteral("%1  ").arg(shownLevel, 3) : QString();
            Console::write(prefix + rangeAsText(*range, depth));
        }
    }
    if (options.format == Format::Json)
        json.end();
}

void printAsXml(AChannelInfo *group)
{
    qSetGlobalQHashSeed(0); // Qt's document orders attributes by it: the same plan gives the same text
    Console::write(xmlBegin());
    int readable = 0;
    for (int row = 0; row < group->childCount(); ++row)
        Console::write(rangeAsXml(*group->child(row), &readable));
    Console::write(xmlEnd());
    const int written = group->channels(0).size() - 1;
    if (readable < written)
        Console::remark(QStringLiteral("channels: %1 of the %2 ranges lie at or outside the edges of the one around "
                                       "them: whoever reads this drops them, with all in them")
                            .arg(written - readable)
                            .arg(written));
}

bool buildAndPrint(ADataManager *manager, const Options &options)
{
    manager->createChannelInfoFromProfiles();
    AChannelInfo *plan = manager->getChannelInfoRoot();
    AChannelInfo *group = plan->child(0);
    const bool complete = loadEfisFiles(group, options.efisFiles);
    if (options.expand && !expandDefinitions(plan, options.format))
        return false;
    if (options.format == Format::Xml) {
        const int count = plan->channels(0).size();
        if (count > kMaxRangesAsXml) {
            Console::error(QStringLiteral("channels: the plan has %1 ranges, at most %2 are written as xml")
                               .arg(count)
                               .arg(kMaxRangesAsXml));
            return false;
        }
        printAsXml(group);
        return Console::finish() && complete;
    }

    const AChannelInfo::FlatList ranges = options.stacked ? plan->stackedChannels(0) : plan->channels(0);
    print(ranges, options);
    const bool written = Console::finish();
    const int leftOut = options.stacked ? plan->channels(0).size() - ranges.size() : 0;
    if (leftOut > 0)
        Console::error(QStringLiteral("channels: %1 ranges found no level and are left out").arg(leftOut));
    return written && complete && leftOut == 0;
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
