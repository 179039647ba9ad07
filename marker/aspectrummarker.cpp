#include "marker/aspectrummarker.h"

#include "core/emsi.h"
#include "core/emu.h"

#include <iterator>

struct ASpectrumMarker::Private
{
    Type type = TypeMax;
    AMeasurementValue value;
    int trace = 0;
    ASpectrumMarker *referenceMarker = nullptr;
    int index = -1;
    AFrequency targetFrequency;
    DisplayOptions displayOptions = {ShowSymbol | ShowLabel | ShowDetails}; // loadSetup's default lacks ShowDetails
    bool enabled = true;
};

namespace {

constexpr const char *kTypeNames[] = {"pMax", "pMin", "Max", "Min", "fMax", "fMin", "Std", "Cal"};
constexpr int kLevelDecimals = 2;
constexpr int kFrequencyDecimals = 3;

const QLatin1String kNoValue("-");

QString signOf(double number)
{
    return number > 0.0 ? QStringLiteral("+") : QString();
}

QString frequencyNumber(const AFrequency &frequency, AFrequency::Unit unit)
{
    return frequency.formatString(QStringLiteral("%L1"), unit, 0, 'f', kFrequencyDecimals);
}

// The frequency that a difference refers to: where the reference marker was pinned while it has no value yet.
AFrequency referenceFrequency(const ASpectrumMarker &reference)
{
    const AFrequency target = reference.targetFrequency();
    return reference.value().isEmpty() && target > AFrequency() ? target : reference.value().frequency;
}

QString frequencyDifference(const AFrequency &frequency, const AFrequency &reference)
{
    if (frequency.isNull() || reference.isNull())
        return {};
    const AFrequency difference = frequency - reference;
    return QStringLiteral("%1%2").arg(signOf(difference.floatValue(AFrequency::Hz)),
                                      frequencyNumber(difference, AFrequency::NoUnit));
}

} // namespace

ASpectrumMarker::ASpectrumMarker(Type type)
    : d(std::make_unique<Private>())
{
    d->type = type;
}

ASpectrumMarker::~ASpectrumMarker() = default;

// Of an unknown type the number takes the first place and "%2" stays in the text, deliberately: so it
// cannot be taken for the name of another marker.
QString ASpectrumMarker::name() const
{
    QString text = QStringLiteral("%1 %2");
    if (d->type >= 0 && d->type < static_cast<int>(std::size(kTypeNames)))
        text = text.arg(QLatin1String(kTypeNames[d->type]));
    return text.arg(static_cast<qint64>(d->index) + 1);
}

QString ASpectrumMarker::label(bool detailed, const emu_entry *unit, const emsi_unit *scale) const
{
    QStringList items = labelItems(unit, scale);
    // Deliberate: name and number stand in the joined items once more, and applications take the text as it is.
    const QString text = QStringLiteral("%1: %2").arg(items.value(0), items.value(1));
    if (!detailed && items.size() > 2) {
        constexpr int kFirstOfFrequency = 3;
        constexpr int kLastOfFrequency = 5;
        for (int position = kLastOfFrequency; position >= kFirstOfFrequency; --position) {
            if (items.size() > position)
                items.removeAt(position);
        }
    }
    return text + QLatin1Char(' ') + items.join(QLatin1Char(' '));
}

QStringList ASpectrumMarker::labelItems(const emu_entry *unit, const emsi_unit *scale) const
{
    QStringList items(name());
    if (d->value.isEmpty()) {
        items.append(kNoValue);
        return items;
    }
    const ASpectrumMarker *reference = d->referenceMarker;
    const AFrequency frequency = d->value.frequency;
    const AFrequency::Unit frequencyUnit = frequency.autoUnit();
    const QString level = reference ? deltaAsString(unit, scale, true) : valueAsString(unit, scale, true);
    const QString frequencyText = reference ? frequencyDifference(frequency, referenceFrequency(*reference))
                                            : frequencyNumber(frequency, frequencyUnit);

    const QStringList levelParts = level.split(QLatin1Char(' '));
    items << levelParts.value(0) << levelParts.value(1);
    items << QStringLiteral("@") << frequencyText;
    items << QLatin1String(AFrequency::suffixForUnit(frequencyUnit)); // the marker's own, for a difference too
    items << (reference ? QString::fromUtf8("(Δ %1)").arg(reference->name()) : QString());
    return items;
}

