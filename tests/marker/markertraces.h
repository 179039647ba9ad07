#pragma once

#include "core/ameasurementvalue.h"
#include "core/testbasics.h"
#include "marker/aspectrummarkerlist.h"

#include <QtCore/QList>
#include <QtCore/QStringList>
#include <QtTest/QtTest>

// What the tests of the markers share: frequencies, traces, and the messages of the library.
namespace markertest {

using Type = ASpectrumMarker::Type;

constexpr Type Max = ASpectrumMarker::TypeMax;
constexpr Type Min = ASpectrumMarker::TypeMin;
constexpr Type Std = ASpectrumMarker::TypeStd;
constexpr Type Cal = ASpectrumMarker::TypeCal;

enum UnitId
{
    dBm = 0,
    V = 5,
    W = 10,
    W_m2 = 11
};

using testbasics::hertz;

inline AFrequency megahertz(qint64 value)
{
    return hertz(value * 1000000);
}

inline AMeasurementValue point(double level, const AFrequency &frequency, int unit = dBm)
{
    return AMeasurementValue(level, static_cast<unsigned char>(unit), frequency, 0, 0.0);
}

// Points at 1 MHz, 2 MHz and so on.
inline QList<AMeasurementValue> traceOf(const QList<double> &levels, int unit = dBm)
{
    QList<AMeasurementValue> data;
    for (int i = 0; i < levels.size(); ++i)
        data.append(point(levels.at(i), megahertz(i + 1), unit));
    return data;
}

inline int update(ASpectrumMarkerList *list, const QList<AMeasurementValue> &data, int trace = 0)
{
    return list->updateMarkerValues(data, trace, AFrequency(), megahertz(1000000), dBm, AFrequency());
}

// The messages while it lives, as "debug: TEXT" or "warning: TEXT". The handler before it comes back afterwards.
class MessageLog
{
public:
    MessageLog()
    {
        texts().clear();
        m_previous = qInstallMessageHandler(&MessageLog::collect);
    }
    ~MessageLog() { qInstallMessageHandler(m_previous); }
    MessageLog(const MessageLog &) = delete;
    MessageLog &operator=(const MessageLog &) = delete;

    QStringList take()
    {
        QStringList taken;
        taken.swap(texts());
        return taken;
    }

private:
    static QStringList &texts()
    {
        static QStringList list;
        return list;
    }
    static void collect(QtMsgType type, const QMessageLogContext &, const QString &text)
    {
        const char *kind = type == QtDebugMsg ? "debug: " : type == QtWarningMsg ? "warning: " : "other: ";
        texts().append(QLatin1String(kind) + text);
    }
    QtMessageHandler m_previous;
};

inline QStringList namesOf(const QList<ASpectrumMarker *> &markers)
{
    QStringList names;
    for (const ASpectrumMarker *marker : markers)
        names.append(marker->name());
    return names;
}

// The names of a trace's list in its order; "none" for a trace that is not known.
inline QStringList namesOnTrace(const ASpectrumMarkerList &list, int trace)
{
    const QList<ASpectrumMarker *> *markers = list.trace(trace);
    return markers ? namesOf(*markers) : QStringList(QStringLiteral("none"));
}

inline QStringList texts(std::initializer_list<const char *> list)
{
    QStringList result;
    for (const char *text : list)
        result.append(QString::fromUtf8(text));
    return result;
}

} // namespace markertest
