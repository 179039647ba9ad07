#include "gallery.h"

#include <views/abooleanitemdelegate.h>
#include <views/acheckboxitemdelegate.h>
#include <views/acomboboxdelegate.h>
#include <views/adoublespinboxdelegate.h>
#include <views/afrequencydelegate.h>
#include <views/aremoveselectiondelegate.h>

#include <QtCore/QStringListModel>
#include <QtGui/QColor>
#include <QtGui/QStandardItemModel>
#include <QtWidgets/QHeaderView>
#include <QtWidgets/QTableView>

namespace {

enum Columns
{
    ColumnName,
    ColumnFrequency, // a text
    ColumnWidth,     // a number of megahertz
    ColumnDemodulation,
    ColumnActive,
    ColumnPriority,
    ColumnColor,
    ColumnCount
};

} // namespace

// A table of the application's own with a delegate for each kind of column.
QWidget *gallery::makeBookmarksTab()
{
    const QVector<QVariantList> rows = {
        {"Radio", "98.1 MHz", 0.2, "Wide FM", true, false, {}},
        {"Tower", "118,300 MHz", 0.025, "AM", true, true, {}},
        {"Harbour", "156.8 MHz", 0.025, "FM", false, true, {}},
        {"Time signal", "77.5 kHz", 0.001, Gallery::tr("None"), false, false, {}},
    };
    auto *view = new QTableView;
    auto *model = new QStandardItemModel(rows.size(), ColumnCount, view);
    model->setHorizontalHeaderLabels({Gallery::tr("Name"), Gallery::tr("Frequency"), Gallery::tr("Width (MHz)"),
                                      Gallery::tr("Demodulation"), Gallery::tr("Active"), Gallery::tr("Priority"),
                                      Gallery::tr("Colour")});
    for (int row = 0; row < rows.size(); ++row) {
        for (int column = 0; column < ColumnCount; ++column)
            model->setData(model->index(row, column), rows.at(row).at(column));
        constexpr int kHueStep = 80;
        model->setData(model->index(row, ColumnColor), QColor::fromHsv(row * kHueStep, 100, 240), Qt::BackgroundRole);
    }
    view->setModel(model);

    auto *frequencies = new AFrequencyDelegate(view);
    frequencies->setOptions(AFrequency::MHz, false);
    auto *demodulations = new QStringListModel({Gallery::tr("None"), "AM", "FM", "Wide FM", "SSB"}, view);
    view->setItemDelegateForColumn(ColumnFrequency, frequencies);
    view->setItemDelegateForColumn(ColumnWidth, new ADoubleSpinBoxDelegate(view));
    view->setItemDelegateForColumn(ColumnDemodulation, new AComboBoxDelegate(demodulations, 0, view));
    view->setItemDelegateForColumn(ColumnActive, new ACheckBoxItemDelegate(view));
    view->setItemDelegateForColumn(ColumnPriority,
                                   new ABooleanItemDelegate(Gallery::tr("High"), Gallery::tr("Normal"), view));
    view->setItemDelegateForColumn(ColumnColor, new ARemoveSelectionDelegate(true, view));
    view->horizontalHeader()->setMinimumSectionSize(110);
    view->resizeColumnsToContents();
    view->setColumnWidth(ColumnFrequency, 170); // of the spin box that it looks like
    view->selectRow(1);
    return view;
}
