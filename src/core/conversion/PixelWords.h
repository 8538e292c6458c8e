#pragma once

#include "LXPixel.h"

#include <cstdint>
#include <cstring>
#include <type_traits>

/// Pixels as words, which is how the compiler vectorises a row of them: channels come and go by
/// shift and mask.
namespace LXWords {

/// 32 or 64 bits, the first channel lowest.
template <class Pixel>
using WordType = std::conditional_t<sizeof(Pixel) == 4, std::uint32_t, std::uint64_t>;

template <class Pixel>
inline WordType<Pixel> WordOf(const Pixel& pixel) {
    WordType<Pixel> word;
    static_assert(sizeof word == sizeof pixel);
    std::memcpy(&word, &pixel, sizeof word);
    return word;
}

/// The spare bytes of a pixel that has some are those of the word: 0 in all our uses.
template <class Pixel>
inline Pixel PixelOf(WordType<Pixel> word) {
    Pixel pixel;
    std::memcpy(&pixel, &word, sizeof word);
    return pixel;
}

/// Signed, as signed conversions to floating point are the fast ones.
template <class Word>
inline int Byte(Word word, int index) {
    return static_cast<int>(word >> (8 * index) & 0xFF);
}

/// A stored byte as a fraction: it is taken for the high byte of 16 bits, so 255 reads as 0.996.
inline double Fraction(int byte) {
    return (byte << 8) / 65535.0;
}

/// A fraction as a stored byte: rounded at 16 bits, then cut to the high byte.
inline int StoredByte(double fraction) {
    return static_cast<int>(fraction * 65535.0 + 0.5) >> 8;
}

} // namespace LXWords
