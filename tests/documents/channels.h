#pragma once

#include <channel/achannelinfo.h>
#include <channel/achannelinfomodel.h>
#include <datamanager/adatamanager.h>

#include <QtCore/QDebug>
#include <QtCore/QDir>
#include <QtWidgets/QTreeView>

class Page
{
public:
    void statements();

    QTreeView *view;
};
