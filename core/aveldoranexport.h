#pragma once

#include <QtCore/qglobal.h>

// Marks what libaveldoran (core/) and libaveldorandata (all other folders) export; everything else stays hidden.

#ifdef AVELDORAN_CORE_BUILD
#define AVELDORAN_CORE_EXPORT Q_DECL_EXPORT
#else
#define AVELDORAN_CORE_EXPORT Q_DECL_IMPORT
#endif

#ifdef AVELDORAN_DATA_BUILD
#define AVELDORAN_DATA_EXPORT Q_DECL_EXPORT
#else
#define AVELDORAN_DATA_EXPORT Q_DECL_IMPORT
#endif
