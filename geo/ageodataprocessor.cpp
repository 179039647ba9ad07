#include "geo/ageodataprocessor.h"

#include "core/agpsloggerdevice.h"
#include "geo/waypoint.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QFile>
#include <QtCore/QPointer>
#include <QtCore/QThread>

AGeoDataProcessor::AGeoDataProcessor(QObject *parent)
    : QObject(parent)
{
    m_nmeaTimer.setSingleShot(true);
}

AGeoDataProcessor::~AGeoDataProcessor()
{
    qDeleteAll(qAsConst(m_waypoints));
}

bool AGeoDataProcessor::loadStoredNmeaContent(AGpsLoggerDevice *device, int fileNumber, int timeout)
{
    constexpr int kPassMs = 100;

    if (!device)
        return false;
    connect(device, &AGpsLoggerDevice::gpsRecordRead, this, &AGeoDataProcessor::addNmeaRecord);
    connect(&m_nmeaTimer, &QTimer::timeout, this, &AGeoDataProcessor::finishNmeaProcessing);

    // A receiver that falls silent has to be seen to do so before the intake ends, or its last record would be missing.
    const int pause = device->pause();
    device->setPause(qMin(pause, timeout / 2));
    const QPointer<AGpsLoggerDevice> loaded(device);

    // Before init(): a device that never delivers ends the intake too.
    m_nmeaTimer.setInterval(qMax(timeout, 0));
    m_nmeaTimer.setSingleShot(true); // again: derived classes have the timer too
    m_nmeaTimer.start();
    if (!device->init()) {
        m_nmeaTimer.stop(); // deliberately still connected: a later record starts it, and its end is signalled
        device->setPause(pause);
        if (device->parent() == this)
            device->deleteLater();
        return false;
    }
    if (fileNumber > 0)
        device->loadFile(fileNumber);
    if (device->ioIsFile())
        device->setStreaming(true);

    const QPointer<AGeoDataProcessor> self(this); // a slot that the wait runs may delete the processor
    // Deliberately polling: processEvents() returns at once when nothing is pending.
    while (self && m_nmeaTimer.isActive()) {
        QCoreApplication::processEvents(QEventLoop::AllEvents, kPassMs);
        QThread::yieldCurrentThread();
    }
    if (loaded)
        loaded->setPause(pause);
    return true;
}

bool AGeoDataProcessor::loadStoredNmeaContent(const QString &fileName, int timeout)
{
    // The device takes ownership of the file, the processor has that of the device.
    return loadStoredNmeaContent(new AGpsLoggerDevice(this, new QFile(fileName)), -1, timeout);
}

void AGeoDataProcessor::addNmeaRecord(
    AGeoData record) // NOLINT(performance-unnecessary-value-param): a slot's signature
{
    m_nmeaTimer.start();
    takeInNmeaRecord(&record);
    storeWaypoint(record);
    Q_EMIT nmeaRecordProcessed();
}

void AGeoDataProcessor::finishNmeaProcessing()
{
    m_nmeaTimer.stop();
    disconnect(&m_nmeaTimer, &QTimer::timeout, this, &AGeoDataProcessor::finishNmeaProcessing);
    const QList<AGpsLoggerDevice *> devices = findChildren<AGpsLoggerDevice *>();
    for (AGpsLoggerDevice *device : devices)
        device->deleteLater();
    Q_EMIT nmeaProcessingFinished();
}

void AGeoDataProcessor::storeWaypoint(const AGeoData &record)
{
    m_keys.clear();
    m_keyedWaypoints.clear(); // or the insertion would copy the map
    // Qt 5.15 would have a QMultiMap for this.
    QT_WARNING_PUSH
    QT_WARNING_DISABLE_DEPRECATED
    m_waypoints.insertMulti(record.recordTime, new AGeoData(record));
    QT_WARNING_POP
}
