#include "apps/aveldoran/texttable.h"

QString textTable(const QVector<QStringList> &rows, const QVector<TableColumn> &columns)
{
    QVector<int> widths(columns.size());
    for (const QStringList &row : rows) {
        for (int column = 0; column < row.size(); ++column)
            widths[column] = qMax(widths[column], row.at(column).size());
    }
    QString text;
    for (const QStringList &row : rows) {
        QString line;
        for (int column = 0; column < row.size(); ++column) {
            const bool isNumber = columns.at(column).content == TableColumn::Number;
            line +=
                isNumber ? row.at(column).rightJustified(widths[column]) : row.at(column).leftJustified(widths[column]);
            line += QString(columns.at(column).gap, QLatin1Char(' '));
        }
        while (line.endsWith(QLatin1Char(' ')))
            line.chop(1);
        text += line + QLatin1Char('\n');
    }
    return text;
}
