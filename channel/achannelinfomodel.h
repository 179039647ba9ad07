#pragma once

#include "core/aveldoranexport.h"

#include <QtCore/QAbstractItemModel>
#include <QtCore/QVector>

class AChannelInfo;

// The item model over a tree of AChannelInfo, for views in which a user reads and edits the channel plan. The columns
// are AChannelInfo::Columns; the root is what an invalid index stands for. All nodes are reached and placed in constant
// time. While a model shows a tree, nodes are added, removed and sorted through the model.
//
// An index of another model has no node: it gives what a failed operation gives, and nothing changes.
class AVELDORAN_DATA_EXPORT AChannelInfoModel : public QAbstractItemModel
{
    Q_OBJECT

public:
    // Takes `root` over, although it is const. Null: an empty root of its own.
    AChannelInfoModel(QObject *parent, const AChannelInfo *root);
    ~AChannelInfoModel() override;

    QModelIndex index(int row, int column, const QModelIndex &parent = QModelIndex()) const override;
    QModelIndex parent(const QModelIndex &index) const override;
    int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    int columnCount(const QModelIndex &parent = QModelIndex()) const override;

    // For Qt::DisplayRole and Qt::EditRole the columns of AChannelInfo::data, frequencies as their canonical text
    // ("100.000000 MHz"); for Qt::BackgroundRole the colour of a node that has one, half transparent, in the two name
    // columns and that of the colour.
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;

    // As AChannelInfo::setData, where a text in a frequency column is read as a whole number of hertz. True for every
    // column, also one that stores nothing; false for a role other than Qt::DisplayRole and Qt::EditRole. Qualified
    // names of nodes below a renamed one change without a signal.
    bool setData(const QModelIndex &index, const QVariant &value, int role = Qt::EditRole) override;

    // The columns have names; all but ColumnQualifiedName and ColumnAutoChannelDefinition are editable.
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;

    // Sorts the whole tree by AChannelInfo::sortChildren. Persistent indexes at the top level are left as they are:
    // each keeps its row and its node, whose row may now be another one, until the next removal.
    void sort(int column, Qt::SortOrder order = Qt::AscendingOrder) override;

    using QObject::parent;

    // The previous root, which now belongs to the caller; null if `root` is the current one already. A null `root`
    // leaves a model without rows, to which nothing can be added.
    AChannelInfo *setModelRoot(AChannelInfo *root);

    AChannelInfo *getItem(const QModelIndex &index); // the root for an invalid index

    // Appends a generic range with the edges of the enclosing one, selectable if that has no parent. Gives the index of
    // its first column, an invalid one if `parent` is not of the first column.
    QModelIndex addItem(const QModelIndex &parent, const QString &label);

    // Deletes a node with all below it. False for an invalid index, and for a node with children if not `recursive`.
    // The first removal after a sort, wherever in the tree, also gives the persistent indexes that the sort left their
    // nodes' rows, between layoutAboutToBeChanged and layoutChanged, which always come; of two that become the same one
    // gets invalid. False too if a receiver of these signals has removed the node.
    bool removeItem(const QModelIndex &index, bool recursive);

private:
    AChannelInfo *nodeAt(const QModelIndex &index) const;
    QModelIndex indexOf(AChannelInfo *node, int column) const;
    void mendStaleIndexes();

    AChannelInfo *m_rootItem;
    QVector<AChannelInfo *> m_toBeRemoved; // a node for each removeItem() that runs, null once another has deleted it
    bool m_mayHoldStaleIndexes = false;    // since a sort
};
