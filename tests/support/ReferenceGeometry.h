#pragma once

#include "LXColorTransformBase.h"
#include "LXImage.h"

#include <QtGui/QImage>
#include <QtGui/QTransform>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <optional>
#include <utility>
#include <vector>

/// Geometry pixel by pixel, straight from the definitions.
namespace Reference {

using Image = LXImageRGBA32i;

/// As the processor truncates.
inline int Int(double value) {
    return value > -2147483649.0 && value < 2147483648.0 ? int(value) : INT32_MIN;
}

inline std::uint8_t Byte(double value) {
    return std::uint8_t(std::min(std::max(Int(value), 0), 255));
}

template <class Combine>
LXRGBA32i EachChannel(Combine combine) {
    return {combine(&LXRGBA32i::blue), combine(&LXRGBA32i::green), combine(&LXRGBA32i::red),
            combine(&LXRGBA32i::alpha)};
}

constexpr double Epsilon = 2.220446049250313e-16;

// ---- sampling -----------------------------------------------------------------------------------

/// The place in the source of a destination pixel, if it lies in it.
struct Place {
    Place(const Image& source, const QTransform& inverse, int x, int y) {
        inverse.map(x + 0.5, y + 0.5, &sx, &sy);
        if (sx < -Epsilon || sy < -Epsilon)
            return;
        ix = Int(sx + Epsilon), iy = Int(sy + Epsilon);
        isInside =
            ix >= 0 && iy >= 0 && ix < int(source.GetWidth()) && iy < int(source.GetHeight());
    }
    double sx, sy;
    int ix = 0, iy = 0;
    bool isInside = false;
};

inline LXRGBA32i Clamped(const Image& source, int x, int y) {
    return source.GetColor(std::clamp(x, 0, int(source.GetWidth()) - 1),
                           std::clamp(y, 0, int(source.GetHeight()) - 1));
}

inline LXRGBA32i Line(const LXRGBA32i& a, const LXRGBA32i& b, double t) {
    return EachChannel([&](auto c) { return Byte((b.*c - a.*c) * t + (a.*c + 0.5) + Epsilon); });
}

inline LXRGBA32i Cubic(const LXRGBA32i* p, double t) {
    return EachChannel([&](auto channel) {
        const int p0 = p[0].*channel, p1 = p[1].*channel, p2 = p[2].*channel, p3 = p[3].*channel;
        const int a = p1 - p0 - p2 + p3, b = (p0 - p1) - a, c = p2 - p0;
        return Byte(c * t + (b * t * t + (a * t * t * t + 0.5)) + p1 + Epsilon);
    });
}

using Sample = std::optional<LXRGBA32i>;

inline Sample Nearest(const Image& source, const QTransform& inverse, int x, int y) {
    const Place place(source, inverse, x, y);
    if (!place.isInside)
        return {};
    return source.GetColor(place.ix, place.iy);
}

template <class Combine>
Sample Interpolated(const Image& source, const QTransform& inverse, int x, int y, Combine combine) {
    const Place place(source, inverse, x, y);
    if (!place.isInside)
        return {};
    const int ix = Int(place.sx + Epsilon - 0.5), iy = Int(place.sy + Epsilon - 0.5);
    return combine(ix, iy, place.sx - ix - 0.5, place.sy - iy - 0.5);
}

inline Sample Bilinear(const Image& source, const QTransform& inverse, int x, int y) {
    return Interpolated(source, inverse, x, y, [&](int ix, int iy, double fx, double fy) {
        const auto row = [&](int j) {
            return Line(Clamped(source, ix, iy + j), Clamped(source, ix + 1, iy + j), fx);
        };
        return Line(row(0), row(1), fy);
    });
}

inline Sample Bicubic(const Image& source, const QTransform& inverse, int x, int y) {
    return Interpolated(source, inverse, x, y, [&](int ix, int iy, double fx, double fy) {
        LXRGBA32i rows[4];
        for (int j = 0; j < 4; ++j) {
            LXRGBA32i pixels[4];
            for (int i = 0; i < 4; ++i)
                pixels[i] = Clamped(source, ix - 1 + i, iy - 1 + j);
            rows[j] = Cubic(pixels, fx);
        }
        return Cubic(rows, fy);
    });
}

/// One box blur along rows or columns, by window sums with the border repeated.
inline Image BoxBlur(const Image& source, int radius, bool alongX) {
    Image result(source.GetWidth(), source.GetHeight());
    for (int y = 0; y < int(source.GetHeight()); ++y)
        for (int x = 0; x < int(source.GetWidth()); ++x)
            result.SetColor(x, y, EachChannel([&](auto channel) {
                                int sum = 0;
                                for (int k = -radius; k <= radius; ++k)
                                    sum += Clamped(source, alongX ? x + k : x, alongX ? y : y + k).*
                                           channel;
                                return std::uint8_t(sum / (2 * radius + 1));
                            }));
    return result;
}

// ---- views --------------------------------------------------------------------------------------

inline double Adjust(double value, double scale) {
    const double step = 1 / scale;
    double t = value / step;
    t = value >= 0 ? t + step * 0.5 : t - step * 0.5;
    return Int(t) * step;
}

/// The source position that each of `count` view pixels shows, until the walk stops. -1 where the
/// view pixel stays.
inline std::vector<int> IntegerLine(double start, double scale, int length, int count,
                                    int firstTile, int lastTile) {
    const double step = 1 / scale, half = step * 0.5;
    const int S = Int(length * scale + half), Q = length / S, R = length % S;
    int n, e;
    if (start < 0) {
        n = Int(start - half);
        e = Int(S * Adjust(start - n + 1, scale) + half);
        if (e >= S) {
            e -= S;
            ++n;
        }
    } else {
        n = Int(start + half);
        e = Int(S * Adjust(start - n, scale) + half);
        if (e < 0) {
            e += S;
            --n;
        }
    }
    const int low = 128 * firstTile;
    const int high = std::max(low, std::min(128 * lastTile + 128, length - 1));
    std::vector<int> shown;
    for (int i = 0; i < count; ++i) {
        if (n >= low && n <= high)
            shown.push_back(n);
        else if (n >= high)
            break;
        else
            shown.push_back(-1);
        if (e + R < S) {
            n += Q;
            e += R;
        } else {
            n += Q + 1;
            e += R - S;
        }
    }
    return shown;
}

inline std::vector<int> FloatLine(float start, double scale, int length, int count, int firstTile,
                                  int lastTile) {
    const float S = float(length * scale);
    float E = (start - float(int(start))) * S;
    if (start < 0 && E != 0)
        E = float(S * (double(start) + 1 - int(start)));
    const float Q = float(int(float(length) / S)), R = std::fabs(float(length) - S * Q);
    const float low = float(128 * firstTile - 1e-10);
    const float high = float(std::min(128 * lastTile + 128, length));
    float P = start;
    std::vector<int> shown;
    for (int i = 0; i < count; ++i) {
        if (P >= low && P < high)
            shown.push_back(int(P - low) + 128 * firstTile);
        else if (P >= high)
            break;
        else
            shown.push_back(-1);
        float next = P + Q;
        E += R;
        if (E >= S) {
            E -= S;
            next += 1;
        }
        P = next;
    }
    return shown;
}

/// The tile columns of a view that works in floats.
inline std::pair<int, int> FloatTiles(const Image& source, double start, double scale, int width) {
    const double columns = source.GetTilesX();
    const int first = int(std::clamp(start / 128, 0.0, columns));
    return {first, int(std::ceil(std::min(first + width / scale / 128, columns)))};
}

inline int FloorDivide(int a, int b) {
    return int(std::floor(double(a) / b));
}

/// The tile columns of a view that works in integers.
inline std::pair<int, int> IntegerTiles(const Image& source, double start, double scale,
                                        int width) {
    // The start of the walk, seen through limits that let everything pass.
    const double half = 1 / scale * 0.5;
    const int length = int(source.GetWidth());
    const int S = Int(length * scale + half);
    int x0 = start < 0 ? Int(start - half) : Int(start + half);
    const int e = Int(S * Adjust(start < 0 ? start - x0 + 1 : start - x0, scale) + half);
    if (start < 0 && e >= S)
        ++x0;
    if (!(start < 0) && e < 0)
        --x0;
    const double xe = width / scale + start;
    const int last = xe < 0 ? FloorDivide(Int(xe - half), 128) : Int(xe + half) / 128;
    return {std::max(FloorDivide(x0, 128), 0), std::max(last, 0)};
}

/// Lays a view together of the lines that its rows and columns show. A source row that repeats is a
/// copy of the whole view row above. `color(x, y)` is what a source pixel shows as.
template <class Color>
void View(const std::vector<int>& rows, const std::vector<int>& columns, QImage& target,
          Color color) {
    for (std::size_t t = 0; t < rows.size(); ++t) {
        if (rows[t] < 0)
            continue;
        if (t > 0 && rows[t] == rows[t - 1]) {
            std::memcpy(target.scanLine(int(t)), target.scanLine(int(t) - 1),
                        std::size_t(target.width()) * 4);
            continue;
        }
        for (std::size_t i = 0; i < columns.size(); ++i)
            if (columns[i] >= 0) {
                const LXRGBA32i pixel = color(columns[i], rows[t]);
                std::memcpy(target.scanLine(int(t)) + 4 * i, &pixel, 4);
            }
    }
}

} // namespace Reference
