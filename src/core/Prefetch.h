#pragma once

#include "LXPixel.h"

/// Asks the memory for a row of pixels that is read some rows later. The processor follows one long
/// stream by itself, but not rows that lie far apart.
inline void PrefetchRow([[maybe_unused]] const LXRGBA32i* row, [[maybe_unused]] int width) {
#if defined(__GNUC__)
    constexpr int linePixels = 16;
    for (int x = 0; x < width; x += linePixels)
        __builtin_prefetch(row + x);
    // GCC drops calls of functions that do nothing but prefetch, unless they seem to do more.
    __asm__ volatile("");
#endif
}
