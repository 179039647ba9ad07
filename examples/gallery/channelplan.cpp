#include "gallery.h"

#include <channel/achannelinfo.h>
#include <channel/achannelinfomodel.h>
#include <datamanager/adatamanager.h>
#include <limit/alimitselectiondelegate.h>
#include <views/abooleanitemdelegate.h>

#include <QtWidgets/QHeaderView>
#include <QtWidgets/QTreeView>

namespace {

// Frequencies in the form of the default locale, with no more decimals than they have. The model gives all of them,
// with a point; that is what an editor shows.
class ShortFrequencyDelegate : public QStyledItemDelegate
{
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    QString displayText(const QVariant &value, const QLocale & /*locale*/) const override
    {
        return AFrequency(value.toByteArray().constData())
            .formatString(QStringLiteral("%L1 %2"), AFrequency::NoUnit, 0, 'f', QLocale::FloatingPointShortest);
    }
};

} // namespace

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

    const QMap<unsigned int, QString> types = {{AChannelInfo::Generic, Gallery::tr("range")},
                                               {AChannelInfo::Direction, Gallery::tr("direction")},
                                               {AChannelInfo::Provider, Gallery::tr("provider")},
                                               {AChannelInfo::Channel, Gallery::tr("channel")},
                                               {AChannelInfo::AutoChannel, Gallery::tr("generated channel")}};
    view->setItemDelegateForColumn(AChannelInfo::ColumnType, new ALimitSelectionDelegate(types, view));
    auto *frequencies = new ShortFrequencyDelegate(view);
    view->setItemDelegateForColumn(AChannelInfo::ColumnStartFreq, frequencies);
    view->setItemDelegateForColumn(AChannelInfo::ColumnStopFreq, frequencies);

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
