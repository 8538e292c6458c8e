#include "support/ReferenceAdjustments.h"

#include <emmintrin.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <numeric>

using namespace Reference;

namespace {

int TruncF(float v) {
    return _mm_cvttss_si32(_mm_set_ss(v));
}

double Limited(double v, double low, double high) {
    return v < low ? low : v > high ? high : v;
}

/// Range mapping of one level.
int Mapped(int p, const int* in, const int* out) {
    if (p < in[0])
        return out[0];
    if (p > in[1])
        return out[1];
    return (p - in[0]) * (out[1] - out[0]) / (in[1] - in[0]) + out[0];
}

std::size_t At(int i) {
    return static_cast<std::size_t>(i);
}

} // namespace

int Reference::Trunc(double v) {
    return _mm_cvttsd_si32(_mm_set_sd(v));
}

int Reference::Clamp255(int v) {
    return std::clamp(v, 0, 255);
}

int Reference::Mix(int value, int i, int amount) {
    const std::int64_t weight = std::int64_t(2550) * amount;
    return int(((value * weight + i * (255000 - weight)) / 255000) & 255);
}

Spline Reference::SplineParts(const std::vector<Knot>& p) {
    const std::size_t n = p.size();
    Spline s{std::vector<double>(n), std::vector<double>(n), std::vector<double>(n)};
    if (n < 2)
        return s;
    const std::size_t m = n - 1;
    std::vector<double> h(n), M(n), diag(n), off(n), rhs(n);
    for (std::size_t k = 0; k < m; ++k) {
        h[k] = p[k + 1].x - p[k].x;
        if (!(h[k] > 0))
            return s;
    }
    for (std::size_t k = 1; k < m; ++k) {
        diag[k] = 2 * (h[k - 1] + h[k]);
        off[k] = h[k];
        rhs[k] = 6 * ((p[k].y - p[k - 1].y) / h[k - 1] - (p[k + 1].y - p[k].y) / h[k]);
    }
    for (std::size_t k = 2; k < m; ++k) {
        const double f = off[k - 1] / diag[k - 1];
        diag[k] -= f * off[k - 1];
        rhs[k] -= f * rhs[k - 1];
    }
    for (std::size_t k = m - 1; k >= 1; --k)
        M[k] = k == m - 1 ? -rhs[k] / diag[k] : -(rhs[k] + off[k] * M[k + 1]) / diag[k];
    for (std::size_t k = 0; k < m; ++k) {
        s.a[k] = (M[k + 1] - M[k]) / (h[k] * 6);
        s.b[k] = M[k] * 0.5;
        s.c[k] = (p[k + 1].y - p[k].y) / h[k] + ((M[k + 1] + M[k] + M[k]) * h[k]) / -6;
    }
    return s;
}

int Reference::SplineValue(double x, const std::vector<Knot>& p, const Spline& s) {
    if (p.empty())
        return 0;
    std::size_t k = 0;
    for (std::size_t i = 1; i + 1 < p.size() && x > p[0].x; ++i)
        if (p[i].x <= x)
            k = i;
    const double d = x - p[k].x;
    return Trunc(p[k].y + ((s.a[k] * d + s.b[k]) * d + s.c[k]) * d + 0.5);
}

Table Reference::CurveTable(const std::vector<Knot>& knots) {
    const Spline spline = SplineParts(knots);
    Table table(256);
    for (int x = 0; x < 256; ++x)
        table[At(x)] = Clamp255(SplineValue(x, knots, spline));
    return table;
}

std::array<Table, 3> Reference::CurvesTables(const std::array<std::vector<Knot>, 4>& curves,
                                             int amount) {
    const Table master = CurveTable(curves[0]);
    std::array<Table, 3> tables;
    for (std::size_t c = 0; c < 3; ++c) {
        const Table channel = CurveTable(curves[c + 1]);
        for (int i = 0; i < 256; ++i)
            tables[c].push_back(Mix(master[At(channel[At(i)])], i, amount));
    }
    return tables;
}

std::array<Table, 3> Reference::LevelsTables(const Levels& levels, int amount) {
    const auto power = [](int i, double e) {
        return Clamp255(Trunc(std::pow(double(i) / 255, e) * 255));
    };
    Table master;
    for (int i = 0; i < 256; ++i) {
        const double e = 1 / Limited(levels.gammas[0], 0.01, 9.99);
        master.push_back(Mapped(power(i, e), levels.inputs[0], levels.outputs[0]));
    }
    std::array<Table, 3> tables;
    for (std::size_t c = 1; c < 4; ++c) {
        const int g = Trunc(Limited(levels.gammas[c], 0.01, 9.99));
        const double e = g == 0 ? -2147483648.0 : double(Trunc(1.0 / g));
        for (int i = 0; i < 256; ++i) {
            const int q = Mapped(power(i, e), levels.inputs[c], levels.outputs[c]);
            tables[c - 1].push_back(Mix(master[At(q)], i, amount));
        }
    }
    return tables;
}

