#include "gallery.h"

#include <views/acomboboxdelegate.h>
#include <views/atriggeractionlistmodel.h>

#include <QtCore/QStringListModel>
#include <QtWidgets/QHBoxLayout>
#include <QtWidgets/QPushButton>

#include <algorithm>
#include <functional>

namespace {

// Edits what is to happen when a measurement fires. The list is the application's own: the model writes to it.
class TriggerEditor : public QWidget
{
public:
    TriggerEditor()
        : m_types(ATriggerAction::actionNames())
    {
        append(ShowMessageAction, Gallery::tr("Carrier on the emergency frequency"));
        append(PlayAudioAction, QStringLiteral("/usr/share/sounds/alarm.wav"));
        append(TakeScreenshotAction, QStringLiteral("pictures/trigger.png"));
        append(RunCommandAction, QStringLiteral("logger -t receiver \"121.5 MHz\""));
        m_model.setTriggerActions(&m_actions);

        m_view = new QTableView;
        m_view->setModel(&m_model);
        m_view->setItemDelegateForColumn(ATriggerActionListModel::ColumnType,
                                         new AComboBoxDelegate(&m_types, 0, m_view));
        m_view->setSelectionBehavior(QTableView::SelectRows);
        m_view->horizontalHeader()->setStretchLastSection(true);
        m_view->horizontalHeader()->setHighlightSections(false); // of all columns, where whole rows are selected
        gallery::fitColumnToEditors(m_view, ATriggerActionListModel::ColumnType);
        m_view->selectRow(0);

        auto *add = new QPushButton(Gallery::tr("Add"));
        auto *remove = new QPushButton(Gallery::tr("Remove"));
        connect(add, &QPushButton::clicked, this, &TriggerEditor::add);
        connect(remove, &QPushButton::clicked, this, &TriggerEditor::removeSelected);
        auto *row = new QHBoxLayout;
        row->addWidget(add);
        row->addWidget(remove);
        row->addStretch();
        auto *layout = new QVBoxLayout(this);
        layout->addWidget(m_view);
        layout->addLayout(row);
    }

private:
    void append(TriggerActionType type, const QString &text)
    {
        ATriggerAction action;
        action.setType(type);
        action.setData(text);
        m_actions.append(action);
    }

    void add()
    {
        m_model.insertRows(m_model.rowCount(), 1);
        const QModelIndex type = m_model.index(m_model.rowCount() - 1, ATriggerActionListModel::ColumnType);
        m_view->setCurrentIndex(type);
        m_view->edit(type);
    }

    void removeSelected()
    {
        QVector<int> rows;
        const QModelIndexList selected = m_view->selectionModel()->selectedRows();
        for (const QModelIndex &index : selected)
            rows << index.row();
        std::sort(rows.begin(), rows.end(), std::greater<>()); // from the end, so that the others keep their places
        for (const int row : qAsConst(rows))
            m_model.removeRows(row, 1);
    }

    QList<ATriggerAction> m_actions; // before the model, which must go first
    ATriggerActionListModel m_model;
    QStringListModel m_types;
    QTableView *m_view;
};

} // namespace

QWidget *gallery::makeTriggersTab()
{
    return new TriggerEditor;
}
