#include "support/ReferenceConversions.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>

namespace {

int Round16(double v) {
    return int(v * 65535.0 + 0.5);
}

std::uint8_t Stored(double v) {
    return std::uint8_t(Round16(v) >> 8);
}

double Read(std::uint8_t b) {
    return (b << 8) / 65535.0;
}

bool FuzzyEqual(double a, double b) {
    return std::abs(a - b) * 1e12 <= std::min(std::abs(a), std::abs(b));
}

double HueDegrees(double r, double g, double b, double max, double delta) {
    double h = 0;
    if (FuzzyEqual(r, max))
        h = (g - b) / delta;
    else if (FuzzyEqual(g, max))
        h = (b - r) / delta + 2;
    else if (FuzzyEqual(b, max))
        h = (r - g) / delta + 4;
    h = h * 60;
    if (h < 0)
        h += 360;
    return h;
}

std::uint8_t HueChannel(double u, double t, double p) {
    if (u < 0)
        u += 1;
    if (u > 1)
        u -= 1;
    double v = p;
    if (u * 6 < 1)
        v = (u * 6) * (t - p) + p;
    else if (u * 2 < 1)
        v = t;
    else if (u * 3 < 2)
        v = (0.6666666666666666 - u) * (t - p) * 6 + p;
    return Stored(v);
}

} // namespace

LXCMYKA Reference::ToCMYK(const LXRGBA32i& pixel) {
    double c = 1 - Read(pixel.red), m = 1 - Read(pixel.green), y = 1 - Read(pixel.blue);
    const double k = std::min({c, m, y});
    if (std::abs(k - 1) > 1e-12) {
        c = (c - k) / (1 - k);
        m = (m - k) / (1 - k);
        y = (y - k) / (1 - k);
    }
    return LXCMYKA{Stored(c), Stored(m), Stored(y), Stored(k), pixel.alpha, {0, 0, 0}};
}

LXRGBA32i Reference::FromCMYK(const LXCMYKA& pixel) {
    const double c = Read(pixel.cyan), m = Read(pixel.magenta), y = Read(pixel.yellow);
    const double k = Read(pixel.black);
    return LXRGBA32i{Stored(1 - (c * (1 - k) + k)), Stored(1 - (m * (1 - k) + k)),
                     Stored(1 - (y * (1 - k) + k)), pixel.alpha};
}

LXHSLA Reference::ToHSL(const LXRGBA32i& pixel) {
    const double r = Read(pixel.red), g = Read(pixel.green), b = Read(pixel.blue);
    const double max = std::max({r, g, b}), min = std::min({r, g, b});
    const double delta = max - min, sum = max + min;
    LXHSLA out{0, 0, Stored(sum * 0.5), pixel.alpha, {0, 0, 0}};
    if (std::abs(delta) <= 1e-12)
        return out;
    out.saturation = Stored(sum * 0.5 >= 0.5 ? delta / (2 - sum) : delta / sum);
    out.hue = std::uint16_t(int(HueDegrees(r, g, b, max, delta) * 100 + 0.5));
    return out;
}

LXRGBA32i Reference::FromHSL(const LXHSLA& pixel) {
    const std::uint8_t l = pixel.lightness;
    if (pixel.saturation == 0 || pixel.hue == 65535)
        return LXRGBA32i{l, l, l, pixel.alpha};
    if (l == 0)
        return LXRGBA32i{0, 0, 0, pixel.alpha};
    const double H = (pixel.hue == 36000 ? 0 : pixel.hue) / 36000.0;
    const double S = Read(pixel.saturation), L = Read(l);
    const double t = L < 0.5 ? (S + 1) * L : (S + L) - S * L;
    const double p = 2 * L - t;
    return LXRGBA32i{HueChannel(H + -0.3333333333333333, t, p), HueChannel(H, t, p),
                     HueChannel(H + 0.3333333333333333, t, p), pixel.alpha};
}

unsigned short Reference::HalfOf(float value) {
    const int sign = std::signbit(value) ? 0x8000 : 0;
    if (std::isnan(value)) {
        std::uint32_t bits;
        std::memcpy(&bits, &value, sizeof bits);
        const std::uint32_t payload = (bits & 0x7FFFFF) >> 13;
        return static_cast<unsigned short>(sign | 0x7C00 | int(payload ? payload : 1));
    }
    const double a = std::abs(static_cast<double>(value));
    if (a < std::ldexp(1.0, -25))
        return 0;
    if (a >= 65520) // half way from the largest half to the next power of two
        return static_cast<unsigned short>(sign | 0x7C00);
    const int exponent = std::max(std::ilogb(a), -14);
    const double ulp = std::ldexp(1.0, exponent - 10);
    const int steps = int(std::floor(a / ulp + 0.5)); // 1024 .. 2048 for normal halves
    return static_cast<unsigned short>(sign | (((exponent + 14) << 10) + steps));
}

double Reference::ValueOfHalf(unsigned short bits) {
    const int exponent = bits >> 10 & 31, fraction = bits & 1023;
    const double sign = bits & 0x8000 ? -1 : 1;
    if (exponent == 31)
        return fraction ? std::nan("") : sign * INFINITY;
    if (exponent == 0)
        return sign * std::ldexp(fraction, -24);
    return sign * std::ldexp(1024 + fraction, exponent - 25);
}
