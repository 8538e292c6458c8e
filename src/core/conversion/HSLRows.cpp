#include "core/conversion/Rows.h"

#include "core/conversion/PixelWords.h"
#include "core/conversion/RowLoop.h"

#include <algorithm>
#include <cstdint>

/// Both directions are written without branches, so that whole rows are vectorised: every case is
/// computed, and the conditions select.

namespace {

using namespace LXWords;

constexpr int NoHue = 65535;
constexpr int FullCircle = 36000; // hundredths of a degree

inline LXHSLA HSLOf(LXRGBA32i pixel) {
    const std::uint32_t word = WordOf(pixel);
    const int blue = Byte(word, 0), green = Byte(word, 1), red = Byte(word, 2);
    const int maxByte = std::max(std::max(red, green), blue);
    const int minByte = std::min(std::min(red, green), blue);
    const double r = Fraction(red), g = Fraction(green), b = Fraction(blue);
    const double max = Fraction(maxByte), min = Fraction(minByte);
    const bool gray = maxByte == minByte;
    const double delta = gray ? 1.0 : max - min; // 1: the quotients of a gray are not used
    const double sum = max + min;

    // A fuzzy comparison of the fractions decides as these comparisons of the bytes do.
    const bool redIsMax = red == maxByte, greenIsMax = green == maxByte;
    const double difference = redIsMax ? g - b : greenIsMax ? b - r : r - g;
    const double sector = redIsMax ? 0.0 : greenIsMax ? 2.0 : 4.0;
    double degrees = (difference / delta + sector) * 60;
    degrees = degrees < 0 ? degrees + 360 : degrees;
    const double range = gray ? 1.0 : sum * 0.5 >= 0.5 ? 2 - sum : sum;

    const int lightness = StoredByte(sum * 0.5);
    const int saturation = gray ? 0 : StoredByte(delta / range);
    const int hue = gray ? 0 : static_cast<int>(degrees * 100 + 0.5);
    const std::uint32_t low = static_cast<std::uint32_t>(hue | saturation << 16 | lightness << 24);
    return PixelOf<LXHSLA>(low | static_cast<std::uint64_t>(word >> 24) << 32);
}

/// One channel from its place `u` on the circle, between the lightest value t and the darkest p.
inline int Channel(double u, double t, double p) {
    u = u < 0 ? u + 1 : u;
    u = u > 1 ? u - 1 : u;
    const double rising = (u * 6) * (t - p) + p;
    const double falling = (0.6666666666666666 - u) * (t - p) * 6 + p;
    const double value = u * 6 < 1 ? rising : u * 2 < 1 ? t : u * 3 < 2 ? falling : p;
    return StoredByte(value) & 0xFF;
}

inline LXRGBA32i RGBOf(LXHSLA pixel) {
    const std::uint64_t word = WordOf(pixel);
    const int hue = static_cast<int>(word & 0xFFFF);
    const int saturation = Byte(word, 2), lightness = Byte(word, 3);
    const double h = (hue == FullCircle ? 0 : hue) / 36000.0;
    const double s = Fraction(saturation), l = Fraction(lightness);
    const double t = l < 0.5 ? (s + 1) * l : (s + l) - s * l;
    const double p = 2 * l - t;
    const int red = Channel(h + 0.3333333333333333, t, p);
    const int green = Channel(h, t, p);
    const int blue = Channel(h + -0.3333333333333333, t, p);

    const bool gray = saturation == 0 || hue == NoHue;
    const int colour = lightness == 0 ? 0 : blue | green << 8 | red << 16;
    const int rgb = gray ? lightness * 0x010101 : colour;
    return PixelOf<LXRGBA32i>(static_cast<std::uint32_t>(rgb) |
                              static_cast<std::uint32_t>(Byte(word, 4)) << 24);
}

} // namespace

void LXRows::ToHSL(const LXRGBA32i* in, LXHSLA* out, unsigned int count) {
    ConvertRow<LXRGBA32i, LXHSLA, HSLOf>(in, out, count);
}

void LXRows::FromHSL(const LXHSLA* in, LXRGBA32i* out, unsigned int count) {
    ConvertRow<LXHSLA, LXRGBA32i, RGBOf>(in, out, count);
}
