#include "desktop/adesktopservices.h"

#include "core/asettings.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QDir>
#include <QtCore/QFileInfo>
#include <QtCore/QProcess>
#include <QtCore/QStandardPaths>
#include <QtCore/QUrl>
#include <QtGui/QDesktopServices>
#include <QtWidgets/QFileDialog>

namespace {

QString settingsKey(const QString &extension)
{
    return QStringLiteral("Application/DialogPath_") + extension;
}

// The first pattern of a filter's first part in upper case, "*.XML"; empty if there is none. One that is longer than
// any file's path counts as none: no file has that extension, and Qt's letter case and settings take quadratic time
// over it.
QString firstPattern(const QString &filter)
{
    constexpr int kMaxLength = 4096;
    const QString part = filter.left(filter.indexOf(QLatin1String(";;")));
    const int open = part.indexOf(QLatin1Char('('));
    const int close = open < 0 ? -1 : part.indexOf(QLatin1Char(')'), open);
    if (close < 0)
        return {};
    const QString patterns = part.mid(open + 1, close - open - 1);
    const QString first = patterns.left(patterns.indexOf(QLatin1Char(' ')));
    return first.size() > kMaxLength ? QString() : first.toUpper();
}

// A name that doesn't exist and has no dot is taken for a directory yet to be made.
bool isDirectory(const QFileInfo &info)
{
    return info.isDir() || (!info.exists() && !info.fileName().contains(QLatin1Char('.')));
}

QString dialogStart(const QString &path, const QString &filter)
{
    if (path.contains(QLatin1Char('/')))
        return path;
    const QFileInfo info(path);
    if (isDirectory(info))
        return ADesktopServices::getFilterLocation(filter, path);
    return ADesktopServices::getFilterLocation(filter, info.path()) + QLatin1Char('/') + info.fileName();
}

} // namespace

QString ADesktopServices::storageLocation(ADesktopServices::StandardLocation location)
{
    const QStringList entries =
        QStandardPaths::standardLocations(static_cast<QStandardPaths::StandardLocation>(location));
    for (const QString &entry : entries) {
        if (QDir(entry).exists())
            return entry;
    }
    return entries.value(0);
}

QString ADesktopServices::getFilterLocation(const QString &filter, const QString &defaultPath)
{
    QString result = defaultPath;
    const QString anyName = QStringLiteral("*.");
    QString pattern = firstPattern(filter);
    if (pattern.startsWith(anyName) && !pattern.endsWith(QLatin1Char('*')))
        result = ASettings::value(settingsKey(pattern.remove(anyName)), defaultPath).toString();
    if (!result.isEmpty())
        return result;
    return defaultPath.isEmpty() ? storageLocation(DocumentsLocation) : defaultPath;
}

QString ADesktopServices::getFilename(bool open, QWidget *parent, const QString &caption, const QString &path,
                                      const QString &filter, QString *selectedFilter)
{
    const QString start = dialogStart(path, filter);
    QString result = open ? QFileDialog::getOpenFileName(parent, caption, start, filter, selectedFilter)
                          : QFileDialog::getSaveFileName(parent, caption, start, filter, selectedFilter);
    if (!result.isEmpty()) {
        const QFileInfo chosen(result);
        ASettings::setValue(settingsKey(chosen.suffix().toUpper()), chosen.dir().absolutePath());
    }
    return result;
}

void ADesktopServices::executeAApplication(const QString &name, const QStringList &arguments)
{
    const QString wrapper = QStringLiteral("ToolWrapper");
    if (name != wrapper) {
        executeAApplication(wrapper, QStringList(name) + arguments);
        return;
    }
    QProcess::startDetached(QDir(QCoreApplication::applicationDirPath()).absoluteFilePath(name), arguments);
}

void ADesktopServices::shellExecute(const QString &file, const QStringList &arguments)
{
    if (arguments.isEmpty())
        QDesktopServices::openUrl(QUrl::fromLocalFile(file));
    else
        QProcess::startDetached(QStringLiteral("xdg-open"), QStringList{file, QStringLiteral("--args")} + arguments);
}
