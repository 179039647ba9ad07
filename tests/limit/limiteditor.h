#pragma once

#include "core/alimit.h"
#include "limit/alimitmodel.h"
#include "limit/alimitselectiondelegate.h"
#include "limit/alimitsuffixdelegate.h"

#include <QtWidgets/QAction>
#include <QtWidgets/QTreeView>

// A limit editor as an application makes one: a tree of the model with a delegate for each column that needs one, and
// keys for rows and files. Insert adds a limit, Ctrl+Insert a section and Shift+Insert a level to the current limit,
// Delete removes the current row, Ctrl+S saves, F5 reloads.
class LimitEditor : public QTreeView
{
    Q_OBJECT

public:
    explicit LimitEditor(const QString &fileName)
        : m_fileName(fileName)
    {
        setModel(&m_model);
        setEditTriggers(EditKeyPressed);
        resize(1300, 400);

        QMap<unsigned int, QString> units;
        const QStringList unitLabels = m_model.unitLabels();
        for (int id = 0; id < unitLabels.size(); ++id)
            units[static_cast<unsigned int>(id)] = unitLabels.at(id);
        constexpr int kFrequencyDecimals = 6;
        constexpr int kLevelDecimals = 3;
        auto *frequencies = new ALimitSuffixDelegate(QStringLiteral("MHz"), kFrequencyDecimals, this);
        m_levels = new ALimitSuffixDelegate(QStringLiteral("dBm"), kLevelDecimals, this);
        for (int column : {ALimitModel::ColumnBegin, ALimitModel::ColumnEnd, ALimitModel::ColumnBeginFrequency,
                           ALimitModel::ColumnEndFrequency})
            setItemDelegateForColumn(column, frequencies);
        for (int column : {ALimitModel::ColumnBeginValue, ALimitModel::ColumnEndValue})
            setItemDelegateForColumn(column, m_levels);
        setItemDelegateForColumn(ALimitModel::ColumnUnit, new ALimitSelectionDelegate(units, this));
        setItemDelegateForColumn(ALimitModel::ColumnInterpolation,
                                 new ALimitSelectionDelegate({{ALimit::Step, QStringLiteral("step")},
                                                              {ALimit::Linear, QStringLiteral("linear")},
                                                              {ALimit::Logarithmic, QStringLiteral("logarithmic")}},
                                                             this));

        addKey(Qt::Key_Insert, [this] { addLimit(); });
        addKey(Qt::CTRL + Qt::Key_Insert, [this] { addPiece(true); });
        addKey(Qt::SHIFT + Qt::Key_Insert, [this] { addPiece(false); });
        addKey(Qt::Key_Delete, [this] { m_model.removeRow(currentIndex().row(), currentIndex().parent()); });
        addKey(Qt::CTRL + Qt::Key_S, [this] { m_model.saveToFile(m_fileName); });
        addKey(Qt::Key_F5, [this] {
            m_model.loadFromFile(m_fileName);
            expandAll();
            setCurrentIndex(m_model.index(0, ALimitModel::ColumnName));
        });
        // Levels carry the unit of the limit in which one is edited.
        connect(selectionModel(), &QItemSelectionModel::currentChanged, this, [this] { showUnit(); });
        connect(&m_model, &QAbstractItemModel::dataChanged, this, [this] { showUnit(); });
    }

    ALimitModel *limits() { return &m_model; }

private:
    template<typename Slot>
    void addKey(int key, Slot slot)
    {
        auto *action = new QAction(this);
        action->setShortcut(QKeySequence(key));
        connect(action, &QAction::triggered, this, slot);
        addAction(action);
    }

    void addLimit()
    {
        QList<QStandardItem *> row;
        for (int column = 0; column <= ALimitModel::ColumnEndFrequency; ++column)
            row << new QStandardItem;
        m_model.appendRow(row);
        setCurrentIndex(row.first()->index());
    }

    void addPiece(bool isSection)
    {
        QModelIndex limit = currentIndex().parent().isValid() ? currentIndex().parent() : currentIndex();
        limit = limit.siblingAtColumn(ALimitModel::ColumnName);
        QStandardItem *item = m_model.itemFromIndex(limit);
        if (!item)
            return;
        QList<QStandardItem *> row;
        for (int column = 0; column <= ALimitModel::ColumnInterpolation; ++column) {
            const bool isEmpty = column < ALimitModel::ColumnBeginFrequency ||
                                 (!isSection && (column == ALimitModel::ColumnBeginFrequency ||
                                                 column == ALimitModel::ColumnBeginValue));
            row << (isEmpty ? nullptr : new QStandardItem(QStringLiteral("0")));
        }
        item->appendRow(row);
        expand(limit);
        setCurrentIndex(row.last()->index());
    }

    void showUnit()
    {
        QModelIndex limit = currentIndex().parent().isValid() ? currentIndex().parent() : currentIndex();
        const QStringList labels = m_model.unitLabels();
        m_levels->setSuffix(labels.value(limit.siblingAtColumn(ALimitModel::ColumnUnit).data().toInt()));
        viewport()->update();
    }

    QString m_fileName;
    ALimitModel m_model;
    ALimitSuffixDelegate *m_levels = nullptr;
};
