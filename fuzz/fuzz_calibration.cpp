#include "fuzz/memoryfile.h"
#include "fuzz/require.h"

#include <core/acalibrationdata.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QDir>
#include <QtCore/QFile>

#include <cstdint>

// A file of any bytes is refused, or gives objects that survive a save in any form, which the first byte chooses.

namespace {

constexpr const char *kSuffixes[] = {".xml", ".caldata", ".offsets"};

QString savedName(std::uint8_t choice)
{
    const QString base =
        QDir::tempPath() + QStringLiteral("/fuzz_calibration-%1").arg(QCoreApplication::applicationPid());
    return base + QLatin1String(kSuffixes[choice % std::size(kSuffixes)]);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const MemoryFile file(data, size);
    QList<ACalibrationData> objects;
    if (!ACalibrationData::readAll(file.name(), objects, ACalibrationData::Cable)) {
        require(objects.isEmpty());
        return 0;
    }
    const QString name = savedName(data[0]);
    QList<ACalibrationData> readBack;
    require(ACalibrationData::saveAll(name, objects));
    require(ACalibrationData::readAll(name, readBack, ACalibrationData::Antenna));
    require(readBack == objects);
    QFile::remove(name);

    for (const ACalibrationData &object : qAsConst(objects)) {
        for (auto entry = object.level().begin(); entry != object.level().end(); ++entry) {
            const double gain = object.valueAt(entry.key(), false);
            require(gain == *entry || (gain != gain && *entry != *entry));
            object.valueAt(entry.key() + AFrequency("0.5"), true);
        }
    }
    return 0;
}
