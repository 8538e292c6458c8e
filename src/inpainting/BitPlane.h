#pragma once

#include "inpainting/Windows.h"

#include <cstring>
#include <vector>

namespace Inpainting {

/// A set of pixels, one bit for each of a picture. Nothing up to two pixels outside is in it, and
/// may be asked for.
class BitPlane {
public:
    BitPlane(int width, int height)
        : m_stride((std::size_t(width) + 2 * Margin) / 8 + sizeof(std::uint32_t)),
          m_bits(m_stride * (std::size_t(height) + 2 * Margin)) {}

    /// For pixels inside.
    void Add(int x, int y) {
        const std::size_t at = std::size_t(x) + Margin;
        m_bits[Row(y + Margin) + at / 8] |= Bit8(at);
    }
    void Remove(int x, int y) {
        const std::size_t at = std::size_t(x) + Margin;
        m_bits[Row(y + Margin) + at / 8] &= static_cast<std::uint8_t>(~Bit8(at));
    }

    /// Which pixels around one are in the set.
    Surroundings Around(int x, int y) const {
        Surroundings found = 0;
        const std::uint8_t* bytes = m_bits.data() + Row(y) + std::size_t(x) / 8;
        for (int i = 0; i < 5; ++i) {
            std::uint32_t bits;
            std::memcpy(&bits, bytes, sizeof bits);
            found |= (bits >> (x & 7) & 31) << (5 * i);
            bytes += m_stride;
        }
        return found;
    }

private:
    static constexpr int Margin = 2;
    static std::uint8_t Bit8(std::size_t x) { return static_cast<std::uint8_t>(1U << (x & 7)); }
    std::size_t Row(int y) const { return std::size_t(y) * m_stride; }

    std::size_t m_stride;
    std::vector<std::uint8_t> m_bits;
};

} // namespace Inpainting
