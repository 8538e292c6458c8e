#pragma once

#include "inpainting/Windows.h"

#include <cstring>
#include <vector>

namespace Inpainting {

/// A set of pixels, one bit for each of a picture; empty at first. Pixels up to two outside the
/// picture may be asked for, and are never in it.
class BitPlane {
public:
    BitPlane(int width, int height)
        : m_width(width), m_stride((std::size_t(width) + 2 * Margin) / 8 + sizeof(Bits)),
          m_bytes(m_stride * (std::size_t(height) + 2 * Margin)) {}

    bool Has(int x, int y) const { return (At(x, y)[0] >> Shift(x) & 1) != 0; }
    void Add(int x, int y) { At(x, y)[0] |= static_cast<std::uint8_t>(1U << Shift(x)); }
    void Remove(int x, int y) { At(x, y)[0] &= static_cast<std::uint8_t>(~(1U << Shift(x))); }
    void AddRow(int y) {
        for (int x = 0; x < m_width; ++x)
            if (Shift(x) == 0 && x + 8 <= m_width)
                At(x, y)[0] = 0xFF, x += 7;
            else
                Add(x, y);
    }

    /// Which pixels around one are in the set.
    Surroundings Around(int x, int y) const {
        const std::uint8_t* bytes = At(x - Margin, y - Margin);
        Surroundings found = 0;
        for (int row = 0; row < 25; row += 5, bytes += m_stride)
            found |= (Load(bytes) >> Shift(x - Margin) & 31) << row;
        return found;
    }

    /// The same, of those that are asked for; and takes them out of the set.
    Surroundings TakeAround(int x, int y, Surroundings wanted) {
        const unsigned int shift = Shift(x - Margin);
        std::uint8_t* bytes = At(x - Margin, y - Margin);
        Surroundings found = 0;
        for (int row = 0; row < 25; row += 5, bytes += m_stride) {
            const Bits bits = Load(bytes), taken = (bits >> shift) & (wanted >> row) & 31;
            const Bits left = bits & ~(taken << shift);
            std::memcpy(bytes, &left, sizeof left);
            found |= taken << row;
        }
        return found;
    }

private:
    using Bits = std::uint32_t;
    static constexpr int Margin = 2;

    static Bits Load(const std::uint8_t* bytes) {
        Bits bits;
        std::memcpy(&bits, bytes, sizeof bits);
        return bits;
    }
    static unsigned int Shift(int x) { return unsigned(x + Margin) & 7; }
    std::size_t Index(int x, int y) const {
        return std::size_t(y + Margin) * m_stride + std::size_t(x + Margin) / 8;
    }
    const std::uint8_t* At(int x, int y) const { return m_bytes.data() + Index(x, y); }
    std::uint8_t* At(int x, int y) { return m_bytes.data() + Index(x, y); }

    int m_width;
    std::size_t m_stride;
    std::vector<std::uint8_t> m_bytes;
};

} // namespace Inpainting
