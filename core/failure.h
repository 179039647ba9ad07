#pragma once

#include <QtCore/QString>

// False, with the reason in *errorText where that is not null. Private to the two libraries.
inline bool fail(QString *errorText, const QString &reason)
{
    if (errorText)
        *errorText = reason;
    return false;
}
