#include "apps/aveldoran/tracefile.h"

#include "apps/aveldoran/console.h"
#include "apps/aveldoran/valuereading.h"
#include "apps/aveldoran/valuetext.h"

#include <core/emu.h>

#include <QtCore/QFile>

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

namespace {

constexpr int kShownBytes = 40; // of a text that an error quotes

using Fields = std::vector<QByteArray>;

// Which field of a line is what, and the units of numbers that stand alone.
struct Columns
{
    char separator = ',';
    std::size_t frequency = 0;
    std::size_t level = 1;
    std::size_t unit = 2;
    bool named = false; // others may stand beside them
    AFrequency::Unit frequencyUnit = AFrequency::Hz;
    QByteArray levelUnit = "dBm";
};

QString quoted(const QByteArray &text)
{
    const QString shown = Console::oneLine(QString::fromUtf8(text.left(kShownBytes)));
    return QLatin1Char('\'') + shown + (text.size() > kShownBytes ? QStringLiteral("…'") : QStringLiteral("'"));
}

QString noUnitText(const QByteArray &found)
{
    return QStringLiteral("expected a unit (%1), found %2").arg(unitNames().join(QLatin1String(", ")), quoted(found));
}

// What stands between quotes is one field whatever it holds. Blanks around fields don't count, nor empty fields behind
// the last one.
Fields split(const QByteArray &line, char separator)
{
    Fields fields;
    bool inQuotes = false;
    int begin = 0;
    for (int i = 0; i <= line.size(); ++i) {
        if (i < line.size() && line.at(i) == '"')
            inQuotes = !inQuotes;
        if (i == line.size() || (line.at(i) == separator && !inQuotes)) {
            fields.push_back(line.mid(begin, i - begin).replace('"', "").trimmed());
            begin = i + 1;
        }
    }
    while (fields.size() > 1 && fields.back().isEmpty())
        fields.pop_back();
    return fields;
}

bool beginsNumber(const QByteArray &field)
{
    const char c = field.isEmpty() ? ' ' : field.at(0);
    return (c >= '0' && c <= '9') || c == '+' || c == '-' || c == '.' || c == ',';
}

// Gaps and clipped levels are written as words.
bool readLevelWord(const QByteArray &word, double *level)
{
    const QByteArray lower = word.toLower();
    if (lower == "nan")
        *level = std::numeric_limits<double>::quiet_NaN();
    else if (lower == "inf" || lower == "+inf")
        *level = std::numeric_limits<double>::infinity();
    else if (lower == "-inf")
        *level = -std::numeric_limits<double>::infinity();
    else
        return false;
    return true;
}

bool readLevel(const QByteArray &field, double *level, QByteArray *unit)
{
    const int blank = field.indexOf(' ');
    if (readLevelWord(field.mid(0, blank), level)) {
        *unit = blank < 0 ? QByteArray() : field.mid(blank).trimmed();
        return true;
    }
    QByteArray number;
    splitNumber(field, &number, unit);
    bool ok = false;
    *level = number.toDouble(&ok);
    return ok && std::isfinite(*level);
}

// The unit in "Frequency [MHz]" or "Level (dBm)"; empty if there is none.
QByteArray unitOfTitle(const QByteArray &title)
{
    const int open = std::max(title.lastIndexOf('['), title.lastIndexOf('('));
    return open > 0 && (title.endsWith(']') || title.endsWith(')'))
               ? title.mid(open + 1, title.size() - open - 2).trimmed()
               : QByteArray();
}

void placeColumns(const Fields &titles, Columns *columns)
{
    const auto placeOf = [&titles](auto matches) {
        return static_cast<std::size_t>(std::find_if(titles.begin(), titles.end(), matches) - titles.begin());
    };
    const auto isFrequency = [](const QByteArray &title) { return title.toLower().startsWith("freq"); };
    const auto isUnit = [](const QByteArray &title) { return title.toLower() == "unit"; };
    const std::size_t frequency = placeOf(isFrequency);
    if (frequency == titles.size())
        return;
    columns->frequency = frequency;
    columns->unit = placeOf(isUnit);
    columns->level = placeOf([&](const QByteArray &title) { return !isFrequency(title) && !isUnit(title); });
}

bool readTitles(const Fields &titles, Columns *columns, QString *errorText)
{
    columns->named = true;
    placeColumns(titles, columns);
    if (columns->frequency >= titles.size() || columns->level >= titles.size()) {
        *errorText = QStringLiteral("expected titles of a frequency and a level, or a frequency such as 100 MHz");
        return false;
    }
    const QByteArray frequencyUnit = unitOfTitle(titles[columns->frequency]);
    if (!frequencyUnit.isEmpty()) {
        if (!isFrequencyUnit(frequencyUnit)) {
            *errorText = QStringLiteral("expected Hz, kHz, MHz or GHz, found %1").arg(quoted(frequencyUnit));
            return false;
        }
        columns->frequencyUnit = AFrequency::unitForSuffix(frequencyUnit.constData());
    }
    const QByteArray levelUnit = unitOfTitle(titles[columns->level]);
    if (!levelUnit.isEmpty())
        columns->levelUnit = levelUnit;
    if (unitId(columns->levelUnit) < 0) {
        *errorText = noUnitText(levelUnit);
        return false;
    }
    return true;
}

class TraceReader
{
public:
    explicit TraceReader(Trace *trace)
        : m_trace(trace)
    {
        *m_trace = Trace();
    }

