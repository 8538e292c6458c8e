#pragma once

#include "LXPixel.h"

/// The arithmetic of the conversions: each function converts `count` pixels in a row. The rows must
/// not overlap.
namespace LXRows {

/// c << 8, and the high byte back.
void Widen(const LXRGBA32i* in, LXRGBA64i* out, unsigned int count);
void Narrow(const LXRGBA64i* in, LXRGBA32i* out, unsigned int count);

/// MakeHalfFloat<unsigned char> and MakeUChar of each channel.
void ToHalf(const LXRGBA32i* in, LXRGBA64f* out, unsigned int count);
void FromHalf(const LXRGBA64f* in, LXRGBA32i* out, unsigned int count);

void ToCMYK(const LXRGBA32i* in, LXCMYKA* out, unsigned int count);
void FromCMYK(const LXCMYKA* in, LXRGBA32i* out, unsigned int count);

void ToHSL(const LXRGBA32i* in, LXHSLA* out, unsigned int count);
void FromHSL(const LXHSLA* in, LXRGBA32i* out, unsigned int count);

} // namespace LXRows
