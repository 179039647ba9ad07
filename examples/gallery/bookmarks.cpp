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
#include <QtWidgets/QApplication>
#include <QtWidgets/QDoubleSpinBox>
#include <QtWidgets/QStyleOptionSpinBox>

#include <algorithm>

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

// Of a column that AFrequencyDelegate paints. Its texts stand in the middle of a spin box, so that they need as much
// room on the left as the buttons have on the right.
int widthOfFrequencies(const QTableView &view, int column)
{
    QStyleOptionSpinBox box;
    box.initFrom(&view);
    box.rect.setSize(QDoubleSpinBox().sizeHint());
    box.frame = true;
    const QStyle *style = QApplication::style();
    const QRect field = style->subControlRect(QStyle::CC_SpinBox, &box, QStyle::SC_SpinBoxEditField);
    const int blank = view.fontMetrics().horizontalAdvance(QLatin1Char(' '));
    int width = view.horizontalHeader()->sectionSizeHint(column);
    for (int row = 0; row < view.model()->rowCount(); ++row) {
        const AFrequency frequency(view.model()->index(row, column).data(Qt::EditRole).toByteArray().constData());
        const QString text = frequency.formatString(QStringLiteral("%L1 %2"), AFrequency::NoUnit, 0, 'f', -1);
        width = std::max(width,
                         view.fontMetrics().horizontalAdvance(text) + 2 * (box.rect.width() - field.width() + blank));
    }
    return width;
}

} // namespace

// A table of the application's own with a delegate for each kind of column.
QWidget *gallery::makeBookmarksTab()
{
    const QVector<QVariantList> rows = {
        {"Radio", "98.1 MHz", 0.2, "Wide FM", true, false, {}},
        {Gallery::tr("Tower"), "118,300 MHz", 0.025, "AM", true, true, {}},
        {Gallery::tr("Harbour"), "156.8 MHz", 0.025, "FM", false, true, {}},
        {Gallery::tr("Time signal"), "77.5 kHz", 0.001, Gallery::tr("None"), false, false, {}},
    };
    auto *view = new QTableView;
    auto *model = new QStandardItemModel(rows.size(), ColumnCount, view);
    model->setHorizontalHeaderLabels({Gallery::tr("Name"), Gallery::tr("Frequency"), Gallery::tr("Width (MHz)"),
                                      Gallery::tr("Demodulation"), Gallery::tr("Active"), Gallery::tr("Priority"),
                                      Gallery::tr("Color")});
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
    view->resizeColumnsToContents();
    view->setColumnWidth(ColumnFrequency, widthOfFrequencies(*view, ColumnFrequency));
    for (const int column : {ColumnWidth, ColumnDemodulation, ColumnActive, ColumnPriority})
        gallery::fitColumnToEditors(view, column);
    view->setCurrentIndex(model->index(1, ColumnColor)); // with a frame in place of the highlight
    return view;
}
