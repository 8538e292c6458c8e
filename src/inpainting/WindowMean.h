#pragma once

#include "inpainting/Windows.h"

#include <cstddef>
#include <cstring>

/// The new colour of a pixel, from the window that was found for it.

namespace Inpainting {

/// Pixels as words, in rows that are `stride` pixels apart.
struct Pixels {
    std::uint32_t* first;
    std::ptrdiff_t stride;
    std::uint32_t& At(int x, int y) const { return first[y * stride + x]; }
};

/// The mean of the eight others in a window of (x, y), channel by channel: each sum plus
/// `rounding`, shifted right by 3. 4 rounds the mean, 0 truncates it.
inline std::uint32_t WindowMean(const Pixels& pixels, int x, int y, const Window& window,
                                std::uint32_t rounding) {
    // Two pixels in a word, and then every other channel of them, leave 8 bits to each for the sum.
    using Pair = std::uint64_t;
    constexpr Pair mask = 0x00FF00FF00FF00FF;
    Pair even = 0, odd = 0;
    const auto add = [&](Pair pair) {
        even += pair & mask;
        odd += pair >> 8 & mask;
    };
    const std::uint32_t* const row = &pixels.At(x + window.centreX - 1, y + window.centreY - 1);
    for (int i = 0; i < 3; ++i) {
        Pair pair;
        std::memcpy(&pair, row + i * pixels.stride, sizeof pair);
        add(pair);
    }
    add(Pair(row[2]) << 32 | row[2 + pixels.stride]);
    add(row[2 + 2 * pixels.stride]);
    const Pair own = pixels.At(x, y), each = Pair(rounding) << 16 | rounding;
    const Pair evenSum = even + (even >> 32) - (own & mask) + each;
    const Pair oddSum = odd + (odd >> 32) - (own >> 8 & mask) + each;
    constexpr Pair low = 0x00FF00FF;
    return static_cast<std::uint32_t>((evenSum >> 3 & low) | (oddSum >> 3 & low) << 8);
}

} // namespace Inpainting
