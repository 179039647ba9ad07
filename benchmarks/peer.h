#pragma once

#include <QtCore/QStandardPaths>
#include <QtCore/QStringList>

#include <string>
#include <vector>

#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>

// What another program takes, for a peer that is measured in the same run.
struct Usage
{
    double seconds = 0.0; // of processor time, user and system
    double peakMegabytes = 0.0;
};

// Runs a program to its end. False if it could not be started or failed.
inline bool run(const QString &program, const QStringList &arguments, Usage *usage)
{
    std::vector<std::string> texts{program.toStdString()};
    for (const QString &argument : arguments)
        texts.push_back(argument.toStdString());
    std::vector<char *> pointers;
    pointers.reserve(texts.size() + 1);
    for (std::string &text : texts)
        pointers.push_back(text.data());
    pointers.push_back(nullptr);

    pid_t child = 0;
    int status = 0;
    rusage used{};
    if (posix_spawn(&child, pointers.front(), nullptr, nullptr, pointers.data(), environ) != 0 ||
        wait4(child, &status, 0, &used) != child || status != 0)
        return false;
    const auto seconds = [](const timeval &time) {
        return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) * 1e-6;
    };
    *usage = {seconds(used.ru_utime) + seconds(used.ru_stime), static_cast<double>(used.ru_maxrss) / 1024.0};
    return true;
}

// The path of gpsbabel, empty where that is not installed.
inline QString gpsbabel()
{
    return QStandardPaths::findExecutable(QStringLiteral("gpsbabel"));
}
