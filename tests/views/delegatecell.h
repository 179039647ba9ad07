#pragma once

#include <QtCore/QLocale>
#include <QtGui/QStandardItemModel>

// What the tests of delegates share: a model of one cell, and a default locale for as long as it is wanted.

struct Cell
{
    explicit Cell(const QVariant &value)
    {
        model.setItem(0, 0, new QStandardItem);
        model.setData(index(), value, Qt::EditRole);
    }
    QModelIndex index() const { return model.index(0, 0); }
    QVariant value() const { return index().data(Qt::EditRole); }

    QStandardItemModel model;
};

struct DefaultLocale
{
    explicit DefaultLocale(const QLocale &locale) { QLocale::setDefault(locale); }
    ~DefaultLocale() { QLocale::setDefault(m_before); }
    DefaultLocale(const DefaultLocale &) = delete;
    DefaultLocale &operator=(const DefaultLocale &) = delete;

private:
    QLocale m_before;
};
