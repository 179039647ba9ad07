#pragma once

#include <QtCore/QStringList>

// How many characters to insert, remove or replace, or neighbours to swap, until one word is the other.
int editDistance(const QString &one, const QString &other);

// The word that a mistyped one most likely meant, empty if none is near.
QString nearestWord(const QString &typed, const QStringList &words);
