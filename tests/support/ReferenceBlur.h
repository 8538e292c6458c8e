#pragma once

#include "Plane.h"
#include "ReferenceKernels.h"

#include <cstdint>
#include <utility>

/// The blurs and convolutions in plain sums over each pixel's neighbours. They share nothing with
/// the library but the pixel type.
namespace Reference {

/// (start + sum) / count over 2 radius + 1 neighbours along (dx, dy), for the pixels of `rect`.
inline void BoxPass(Plane& plane, const QRect& rect, int radius, int dx, int dy, int start) {
    const Plane before = plane;
    const QRect part = rect & plane.Rect();
    for (int y = part.top(); y <= part.bottom(); ++y)
        for (int x = part.left(); x <= part.right(); ++x)
            for (const auto channel : Channels) {
                int sum = start;
                for (int k = -radius; k <= radius; ++k)
                    sum += before.Clamped(x + k * dx, y + k * dy).*channel;
                plane.At(x, y).*channel = std::uint8_t(sum / (2 * radius + 1));
            }
}

inline void BoxH(Plane& plane, const QRect& rect, int radius) {
    BoxPass(plane, rect, radius, 1, 0, radius);
}
inline void BoxV(Plane& plane, const QRect& rect, int radius) {
    BoxPass(plane, rect, radius, 0, 1, radius);
}

inline QRect Grown(const QRect& rect, int n) {
    return rect.adjusted(-n, -n, n, n);
}

/// The two passes of a box blur, or the six of the gaussian; copies only the rectangle back.
inline Plane Blurred(const Plane& plane, const QRect& rect, int r, bool gaussian) {
    Plane work = plane;
    const QRect all = plane.Rect();
    if (!rect.isValid() || rect == all) {
        for (int i = 0; i < (gaussian ? 3 : 1); ++i)
            BoxH(work, all, r);
        for (int i = 0; i < (gaussian ? 3 : 1); ++i)
            BoxV(work, all, r);
        return work;
    }
    if (gaussian) {
        BoxH(work, Grown(rect, 3 * r), r);
        BoxV(work, Grown(rect, 2 * r), r);
        BoxH(work, Grown(rect, 2 * r), r);
        BoxV(work, Grown(rect, r), r);
    }
    BoxH(work, Grown(rect, r), r);
    BoxV(work, rect, r);
    Plane result = plane;
    const QRect part = rect & all;
    for (int y = part.top(); y <= part.bottom(); ++y)
        for (int x = part.left(); x <= part.right(); ++x)
            result.At(x, y) = work.At(x, y);
    return result;
}

/// A value that fits an int, truncated and limited to a byte.
inline std::uint8_t Limited255(double v) {
    return std::uint8_t(v < 1 ? 0 : v >= 255 ? 255 : int(v));
}

inline Plane Convolved(const Plane& plane, const double* kernel, int kw, int kh, bool alphaOnly) {
    Plane result = plane;
    for (int y = 0; y < plane.height; ++y)
        for (int x = 0; x < plane.width; ++x) {
            double sums[4] = {};
            float alpha = 0;
            for (int j = 0; j < kh; ++j)
                for (int i = 0; i < kw; ++i) {
                    const int sx = x + kw / 2 - i, sy = y + kh / 2 - j;
                    const LXRGBA32i p = plane.Clamped(sx, sy);
                    for (int n = 0; n < 4; ++n)
                        sums[n] += p.*Channels[n] * kernel[j * kw + i];
                    if (plane.Rect().contains(sx, sy))
                        alpha = float(double(alpha) + p.alpha * kernel[j * kw + i]);
                }
            LXRGBA32i& out = result.At(x, y);
            out = {};
            if (alphaOnly)
                out.alpha = Limited255(double(alpha));
            else if (sums[3] >= 1)
                for (int n = 0; n < 4; ++n)
                    out.*Channels[n] = Limited255(sums[n]);
        }
    return result;
}

} // namespace Reference
