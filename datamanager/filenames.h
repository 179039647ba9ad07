#pragma once

#include <QtCore/QSet>
#include <QtCore/QString>
#include <QtCore/QStringList>

#include <algorithm>

// File names, each once, in the order of their first arrival. Private to libaveldorandata.
class FileNames
{
public:
    const QStringList &list() const { return m_list; }
    bool contains(const QString &name) const { return m_known.contains(name); }

    void add(const QString &name)
    {
        if (contains(name))
            return;
        m_known.insert(name);
        m_list.append(name);
    }

    void remove(const QString &name)
    {
        if (m_known.remove(name))
            m_list.removeOne(name);
    }

    void remove(const QSet<QString> &names)
    {
        m_known -= names;
        const auto isRemoved = [&names](const QString &name) { return names.contains(name); };
        m_list.erase(std::remove_if(m_list.begin(), m_list.end(), isRemoved), m_list.end());
    }

private:
    QStringList m_list;
    QSet<QString> m_known; // the same names
};
