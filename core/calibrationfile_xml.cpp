#include "core/calibrationfile.h"

#include "core/boundedxmlreader.h"
#include "core/xmldocument.h"

namespace {

constexpr char kRoot[] = "calibrations";
constexpr char kObject[] = "calibration";
constexpr char kEntry[] = "level";

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
        return compactCopy(m_attributes.value(QLatin1String(name)));
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

// Null, or what was expected.
const char *startElement(const BoundedXmlReader &reader, const CalibrationFile::Defaults &defaults,
                         QList<ACalibrationData> *objects)
{
    const Attributes attributes(reader.xml());
    switch (reader.depth()) {
    case 1:
        return reader.isNamed(kRoot) && attributes.allTaken()
                   ? nullptr
                   : QT_TRANSLATE_NOOP("CoreText", "expected <calibrations> without attributes");
    case 2:
        return reader.isNamed(kObject) && startObject(attributes, defaults, objects)
                   ? nullptr
                   : QT_TRANSLATE_NOOP("CoreText", "expected <calibration> with a label and a known type");
    case 3:
        return reader.isNamed(kEntry) && readEntry(attributes, &objects->last())
                   ? nullptr
                   : QT_TRANSLATE_NOOP("CoreText", "expected <level> with a frequency and a gain");
    default:
        return QT_TRANSLATE_NOOP("CoreText", "expected no element inside <level>");
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

bool readXml(QIODevice *device, const Defaults &defaults, QList<ACalibrationData> *objects, Problem *problem)
{
    BoundedXmlReader reader(device);
    while (reader.readNext()) {
        const char *expected = nullptr;
        if (reader.xml().isStartElement())
            expected = startElement(reader, defaults, objects);
        else if (reader.xml().isCharacters() && !reader.xml().isWhitespace())
            expected = QT_TRANSLATE_NOOP("CoreText", "expected no text between the elements");
        if (expected) {
            *problem = CalibrationFile::translatedProblem(expected, reader.xml().lineNumber());
            return false;
        }
    }
    if (reader.xml().hasError())
        *problem = {reader.xml().errorString(), reader.xml().lineNumber()};
    return !reader.xml().hasError();
}

void writeXml(const QList<ACalibrationData> &objects, Output *output)
{
    *output << "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<calibrations>\n";
    for (const ACalibrationData &object : objects) {
        const bool fits = isXmlText(object.label());
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
