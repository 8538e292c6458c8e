#pragma once

#include "inpainting/Runs.h"

#include <array>

/// How a hole grows together: a pixel is filled with the mean of the eight others of a 3 x 3 window
/// that it lies in, as soon as these are all known. Both inpaintings choose the window here; they
/// differ in how they round the mean.

namespace Inpainting {

/// Which pixels around one are known, two to each side: (dx, dy) away is bit 5 (dy + 2) + dx + 2.
using Surroundings = std::uint32_t;

constexpr Surroundings Bit(int dx, int dy) {
    return Surroundings(1) << (5 * (dy + 2) + dx + 2);
}

/// visit(dx, dy) for the pixels of the window around (centreX, centreY) but for (0, 0), which is
/// the one to be filled.
template <class Visit>
constexpr void ForOthers(int centreX, int centreY, Visit visit) {
    for (int dy = centreY - 1; dy <= centreY + 1; ++dy)
        for (int dx = centreX - 1; dx <= centreX + 1; ++dx)
            if (dx != 0 || dy != 0)
                visit(dx, dy);
}

/// A 3 x 3 window, by its centre as seen from the pixel.
struct Window {
    int centreX, centreY;
};

/// In the order in which they are tried: the pixel in the middle of its window, of its bottom, top,
/// right and left side, and at its bottom right, bottom left, top left and top right corner.
inline constexpr Window Windows[] = {{0, 0},   {0, -1}, {0, 1}, {-1, 0}, {1, 0},
                                     {-1, -1}, {1, -1}, {1, 1}, {-1, 1}};

/// The eight pixels next to one.
constexpr Surroundings Neighbours = [] {
    Surroundings bits = 0;
    ForOthers(0, 0, [&bits](int dx, int dy) { bits |= Bit(dx, dy); });
    return bits;
}();

/// The index of the first window in each set of windows: (centreX, centreY) is bit
/// 3 (centreY + 1) + centreX + 1 of it.
inline constexpr auto FirstWindows = [] {
    std::array<std::uint8_t, 512> first = {};
    for (unsigned int set = 1; set < first.size(); ++set)
        while ((set >> (3 * (Windows[first[set]].centreY + 1) + Windows[first[set]].centreX + 1) &
                1) == 0)
            ++first[set];
    return first;
}();

/// The first window that is known but for the pixel itself, or null.
inline const Window* FindWindow(Surroundings known) {
    // Bit by bit, whether three in a row are known, and then three such rows: a bit of `squares`
    // stands for the square below and to the right of it.
    const Surroundings all = known | Bit(0, 0), rows = all & all >> 1 & all >> 2;
    const Surroundings squares = rows & rows >> 5 & rows >> 10;
    const Surroundings windows = (squares & 7) | (squares >> 2 & 7 << 3) | (squares >> 4 & 7 << 6);
    return windows != 0 ? &Windows[FirstWindows[windows]] : nullptr;
}

/// Which pixels of a row have a window, bit by bit, from what is known in five rows. The bits at
/// the ends lack neighbours, and mean nothing.
constexpr WideRun HaveWindow(WideRun above2, WideRun above, WideRun here, WideRun below,
                             WideRun below2) {
    const auto threes = [](WideRun row) { return row & row >> 1 & row >> 2; };
    const WideRun a2 = threes(above2), a = threes(above), b = threes(below), b2 = threes(below2);
    // The two other rows of a window; and the pixel as the first, the second and the third of its.
    const WideRun others = (a2 & a) | (a & b) | (b & b2);
    return (here >> 1 & here >> 2 & others) | (here << 1 & here >> 1 & others << 1) |
           (here << 2 & here << 1 & others << 2);
}

/// Which pixels of a row have eight known neighbours, from three rows.
constexpr WideRun AreSurrounded(WideRun above, WideRun here, WideRun below) {
    const auto aroundEach = [](WideRun row) { return row << 1 & row & row >> 1; };
    return aroundEach(above) & here << 1 & here >> 1 & aroundEach(below);
}

} // namespace Inpainting
