#include "channel/efisimport.h"

#include "channel/achannelinfo.h"

#include <QtCore/QDate>
#include <QtCore/QDebug>
#include <QtCore/QFileDevice>
#include <QtCore/QIODevice>
#include <QtCore/QVarLengthArray>

#include <algorithm>
#include <array>
#include <cstring>
#include <vector>

namespace {

enum LinkDirection
{
    NoDirection = 0,
    Uplink = 1,
    Downlink = 2,
};

// The fields of a line that are read, and how many a line must have.
constexpr std::size_t kTwoDirectionsField = 0;
constexpr std::size_t kRangeField = 1; // of a line with two directions the downlink
constexpr std::size_t kUplinkField = 2;
constexpr std::size_t kNameField = 4;
constexpr std::size_t kFirstDayField = 5;
constexpr std::size_t kLastDayField = 6;
constexpr std::size_t kRequiredFields = 10;

// Deliberate: reading stops when this many bytes or fewer are left, so a last line that is shorter is ignored.
constexpr qint64 kUnreadBytes = 5;

constexpr qint64 kMergeGapHz = 10000000; // a wider gap begins a new group

// A part of a line, not ended by a zero byte.
struct Field
{
    const char *begin = nullptr;
    int size = 0;
};

// Gives the fields of a line one by one, so that a line of millions costs no list of them.
class FieldReader
{
public:
    explicit FieldReader(const QByteArray &line)
        : m_at(line.constData())
        , m_end(m_at + line.size())
    {}

    // False after the last field.
    bool next(Field *field)
    {
        if (!m_at)
            return false;
        const char *begin = m_at;
        const auto *separator = static_cast<const char *>(std::memchr(begin, ';', static_cast<size_t>(m_end - begin)));
        const char *end = separator ? separator : m_end;
        m_at = separator ? separator + 1 : nullptr;
        if (begin != end && *begin == '"')
            ++begin;
        if (begin != end && *(end - 1) == '"')
            --end;
        *field = {begin, static_cast<int>(end - begin)};
        return true;
    }

private:
    const char *m_at; // null after the last field
    const char *m_end;
};

using Fields = std::array<Field, kRequiredFields>;

// False for a line with too few.
bool readFields(const QByteArray &line, Fields *fields)
{
    FieldReader reader(line);
    return std::all_of(fields->begin(), fields->end(), [&reader](Field &field) { return reader.next(&field); });
}

bool isWord(const Field &field, const char *word)
{
    return field.size == static_cast<int>(std::strlen(word)) && qstrnicmp(field.begin, word, uint(field.size)) == 0;
}

bool isDigits(const char *text, int count)
{
    return std::all_of(text, text + count, [](char c) { return c >= '0' && c <= '9'; });
}

int numberFrom(const char *digits, int count)
{
    int number = 0;
    for (int i = 0; i < count; ++i)
        number = number * 10 + (digits[i] - '0');
    return number;
}

// As QDate::fromString reads "yyyy-MM-dd", which takes a hundred times as long as reading the digits.
QDate dateFrom(const Field &field)
{
    constexpr int kLength = 10; // no text of another length is a date in this form
    constexpr int kMaxBytesPerCharacter = 4;
    const char *text = field.begin;
    if (field.size == kLength && isDigits(text, 4) && text[4] == '-' && isDigits(text + 5, 2) && text[7] == '-' &&
        isDigits(text + 8, 2))
        return {numberFrom(text, 4), numberFrom(text + 5, 2), numberFrom(text + 8, 2)};
    if (field.size < kLength || field.size > kLength * kMaxBytesPerCharacter)
        return {};
    return QDate::fromString(QString::fromUtf8(text, field.size), QStringLiteral("yyyy-MM-dd"));
}

// A date that can't be read is before all others: as the first day it lets a line pass, as the last one it doesn't.
bool isValidOn(const QDate &day, const Fields &fields)
{
    return dateFrom(fields[kFirstDayField]) <= day && day <= dateFrom(fields[kLastDayField]);
}

// One side of a frequency range, without the blanks around it and ended by a zero byte.
class Edge
{
public:
    Edge(const char *begin, const char *end)
    {
        while (begin != end && isBlank(*begin))
            ++begin;
        while (begin != end && isBlank(*(end - 1)))
            --end;
        m_text.append(begin, static_cast<int>(end - begin));
        m_text.append('\0');
        m_unit = static_cast<const char *>(memrchr(m_text.constData(), ' ', static_cast<size_t>(m_text.size())));
    }

