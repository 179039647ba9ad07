#pragma once

#include <core/alimit.h>
#include <core/emu.h>
#include <datamanager/adatamanager.h>
#include <limit/alimitmodel.h>
#include <limit/alimitselectiondelegate.h>
#include <limit/alimitsuffixdelegate.h>

#include <QtCore/QDebug>
#include <QtWidgets/QTreeView>

class Page
{
public:
    void statements();

    static void showMessage(const QString &text);

    ALimit *own;
    QTreeView *view;
    QString fileName;
};
