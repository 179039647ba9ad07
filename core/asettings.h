#pragma once

#include "core/aveldoranexport.h"

#include <QtCore/QString>
#include <QtCore/QVariant>

class QSettings;

// The settings of the application that loaded the library.
class AVELDORAN_CORE_EXPORT ASettings
{
public:
    // The setting "Application/Language", else the system locale's name, such as "de_AT".
    static QString language();

    // Of applicationSettings(); a "/" in a key separates its groups.
    static QVariant value(const QString &key, const QVariant &defaultValue = QVariant());
    static void setValue(const QString &key, const QVariant &value);

    // The store behind value() and setValue(), never null: the one that was supplied, as long as it exists, else the
    // application's default QSettings. The default store belongs to this class and lives until the application's or
    // organization's name changes.
    static QSettings *applicationSettings();

    // Supplies a store; the caller keeps its ownership. Null returns to the default one.
    static void setApplicationSettings(QSettings *settings);
};
