#include "gallery.h"

#include <views/abooleanitemdelegate.h>
#include <views/adevicelistmodel.h>

#include <QtWidgets/QHBoxLayout>
#include <QtWidgets/QLabel>
#include <QtWidgets/QPushButton>

namespace {

// The ids of a USB device, as they are written everywhere: four hexadecimal digits.
class UsbIdDelegate : public QStyledItemDelegate
{
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    QString displayText(const QVariant &value, const QLocale & /*locale*/) const override
    {
        constexpr int kDigits = 4;
        constexpr int kBase = 16;
        return QStringLiteral("%1").arg(value.toInt(), kDigits, kBase, QLatin1Char('0'));
    }
};

// What is attached to this computer, found anew when the tab is shown and by the button.
class DeviceChooser : public QWidget
{
public:
    DeviceChooser()
    {
        auto *view = new QTableView;
        view->setModel(&m_model);
        view->setItemDelegateForColumn(ADeviceListModel::ColumnConnected,
                                       new ABooleanItemDelegate(Gallery::tr("Yes"), Gallery::tr("No"), view));
        auto *usbId = new UsbIdDelegate(view);
        view->setItemDelegateForColumn(ADeviceListModel::ColumnVendorId, usbId);
        view->setItemDelegateForColumn(ADeviceListModel::ColumnProductId, usbId);
        view->setSelectionBehavior(QTableView::SelectRows);
        view->horizontalHeader()->setHighlightSections(false); // of all columns, where whole rows are selected
        view->horizontalHeader()->setSectionResizeMode(QHeaderView::ResizeToContents);
        view->horizontalHeader()->setSectionResizeMode(ADeviceListModel::ColumnDescription, QHeaderView::Stretch);

        auto *refresh = new QPushButton(Gallery::tr("Refresh"));
        connect(refresh, &QPushButton::clicked, this, &DeviceChooser::search);
        connect(&m_model, &QAbstractItemModel::modelReset, this, &DeviceChooser::tellResult);

        m_note = new QLabel;
        m_note->setWordWrap(true);
        auto *row = new QHBoxLayout;
        row->addWidget(refresh);
        row->addWidget(m_note, 1);
        auto *layout = new QVBoxLayout(this);
        layout->addWidget(view);
        layout->addLayout(row);
    }

protected:
    void showEvent(QShowEvent * /*event*/) override { search(); }

private:
    void search()
    {
        m_note->setText(Gallery::tr("Looking for devices ..."));
        m_model.refresh();
    }

    void tellResult()
    {
        const int count = m_model.rowCount();
        m_note->setText(
            count ? Gallery::tr("Attached: %1").arg(count)
                  : Gallery::tr("Nothing is attached. Plug in an analyser, a generator or a GPS logger, and refresh."));
    }

    ADeviceListModel m_model;
    QLabel *m_note;
};

} // namespace

QWidget *gallery::makeDevicesTab()
{
    return new DeviceChooser;
}
