#pragma once

#include <cstdint>

/// Interpolation of single channels, from 0 to 255, in the exact order of their operations. The
/// results are to be truncated and then limited to 0 .. 255.
namespace LXInterpolation {

/// Takes a result that is a whole number, but for rounding, to that number.
constexpr double Epsilon = 2.220446049250313e-16;

/// Between a and b; beyond them if t is not in 0 .. 1.
inline double Linear(int a, int b, double t) {
    return (b - a) * t + (a + 0.5) + Epsilon;
}

/// The cubic through p1 and p2 with the slopes p2 - p0 and p3 - p1, twice those of Catmull-Rom.
inline double Cubic(int p0, int p1, int p2, int p3, double t) {
    const int a = p1 - p0 - p2 + p3;
    const int b = p0 - p1 - a;
    const int c = p2 - p0;
    return c * t + (b * t * t + (a * t * t * t + 0.5)) + p1 + Epsilon;
}

} // namespace LXInterpolation

namespace LXRows {

/// Rows of pixels as words, each channel interpolated for itself. Of `t` -0.5 to 1 are meant.
void Linear(const std::uint32_t* a, const std::uint32_t* b, const double* t, std::uint32_t* out,
            unsigned int count);
void Cubic(const std::uint32_t* p0, const std::uint32_t* p1, const std::uint32_t* p2,
           const std::uint32_t* p3, const double* t, std::uint32_t* out, unsigned int count);

} // namespace LXRows
