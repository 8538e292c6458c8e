#include "support/ReferenceBlend.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>

namespace {

using namespace Reference;
using Unsigned = std::uint32_t;

std::uint8_t Byte(Unsigned value) {
    return static_cast<std::uint8_t>(value);
}

Unsigned Luminance(LXRGBA32i p) {
    return (16U * p.green + 11U * p.red + 5U * p.blue) >> 5;
}

LXRGBA32i Gray(Unsigned g, Unsigned alpha) {
    return LXRGBA32i{Byte(g), Byte(g), Byte(g), Byte(alpha)};
}

/// Each colour channel by itself; alpha from `d`.
template <class Channel>
LXRGBA32i EachColour(LXRGBA32i s, LXRGBA32i d, Channel channel) {
    return LXRGBA32i{Byte(channel(s.blue, d.blue)), Byte(channel(s.green, d.green)),
                     Byte(channel(s.red, d.red)), d.alpha};
}

LXRGBA32i Frame(Mode mode, LXRGBA32i s, LXRGBA32i d, Unsigned a, bool lockA) {
    const Unsigned da = d.alpha;
    const Unsigned wd = (255 - a) * da, ws = (255 - da) * a, wb = a * da;
    const Unsigned t = a * 255 + wd;
    Unsigned alpha = 255, divisor = 65025;
    if (t < 65280) {
        alpha = t / 255;
        divisor = (t / 255) * 255;
    }
    if (divisor == 0)
        return LXRGBA32i{0, 0, 0, 0};
    LXRGBA32i out = EachColour(s, d, [&](Unsigned sc, Unsigned dc) {
        return std::min(255U, (dc * wd + sc * ws + Formula(mode, sc, dc) * wb) / divisor);
    });
    if (!lockA)
        out.alpha = Byte(alpha);
    return out;
}

LXRGBA32i HealBy(LXRGBA32i s, LXRGBA32i d, Unsigned a, int offsetWeight) {
    const int yd = int(std::min(Luminance(d), 255U));
    const Unsigned ys = std::min(Luminance(s), 255U);
    const int l = int(std::min((ys * a + (255 - a) * Unsigned(yd)) / 255, 255U));
    return EachColour(s, d, [&](Unsigned, Unsigned dc) {
        return Unsigned(std::clamp(l + (int(dc) - yd) * offsetWeight / 255, 0, 255));
    });
}

LXRGBA32i Heal(Shape shape, bool lockA, LXRGBA32i s, LXRGBA32i d, Unsigned a) {
    if (shape == Shape::Image) {
        s.alpha = lockA ? d.alpha : Byte(a);
        return s;
    }
    if (shape == Shape::Mask) {
        if (lockA)
            return d;
        LXRGBA32i out = HealBy(s, d, a, 255);
        out.alpha = 255;
        return out;
    }
    if (!lockA)
        return HealBy(s, d, a, d.alpha);
    return s.alpha == 0 ? Gray(255, d.alpha) : HealBy(s, d, s.alpha, d.alpha);
}

/// Of the modes that work on alpha alone, with alpha not locked.
Unsigned AlphaOf(Mode mode, LXRGBA32i s, LXRGBA32i d, Unsigned opacity, Unsigned a) {
    const Unsigned sa = s.alpha, da = d.alpha;
    switch (mode) {
    case Mode::ToMask: {
        const Unsigned t = da * (255 - a) + std::min(Luminance(s), 255U) * a;
        return t * 255 < 0xFE0100 ? t * 255 / 65025 : 255;
    }
    case Mode::DestinationIn:
        return da * a / 255;
    case Mode::DestinationInFullAlpha:
        return sa != 0 ? da * ((opacity * 255) >> 8) / 255 : 0;
    case Mode::DestinationOut:
        return (255 - a) * da / 255;
    case Mode::Clear:
        return sa * opacity >= 256 ? 0 : da;
    case Mode::Unite:
        return std::min(da + sa, 255U);
    case Mode::Intersect:
        return std::min(da, sa);
    case Mode::Subtract:
        return da > sa ? da - sa : 0;
    default:
        std::abort();
    }
}

/// Of the modes that treat colour and alpha alike, with alpha not locked.
LXRGBA32i Copying(Mode mode, Shape shape, LXRGBA32i s, LXRGBA32i d, Unsigned opacity, Unsigned a,
                  Unsigned m) {
    const auto bitwise = [&](auto operation) {
        LXRGBA32i out = EachColour(s, d, operation);
        out.alpha = Byte(operation(a, d.alpha));
        return out;
    };
    switch (mode) {
    case Mode::Source:
        return LXRGBA32i{s.blue, s.green, s.red, Byte(a)};
    case Mode::SourceWidthAlpha:
        return s.alpha != 0 ? LXRGBA32i{s.blue, s.green, s.red, Byte(a)} : d;
    case Mode::SourceAlphaToGray:
        return Gray((s.alpha * opacity) >> 8, shape == Shape::Mask ? m : 255);
    case Mode::SourceRGBAToGray:
        return s.alpha != 0 ? Gray(Luminance(s), 255) : Gray(255, 255);
    case Mode::RasterAnd:
        return bitwise([](Unsigned sc, Unsigned dc) { return sc & dc; });
    case Mode::RasterNotAnd:
        return bitwise([](Unsigned sc, Unsigned dc) { return ~sc & dc; });
    case Mode::RasterOr:
        return bitwise([](Unsigned sc, Unsigned dc) { return sc | dc; });
    default:
        std::abort();
    }
}

Unsigned Weight(Mode mode, Shape shape, Unsigned sa, Unsigned opacity, Unsigned m) {
    if (shape == Shape::Tile || shape == Shape::Image)
        return (sa * opacity) >> 8;
    if (mode == Mode::SourceOver || mode == Mode::ToMask || mode == Mode::Heal)
        return m * ((sa * opacity) >> 8) / 255;
    return m * (sa * opacity) / 65280;
}

} // namespace

