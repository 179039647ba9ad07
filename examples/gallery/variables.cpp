#include "gallery.h"

#include <views/aveldoranvariabledelegate.h>

#include <QtGui/QStandardItemModel>

// A table of device settings: the delegate is asked for both columns, and edits each value as its variable wants it.
QWidget *gallery::makeVariablesTab()
{
    const QVector<QPair<const char *, QVariant>> settings = {
        {"CenterFrequency", 98.0},   {"Span", 20.0},   {"ResolutionFilter", 4}, {"VideoFilter", 9},
        {"Attenuator", -1},          {"Detector", 2},  {"Preamplifier", 1.0},   {"AutoSweepTime", 0.0},
        {"SweepTime", 250},          {"HoldTime", 30}, {"ReferenceLevel", -20}, {"Squelch", 1.0},
        {"Not a variable", "a text"}};
    auto *view = new QTableView;
    auto *model = new QStandardItemModel(settings.size(), 2, view);
    model->setHorizontalHeaderLabels({Gallery::tr("Variable"), Gallery::tr("Value")});
    for (int row = 0; row < settings.size(); ++row) {
        model->setData(model->index(row, 0), QLatin1String(settings.at(row).first));
        model->setData(model->index(row, 1), settings.at(row).second);
    }
    view->setModel(model);
    auto *delegate = new AVeldoranVariableDelegate(view);
    delegate->setOptions(SpectrumAnalyser, true, true);
    view->setItemDelegate(delegate);
    for (int column = 0; column < model->columnCount(); ++column)
        gallery::fitColumnToEditors(view, column);
    return view;
}
