#pragma once

#include "LXPixel.h"
#include "geometry/PositionRows.h"

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

/// Rows of pixels, each channel interpolated for itself. Of `t` -0.5 to 1 are meant.
///
/// Along a source row: the two or four pixels for place i lie side by side from 2 i or 4 i on.
void LinearAlong(const LXRGBA32i* pairs, const double* t, LXRGBA32i* out, unsigned int count);
void CubicAlong(const LXRGBA32i* fours, const double* t, LXRGBA32i* out, unsigned int count);

/// Across two or four rows, RunLength pixels apart, of which each has one pixel for place i.
void LinearAcross(const LXRGBA32i* rows, const double* t, LXRGBA32i* out, unsigned int count);
void CubicAcross(const LXRGBA32i* rows, const double* t, LXRGBA32i* out, unsigned int count);

} // namespace LXRows
