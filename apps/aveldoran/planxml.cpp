#include "apps/aveldoran/planxml.h"

#include <QtCore/QTextStream>
#include <QtXml/QDomDocument>

namespace {

constexpr int kIndent = 2;

bool isXmlCharacter(QChar c)
{
    return c.unicode() < 0xfffe &&
           (c.unicode() >= 0x20 || c == QLatin1Char('\t') || c == QLatin1Char('\n') || c == QLatin1Char('\r'));
}

// XML has no form, not even an escaped one, for the characters that are left out here. Names in EFIS exports may hold
// them; profiles can't.
QString writable(const QString &text)
{
    QString result;
    result.reserve(text.size());
    for (int i = 0; i < text.size(); ++i) {
        const QChar c = text.at(i);
        const bool startsPair = c.isHighSurrogate() && i + 1 < text.size() && text.at(i + 1).isLowSurrogate();
        const bool endsPair = c.isLowSurrogate() && i > 0 && text.at(i - 1).isHighSurrogate();
        if (isXmlCharacter(c) && (startsPair || endsPair || !c.isSurrogate()))
            result += c;
    }
    return result;
}

} // namespace

QString xmlBegin()
{
    return QStringLiteral("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<Range>\n");
}

QString rangeAsXml(const AChannelInfo &range, int *readable)
{
    QDomDocument document;
    QDomElement element = range.toDomNode(&document);
    QString text;
    QTextStream stream(&text);
    element.save(stream, kIndent);
    stream.flush();

    AChannelInfo reader(nullptr, AChannelInfo::Generic, {}, {}, QString(), false);
    AChannelInfo::processXmlElement(&element, &reader, false, false, false);
    *readable += reader.channels(0).size() - 1;
    return writable(text);
}

QString xmlEnd()
{
    return QStringLiteral("</Range>\n");
}
