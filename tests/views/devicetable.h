#pragma once

#include "core/modeltexts.h"

#include <views/adevicelistmodel.h>

#include <QtGui/QStandardItemModel>
#include <QtTest/QtTest>

// What the tests of the table of devices read from it.
namespace devicetable {

constexpr quint32 kBus = 3 * 256;

using modeltexts::rowTexts;

inline QStringList namesIn(const QAbstractItemModel &model)
{
    QStringList names;
    for (int row = 0; row < model.rowCount(); ++row)
        names << model.index(row, ADeviceListModel::ColumnName).data().toString();
    return names;
}

inline QList<bool> connectedIn(const QAbstractItemModel &model)
{
    QList<bool> states;
    for (int row = 0; row < model.rowCount(); ++row)
        states << model.index(row, ADeviceListModel::ColumnConnected).data().toBool();
    return states;
}

inline void copyRow(const QAbstractItemModel &model, int row, QStandardItemModel *copy)
{
    QList<QStandardItem *> items;
    for (int column = 0; column < model.columnCount(); ++column) {
        items << new QStandardItem;
        items.last()->setData(model.index(row, column).data(), Qt::DisplayRole);
    }
    copy->appendRow(items);
}

inline void refresh(ADeviceListModel *model)
{
    QSignalSpy resets(model, &QAbstractItemModel::modelReset);
    model->refresh();
    QVERIFY(resets.wait());
}

} // namespace devicetable
