#pragma once

#include "core/atriggeraction.h"
#include "core/aveldoranexport.h"

#include <QtCore/QAbstractListModel>
#include <QtCore/QList>

// A table to edit a list of trigger actions in, one row an action. The list belongs to someone else, who deletes it
// only after setTriggerActions() with another one or null; what changes in it behind the model's back shows when it is
// set anew.
//
// Four habits differ from other models: every index has as many rows and columns as the table, flags() calls every
// index editable, the invalid one too, insertRows() appends whatever the row, and removeRows() announces rows that
// don't exist, too. QAbstractItemModelTester objects to the first, the second and the last.
class AVELDORAN_DATA_EXPORT ATriggerActionListModel : public QAbstractListModel
{
    Q_OBJECT

public:
    // Both hold texts.
    enum Columns
    {
        ColumnType = 0, // one of ATriggerAction::actionNames()
        ColumnText = 1,
        ColumnCount = 2
    };

    explicit ATriggerActionListModel(QObject *parent = nullptr);
    ~ATriggerActionListModel() override;

    // Null, as at first: the table is empty and can't be changed. Resets the model, also for the same list.
    void setTriggerActions(QList<ATriggerAction> *actions);
    QList<ATriggerAction> *triggerActions() const { return m_triggerActions; }

    int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    int columnCount(const QModelIndex &parent = QModelIndex()) const override;

    // Of a type without a name: invalid.
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;

    // False for a role other than Qt::EditRole, and for an index that is not of this model or of a row that the list no
    // longer has. All else is true and signalled, even if nothing has changed, as for a text that names no type.
    bool setData(const QModelIndex &index, const QVariant &value, int role = Qt::EditRole) override;

    // Of the two columns; any other is "???".
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;

    // Appends `count` actions that do nothing. Observers are told of rows at the top, as the list has no others,
    // whatever the parent: proxies crash when rows come below a row. False without a list, and for more than a list can
    // hold.
    bool insertRows(int row, int count, const QModelIndex &parent = QModelIndex()) override;

    // Removes those of the rows that exist. Observers are told the whole range, also where it runs past the end: ask
    // for existing rows only, since the headers of a QTableView ignore a removal past their end, and keep empty rows
    // until the model is reset. False only without a list.
    bool removeRows(int row, int count, const QModelIndex &parent = QModelIndex()) override;

    Qt::ItemFlags flags(const QModelIndex &index) const override;

private:
    bool hasRow(const QModelIndex &index) const;

    QList<ATriggerAction> *m_triggerActions = nullptr;
};
