#pragma once

#include "PictureParts.h"
#include "ReferenceKernels.h"

#include <cstdint>
#include <utility>

/// The blurs and convolutions in plain sums over each pixel's neighbours. They share nothing with
/// the library but the pixel type.
namespace Reference {

/// (start + sum) / count over 2 radius + 1 neighbours along (dx, dy), for the pixels of `rect`.
inline Plane BoxPass(const Plane& plane, const QRect& rect, int radius, int dx, int dy, int start) {
    return Changed(plane, rect, [&](int x, int y, LXRGBA32i& pixel) {
        for (const auto channel : Channels) {
            int sum = start;
            for (int k = -radius; k <= radius; ++k)
                sum += plane.Clamped(x + k * dx, y + k * dy).*channel;
            pixel.*channel = std::uint8_t(sum / (2 * radius + 1));
        }
    });
}

inline Plane BoxH(const Plane& plane, const QRect& rect, int radius) {
    return BoxPass(plane, rect, radius, 1, 0, radius);
}
inline Plane BoxV(const Plane& plane, const QRect& rect, int radius) {
    return BoxPass(plane, rect, radius, 0, 1, radius);
}

inline QRect Grown(const QRect& rect, int n) {
    return rect.adjusted(-n, -n, n, n);
}

/// The two passes of a box blur, or the six of the gaussian; copies only the rectangle back.
inline Plane Blurred(const Plane& plane, const QRect& rect, int r, bool gaussian) {
    Plane work = plane;
    if (!rect.isValid() || rect == plane.Rect()) {
        for (int i = 0; i < (gaussian ? 3 : 1); ++i)
            work = BoxH(work, plane.Rect(), r);
        for (int i = 0; i < (gaussian ? 3 : 1); ++i)
            work = BoxV(work, plane.Rect(), r);
        return work;
    }
    if (gaussian) {
        work = BoxH(work, Grown(rect, 3 * r), r);
        work = BoxV(work, Grown(rect, 2 * r), r);
        work = BoxH(work, Grown(rect, 2 * r), r);
        work = BoxV(work, Grown(rect, r), r);
    }
    work = BoxV(BoxH(work, Grown(rect, r), r), rect, r);
    return Changed(plane, rect, [&](int x, int y, LXRGBA32i& pixel) { pixel = work.At(x, y); });
}

/// A value that fits an int, truncated and limited to a byte.
inline std::uint8_t Limited255(double v) {
    return std::uint8_t(v < 1 ? 0 : v >= 255 ? 255 : int(v));
}

inline Plane Convolved(const Plane& plane, const double* kernel, int kw, int kh, bool alphaOnly) {
    return Changed(plane, plane.Rect(), [&](int x, int y, LXRGBA32i& out) {
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
        out = {};
        if (alphaOnly)
            out.alpha = Limited255(double(alpha));
        else if (sums[3] >= 1)
            for (int n = 0; n < 4; ++n)
                out.*Channels[n] = Limited255(sums[n]);
    });
}

} // namespace Reference
