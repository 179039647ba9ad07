#pragma once

#include "calibration/acalibrationobjectmodel.h"
#include "datamanager/calibrationregistry.h"

#include <QtTest/QAbstractItemModelTester>

#include <memory>

// What the tests of the calibration model share: the registry instance with a file of its own, and a model on it.
namespace calibrationtest {

using namespace registrytest;

// A manager that is ADataManager::instance() for as long as it lives.
class Calibrations
{
public:
    explicit Calibrations(const Objects &objects = {})
        : file(m_dir.filePath(QStringLiteral("user/calibration/cable/a.caldata")))
        , manager(ADataManager::instance())
    {
        AStorageLocation::setRoot(AStorageLocation::Installed, m_dir.filePath(QStringLiteral("installed")));
        AStorageLocation::setRoot(AStorageLocation::User, m_dir.filePath(QStringLiteral("user")));
        QObject::connect(manager, &ADataManager::calibrationDataChanged, &m_receiver,
                         [this](ACalibrationData::CalibrationType type) { m_log << signalOf(type); });
        for (const ACalibrationData &object : objects)
            manager->addCalibrationData(object, file);
        model = std::make_unique<ACalibrationObjectModel>();
        const QAbstractItemModel *source = model.get();
        const auto log = [this](const char *name) { return [this, name] { m_log << QString(name); }; };
        QObject::connect(source, &QAbstractItemModel::modelAboutToBeReset, &m_receiver, log("to reset"));
        QObject::connect(source, &QAbstractItemModel::modelReset, &m_receiver, log("reset"));
        QObject::connect(source, &QAbstractItemModel::rowsMoved, &m_receiver, log("moved"));
        const auto logRows = [this](const char *name) {
            return [this, name](const QModelIndex &, int first, int last) {
                m_log << QStringLiteral("%1 %2-%3").arg(QString(name)).arg(first).arg(last);
            };
        };
        QObject::connect(source, &QAbstractItemModel::rowsAboutToBeRemoved, &m_receiver, logRows("to remove"));
        QObject::connect(source, &QAbstractItemModel::rowsRemoved, &m_receiver, logRows("removed"));
        QObject::connect(source, &QAbstractItemModel::rowsAboutToBeMoved, &m_receiver,
                         [this](const QModelIndex &, int first, int last, const QModelIndex &, int target) {
                             m_log << QStringLiteral("to move %1-%2 to %3").arg(first).arg(last).arg(target);
                         });
        QObject::connect(source, &QAbstractItemModel::dataChanged, &m_receiver,
                         [this](const QModelIndex &from, const QModelIndex &to) {
                             m_log << QStringLiteral("data %1,%2-%3,%4")
                                          .arg(from.row())
                                          .arg(from.column())
                                          .arg(to.row())
                                          .arg(to.column());
                         });
        m_log.clear();
    }

    ~Calibrations()
    {
        model.reset();
        manager->blockSignals(true);
        if (ownsManager)
            delete manager;
        AStorageLocation::setRoot(AStorageLocation::Installed, QString());
        AStorageLocation::setRoot(AStorageLocation::User, QString());
    }

    QModelIndex top() const { return model->index(0, 0); }
    QModelIndex type(ACalibrationData::CalibrationType type) const { return model->index(type, 0, top()); }
    QModelIndex object(ACalibrationData::CalibrationType type, const QString &label) const
    {
        return model->indexForObject(ACalibrationData(label, type));
    }
    QModelIndex cell(ACalibrationData::CalibrationType type, const QString &label, int row, int column) const
    {
        return model->index(row, column, object(type, label));
    }

    // The rows of an object as shown, "frequency|gain".
    QStringList table(ACalibrationData::CalibrationType type, const QString &label) const
    {
        const QModelIndex parent = object(type, label);
        QStringList rows;
        for (int row = 0; row < model->rowCount(parent); ++row)
            rows << model->index(row, 0, parent).data().toString() + '|' +
                        model->index(row, 1, parent).data().toString();
        return rows;
    }

    // The entries of an object in its file, in hertz, "frequency|gain".
    QStringList saved(const QString &label) const
    {
        Objects objects;
        if (!ACalibrationData::readAll(file, objects, kAnyType))
            return {QStringLiteral("unreadable")};
        QStringList entries;
        for (const ACalibrationData &each : qAsConst(objects)) {
            if (each.label() != label)
                continue;
            for (auto entry = each.level().begin(); entry != each.level().end(); ++entry)
                entries << QStringLiteral("%1|%2")
                               .arg(entry.key().floatValue(AFrequency::Hz), 0, 'g', 15)
                               .arg(*entry, 0, 'g', 15);
        }
        return entries;
    }

    // Signals of the store and the model since the last call, in order.
    QStringList takeLog()
    {
        QStringList log;
        log.swap(m_log);
        return log;
    }

private:
    QTemporaryDir m_dir;
    QObject m_receiver;
    QStringList m_log;

public:
    const QString file; // in the user's location of cables
    ADataManager *manager;
    bool ownsManager = true;
    std::unique_ptr<ACalibrationObjectModel> model;
};

// 10, 20 and 30 MHz with gains of 1, 2 and 4 dB.
inline ACalibrationData ramp(const QString &label = QStringLiteral("ramp"),
                             ACalibrationData::CalibrationType type = kCable)
{
    return object(label, type, {{"10 MHz", 1}, {"20 MHz", 2}, {"30 MHz", 4}});
}

const QString kAddRow = QStringLiteral("-- add value --|-- add value --");

} // namespace calibrationtest
