#include "bootlogo/abootlogodata.h"

#include <QtGui/QBitmap>
#include <QtGui/QColor>
#include <QtGui/QImage>

#include <algorithm>
#include <iterator>
#include <limits>

// The picture. Constructor and destructor are in abootlogodata_composition.cpp, with the layout that the first of them
// writes.

namespace {

constexpr int kGlyphRows = 5;
constexpr int kGlyphStride = 5;

// The most that a QBitArray can count.
constexpr int kMaxBytes = std::numeric_limits<int>::max() / 8 - 1;
constexpr int kMaxBits = kMaxBytes * 8;

constexpr int kMaxTextLength = 1 << 24;

constexpr int columnsOf(const FontLetter *letter)
{
    return letter ? std::clamp<int>(letter->width, 0, kGlyphStride) : 0;
}

// `row` counts upwards.
constexpr bool isLit(const FontLetter &letter, int column, int row)
{
    return letter.pixels[(kGlyphRows - 1 - row) * kGlyphStride + column] > 0;
}

QRect glyphBounds(int right)
{
    return {QPoint(0, 0), QPoint(right, kGlyphRows - 1)};
}

void appendPoints(const FontLetter *letter, int x, QList<QPoint> *points)
{
    const int columns = columnsOf(letter);
    for (int y = kGlyphRows - 1; y >= 0; --y) {
        for (int column = 0; column < columns; ++column) {
            if (isLit(*letter, column, y))
                points->append(QPoint(x + column, y));
        }
    }
}

} // namespace

QByteArray ABootlogoData::toBitstream() const
{
    return {m_bits.bits(), (m_bits.size() + 7) / 8};
}

bool ABootlogoData::loadBitstream(const QByteArray &data)
{
    m_bits = QBitArray::fromBits(data.constData(), qsizetype{8} * std::min(data.size(), kMaxBytes));
    return true;
}

// Pixel by pixel: a QPainter draws nothing right of column 32767.
QBitmap ABootlogoData::toBitmap() const
{
    QImage image(m_cols, m_rows, QImage::Format_MonoLSB);
    if (image.isNull())
        return {};
    image.setColorTable({QColor(Qt::color0).rgb(), QColor(Qt::color1).rgb()});
    for (int row = 0; row < m_rows; ++row) {
        uchar *line = image.scanLine(m_rows - 1 - row);
        std::fill_n(line, image.bytesPerLine(), uchar{0});
        for (int col = 0; col < m_cols; ++col) {
            if (pixel(col, row))
                line[col / 8] |= static_cast<uchar>(1U << (col % 8U));
        }
    }
    return QBitmap::fromImage(image);
}

bool ABootlogoData::loadBitmap(const QBitmap &bitmap)
{
    QImage image = bitmap.toImage();
    if (!image.isNull())
        image = image.scaled(m_cols, m_rows, Qt::IgnoreAspectRatio, Qt::FastTransformation);
    clear();
    for (int x = 0; x < image.width(); ++x) {
        for (int y = 0; y < image.height(); ++y)
            setPixel(x, y, image.pixelIndex(x, image.height() - 1 - y) != 0);
    }
    return true;
}

const FontLetter *ABootlogoData::findLetter(QChar character)
{
    const ushort code = character.toUpper().unicode();
    const auto *letter = std::find_if(std::begin(font_alphabet), std::end(font_alphabet),
                                      [code](const FontLetter &known) { return known.key == code; });
    return letter != std::end(font_alphabet) ? letter : nullptr;
}

LetterBits ABootlogoData::letterToBits(const FontLetter *letter)
{
    LetterBits result;
    result.bounds = glyphBounds(columnsOf(letter) - 1);
    appendPoints(letter, 0, &result.points);
    return result;
}

LetterBits ABootlogoData::textToBits(const QString &text)
{
    LetterBits result;
    const int length = std::min(text.size(), kMaxTextLength);
    int right = -1;
    for (int i = 0; i < length; ++i) {
        const FontLetter *letter = findLetter(text.at(i));
        appendPoints(letter, right + 1, &result.points);
        right += columnsOf(letter) + (i < length - 1 ? 1 : 0);
    }
    result.bounds = glyphBounds(right);
    return result;
}

// What textToBits gives, painted by column without making the points. Reads no further than the picture is wide.
void ABootlogoData::writeText(int col, int row, const QString &text)
{
    qint64 atCol = col;
    for (int i = 0; i < text.size() && atCol < m_cols; ++i) {
        const FontLetter *letter = findLetter(text.at(i));
        const int glyphColumns = columnsOf(letter);
        const int columns = glyphColumns + (i < text.size() - 1 ? 1 : 0);
        for (int column = 0; column < columns; ++column, ++atCol) {
            if (atCol < 0 || atCol >= m_cols)
                continue;
            for (int y = 0; y < kGlyphRows; ++y) {
                const qint64 atRow = qint64{row} + y;
                if (atRow >= 0 && atRow < m_rows) {
                    const bool lit = column < glyphColumns && isLit(*letter, column, y);
                    setPixel(static_cast<int>(atCol), static_cast<int>(atRow), lit);
                }
            }
        }
    }
}

bool ABootlogoData::pixel(int col, int row) const
{
    if (col < 0 || col >= m_cols || row < 0 || row >= m_rows)
        return false;
    const int bit = row * m_cols + col;
    return bit < m_bits.size() && m_bits.testBit(bit);
}

void ABootlogoData::setPixel(int col, int row, bool lit)
{
    if (col < 0 || col >= m_cols || row < 0 || row >= m_rows)
        return;
    const int bit = row * m_cols + col;
    if (bit < m_bits.size())
        m_bits.setBit(bit, lit);
    Q_EMIT pixelChanged(col, row);
}

void ABootlogoData::clear()
{
    m_bits = QBitArray(m_cols * m_rows);
    Q_EMIT imageReset();
}

void ABootlogoData::resize(int cols, int rows)
{
    if (cols == m_cols && rows == m_rows)
        return;
    if (cols < 0 || rows < 0 || qint64{cols} * rows > kMaxBits) {
        qWarning("A boot logo can't have %d by %d pixels", cols, rows);
        return;
    }
    m_bits = QBitArray(cols * rows);
    m_cols = cols;
    m_rows = rows;
    Q_EMIT imageResized(cols, rows);
    Q_EMIT imageReset();
}
