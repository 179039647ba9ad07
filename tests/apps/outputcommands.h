#pragma once

#include "tests/apps/folder.h"
#include "tests/apps/programrun.h"

#include <QtTest/QtTest>

// Command lines that write files.

// A table of each way to write one: the command line, with OUT for the file, RECORDING for a recording, and the suffix
// of the file.
inline void addOutputs()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("suffix");
    const QString data = QLatin1String(AVELDORAN_EXAMPLES_DIR) + "/data/";
    const QStringList device{"--model", "1", "--firmware", "2", "--serial", "3"};
    QTest::newRow("calibration") << QStringList{"calibration", data + "calibration", "--plot", "OUT"} << ".png";
    QTest::newRow("drive") << QStringList{"drive", "RECORDING", "--output", "OUT"} << ".kml";
    QTest::newRow("limits") << QStringList{"limits", data + "limits/en55032-radiated.xml", "--plot", "OUT"} << ".png";
    QTest::newRow("limits anew") << QStringList{"limits", data + "limits/en55032-radiated.xml", "--rewrite", "OUT"}
                                 << ".xml";
    QTest::newRow("logo") << QStringList(QStringList{"logo"} + device + QStringList{"--output", "OUT"}) << ".bin";
    QTest::newRow("logo as a picture") << QStringList(QStringList{"logo"} + device +
                                                      QStringList{"--output", "OUT", "--scale", "40"})
                                       << ".bmp";
    QTest::newRow("markers") << QStringList{"markers", data + "traces/broadband.csv", "--plot", "OUT"} << ".png";
    QTest::newRow("waterfall") << QStringList{"waterfall", "RECORDING", "--output", "OUT"} << ".png";
}

// A recording drive.mdr in the folder.
inline QStringList recordIn(const Folder &folder)
{
    return {"record",     "--simulate",
            "--gpx",      QLatin1String(AVELDORAN_EXAMPLES_DIR) + "/data/drives/valley-road.gpx",
            "--interval", "10000",
            "--points",   "50",
            "--output",   folder.path("drive.mdr")};
}

inline QStringList replaced(QStringList arguments, const Folder &folder)
{
    if (arguments.contains("RECORDING")) {
        const Run recorded = run(recordIn(folder));
        if (recorded.exitStatus != 0)
            qFatal("could not record: %s", qPrintable(recorded.errors));
        arguments.replaceInStrings("RECORDING", folder.path("drive.mdr"));
    }
    return arguments;
}
