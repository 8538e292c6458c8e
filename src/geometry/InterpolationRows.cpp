#include "geometry/Interpolation.h"

#include "core/Clones.h"
#include "core/conversion/PixelWords.h"

namespace {

using LXWords::Byte;

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

LX_CLONED void LinearRow(const std::uint32_t* a, const std::uint32_t* b, const double* t,
                         std::uint32_t* out, unsigned int count) {
    for (unsigned int i = 0; i < count; ++i)
        out[i] = LinearChannel(a[i], b[i], t[i], 0) | LinearChannel(a[i], b[i], t[i], 1) |
                 LinearChannel(a[i], b[i], t[i], 2) | LinearChannel(a[i], b[i], t[i], 3);
}

LX_CLONED void CubicRow(const std::uint32_t* p0, const std::uint32_t* p1, const std::uint32_t* p2,
                        const std::uint32_t* p3, const double* t, std::uint32_t* out,
                        unsigned int count) {
    for (unsigned int i = 0; i < count; ++i)
        out[i] = CubicChannel(p0[i], p1[i], p2[i], p3[i], t[i], 0) |
                 CubicChannel(p0[i], p1[i], p2[i], p3[i], t[i], 1) |
                 CubicChannel(p0[i], p1[i], p2[i], p3[i], t[i], 2) |
                 CubicChannel(p0[i], p1[i], p2[i], p3[i], t[i], 3);
}

} // namespace

void LXRows::Linear(const std::uint32_t* a, const std::uint32_t* b, const double* t,
                    std::uint32_t* out, unsigned int count) {
    LinearRow(a, b, t, out, count);
}

void LXRows::Cubic(const std::uint32_t* p0, const std::uint32_t* p1, const std::uint32_t* p2,
                   const std::uint32_t* p3, const double* t, std::uint32_t* out,
                   unsigned int count) {
    CubicRow(p0, p1, p2, p3, t, out, count);
}
