#pragma once

#include <QtCore/QAbstractItemModel>
#include <QtCore/QStringList>

// What a table of any model shows, as texts.
namespace modeltexts {

inline QStringList headerTexts(const QAbstractItemModel &model)
{
    QStringList texts;
    for (int column = 0; column < model.columnCount(); ++column)
        texts << model.headerData(column, Qt::Horizontal).toString();
    return texts;
}

inline QStringList rowTexts(const QAbstractItemModel &model, int row, const QModelIndex &parent = {})
{
    QStringList texts;
    for (int column = 0; column < model.columnCount(parent); ++column)
        texts << model.index(row, column, parent).data().toString();
    return texts;
}

} // namespace modeltexts
