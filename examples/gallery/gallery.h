#pragma once

#include <QtCore/QCoreApplication>
#include <QtCore/QString>
#include <QtCore/QTextStream>
#include <QtWidgets/QAbstractItemDelegate>
#include <QtWidgets/QHeaderView>
#include <QtWidgets/QStyleOptionViewItem>
#include <QtWidgets/QTableView>

#include <algorithm>
#include <memory>

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

// Makes a column as wide as the widest editor of its cells, for delegates that show cells as their editors.
inline void fitColumnToEditors(QTableView *view, int column)
{
    view->resizeColumnToContents(column);
    int width = view->columnWidth(column);
    for (int row = 0; row < view->model()->rowCount(); ++row) {
        const QModelIndex cell = view->model()->index(row, column);
        const std::unique_ptr<QWidget> editor(
            view->itemDelegate(cell)->createEditor(view->viewport(), QStyleOptionViewItem(), cell));
        width = std::max(width, editor ? editor->sizeHint().width() : 0);
    }
    view->setColumnWidth(column, width);
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
