#pragma once

#include "core/alimit.h"
#include "registryfixture.h"

// What the tests of the limit store share: limit files, limits of an application, and the texts of errors.
namespace registrytest {

const QString kLimits = QStringLiteral("limits");

// A limit file with a flat limit of each name, whose value is its number in the list.
inline QString limitText(const QStringList &names)
{
    QString text = QStringLiteral("<data>");
    for (int i = 0; i < names.size(); ++i)
        text += QStringLiteral("<limit name=\"%1\"><level frequency=\"1000\">%2</level></limit>")
                    .arg(names.at(i).toHtmlEscaped())
                    .arg(i);
    return text + QStringLiteral("</data>\n");
}

inline QString errorText(const QString &fileName)
{
    QList<const ALimit *> list;
    QString text;
    ALimit::readAll(fileName, list, &text);
    qDeleteAll(list);
    return QStringLiteral("error: ") + text;
}

inline ALimit *namedLimit(const QString &name)
{
    auto *limit = new ALimit;
    limit->setName(name);
    return limit;
}

// Calls itself something else than its name, and tells when it goes.
class RenamedLimit : public ALimit
{
public:
    explicit RenamedLimit(int *deletions)
        : m_deletions(deletions)
    {}
    ~RenamedLimit() override { ++*m_deletions; }
    QString name() const override { return QStringLiteral("renamed"); }

private:
    int *m_deletions;
};

} // namespace registrytest
