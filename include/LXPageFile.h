#pragma once

#include "LXExport.h"

class QString;

/// Creates the file, or empties the one that is there, and makes it `bytes` long. Nothing is
/// reported. Both names do the same.
LIBIMAGE_EXPORT void ExtendsCommon(const QString& path, unsigned long long bytes);
LIBIMAGE_EXPORT void ExtendsFile(const QString& path, unsigned long long bytes);
