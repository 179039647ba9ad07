#include "core/calibrationfile.h"

#include "core/xmldocument.h"

#include <QtCore/QBuffer>
#include <QtCore/QHash>

#include <algorithm>
#include <vector>

namespace {

using CalibrationFile::ByteSource;

enum Column
{
    ObjectColumn,
    LabelColumn,
    EscapedLabelColumn,
    TypeColumn,
    FrequencyColumn,
    GainColumn,
    CommentColumn,
    EmptyColumn, // without a title: nothing may stand in it
    ColumnCount
};

constexpr const char *kTitles[] = {"object", "label", "escaped label", "type", "frequency", "gain", "comment", ""};

constexpr std::size_t kMaxCells = 1024; // of a row
constexpr int kMaxRepeatedLabel = 1000; // a longer label stands in the first row of its object alone

using Cells = std::vector<QByteArray>;

// Reads up to the end of a cell, which stays in the source.
void readPlainCell(ByteSource *source, char separator, QByteArray *cell)
{
    for (int c = source->peek(); c != separator && c != '\n' && c != '\r' && c != ByteSource::kEnd;
         c = source->peek()) {
        if (cell->size() == CalibrationFile::kMaxPieceBytes)
            return source->fail();
        cell->append(static_cast<char>(source->get()));
    }
    *cell = cell->trimmed();
}

// What follows the opening quote; a doubled quote stands for one. Nothing but blanks may follow the closing one.
bool readQuotedCell(ByteSource *source, char separator, QByteArray *cell)
{
    for (int c = source->get(); c != '"' || source->peek() == '"'; c = source->get()) {
        if (c == ByteSource::kEnd || cell->size() == CalibrationFile::kMaxPieceBytes)
            return false;
        if (c == '"')
            source->get();
        cell->append(static_cast<char>(c));
    }
    QByteArray rest;
    readPlainCell(source, separator, &rest);
    return rest.isEmpty();
}

void skipBlanks(ByteSource *source, char separator)
{
    while (source->peek() == ' ' || (source->peek() == '\t' && separator != '\t'))
        source->get();
}

// The cells of one row, which may go over several lines. False at damage.
bool readRow(ByteSource *source, char separator, Cells *cells)
{
    cells->clear();
    qint64 bytes = 0;
    do {
        QByteArray cell;
        skipBlanks(source, separator);
        if (source->peek() == '"') {
            source->get();
            if (!readQuotedCell(source, separator, &cell))
                return false;
        } else {
            readPlainCell(source, separator, &cell);
        }
        bytes += cell.size() + 1;
        if (bytes > CalibrationFile::kMaxPieceBytes || cells->size() == kMaxCells)
            return false;
        cells->push_back(cell);
    } while (source->peek() == separator && source->get() != ByteSource::kEnd);
    if (source->get() == '\r' && source->peek() == '\n')
        source->get();
    return !source->failed();
}

void skipLine(ByteSource *source)
{
    int c = source->get();
    while (c != '\n' && c != '\r' && c != ByteSource::kEnd)
        c = source->get();
    if (c == '\r' && source->peek() == '\n')
        source->get();
}

// The meaning of the columns, as the first row says it.
struct Columns
{
    char separator = ';';
    AFrequency::Unit unit = AFrequency::Hz; // of frequencies without one
    std::vector<Column> order;

