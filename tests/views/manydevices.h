#pragma once

#include "tests/core/usbtestbed.h"
#include "tests/views/opendevice.h"

#include <core/agpsloggerdevice.h>
#include <views/adevicelistmodel.h>

#include <QtCore/QEventLoop>

#include <memory>
#include <vector>

// A model that shows many chips, and open devices with receivers that are none of them but differ from each at the end
// of a text alone.
class ManyDevices
{
public:
    static constexpr int kChips = 200;

    ManyDevices()
    {
        for (int i = 0; i < kChips; ++i)
            m_bed.plug(qPrintable(QStringLiteral("1-%1").arg(i + 1)), "0403", "6014", i + 1,
                       qPrintable(QStringLiteral("a rather long serial number %1").arg(i)), kDescription);
        QEventLoop loop;
        QObject::connect(&m_model, &QAbstractItemModel::modelReset, &loop, &QEventLoop::quit);
        m_model.refresh();
        loop.exec();
    }

    bool isComplete() const { return m_bed.isUsable() && m_model.rowCount() == kChips; }

    void open(int count)
    {
        m_open.clear();
        m_receivers.clear();
        const QString name = QStringLiteral("a rather long serial number xA");
        const QString description = QLatin1String(kDescription) + QLatin1String(" A");
        for (int i = 0; i < count; ++i) {
            m_open.push_back(std::make_unique<OpenDevice>(chipOf(0x0403, 0x6014, name, description, 0)));
            m_receivers.push_back(std::make_unique<AGpsLoggerDevice>(nullptr, nullptr));
            m_receivers.back()->setChipinfo(chipOf(0x0403, 0x6014, name, description, 0));
            m_open.back()->setGpsDevice(m_receivers.back().get());
        }
    }

    // Asks for every cell once, as a view does that shows the whole table; gives how many rows are connected.
    int showAll() const
    {
        int connected = 0;
        for (int row = 0; row < m_model.rowCount(); ++row) {
            for (int column = 0; column < ADeviceListModel::ColumnCount; ++column) {
                const QVariant value = m_model.data(m_model.index(row, column));
                if (column == ADeviceListModel::ColumnConnected && value.toBool())
                    ++connected;
            }
        }
        return connected;
    }

private:
    static constexpr char kDescription[] = "An analyser with a description of some length";

    UsbTestbed m_bed;
    std::vector<std::unique_ptr<AGpsLoggerDevice>> m_receivers;
    std::vector<std::unique_ptr<OpenDevice>> m_open;
    ADeviceListModel m_model;
};
