#pragma once

#include "geometry/ColourRange.h"

namespace LXRows {

/// Tells of each pixel whether it is in the range: bit i % 64 of word i / 64 is pixel i. Bits
/// beyond the last pixel, up to a whole word, are 0.
void MatchBits(const LXRGBA32i* row, unsigned int count, const LXColourRange& range,
               std::uint64_t* bits);

/// Pixels in the range become `fill`, all others 0. Sets `columns[i]` where pixel i is in the range
/// and leaves it where not; returns whether any was.
bool Select(LXRGBA32i* row, unsigned int count, const LXColourRange& range, const LXRGBA32i& fill,
            std::uint32_t* columns);

} // namespace LXRows
