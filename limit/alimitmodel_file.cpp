#include "limit/alimitmodel.h"

#include "core/boundeddom.h"
#include "core/regularfile.h"
#include "core/xmldocument.h"

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QXmlStreamWriter>
#include <QtXml/QDomDocument>

#include <algorithm>
#include <limits>

// The reader and the writer of limit files. They are not each other's inverse, deliberately: docs/formats.md lists what
// a load and a save change, and limit editors count on it.

namespace {

using Row = QList<QStandardItem *>;

QString valueText(double value)
{
    constexpr int kDigits = 6;
    return QString::number(value, 'g', kDigits);
}

QString attribute(const QDomElement &element, const char *name, const QString &absent)
{
    return element.attribute(QLatin1String(name), absent);
}

QString attribute(const QDomElement &element, const char *name, const char *absent = "")
{
    return attribute(element, name, QString::fromLatin1(absent));
}

QString interpolationText(const QDomElement &element, const char *absent)
{
    return QString::number(attribute(element, "interpolation", absent).toUInt());
}

AFrequency wholeHertz(qulonglong value)
{
    constexpr auto kMax = static_cast<qulonglong>(std::numeric_limits<qlonglong>::max());
    return AFrequency::fromValue(static_cast<long long>(std::min(value, kMax)), AFrequency::Hz);
}

AFrequency hertz(double value)
{
    return AFrequency::fromValue(value, AFrequency::Hz);
}

QStandardItem *edgeItem(const QString &hertzText)
{
    return new QStandardItem(valueText(wholeHertz(hertzText.toULongLong()).floatValue(AFrequency::MHz)));
}

QStandardItem *frequencyItem(const QString &text, const QVariant &hertzValue)
{
    auto *item = new QStandardItem(text);
    item->setData(hertzValue, ALimitModel::HertzRole);
    return item;
}

// A row of a piece, with the items of its columns from ColumnBeginFrequency on.
Row pieceRow(const Row &items)
{
    Row row;
    row.reserve(ALimitModel::ColumnInterpolation + 1);
    for (int column = 0; column < ALimitModel::ColumnBeginFrequency; ++column)
        row.append(nullptr);
    return row + items;
}

QString descriptionOf(const QDomElement &limit)
{
    const QDomElement element = limit.firstChildElement(QStringLiteral("description"));
    return element.isNull() ? attribute(limit, "description") : element.text();
}

// With two empty items behind the six that are filled, deliberately: in the columns of a piece's edges.
Row limitRow(const QDomElement &limit)
{
    return {new QStandardItem(attribute(limit, "name")),
            edgeItem(attribute(limit, "begin", "0")),
            edgeItem(attribute(limit, "end", "30000000000")),
            new QStandardItem(attribute(limit, "measureunit", "8")),
            new QStandardItem(descriptionOf(limit)),
            new QStandardItem(attribute(limit, "color")),
            new QStandardItem,
            new QStandardItem};
}

class Writer
{
public:
    explicit Writer(QIODevice *device)
        : m_xml(device)
    {
        m_xml.setAutoFormatting(true);
        m_xml.writeStartDocument();
        m_xml.writeStartElement(QStringLiteral("data"));
    }
    void end()
    {
        m_xml.writeEndElement();
        m_xml.writeEndDocument();
    }
    void writeLimit(const QAbstractItemModel &model, int row)
    {
        m_xml.writeStartElement(QStringLiteral("limit"));
        const auto cell = [&](int column) { return model.index(row, column).data(Qt::DisplayRole); };
        writeText("name", cell(ALimitModel::ColumnName));
        writeFrequency("begin", cell(ALimitModel::ColumnBegin));
        writeFrequency("end", cell(ALimitModel::ColumnEnd));
        writeText("measureunit", cell(ALimitModel::ColumnUnit));
        writeText("color", cell(ALimitModel::ColumnColor));
        const QModelIndex limit = model.index(row, ALimitModel::ColumnName);
        const int pieces = model.rowCount(limit);
        for (int piece = 0; piece < pieces; ++piece)
            writePiece(model, limit, piece);
        m_xml.writeEndElement();
    }

private:
    // A begin that is not above 0 makes a level of a section: levels have no such cell.
    void writePiece(const QAbstractItemModel &model, const QModelIndex &limit, int row)
    {
        const auto cell = [&](int column) { return model.index(row, column, limit).data(Qt::DisplayRole); };
        if (cell(ALimitModel::ColumnBeginFrequency).toDouble() > 0.0) {
            m_xml.writeStartElement(QStringLiteral("section"));
            writeFrequency("beginFrequency", cell(ALimitModel::ColumnBeginFrequency));
            writeFrequency("endFrequency", cell(ALimitModel::ColumnEndFrequency));
            writeAttribute("beginValue", valueText(cell(ALimitModel::ColumnBeginValue).toDouble()));
            writeAttribute("endValue", valueText(cell(ALimitModel::ColumnEndValue).toDouble()));
            writeInterpolation(cell(ALimitModel::ColumnInterpolation));
        } else {
            m_xml.writeStartElement(QStringLiteral("level"));
            writeFrequency("frequency", cell(ALimitModel::ColumnEndFrequency));
            writeInterpolation(cell(ALimitModel::ColumnInterpolation));
            m_xml.writeCharacters(valueText(cell(ALimitModel::ColumnEndValue).toDouble()));
        }
        m_xml.writeEndElement();
    }

