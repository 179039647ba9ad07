#pragma once

#include <core/amdrdocument.h>
#include <core/areplayprocessor.h>
#include <core/aveldorandevice.h>

#include <QtCore/QDebug>

class Page : public QObject
{
public:
    void statements();
    void showSweep(ASweep &sweep);
    void showPosition(const AGeoData &position);
    void showEnd(bool complete);

    QString fileName;
    AVeldoranDevice *analyser;
    ASweep sweep;
    AGeoData position;
};
using MainWindow = Page;
