#pragma once

#include <QtCore/QtAlgorithms>

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

constexpr Surroundings AllAround = (Surroundings(1) << 25) - 1;

/// The eight pixels next to one.
constexpr Surroundings Neighbours = Windows[0].others;

/// The first window that is known but for the pixel itself, or null. All are looked at, as which it
/// will be is hard for the processor to predict.
inline const Window* FindWindow(Surroundings known) {
    unsigned int complete = 0, bit = 1;
    for (const Window& window : Windows) {
        complete |= (known & window.others) == window.others ? bit : 0;
        bit *= 2;
    }
    return complete != 0 ? &Windows[qCountTrailingZeroBits(complete)] : nullptr;
}

/// The channels of pixels, summed side by side in two words.
class ChannelSums {
public:
    /// A pixel as a word; up to 256 of them.
    void Add(std::uint32_t pixel) {
        m_even += pixel & Even;
        m_odd += pixel >> 8 & Even;
    }
    void Remove(std::uint32_t pixel) {
        m_even -= pixel & Even;
        m_odd -= pixel >> 8 & Even;
    }
    /// Each sum plus `rounding`, shifted right by 3: 4 rounds the mean of eight, 0 truncates it.
    std::uint32_t Eighth(std::uint32_t rounding) const {
        const std::uint32_t each = rounding << 16 | rounding;
        return ((m_even + each) >> 3 & Even) | ((m_odd + each) >> 3 & Even) << 8;
    }

private:
    static constexpr std::uint32_t Even = 0x00FF00FF;
    std::uint32_t m_even = 0, m_odd = 0;
};

/// A pixel of a mask is known if it is below 0xFF000000 as a word, whatever its colours.
constexpr bool IsKnownMark(std::uint32_t word) {
    return word < 0xFF000000;
}

/// Whether the eight neighbours are known. Such a hole of one pixel has no gradient in itself, so
/// the band around the hole would never reach it.
constexpr bool IsSurrounded(Surroundings known) {
    return (known & Neighbours) == Neighbours;
}

} // namespace Inpainting