    bool hasUnit() const { return m_unit; } // or what stands for one
    AFrequency::Unit unit() const { return AFrequency::unitForSuffix(m_unit + 1); }
    AFrequency withOwnUnit() const { return AFrequency(m_text.constData()); }
    AFrequency inUnit(AFrequency::Unit unit) const
    {
        AFrequency frequency;
        frequency.setValue(QByteArray::fromRawData(m_text.constData(), m_text.size() - 1).toDouble(), unit);
        return frequency;
    }

private:
    Q_DISABLE_COPY(Edge) // m_unit leads into m_text

    static bool isBlank(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }

    QVarLengthArray<char, 64> m_text;
    const char *m_unit; // after the last blank; null if there is none
};

void readRange(const Field &field, EfisEntry *entry)
{
    const char *end = field.begin + field.size;
    const auto length = static_cast<size_t>(field.size);
    const auto *firstDash = static_cast<const char *>(length > 0 ? std::memchr(field.begin, '-', length) : nullptr);
    const auto *lastDash = static_cast<const char *>(firstDash ? memrchr(field.begin, '-', length) : nullptr);
    const Edge first(field.begin, firstDash ? firstDash : end);
    const Edge last(lastDash ? lastDash + 1 : field.begin, end);

    AFrequency::Unit unit = AFrequency::MHz;
    if (first.hasUnit()) {
        entry->begin = first.withOwnUnit();
        unit = first.unit();
    }
    if (last.hasUnit()) {
        entry->end = last.withOwnUnit();
        unit = last.unit(); // it wins
    }
    if (entry->begin.isNull())
        entry->begin = first.inUnit(unit);
    if (entry->end.isNull())
        entry->end = last.inUnit(unit);
}

EfisEntry entryFrom(const Fields &fields, std::size_t rangeField, LinkDirection direction)
{
    EfisEntry entry;
    entry.direction = direction;
    entry.name = QString::fromUtf8(fields[kNameField].begin, fields[kNameField].size);
    readRange(fields[rangeField], &entry);
    return entry;
}

void readLine(const QByteArray &line, const QDate &today, std::vector<EfisEntry> *entries)
{
    Fields fields;
    if (!readFields(line, &fields))
        return;
    const bool hasTwoDirections = isWord(fields[kTwoDirectionsField], "yes");
    if (!hasTwoDirections && !isWord(fields[kTwoDirectionsField], "no"))
        return; // the header line, too
    if (!isValidOn(today, fields))
        return;
    if (hasTwoDirections)
        entries->push_back(entryFrom(fields, kUplinkField, Uplink));
    entries->push_back(entryFrom(fields, kRangeField, hasTwoDirections ? Downlink : NoDirection));
}

// bytesAvailable() without asking the file system for the size of a file at every line. In text mode lines come without
// their carriage returns, so their sizes don't tell how far the file has moved.
class Remaining
{
public:
    explicit Remaining(QIODevice *io)
        : m_io(io)
        , m_isCounted(qobject_cast<QFileDevice *>(io) && !io->isSequential() && !io->isTextModeEnabled())
    {}

