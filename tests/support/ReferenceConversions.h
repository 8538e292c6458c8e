#pragma once

#include "LXPixel.h"

/// The pixel conversions written straight from their formulas, in plain steps and doubles. They
/// share nothing with the library.
namespace Reference {

LXCMYKA ToCMYK(const LXRGBA32i& pixel);
LXRGBA32i FromCMYK(const LXCMYKA& pixel);
LXHSLA ToHSL(const LXRGBA32i& pixel);
LXRGBA32i FromHSL(const LXHSLA& pixel);

/// A value on the half-float scale as a half: rounded half up in magnitude.
unsigned short HalfOf(float value);
/// The value of half bits.
double ValueOfHalf(unsigned short bits);

} // namespace Reference
