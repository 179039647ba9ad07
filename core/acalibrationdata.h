#pragma once

#include "core/afrequency.h"
#include "core/aveldoranexport.h"

#include <QtCore/QList>
#include <QtCore/QMap>
#include <QtCore/QMetaType>
#include <QtCore/QString>
#include <QtCore/QStringList>

// One calibration object, such as an antenna or a cable: a label, a type, and a table of gain (in decibels) by
// frequency. A value class; copies share their data until one of them changes.
class AVELDORAN_CORE_EXPORT ACalibrationData
{
public:
    // What an object is in the path of the signal.
    enum CalibrationType
    {
        Preamplifier = 0,
        Antenna = 1,
        Cable = 2,
        Attenuator = 3,
        AnyType = 5,  // an object of no particular type
        AllTypes = 6, // a key and an argument value only, which no object has
    };

    ACalibrationData();                                           // empty label, AnyType, no entries
    ACalibrationData(const QString &label, CalibrationType type); // AllTypes gives AnyType
    ACalibrationData(const ACalibrationData &other);
    ACalibrationData &operator=(const ACalibrationData &other);
    virtual ~ACalibrationData();

    // Equal label, type and table. A gain that is NaN equals a NaN, so that every object equals itself and its copy.
    bool operator==(const ACalibrationData &other) const;
    bool operator!=(const ACalibrationData &other) const { return !(*this == other); }

    // The label is what the registry and users know an object by; the type can't be changed.
    const QString &label() const { return m_label; }
    void setLabel(const QString &label) { m_label = label; }
    CalibrationType type() const { return m_type; }

    // The table: gains in decibels, one for each frequency.
    const QMap<AFrequency, double> &level() const { return m_level; }
    void addLevel(const AFrequency &frequency, double gain); // replaces the entry of that frequency
    void removeLevel(const AFrequency &frequency);           // which need not be in the table

    // The gain at a frequency, linear over frequency between two entries. Outside the table it is the gain of the
    // nearest entry if `holdEnds` is set, else 0. An empty table gives 0.
    double valueAt(const AFrequency &frequency, bool holdEnds) const;

    // Appends the objects of a calibration file of any form; the form is known by the content and not by the name.
    // `type` is for objects whose file names none (AllTypes counts as AnyType). A file that can't be read, or is no
    // calibration file, or is damaged anywhere, gives false and leaves the list as it was. *errorText, unless null,
    // is then a message for the user that names the file, the line where there is one, and what was expected there.
    static bool readAll(const QString &filename, QList<ACalibrationData> &list, CalibrationType type);
    static bool readAll(const QString &filename, QList<ACalibrationData> &list, CalibrationType type,
                        QString *errorText);

    // Files that a directory is searched for: "*.xml", "*.caldata" and "*.offsets".
    static QStringList nameFilters();

    // Writes the list in the form that the name asks for: ".caldata", ".offsets", XML for every other; docs/formats.md
    // describes the forms. The file is replaced in one step; on failure the old file is whole and the result is false.
    // What is read back equals the list. A label of more than 2^24 UTF-16 units is refused.
    static bool saveAll(const QString &filename, const QList<ACalibrationData> &list);

private:
    QString m_label;
    CalibrationType m_type = AnyType;
    QMap<AFrequency, double> m_level;
};

Q_DECLARE_METATYPE(ACalibrationData)
Q_DECLARE_METATYPE(ACalibrationData::CalibrationType)
