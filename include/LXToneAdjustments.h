#pragma once

#include "LXChannelArithmetic.h"
#include "LXExport.h"
#include "LXIterativeAdjustment.h"

/// Adjustments that do the same to red, green and blue: brightness and contrast, exposure, gamma,
/// posterizing, inversion. Alpha stays, except in LXInvertAlphaTransformation. All are immutable
/// after construction, so that threads may share them.

/// A channel v becomes (v - 127.5 + 255 brightness) * (1 + contrast)^2 + 127.5, the brightness and
/// contrast limited to -1 .. 1: full brightness is white, no contrast is gray, full contrast is
/// four times as steep.
class LIBIMAGE_EXPORT LXBrightnessContrastTransformation {
public:
    /// -127 .. 127 each, kept as percentages truncated; 0, 0 is the identity.
    LXBrightnessContrastTransformation(int brightness, int contrast);

    void operator()(LXRGBA32i& pixel) const {
        const int slope = 100 + std::clamp(m_contrast, -100, 100);
        const int shift = std::clamp(m_brightness, -100, 100) * 51 / 10; // in half levels, as below
        const auto step = [=](int v) {
            const int fromMiddle = 2 * v - 255 + shift;
            return LXClampToByte((fromMiddle * (slope * slope) / 10000 + 255) / 2);
        };
        pixel = {step(pixel.blue), step(pixel.green), step(pixel.red), pixel.alpha};
    }
    /// In percent.
    int GetBrightness() const { return m_brightness; }
    int GetContrast() const { return m_contrast; }

private:
    int m_brightness;
    int m_contrast;
};

/// A channel v becomes v * (exposure / 20.0001 + 1) + offset * 255, for an exposure above -20.0001.
class LIBIMAGE_EXPORT LXExposureTransformation {
public:
    /// 0, 0 is the identity. From where the line reaches 255 the result is 255. At -20.0001 all
    /// levels but 255 become the offset; below it the ends of the line are tested as for a rising
    /// one, which leaves two levels, black and white.
    LXExposureTransformation(double exposure, double offset);

    void operator()(LXRGBA32i& pixel) const { LXApplyTable(m_table, pixel); }
    const LXByteTable& GetTable() const { return m_table; }

private:
    LXByteTable m_table;
};

/// A channel v becomes (v / 255)^(1 / gamma) * 255, truncated.
class LIBIMAGE_EXPORT LXGammaCorrectionTransformation {
public:
    /// The gamma is limited to 0.01 .. 5.
    explicit LXGammaCorrectionTransformation(double gamma);

    void operator()(LXRGBA32i& pixel) const { LXApplyTable(m_table, pixel); }
    const LXByteTable& GetTable() const { return m_table; }

private:
    LXByteTable m_table;
};

/// 0 .. 255 is cut into equal bands, and each band becomes one of as many levels, spread evenly
/// over 0 .. 255.
class LIBIMAGE_EXPORT LXPosterizeTransformation {
public:
    /// The number of levels; useful are 2 .. 255. 1 is black, and 0 leaves pixels as they are;
    /// above 256 the band numbers wrap at 256. A negative number throws std::length_error.
    explicit LXPosterizeTransformation(int levels);

    void operator()(LXRGBA32i& pixel) const {
        if (m_levels.empty())
            return;
        pixel = {m_levels[m_bands[pixel.blue]], m_levels[m_bands[pixel.green]],
                 m_levels[m_bands[pixel.red]], pixel.alpha};
    }
    /// The output level of each band.
    const LXByteTable& GetLevels() const { return m_levels; }
    /// The band of each channel value.
    const LXByteTable& GetBands() const { return m_bands; }

private:
    LXByteTable m_levels;
    LXByteTable m_bands;
};

/// The negative.
class LXInvertTransformation {
public:
    void operator()(LXRGBA32i& pixel) const {
        const auto inverted = [](int v) { return static_cast<std::uint8_t>(255 - v); };
        pixel = {inverted(pixel.blue), inverted(pixel.green), inverted(pixel.red), pixel.alpha};
    }
};

/// Opaque becomes transparent and the reverse; colour stays.
class LXInvertAlphaTransformation {
public:
    void operator()(LXRGBA32i& pixel) const {
        pixel.alpha = static_cast<std::uint8_t>(255 - pixel.alpha);
    }
};

using LXIterativeBrightnessContrastTransformation =
    LXIterativeAdjustment<LXBrightnessContrastTransformation>;
using LXIterativeExposureTransformation = LXIterativeAdjustment<LXExposureTransformation>;
using LXIterativeGammaCorrectionTransformation =
    LXIterativeAdjustment<LXGammaCorrectionTransformation>;
using LXIterativePosterizeTransformation = LXIterativeAdjustment<LXPosterizeTransformation>;
