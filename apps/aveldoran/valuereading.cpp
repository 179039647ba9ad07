#include "apps/aveldoran/valuereading.h"

#include <core/emu.h>

#include <cstring>

namespace {

constexpr double kMaxFrequencyHz = 9e18;

// The sign of a micro in any of its codes as "u", a raised two as "2": what remains of a unit on an English keyboard.
QByteArray plainUnit(QByteArray text)
{
    for (const char *micro : {"\u00b5", "\u03bc", "\xb5"})
        text.replace(micro, "u");
    for (const char *square : {"\u00b2", "\xb2"})
        text.replace(square, "2");
    return text;
}

} // namespace

void splitNumber(const QByteArray &field, QByteArray *number, QByteArray *unit)
{
    int end = 0;
    while (end < field.size() && std::strchr("0123456789+-.,eE", field.at(end)))
        ++end;
    if (end > 0 && (field.at(end - 1) == 'e' || field.at(end - 1) == 'E'))
        --end;
    *number = field.left(end);
    number->replace(',', '.');
    *unit = field.mid(end).trimmed();
}

bool isFrequencyUnit(const QByteArray &text)
{
    return !text.isEmpty() && text == AFrequency::suffixForUnit(AFrequency::unitForSuffix(text.constData()));
}

bool readFrequency(const QByteArray &text, AFrequency::Unit unitOfNumbers, AFrequency *frequency)
{
    QByteArray number;
    QByteArray unit;
    splitNumber(text, &number, &unit);
    bool ok = false;
    const double value = number.toDouble(&ok);
    if (!ok || !(value >= 0.0))
        return false;
    if (unit.isEmpty())
        unit = AFrequency::suffixForUnit(unitOfNumbers);
    else if (!isFrequencyUnit(unit))
        return false;
    *frequency = AFrequency((number + ' ' + unit).constData());
    return frequency->floatValue(AFrequency::Hz) < kMaxFrequencyHz && (value == 0.0 || !frequency->isNull());
}

int unitId(const QByteArray &text)
{
    static const QStringList names = typedUnitNames();
    const QByteArray plain = plainUnit(text);
    return names.indexOf(QString::fromUtf8(plain.constData(), plain.size()));
}

QStringList unitNames()
{
    QStringList names;
    for (int id = 0; id < kEmuCount; ++id)
        names += QString::fromUcs4(emu_find(id)->name);
    return names;
}

QStringList typedUnitNames()
{
    QStringList names = unitNames();
    for (QString &name : names)
        name = QString::fromUtf8(plainUnit(name.toUtf8()));
    return names;
}
