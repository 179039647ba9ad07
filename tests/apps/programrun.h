#pragma once

#include <QtCore/QElapsedTimer>
#include <QtCore/QProcess>
#include <QtCore/QString>
#include <QtCore/QStringList>

#include <fcntl.h>
#include <pty.h>
#include <unistd.h>

// One run of the real program.

struct Run
{
    int exitStatus = -1; // also of a program that crashed or hung
    QString output;
    QString errors;
    QString told; // the lines of standard error that are none: what was written and left out
};

inline bool isRemark(const QString &line)
{
    const auto has = [&line](const char *text) { return line.contains(QLatin1String(text)); };
    return !line.startsWith(QLatin1String("aveldoran: ")) &&
           (has(": written; ") || has(": left out: ") || has(": dropped by whoever reads this plan: "));
}

inline Run runOf(int exitStatus, const QByteArray &output, const QByteArray &standardError)
{
    Run run{exitStatus, QString::fromUtf8(output), {}, {}};
    const QList<QByteArray> lines = standardError.split('\n');
    for (int i = 0; i < lines.size(); ++i) {
        const QString line = QString::fromUtf8(lines.at(i));
        (isRemark(line) ? run.told : run.errors) += i + 1 < lines.size() ? line + QLatin1Char('\n') : line;
    }
    return run;
}

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
    return runOf(process.exitCode(), process.readAllStandardOutput(), process.readAllStandardError());
}

inline QProcessEnvironment environmentWithoutDisplay()
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (const char *name : {"QT_QPA_PLATFORM", "DISPLAY", "WAYLAND_DISPLAY", "XDG_RUNTIME_DIR"})
        environment.remove(QLatin1String(name));
    return environment;
}

// With its standard error on a terminal.
inline Run runOnTerminal(const QStringList &arguments)
{
    int master = -1;
    int slave = -1;
    if (openpty(&master, &slave, nullptr, nullptr, nullptr) != 0)
        return {};
    fcntl(master, F_SETFL, O_NONBLOCK);
    QByteArray shown;
    const auto readTerminal = [&shown, master] {
        char buffer[4096];
        for (ssize_t size = 1; size > 0;) {
            size = read(master, buffer, sizeof buffer);
            if (size > 0)
                shown.append(buffer, static_cast<int>(size));
        }
    };
    QProcess process;
    process.setStandardErrorFile(QString::fromLocal8Bit(ttyname(slave)));
    process.start(QStringLiteral(AVELDORAN_PROGRAM), arguments);
    QElapsedTimer time;
    time.start();
    while (!process.waitForFinished(10) && time.elapsed() < 60000) // a terminal that nobody reads stops the program
        readTerminal();
    readTerminal();
    close(slave);
    close(master);
    if (process.state() != QProcess::NotRunning || process.exitStatus() != QProcess::NormalExit)
        return {};
    return {process.exitCode(), QString::fromUtf8(process.readAllStandardOutput()), QString::fromUtf8(shown), {}};
}
