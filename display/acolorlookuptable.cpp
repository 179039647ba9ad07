#include "display/acolorlookuptable.h"

#include <QtCore/QVector>

namespace {

constexpr int kMaxEntries = 1000;
constexpr double kNoHue = -1.0;

double hueOf(const QColor &color)
{
    return color.isValid() ? color.hueF() : kNoHue;
}

} // namespace

class AColorLookupTablePrivate
{
public:
    QVector<QColor> table; // and a copy of its last entry
    QColor begin;
    QColor end;
    int dynamic = 0;
};

AColorLookupTable::AColorLookupTable(QObject *parent, int dynamic, const QColor &begin, const QColor &end)
    : QObject(parent)
    , d(std::make_unique<AColorLookupTablePrivate>())
{
    d->begin = begin;
    d->end = end;
    d->dynamic = dynamic;
    createColorLookupTable(begin, end, dynamic);
}

AColorLookupTable::~AColorLookupTable() = default;

int AColorLookupTable::count() const
{
    return d->table.size() - 1;
}

const QColor &AColorLookupTable::at(int i) const
{
    return d->table.at(i);
}

const QColor &AColorLookupTable::begin() const
{
    return d->begin;
}

const QColor &AColorLookupTable::end() const
{
    return d->end;
}

int AColorLookupTable::dynamic() const
{
    return d->dynamic;
}

void AColorLookupTable::rebuild(int dynamic, const QColor &begin, const QColor &end)
{
    const QColor newBegin = begin.isValid() ? begin : d->begin; // either may be this table's own
    const QColor newEnd = end.isValid() ? end : d->end;
    d->dynamic = dynamic;
    d->begin = newBegin;
    d->end = newEnd;
    createColorLookupTable(newBegin, newEnd, dynamic);
}

void AColorLookupTable::createColorLookupTable(const QColor &begin, const QColor &end, int dynamic)
{
    const int entries = qBound(1, dynamic, kMaxEntries);
    double fromHue = hueOf(begin);
    double toHue = hueOf(end);
    if (fromHue == kNoHue)
        fromHue = toHue;
    else if (toHue == kNoHue)
        toHue = fromHue;

    // Of no range at all the one entry is the begin, whatever a step is.
    const double divisor = dynamic == 0 ? 1.0 : dynamic;
    const double hueStep = (toHue - fromHue) / divisor;
    const double saturationStep = (end.saturationF() - begin.saturationF()) / divisor;
    const double valueStep = (end.valueF() - begin.valueF()) / divisor;
    const double alphaStep = (end.alphaF() - begin.alphaF()) / divisor;
    const double levelsPerEntry = static_cast<double>(dynamic) / entries;

    QVector<QColor> table(entries + 1); // a new one, since the colours may be the old one's own
    for (int i = 0; i < entries; ++i) {
        const double x = i * levelsPerEntry;
        table[i] = QColor::fromHsvF(fromHue + hueStep * x, begin.saturationF() + saturationStep * x,
                                    begin.valueF() + valueStep * x, begin.alphaF() + alphaStep * x)
                       .toRgb();
    }
    table[entries] = table.at(entries - 1);
    d->table = table;
    m_entries = d->table.constData();
    m_entriesPerLevel = static_cast<float>(entries) / static_cast<float>(d->dynamic);
    Q_EMIT colorsChanged();
}
