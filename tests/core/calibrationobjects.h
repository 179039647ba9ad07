#pragma once

#include "core/acalibrationdata.h"
#include "core/testbasics.h"

#include <QtCore/QFile>
#include <QtTest/QtTest>

#include <functional>
#include <limits>
#include <utility>
#include <vector>

#include <unistd.h>

// What the tests of calibration data and of its files share.

using Objects = QList<ACalibrationData>;
Q_DECLARE_METATYPE(Objects)

constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr const char *kForms[] = {"xml", "caldata", "offsets"};

using testbasics::hertz;
using testbasics::readFile;
using testbasics::writeFile;

inline ACalibrationData object(const QString &label, ACalibrationData::CalibrationType type,
                               const std::vector<std::pair<const char *, double>> &entries = {})
{
    ACalibrationData result(label, type);
    for (const auto &[frequency, gain] : entries)
        result.addLevel(AFrequency(frequency), gain);
    return result;
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

// A child process that begins, says so, and repeats its work until it is killed or fails. Returns when it has begun;
// -1 if it couldn't.
inline pid_t startWriter(const std::function<bool()> &begin, const std::function<bool()> &repeat)
{
    int ends[2];
    if (::pipe(ends) != 0)
        return -1;
    char begun = '.';
    const pid_t child = ::fork();
    if (child == 0) {
        if (!begin() || ::write(ends[1], &begun, 1) != 1)
            ::_exit(1);
        while (repeat()) {
        }
        ::_exit(1);
    }
    ::close(ends[1]);
    const bool hasBegun = child > 0 && ::read(ends[0], &begun, 1) == 1;
    ::close(ends[0]);
    return hasBegun ? child : -1;
}
