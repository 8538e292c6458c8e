#pragma once

#include "LXPixel.h"

namespace LXRows {

/// Rows of a mask, which has its value in alpha and colours 0: of the alpha, or the brightness
/// (11 red + 16 green + 5 blue) >> 5, of other pixels.
void AlphaToMask(const LXRGBA32i* in, LXRGBA32i* out, unsigned int count);
void BrightnessToMask(const LXRGBA32i* in, LXRGBA32i* out, unsigned int count);

/// Complements the bits of `mask`.
void Complement(LXRGBA32i* pixels, unsigned int count, const LXRGBA32i& mask);

} // namespace LXRows
