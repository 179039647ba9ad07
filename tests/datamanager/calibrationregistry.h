#pragma once

#include "core/astoragelocation.h"
#include "core/calibrationobjects.h"
#include "registryfixture.h"

// What the tests of the calibration store share: a registry with an installed and a user's location of its own.
namespace registrytest {

constexpr auto kPreamplifier = ACalibrationData::Preamplifier;
constexpr auto kAntenna = ACalibrationData::Antenna;
constexpr auto kCable = ACalibrationData::Cable;
constexpr auto kAttenuator = ACalibrationData::Attenuator;
constexpr auto kAnyType = ACalibrationData::AnyType;
constexpr auto kAllTypes = ACalibrationData::AllTypes;

// An object whose table is one gain.
inline ACalibrationData flat(const QString &label, ACalibrationData::CalibrationType type, double gain)
{
    return object(label, type, {{"1 MHz", gain}});
}

inline QString signalOf(ACalibrationData::CalibrationType type)
{
    return QStringLiteral("calibration %1").arg(type);
}

// "label|type|gain", the gain being that at 1 MHz.
inline QStringList texts(const Objects &objects)
{
    QStringList list;
    for (const ACalibrationData &each : objects)
        list << QStringLiteral("%1|%2|%3").arg(each.label()).arg(each.type()).arg(each.valueAt("1 MHz", true));
    return list;
}

inline QString text(const ACalibrationData &object)
{
    return texts({object}).first();
}

class CalibrationRegistry : public Registry
{
public:
    CalibrationRegistry()
    {
        AStorageLocation::setRoot(AStorageLocation::Installed, path(QStringLiteral("installed")));
        AStorageLocation::setRoot(AStorageLocation::User, path(QStringLiteral("user")));
    }
    ~CalibrationRegistry()
    {
        AStorageLocation::setRoot(AStorageLocation::Installed, QString());
        AStorageLocation::setRoot(AStorageLocation::User, QString());
    }

    static QString installed(ACalibrationData::CalibrationType type, const QString &name)
    {
        return AStorageLocation::calibrationPath(AStorageLocation::Installed, type) + name;
    }
    static QString user(ACalibrationData::CalibrationType type, const QString &name)
    {
        return AStorageLocation::calibrationPath(AStorageLocation::User, type) + name;
    }

    // Writes a file, in a directory that is made, and returns its full name. A relative name is below the test's own.
    QString save(const QString &name, const Objects &objects) const
    {
        const QString fileName = QDir::isAbsolutePath(name) ? name : path(name);
        if (!QDir().mkpath(QFileInfo(fileName).path()) || !ACalibrationData::saveAll(fileName, objects))
            qFatal("can't write %s", qPrintable(fileName));
        return fileName;
    }

    // The same, and adds it to the registry.
    QString load(const QString &name, const Objects &objects, ACalibrationData::CalibrationType type)
    {
        const QString fileName = save(name, objects);
        manager->addCalibrationFile(fileName, type);
        settle();
        takeLog();
        return fileName;
    }

    QStringList held(ACalibrationData::CalibrationType type) const
    {
        return texts(manager->getCalibrationsForType(type));
    }
    QString found(const QString &name, ACalibrationData::CalibrationType type) const
    {
        return text(manager->getCalibrationForName(name, type));
    }
    QStringList names(ACalibrationData::CalibrationType type) const { return manager->getCalibrationNames(type); }
};

inline QStringList onDisk(const QString &fileName)
{
    Objects objects;
    return ACalibrationData::readAll(fileName, objects, kAnyType) ? texts(objects)
                                                                  : QStringList{QStringLiteral("unreadable")};
}

const QString kNothing = QStringLiteral("|5|0"); // what a look-up gives that finds nothing

} // namespace registrytest
