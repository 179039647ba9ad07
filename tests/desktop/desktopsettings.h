#pragma once

#include <core/asettings.h>

#include <QtCore/QDir>
#include <QtCore/QSettings>
#include <QtCore/QTemporaryDir>

// A directory with files, and settings of its own, which ASettings uses as long as this exists.
class DesktopSettings
{
public:
    DesktopSettings()
        : m_settings(m_directory.filePath(QStringLiteral("settings.ini")), QSettings::IniFormat)
    {
        ASettings::setApplicationSettings(&m_settings);
    }

    QString path(const QString &name) const
    {
        return QDir(m_directory.path()).canonicalPath() + QLatin1Char('/') + name;
    }

    QString makeDirectory(const QString &name) const
    {
        if (!QDir(m_directory.path()).mkpath(name))
            qFatal("could not make %s", qPrintable(name));
        return path(name);
    }

    QString makeFile(const QString &name) const
    {
        QFile file(path(name));
        if (!file.open(QIODevice::WriteOnly))
            qFatal("could not write %s", qPrintable(name));
        return path(name);
    }

    // "EXTENSION=directory" for all that is remembered.
    QStringList remembered() const
    {
        const QString prefix = QStringLiteral("Application/DialogPath_");
        QStringList result;
        const QStringList keys = m_settings.allKeys();
        for (const QString &key : keys)
            result << (key.startsWith(prefix) ? key.mid(prefix.size()) : key) + QLatin1Char('=') +
                          m_settings.value(key).toString();
        return result;
    }

    static void remember(const QString &extension, const QString &directory)
    {
        ASettings::setValue(QStringLiteral("Application/DialogPath_") + extension, directory);
    }

private:
    QTemporaryDir m_directory;
    QSettings m_settings;
};
