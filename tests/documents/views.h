#pragma once

#include <core/atriggeraction.h>

#include <QtCore/QStringListModel>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QTableView>

class Page : public QWidget
{
public:
    void statements();

    QAbstractItemModel *settingsModel;
    QTableView *bookmarks;
    QPushButton *addButton;
    QPushButton *removeButton;
    QList<ATriggerAction> m_actions;
};
