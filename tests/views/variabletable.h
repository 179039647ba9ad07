#pragma once

#include "views/aveldoranvariabledelegate.h"

#include <QtGui/QStandardItemModel>

// A table of device settings with a row for each name that it is given, and values beside them.
class VariableTable : public QStandardItemModel
{
    Q_OBJECT

public:
    explicit VariableTable(const QVariant &name, const QVariant &value = {})
        : QStandardItemModel(1, 3)
    {
        setData(nameCell(), name);
        setData(valueCell(), value);
    }

    QModelIndex nameCell() const { return index(0, 0); }
    QModelIndex valueCell() const { return index(0, 1); }
    QModelIndex otherCell() const { return index(0, 2); }
    QVariant name() const { return nameCell().data(Qt::EditRole); }
    QVariant value() const { return valueCell().data(Qt::EditRole); }
};

inline QByteArray nameOf(const device_variable_desc *desc)
{
    return desc ? QByteArray(desc->name) : QByteArray();
}
