#include <channel/achannelinfo.h>
#include <datamanager/adatamanager.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QDebug>

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    ADataManager *manager = ADataManager::instance();
    QObject::connect(manager, &ADataManager::error, [](const QString &text) { qWarning() << text; });

    manager->addProfilePath(QString::fromLocal8Bit(argc > 1 ? argv[1] : "."), AProfile::UserProfile);
    manager->createChannelInfoFromProfiles();
    for (const auto &[range, depth] : manager->getChannelInfoRoot()->channels(0))
        qInfo().noquote() << QString(depth * 2, ' ') + range->label() << range->beginFrequency().canonicalText();
    return 0;
}
