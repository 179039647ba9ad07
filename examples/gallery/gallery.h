#pragma once

#include <QtCore/QCoreApplication>
#include <QtCore/QString>
#include <QtCore/QTextStream>

class QAbstractItemView;
class QWidget;

// The texts of all tabs: translated as one context.
class Gallery
{
    Q_DECLARE_TR_FUNCTIONS(Gallery)
};

// The tabs of the gallery. Each stands in a file of its own, which can be copied with this header. `dataDir` holds the
// example data.
namespace gallery {

// Errors go to the standard error stream, and make the exit status 1.
inline int errorCount = 0;
inline void tellError(const QString &text)
{
    ++errorCount;
    QTextStream(stderr) << text << '\n';
}

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
