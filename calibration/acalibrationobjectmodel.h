#pragma once

#include "core/acalibrationdata.h"
#include "core/aveldoranexport.h"

#include <QtCore/QAbstractItemModel>
#include <QtCore/QPointer>

class ADataManager;

// The registry's calibration objects as a tree for an editor: a top item that shows nothing, below it the four types,
// below each its objects, below an object the entries of its table (frequency and gain) and a last row to add one in.
// Set the top item as the root of a view: view->setRootIndex(model->index(0, 0)), again after each reset.
//
// The model holds nothing. It asks ADataManager::instance(), as it was when the model was made, at every call; an edit
// goes back there at once and thereby to the object's file. Every change of the store resets the model, its own edits
// too. When the registry is deleted the objects go from the model. An entry that setData() deletes is announced as
// removed before the registry knows, and the reset that follows tells the rest: QAbstractItemModelTester objects.
class AVELDORAN_DATA_EXPORT ACalibrationObjectModel : public QAbstractItemModel
{
    Q_OBJECT

public:
    // What data() has besides Qt's own roles.
    enum Roles
    {
        LevelRole = Qt::UserRole // int: 0 the top item, 1 a type, 2 an object, 3 a row of its table
    };

    explicit ACalibrationObjectModel(QObject *parent = nullptr);

    // Without a parent numbers below 0 give the top item, too.
    QModelIndex index(int row, int column, const QModelIndex &parent = QModelIndex()) const override;

    QModelIndex parent(const QModelIndex &index) const override;
    int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    int columnCount(const QModelIndex &parent = QModelIndex()) const override;

    // The edit value of a frequency is its whole hertz (64 bit), that of a gain its text with the unit.
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;

    // - Of an object: renames it.
    // - Of a frequency: a number of hertz or a text with a unit. One that is new moves the entry, keeping the table's
    //   gain there; one below zero deletes it; one that another row has is refused.
    // - Of a gain: a number, with or without a unit, in the form of the default locale or with "." as decimal sign;
    //   what is none gives 0. It goes to the row's frequency in whole hertz, so that for an entry between two of them
    //   it adds another.
    // - In the last row both add an entry, the gain at 0 Hz.
    //
    // The text that an editor began with changes nothing in a gain and in the last row. In a frequency it counts like
    // any other: an editor that is closed as it was opened deletes an entry below zero and moves one between two whole
    // hertz to the whole hertz.
    bool setData(const QModelIndex &index, const QVariant &value, int role = Qt::EditRole) override;

    // Of the two columns, frequency and gain; the others as Qt numbers them.
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;

    // Removes entries of a table, or objects: of several objects at once only every second one, so remove them one by
    // one. False for anything else and for rows that don't exist. An object whose label begins with "--" shows no rows
    // and has entries all the same, which go without a word about rows.
    bool removeRows(int row, int count, const QModelIndex &parent = QModelIndex()) override;

    // Only the rows of a table are editable in a view; setData() renames objects all the same.
    Qt::ItemFlags flags(const QModelIndex &index) const override;

    ACalibrationData getCalObject(const QModelIndex &index) const; // default-constructed for what is no object's index

    // The index of the object of that type and label; invalid if there is none.
    QModelIndex indexForObject(ACalibrationData object) const;

protected Q_SLOTS:
    void reload(); // resets the model, unless rows are being removed

private:
    struct Node;

    Node nodeOf(const QModelIndex &index) const;
    ACalibrationData objectOf(const Node &node) const;
    static QVariant entryData(const ACalibrationData &object, const QModelIndex &index, int role);
    bool rename(const QModelIndex &index, ACalibrationData object, const QString &label);
    bool setFrequency(const QModelIndex &index, ACalibrationData object, const QVariant &value);
    bool setGain(const QModelIndex &index, ACalibrationData object, const QVariant &value);
    void removeObjects(int row, int count, const QModelIndex &parent);
    bool removeEntries(int row, int count, const QModelIndex &parent, ACalibrationData object);
    QStringList names(int type) const;
    void update(const ACalibrationData &object, const QString &oldLabel = QString());

    QPointer<ADataManager> m_manager;
    bool m_isRemovingRows = false; // no reset until they are gone
    bool m_wasReset = false;
};
