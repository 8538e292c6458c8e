#include "convolution/BoxRows.h"

#include "LXBlurAccumulator.h"
#include "core/Clones.h"
#include "core/conversion/PixelWords.h"

#include <algorithm>
#include <cstdint>

namespace {

using Byte = std::uint8_t;

const Byte* BytesOf(const LXRGBA32i* row) {
    return static_cast<const Byte*>(static_cast<const void*>(row));
}
Byte* BytesOf(LXRGBA32i* row) {
    return static_cast<Byte*>(static_cast<void*>(row));
}

/// Up to this count a sum of bytes, with a rounding start below count, stays under 2^24 and is
/// exact as a float. The quotient of two such integers is never rounded up to the next one: it
/// falls short of that by at least 1 / count, which is more than half a unit in its last place. So
/// a float division truncates as the integer one.
constexpr int LargestFloatCount = 65000;

inline bool FitsFloats(const LXRows::WindowSize& size) {
    return size.filled == size.count && size.count > 0 && size.count <= LargestFloatCount;
}

LX_CLONED void SlideBytes(const Byte* __restrict leaving, const Byte* __restrict entering,
                          int* __restrict sums, float count, Byte* __restrict result,
                          unsigned int bytes) {
    for (unsigned int i = 0; i < bytes; ++i) {
        sums[i] += int(entering[i]) - int(leaving[i]);
        result[i] = static_cast<Byte>(static_cast<int>(static_cast<float>(sums[i]) / count));
    }
}

void SlideBytesWrapping(const Byte* leaving, const Byte* entering, int* sums, int count,
                        Byte* result, unsigned int bytes) {
    for (unsigned int i = 0; i < bytes; ++i) {
        sums[i] = LXWrappingAdd(sums[i], int(entering[i]) - int(leaving[i]));
        result[i] = static_cast<Byte>(LXWrappingDivide(sums[i], count));
    }
}

constexpr unsigned int Chunk = 128;

/// Differences, their running sums, and the means, each in a loop of its own: only the second is
/// bound to the order of the pixels.
LX_CLONED void SlideChunk(const Byte* __restrict leaving, const Byte* __restrict entering,
                          int* __restrict sums, float count, Byte* __restrict result,
                          unsigned int length) {
    int running[4 * Chunk];
    for (unsigned int i = 0; i < 4 * length; ++i)
        running[i] = int(entering[i]) - int(leaving[i]);
    int s0 = sums[0], s1 = sums[1], s2 = sums[2], s3 = sums[3];
    for (unsigned int i = 0; i < length; ++i) {
        running[4 * i] = s0 += running[4 * i];
        running[4 * i + 1] = s1 += running[4 * i + 1];
        running[4 * i + 2] = s2 += running[4 * i + 2];
        running[4 * i + 3] = s3 += running[4 * i + 3];
    }
    sums[0] = s0;
    sums[1] = s1;
    sums[2] = s2;
    sums[3] = s3;
    for (unsigned int i = 0; i < 4 * length; ++i)
        result[i] = static_cast<Byte>(static_cast<int>(static_cast<float>(running[i]) / count));
}

/// channel * alpha / 255, truncated: exact by a float product for all bytes.
inline int Premultiplied(std::uint32_t channel, int alpha) {
    constexpr float reciprocal = 1 / 255.0F;
    return static_cast<int>(static_cast<float>(static_cast<int>(channel & 0xFF) * alpha) *
                            reciprocal);
}

LX_CLONED void SlidePremul(const LXRGBA32i* __restrict leaving,
                           const LXRGBA32i* __restrict entering, int* __restrict blue,
                           int* __restrict green, int* __restrict red, int* __restrict alpha,
                           float count, LXRGBA32i* __restrict result, unsigned int columns) {
    for (unsigned int i = 0; i < columns; ++i) {
        const std::uint32_t in = LXWords::WordOf(entering[i]), out = LXWords::WordOf(leaving[i]);
        const int inAlpha = int(in >> 24), outAlpha = int(out >> 24);
        blue[i] += Premultiplied(in, inAlpha) - Premultiplied(out, outAlpha);
        green[i] += Premultiplied(in >> 8, inAlpha) - Premultiplied(out >> 8, outAlpha);
        red[i] += Premultiplied(in >> 16, inAlpha) - Premultiplied(out >> 16, outAlpha);
        alpha[i] += inAlpha - outAlpha;
        const int a = static_cast<int>(static_cast<float>(alpha[i]) / count);
        const float divisor = static_cast<float>(std::max(a, 1));
        const auto straight = [count, divisor](int sum) {
            const int mean = static_cast<int>(static_cast<float>(sum) / count);
            const int color = static_cast<int>(static_cast<float>(mean * 255) / divisor);
            return static_cast<std::uint32_t>(color & 0xFF);
        };
        const std::uint32_t word = straight(blue[i]) | straight(green[i]) << 8 |
                                   straight(red[i]) << 16 | static_cast<std::uint32_t>(a) << 24;
        result[i] = LXWords::PixelOf<LXRGBA32i>(a < 1 ? 0 : word);
    }
}

void SlidePremulWrapping(const LXRGBA32i* leaving, const LXRGBA32i* entering,
                         const LXRows::PremulSums& sums, int count, LXRGBA32i* result,
                         unsigned int columns) {
    for (unsigned int i = 0; i < columns; ++i) {
        const LXRGBA32i in = entering[i], out = leaving[i];
        const auto slide = [&](int& sum, int enters, int leaves) {
            sum = LXWrappingAdd(sum, enters - leaves);
            return LXWrappingDivide(sum, count);
        };
        const int blue = slide(sums.blue[i], in.blue * in.alpha / 255, out.blue * out.alpha / 255);
        const int green =
            slide(sums.green[i], in.green * in.alpha / 255, out.green * out.alpha / 255);
        const int red = slide(sums.red[i], in.red * in.alpha / 255, out.red * out.alpha / 255);
        const int alpha = slide(sums.alpha[i], in.alpha, out.alpha);
        const auto straight = [alpha](int mean) {
            return static_cast<Byte>(LXWrappingMultiply(mean, 255) / alpha);
        };
        result[i] = alpha < 1 ? LXRGBA32i{}
                              : LXRGBA32i{straight(blue), straight(green), straight(red),
                                          static_cast<Byte>(alpha)};
    }
}

} // namespace

