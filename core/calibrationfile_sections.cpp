#include "core/calibrationfile.h"

#include "core/xmldocument.h"

namespace {

constexpr char kHeader[] = "caldata 1"; // with the version of the form

// "[type] label", the label as it stands or in quotes with escapes.
bool readSectionLine(const QByteArray &line, const CalibrationFile::Defaults &defaults, ACalibrationData *object)
{
    const int close = line.indexOf(']');
    ACalibrationData::CalibrationType type = defaults.type;
    if (close < 0 || !CalibrationFile::readType(line.mid(1, close - 1), &type))
        return false;
    QString label;
    if (!CalibrationFile::readUtf8(line.mid(close + 1).trimmed(), &label))
        return false;
    if (label.startsWith(QLatin1Char('"'))) {
        const bool isClosed = label.size() > 1 && label.endsWith(QLatin1Char('"'));
        const QString inner = label.mid(1, label.size() - 2);
        if (!isClosed || !CalibrationFile::readEscapedLabel(inner, &label))
            return false;
    }
    *object = ACalibrationData(label, type);
    return true;
}

// "frequency gain", with units and a comment after them if wanted.
bool readEntryLine(const QByteArray &line, ACalibrationData *object)
{
    const int comment = line.indexOf('#');
    const QByteArray text = line.left(comment < 0 ? line.size() : comment).simplified();
    const bool hasUnit = text.endsWith(" dB") || text.endsWith(" dBi");
    const int blankBeforeGain = text.lastIndexOf(' ', hasUnit ? text.lastIndexOf(' ') - 1 : -1);
    AFrequency frequency;
    double gain = 0.0;
    if (blankBeforeGain < 0 ||
        !CalibrationFile::readFrequency(text.left(blankBeforeGain), AFrequency::Hz, &frequency) ||
        !CalibrationFile::readGain(text.mid(blankBeforeGain), &gain))
        return false;
    object->addLevel(frequency, gain);
    return true;
}

bool canStandAsItIs(const QString &label)
{
    return label.trimmed() == label && !label.startsWith(QLatin1Char('"')) && isXmlText(label) &&
           !label.contains(QLatin1Char('\n')) && !label.contains(QLatin1Char('\r'));
}

} // namespace

namespace CalibrationFile {

bool isFirstLineOfSections(const QByteArray &line)
{
    return line.startsWith('[') || line.simplified() == kHeader;
}

bool readSections(const QByteArray &firstLine, ByteSource *source, const Defaults &defaults,
                  QList<ACalibrationData> *objects, Problem *problem)
{
    const auto expected = [source, problem](const char *text) {
        *problem = CalibrationFile::translatedProblem(text, source->lineOfPiece());
        return false;
    };
    QByteArray line = firstLine;
    bool hasLine = line.startsWith('[') || readLine(source, kMaxPieceBytes, &line);
    for (; hasLine; hasLine = readLine(source, kMaxPieceBytes, &line)) {
        if (isBlankOrComment(line))
            continue;
        if (line.startsWith('[')) {
            ACalibrationData object;
            if (!readSectionLine(line, defaults, &object))
                return expected(QT_TRANSLATE_NOOP("CoreText", "expected a known type in brackets and a label"));
            objects->append(object);
        } else if (objects->isEmpty()) {
            return expected(QT_TRANSLATE_NOOP("CoreText", "expected '[type] label' before the first entry"));
        } else if (!readEntryLine(line, &objects->last())) {
            return expected(QT_TRANSLATE_NOOP("CoreText", "expected a frequency and a gain"));
        }
    }
    return true;
}

void writeSections(const QList<ACalibrationData> &objects, Output *output)
{
    *output << kHeader << "\n";
    for (const ACalibrationData &object : objects) {
        *output << "\n[" << typeWord(object.type()) << "] ";
        if (canStandAsItIs(object.label()))
            *output << object.label().toUtf8() << "\n";
        else
            *output << "\"" << escapedLabel(object.label()).toUtf8() << "\"\n";
        for (auto entry = object.level().begin(); entry != object.level().end(); ++entry)
            *output << frequencyText(entry.key()) << " Hz  " << gainText(entry.value()) << "\n";
    }
}

} // namespace CalibrationFile
