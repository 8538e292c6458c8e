#include "LXToneAdjustments.h"

#include "color/ByteTables.h"

#include <stdexcept>

LXBrightnessContrastTransformation::LXBrightnessContrastTransformation(int brightness, int contrast)
    : m_brightness(Rescale(brightness, 100, 127)), m_contrast(Rescale(contrast, 100, 127)) {}

LXExposureTransformation::LXExposureTransformation(double exposure, double offset) {
    const double slope = exposure / 20.0001 + 1;
    const double shift = offset * 255;
    // The levels from where the line is black and white; for a falling line they are exchanged.
    const double white = slope != 0 ? (255 - shift) / slope : 255;
    const double black = slope != 0 ? (-0.0 - shift) / slope : 0;
    m_table = MakeByteTable([=](int i) -> int {
        if (black > i)
            return 0;
        if (!(white > i))
            return 255;
        return TruncateToByte(i * slope + shift);
    });
}

LXGammaCorrectionTransformation::LXGammaCorrectionTransformation(double gamma) {
    const double exponent = 1.0 / LimitGamma(gamma, 5);
    m_table = MakeByteTable([=](int i) { return PowerLevel(i, exponent); });
}

LXPosterizeTransformation::LXPosterizeTransformation(int levels) {
    if (levels < 0)
        throw std::length_error("LXPosterizeTransformation");
    m_levels.resize(std::size_t(levels));
    for (int k = 0; levels > 1 && k < levels; ++k)
        m_levels[std::size_t(k)] = static_cast<unsigned char>(std::int64_t(255) * k / (levels - 1));

    const double bandWidth = 255.0 / levels;
    m_bands = MakeByteTable([=](int i) { return TruncateToInt(i / bandWidth); });
    m_bands[255] = static_cast<unsigned char>(levels - 1); // or it would fall off the last band
}
