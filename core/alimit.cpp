#include "core/alimit.h"

#include "core/emu.h"
#include "core/limitcurve.h"

#include <limits>

struct ALimit::Private
{
    QString name;
    AFrequency begin;
    AFrequency end = AFrequency("30 GHz");
    QString unit = QString::number(kEmuDecibelMicrovoltPerMetre);
    QString description;
    QString color;
    QVector<Section> sections;
    QVector<Level> levels;
    std::unique_ptr<LimitCurve> curve; // made from sections and levels when it is first asked

    void changeCurve() { curve.reset(); }
};

ALimit::ALimit(QObject *parent)
    : QObject(parent)
    , d(std::make_unique<Private>())
{}

ALimit::~ALimit() = default;

bool ALimit::contains(const AFrequency &frequency) const
{
    return d->begin <= frequency && frequency <= d->end;
}

QString ALimit::name() const
{
    return d->name;
}

double ALimit::valueAt(const AFrequency &frequency, bool *ok) const
{
    if (!d->curve)
        d->curve = std::make_unique<LimitCurve>(d->sections, d->levels);
    double value = std::numeric_limits<double>::quiet_NaN();
    const bool governs = d->curve->valueAt(frequency, contains(frequency), &value);
    if (ok)
        *ok = governs;
    return value;
}

AFrequency ALimit::begin() const
{
    return d->begin;
}

AFrequency ALimit::end() const
{
    return d->end;
}

QString ALimit::description() const
{
    return d->description;
}

QString ALimit::color() const
{
    return d->color;
}

QString ALimit::unit() const
{
    return d->unit;
}

int ALimit::unitId() const
{
    bool isNumber = false;
    const int number = d->unit.toInt(&isNumber);
    if (isNumber)
        return number;
    const QString symbol = d->unit.trimmed();
    for (int id = 0; const emu_entry *entry = emu_find(id); ++id) {
        if (symbol == QString::fromUcs4(entry->name))
            return id;
    }
    return 0;
}

const QVector<ALimit::Section> &ALimit::sections() const
{
    return d->sections;
}

const QVector<ALimit::Level> &ALimit::levels() const
{
    return d->levels;
}

void ALimit::setName(const QString &name)
{
    d->name = name;
}

void ALimit::setRange(const AFrequency &begin, const AFrequency &end)
{
    d->begin = begin;
    d->end = end;
}

void ALimit::setUnit(const QString &unit)
{
    d->unit = unit;
}

void ALimit::setDescription(const QString &description)
{
    d->description = description;
}

void ALimit::setColor(const QString &color)
{
    d->color = color;
}

void ALimit::addSection(const Section &section)
{
    d->sections.append(section);
    d->changeCurve();
}

void ALimit::addLevel(const Level &level)
{
    d->levels.append(level);
    d->changeCurve();
}

void ALimit::clearCurve()
{
    d->sections.clear();
    d->levels.clear();
    d->changeCurve();
}
