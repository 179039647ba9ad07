#pragma once

#include <limit/alimitmodel.h>

#include <QtCore/QFileInfo>
#include <QtWidgets/QWidget>

class MainWindow : public QWidget
{
public:
    void saveLimits();

    ALimitModel m_limits;
};
