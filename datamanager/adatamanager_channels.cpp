#include "datamanager/adatamanager.h"

#include "channel/achannelinfo.h"
#include "datamanager/adatamanager_p.h"

// The channel store: the tree made from the profiles.

namespace {

const QString &profilesGroup()
{
    static const QString name = QStringLiteral("(profiles)");
    return name;
}

} // namespace

void ADataManager::createChannelInfoFromProfiles()
{
    if (d->channelsBuilt)
        clearChannelInfoData();

    auto *group = new AChannelInfo(d->channelRoot, AChannelInfo::Generic, AFrequency(), AFrequency(), QString(), false);
    // Only there if a receiver of the first run's signal builds the tree again.
    delete d->channelGroups.value(profilesGroup());
    d->channelRoot->appendChild(group);
    d->channelGroups[profilesGroup()] = group;
    const QMap<QString, AProfile *> profiles = d->profiles;
    for (AProfile *profile : profiles)
        AChannelInfo::fromProfile(profile, group, true, false);
    Q_EMIT channelInfoDataChanged();

    if (!d->channelsBuilt) {
        connect(this, &ADataManager::profilesChanged, this, &ADataManager::createChannelInfoFromProfiles);
        d->channelsBuilt = true;
    }
}

void ADataManager::clearChannelInfoData()
{
    qDeleteAll(d->channelGroups);
    d->channelGroups.clear();
    Q_EMIT channelInfoDataChanged();
}

AChannelInfo *ADataManager::getChannelInfoRoot() const
{
    return d->channelRoot;
}

const AChannelInfo *ADataManager::getChannelInfoForName(const QString &name) const
{
    return d->channelRoot->findByName(name);
}

const AChannelInfo *ADataManager::getChannelInfoForProfile(const QString &id) const
{
    const AChannelInfo *group = d->channelGroups.value(profilesGroup());
    return group && !id.isEmpty() ? group->findByProfileId(id) : nullptr;
}

const AChannelInfo *ADataManager::getChannelInfoForProfile(const AProfile *profile) const
{
    if (!profile)
        return nullptr;
    QString id = profile->id();
    if (profile->flags() & AProfile::DerivedProfile)
        id = id.section(QLatin1Char(':'), 0, 0);
    return getChannelInfoForProfile(id);
}
