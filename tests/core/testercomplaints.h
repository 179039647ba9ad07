#pragma once

#include <QtTest/QAbstractItemModelTester>

#include <functional>

// What QAbstractItemModelTester has to say about a model while `work` is done with it.
inline QStringList complaintsAbout(QAbstractItemModel *model, const std::function<void()> &work)
{
    static QStringList complaints;
    complaints.clear();
    const auto previous = qInstallMessageHandler(
        [](QtMsgType, const QMessageLogContext &, const QString &text) { complaints.append(text); });
    {
        const QAbstractItemModelTester tester(model, QAbstractItemModelTester::FailureReportingMode::Warning);
        work();
    }
    qInstallMessageHandler(previous);
    return complaints;
}