    // Takes in one line, trimmed, neither empty nor a comment.
    bool addLine(const QByteArray &line, QString *errorText)
    {
        if (m_begun)
            return addPoint(split(line, m_columns.separator), errorText);
        m_begun = true;
        m_columns.separator = line.contains('\t') ? '\t' : line.contains(';') ? ';' : ',';
        const Fields fields = split(line, m_columns.separator);
        return beginsNumber(fields.front()) ? addPoint(fields, errorText) : readTitles(fields, &m_columns, errorText);
    }

private:
    bool addPoint(const Fields &fields, QString *errorText)
    {
        const auto field = [&fields](std::size_t column) {
            return column < fields.size() ? fields[column] : QByteArray();
        };
        AFrequency frequency;
        double level = 0.0;
        QByteArray unit;
        if (!m_columns.named && fields.size() > 3) {
            *errorText =
                QStringLiteral("expected frequency, level and unit, found %1 fields%2")
                    .arg(fields.size())
                    .arg(QLatin1String(m_columns.separator == ',' ? " (decimal commas need another separator)" : ""));
        } else if (!readFrequency(field(m_columns.frequency), m_columns.frequencyUnit, &frequency)) {
            *errorText = QStringLiteral("expected a frequency such as 100 MHz, found %1")
                             .arg(quoted(field(m_columns.frequency)));
        } else if (!readLevel(field(m_columns.level), &level, &unit)) {
            *errorText = QStringLiteral("expected a level such as -37.5, found %1").arg(quoted(field(m_columns.level)));
        } else if (!m_trace->values.isEmpty() && frequency < m_trace->values.last().frequency) {
            *errorText = QStringLiteral("%1 is below the frequency before it, expected ascending frequencies")
                             .arg(shortFrequency(frequency));
        } else if (m_trace->values.size() == kMaxTracePoints) {
            *errorText = QStringLiteral("more than %1 points").arg(kMaxTracePoints);
        } else if (readUnit(unit.isEmpty() ? field(m_columns.unit) : unit, errorText)) {
            m_trace->values.append(
                AMeasurementValue(level, static_cast<unsigned char>(m_trace->unit), frequency, 0, 0.0));
            return true;
        }
        return false;
    }

    // All points of a trace have one unit.
    bool readUnit(const QByteArray &named, QString *errorText)
    {
        const QByteArray text = named.isEmpty() ? m_columns.levelUnit : named;
        if (text == m_unitText)
            return true;
        const int id = unitId(text);
        if (id < 0) {
            *errorText = noUnitText(text);
            return false;
        }
        if (!m_trace->values.isEmpty() && id != m_trace->unit) {
            *errorText = QStringLiteral("expected the unit of the points before, %1, found %2")
                             .arg(QString::fromUcs4(emu_find(m_trace->unit)->name), quoted(text));
            return false;
        }
        m_trace->unit = id;
        m_unitText = text;
        return true;
    }

    Trace *m_trace;
    Columns m_columns;
    bool m_begun = false;
    QByteArray m_unitText; // as it was read last
};

} // namespace

bool readTrace(QIODevice *device, Trace *trace, QString *errorText)
{
    TraceReader reader(trace);
    for (qint64 number = 1;; ++number) {
        QByteArray line = device->readLine(kMaxTraceLineBytes + 2); // one byte less
        if (line.isEmpty())
            break;
        const auto fail = [number, errorText](const QString &text) {
            *errorText = QStringLiteral("%1: %2").arg(QString::number(number), text);
            return false;
        };
        if (line.size() > kMaxTraceLineBytes && !line.endsWith('\n'))
            return fail(QStringLiteral("the line is longer than %1 bytes").arg(kMaxTraceLineBytes));
        if (number == 1 && line.startsWith("\xef\xbb\xbf"))
            line.remove(0, 3);
        if (line.contains('\0'))
            return fail(QStringLiteral("this is no text file"));
        line = line.trimmed();
        QString problem;
        if (!line.isEmpty() && line.at(0) != '#' && !reader.addLine(line, &problem))
            return fail(problem);
    }
    if (trace->values.isEmpty()) {
        *errorText = QStringLiteral(" no points in this trace");
        return false;
    }
    return true;
}

bool readTraceFile(const QString &fileName, Trace *trace, QString *errorText)
{
    errorText->clear();
    QFile file(fileName);
    if (fileName.isEmpty() || !file.open(QIODevice::ReadOnly)) {
        *errorText = QStringLiteral("%1: can't be read: %2").arg(fileName, file.errorString());
        return false;
    }
    QString problem;
    const bool read = readTrace(&file, trace, &problem);
    if (file.error() != QFileDevice::NoError) // a point that was cut short may have been read without a complaint
        *errorText = QStringLiteral("%1: can't be read: %2").arg(fileName, file.errorString());
    else if (!read)
        *errorText = fileName + QLatin1Char(':') + problem;
    return errorText->isEmpty();
}