ASpectrumMarker::Scope ASpectrumMarker::scope() const
{
    return d->type >= TypeFMax && d->type <= TypeCal ? ScopeFrequency : ScopeTrace;
}

bool ASpectrumMarker::isPersistent() const
{
    return d->type == TypePMax || d->type == TypePMin || d->type == TypeFMax || d->type == TypeFMin;
}

ASpectrumMarker::Type ASpectrumMarker::type() const
{
    return d->type;
}

void ASpectrumMarker::setType(Type type)
{
    d->type = type;
}

int ASpectrumMarker::trace() const
{
    return d->trace;
}

void ASpectrumMarker::setTrace(int trace)
{
    d->trace = trace;
}

int ASpectrumMarker::index() const
{
    return d->index;
}

void ASpectrumMarker::setIndex(int index)
{
    d->index = index;
}

const AMeasurementValue &ASpectrumMarker::value() const
{
    return d->value;
}

void ASpectrumMarker::setValue(const AMeasurementValue &value)
{
    d->value = value;
}

AFrequency ASpectrumMarker::targetFrequency() const
{
    return d->targetFrequency;
}

void ASpectrumMarker::setTargetFrequency(const AFrequency &frequency)
{
    d->targetFrequency = frequency;
}

ASpectrumMarker::DisplayOptions ASpectrumMarker::displayOptions() const
{
    return d->displayOptions;
}

void ASpectrumMarker::setDisplayOptions(DisplayOptions options)
{
    d->displayOptions = options;
}

ASpectrumMarker *ASpectrumMarker::referenceMarker() const
{
    return d->referenceMarker;
}

void ASpectrumMarker::setReferenceMarker(ASpectrumMarker *marker)
{
    d->referenceMarker = marker;
}

bool ASpectrumMarker::isEnabled() const
{
    return d->enabled;
}

void ASpectrumMarker::setEnabled(bool enabled)
{
    d->enabled = enabled;
}

QString ASpectrumMarker::valueAsString(const AMeasurementValue &value, const emu_entry *unit, const emsi_unit *scale,
                                       bool withUnit) const
{
    if (value.isEmpty())
        return kNoValue;
    const emu_entry *shown = unit ? unit : emu_find(value.unit);
    QString suffix;
    double number = value.level;
    if (shown) {
        suffix = QString::fromUcs4(shown->name);
        if (shown->id != value.unit)
            number = value.convertTo(shown->id).level;
    }
    if (scale) {
        number = static_cast<double>(number / scale->factor);
        suffix.prepend(QString::fromUcs4(scale->prefix));
    }
    const QString text = withUnit ? QStringLiteral("%L1 %2") : QStringLiteral("%L1");
    const QString filled = text.arg(number, 0, 'f', kLevelDecimals, QLatin1Char(' '));
    return withUnit ? filled.arg(suffix) : filled;
}

QString ASpectrumMarker::valueAsString(const emu_entry *unit, const emsi_unit *scale, bool withUnit) const
{
    return valueAsString(d->value, unit, scale, withUnit);
}

QString ASpectrumMarker::deltaAsString(const emu_entry *unit, const emsi_unit *scale, bool withUnit) const
{
    const ASpectrumMarker *reference = d->referenceMarker;
    if (!reference || d->value.isEmpty() || reference->value().isEmpty())
        return kNoValue;
    const AMeasurementValue own = d->value.convertTo(unit);
    const AMeasurementValue difference = own - reference->value().convertTo(unit);
    return QStringLiteral("%1%2").arg(signOf(difference.level), valueAsString(difference, unit, scale, withUnit));
}
