#include "core/calibrationfile.h"

#include "core/atomicfile.h"
#include "core/coretext.h"
#include "core/regularfile.h"
#include "core/xmldocument.h"

#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QLocale>
#include <QtCore/QTextCodec>

#include <algorithm>
#include <cmath>

namespace {

using CalibrationFile::ByteSource;

constexpr qint64 kBlockBytes = 1 << 16;
constexpr qint64 kMaxFirstLineBytes = 1 << 16;
constexpr char kByteOrderMark[] = "\xef\xbb\xbf";
constexpr int kByteOrderMarkBytes = 3;

// By what stands first; an XML file in UTF-16 begins with a byte order mark of its own.
bool looksLikeXml(QIODevice *device)
{
    QByteArray head = device->peek(kBlockBytes);
    if (head.startsWith(kByteOrderMark))
        head.remove(0, kByteOrderMarkBytes);
    return head.startsWith("\xff\xfe") || head.startsWith("\xfe\xff") || head.trimmed().startsWith('<');
}

bool readText(QIODevice *device, const CalibrationFile::Defaults &defaults, QList<ACalibrationData> *objects,
              CalibrationFile::Problem *problem)
{
    *problem = CalibrationFile::translatedProblem(QT_TRANSLATE_NOOP("CoreText", "expected a text file"));
    ByteSource source(device);
    QByteArray line;
    do {
        if (!readLine(&source, kMaxFirstLineBytes, &line)) {
            if (!source.failed())
                *problem =
                    CalibrationFile::translatedProblem(QT_TRANSLATE_NOOP("CoreText", "expected calibration objects"));
            return false;
        }
    } while (CalibrationFile::isBlankOrComment(line));
    const bool ok = CalibrationFile::isFirstLineOfSections(line)
                        ? CalibrationFile::readSections(line, &source, defaults, objects, problem)
                        : CalibrationFile::readTable(line, &source, defaults, objects, problem);
    return ok && !source.failed();
}

bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

// [+-] digits, one "." or "," among them, [eE[+-]digits]: what a frequency text may have before its unit.
bool isPlainNumber(const QByteArray &text)
{
    const char *at = text.begin();
    const char *const end = text.end();
    const auto skipSign = [&] { at += at != end && (*at == '+' || *at == '-') ? 1 : 0; };
    const auto skipDigits = [&] {
        const char *const begin = at;
        at = std::find_if_not(at, end, isDigit);
        return at - begin;
    };
    skipSign();
    auto digits = skipDigits();
    if (at != end && (*at == '.' || *at == ',')) {
        ++at;
        digits += skipDigits();
    }
    if (digits == 0)
        return false;
    if (at != end && (*at == 'e' || *at == 'E')) {
        ++at;
        skipSign();
        if (skipDigits() == 0)
            return false;
    }
    return at == end;
}

struct TypeWord
{
    ACalibrationData::CalibrationType type;
    const char *word;
};

constexpr TypeWord kTypeWords[] = {
    {ACalibrationData::Preamplifier, "preamplifier"},
    {ACalibrationData::Antenna, "antenna"},
    {ACalibrationData::Cable, "cable"},
    {ACalibrationData::Attenuator, "attenuator"},
    {ACalibrationData::AnyType, "any"},
};

struct Escape
{
    char letter;
    char character;
};

constexpr Escape kEscapes[] = {{'\\', '\\'}, {'"', '"'}, {'n', '\n'}, {'r', '\r'}, {'t', '\t'}};
constexpr int kHexDigits = 4; // behind \u

} // namespace

bool readCalibrationFile(const QString &fileName, ACalibrationData::CalibrationType type,
                         QList<ACalibrationData> *objects, QString *errorText)
{
    QFile file(fileName);
    QString reason;
    if (!openRegularFile(&file, &reason)) {
        *errorText = CoreText::tr("Could not read file '%1': %2").arg(fileName, reason);
        return false;
    }
    const CalibrationFile::Defaults defaults = {type, QFileInfo(fileName).completeBaseName()};
    CalibrationFile::Problem problem;
    const bool ok = looksLikeXml(&file) ? CalibrationFile::readXml(&file, defaults, objects, &problem)
                                        : readText(&file, defaults, objects, &problem);
    if (ok)
        return true;
    *errorText = problem.line > 0
                     ? CoreText::tr("Could not read calibration file '%1': line %2: %3")
                           .arg(fileName, QString::number(problem.line), problem.text)
                     : CoreText::tr("Could not read calibration file '%1': %2").arg(fileName, problem.text);
    return false;
}

