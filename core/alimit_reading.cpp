#include "core/alimit.h"
#include "core/boundedxmlreader.h"
#include "core/failure.h"
#include "core/regularfile.h"

#include <QtCore/QFile>
#include <QtCore/QFileInfo>

#include <algorithm>
#include <limits>
#include <memory>
#include <vector>

namespace {

QString attribute(const QXmlStreamAttributes &attributes, const char *name, const QString &absent)
{
    const QLatin1String key(name);
    return attributes.hasAttribute(key) ? compactCopy(attributes.value(key)) : absent;
}

QString attribute(const QXmlStreamAttributes &attributes, const char *name, const char *absent = "")
{
    return attribute(attributes, name, QString::fromLatin1(absent));
}

AFrequency wholeHertz(const QString &text)
{
    constexpr auto kMax = static_cast<qulonglong>(std::numeric_limits<qlonglong>::max());
    return AFrequency::fromValue(static_cast<long long>(std::min(text.toULongLong(), kMax)), AFrequency::Hz);
}

AFrequency hertz(const QString &text)
{
    return AFrequency::fromValue(text.toDouble(), AFrequency::Hz);
}

ALimit::Section readSection(const QXmlStreamAttributes &attributes)
{
    constexpr int kShownDigits = 6;
    ALimit::Section section;
    section.begin = hertz(attribute(attributes, "beginFrequency", "0"));
    section.end = hertz(attribute(attributes, "endFrequency", "0"));
    section.beginValue = attribute(attributes, "beginValue", "0").toDouble();
    // Deliberately the rounded value: the limit editor shows and saves the same end for such a section.
    const QString beginText = QString::number(section.beginValue, 'g', kShownDigits);
    section.endValue = attribute(attributes, "endValue", beginText).toDouble();
    section.interpolation = attribute(attributes, "interpolation", "1").toUInt();
    return section;
}

ALimit::Level readLevel(const QXmlStreamAttributes &attributes, const QString &text)
{
    ALimit::Level level;
    level.frequency = wholeHertz(attribute(attributes, "frequency", "0"));
    level.value = text.toDouble();
    level.interpolation = attribute(attributes, "interpolation", "0").toUInt();
    return level;
}

std::unique_ptr<ALimit> startLimit(const QXmlStreamAttributes &attributes)
{
    auto limit = std::make_unique<ALimit>();
    limit->setName(attribute(attributes, "name"));
    limit->setRange(wholeHertz(attribute(attributes, "begin", limit->begin().toString())),
                    wholeHertz(attribute(attributes, "end", limit->end().toString())));
    limit->setUnit(attribute(attributes, "measureunit", limit->unit()));
    limit->setDescription(attribute(attributes, "description"));
    limit->setColor(attribute(attributes, "color"));
    return limit;
}

// The text up to the end of the element at which the reader stands, that of elements inside it included.
QString readText(BoundedXmlReader *reader)
{
    const int depth = reader->depth();
    QString text;
    while (reader->readNext() && !(reader->xml().isEndElement() && reader->depth() == depth)) {
        if (reader->xml().isCharacters())
            text += reader->xml().text();
    }
    return text;
}

struct Document
{
    bool isData = false; // by the name of its root element
    std::vector<std::unique_ptr<ALimit>> limits;
};

// The "limit" children of the root, and their children; all else is passed over.
Document readDocument(BoundedXmlReader *reader)
{
    Document document;
    ALimit *limit = nullptr; // the one that is open
    bool isDescribed = false;
    while (reader->readNext()) {
        if (!reader->xml().isStartElement())
            continue;
        const QXmlStreamAttributes attributes = reader->xml().attributes();
        if (reader->depth() == 1) {
            document.isData = reader->isNamed("data");
        } else if (reader->depth() == 2) {
            if (reader->isNamed("limit"))
                document.limits.push_back(startLimit(attributes));
            limit = reader->isNamed("limit") ? document.limits.back().get() : nullptr;
            isDescribed = false;
        } else if (limit && reader->depth() == 3) {
            if (reader->isNamed("section")) {
                limit->addSection(readSection(attributes));
            } else if (reader->isNamed("level")) {
                limit->addLevel(readLevel(attributes, readText(reader)));
            } else if (reader->isNamed("description") && !isDescribed) {
                limit->setDescription(readText(reader));
                isDescribed = true;
            }
        }
    }
    return document;
}

} // namespace

bool ALimit::readAll(const QString &filename, QList<const ALimit *> &list, QString *errorText)
{
    if (!QFileInfo::exists(filename))
        return fail(errorText, tr("File '%1' does not exist").arg(filename));
    QFile file(filename);
    QString reason;
    if (!openRegularFile(&file, &reason))
        return fail(errorText, tr("Could not read file '%1': %2").arg(filename, reason));
    BoundedXmlReader reader(&file);
    Document document = readDocument(&reader);
    const QXmlStreamReader &xml = reader.xml();
    if (xml.hasError()) {
        return fail(errorText, tr("Could not parse file '%1': %2 (line %3, col %4)")
                                   .arg(filename, xml.errorString(), QString::number(xml.lineNumber()),
                                        QString::number(xml.columnNumber())));
    }
    if (document.limits.empty() && !document.isData)
        return fail(errorText, tr("File '%1' holds no limits").arg(filename));
    for (std::unique_ptr<ALimit> &limit : document.limits)
        list.append(limit.release());
    return true;
}
