#pragma once

#include "LXChannelArithmetic.h"
#include "LXExport.h"
#include "LXIterativeAdjustment.h"

#include <vector>

/// Adjustments that make a picture gray. Alpha stays. Immutable after construction, so that threads
/// may share them.

/// Gray as the weighted sum of red, green and blue, limited to 255.
class LIBIMAGE_EXPORT LXBlackAndWhiteTransformation {
public:
    /// The weights of red, green and blue, on a scale where they usually sum up to 1; each weighted
    /// channel is truncated and limited to 0 .. 255. With `useLightness` the CIE lightness of the
    /// channel, stretched to 0 .. 255, is weighted in its place.
    LXBlackAndWhiteTransformation(bool useLightness, float red, float green, float blue);

    void operator()(LXRGBA32i& pixel) const {
        const unsigned char gray =
            LXClampToByte(m_red[pixel.red] + m_green[pixel.green] + m_blue[pixel.blue]);
        pixel = {gray, gray, gray, pixel.alpha};
    }
    const std::vector<int>& GetRed() const { return m_red; }
    const std::vector<int>& GetGreen() const { return m_green; }
    const std::vector<int>& GetBlue() const { return m_blue; }

private:
    std::vector<int> m_red;
    std::vector<int> m_green;
    std::vector<int> m_blue;
};

using LXIterativeBlackAndWhiteTransformation = LXIterativeAdjustment<LXBlackAndWhiteTransformation>;

/// Gray by the HSL lightness (max + min) / 2, truncated: the same as LXHueSaturationTransformation
/// with a saturation of -100.
class LXDesaturateTransformation {
public:
    void operator()(LXRGBA32i& pixel) const {
        const int max = std::max({pixel.red, pixel.green, pixel.blue});
        const int min = std::min({pixel.red, pixel.green, pixel.blue});
        const auto gray = static_cast<unsigned char>((max + min) / 2);
        pixel = {gray, gray, gray, pixel.alpha};
    }
};