Table Reference::BlackAndWhite(bool useLightness, float weight) {
    Table table;
    for (int i = 0; i < 256; ++i) {
        const float v = float(i) / 255.0f;
        const float L =
            v > 0.008856f ? float(std::pow(double(v), double(1.0f / 3.0f)) * 116 - 16) : v * 903.3f;
        table.push_back(Clamp255(TruncF((useLightness ? L * 2.55f : float(i)) * weight)));
    }
    return table;
}

Table Reference::ColorBalance(const int* a) {
    Table table{0};
    for (int i = 1; i < 255; ++i) {
        const float s = float(i) - 80, m = float(i) - 127.5f, h = float(i) - 176;
        const float ws = float(std::exp(double(s * s * -0.00055f)) * 0.4300000071525574);
        const float wm = float(std::exp(double(m * m * -0.0004f)) * 0.7400000095367432);
        const float wh = float(std::exp(double(h * h * -0.00055f)) * 0.4300000071525574);
        const float sum = float(a[0]) * ws + float(a[1]) * wm + float(a[2]) * wh + float(i);
        table.push_back(Clamp255(TruncF(sum)));
    }
    table.push_back(255);
    return table;
}

Table Reference::Exposure(double exposure, double offset) {
    const double s = exposure / 20.0001 + 1, o = offset * 255;
    double hi = 255, lo = 0;
    if (s != 0) {
        hi = (255 - o) / s;
        lo = (-0.0 - o) / s;
    }
    Table table;
    for (int i = 0; i < 256; ++i)
        table.push_back(lo > i ? 0 : !(hi > i) ? 255 : Clamp255(Trunc(i * s + o)));
    return table;
}

Table Reference::Gamma(double gamma) {
    const double g = gamma > 0.01 ? Limited(gamma, 0.01, 5) : 0.01;
    Table table;
    for (int i = 0; i < 256; ++i)
        table.push_back(Clamp255(Trunc(std::pow(i / 255.0, 1 / g) * 255)));
    return table;
}

Table Reference::PosterizeLevels(int levels) {
    Table table;
    for (int k = 0; k < levels; ++k)
        table.push_back(levels == 1 ? 0 : 255 * k / (levels - 1));
    return table;
}

Table Reference::PosterizeBands(int levels) {
    Table table;
    for (int i = 0; i < 255; ++i)
        table.push_back(Trunc(i / (255.0 / levels)) & 255);
    table.push_back((levels - 1) & 255);
    return table;
}

std::array<int, 3> Reference::Temperature(int kelvin) {
    if (kelvin == 6500)
        return {255, 255, 255};
    const auto level = [](double v) { return Trunc(Limited(v, 0, 255)); };
    const float t = float(Limited(kelvin, 1000, 40000)) / 100.0f;
    double red = 255, green, blue = 255;
    if (t <= 66) {
        green = std::log(double(t)) * 99.4708023071289 - 161.11956787109375;
    } else {
        const float u = t - 60;
        red = double(powf(u, -0.13320476f) * 329.69873f);
        green = double(powf(u, -0.075514846f) * 288.12216f);
    }
    if (t < 66)
        blue = t <= 19 ? 0 : std::log(double(t) - 10) * 138.51773071289063 - 305.0447998046875;
    return {level(red), level(green), level(blue)};
}

Table Reference::Dodge(double a, int range) {
    Table table;
    for (int i = 0; i < 256; ++i) {
        const double x = i / 255.0, s = a * -0.5 + 1;
        const double f[] = {x * s + (1 - s), std::sin(x * 3.141592653589793) * (a * 0.25) + x,
                            (std::exp(x) - 1) * a + x};
        const double value = f[range] * 255 + 0.5;
        table.push_back(value >= 255 ? 255 : Trunc(value) & 255);
    }
    return table;
}

Table Reference::Burn(double a, int range) {
    Table table;
    for (int i = 0; i < 256; ++i) {
        const double x = i / 255.0;
        const double f[] = {(1 - std::exp(1 - x)) * a + x,
                            x - std::sin(x * 3.141592653589793) * (a * 0.25), x * (1 - a * 0.75)};
        const double value = f[range] * 255 + 0.5;
        table.push_back(value < 1 ? 0 : Trunc(value) & 255);
    }
    return table;
}

std::vector<int> Reference::Threshold(const std::vector<int>& histogram) {
    const double limit = std::accumulate(histogram.begin(), histogram.end(), 0) / 1000.0;
    int low = 0, high = 255;
    double up = 0, down = 0;
    for (int i = 0; i < 256 && (up += histogram[At(i)]) <= limit; ++i)
        low = i;
    for (int i = 255; i >= 0 && (down += histogram[At(i)]) <= limit; --i)
        high = i;
    if (std::abs(high - low) > 15)
        return {low, high};
    const int s = low + high;
    if (s < 16)
        return {0, 16};
    const int m = s / 2 + 8 >= 256 ? 247 : s / 2;
    return {m - 8, m + 8};
}
