#include "geometry/MatchRows.h"

#include "core/Clones.h"
#include "core/conversion/PixelWords.h"

#include <algorithm>
#include <cstring>

namespace {

using LXWords::Byte;
using LXWords::PixelOf;
using LXWords::WordOf;

/// Negative if the channel is outside the range.
inline int Margin(std::uint32_t pixel, std::uint32_t low, std::uint32_t high, int channel) {
    return (Byte(pixel, channel) - Byte(low, channel)) |
           (Byte(high, channel) - Byte(pixel, channel));
}

inline bool Matches(std::uint32_t pixel, std::uint32_t low, std::uint32_t high) {
    return (Margin(pixel, low, high, 0) | Margin(pixel, low, high, 1) |
            Margin(pixel, low, high, 2) | Margin(pixel, low, high, 3)) >= 0;
}

LX_CLONED void MatchBytes(const LXRGBA32i* row, unsigned int count, std::uint32_t low,
                          std::uint32_t high, std::uint8_t* matches) {
    for (unsigned int i = 0; i < count; ++i)
        matches[i] = Matches(WordOf(row[i]), low, high) ? 1 : 0;
}

LX_CLONED std::uint32_t SelectRow(LXRGBA32i* row, unsigned int count, std::uint32_t low,
                                  std::uint32_t high, std::uint32_t fill, std::uint32_t* columns) {
    std::uint32_t any = 0;
    for (unsigned int i = 0; i < count; ++i) {
        const std::uint32_t match = Matches(WordOf(row[i]), low, high) ? ~0U : 0U;
        row[i] = PixelOf<LXRGBA32i>(fill & match);
        columns[i] |= match;
        any |= match;
    }
    return any;
}

/// Eight bytes of 0 or 1 as eight bits: the product brings byte i to bit 56 + i.
inline std::uint64_t Gather(const std::uint8_t* bytes) {
    std::uint64_t word;
    std::memcpy(&word, bytes, sizeof word);
    return (word * 0x0102040810204080U) >> 56;
}

} // namespace

void LXRows::MatchBits(const LXRGBA32i* row, unsigned int count, const LXColourRange& range,
                       std::uint64_t* bits) {
    const std::uint32_t low = WordOf(range.low), high = WordOf(range.high);
    for (unsigned int first = 0; first < count; first += 64) {
        std::uint8_t matches[64] = {};
        MatchBytes(row + first, std::min(count - first, 64U), low, high, matches);
        std::uint64_t word = 0;
        for (unsigned int i = 0; i < 64; i += 8)
            word |= Gather(matches + i) << i;
        *bits++ = word;
    }
}

bool LXRows::Select(LXRGBA32i* row, unsigned int count, const LXColourRange& range,
                    const LXRGBA32i& fill, std::uint32_t* columns) {
    return SelectRow(row, count, WordOf(range.low), WordOf(range.high), WordOf(fill), columns) != 0;
}
