#pragma once

#include <QtCore/qglobal.h>

/// Marks what the shared library exports; everything else stays hidden in it.
#if defined(LIBIMAGE_BUILD)
#define LIBIMAGE_EXPORT Q_DECL_EXPORT
#else
#define LIBIMAGE_EXPORT Q_DECL_IMPORT
#endif
