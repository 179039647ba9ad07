#pragma once

#include <QtCore/QString>

// The keys of AChannelInfo::Definition, which are also the names of the attributes in a file. Private to channel/.
namespace definitionkey {

inline QString start()
{
    return QStringLiteral("start");
}

inline QString width()
{
    return QStringLiteral("width");
}

inline QString space()
{
    return QStringLiteral("space");
}

inline QString first()
{
    return QStringLiteral("first");
}

inline QString count()
{
    return QStringLiteral("count");
}

inline QString step()
{
    return QStringLiteral("step");
}

inline QString color()
{
    return QStringLiteral("color");
}

} // namespace definitionkey
