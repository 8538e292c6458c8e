#pragma once

/// Asks the memory for a row of pixels that is read some rows later. The processor follows one long
/// stream by itself, but not rows that lie far apart.
template <class Pixel>
inline void PrefetchRow([[maybe_unused]] const Pixel* row, [[maybe_unused]] int width) {
#if defined(__GNUC__)
    constexpr int linePixels = 64 / int(sizeof(Pixel));
    for (int x = 0; x < width; x += linePixels)
        __builtin_prefetch(row + x);
    // GCC drops calls of functions that do nothing but prefetch, unless they seem to do more.
    __asm__ volatile("");
#endif
}
