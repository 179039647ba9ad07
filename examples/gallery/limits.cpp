#include "gallery.h"

#include <core/alimit.h>
#include <limit/alimitmodel.h>
#include <limit/alimitselectiondelegate.h>
#include <limit/alimitsuffixdelegate.h>

#include <QtWidgets/QHeaderView>
#include <QtWidgets/QTreeView>

// A limit file in an editor. It isn't saved here: saveToFile would do that.
QWidget *gallery::makeLimitsTab(const QString &dataDir)
{
    auto *view = new QTreeView;
    auto *model = new ALimitModel(view);
    QObject::connect(model, &ALimitModel::loadError, &gallery::tellError);
    model->loadFromFile(dataDir + QStringLiteral("/limits/en55032-radiated.xml"));
    view->setModel(model);

    QMap<unsigned int, QString> units;
    const QStringList unitLabels = model->unitLabels();
    for (const QString &label : unitLabels)
        units[static_cast<unsigned int>(units.size())] = label;
    const QMap<unsigned int, QString> interpolations = {{ALimit::Step, Gallery::tr("step")},
                                                        {ALimit::Linear, Gallery::tr("linear")},
                                                        {ALimit::Logarithmic, Gallery::tr("logarithmic")}};
    constexpr int kFrequencies[] = {ALimitModel::ColumnBegin, ALimitModel::ColumnEnd, ALimitModel::ColumnBeginFrequency,
                                    ALimitModel::ColumnEndFrequency};
    auto *megahertz = new ALimitSuffixDelegate(QStringLiteral("MHz"), 6, view);
    for (const int column : kFrequencies)
        view->setItemDelegateForColumn(column, megahertz);
    view->setItemDelegateForColumn(ALimitModel::ColumnUnit, new ALimitSelectionDelegate(units, view));
    view->setItemDelegateForColumn(ALimitModel::ColumnInterpolation, new ALimitSelectionDelegate(interpolations, view));

    view->hideColumn(ALimitModel::ColumnDescription);
    view->expandAll();
    view->header()->resizeSections(QHeaderView::ResizeToContents);
    return view;
}
