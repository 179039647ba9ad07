#pragma once

#include <QtCore/QProcess>
#include <QtCore/QString>
#include <QtCore/QStringList>

// One run of the real program.

struct Run
{
    int exitStatus = -1; // also of a program that crashed or hung
    QString output;
    QString errors;
};

inline Run run(const QStringList &arguments, const QString &standardOutput = {},
               const QProcessEnvironment &environment = QProcessEnvironment::systemEnvironment())
{
    QProcess process;
    process.setProcessEnvironment(environment);
    if (!standardOutput.isEmpty())
        process.setStandardOutputFile(standardOutput);
    process.start(QStringLiteral(AVELDORAN_PROGRAM), arguments);
    if (!process.waitForFinished(60000) || process.exitStatus() != QProcess::NormalExit)
        return {};
    return {process.exitCode(), QString::fromUtf8(process.readAllStandardOutput()),
            QString::fromUtf8(process.readAllStandardError())};
}
