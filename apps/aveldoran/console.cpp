#include "apps/aveldoran/console.h"

#include <QtCore/QElapsedTimer>
#include <QtCore/QtDebug>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <unistd.h>

namespace Console {

namespace {

bool progressIsShown = false;
bool warningWasReported = false;

void reportMessage(QtMsgType type, const QMessageLogContext &, const QString &text)
{
    error(text);
    warningWasReported = warningWasReported || type == QtWarningMsg || type == QtCriticalMsg;
    if (type == QtFatalMsg)
        std::abort();
}

} // namespace

void error(const QString &text)
{
    clearProgress();
    std::fprintf(stderr, "aveldoran: %s\n", oneLine(text).toLocal8Bit().constData());
}

void reportMessages()
{
    qInstallMessageHandler(reportMessage);
}

bool hasWarned()
{
    return warningWasReported;
}

void progress(const QString &text)
{
    if (isatty(STDERR_FILENO) == 0)
        return;
    std::fprintf(stderr, "\r\033[K%s", oneLine(text).toLocal8Bit().constData());
    std::fflush(stderr);
    progressIsShown = true;
}

void progressBar(const QString &text, qint64 done, qint64 total)
{
    constexpr int kWidth = 30;
    constexpr int kPauseMs = 100;
    static const bool isTerminal = isatty(STDERR_FILENO) != 0;
    static QElapsedTimer shown;
    if (!isTerminal || (shown.isValid() && shown.elapsed() < kPauseMs))
        return;
    shown.start();
    const double part = total > 0 ? std::clamp(static_cast<double>(done) / static_cast<double>(total), 0.0, 1.0) : 0.0;
    const QString bar =
        QString(static_cast<int>(part * kWidth), QLatin1Char('#')).leftJustified(kWidth, QLatin1Char('.'));
    progress(QStringLiteral("%1 [%2] %3 %").arg(text, bar, QString::number(static_cast<int>(part * 100.0))));
}

void remark(const QString &text)
{
    clearProgress();
    std::fprintf(stderr, "%s\n", oneLine(text).toLocal8Bit().constData());
}

void tellWritten(const QString &fileName, const QString &content)
{
    remark(QStringLiteral("%1: written; %2").arg(fileName, content));
}

void tellLeftOut(const QString &fileName, const QString &what)
{
    remark(QStringLiteral("%1: left out: %2").arg(fileName, what));
}

bool attempt(const std::function<bool(QString *errorText)> &operation)
{
    QString errorText;
    const bool succeeded = operation(&errorText);
    clearProgress();
    if (!succeeded)
        error(errorText);
    return succeeded;
}

void clearProgress()
{
    if (progressIsShown)
        std::fputs("\r\033[K", stderr);
    progressIsShown = false;
}

void write(const QString &text)
{
    const QByteArray bytes = text.toUtf8();
    std::fwrite(bytes.constData(), 1, static_cast<std::size_t>(bytes.size()), stdout);
}

bool finish()
{
    const bool failedBefore = std::ferror(stdout) != 0;
    if (std::fflush(stdout) == 0 && !failedBefore)
        return true;
    error(QStringLiteral("standard output: can't be written: %1").arg(QString::fromLocal8Bit(std::strerror(errno))));
    return false;
}

QString oneLine(const QString &text)
{
    QString line = text.simplified();
    for (QChar &c : line) {
        if (c.category() == QChar::Other_Control)
            c = QChar::ReplacementCharacter;
    }
    return line;
}

QString oneLineOrDash(const QString &text)
{
    return text.isEmpty() ? QStringLiteral("-") : oneLine(text);
}

} // namespace Console
