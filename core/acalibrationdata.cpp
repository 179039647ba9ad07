#include "core/acalibrationdata.h"

#include "core/calibrationfile.h"
#include "core/failure.h"
#include "core/interpolation.h"

#include <algorithm>
#include <cmath>

namespace {

bool isSameGain(double a, double b)
{
    return a == b || (std::isnan(a) && std::isnan(b));
}

} // namespace

ACalibrationData::ACalibrationData() = default;

ACalibrationData::ACalibrationData(const QString &label, CalibrationType type)
    : m_label(label)
    , m_type(type == AllTypes ? AnyType : type)
{}

ACalibrationData::ACalibrationData(const ACalibrationData &other) = default;
ACalibrationData &ACalibrationData::operator=(const ACalibrationData &other) = default;
ACalibrationData::~ACalibrationData() = default;

bool ACalibrationData::operator==(const ACalibrationData &other) const
{
    return m_type == other.m_type && m_label == other.m_label &&
           std::equal(m_level.keyValueBegin(), m_level.keyValueEnd(), other.m_level.keyValueBegin(),
                      other.m_level.keyValueEnd(), [](const auto &a, const auto &b) {
                          return a.first == b.first && isSameGain(a.second, b.second);
                      });
}

void ACalibrationData::addLevel(const AFrequency &frequency, double gain)
{
    m_level.insert(m_level.constEnd(), frequency, gain); // a hint: tables mostly come in ascending order
}

void ACalibrationData::removeLevel(const AFrequency &frequency)
{
    m_level.remove(frequency);
}

double ACalibrationData::valueAt(const AFrequency &frequency, bool holdEnds) const
{
    if (m_level.isEmpty())
        return 0.0;
    const auto above = m_level.lowerBound(frequency);
    if (above != m_level.constEnd() && above.key() == frequency)
        return above.value();
    if (above == m_level.constBegin())
        return holdEnds ? above.value() : 0.0;
    const auto below = std::prev(above);
    if (above == m_level.constEnd())
        return holdEnds ? below.value() : 0.0;
    return valueBetween(below.value(), above.value(), positionBetween(below.key(), above.key(), frequency));
}

bool ACalibrationData::readAll(const QString &filename, QList<ACalibrationData> &list, CalibrationType type)
{
    return readAll(filename, list, type, nullptr);
}

bool ACalibrationData::readAll(const QString &filename, QList<ACalibrationData> &list, CalibrationType type,
                               QString *errorText)
{
    QList<ACalibrationData> objects;
    QString message;
    if (!readCalibrationFile(filename, type == AllTypes ? AnyType : type, &objects, &message))
        return fail(errorText, message);
    list += objects;
    return true;
}

QStringList ACalibrationData::nameFilters()
{
    return {QStringLiteral("*.xml"), QStringLiteral("*.caldata"), QStringLiteral("*.offsets")};
}

bool ACalibrationData::saveAll(const QString &filename, const QList<ACalibrationData> &list)
{
    return writeCalibrationFile(filename, list);
}
