#include "core/alimit.h"
#include "core/xmldocument.h"

#include <QtCore/QFile>
#include <QtCore/QFileInfo>

#include <algorithm>
#include <limits>

namespace {

QString attribute(const QDomElement &element, const char *name, const char *absent)
{
    return element.attribute(QLatin1String(name), QLatin1String(absent));
}

AFrequency wholeHertz(const QString &text)
{
    constexpr auto kMax = static_cast<qulonglong>(std::numeric_limits<qlonglong>::max());
    AFrequency frequency;
    frequency.setValue(static_cast<long long>(std::min(text.toULongLong(), kMax)), AFrequency::Hz);
    return frequency;
}

AFrequency hertz(const QString &text)
{
    AFrequency frequency;
    frequency.setValue(text.toDouble(), AFrequency::Hz);
    return frequency;
}

ALimit::Section readSection(const QDomElement &element)
{
    constexpr int kShownDigits = 6;
    ALimit::Section section;
    section.begin = hertz(attribute(element, "beginFrequency", "0"));
    section.end = hertz(attribute(element, "endFrequency", "0"));
    section.beginValue = attribute(element, "beginValue", "0").toDouble();
    // Deliberately the rounded value: the limit editor shows and saves the same end for such a section.
    const QString beginText = QString::number(section.beginValue, 'g', kShownDigits);
    section.endValue = element.attribute(QStringLiteral("endValue"), beginText).toDouble();
    section.interpolation = attribute(element, "interpolation", "1").toUInt();
    return section;
}

ALimit::Level readLevel(const QDomElement &element)
{
    ALimit::Level level;
    level.frequency = wholeHertz(attribute(element, "frequency", "0"));
    level.value = element.text().toDouble();
    level.interpolation = attribute(element, "interpolation", "0").toUInt();
    return level;
}

ALimit *readLimit(const QDomElement &element)
{
    auto *limit = new ALimit;
    limit->setName(attribute(element, "name", ""));
    limit->setRange(wholeHertz(attribute(element, "begin", "0")), wholeHertz(attribute(element, "end", "30000000000")));
    limit->setUnit(attribute(element, "measureunit", "8"));
    const QDomElement description = element.firstChildElement(QStringLiteral("description"));
    limit->setDescription(description.isNull() ? attribute(element, "description", "") : description.text());
    limit->setColor(attribute(element, "color", ""));
    for (QDomElement child = element.firstChildElement(); !child.isNull(); child = child.nextSiblingElement()) {
        if (child.tagName() == QLatin1String("section"))
            limit->addSection(readSection(child));
        else if (child.tagName() == QLatin1String("level"))
            limit->addLevel(readLevel(child));
    }
    return limit;
}

} // namespace

bool ALimit::readAll(const QString &filename, QList<const ALimit *> &list, QString *errorText)
{
    const auto fail = [errorText](const QString &text) {
        if (errorText)
            *errorText = text;
        return false;
    };
    if (!QFileInfo::exists(filename))
        return fail(tr("File '%1' does not exist").arg(filename));
    QFile file(filename);
    QString reason;
    if (!openRegularFile(&file, &reason))
        return fail(tr("Could not read file '%1': %2").arg(filename, reason));
    XmlError error;
    const QDomDocument document = readXmlDocument(&file, &error);
    if (!error.text.isEmpty()) {
        return fail(tr("Could not parse file '%1': %2 (line %3, col %4)")
                        .arg(filename, error.text, QString::number(error.line), QString::number(error.column)));
    }

    const QDomElement root = document.documentElement();
    QDomElement element = root.firstChildElement(QStringLiteral("limit"));
    if (element.isNull() && root.tagName() != QLatin1String("data"))
        return fail(tr("File '%1' holds no limits").arg(filename));
    for (; !element.isNull(); element = element.nextSiblingElement(QStringLiteral("limit")))
        list.append(readLimit(element));
    return true;
}
