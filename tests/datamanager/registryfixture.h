#pragma once

#include "core/testbasics.h"
#include "datamanager/adatamanager.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QHash>
#include <QtCore/QPointer>
#include <QtCore/QProcess>
#include <QtCore/QStringList>
#include <QtCore/QTemporaryDir>
#include <QtTest/QtTest>

#include <memory>

#include <sys/stat.h>

// What the tests of the registry share: a manager in a directory of its own, files to feed it, and a second process
// that edits them behind its back.
namespace registrytest {

constexpr unsigned int kInstalled = AProfile::InstalledProfile;
constexpr unsigned int kUser = AProfile::UserProfile;
constexpr unsigned int kDerived = AProfile::DerivedProfile;
constexpr unsigned int kModified = AProfile::ModifiedProfile;

inline void writeText(const QString &fileName, const QString &text)
{
    if (!testbasics::writeFile(fileName, text.toUtf8()))
        qFatal("can't write %s", qPrintable(fileName));
}

using testbasics::readFile;

// A profile of 100 to 200 MHz, with `more` as further elements.
inline QString profileText(const QString &id, const QString &label, const QString &more = {})
{
    return QStringLiteral("<profile id=\"") + id.toHtmlEscaped() + QStringLiteral("\"><label>") +
           label.toHtmlEscaped() + QStringLiteral("</label><begin>100</begin><end>200</end>") + more +
           QStringLiteral("</profile>\n");
}

// The numbers of the files that this process watches, straight from the kernel.
inline QList<quint64> watchedInodes()
{
    QList<quint64> inodes;
    const QDir descriptors(QStringLiteral("/proc/self/fdinfo"));
    for (const QString &name : descriptors.entryList(QDir::Files)) {
        for (const QByteArray &line : readFile(descriptors.filePath(name)).split('\n')) {
            if (!line.startsWith("inotify "))
                continue;
            for (const QByteArray &field : line.split(' '))
                if (field.startsWith("ino:"))
                    inodes << field.mid(4).toULongLong(nullptr, 16);
        }
    }
    return inodes;
}

inline bool isWatched(const QString &fileName)
{
    struct stat status = {};
    return stat(qPrintable(fileName), &status) == 0 && watchedInodes().contains(quint64(status.st_ino));
}

// Delivers all that has happened to watched files up to now: the kernel has queued it before a writer goes on.
inline void settle()
{
    for (int pass = 0; pass < 20; ++pass)
        QCoreApplication::processEvents();
}

inline void runDeferredDeletes()
{
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

inline QStringList repeated(const QString &text, int count)
{
    QStringList list;
    for (int i = 0; i < count; ++i)
        list << text;
    return list;
}

class Registry
{
public:
    Registry()
        : manager(new ADataManager)
    {
        const ADataManager *source = manager.get();
        // The first receiver in line, so that no profile that was ever held is missed.
        QObject::connect(source, &ADataManager::profilesChanged, &m_receiver, [this] {
            for (AProfile *profile : manager->getProfiles())
                m_everHeld.insert(profile, profile);
            m_log << QStringLiteral("profiles");
        });
        QObject::connect(source, &ADataManager::channelInfoDataChanged, &m_receiver,
                         [this] { m_log << QStringLiteral("channels"); });
        QObject::connect(source, &ADataManager::limitDataChanged, &m_receiver,
                         [this] { m_log << QStringLiteral("limits"); });
        QObject::connect(
            source, &ADataManager::calibrationDataChanged, &m_receiver,
            [this](ACalibrationData::CalibrationType type) { m_log << QStringLiteral("calibration %1").arg(type); });
        QObject::connect(source, &ADataManager::error, &m_receiver,
                         [this](const QString &message) { m_log << QStringLiteral("error: ") + message; });
    }

    // The manager deletes no profile when it goes, and none that a reload has replaced.
    ~Registry()
    {
        // A test's receivers look at what is gone by now.
        if (manager)
            manager->blockSignals(true);
        manager.reset();
        for (const QPointer<AProfile> &profile : qAsConst(m_everHeld))
            delete profile.data();
    }

    ADataManager *operator->() const { return manager.get(); }

    QString path(const QString &name) const { return m_directory.filePath(name); }

    QString write(const QString &name, const QString &text) const
    {
        writeText(path(name), text);
        return path(name);
    }

    QString writeProfile(const QString &name, const QString &id, const QString &label, const QString &more = {}) const
    {
        return write(name, profileText(id, label, more));
    }

    // Writes "<id>.profile" and adds it as a user's profile.
    AProfile *add(const QString &id, const QString &label, const QString &more = {}) const
    {
        const QString fileName = writeProfile(id + QStringLiteral(".profile"), id, label, more);
        return manager->addProfileFile(fileName, AProfile::UserProfile) ? manager->getProfileForId(id) : nullptr;
    }

    // The signals since the last call, in order: "profiles", "channels", "limits", "calibration <type>",
    // "error: <message>".
    QStringList takeLog()
    {
        QStringList log;
        log.swap(m_log);
        return log;
    }

    // "id|label" for each profile, "null" for a null entry.
    QStringList contents() const
    {
        QStringList list;
        for (const AProfile *profile : manager->getProfiles())
            list << (profile ? profile->id() + QLatin1Char('|') + profile->label(QString()) : QStringLiteral("null"));
        return list;
    }

    void updateFile(const QString &fileName) const
    {
        const bool found =
            QMetaObject::invokeMethod(manager.get(), "updateFile", Qt::DirectConnection, Q_ARG(QString, fileName));
        QVERIFY(found);
    }

    void watchFile(const QString &fileName) const
    {
        const bool found =
            QMetaObject::invokeMethod(manager.get(), "watchFile", Qt::DirectConnection, Q_ARG(QString, fileName));
        QVERIFY(found);
    }

    // Puts a directory in place of a profile's file and reloads it, which leaves a null entry under the id.
    void makeNull(const QString &id) const
    {
        const QString fileName = manager->getProfileForId(id)->source();
        QVERIFY(QFile::remove(fileName));
        QVERIFY(QDir().mkdir(fileName));
        updateFile(fileName);
        settle();
        QVERIFY(!manager->getProfileForId(id));
    }

    // Runs a script in the directory, while no event of this process is delivered.
    void shell(const QString &script) const
    {
        QProcess process;
        startShell(&process, script);
        QVERIFY(process.waitForFinished(60000));
        QCOMPARE(process.exitCode(), 0);
    }

    // Runs a script in the directory, while the events of this process are delivered.
    void shellBeside(const QString &script) const
    {
        QProcess process;
        startShell(&process, script);
        QTRY_COMPARE_WITH_TIMEOUT(process.state(), QProcess::NotRunning, 60000);
        QCOMPARE(process.exitCode(), 0);
    }

    std::unique_ptr<ADataManager> manager;

private:
    void startShell(QProcess *process, const QString &script) const
    {
        process->setWorkingDirectory(m_directory.path());
        process->setProcessChannelMode(QProcess::ForwardedErrorChannel);
        process->start(QStringLiteral("sh"), {QStringLiteral("-euc"), script});
    }

    QTemporaryDir m_directory;
    QObject m_receiver;
    QStringList m_log;
    QHash<AProfile *, QPointer<AProfile>> m_everHeld;
};

} // namespace registrytest
