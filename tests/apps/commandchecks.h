#pragma once

#include "apps/programrun.h"

#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtTest/QtTest>

// What is asked of all commands alike. A check that fails is the failure of the test that it is called from.

// Nothing but that error came of it.
inline void verifyFailed(const Run &result, const QString &error)
{
    QCOMPARE(result.exitStatus, 1);
    QCOMPARE(result.output, QString());
    QCOMPARE(result.errors, "aveldoran: " + error + "\n");
}

// The list that it printed; empty if it printed none.
inline QJsonArray jsonOf(const Run &result)
{
    return QJsonDocument::fromJson(result.output.toUtf8()).array();
}

inline void verifyJson(const Run &result, const QJsonArray &expected)
{
    const QJsonArray printed = jsonOf(result);
    QCOMPARE(printed.size(), expected.size());
    for (int i = 0; i < expected.size(); ++i)
        QCOMPARE(printed.at(i).toObject(), expected.at(i).toObject());
}

// A table of wrong command lines, for verifyRefused(): each row has the arguments behind the command, and a part of
// what the program says of them.
inline void addWrongUsageColumns()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("reason");
}

inline void verifyRefused(const QStringList &command)
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, reason);
    const Run result = run(command + arguments);
    QCOMPARE(result.exitStatus, 2);
    QCOMPARE(result.output, QString());
    QVERIFY2(result.errors.startsWith("aveldoran: "), qPrintable(result.errors));
    QVERIFY2(result.errors.contains(reason), qPrintable(result.errors));
    QCOMPARE(result.errors.count('\n'), 1);
}

// The help of the command holds these texts, and that of the program names the command.
inline void verifyHelps(const QString &command, const QStringList &texts)
{
    const Run result = run({command, "--help"});
    QCOMPARE(result.errors, QString());
    QCOMPARE(result.exitStatus, 0);
    QVERIFY2(result.output.startsWith("Usage: aveldoran " + command + ' '), qPrintable(result.output));
    for (const QString &text : texts)
        QVERIFY2(result.output.contains(text), qPrintable(text));
    const Run program = run({"--help"});
    QCOMPARE(program.exitStatus, 0);
    QVERIFY2(program.output.contains("\n  " + command + ' '), qPrintable(program.output));
}

inline void verifyReportsFullDisk(const QStringList &commandLine)
{
    const Run result = run(commandLine, "/dev/full");
    QCOMPARE(result.exitStatus, 1);
    QCOMPARE(result.errors, QString("aveldoran: standard output: can't be written: No space left on device\n"));
}
