#include "apps/aveldoran/plantext.h"

#include "apps/aveldoran/console.h"
#include "apps/aveldoran/valuetext.h"

#include <QtCore/QJsonArray>
#include <QtCore/QStringList>

namespace {

constexpr int kIndent = 2;
constexpr int kLabelWidth = 36;
constexpr int kRangeWidth = 30;

bool hasMirror(const AChannelInfo &range)
{
    return range.data(AChannelInfo::ColumnMirrorEntryFreq).toLongLong() != 0;
}

AFrequency mirrorFrequency(const AChannelInfo &range)
{
    return AFrequency::fromValue(range.data(AChannelInfo::ColumnMirrorEntryFreq).toLongLong(), AFrequency::Hz);
}

QString shortText(const AChannelInfo::Definition &definition, const char *key)
{
    return shortFrequency(AFrequency(definition.value(QLatin1String(key)).toByteArray().constData()));
}

QString definitionAsText(const AChannelInfo::Definition &definition)
{
    const qint64 count = definition.value(QLatin1String("count")).toLongLong();
    return QStringLiteral("%1 from %2, width %3, space %4, numbered from %5 by %6")
        .arg(countText(count, "channel"), shortText(definition, "start"), shortText(definition, "width"),
             shortText(definition, "space"), definition.value(QLatin1String("first")).toString(),
             definition.value(QLatin1String("step")).toString());
}

QJsonObject definitionAsJson(const AChannelInfo::Definition &definition)
{
    QJsonObject object;
    for (const char *key : {"start", "width", "space"})
        object[QLatin1String(key) + QLatin1String("Hz")] =
            AFrequency(definition.value(QLatin1String(key)).toByteArray().constData()).intValue(AFrequency::Hz);
    for (const char *key : {"count", "first", "step"})
        object[QLatin1String(key)] = definition.value(QLatin1String(key)).toInt();
    return object;
}

} // namespace

QString rangeAsText(const AChannelInfo &range, int depth)
{
    const QString indent(depth * kIndent, QLatin1Char(' '));
    const QString label = Console::oneLineOrDash(range.label());
    const QString edges = frequencyRangeText(range.beginFrequency(), range.endFrequency());
    QString text = (indent + label).leftJustified(kLabelWidth) + QStringLiteral("  ") +
                   edges.leftJustified(kRangeWidth) + QStringLiteral("  ") +
                   AChannelInfo::mapTypeToString(range.type());
    if (range.selectable())
        text += QStringLiteral(", selectable");
    if (hasMirror(range))
        text += QStringLiteral(", mirrored at ") + shortFrequency(mirrorFrequency(range));
    if (!range.comment().isEmpty())
        text += QStringLiteral("  # ") + Console::oneLine(range.comment());
    text += QLatin1Char('\n');
    const QList<AChannelInfo::Definition> definitions = range.channelDefinitions();
    for (const AChannelInfo::Definition &definition : definitions)
        text += indent + QStringLiteral("  + ") + definitionAsText(definition) + QLatin1Char('\n');
    return text;
}

QJsonObject rangeAsJson(const AChannelInfo &range, int depth)
{
    QJsonObject object{
        {QStringLiteral("depth"), depth},
        {QStringLiteral("label"), range.label()},
        {QStringLiteral("type"), AChannelInfo::mapTypeToString(range.type())},
        {QStringLiteral("beginHz"), range.beginFrequency().intValue(AFrequency::Hz)},
        {QStringLiteral("endHz"), range.endFrequency().intValue(AFrequency::Hz)},
        {QStringLiteral("selectable"), range.selectable()},
    };
    const QString profileId = range.data(AChannelInfo::ColumnProfileId).toString();
    if (!profileId.isEmpty())
        object[QStringLiteral("profile")] = profileId;
    if (!range.comment().isEmpty())
        object[QStringLiteral("comment")] = range.comment();
    if (range.color().isValid())
        object[QStringLiteral("color")] = range.color().name();
    if (hasMirror(range))
        object[QStringLiteral("mirrorHz")] = range.data(AChannelInfo::ColumnMirrorEntryFreq).toLongLong();
    const QList<AChannelInfo::Definition> definitions = range.channelDefinitions();
    if (!definitions.isEmpty()) {
        QJsonArray array;
        for (const AChannelInfo::Definition &definition : definitions)
            array.append(definitionAsJson(definition));
        object[QStringLiteral("definitions")] = array;
    }
    return object;
}
