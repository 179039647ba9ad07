#pragma once

#include "core/aprofile.h"
#include "core/testbasics.h"

#include <QtCore/QFile>
#include <QtCore/QTemporaryDir>
#include <QtCore/QXmlStreamReader>
#include <QtXml/QDomDocument>

#include <csignal>
#include <functional>
#include <memory>

#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

// What the tests of profile files share: files in a directory of their own, the content of XML as a list of texts, and
// work in a child process that may be given limits or fewer rights.
namespace profilefiles {

using ProfilePtr = std::unique_ptr<AProfile>;

using testbasics::hertz;
using testbasics::readFile;
using testbasics::writeFile;

// A profile with texts in two languages and channels of both kinds.
constexpr char kFmProfile[] = R"(<?xml version="1.0" encoding="UTF-8"?>
<profile id="fm-de" showInChannelList="1">
  <label>FM broadcast</label>
  <label lang="de">UKW-Rundfunk</label>
  <description lang="en">Band II</description>
  <begin>87.5 MHz</begin>
  <end>108 MHz</end>
  <channels>
    <color>#3366cc</color>
    <channels start="87.6 MHz" width="200 kHz" count="102"/>
    <range label="Lower half" type="provider"><end>98 MHz</end></range>
  </channels>
</profile>
)";

class ProfileDir
{
public:
    QString path() const { return m_dir.path(); }
    QString path(const QString &name) const { return m_dir.filePath(name); }

    // What fromFile makes of a file with that content.
    ProfilePtr read(const QByteArray &content) const
    {
        const QString name = path(QStringLiteral("read.profile"));
        return ProfilePtr(writeFile(name, content) ? AProfile::fromFile(name) : nullptr);
    }

    // The profile as it is after saving and reading back; null if it couldn't be saved.
    ProfilePtr saved(const AProfile &profile, QByteArray *content = nullptr) const
    {
        const QString name = path(QStringLiteral("saved.profile"));
        QFile::remove(name);
        if (!profile.saveToFile(name))
            return nullptr;
        if (content)
            *content = readFile(name);
        return ProfilePtr(AProfile::fromFile(name));
    }

private:
    QTemporaryDir m_dir;
};

// A profile with that id and what stands in the body.
inline QByteArray profileXml(const QByteArray &body, const QByteArray &attributes = "id=\"p\"")
{
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<profile " + attributes + ">" + body + "</profile>\n";
}

// The content of an XML document in order: elements, attributes, texts, comments and processing instructions. Blanks
// that only indent elements don't count. Empty if it is not well-formed.
inline QStringList xmlEvents(const QByteArray &content)
{
    struct Level
    {
        QList<int> blanks;
        bool hasText = false;
        bool hasMarkup = false;
    };
    QXmlStreamReader reader(content);
    reader.setNamespaceProcessing(false);
    QStringList events;
    QList<Level> levels = {Level()};
    QString text;
    const auto endText = [&] {
        if (text.isEmpty())
            return;
        if (text.trimmed().isEmpty())
            levels.last().blanks.append(events.size());
        else
            levels.last().hasText = true;
        events.append(QStringLiteral("text ") + text);
        text.clear();
    };
    while (!reader.atEnd()) {
        const QXmlStreamReader::TokenType token = reader.readNext();
        if (token == QXmlStreamReader::Characters) {
            text += reader.text();
            continue;
        }
        endText();
        if (token == QXmlStreamReader::StartElement) {
            levels.last().hasMarkup = true;
            levels.append(Level());
            events.append(QStringLiteral("start ") + reader.qualifiedName());
            QStringList attributes;
            const QXmlStreamAttributes all = reader.attributes();
            for (const QXmlStreamAttribute &attribute : all)
                attributes.append(QStringLiteral("attribute %1=").arg(attribute.qualifiedName()) + attribute.value());
            attributes.sort();
            events += attributes;
        } else if (token == QXmlStreamReader::EndElement) {
            const Level level = levels.takeLast();
            if (level.hasMarkup && !level.hasText) {
                for (int blank : level.blanks)
                    events[blank].clear();
            }
            events.append(QStringLiteral("end ") + reader.qualifiedName());
        } else if (token == QXmlStreamReader::Comment) {
            levels.last().hasMarkup = true;
            events.append(QStringLiteral("comment ") + reader.text());
        } else if (token == QXmlStreamReader::ProcessingInstruction) {
            levels.last().hasMarkup = true;
            events.append(QStringLiteral("instruction %1 ").arg(reader.processingInstructionTarget()) +
                          reader.processingInstructionData());
        }
    }
    events.removeAll(QString());
    return reader.hasError() ? QStringList() : events;
}

struct ChildResult
{
    int status = -1; // exit status, or -1 if the child died
    qint64 megabytes = 0;
    qint64 milliseconds = 0; // of processor time
};

// Runs `work` in a child process, which ends with its result as exit status, or with -1 if it crashes, throws or takes
// more than two minutes of processor time.
inline ChildResult inChild(const std::function<int()> &work)
{
    ChildResult result;
    const pid_t child = fork();
    if (child == 0) {
        for (int signal : {SIGSEGV, SIGABRT, SIGBUS, SIGFPE, SIGTERM})
            std::signal(signal, SIG_DFL); // Qt Test's own handlers wait for a thread that the child doesn't have
        constexpr rlimit kTwoMinutes{120, 120};
        setrlimit(RLIMIT_CPU, &kTwoMinutes);
        try {
            _exit(work());
        } catch (...) {
            kill(getpid(), SIGKILL);
        }
    }
    int status = 0;
    struct rusage usage = {};
    if (child > 0 && wait4(child, &status, 0, &usage) == child) {
        for (const timeval &time : {usage.ru_utime, usage.ru_stime})
            result.milliseconds += time.tv_sec * 1000 + time.tv_usec / 1000;
        result.megabytes = usage.ru_maxrss / 1024;
        if (WIFEXITED(status))
            result.status = WEXITSTATUS(status);
    }
    return result;
}

// The same, without the rights of the superuser.
inline ChildResult inUnprivilegedChild(const std::function<int()> &work)
{
    return inChild([&work] {
        constexpr uid_t kNobody = 65534;
        if (geteuid() == 0 && (setgid(kNobody) != 0 || setuid(kNobody) != 0))
            return 99;
        return work();
    });
}

// Later writes fail beyond a size, as on a full disk.
inline bool limitFileSize(rlim_t bytes)
{
    std::signal(SIGXFSZ, SIG_IGN);
    const struct rlimit size = {bytes, RLIM_INFINITY};
    return setrlimit(RLIMIT_FSIZE, &size) == 0;
}

// A channel section of so many elements, each in the one before.
inline QDomDocument nestedSection(int depth)
{
    QDomDocument document;
    QDomNode inner = document.appendChild(document.createElement(QStringLiteral("channels")));
    for (int i = 1; i < depth; ++i)
        inner = inner.appendChild(document.createElement(QStringLiteral("range")));
    return document;
}

} // namespace profilefiles
