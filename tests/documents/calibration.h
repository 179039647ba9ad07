#pragma once

#include <calibration/acalibrationobjectmodel.h>
#include <core/acalibrationdata.h>
#include <core/astoragelocation.h>
#include <datamanager/adatamanager.h>

#include <QtCore/QDebug>
#include <QtWidgets/QTreeView>

class Page
{
public:
    void statements();

    QTreeView *view;
};
