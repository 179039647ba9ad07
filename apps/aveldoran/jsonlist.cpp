#include "apps/aveldoran/jsonlist.h"

#include "apps/aveldoran/console.h"

#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>

#include <cmath>

void JsonList::add(const QJsonObject &object)
{
    Console::write((m_isEmpty ? QStringLiteral("[\n") : QStringLiteral(",\n")) +
                   QString::fromUtf8(QJsonDocument(object).toJson(QJsonDocument::Compact)));
    m_isEmpty = false;
}

void JsonList::end()
{
    Console::write(m_isEmpty ? QStringLiteral("[]\n") : QStringLiteral("\n]\n"));
}

QJsonValue numberOrNull(double value)
{
    return std::isfinite(value) ? QJsonValue(value) : QJsonValue();
}
