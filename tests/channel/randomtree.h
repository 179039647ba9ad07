#pragma once

#include "channel/achannelinfo.h"

#include <QtCore/QStringList>

#include <random>

// Makes trees that a channel section can hold without loss: no mirrors, definitions and generated channels, edges in
// whole hertz above 0 or none, colours that are colours, and no range outside its parent's.
class RandomTree
{
public:
    explicit RandomTree(quint32 seed)
        : m_random(seed)
    {}

    AChannelInfo *make() { return range(nullptr, 4); }

private:
    int below(int bound) { return int(m_random() % quint32(bound)); }
    bool oneIn(int chances) { return below(chances) == 0; }

    QString text()
    {
        static const QStringList pieces{
            QStringLiteral("UKW"),  QStringLiteral("<b>"), QStringLiteral("\""),       QStringLiteral("'&amp;"),
            QStringLiteral("\n"),   QStringLiteral("\t"),  QStringLiteral("Ελλάδα"),   QStringLiteral("µ€"),
            QStringLiteral("]]>"),  QStringLiteral("  "),  QStringLiteral("\u00a0-"),  QString::fromUcs4(U"\U0001F4E1"),
            QStringLiteral("%1%2"), QStringLiteral("0"),   QStringLiteral("--> <!--"), QStringLiteral("\r\n")};
        QString result;
        for (int i = below(5); i > 0; --i)
            result += pieces.at(below(pieces.size()));
        return result.trimmed().isEmpty() ? QString() : result; // white space alone is dropped where it only indents
    }

    QVariant color()
    {
        switch (below(4)) {
        case 0:
            return QColor(below(256), below(256), below(256));
        case 1:
            return QStringLiteral("#%1").arg(below(0x1000000), 6, 16, QLatin1Char('0'));
        case 2:
            return QStringLiteral("darkSlateBlue");
        default:
            return QVariant::fromValue(QColor());
        }
    }

    AFrequency hertz(qint64 value)
    {
        AFrequency frequency;
        frequency.setValue(static_cast<long long>(value), AFrequency::Hz);
        return frequency;
    }

    // One that overlaps the parent's, up to the whole 64-bit range of hertz.
    AChannelInfo *range(AChannelInfo *parent, int depth)
    {
        constexpr AChannelInfo::RangeType kTypes[] = {AChannelInfo::Generic, AChannelInfo::Direction,
                                                      AChannelInfo::Provider, AChannelInfo::Channel};
        static const qint64 kScales[] = {10, 1000, 1000000, 1000000000, 1000000000000, 900000000000000000};
        const qint64 scale = kScales[below(6)];
        AFrequency begin = oneIn(5) ? AFrequency() : hertz(qint64(m_random() % quint64(scale)));
        AFrequency end = oneIn(5) ? AFrequency() : begin + hertz(qint64(m_random() % quint64(scale)) + 1);
        if (parent && !parent->endFrequency().isNull() && begin >= parent->endFrequency())
            begin = parent->beginFrequency();
        if (parent && !parent->beginFrequency().isNull() && end <= parent->beginFrequency())
            end = parent->endFrequency() > parent->beginFrequency() ? parent->endFrequency()
                                                                    : parent->beginFrequency() + hertz(1);
        if (parent && !parent->endFrequency().isNull() && begin >= parent->endFrequency())
            begin = AFrequency();
        auto *made = new AChannelInfo(parent, kTypes[below(4)], begin, end, text(), oneIn(2));
        made->setData(AChannelInfo::ColumnComment, text());
        made->setData(AChannelInfo::ColumnColor, color());
        if (parent)
            parent->appendChild(made);
        for (int i = depth > 0 ? below(4) : 0; i > 0; --i)
            range(made, depth - 1);
        return made;
    }

    std::mt19937_64 m_random;
};
