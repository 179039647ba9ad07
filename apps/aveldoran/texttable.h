#pragma once

#include <QtCore/QString>
#include <QtCore/QStringList>
#include <QtCore/QVector>

struct TableColumn
{
    enum Content
    {
        Word,   // stands to the left
        Number, // to the right
    };
    Content content;
    int gap; // blanks before the next column
};

// Rows of one cell for each column as lines, each column as wide as its widest cell, no blanks at the end of a line.
QString textTable(const QVector<QStringList> &rows, const QVector<TableColumn> &columns);
