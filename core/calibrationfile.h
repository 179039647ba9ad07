#pragma once

#include "core/acalibrationdata.h"

#include <QtCore/QByteArray>
#include <QtCore/QSaveFile>

class QIODevice;

// The three forms of a calibration file, described in docs/formats.md. Private to core/.

// Both do what ACalibrationData::readAll and saveAll say. *objects is empty at the call, and undefined after a failure,
// when *errorText is set.
bool readCalibrationFile(const QString &fileName, ACalibrationData::CalibrationType type,
                         QList<ACalibrationData> *objects, QString *errorText);
bool writeCalibrationFile(const QString &fileName, const QList<ACalibrationData> &objects);

namespace CalibrationFile {

// What is read as one piece (a line, a table row, a tag) can't be longer, so that no file exhausts a string.
constexpr qint64 kMaxPieceBytes = qint64(1) << 28;
// A label up to here can be read back in whatever way it is written.
constexpr int kMaxLabelLength = 1 << 24;

// What an object gets whose file doesn't say.
struct Defaults
{
    ACalibrationData::CalibrationType type = ACalibrationData::AnyType;
    QString label;
};

// Why a file is no calibration file.
struct Problem
{
    QString text;
    qint64 line = 0; // 0: the file as a whole
};

Problem translatedProblem(const char *text, qint64 line = 0);

// A text file, byte by byte, without the byte order mark that it may begin with. Ends at the end of the file and at the
// first thing that no text file holds.
class ByteSource
{
public:
    static constexpr int kEnd = -1;

    explicit ByteSource(QIODevice *device);
    int get() { return m_at < m_block.size() || fill() ? static_cast<unsigned char>(m_block.at(m_at++)) : kEnd; }
    int peek() { return m_at < m_block.size() || fill() ? static_cast<unsigned char>(m_block.at(m_at)) : kEnd; }
    bool failed() const { return m_failed; } // a read error, a byte 0, or a piece that is too long
    void fail();

    // What is read from here on is a line, or a row of several. Its number, from 1, is found by reading up to it again.
    void startPiece() { m_pieceAt = m_blockAt + m_at; }
    qint64 lineOfPiece() const;

private:
    bool fill();

    QIODevice *m_device;
    qint64 m_begin = 0; // of the text, on the device
    QByteArray m_block;
    qint64 m_blockAt = 0;
    int m_at = 0;
    qint64 m_pieceAt = 0;
    bool m_failed = false;
};

// The next line without its end (LF, CR or both) and without blanks at its ends. False at the end of the source.
bool readLine(ByteSource *source, qint64 maxBytes, QByteArray *line);
bool isBlankOrComment(const QByteArray &line); // a comment begins with "#"

// The readers of the three forms. False with *problem set, or left as it is for what no text file holds. That of XML
// gets the whole device, the other two the first line that is neither blank nor a comment, and what follows it.
bool readXml(QIODevice *device, const Defaults &defaults, QList<ACalibrationData> *objects, Problem *problem);
bool isFirstLineOfSections(const QByteArray &line);
bool readSections(const QByteArray &firstLine, ByteSource *source, const Defaults &defaults,
                  QList<ACalibrationData> *objects, Problem *problem);
bool readTable(const QByteArray &firstLine, ByteSource *source, const Defaults &defaults,
               QList<ACalibrationData> *objects, Problem *problem);

// Replaces a file in one step, like writeFileAtomically, without holding all of its content.
class Output
{
public:
    explicit Output(const QString &fileName);
    Output &operator<<(const QByteArray &bytes);
    Output &operator<<(const char *text);
    bool commit();

private:
    void flushBlock();
    void flush();

    QSaveFile m_file;
    QByteArray m_pending;
    bool m_ok;
};

void writeXml(const QList<ACalibrationData> &objects, Output *output);
void writeSections(const QList<ACalibrationData> &objects, Output *output);
void writeTable(const QList<ACalibrationData> &objects, Output *output);

// The texts of single values. Each reader takes what the writer next to it gives, and what a person may write.

// Hertz in plain decimal digits, as many as the value has.
QByteArray frequencyText(const AFrequency &frequency);
// `unit` is for a text without one.
bool readFrequency(const QByteArray &text, AFrequency::Unit unit, AFrequency *frequency);

QByteArray gainText(double gain);
bool readGain(const QByteArray &text, double *gain); // may be followed by "dB" or "dBi"; "," is a decimal sign too

QByteArray typeWord(ACalibrationData::CalibrationType type);
// A word in any case, or the type's number; an empty text leaves *type as it is.
bool readType(const QByteArray &text, ACalibrationData::CalibrationType *type);

bool readUtf8(const QByteArray &bytes, QString *text); // false for what is not UTF-8

// The notation for labels that can't stand in a file as they are: \\ \" \n \r \t, and \u with four hex digits for a
// UTF-16 unit.
QString escapedLabel(const QString &label);
bool readEscapedLabel(const QString &text, QString *label);

} // namespace CalibrationFile
