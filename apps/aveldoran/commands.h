#pragma once

#include <QtCore/QStringList>

// The subcommands. Each takes the program's arguments without its own name and gives the exit status.

enum ExitStatus
{
    ExitDone = 0,
    ExitFailed = 1, // something of what was asked for was not done, or a trace exceeds a limit
    ExitUsage = 2,  // the command line makes no sense; nothing was done
};

int runCalibration(const QStringList &arguments);
int runChannels(const QStringList &arguments);
int runDevices(const QStringList &arguments);
int runDrive(const QStringList &arguments);
int runLimits(const QStringList &arguments);
int runLogo(const QStringList &arguments);
int runMarkers(const QStringList &arguments);
int runRecord(const QStringList &arguments);
int runWaterfall(const QStringList &arguments);
int runWaypoints(const QStringList &arguments);