    bool has(Column column) const { return std::find(order.begin(), order.end(), column) != order.end(); }
};

// Splits "frequency (MHz)" and "gain [dB]" into title and unit.
void splitTitle(QByteArray *title, QByteArray *unit)
{
    const char close = title->endsWith(')') ? ')' : ']';
    const int open = title->lastIndexOf(close == ')' ? '(' : '[');
    if (open < 0 || !title->endsWith(close))
        return;
    *unit = title->mid(open + 1, title->size() - open - 2).trimmed();
    *title = title->left(open).trimmed();
}

bool readColumn(QByteArray title, Columns *columns)
{
    QByteArray unit;
    splitTitle(&title, &unit);
    const auto *found = std::find(std::begin(kTitles), std::end(kTitles), title.simplified().toLower());
    if (found == std::end(kTitles))
        return false;
    const auto column = static_cast<Column>(found - std::begin(kTitles));
    if (columns->has(column) && column != CommentColumn && column != EmptyColumn)
        return false;
    columns->order.push_back(column);
    if (unit.isEmpty())
        return true;
    if (column == GainColumn)
        return unit == "dB" || unit == "dBi";
    columns->unit = AFrequency::unitForSuffix(unit.constData());
    return column == FrequencyColumn && unit == AFrequency::suffixForUnit(columns->unit);
}

bool readColumns(const QByteArray &line, Columns *columns)
{
    columns->separator = line.contains('\t') ? '\t' : line.contains(';') ? ';' : ',';
    QBuffer buffer;
    buffer.setData(line);
    buffer.open(QIODevice::ReadOnly);
    ByteSource source(&buffer);
    Cells titles;
    return readRow(&source, columns->separator, &titles) &&
           std::all_of(titles.begin(), titles.end(),
                       [columns](const QByteArray &title) { return readColumn(title, columns); }) &&
           columns->has(FrequencyColumn) && columns->has(GainColumn);
}

class TableReader
{
public:
    TableReader(const Columns &columns, const CalibrationFile::Defaults &defaults, QList<ACalibrationData> *objects)
        : m_columns(columns)
        , m_defaults(defaults)
        , m_objects(objects)
        , m_namesLabels(columns.has(LabelColumn) || columns.has(EscapedLabelColumn))
    {}

    // Null, or what was expected.
    const char *addRow(const Cells &cells)
    {
        if (!sortCells(cells))
            return QT_TRANSLATE_NOOP("CoreText", "expected nothing beyond the named columns");
        const auto isFilled = [this](Column column) { return !m_row[column].isEmpty(); };
        if (isFilled(FrequencyColumn) != isFilled(GainColumn))
            return QT_TRANSLATE_NOOP("CoreText", "expected both a frequency and a gain, or none");
        if (!isFilled(ObjectColumn) && !isFilled(LabelColumn) && !isFilled(EscapedLabelColumn) &&
            !isFilled(TypeColumn) && !isFilled(FrequencyColumn))
            return nullptr; // an empty row of a spreadsheet
        const int index = objectOfRow();
        if (index < 0)
            return QT_TRANSLATE_NOOP("CoreText",
                                     "expected a label and a known type, the same in all rows of an object");
        return !isFilled(FrequencyColumn) || addEntry(&(*m_objects)[index])
                   ? nullptr
                   : QT_TRANSLATE_NOOP("CoreText", "expected a frequency and a gain");
    }

private:
    // Brings the cells into the order of Column. A row may end early, and behind its columns only be empty.
    bool sortCells(const Cells &cells)
    {
        for (QByteArray &cell : m_row)
            cell.clear();
        for (std::size_t i = 0; i < cells.size(); ++i) {
            const Column column = i < m_columns.order.size() ? m_columns.order.at(i) : EmptyColumn;
            if (column != CommentColumn)
                m_row[column] += cells.at(i);
        }
        return m_row[EmptyColumn].isEmpty();
    }

    // -1 for a row that contradicts itself or an earlier row of its object.
    int objectOfRow()
    {
        ACalibrationData::CalibrationType type = m_defaults.type;
        if (!CalibrationFile::readType(m_row[TypeColumn], &type))
            return -1;
        const bool isNumbered = !m_row[ObjectColumn].isEmpty();
        const QByteArray key =
            isNumbered ? '#' + m_row[ObjectColumn]
                       : QByteArray::number(type) + ' ' + m_row[EscapedLabelColumn] + '\n' + m_row[LabelColumn];
        const auto known = m_indexOfKey.constFind(key);
        if (known != m_indexOfKey.constEnd())
            return fitsFirstRow(*known, type) ? *known : -1;

        QString label = m_defaults.label;
        if (m_namesLabels && !readLabel(&label))
            return -1;
        m_objects->append(ACalibrationData(label, type));
        m_firstRows.push_back({m_row[LabelColumn], m_row[EscapedLabelColumn]});
        return *m_indexOfKey.insert(key, m_objects->size() - 1);
    }

    bool readLabel(QString *label) const
    {
        if (!CalibrationFile::readUtf8(m_row[LabelColumn], label))
            return false;
        QString escaped;
        return m_row[EscapedLabelColumn].isEmpty() ||
               (label->isEmpty() && CalibrationFile::readUtf8(m_row[EscapedLabelColumn], &escaped) &&
                CalibrationFile::readEscapedLabel(escaped, label));
    }

