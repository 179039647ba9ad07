#include "datamanager/adatamanager.h"

#include "channel/achannelinfo.h"
#include "datamanager/adatamanager_p.h"

ADataManager *ADataManager::m_instance = nullptr;

ADataManager *ADataManager::instance()
{
    if (!m_instance)
        m_instance = new ADataManager();
    return m_instance;
}

ADataManager::ADataManager()
    : d(std::make_unique<ADataManagerPrivate>())
{
    d->calibrationFilesByType[ACalibrationData::AllTypes] = FileNames();
    connect(&d->watcher, &QFileSystemWatcher::fileChanged, this, &ADataManager::updateFile);
    d->channelRoot = new AChannelInfo(nullptr, AChannelInfo::Generic, AFrequency(), AFrequency(), QString(), false);
}

// Deliberately without clearProfiles(): an application may hold profiles longer than the registry.
ADataManager::~ADataManager()
{
    clearCalibrationData(ACalibrationData::AllTypes);
    clearLimitData();
    clearChannelInfoData();
    const QStringList watched = d->watcher.files();
    if (!watched.isEmpty())
        d->watcher.removePaths(watched);
    delete d->channelRoot;
    d.reset();
    m_instance = nullptr;
}

void ADataManager::watchFile(QString filename) // NOLINT(performance-unnecessary-value-param): a slot's signature
{
    d->watcher.addPath(filename); // once: a file that is watched already is passed over
}
