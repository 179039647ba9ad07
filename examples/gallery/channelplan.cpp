#include "gallery.h"

#include <channel/achannelinfo.h>
#include <channel/achannelinfomodel.h>
#include <datamanager/adatamanager.h>
#include <views/abooleanitemdelegate.h>

#include <QtWidgets/QHeaderView>
#include <QtWidgets/QTreeView>

// The registry's channel plan: profiles are watched, so a change of a file shows at once.
QWidget *gallery::makeChannelPlanTab(const QString &dataDir)
{
    ADataManager *manager = ADataManager::instance();
    manager->addProfilePath(dataDir + QStringLiteral("/profiles"), AProfile::UserProfile);
    manager->createChannelInfoFromProfiles();

    auto *view = new QTreeView;
    auto *model = new AChannelInfoModel(view, nullptr);
    view->setModel(model);
    view->setItemDelegateForColumn(AChannelInfo::ColumnSelectable,
                                   new ABooleanItemDelegate(Gallery::tr("Yes"), Gallery::tr("No"), view));

    // The model owns its root, and so does the registry: the view works on a copy.
    const auto reload = [=] {
        delete model->setModelRoot(new AChannelInfo(*manager->getChannelInfoRoot()));
        view->setRootIndex(model->index(0, 0)); // the group of all profiles
    };
    QObject::connect(manager, &ADataManager::channelInfoDataChanged, model, reload);
    reload();

    for (const int column : {AChannelInfo::ColumnQualifiedName, AChannelInfo::ColumnProfileId,
                             AChannelInfo::ColumnAutoChannelDefinition, AChannelInfo::ColumnMirrorEntryFreq})
        view->hideColumn(column);
    view->header()->setStretchLastSection(false); // which would cut the comments
    view->header()->resizeSections(QHeaderView::ResizeToContents);
    return view;
}
