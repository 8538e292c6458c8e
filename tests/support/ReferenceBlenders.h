#pragma once

#include "LXPixel.h"

#include <cstdint>

/// The blends of the step objects in plain steps, one pixel at a time. They share nothing with the
/// library but the pixel type.
namespace Reference {

inline int Low(int v, int limit) {
    return v < limit ? v : limit;
}

inline LXRGBA32i Pixel(int blue, int green, int red, int alpha) {
    return {std::uint8_t(blue), std::uint8_t(green), std::uint8_t(red), std::uint8_t(alpha)};
}

inline LXRGBA32i PlainSourceOver(LXRGBA32i s, LXRGBA32i d, int opacity, bool keepAlpha,
                                 bool bySelection) {
    const int sa = (s.alpha * opacity) >> 8, wd = (255 - sa) * d.alpha, ws = sa * 255;
    const int outAlpha = Low((wd + ws) / 255, 255), den = outAlpha * 255;
    if (den == 0)
        return Pixel(0, 0, 0, bySelection && keepAlpha ? d.alpha : 0);
    return Pixel(Low((d.blue * wd + s.blue * ws) / den, 255),
                 Low((d.green * wd + s.green * ws) / den, 255),
                 Low((d.red * wd + s.red * ws) / den, 255), keepAlpha ? d.alpha : outAlpha);
}

inline LXRGBA32i PlainDestinationOver(LXRGBA32i s, LXRGBA32i d, int opacity) {
    const int sa = (s.alpha * opacity) >> 8, da = d.alpha;
    const auto over = [](int v) { return v >= 16646400 ? 255 : v / 65025; };
    const auto mix = [&](int sc, int dc) {
        return over((dc * (255 - sa) + sc * (255 - da)) * 255 + dc * sa * da);
    };
    return Pixel(mix(s.blue, d.blue), mix(s.green, d.green), mix(s.red, d.red),
                 over((sa * 255 + da * (255 - sa)) * 255));
}

inline LXRGBA32i PlainSubtract(LXRGBA32i s, LXRGBA32i d, int offset, bool mirrored) {
    const auto channel = [&](int sc, int dc) {
        const long long v = (mirrored ? dc - sc : sc - dc) + (long long)offset;
        return int(v < 0 ? 0 : v > 255 ? 255 : v);
    };
    return Pixel(channel(s.blue, d.blue), channel(s.green, d.green), channel(s.red, d.red),
                 d.alpha);
}

inline LXRGBA32i PlainThrough(LXRGBA32i mix, LXRGBA32i d, int m) {
    const auto channel = [m](int dc, int mc) { return (dc * 255 + (mc - dc) * m) / 255; };
    return Pixel(channel(d.blue, mix.blue), channel(d.green, mix.green), channel(d.red, mix.red),
                 channel(d.alpha, mix.alpha));
}

} // namespace Reference
