#include "geometry/Interpolation.h"

#include "core/Clones.h"
#include "core/conversion/PixelWords.h"

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
    LinearRow<2, 1>(pairs, t, out, count);
}

void LXRows::CubicAlong(const LXRGBA32i* fours, const double* t, LXRGBA32i* out,
                        unsigned int count) {
    CubicRow<4, 1>(fours, t, out, count);
}

void LXRows::LinearAcross(const LXRGBA32i* rows, const double* t, LXRGBA32i* out,
                          unsigned int count) {
    LinearRow<1, RunLength>(rows, t, out, count);
}

void LXRows::CubicAcross(const LXRGBA32i* rows, const double* t, LXRGBA32i* out,
                         unsigned int count) {
    CubicRow<1, RunLength>(rows, t, out, count);
}
