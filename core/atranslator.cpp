#include "core/atranslator.h"

#include <QtCore/QDir>
#include <QtCore/QLocale>

namespace {

QString directory()
{
    return QStringLiteral(":/aveldoran/translations");
}

} // namespace

ATranslator::ATranslator(QObject *parent)
    : QTranslator(parent)
{}

QStringList ATranslator::languages()
{
    const QStringList files = QDir(directory()).entryList({QStringLiteral("aveldoran_*.qm")}, QDir::Files, QDir::Name);
    QStringList codes;
    codes.reserve(files.size());
    for (const QString &file : files)
        codes += file.section(QLatin1Char('_'), 1).section(QLatin1Char('.'), 0, 0);
    return codes;
}

bool ATranslator::setLanguage(const QString &language)
{
    return load(QLocale(language), QStringLiteral("aveldoran"), QStringLiteral("_"), directory());
}
