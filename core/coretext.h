#pragma once

#include <QtCore/QCoreApplication>

// Translates the texts of what has no class of its own to do so. Private to the two libraries.
struct CoreText
{
    Q_DECLARE_TR_FUNCTIONS(CoreText)
};
