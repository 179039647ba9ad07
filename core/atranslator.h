#pragma once

#include "core/aveldoranexport.h"

#include <QtCore/QTranslator>

// The texts of both libraries in another language. An application installs one and gives it a language:
//
//     ATranslator translator;
//     if (translator.setLanguage(ASettings::language()))
//         QCoreApplication::installTranslator(&translator);
//
// What is already shown stays as it is until it asks for its texts again (QEvent::LanguageChange).
class AVELDORAN_CORE_EXPORT ATranslator : public QTranslator
{
    Q_OBJECT

public:
    explicit ATranslator(QObject *parent = nullptr);

    // The languages that there are texts in, as two-letter codes, besides English, which the texts are written in.
    static QStringList languages();

    // Takes over the texts of a language, such as "de" or "de_AT". False if there are none of it; nothing is translated
    // then.
    bool setLanguage(const QString &language);
};
