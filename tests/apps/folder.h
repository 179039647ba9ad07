#pragma once

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QTemporaryDir>

// A temporary directory for a test, and the files in it.
class Folder
{
public:
    Folder()
    {
        if (!m_directory.isValid())
            qFatal("no temporary directory: %s", qPrintable(m_directory.errorString()));
    }

    QString path() const { return m_directory.path(); }
    QString path(const QString &name) const { return m_directory.filePath(name); }
    // With the directories above the file.
    QString write(const QString &name, const QByteArray &content) const
    {
        QFile file(path(name));
        QDir().mkpath(QFileInfo(file).path());
        if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
            qFatal("could not write %s", qPrintable(file.fileName()));
        return file.fileName();
    }
    QByteArray read(const QString &name) const
    {
        QFile file(path(name));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(none)");
    }
    QStringList names() const { return QDir(path()).entryList(QDir::Files | QDir::Hidden); }

private:
    QTemporaryDir m_directory;
};