void LXRows::SlideDown(const LXRGBA32i* leaving, const LXRGBA32i* entering, int* sums,
                       const WindowSize& size, LXRGBA32i* result, unsigned int columns) {
    if (FitsFloats(size))
        SlideBytes(BytesOf(leaving), BytesOf(entering), sums, static_cast<float>(size.count),
                   BytesOf(result), 4 * columns);
    else
        SlideBytesWrapping(BytesOf(leaving), BytesOf(entering), sums, size.count, BytesOf(result),
                           4 * columns);
}

void LXRows::SlideAlong(const LXRGBA32i* leaving, const LXRGBA32i* entering, int* sums,
                        const WindowSize& size, LXRGBA32i* result, unsigned int length) {
    for (unsigned int i = 0; i < length; i += Chunk) {
        const unsigned int n = std::min(Chunk, length - i);
        if (FitsFloats(size)) {
            SlideChunk(BytesOf(leaving + i), BytesOf(entering + i), sums,
                       static_cast<float>(size.count), BytesOf(result + i), n);
        } else {
            for (unsigned int j = i; j < i + n; ++j)
                SlideBytesWrapping(BytesOf(leaving + j), BytesOf(entering + j), sums, size.count,
                                   BytesOf(result + j), 4);
        }
    }
}

void LXRows::AddRow(const LXRGBA32i* row, int times, int* sums, unsigned int columns) {
    const Byte* const bytes = BytesOf(row);
    for (unsigned int i = 0; i < 4 * columns; ++i)
        sums[i] = LXWrappingAdd(sums[i], LXWrappingMultiply(bytes[i], times));
}

void LXRows::SlideDownPremul(const LXRGBA32i* leaving, const LXRGBA32i* entering,
                             const PremulSums& sums, const WindowSize& size, LXRGBA32i* result,
                             unsigned int columns) {
    if (FitsFloats(size))
        SlidePremul(leaving, entering, sums.blue, sums.green, sums.red, sums.alpha,
                    static_cast<float>(size.count), result, columns);
    else
        SlidePremulWrapping(leaving, entering, sums, size.count, result, columns);
}

void LXRows::AddRowPremul(const LXRGBA32i* row, const PremulSums& sums, unsigned int columns) {
    for (unsigned int i = 0; i < columns; ++i) {
        const LXRGBA32i p = row[i];
        sums.blue[i] = LXWrappingAdd(sums.blue[i], p.blue * p.alpha / 255);
        sums.green[i] = LXWrappingAdd(sums.green[i], p.green * p.alpha / 255);
        sums.red[i] = LXWrappingAdd(sums.red[i], p.red * p.alpha / 255);
        sums.alpha[i] = LXWrappingAdd(sums.alpha[i], p.alpha);
    }
}
