#pragma once

#include "Pictures.h"

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

/// What `combine(sx, sy)` makes of the place in the source of a destination pixel, if it lies in
/// it.
template <class Combine>
Sample Sampled(const Image& source, const QTransform& inverse, int x, int y, Combine combine) {
    double sx, sy;
    inverse.map(x + 0.5, y + 0.5, &sx, &sy);
    if (sx < -Epsilon || sy < -Epsilon ||
        !QRect(QPoint(), SizeOf(source)).contains(Int(sx + Epsilon), Int(sy + Epsilon)))
        return {};
    return combine(sx, sy);
}

inline Sample Nearest(const Image& source, const QTransform& inverse, int x, int y) {
    return Sampled(source, inverse, x, y, [&](double sx, double sy) {
        return source.GetColor(Int(sx + Epsilon), Int(sy + Epsilon));
    });
}

inline Sample Bilinear(const Image& source, const QTransform& inverse, int x, int y) {
    return Sampled(source, inverse, x, y, [&](double sx, double sy) {
        const int ix = Int(sx + Epsilon - 0.5), iy = Int(sy + Epsilon - 0.5);
        const auto row = [&](int j) {
            return Line(Clamped(source, ix, iy + j), Clamped(source, ix + 1, iy + j),
                        sx - ix - 0.5);
        };
        return Line(row(0), row(1), sy - iy - 0.5);
    });
}

inline Sample Bicubic(const Image& source, const QTransform& inverse, int x, int y) {
    return Sampled(source, inverse, x, y, [&](double sx, double sy) {
        const int ix = Int(sx + Epsilon - 0.5), iy = Int(sy + Epsilon - 0.5);
        LXRGBA32i rows[4], pixels[4];
        for (int j = 0; j < 4; ++j) {
            for (int i = 0; i < 4; ++i)
                pixels[i] = Clamped(source, ix - 1 + i, iy - 1 + j);
            rows[j] = Cubic(pixels, sx - ix - 0.5);
        }
        return Cubic(rows, sy - iy - 0.5);
    });
}

/// One box blur along rows or columns, by window sums with the border repeated.
inline Image BoxBlur(const Image& source, int radius, bool alongX) {
    return MakeImage(source.GetWidth(), source.GetHeight(), [&](int x, int y) {
        return EachChannel([&](auto channel) {
            int sum = 0;
            for (int k = -radius; k <= radius; ++k)
                sum += Clamped(source, alongX ? x + k : x, alongX ? y : y + k).*channel;
            return std::uint8_t(sum / (2 * radius + 1));
        });
    });
}

// ---- views --------------------------------------------------------------------------------------

inline double Adjust(double value, double scale) {
    const double step = 1 / scale;
    double t = value / step;
    t = value >= 0 ? t + step * 0.5 : t - step * 0.5;
    return Int(t) * step;
}

/// Where a walk in integers begins: `position`, and the `error` of `scaled` steps for the length.
struct IntegerStart {
    IntegerStart(double start, double scale, int length) {
        const double half = 1 / scale * 0.5;
        scaled = Int(length * scale + half);
        position = Int(start < 0 ? start - half : start + half);
        const double fraction = start < 0 ? start - position + 1 : start - position;
        error = Int(scaled * Adjust(fraction, scale) + half);
        const int carry = start < 0 && error >= scaled ? 1 : !(start < 0) && error < 0 ? -1 : 0;
        position += carry;
        error -= carry * scaled;
    }
    int scaled, position, error;
};

/// The source position that each of `count` view pixels shows, until the walk stops. -1 where the
/// view pixel stays.
inline std::vector<int> IntegerLine(double start, double scale, int length, int count,
                                    int firstTile, int lastTile) {
    auto [S, n, e] = IntegerStart(start, scale, length);
    const int Q = length / S, R = length % S;
    const int low = 128 * firstTile;
    const int high = std::max(low, std::min(128 * lastTile + 128, length - 1));
    std::vector<int> shown;
    for (int i = 0; i < count && n <= high; ++i) {
        shown.push_back(n >= low ? n : -1);
        const int carry = e + R < S ? 0 : 1;
        n += Q + carry;
        e += R - carry * S;
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
    for (int i = 0; i < count && !(P >= high); ++i) {
        shown.push_back(P >= low ? int(P - low) + 128 * firstTile : -1);
        P += Q;
        E += R;
        if (E >= S) {
            E -= S;
            P += 1;
        }
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
    const int first = IntegerStart(start, scale, int(source.GetWidth())).position;
    const double half = 1 / scale * 0.5, end = width / scale + start;
    const int last = end < 0 ? FloorDivide(Int(end - half), 128) : Int(end + half) / 128;
    return {std::max(FloorDivide(first, 128), 0), std::max(last, 0)};
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
