#pragma once

#include "LXPixel.h"

/// The sums of box windows, a row of pixels at a time. Leaving and entering pixels are subtracted
/// and added, and the means sum / count come out, truncated. Sums and counts wrap around at 2^32.
namespace LXRows {

/// How many pixels are in a window, and the odd number that its sums are divided by: mostly the
/// same.
struct WindowSize {
    int filled;
    int count;
};

/// Windows side by side that slide down: sums[4 i + c] is that of channel c, in the order of bytes,
/// in column i of `columns`.
void SlideDown(const LXRGBA32i* leaving, const LXRGBA32i* entering, int* sums,
               const WindowSize& size, LXRGBA32i* result, unsigned int columns);
/// One window that slides along `length` pixels; sums has four elements.
void SlideAlong(const LXRGBA32i* leaving, const LXRGBA32i* entering, int* sums,
                const WindowSize& size, LXRGBA32i* result, unsigned int length);
/// A row enters as often as told.
void AddRow(const LXRGBA32i* row, int times, int* sums, unsigned int columns);

/// Sums of alpha and of the premultiplied colours, each in an array of its own.
struct PremulSums {
    int *blue, *green, *red, *alpha;
};

/// As SlideDown, with the colours made straight again: (sum / count) * 255 / alpha.
void SlideDownPremul(const LXRGBA32i* leaving, const LXRGBA32i* entering, const PremulSums& sums,
                     const WindowSize& size, LXRGBA32i* result, unsigned int columns);
void AddRowPremul(const LXRGBA32i* row, const PremulSums& sums, unsigned int columns);

} // namespace LXRows
