#pragma once

#include "core/afrequency.h"
#include "core/aveldoranexport.h"

#include <QtCore/QList>
#include <QtCore/QObject>
#include <QtCore/QString>
#include <QtCore/QVector>

#include <memory>

// One limit line of a measurement: a name, a frequency range, a unit, and a curve of sections and levels. Limits come
// from limit files (docs/formats.md) or are built by an application with the setters.
class AVELDORAN_CORE_EXPORT ALimit : public QObject
{
    Q_OBJECT

public:
    // How a value follows from those of two frequencies. Any other number means Linear.
    enum Interpolation : unsigned int
    {
        Step = 0,        // the value of the lower frequency
        Linear = 1,      // linear over frequency
        Logarithmic = 2, // linear over the logarithm of frequency; over frequency where that has none
    };

    // A part of the curve that governs from its begin to its end, both included. One whose end lies below its begin
    // governs nothing.
    struct Section
    {
        AFrequency begin;                    // included
        AFrequency end;                      // included
        double beginValue = 0.0;             // at the begin, in the limit's unit
        double endValue = 0.0;               // at the end, in the limit's unit
        unsigned int interpolation = Linear; // between the two
    };

    // A point of the curve; its interpolation governs up to the next level.
    struct Level
    {
        AFrequency frequency;              // where the value is reached
        double value = 0.0;                // in the limit's unit
        unsigned int interpolation = Step; // up to the next level
    };

    // No name and no curve, 0 to 30 GHz, in the unit that is meant by a limit file that names none.
    explicit ALimit(QObject *parent = nullptr);
    ~ALimit() override;

    virtual bool contains(const AFrequency &frequency) const; // in the range, both edges included

    virtual QString name() const; // by which users and ADataManager know it

    // The limit at a frequency, in the limit's unit. The first section that holds the frequency governs; without one,
    // the levels: between two of them the interpolation of the left one, from the begin of the range to the first and
    // from the last to the end of the range that level's value. Of levels at one frequency the last counts there.
    // Where nothing governs, the result is NaN and *ok false; a null `ok` is legal.
    // O(log n), except for the first call after a change of the curve, which sorts it.
    virtual double valueAt(const AFrequency &frequency, bool *ok) const;

    // What the file or the setters have said, as it stands.
    virtual AFrequency begin() const;
    virtual AFrequency end() const;
    virtual QString description() const;
    virtual QString color() const; // as in the file, such as "#ff0000"

    QString unit() const; // as in the file: mostly the number of a unit
    int unitId() const;   // the number of the unit; 0 for a text that is neither a number nor the symbol of a unit

    // The curve in document order.
    const QVector<Section> &sections() const;
    const QVector<Level> &levels() const;

    // None of them tests what it is given: valueAt() and contains() make the best of it.
    void setName(const QString &name);
    void setRange(const AFrequency &begin, const AFrequency &end);
    void setUnit(const QString &unit);
    void setDescription(const QString &description);
    void setColor(const QString &color);
    void addSection(const Section &section);
    void addLevel(const Level &level);
    void clearCurve();

    // Appends the limits of a limit file in document order; the caller owns them. A file whose root element is "data"
    // may hold none. On failure nothing is appended, and *errorText, unless null, is a message for the user that
    // names the file. Numbers that can't be read are 0.
    static bool readAll(const QString &filename, QList<const ALimit *> &list, QString *errorText);

private:
    Q_DISABLE_COPY(ALimit)
    struct Q_DECL_HIDDEN Private;
    std::unique_ptr<Private> d;
};
