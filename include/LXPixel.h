#pragma once

#include "LXHalfFloat.h"

#include <cstdint>

/// The pixel types, fields in memory order.
///
/// Colour channels are straight: stored independently of alpha. Alpha 0 is transparent, the
/// largest value of the channel is opaque. All types are trivially copyable, and a
/// value-initialised pixel is 0 in every byte.

/// The working pixel, bit for bit one pixel of QImage::Format_ARGB32: as a little-endian word
/// it reads 0xAARRGGBB.
struct LXRGBA32i {
    std::uint8_t blue;
    std::uint8_t green;
    std::uint8_t red;
    std::uint8_t alpha;
};

/// 16 bits a channel.
struct LXRGBA64i {
    std::uint16_t blue;
    std::uint16_t green;
    std::uint16_t red;
    std::uint16_t alpha;
};

/// Half floats on the scale of MakeHalfFloat: full scale is about 256.878, not 1.
struct LXRGBA64f {
    LXHalfFloat blue;
    LXHalfFloat green;
    LXHalfFloat red;
    LXHalfFloat alpha;
};

/// A parameter type of the colour transforms; no image holds it. Scale as MakeUInt.
struct LXRGBA128i {
    std::uint32_t blue;
    std::uint32_t green;
    std::uint32_t red;
    std::uint32_t alpha;
};

/// A parameter type of the colour transforms; no image holds it. Scale as MakeFloat.
struct LXRGBA128f {
    float blue;
    float green;
    float red;
    float alpha;
};

/// CMYK with alpha. The spare bytes fill the pixel to the 8 bytes that the tile arithmetic
/// counts on; only whole-pixel copies write them.
struct LXCMYKA {
    std::uint8_t cyan;
    std::uint8_t magenta;
    std::uint8_t yellow;
    std::uint8_t black;
    std::uint8_t alpha;
    std::uint8_t spare[3];
};

/// HSL with alpha. The hue is in hundredths of a degree, 0 to 35999; 65535 marks a colour
/// without hue.
struct LXHSLA {
    std::uint16_t hue;
    std::uint8_t saturation;
    std::uint8_t lightness;
    std::uint8_t alpha;
    std::uint8_t spare[3];
};

static_assert(sizeof(LXRGBA32i) == 4 && sizeof(LXRGBA64i) == 8 && sizeof(LXRGBA64f) == 8);
static_assert(sizeof(LXCMYKA) == 8 && sizeof(LXHSLA) == 8);

constexpr bool operator==(const LXRGBA32i& a, const LXRGBA32i& b) {
    return a.blue == b.blue && a.green == b.green && a.red == b.red && a.alpha == b.alpha;
}

constexpr bool operator!=(const LXRGBA32i& a, const LXRGBA32i& b) {
    return !(a == b);
}
