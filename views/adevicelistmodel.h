#pragma once

#include "core/aveldoranchipinformation.h"
#include "core/aveldoranexport.h"

#include <QtCore/QAbstractTableModel>

#include <memory>

// The analysers, generators and GPS loggers attached to the computer, for a device chooser: one row a USB chip, with
// whether the application has it open. Read-only, and empty until the first refresh() has finished.
//
// "Connected" is found out anew at every call from AVeldoranFactory::openDevices(): no signal tells that a device was
// opened or closed, a view shows it when it next repaints.
class AVELDORAN_DATA_EXPORT ADeviceListModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    // Without a type behind it: a text.
    enum Columns
    {
        ColumnConnected = 0, // bool
        ColumnId = 1,        // int
        ColumnName = 2,
        ColumnDescription = 3,
        ColumnVendorId = 4,  // int
        ColumnProductId = 5, // int
        ColumnCount = 6
    };

    explicit ADeviceListModel(QObject *parent = nullptr);
    ~ADeviceListModel() override;

    int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    int columnCount(const QModelIndex &parent = QModelIndex()) const override;

    // Qt::DisplayRole alone has data. A device is open if an open device's chip, or that of its GPS receiver, has the
    // same ids, the same location or none, and the same texts; a channel letter A or B at the end counts only if both
    // sides have one.
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;

    // The chip that a row shows, found by what the row shows and not by its position, so that `index` may also be that
    // of a proxy or of a copy of the table. If no chip has those texts and ids, the first one; if there is no chip at
    // all, an empty record. Two chips that differ in their location alone are not told apart.
    AVeldoranChipInformation chipinfo(QModelIndex index) const;

public Q_SLOTS:
    // Lists the devices anew, in turns of the event loop. The rows stay until then; the end resets the model, also if
    // nothing has changed or nothing could be listed.
    void refresh();

private Q_SLOTS:
    void onVeldoranDeviceListFinished();

private:
    struct Private;
    std::unique_ptr<Private> d;
};