unsigned int Reference::Formula(Mode mode, unsigned int s, unsigned int d) {
    switch (mode) {
    case Mode::SourceOver:
        return s;
    case Mode::Plus:
        return d + s;
    case Mode::Multiply:
        return d * s / 255;
    case Mode::Screen:
        return 255 - (((255 - d) * (255 - s)) >> 8);
    case Mode::Overlay:
        return d >= 128 ? 255 - (255 - d) * (510 - 2 * s) / 255 : 2 * s * d / 255;
    case Mode::HardLight:
        return s >= 128 ? 255 - (255 - s) * (510 - 2 * d) / 255 : 2 * d * s / 255;
    case Mode::Darken:
        return std::min(s, d);
    case Mode::Lighten:
        return std::max(s, d);
    case Mode::ColorDodge:
        return s < 255 ? std::min(d * 255 / (255 - s), 255U) : 255;
    case Mode::ColorBurn:
        return s != 0 ? unsigned(std::max(0, 255 - int(((255 - d) * 256) / s))) : 0;
    case Mode::SoftLight: {
        const unsigned int h = (s & 254) + 128;
        const float value = d >= 128 ? float(255.0 - float(255 - d) * float(510 - h) / 255.0)
                                     : float(d / 255.0) * float(h);
        return unsigned(value);
    }
    case Mode::Difference:
        return unsigned(std::abs(int(d) - int(s)));
    case Mode::Exclusion:
        return d + s - d * s * 2 / 255;
    default:
        std::abort();
    }
}

LXRGBA32i Reference::Blend(Mode mode, Shape shape, bool lockA, LXRGBA32i s, LXRGBA32i d,
                           unsigned int opacity, unsigned int m) {
    if (shape == Shape::MaskedImage && mode != Mode::SourceOver)
        return d;
    const Unsigned a = Weight(mode, shape, s.alpha, opacity, m);
    if (mode == Mode::SourceOver && shape == Shape::Image && !lockA && (a == 255 || d.alpha == 0))
        return s;
    if (int(mode) < SeparableModes)
        return Frame(mode, s, d, a, lockA);
    if (mode == Mode::Heal)
        return Heal(shape, lockA, s, d, a);
    LXRGBA32i out = d;
    if (mode >= Mode::ToMask && mode <= Mode::Subtract)
        out.alpha = Byte(AlphaOf(mode, s, d, opacity, a));
    else
        out = Copying(mode, shape, s, d, opacity, a, m);
    if (lockA)
        out.alpha = d.alpha;
    return out;
}
