#include "geometry/Interpolation.h"

#include "core/Clones.h"
#include "core/conversion/PixelWords.h"

#include <algorithm>
#include <cstddef>

namespace {

using LXWords::Byte;
using LXWords::PixelOf;
using LXWords::WordOf;

/// Limited and then truncated, which is the same as the other way round for what fits an integer.
inline std::uint32_t Channel(double value, int index) {
    const double low = value > 0 ? value : 0;
    const double limited = low < 255 ? low : 255;
    return static_cast<std::uint32_t>(static_cast<int>(limited)) << (8 * index);
}

inline std::uint32_t LinearChannel(std::uint32_t a, std::uint32_t b, double t, int index) {
    return Channel(LXInterpolation::Linear(Byte(a, index), Byte(b, index), t), index);
}

inline std::uint32_t CubicChannel(std::uint32_t p0, std::uint32_t p1, std::uint32_t p2,
                                  std::uint32_t p3, double t, int index) {
    return Channel(LXInterpolation::Cubic(Byte(p0, index), Byte(p1, index), Byte(p2, index),
                                          Byte(p3, index), t),
                   index);
}

/// Pixel k for place i has the index Step i + Distance k. (One pointer for all of them: of several
/// the compiler does not see that they lie side by side.)
template <std::size_t Step, std::size_t Distance>
LX_CLONED void LinearRow(const LXRGBA32i* in, const double* t, LXRGBA32i* out, unsigned int count) {
    for (std::size_t i = 0; i < count; ++i) {
        const std::uint32_t a = WordOf(in[Step * i]), b = WordOf(in[Step * i + Distance]);
        out[i] = PixelOf<LXRGBA32i>(LinearChannel(a, b, t[i], 0) | LinearChannel(a, b, t[i], 1) |
                                    LinearChannel(a, b, t[i], 2) | LinearChannel(a, b, t[i], 3));
    }
}

// The same in fixed point, which is twice as fast and nearly always enough: t is cut to 22 fraction
// bits, so that the sum is off by less than 255 units, the rounding of the doubles included. Where
// the two ends of that range truncate to one level, the doubles do so too; a t that needs no more
// bits has no range. The sum takes 31 bits and the sign.

constexpr int FractionBits = 22;

struct FixedFraction {
    int value;
    int slack;
};

inline FixedFraction FixedOf(double t) {
    const double scaled = t * (1 << FractionBits);
    const int value = static_cast<int>(scaled);
    return {value, value == scaled ? 0 : 256};
}

/// Gathers in `differing` the bits in which the ends of a range differ.
inline std::uint32_t FixedChannel(std::uint32_t a, std::uint32_t b, FixedFraction t, int index,
                                  int& differing) {
    const int from = Byte(a, index), to = Byte(b, index);
    const int sum = (to - from) * t.value + ((from << FractionBits) + (1 << (FractionBits - 1)));
    const int least = (sum - t.slack) >> FractionBits, most = (sum + t.slack) >> FractionBits;
    differing |= least ^ most;
    const int limited = std::min(std::max(least, 0), 255);
    return static_cast<std::uint32_t>(limited) << (8 * index);
}

/// False if there is a level that the fixed point leaves open.
template <std::size_t Step, std::size_t Distance>
LX_CLONED bool FixedLinearRow(const LXRGBA32i* in, const double* t, LXRGBA32i* out,
                              unsigned int count) {
    int differing = 0;
    for (std::size_t i = 0; i < count; ++i) {
        const std::uint32_t a = WordOf(in[Step * i]), b = WordOf(in[Step * i + Distance]);
        const FixedFraction fixed = FixedOf(t[i]);
        out[i] = PixelOf<LXRGBA32i>(
            FixedChannel(a, b, fixed, 0, differing) | FixedChannel(a, b, fixed, 1, differing) |
            FixedChannel(a, b, fixed, 2, differing) | FixedChannel(a, b, fixed, 3, differing));
    }
    return differing == 0;
}

template <std::size_t Step, std::size_t Distance>
void Linear(const LXRGBA32i* in, const double* t, LXRGBA32i* out, unsigned int count) {
    if (!FixedLinearRow<Step, Distance>(in, t, out, count))
        LinearRow<Step, Distance>(in, t, out, count);
}

template <std::size_t Step, std::size_t Distance>
LX_CLONED void CubicRow(const LXRGBA32i* in, const double* t, LXRGBA32i* out, unsigned int count) {
    for (std::size_t i = 0; i < count; ++i) {
        const LXRGBA32i* const p = in + Step * i;
        const std::uint32_t p0 = WordOf(p[0]), p1 = WordOf(p[Distance]);
        const std::uint32_t p2 = WordOf(p[2 * Distance]), p3 = WordOf(p[3 * Distance]);
        out[i] = PixelOf<LXRGBA32i>(
            CubicChannel(p0, p1, p2, p3, t[i], 0) | CubicChannel(p0, p1, p2, p3, t[i], 1) |
            CubicChannel(p0, p1, p2, p3, t[i], 2) | CubicChannel(p0, p1, p2, p3, t[i], 3));
    }
}

} // namespace

void LXRows::LinearAlong(const LXRGBA32i* pairs, const double* t, LXRGBA32i* out,
                         unsigned int count) {
    Linear<2, 1>(pairs, t, out, count);
}

void LXRows::CubicAlong(const LXRGBA32i* fours, const double* t, LXRGBA32i* out,
                        unsigned int count) {
    CubicRow<4, 1>(fours, t, out, count);
}

void LXRows::LinearAcross(const LXRGBA32i* rows, const double* t, LXRGBA32i* out,
                          unsigned int count) {
    Linear<1, RunLength>(rows, t, out, count);
}

void LXRows::CubicAcross(const LXRGBA32i* rows, const double* t, LXRGBA32i* out,
                         unsigned int count) {
    CubicRow<1, RunLength>(rows, t, out, count);
}
