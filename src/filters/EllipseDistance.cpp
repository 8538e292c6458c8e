#include "LXVignetteProcessing.h"

#include <cmath>
#include <utility>

/// The closest point of an ellipse, by bisection. Distance, x0 and x1 are returned, the last two 0
/// where they are not computed.
///
/// Three things are this function's own, and are kept as they stand, since they are how it is
/// defined: a point on an axis takes the short ways at the end; the lower end of the bisection is
/// -e1^2 - e1 y1; and x1 lacks the factor e1 in the last case but one.
std::vector<double> LXVignetteProcessing::DistancePointEllipseSpecial(double e0, double e1,
                                                                      double y0, double y1) {
    const auto square = [](double v) { return v * v; };
    if (y0 > 0 && y1 > 0) {
        const double esqr0 = e0 * e0, esqr1 = e1 * e1, ey0 = e0 * y0, ey1 = e1 * y1;
        double t0 = -esqr1 - ey1, t1 = -esqr1 + std::sqrt(square(ey0) + square(ey1));
        double t = t0;
        for (int round = 0; round < 256; ++round) {
            t = (t0 + t1) * 0.5;
            if (t == t0 || t == t1)
                break;
            const double f = square(ey0 / (t + esqr0)) + square(ey1 / (t + esqr1)) - 1;
            if (f > 0) {
                t0 = t;
            } else {
                t1 = t;
                if (f == 0)
                    break;
            }
        }
        const double x0 = esqr0 * y0 / (t + esqr0), x1 = esqr1 * y1 / (t + esqr1);
        return {std::sqrt(square(x0 - y0) + square(x1 - y1)), x0, x1};
    }
    if (y0 > 0)
        return {std::abs(y1 - e1), 0, 0};
    const double numer = e0 * y0, denom = e0 * e0 - e1 * e1;
    if (denom > numer) {
        const double xde = numer / denom;
        const double x0 = xde * e0, x1 = std::sqrt(std::abs(1 - xde * xde));
        return {std::sqrt(x1 * x1 + square(x0 - y0)), x0, x1};
    }
    return {std::abs(y0 - e0), 0, 0};
}

/// Any quadrant and either order of the axes: mirrored and swapped into the special form, and back.
std::vector<double> LXVignetteProcessing::DistancePointEllipse(double e0, double e1, double y0,
                                                               double y1) {
    const bool swaps = e1 > e0;
    std::vector<double> result =
        swaps ? DistancePointEllipseSpecial(e1, e0, std::abs(y1), std::abs(y0))
              : DistancePointEllipseSpecial(e0, e1, std::abs(y0), std::abs(y1));
    if (swaps)
        std::swap(result[1], result[2]);
    if (y0 < 0)
        result[1] = -result[1];
    if (y1 < 0)
        result[2] = -result[2];
    return result;
}
