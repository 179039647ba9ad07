#pragma once

#include <QtCore/QCoreApplication>
#include <QtCore/QString>

class QAbstractItemView;
class QWidget;

// The texts of all tabs: translated as one context.
class Gallery
{
    Q_DECLARE_TR_FUNCTIONS(Gallery)
};

// The tabs of the gallery. Each stands in a file of its own, which can be copied alone. `dataDir` holds the example
// data.
namespace gallery {

QWidget *makeChannelPlanTab(const QString &dataDir);
QWidget *makeLimitsTab(const QString &dataDir);
QWidget *makeCalibrationsTab(const QString &dataDir);
QWidget *makeMarkersTab();
QWidget *makeVariablesTab();
QWidget *makeBookmarksTab();
QWidget *makeDevicesTab();
QWidget *makeTriggersTab();
QWidget *makeLiveDisplayTab();

} // namespace gallery
