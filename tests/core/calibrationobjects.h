#pragma once

#include "core/acalibrationdata.h"

#include <QtCore/QFile>
#include <QtTest/QtTest>

#include <limits>
#include <utility>
#include <vector>

// What the tests of calibration data and of its files share.

using Objects = QList<ACalibrationData>;
Q_DECLARE_METATYPE(Objects)

constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr const char *kForms[] = {"xml", "caldata", "offsets"};

inline AFrequency hertz(qint64 value)
{
    AFrequency frequency;
    frequency.setValue(value, AFrequency::Hz);
    return frequency;
}

inline ACalibrationData object(const QString &label, ACalibrationData::CalibrationType type,
                               const std::vector<std::pair<const char *, double>> &entries = {})
{
    ACalibrationData result(label, type);
    for (const auto &[frequency, gain] : entries)
        result.addLevel(AFrequency(frequency), gain);
    return result;
}

inline bool writeFile(const QString &name, const QByteArray &content)
{
    QFile file(name);
    return file.open(QIODevice::WriteOnly) && file.write(content) == content.size() && file.flush();
}

inline QByteArray readFile(const QString &name)
{
    QFile file(name);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

// Each type of label and of gain that a file has to take care of.
inline Objects smallList()
{
    return {object(QStringLiteral("Horn \u00e4\""), ACalibrationData::Antenna, {{"30 MHz", 12.5}, {"1.5 Hz", -1e-7}}),
            object(QStringLiteral("#2\n"), ACalibrationData::AnyType, {{"-3 Hz", kNan}}),
            object(QString(QChar(1)), ACalibrationData::Cable)};
}

// The forms as rows of a test.
inline void addForms()
{
    QTest::addColumn<QString>("form");
    for (const char *form : kForms)
        QTest::newRow(form) << QString(form);
}
