#pragma once

#include "LXChannelArithmetic.h"
#include "LXExport.h"
#include "LXIterativeAdjustment.h"
#include "LXLevelsTransformation.h"

#include <cstdlib>

/// Adjustments that shift colours: colour balance, photo filter, tint, colour enhancer, colour
/// replacement. Alpha stays. They are immutable but for their setters, and threads may share them
/// while nobody sets.

/// Moves the shadows, midtones and highlights of each channel.
class LIBIMAGE_EXPORT LXColorBalanceTransformation {
public:
    /// Three amounts each, for shadows, midtones and highlights, usually -100 .. 100; zeros are the
    /// identity. The levels 0 and 255 stay whatever the amounts.
    LXColorBalanceTransformation(const int* red, const int* green, const int* blue);

    void operator()(LXRGBA32i& pixel) const { m_tables(pixel); }
    const LXChannelTables& GetTables() const { return m_tables; }

private:
    LXChannelTables m_tables;
};

/// A coloured glass before the lens: a pixel is multiplied by the colour and mixed with itself by
/// the density, and the luminance that it lost is added to each channel.
class LIBIMAGE_EXPORT LXPhotoFilterTransformation : public LXLevelsTransformation {
public:
    /// `density` is a percentage, limited to 0 .. 100 in its effect: 0 is the identity.
    LXPhotoFilterTransformation(const LXRGBA32i& colour, int density);

    void operator()(LXRGBA32i& pixel) const {
        LXRGBA32i filtered = pixel;
        LXLevelsTransformation::operator()(filtered);
        filtered = LXMixWithIdentity(filtered, pixel, std::int64_t(m_density) * 1000);
        const int lost = LXLuminance(pixel) - LXLuminance(filtered);
        pixel = {LXClampToByte(filtered.blue + lost), LXClampToByte(filtered.green + lost),
                 LXClampToByte(filtered.red + lost), pixel.alpha};
    }
    /// On the scale 255 for 100 percent.
    int GetDensity() const { return m_density; }

private:
    int m_density;
};

/// Pulls black towards the colour of the shadows and white towards that of the highlights.
class LIBIMAGE_EXPORT LXTintRGB32 : public LXLevelsTransformation {
public:
    /// `amount` is a percentage: 0 is the identity, and at 100 black and white have become the two
    /// colours.
    LXTintRGB32(const LXRGBA32i& shadows, const LXRGBA32i& highlights, int amount);
};

/// Levels made elsewhere, mixed in by an amount.
class LIBIMAGE_EXPORT LXColorEnhancerTransformation : public LXLevelsTransformation {
public:
    /// Identity levels and amount 0.
    LXColorEnhancerTransformation();

    void SetLevels(const LXLevelsTransformation& levels);
    /// A percentage, limited to 0 .. 100 in its effect: 0 is the identity.
    void SetAmountData(int amount) { m_amount = amount; }
    int GetAmount() const { return m_amount; }

    void operator()(LXRGBA32i& pixel) const {
        LXRGBA32i enhanced = pixel;
        LXLevelsTransformation::operator()(enhanced);
        pixel = LXMixWithIdentity(enhanced, pixel, LXWeightOfPercent(m_amount));
    }

private:
    int m_amount = 0;
};

/// Moves one colour to another, and what is near to it by so much less as it is farther off. The
/// distance of two colours is the greatest of their differences in red, green and blue.
class LIBIMAGE_EXPORT LXReplaceColorTransformation {
public:
    /// The tolerance is in levels: 0 moves the very colour only, a negative one nothing, and above
    /// 255 it acts as 255.
    LXReplaceColorTransformation(const LXRGBA32i& from, const LXRGBA32i& to, int tolerance);

    void operator()(LXRGBA32i& pixel) const {
        const int distance =
            std::max({std::abs(pixel.red - m_from.red), std::abs(pixel.green - m_from.green),
                      std::abs(pixel.blue - m_from.blue)});
        if (distance > m_tolerance)
            return;
        const int full = std::min(m_tolerance, 255) + 1;
        const auto moved = [=](int v, int from, int to) {
            return LXClampToByte(v + (to - from) * (full - distance) / full);
        };
        pixel = {moved(pixel.blue, m_from.blue, m_to.blue),
                 moved(pixel.green, m_from.green, m_to.green),
                 moved(pixel.red, m_from.red, m_to.red), pixel.alpha};
    }
    const LXRGBA32i& GetFrom() const { return m_from; }
    const LXRGBA32i& GetTo() const { return m_to; }
    int GetTolerance() const { return m_tolerance; }

private:
    LXRGBA32i m_from;
    LXRGBA32i m_to;
    int m_tolerance;
};

using LXIterativeColorBalanceTransformation = LXIterativeAdjustment<LXColorBalanceTransformation>;
using LXIterativePhotoFilterTransformation = LXIterativeAdjustment<LXPhotoFilterTransformation>;
using LXIterativeReplaceColorTransformation = LXIterativeAdjustment<LXReplaceColorTransformation>;