bool writeCalibrationFile(const QString &fileName, const QList<ACalibrationData> &objects)
{
    const auto isTooLong = [](const ACalibrationData &object) {
        return object.label().size() > CalibrationFile::kMaxLabelLength;
    };
    if (std::any_of(objects.begin(), objects.end(), isTooLong))
        return false;

    const auto hasSuffix = [&](const char *suffix) {
        return fileName.endsWith(QLatin1String(suffix), Qt::CaseInsensitive);
    };
    CalibrationFile::Output output(fileName);
    if (hasSuffix(".caldata"))
        CalibrationFile::writeSections(objects, &output);
    else if (hasSuffix(".offsets"))
        CalibrationFile::writeTable(objects, &output);
    else
        CalibrationFile::writeXml(objects, &output);
    return output.commit();
}

namespace CalibrationFile {

Problem translatedProblem(const char *text, qint64 line)
{
    return {CoreText::tr(text), line};
}

ByteSource::ByteSource(QIODevice *device)
    : m_device(device)
{
    if (m_device->peek(kByteOrderMarkBytes) == kByteOrderMark)
        m_device->skip(kByteOrderMarkBytes);
    m_begin = m_device->pos();
}

qint64 ByteSource::lineOfPiece() const
{
    qint64 line = 1;
    char last = '\0';
    QByteArray block;
    m_device->seek(m_begin);
    for (qint64 left = m_pieceAt; left > 0; left -= block.size()) {
        block = m_device->read(std::min(left, kBlockBytes));
        if (block.isEmpty())
            break;
        for (const char c : qAsConst(block)) {
            line += c == '\r' || (c == '\n' && last != '\r') ? 1 : 0;
            last = c;
        }
    }
    return line;
}

void ByteSource::fail()
{
    m_failed = true;
    m_block.clear();
    m_at = 0;
}

bool ByteSource::fill()
{
    if (m_failed)
        return false;
    m_blockAt += m_block.size();
    m_block.resize(kBlockBytes);
    m_at = 0;
    const qint64 count = m_device->read(m_block.data(), kBlockBytes);
    m_block.resize(static_cast<int>(std::max<qint64>(count, 0)));
    if (count < 0 || m_block.contains('\0'))
        fail();
    return !m_block.isEmpty();
}

bool readLine(ByteSource *source, qint64 maxBytes, QByteArray *line)
{
    line->clear();
    source->startPiece();
    int c = source->get();
    if (c == ByteSource::kEnd)
        return false;
    for (; c != '\n' && c != '\r' && c != ByteSource::kEnd; c = source->get()) {
        if (line->size() == maxBytes) {
            source->fail();
            return false;
        }
        line->append(static_cast<char>(c));
    }
    if (c == '\r' && source->peek() == '\n')
        source->get();
    *line = line->trimmed();
    return !source->failed();
}

bool isBlankOrComment(const QByteArray &line)
{
    return line.isEmpty() || line.startsWith('#');
}

Output::Output(const QString &fileName)
    : m_file(fileName)
    , m_ok(isReplaceable(fileName) && m_file.open(QIODevice::WriteOnly))
{}

Output &Output::operator<<(const QByteArray &bytes)
{
    m_pending += bytes;
    flushBlock();
    return *this;
}

Output &Output::operator<<(const char *text)
{
    m_pending += text;
    flushBlock();
    return *this;
}

bool Output::commit()
{
    flush();
    m_ok = m_ok && m_file.flush();
    if (!m_ok)
        m_file.cancelWriting();
    return m_ok && m_file.commit();
}

void Output::flushBlock()
{
    if (m_pending.size() >= kBlockBytes)
        flush();
}

void Output::flush()
{
    // write() may take less than it was given without an error, and commit() would then keep the truncated file.
    m_ok = m_ok && m_file.write(m_pending) == m_pending.size();
    m_pending.clear();
}

QByteArray frequencyText(const AFrequency &frequency)
{
    const long long hertz = frequency.intValue(AFrequency::Hz);
    const AFrequency whole = AFrequency::fromValue(hertz, AFrequency::Hz);
    const double fraction = (frequency - whole).floatValue(AFrequency::Hz);
    QByteArray text = QByteArray::number(hertz);
    if (fraction != 0.0) {
        if (hertz == 0 && fraction < 0.0)
            text.prepend('-');
        text += QByteArray::number(std::fabs(fraction), 'f', QLocale::FloatingPointShortest).mid(1); // without its "0"
    }
    return text;
}

bool readFrequency(const QByteArray &text, AFrequency::Unit unit, AFrequency *frequency)
{
    constexpr double kRange = 9223372036854775808.0; // 2^63
    const QByteArray whole = text.trimmed();
    const AFrequency::Unit ownUnit = AFrequency::unitForSuffix(whole.constData());
    const AFrequency::Unit usedUnit = ownUnit == AFrequency::NoUnit ? unit : ownUnit;
    const int suffixSize = static_cast<int>(qstrlen(AFrequency::suffixForUnit(ownUnit)));
    QByteArray number = whole.left(whole.size() - suffixSize).trimmed();
    if (!isPlainNumber(number))
        return false;
    *frequency = AFrequency((number + ' ' + AFrequency::suffixForUnit(usedUnit)).constData());
    AFrequency oneOfUnit;
    oneOfUnit.setValue(1, usedUnit);
    // A frequency stays at the edge of its range, where two different ones would become one entry.
    const double hertz = number.replace(',', '.').toDouble() * oneOfUnit.floatValue(AFrequency::Hz);
    return std::fabs(hertz) <= kRange;
}

QByteArray gainText(double gain)
{
    if (gain == 0.0 && std::signbit(gain))
        return QByteArrayLiteral("-0");
    return QByteArray::number(gain, 'g', QLocale::FloatingPointShortest);
}

bool readGain(const QByteArray &text, double *gain)
{
    QByteArray number = text.trimmed();
    for (const char *unit : {"dBi", "dB"}) {
        if (number.endsWith(unit)) {
            number.chop(static_cast<int>(qstrlen(unit)));
            break;
        }
    }
    bool ok = false;
    *gain = number.replace(',', '.').toDouble(&ok);
    return ok;
}

QByteArray typeWord(ACalibrationData::CalibrationType type)
{
    const auto *found = std::find_if(std::begin(kTypeWords), std::end(kTypeWords),
                                     [type](const TypeWord &entry) { return entry.type == type; });
    return found != std::end(kTypeWords) ? found->word : "any";
}

bool readType(const QByteArray &text, ACalibrationData::CalibrationType *type)
{
    const QByteArray word = text.trimmed().toLower();
    if (word.isEmpty())
        return true;
    const auto *found = std::find_if(std::begin(kTypeWords), std::end(kTypeWords), [&](const TypeWord &entry) {
        return word == entry.word || word == QByteArray::number(static_cast<int>(entry.type));
    });
    if (found == std::end(kTypeWords))
        return false;
    *type = found->type;
    return true;
}

bool readUtf8(const QByteArray &bytes, QString *text)
{
    constexpr int kUtf8Mib = 106;
    // QString::fromUtf8 replaces what is no UTF-8, and drops a byte order mark that is part of a label.
    QTextCodec::ConverterState state(QTextCodec::IgnoreHeader);
    *text = QTextCodec::codecForMib(kUtf8Mib)->toUnicode(bytes.constData(), bytes.size(), &state);
    return state.invalidChars == 0 && state.remainingChars == 0;
}

QString escapedLabel(const QString &label)
{
    constexpr int kHex = 16;
    QString text;
    for (int i = 0; i < label.size(); ++i) {
        const QChar c = label.at(i);
        const auto *escape = std::find_if(std::begin(kEscapes), std::end(kEscapes),
                                          [c](const Escape &entry) { return c == QLatin1Char(entry.character); });
        if (escape != std::end(kEscapes)) {
            text += QLatin1Char('\\');
            text += QLatin1Char(escape->letter);
        } else if (c.isHighSurrogate() && i + 1 < label.size() && label.at(i + 1).isLowSurrogate()) {
            text += c;
            text += label.at(++i);
        } else if (!isXmlText(QString(c))) {
            text += QLatin1String("\\u") + QString::number(c.unicode(), kHex).rightJustified(kHexDigits, u'0');
        } else {
            text += c;
        }
    }
    return text;
}

bool readEscapedLabel(const QString &text, QString *label)
{
    constexpr int kHex = 16;
    label->clear();
    for (int i = 0; i < text.size(); ++i) {
        if (text.at(i) != QLatin1Char('\\')) {
            *label += text.at(i);
            continue;
        }
        if (++i == text.size())
            return false;
        const QChar letter = text.at(i);
        const auto *escape = std::find_if(std::begin(kEscapes), std::end(kEscapes), [letter](const Escape &entry) {
            return letter == QLatin1Char(entry.letter);
        });
        if (escape != std::end(kEscapes)) {
            *label += QLatin1Char(escape->character);
            continue;
        }
        const QByteArray digits = text.mid(i + 1, kHexDigits).toLatin1();
        const bool areHexDigits = digits.size() == kHexDigits && std::all_of(digits.begin(), digits.end(), [](char c) {
                                      return isDigit(c) || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
                                  });
        if (letter != QLatin1Char('u') || !areHexDigits)
            return false;
        *label += QChar(digits.toUShort(nullptr, kHex));
        i += kHexDigits;
    }
    return true;
}

} // namespace CalibrationFile
