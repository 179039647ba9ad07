#pragma once

#include <QtCore/QProcess>
#include <QtCore/QStringList>

// One run of the program.
struct Run
{
    int exitStatus = -1;
    QString output;
    QString errors;
};

inline Run run(const QStringList &arguments, const QString &standardOutput = {})
{
    QProcess process;
    if (!standardOutput.isEmpty())
        process.setStandardOutputFile(standardOutput);
    process.start(QStringLiteral(AVELDORAN_PROGRAM), arguments);
    if (!process.waitForFinished(60000) || process.exitStatus() != QProcess::NormalExit)
        return {};
    return {process.exitCode(), QString::fromUtf8(process.readAllStandardOutput()),
            QString::fromUtf8(process.readAllStandardError())};
}