    void writeAttribute(const char *name, const QString &value) { m_xml.writeAttribute(QLatin1String(name), value); }
    void writeText(const char *name, const QVariant &text)
    {
        writeAttribute(name, withoutNonXmlCharacters(text.toString()));
    }
    void writeInterpolation(const QVariant &number)
    {
        writeAttribute("interpolation", QString::number(number.toUInt()));
    }
    void writeFrequency(const char *name, const QVariant &megahertz)
    {
        const AFrequency frequency = AFrequency::fromValue(megahertz.toDouble(), AFrequency::MHz);
        writeAttribute(name, frequency.toString());
    }

    QXmlStreamWriter m_xml;
};

} // namespace

struct Q_DECL_HIDDEN ALimitModel::PieceReader
{
    static Row sectionRow(const QDomElement &section)
    {
        const double begin = attribute(section, "beginFrequency", "0").toDouble();
        const double end = attribute(section, "endFrequency", "0").toDouble();
        const QString beginValue = valueText(attribute(section, "beginValue", "0").toDouble());
        const QString endValue = valueText(attribute(section, "endValue", beginValue).toDouble());
        return pieceRow({frequencyItem(frequencyText(hertz(begin)), begin),
                         new QStandardItem(frequencyText(hertz(end))), new QStandardItem(beginValue),
                         new QStandardItem(endValue), new QStandardItem(interpolationText(section, "1"))});
    }

    static Row levelRow(const QDomElement &level)
    {
        const qulonglong at = attribute(level, "frequency", "0").toULongLong();
        return pieceRow({nullptr, frequencyItem(frequencyText(wholeHertz(at)), at), nullptr,
                         new QStandardItem(valueText(level.text().toDouble())),
                         new QStandardItem(interpolationText(level, "0"))});
    }
};

bool ALimitModel::loadFromFile(const QString &fileName)
{
    QFile file(fileName);
    if (!QFile::exists(fileName)) {
        Q_EMIT loadError(tr("File '%1' does not exist").arg(fileName));
        return false;
    }
    QString reason;
    if (!openRegularFile(&file, &reason)) {
        Q_EMIT loadError(tr("Could not read file '%1': %2").arg(fileName, reason));
        return false;
    }
    clearRows();
    QDomDocument document;
    XmlError error;
    if (!setBoundedContent(&document, &file, &error)) {
        Q_EMIT loadError(tr("Could not parse file '%1': %2 (line %3, col %4)")
                             .arg(fileName, error.text, QString::number(error.line), QString::number(error.column)));
        return false;
    }
    file.close();

    const QString limitTag = QStringLiteral("limit");
    const QString sectionTag = QStringLiteral("section");
    const QString levelTag = QStringLiteral("level");
    QDomElement limit = document.documentElement().firstChildElement(limitTag);
    for (; !limit.isNull(); limit = limit.nextSiblingElement(limitTag)) {
        const Row row = limitRow(limit);
        QDomElement section = limit.firstChildElement(sectionTag);
        for (; !section.isNull(); section = section.nextSiblingElement(sectionTag))
            row.first()->appendRow(PieceReader::sectionRow(section));
        QDomElement level = limit.firstChildElement(levelTag);
        for (; !level.isNull(); level = level.nextSiblingElement(levelTag))
            row.first()->appendRow(PieceReader::levelRow(level));
        appendRow(row);
    }
    return true;
}

bool ALimitModel::saveToFile(const QString &fileName)
{
    QFile file(fileName);
    const QDir directory = QFileInfo(fileName).absoluteDir();
    if (!directory.exists())
        directory.mkpath(QStringLiteral("."));
    if (!file.open(QIODevice::WriteOnly)) {
        Q_EMIT saveError(tr("Could not open file '%1': %2").arg(fileName, file.errorString()));
        return false;
    }
    Writer writer(&file);
    for (int row = 0; row < rowCount(); ++row)
        writer.writeLimit(*this, row);
    writer.end();
    return true;
}
