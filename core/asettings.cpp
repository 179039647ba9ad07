#include "core/asettings.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QLocale>
#include <QtCore/QPointer>
#include <QtCore/QSettings>
#include <QtCore/QStringList>

#include <memory>

namespace {

struct Stores
{
    QPointer<QSettings> supplied;
    std::unique_ptr<QSettings> standard;
    QStringList standardNames; // those that chose the standard store's place
};

Stores &stores()
{
    static Stores instance;
    return instance;
}

} // namespace

QString ASettings::language()
{
    return value(QStringLiteral("Application/Language"), QLocale::system().name()).toString();
}

QVariant ASettings::value(const QString &key, const QVariant &defaultValue)
{
    return applicationSettings()->value(key, defaultValue);
}

void ASettings::setValue(const QString &key, const QVariant &value)
{
    applicationSettings()->setValue(key, value);
}

QSettings *ASettings::applicationSettings()
{
    Stores &all = stores();
    if (all.supplied)
        return all.supplied;
    // A program may ask before it has set its names; what it stores later belongs to the place of those names.
    const QStringList names = {QCoreApplication::organizationName(), QCoreApplication::organizationDomain(),
                               QCoreApplication::applicationName()};
    if (!all.standard || all.standardNames != names) {
        all.standard = std::make_unique<QSettings>();
        all.standardNames = names;
    }
    return all.standard.get();
}

void ASettings::setApplicationSettings(QSettings *settings)
{
    stores().supplied = settings;
}
