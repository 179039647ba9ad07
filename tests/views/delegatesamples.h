#pragma once

#include "views/abooleanitemdelegate.h"
#include "views/acheckboxitemdelegate.h"
#include "views/acomboboxdelegate.h"
#include "views/adoublespinboxdelegate.h"
#include "views/afrequencydelegate.h"
#include "views/aremoveselectiondelegate.h"
#include "views/aveldoranvariabledelegate.h"

#include <QtCore/QStringListModel>
#include <QtTest/QtTest>

#include <functional>

// Every delegate with every kind of editor that it has, for tests that do the same to all of them.
struct DelegateSample
{
    const char *title;
    std::function<QAbstractItemDelegate *(QObject *)> make;
    QVariant name; // of the cell in column 0
    QVariant value;
    int column;         // of the cell to edit
    const char *editor; // its class
    const char *typed;  // a text for the editor
    QVariant committed; // what the cell holds then
};

Q_DECLARE_METATYPE(const DelegateSample *)

inline const QVector<DelegateSample> &delegateSamples()
{
    const auto variables = [](QObject *parent) { return new AVeldoranVariableDelegate(parent); };
    const auto choices = [](QObject *parent) {
        auto *model = new QStringListModel({"one", "two", "three"}, parent);
        return new AComboBoxDelegate(model, 0, parent);
    };
    const auto onOff = [](QObject *parent) { return new ABooleanItemDelegate("On", "Off", parent); };
    const auto frame = [](QObject *parent) { return new ARemoveSelectionDelegate(true, parent); };
    const auto megahertz = [](QObject *parent) { return new ADoubleSpinBoxDelegate(parent); };
    const auto yesNo = [](QObject *parent) { return new ACheckBoxItemDelegate(parent); };
    const auto frequency = [](QObject *parent) { return new AFrequencyDelegate(parent); };
    static const QVector<DelegateSample> kSamples = {
        {"megahertz", megahertz, {}, 100.5, 1, "QDoubleSpinBox", "433.92", 433.92},
        {"yes or no", yesNo, {}, false, 1, "QCheckBox", " ", true},
        {"choice", choices, {}, "two", 1, "QComboBox", "three", "three"},
        {"true or false", onOff, {}, true, 1, "QComboBox", "Off", false},
        {"frame", frame, {}, "text", 1, "QLineEdit", "other", "other"},
        {"frequency", frequency, {}, "2.4 GHz", 1, "QLineEdit", "1,5 MHz", "1,5 MHz"},
        {"variable name", variables, "Span", 1, 0, "QComboBox", "Volume", "Volume"},
        {"filter", variables, "VideoFilter", 1, 1, "QComboBox", "Full", 0},
        {"enumeration", variables, "Attenuator", 10, 1, "QComboBox", "Auto", -1.0F},
        {"switch", variables, "Squelch", 0, 1, "QCheckBox", " ", 1.0},
        {"device frequency", variables, "CenterFrequency", 100, 1, "QDoubleSpinBox", "433.92", 433.92},
        {"milliseconds", variables, "SweepTime", 100, 1, "QDoubleSpinBox", "250", 250.0},
        {"seconds", variables, "HoldTime", 10, 1, "QDoubleSpinBox", "30", 30.0},
        {"number", variables, "TriggerLevel", -60, 1, "QDoubleSpinBox", "-72.5", -72.5},
        {"unknown variable", variables, "Nonsense", "abc", 1, "QLineEdit", "def", "def"},
    };
    return kSamples;
}

inline void addDelegateSampleRows()
{
    QTest::addColumn<const DelegateSample *>("sample");
    for (const DelegateSample &sample : delegateSamples())
        QTest::newRow(sample.title) << &sample;
}
