#include "apps/aveldoran/commands.h"
#include "apps/aveldoran/console.h"
#include "apps/aveldoran/plantext.h"

#include <datamanager/adatamanager.h>

#include <QtCore/QCommandLineParser>
#include <QtCore/QDir>
#include <QtCore/QFileInfo>
#include <QtCore/QHash>
#include <QtCore/QJsonDocument>
#include <QtCore/QSet>

#include <memory>

namespace {

constexpr qint64 kMaxExpandedChannels = 10000000;

// The root and the group of all profiles are of no use to a reader: the plan begins with the profiles.
constexpr int kHiddenLevels = 2;

struct Options
{
    bool expand = false;
    bool stacked = false;
    bool asJson = false;
    QStringList paths;
};

bool readOptions(const QStringList &arguments, Options *options, int *exitStatus)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(
        QStringLiteral("Reads profile files, builds their channel plan and prints it, one range a line.\n\n"
                       "Example: aveldoran channels --expand --format json fm-broadcast.profile"));
    const QCommandLineOption expand(
        QStringLiteral("expand"),
        QStringLiteral("Turn channel definitions into channels (at most %L1).").arg(kMaxExpandedChannels));
    const QCommandLineOption stacked(QStringLiteral("stacked"),
                                     QStringLiteral("Print for each range a level on which it overlaps no neighbour."));
    const QCommandLineOption format(QStringLiteral("format"), QStringLiteral("How to print: text or json."),
                                    QStringLiteral("FORMAT"), QStringLiteral("text"));
    parser.addOptions({expand, stacked, format});
    parser.addPositionalArgument(QStringLiteral("PATH"), QStringLiteral("A profile file, or a directory of them."),
                                 QStringLiteral("PATH..."));
    if (!Console::parse(&parser, arguments, exitStatus))
        return false;

    *exitStatus = ExitUsage;
    if (parser.positionalArguments().isEmpty()) {
        Console::error(QStringLiteral("channels: a profile file or directory is missing"));
        return false;
    }
    const QString formatName = parser.value(format);
    if (formatName != QLatin1String("text") && formatName != QLatin1String("json")) {
        Console::error(QStringLiteral("channels: unknown format '%1', expected text or json").arg(formatName));
        return false;
    }
    *options = {parser.isSet(expand), parser.isSet(stacked), formatName == QLatin1String("json"),
                parser.positionalArguments()};
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
        if (!profile)
            Console::error(QStringLiteral("%1: can't be read").arg(name));
        if (!profile || reportInvalidProfile(name, *profile))
            complete = false; // else its id came again in a later file, which replaced it
    }
    return complete;
}

bool addFile(ADataManager *manager, const QString &path)
{
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

bool expandDefinitions(AChannelInfo *plan)
{
    const qint64 count = plan->definedChannelCount();
    if (count > kMaxExpandedChannels) {
        Console::error(QStringLiteral("channels: the definitions ask for %L1 channels, at most %L2 are expanded")
                           .arg(count)
                           .arg(kMaxExpandedChannels));
        return false;
    }
    Console::progress(QStringLiteral("expanding %L1 channels").arg(count));
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
    QString separator = QStringLiteral("[\n");
    for (const auto &[range, level] : plan) {
        const int depth = depthOf(range);
        if (depth < 0)
            continue;
        const int shownLevel = level - kHiddenLevels;
        if (options.asJson) {
            QJsonObject object = rangeAsJson(*range, depth);
            if (options.stacked)
                object[QStringLiteral("level")] = shownLevel;
            Console::write(separator + QString::fromUtf8(QJsonDocument(object).toJson(QJsonDocument::Compact)));
            separator = QStringLiteral(",\n");
        } else {
            const QString prefix = options.stacked ? QStringLiteral("%1  ").arg(shownLevel, 3) : QString();
            Console::write(prefix + rangeAsText(*range, depth));
        }
    }
    if (options.asJson)
        Console::write(separator == QLatin1String("[\n") ? QStringLiteral("[]\n") : QStringLiteral("\n]\n"));
}

bool buildAndPrint(ADataManager *manager, const Options &options)
{
    manager->createChannelInfoFromProfiles();
    AChannelInfo *plan = manager->getChannelInfoRoot();
    if (options.expand && !expandDefinitions(plan))
        return false;

    const AChannelInfo::FlatList ranges = options.stacked ? plan->stackedChannels(0) : plan->channels(0);
    print(ranges, options);
    const bool written = Console::finish();
    const int leftOut = options.stacked ? plan->channels(0).size() - ranges.size() : 0;
    if (leftOut > 0)
        Console::error(QStringLiteral("channels: %L1 ranges found no level and are left out").arg(leftOut));
    return written && leftOut == 0;
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
    return complete && printed && !Console::hasWarned() ? ExitDone : ExitFailed;
}
