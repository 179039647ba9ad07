#include "core/calibrationfile.h"

#include "core/xmldocument.h"

#include <QtCore/QXmlStreamReader>

namespace {

constexpr char kRoot[] = "calibrations";
constexpr char kObject[] = "calibration";
constexpr char kEntry[] = "level";

// Hands a file to the parser, and ends it where one token grows too long: the parser holds each of them as a whole.
class TokenBoundedDevice : public QIODevice
{
public:
    explicit TokenBoundedDevice(QIODevice *file)
        : m_file(file)
    {
        open(QIODevice::ReadOnly | QIODevice::Unbuffered);
    }
    void tokenEnds() { m_left = CalibrationFile::kMaxPieceBytes; }
    bool isSequential() const override { return true; }
    bool atEnd() const override { return m_left == 0 || m_file->atEnd(); }

protected:
    qint64 readData(char *data, qint64 maxSize) override
    {
        const qint64 count = m_file->read(data, qMin(maxSize, m_left));
        m_left -= qMax<qint64>(count, 0);
        return count;
    }
    qint64 writeData(const char *, qint64) override { return -1; }

private:
    QIODevice *m_file;
    qint64 m_left = CalibrationFile::kMaxPieceBytes;
};

// Takes the attributes of one element by name; what nobody asked for is no part of the form.
class Attributes
{
public:
    explicit Attributes(const QXmlStreamReader &reader)
        : m_attributes(reader.attributes())
        , m_left(m_attributes.size() + reader.namespaceDeclarations().size())
    {}
    bool has(const char *name) const { return m_attributes.hasAttribute(QLatin1String(name)); }
    QString take(const char *name)
    {
        m_left -= has(name) ? 1 : 0;
        const QStringRef value = m_attributes.value(QLatin1String(name));
        return QString(value.unicode(), value.size()); // toString() may keep the parser's whole buffer alive
    }
    bool allTaken() const { return m_left == 0; }

private:
    QXmlStreamAttributes m_attributes;
    int m_left;
};

bool startObject(Attributes attributes, const CalibrationFile::Defaults &defaults, QList<ACalibrationData> *objects)
{
    ACalibrationData::CalibrationType type = defaults.type;
    if (!CalibrationFile::readType(attributes.take("type").toUtf8(), &type))
        return false;
    QString label = attributes.take("label");
    if (attributes.has("escapedLabel") &&
        (!label.isEmpty() || !CalibrationFile::readEscapedLabel(attributes.take("escapedLabel"), &label)))
        return false;
    objects->append(ACalibrationData(label, type));
    return attributes.allTaken();
}

bool readEntry(Attributes attributes, ACalibrationData *object)
{
    AFrequency frequency;
    double gain = 0.0;
    if (!CalibrationFile::readFrequency(attributes.take("frequency").toUtf8(), AFrequency::Hz, &frequency) ||
        !CalibrationFile::readGain(attributes.take("gain").toUtf8(), &gain))
        return false;
    object->addLevel(frequency, gain);
    return attributes.allTaken();
}

// `depth` is the number of open elements around the one that starts.
bool startElement(const QXmlStreamReader &reader, int depth, const CalibrationFile::Defaults &defaults,
                  QList<ACalibrationData> *objects)
{
    const auto isNamed = [&](const char *name) { return reader.qualifiedName() == QLatin1String(name); };
    switch (depth) {
    case 0:
        return isNamed(kRoot);
    case 1:
        return isNamed(kObject) && startObject(Attributes(reader), defaults, objects);
    case 2:
        return isNamed(kEntry) && readEntry(Attributes(reader), &objects->last());
    default:
        return false;
    }
}

QByteArray escaped(const QString &text)
{
    QString result;
    result.reserve(text.size());
    for (const QChar c : text) {
        switch (c.unicode()) {
        case '<':
            result += QLatin1String("&lt;");
            break;
        case '&':
            result += QLatin1String("&amp;");
            break;
        case '"':
            result += QLatin1String("&quot;");
            break;
        case '\t':
        case '\n':
        case '\r': // as they stand, a parser makes them blanks
            result += QLatin1String("&#") + QString::number(c.unicode()) + QLatin1Char(';');
            break;
        default:
            result += c;
        }
    }
    return result.toUtf8();
}

} // namespace

namespace CalibrationFile {

bool readXml(QIODevice *device, const Defaults &defaults, QList<ACalibrationData> *objects)
{
    TokenBoundedDevice bounded(device);
    QXmlStreamReader reader(&bounded);
    reader.setNamespaceProcessing(false);
    int depth = 0;
    while (!reader.atEnd()) {
        const QXmlStreamReader::TokenType token = reader.readNext();
        bounded.tokenEnds();
        if (token == QXmlStreamReader::StartElement && !startElement(reader, depth++, defaults, objects))
            return false;
        if (token == QXmlStreamReader::EndElement)
            --depth;
        if (token == QXmlStreamReader::Characters && !reader.isWhitespace())
            return false;
    }
    return !reader.hasError();
}

void writeXml(const QList<ACalibrationData> &objects, Output *output)
{
    *output << "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<calibrations>\n";
    for (const ACalibrationData &object : objects) {
        const bool fits = xmlText(object.label()) == object.label();
        *output << (fits ? "  <calibration label=\"" : "  <calibration escapedLabel=\"")
                << escaped(fits ? object.label() : escapedLabel(object.label())) << "\" type=\""
                << typeWord(object.type()) << "\">\n";
        for (auto entry = object.level().begin(); entry != object.level().end(); ++entry) {
            *output << "    <level frequency=\"" << frequencyText(entry.key()) << "\" gain=\""
                    << gainText(entry.value()) << "\"/>\n";
        }
        *output << "  </calibration>\n";
    }
    *output << "</calibrations>\n";
}

} // namespace CalibrationFile
