#pragma once

#include "channel/achannelinfo.h"

#include <QtCore/QBuffer>
#include <QtCore/QDate>
#include <QtCore/QStringList>

#include <memory>

// What the tests of the EFIS import share: lines, an import of bytes, and the tree in short.
namespace efisfiles {

inline QByteArray day(int fromToday)
{
    return QDate::currentDate().addDays(fromToday).toString(Qt::ISODate).toLatin1();
}

// A text with each "@-2", "@0", "@1" replaced by that day, counted from today.
inline QByteArray dated(QByteArray text)
{
    for (int fromToday : {-400, 400, -2, -1, 0, 1, 2}) // the longer ones first
        text.replace('@' + QByteArray::number(fromToday), day(fromToday));
    return text;
}

// What `action` gives when midnight doesn't fall into it.
template<typename Action>
auto withinOneDay(const Action &action)
{
    for (;;) {
        const QDate today = QDate::currentDate();
        const auto result = action();
        if (QDate::currentDate() == today)
            return result;
    }
}

inline QByteArray line(const QByteArray &twoDirections, const QByteArray &range, const QByteArray &uplink,
                       const QByteArray &name, const QByteArray &first = day(-1), const QByteArray &last = day(1))
{
    return twoDirections + ';' + range + ';' + uplink + ";x;" + name + ';' + first + ';' + last + ";;;\n";
}

inline QByteArray oneWay(const QByteArray &range, const QByteArray &name)
{
    return line("no", range, "", name);
}

inline QByteArray twoWay(const QByteArray &downlink, const QByteArray &uplink, const QByteArray &name)
{
    return line("yes", downlink, uplink, name);
}

struct Import
{
    bool result = false;
    std::unique_ptr<AChannelInfo> root =
        std::make_unique<AChannelInfo>(nullptr, AChannelInfo::Generic, AFrequency(), AFrequency(), QString(), false);
};

inline Import importFrom(QIODevice *device)
{
    Import import;
    import.result = AChannelInfo::fromEfisCSV(device, import.root.get());
    return import;
}

inline Import importFrom(QByteArray content)
{
    QBuffer buffer(&content);
    buffer.open(QIODevice::ReadOnly);
    return importFrom(&buffer);
}

// "0-100 { a 0-10, Downlink 20-100 { b 20-100 } }", in megahertz.
inline QString outline(AChannelInfo *node)
{
    const auto number = [](const AFrequency &frequency) {
        return QString::number(frequency.floatValue(AFrequency::MHz), 'g', 15);
    };
    QString text = QStringLiteral("%1 %2-%3")
                       .arg(node->label(), number(node->beginFrequency()), number(node->endFrequency()))
                       .trimmed();
    QStringList below;
    for (int row = 0; row < node->childCount(); ++row)
        below.append(outline(node->child(row)));
    if (!below.isEmpty())
        text += QStringLiteral(" { ") + below.join(QStringLiteral(", ")) + QStringLiteral(" }");
    return text;
}

inline QString outline(const Import &import)
{
    return import.result ? outline(import.root.get()) : QString();
}

} // namespace efisfiles
