#include "LXHueAdjustments.h"

#include "color/ByteTables.h"

#include <QtGui/QColor>

namespace {

/// HSL without fractions. The saturation is chroma / MaxChroma().
struct HSL {
    int hue;       ///< in degrees / scale, 0 .. 360 * scale - 1
    int scale;     ///< at least 1
    int chroma;    ///< max - min, 0 .. MaxChroma()
    int lightness; ///< max + min, 0 .. 510

    int MaxChroma() const { return 255 - std::abs(lightness - 255); }
};

/// An angle on the circle of 360 * scale, from at most one turn off it.
int OnCircle(int hue, int scale) {
    const int circle = 360 * scale;
    return hue < 0 ? hue + circle : hue < circle ? hue : hue - circle;
}

/// Exact: the hue is measured in parts of the chroma.
HSL ToHSL(const LXRGBA32i& pixel) {
    const int red = pixel.red, green = pixel.green, blue = pixel.blue;
    const int max = std::max({red, green, blue}), min = std::min({red, green, blue});
    const int chroma = max - min;
    const int sixths = max == red     ? green - blue
                       : max == green ? blue - red + 2 * chroma
                                      : red - green + 4 * chroma;
    const int scale = std::max(chroma, 1);
    return {OnCircle(60 * sixths, scale), scale, chroma, max + min};
}

LXRGBA32i ToRGB(const HSL& hsl, std::uint8_t alpha) {
    const int sixth = 60 * hsl.scale;
    const int low = (hsl.lightness - hsl.chroma) / 2, high = low + hsl.chroma;
    const int climb = hsl.chroma * (hsl.hue % sixth) / sixth;
    const int rising = low + climb, falling = high - climb;
    const auto pixel = [alpha](int red, int green, int blue) {
        return LXRGBA32i{std::uint8_t(blue), std::uint8_t(green), std::uint8_t(red), alpha};
    };
    switch (hsl.hue / sixth) {
    case 0:
        return pixel(high, rising, low);
    case 1:
        return pixel(falling, high, low);
    case 2:
        return pixel(low, high, rising);
    case 3:
        return pixel(low, falling, high);
    case 4:
        return pixel(rising, low, high);
    default:
        return pixel(high, low, falling);
    }
}

/// Mixed with white for a positive lightness, with black for a negative one; 255 is all.
LXRGBA32i Lightened(const LXRGBA32i& pixel, int lightness) {
    const std::uint8_t target = lightness > 0 ? 255 : 0;
    const std::int64_t weight = std::abs(std::int64_t(lightness)) * 1000;
    return LXMixWithIdentity({target, target, target, 0}, pixel, weight);
}

/// QColor's saturation as a percentage. The division loses precision on purpose: the colour goes
/// through the scale of the user's slider, as a saturation set there does.
LXHueSaturationTransformation ColourizerOf(const LXRGBA32i& colour) {
    int hue = 0, saturation = 0, lightness = 0;
    QColor(colour.red, colour.green, colour.blue).getHsl(&hue, &saturation, &lightness);
    return LXHueSaturationTransformation(hue, saturation * 100 / 255, 0, true);
}

} // namespace

LXHueSaturationTransformation::LXHueSaturationTransformation()
    : LXHueSaturationTransformation(0, 0, 0, false) {}

LXHueSaturationTransformation::LXHueSaturationTransformation(int hue, int saturation, int lightness,
                                                             bool colourize)
    : m_hue(hue), m_saturation(Rescale(saturation, 255, 100)),
      m_lightness(Rescale(lightness, 255, 100)), m_colourize(colourize) {}

void LXHueSaturationTransformation::operator()(LXRGBA32i& pixel) const {
    const int hue = OnCircle(m_hue % 360, 1);
    HSL hsl = ToHSL(pixel);
    if (m_colourize) {
        hsl.hue = hue;
        hsl.scale = 1;
        hsl.chroma = hsl.MaxChroma() * std::clamp(m_saturation, 0, 255) / 255;
    } else {
        const int factor = 255 + std::clamp(m_saturation, -255, 255 * 255);
        hsl.hue = OnCircle(hsl.hue + hue * hsl.scale, hsl.scale);
        hsl.chroma = std::min(hsl.chroma * factor / 255, hsl.MaxChroma());
    }
    pixel = Lightened(ToRGB(hsl, pixel.alpha), m_lightness);
}

LXColorizeTransformation::LXColorizeTransformation(const LXRGBA32i& colour, int amount)
    : LXHueSaturationTransformation(ColourizerOf(colour)), m_amount(Rescale(amount, 255, 100)) {}

void LXColorizeTransformation::operator()(LXRGBA32i& pixel) const {
    LXRGBA32i colourized = pixel;
    LXHueSaturationTransformation::operator()(colourized);
    pixel = LXMixWithIdentity(colourized, pixel, std::int64_t(m_amount) * 1000);
}
