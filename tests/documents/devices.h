#pragma once

#include <core/agpsloggerdevice.h>
#include <core/asimulateddevice.h>
#include <core/aveldorandevicefilter.h>
#include <core/aveldorandevicelist.h>
#include <views/adevicelistmodel.h>

#include <QtCore/QDebug>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QTableView>

// Qt's module of serial ports, which nothing else here needs.
#if __has_include(<QtSerialPort/QSerialPort>)
#include <QtSerialPort/QSerialPort>
#else
class QSerialPort : public QIODevice
{
public:
    explicit QSerialPort(const QString &name, QObject *parent = nullptr);
    bool setBaudRate(qint32 baudRate);

protected:
    qint64 readData(char *data, qint64 maximum) override;
    qint64 writeData(const char *data, qint64 size) override;
};
#endif

class Page : public QWidget
{
public:
    void statements();
    void openDevice(unsigned short vendorId, unsigned short productId, const QString &name);

    QPushButton *refreshButton;
};
