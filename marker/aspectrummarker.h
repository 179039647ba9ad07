#pragma once

#include "core/afrequency.h"
#include "core/ameasurementvalue.h"
#include "core/aveldoranexport.h"

#include <QtCore/QFlags>
#include <QtCore/QString>
#include <QtCore/QStringList>

#include <memory>

struct emsi_unit;
struct emu_entry;

// One marker on one trace of a spectrum display: its kind, the value that it last picked up, the frequency that it is
// pinned to, and another marker against which it shows a difference. It measures nothing; an ASpectrumMarkerList makes
// it, numbers it, feeds it values and deletes it. Used from one thread, that of its list.
class AVELDORAN_DATA_EXPORT ASpectrumMarker
{
public:
    // Stored in setups: the numbers must not change. Markers of the obsolete kinds are neither created nor updated.
    enum Type : int
    {
        TypePMax = 0, // obsolete
        TypePMin = 1, // obsolete
        TypeMax = 2,  // takes the next maximum of the trace
        TypeMin = 3,  // takes the next minimum of the trace
        TypeFMax = 4, // obsolete
        TypeFMin = 5, // obsolete
        TypeStd = 6,  // reads the trace at the target frequency
        TypeCal = 7   // reads the trace as TypeStd does, under a name of its own
    };

    // What decides where on the trace the marker stands.
    enum Scope : int
    {
        ScopeTrace = 0,    // ranges over the whole trace
        ScopeFrequency = 1 // bound to the target frequency
    };

    // How a view shows the marker. The marker keeps these for the view and reads none of them; stored in setups.
    enum DisplayOption : int
    {
        ShowSymbol = 1,
        ShowLabel = 8,
        ShowDetails = 16 // the detailed form of the label
    };
    Q_DECLARE_FLAGS(DisplayOptions, DisplayOption)

    // An enabled marker on trace 0 with index -1, an empty value, no reference marker, and all display options.
    explicit ASpectrumMarker(Type type);
    virtual ~ASpectrumMarker(); // markers that refer to this one keep their pointer: ASpectrumMarkerList clears it
    ASpectrumMarker(const ASpectrumMarker &) = delete;
    ASpectrumMarker &operator=(const ASpectrumMarker &) = delete;

    // The type and the running number, counted from 1: "Max 1".
    virtual QString name() const;

    // "NAME: NUMBER ", then the label items joined with single blanks. Unless `detailed`, the items of the frequency
    // are left out.
    virtual QString label(bool detailed, const emu_entry *unit, const emsi_unit *scale) const;

    // The columns of a view: name, number, unit, "@", frequency, its unit, "(Δ NAME)" or an empty text. With a
    // reference marker number and frequency are the differences to it. Without a value: the name and "-". Arguments as
    // for valueAsString and deltaAsString.
    virtual QStringList labelItems(const emu_entry *unit, const emsi_unit *scale) const;

    Scope scope() const;       // follows the type
    bool isPersistent() const; // of the obsolete kinds, which once held their peak

    // For a marker of a list, type, trace and index belong to the list: ASpectrumMarkerList::changeMarkerType and
    // changeMarkerTrace change them.
    Type type() const;
    void setType(Type type);
    int trace() const;
    void setTrace(int trace);
    int index() const; // from 0 among the markers of one type
    void setIndex(int index);

    // What the marker picked up last: of a marker in a list set by updateMarkerValues(), empty before.
    const AMeasurementValue &value() const;
    void setValue(const AMeasurementValue &value);

    // Where TypeStd and TypeCal read the trace from the next update on.
    AFrequency targetFrequency() const;
    void setTargetFrequency(const AFrequency &frequency);

    // For the view alone.
    DisplayOptions displayOptions() const;
    void setDisplayOptions(DisplayOptions options);

    // Not owned; null for none.
    ASpectrumMarker *referenceMarker() const;
    void setReferenceMarker(ASpectrumMarker *marker);

    // A marker that is not enabled counts in no sum.
    bool isEnabled() const;
    void setEnabled(bool enabled);

    // A level with two decimals in the default locale, converted to `unit` (null: the value's own) and divided by the
    // factor of `scale` (null: unscaled); `withUnit` adds a blank, the prefix of the scale and the symbol of the unit.
    // "-" for an empty value.
    QString valueAsString(const AMeasurementValue &value, const emu_entry *unit, const emsi_unit *scale,
                          bool withUnit) const;
    QString valueAsString(const emu_entry *unit, const emsi_unit *scale, bool withUnit) const; // of the own value

    // The own value less that of the reference marker, both converted to `unit`, with its sign. "-" without a
    // reference marker or if one of the values is empty. A null unit warns for each of the two values, which are then
    // subtracted as they stand.
    QString deltaAsString(const emu_entry *unit, const emsi_unit *scale, bool withUnit) const;

private:
    struct Private;
    std::unique_ptr<Private> d;
};

Q_DECLARE_OPERATORS_FOR_FLAGS(ASpectrumMarker::DisplayOptions)