    // Label and type may be left out behind an object's first row.
    bool fitsFirstRow(int index, ACalibrationData::CalibrationType type) const
    {
        const FirstRow &first = m_firstRows.at(static_cast<std::size_t>(index));
        const auto fits = [](const QByteArray &cell, const QByteArray &firstCell) {
            return cell.isEmpty() || cell == firstCell;
        };
        return (m_row[TypeColumn].isEmpty() || type == m_objects->at(index).type()) &&
               fits(m_row[LabelColumn], first.label) && fits(m_row[EscapedLabelColumn], first.escapedLabel);
    }

    bool addEntry(ACalibrationData *object) const
    {
        AFrequency frequency;
        double gain = 0.0;
        if (!CalibrationFile::readFrequency(m_row[FrequencyColumn], m_columns.unit, &frequency) ||
            !CalibrationFile::readGain(m_row[GainColumn], &gain))
            return false;
        object->addLevel(frequency, gain);
        return true;
    }

    struct FirstRow
    {
        QByteArray label;
        QByteArray escapedLabel;
    };

    const Columns &m_columns;
    const CalibrationFile::Defaults &m_defaults;
    QList<ACalibrationData> *m_objects;
    const bool m_namesLabels;
    QByteArray m_row[ColumnCount];
    QHash<QByteArray, int> m_indexOfKey;
    std::vector<FirstRow> m_firstRows; // as long as *m_objects
};

QByteArray quoted(const QByteArray &cell)
{
    return '"' + QByteArray(cell).replace('"', "\"\"") + '"';
}

} // namespace

namespace CalibrationFile {

bool readTable(const QByteArray &firstLine, ByteSource *source, const Defaults &defaults,
               QList<ACalibrationData> *objects, Problem *problem)
{
    const auto expected = [source, problem](const char *text) {
        if (!source->failed())
            *problem = CalibrationFile::translatedProblem(text, source->lineOfPiece());
        return false;
    };
    Columns columns;
    if (!readColumns(firstLine, &columns))
        return expected(QT_TRANSLATE_NOOP("CoreText",
                                          "expected '<', 'caldata 1', '[type] label', or the names of columns with "
                                          "'frequency' and 'gain' among them"));
    TableReader reader(columns, defaults, objects);
    Cells cells;
    while (source->peek() != ByteSource::kEnd) {
        source->startPiece();
        skipBlanks(source, columns.separator);
        if (source->peek() == '#') {
            skipLine(source);
            continue;
        }
        if (!readRow(source, columns.separator, &cells))
            return expected(QT_TRANSLATE_NOOP("CoreText", "expected a row with each quote closed"));
        if (const char *text = reader.addRow(cells))
            return expected(text);
    }
    return true;
}

void writeTable(const QList<ACalibrationData> &objects, Output *output)
{
    const auto isText = [](const ACalibrationData &object) { return isXmlText(object.label()); };
    const bool hasEscapedLabels = !std::all_of(objects.begin(), objects.end(), isText);
    *output << (hasEscapedLabels ? "object;label;escaped label;type;frequency;gain\n"
                                 : "object;label;type;frequency;gain\n");
    int number = 0;
    for (const ACalibrationData &object : objects) {
        const QByteArray label = isText(object) ? quoted(object.label().toUtf8()) : QByteArray();
        const QByteArray escaped = isText(object) ? QByteArray() : quoted(escapedLabel(object.label()).toUtf8());
        const QByteArray start = QByteArray::number(++number) + ';';
        const QByteArray end = (hasEscapedLabels ? ';' + escaped : QByteArray()) + ';' + typeWord(object.type()) + ';';
        const QByteArray firstRow = start + label + end;
        const bool repeatsLabel = object.label().size() <= kMaxRepeatedLabel;
        const QByteArray laterRow = repeatsLabel ? firstRow : start + (hasEscapedLabels ? ";;;" : ";;");
        if (object.level().isEmpty())
            *output << firstRow << ";\n";
        for (auto entry = object.level().begin(); entry != object.level().end(); ++entry) {
            *output << (entry == object.level().begin() ? firstRow : laterRow) << frequencyText(entry.key()) << ";"
                    << gainText(entry.value()) << "\n";
        }
    }
}

} // namespace CalibrationFile