    bool isAbove(qint64 bytes)
    {
        if (!m_isCounted || m_known <= bytes)
            m_known = m_io->bytesAvailable(); // a file may have grown
        return m_known > bytes;
    }
    void take(qint64 bytes) { m_known -= bytes; }

private:
    QIODevice *m_io;
    bool m_isCounted;
    qint64 m_known = 0;
};

std::vector<EfisEntry> readEntries(QIODevice *io)
{
    const QDate today = QDate::currentDate();
    std::vector<EfisEntry> entries;
    Remaining remaining(io);
    while (remaining.isAbove(kUnreadBytes)) {
        const QByteArray line = io->readLine(0);
        if (line.isEmpty())
            break; // a device that failed or was closed may go on telling of bytes
        remaining.take(line.size());
        readLine(line, today, &entries);
    }
    return entries;
}

// What entries are sorted by; smaller than they are.
struct SortKey
{
    AFrequency begin;
    AFrequency end;
    const EfisEntry *entry;
};

// Since "before" is no strict weak order (an entry that lies within another one is neither before nor after it), what
// becomes of such pairs is up to the algorithm. The trees that applications know are those of qStableSort;
// std::stable_sort gives others.
std::vector<SortKey> sorted(const std::vector<EfisEntry> &entries)
{
    std::vector<SortKey> keys;
    keys.reserve(entries.size());
    for (const EfisEntry &entry : entries)
        keys.push_back({entry.begin, entry.end, &entry});
    const auto isBefore = [](const SortKey &a, const SortKey &b) { return a.begin < b.begin && a.end < b.end; };
    QT_WARNING_PUSH
    QT_WARNING_DISABLE_DEPRECATED
    qStableSort(keys.begin(), keys.end(), isBefore);
    QT_WARNING_POP
    return keys;
}

// The group that takes the entries of one direction, until a gap begins the next.
struct Group
{
    QString label;
    AChannelInfo *node = nullptr;
};

AChannelInfo *addNode(AChannelInfo *parent, AChannelInfo::RangeType type, const EfisEntry &entry, const QString &label)
{
    auto *node = new AChannelInfo(parent, type, entry.begin, entry.end, label, true);
    parent->appendChild(node);
    return node;
}

bool isNear(const EfisEntry &entry, const AChannelInfo &group)
{
    const AFrequency mergeGap = AFrequency::fromValue(static_cast<long long>(kMergeGapHz), AFrequency::Hz);
    return entry.begin - group.endFrequency() <= mergeGap;
}

AChannelInfo *groupFor(const EfisEntry &entry, Group *current, AChannelInfo *parent)
{
    if (current->node && isNear(entry, *current->node)) {
        // Deliberately also if it is lower than before: the end follows the latest entry.
        current->node->setData(AChannelInfo::ColumnStopFreq, entry.end.intValue(AFrequency::Hz));
    } else {
        current->node = addNode(parent, AChannelInfo::Generic, entry, current->label);
    }
    return current->node;
}

} // namespace

QList<QByteArray> parseEfisLine(const QByteArray &line)
{
    QList<QByteArray> fields;
    fields.reserve(line.count(';') + 1);
    FieldReader reader(line);
    Field field;
    while (reader.next(&field))
        fields.append(QByteArray(field.begin, field.size));
    return fields;
}

void parseEfisFrequencyRange(EfisEntry *entry, const QByteArray &text)
{
    if (!entry) {
        qWarning("parseEfisFrequencyRange: the entry is null");
        return;
    }
    readRange({text.constData(), text.size()}, entry);
}

bool AChannelInfo::fromEfisCSV(QIODevice *io, AChannelInfo *parent)
{
    if (!io || !io->isReadable()) {
        qDebug("io is not readable");
        return false;
    }
    if (!parent) {
        qWarning("fromEfisCSV: the parent is null");
        return false;
    }
    const std::vector<EfisEntry> entries = readEntries(io);
    if (entries.empty()) {
        qDebug("entries list is empty");
        return false;
    }

    const std::vector<SortKey> order = sorted(entries);
    Group downlink{QStringLiteral("Downlink")};
    Group uplink{QStringLiteral("Uplink")};
    for (const SortKey &key : order) {
        const EfisEntry *entry = key.entry;
        AChannelInfo *node = parent;
        if (entry->direction == Downlink)
            node = groupFor(*entry, &downlink, parent);
        else if (entry->direction == Uplink)
            node = groupFor(*entry, &uplink, parent);
        addNode(node, Provider, *entry, entry->name);
    }
    parent->setData(ColumnStartFreq, order.front().begin.intValue(AFrequency::Hz));
    parent->setData(ColumnStopFreq, order.back().end.intValue(AFrequency::Hz));
    return true;
}
