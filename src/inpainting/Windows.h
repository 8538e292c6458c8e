#pragma once

#include "LXPixel.h"

#include <cstdint>

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

struct Window {
    int centreX, centreY; ///< seen from the pixel
    Surroundings others;

    constexpr Window(int x, int y) : centreX(x), centreY(y), others(0) {
        Surroundings bits = 0;
        ForOthers(x, y, [&bits](int dx, int dy) { bits |= Bit(dx, dy); });
        others = bits;
    }
};

/// In the order in which they are tried: the pixel in the middle of its window, of its bottom, top,
/// right and left side, and at its bottom right, bottom left, top left and top right corner.
constexpr Window Windows[] = {{0, 0},   {0, -1}, {0, 1}, {-1, 0}, {1, 0},
                              {-1, -1}, {1, -1}, {1, 1}, {-1, 1}};

/// The eight pixels next to one.
constexpr Surroundings Neighbours = Windows[0].others;

/// The first window that is known but for the pixel itself, or null.
inline const Window* FindWindow(Surroundings known) {
    for (const Window& window : Windows)
        if ((known & window.others) == window.others)
            return &window;
    return nullptr;
}

/// A pixel of a mask is known if it is below 0xFF000000 as a word, whatever its colours.
inline bool IsKnownMark(std::uint32_t word) {
    return word < 0xFF000000;
}
inline bool IsKnownMark(const LXRGBA32i& pixel) {
    return pixel.alpha < 255;
}

/// The surroundings of (x, y), asking `isKnown(x, y)` for each.
template <class IsKnown>
Surroundings LookAround(int x, int y, IsKnown isKnown) {
    Surroundings known = 0;
    for (int dy = -2; dy <= 2; ++dy)
        for (int dx = -2; dx <= 2; ++dx)
            known |= isKnown(x + dx, y + dy) ? Bit(dx, dy) : 0;
    return known;
}

/// The same where the mask has them side by side: `row(i)` points at the first of the five pixels
/// in the row i of the five.
template <class Row>
Surroundings LookAroundInside(Row row) {
    Surroundings known = 0;
    for (int i = 0; i < 5; ++i) {
        const auto* const pixels = row(i);
        for (int k = 0; k < 5; ++k)
            known |= IsKnownMark(pixels[k]) ? Bit(k - 2, i - 2) : 0;
    }
    return known;
}

/// Whether the eight neighbours of (x, y) are known. Such a hole of one pixel has no gradient in
/// itself, so the band around the hole would never reach it.
template <class IsKnown>
bool IsSurrounded(int x, int y, IsKnown isKnown) {
    bool surrounded = true;
    ForOthers(0, 0, [&](int dx, int dy) { surrounded = surrounded && isKnown(x + dx, y + dy); });
    return surrounded;
}

} // namespace Inpainting
