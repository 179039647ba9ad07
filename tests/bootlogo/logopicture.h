#pragma once

#include <bootlogo/abootlogodata.h>

#include <QtCore/QStringList>

#include <algorithm>

// Pictures as rows of text with the topmost first, in which '#' is a lit pixel and '.' a clear one.
namespace logopicture {

inline QStringList rowsOf(const ABootlogoData &logo)
{
    QStringList rows;
    for (int row = logo.rows() - 1; row >= 0; --row) {
        QString text;
        for (int col = 0; col < logo.cols(); ++col)
            text += QLatin1Char(logo.pixel(col, row) ? '#' : '.');
        rows.append(text);
    }
    return rows;
}

// As many rows and columns as the bounds say. A point outside of them, or one that comes twice, is an "!".
inline QStringList rowsOf(const LetterBits &bits)
{
    QStringList rows;
    for (int row = 0; row < bits.bounds.height(); ++row)
        rows.append(QString(std::max(0, bits.bounds.width()), QLatin1Char('.')));
    for (const QPoint &point : bits.points) {
        const int row = rows.size() - 1 - point.y();
        if (row < 0 || row >= rows.size() || point.x() < 0 || point.x() >= rows.at(row).size())
            return {QStringLiteral("!")};
        QCharRef pixel = rows[row][point.x()];
        pixel = QLatin1Char(pixel == QLatin1Char('#') ? '!' : '#');
    }
    return rows;
}

// Makes the picture as large as the rows, and equal to them.
inline void draw(ABootlogoData *logo, const QStringList &rows)
{
    logo->resize(rows.isEmpty() ? 0 : rows.constFirst().size(), rows.size());
    for (int row = 0; row < logo->rows(); ++row) {
        for (int col = 0; col < logo->cols(); ++col)
            logo->setPixel(col, row, rows.at(rows.size() - 1 - row).at(col) == QLatin1Char('#'));
    }
}

} // namespace logopicture
