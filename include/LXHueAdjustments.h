#pragma once

#include "LXChannelArithmetic.h"
#include "LXExport.h"
#include "LXIterativeAdjustment.h"

/// Adjustments in the HSL model, in integers. Alpha stays. Immutable after construction, so that
/// threads may share them.

/// Turns the hue, scales the saturation, and then mixes with white or black. As a colourizer it
/// gives all pixels one hue and one saturation, and each keeps its lightness before the mixing.
class LIBIMAGE_EXPORT LXHueSaturationTransformation {
public:
    /// Zeros, not as a colourizer: the identity.
    LXHueSaturationTransformation();
    /// The hue is in degrees, of any number of turns. Saturation and lightness are percentages,
    /// limited where they have done all they can: -100 is gray and black, lightness 100 is white,
    /// and saturation 100 doubles, up to the most colourful of the pixel's lightness. A colourizer
    /// takes a saturation of 0 .. 100 for itself.
    LXHueSaturationTransformation(int hue, int saturation, int lightness, bool colourize);

    void operator()(LXRGBA32i& pixel) const;

    /// As given.
    int GetHue() const { return m_hue; }
    /// On the scale 255 for 100 percent.
    int GetSaturation() const { return m_saturation; }
    int GetLightness() const { return m_lightness; }
    bool IsColourizer() const { return m_colourize; }

private:
    int m_hue;
    int m_saturation;
    int m_lightness;
    bool m_colourize;
};

/// A picture in the shades of one colour, mixed with the picture itself.
class LIBIMAGE_EXPORT LXColorizeTransformation : public LXHueSaturationTransformation {
public:
    /// Hue and saturation are those of the colour in HSL. `amount` is a percentage, limited to
    /// 0 .. 100 in its effect: 0 is the identity.
    LXColorizeTransformation(const LXRGBA32i& colour, int amount);

    void operator()(LXRGBA32i& pixel) const;

    /// On the scale 255 for 100 percent.
    int GetAmount() const { return m_amount; }

private:
    int m_amount;
};

using LXIterativeHueSaturationTransformation = LXIterativeAdjustment<LXHueSaturationTransformation>;
using LXIterativeColorizeTransformation = LXIterativeAdjustment<LXColorizeTransformation>;
