#include "LXGrayAdjustments.h"

#include "color/ByteTables.h"

namespace {

/// CIE 1976 lightness (ISO 11664-4) of a channel value, 0 .. 255 in place of 0 .. 100. The exponent
/// is the float nearest to 1/3, and the power is double, as the results are defined with them.
float Lightness(int i) {
    const float v = static_cast<float>(i) / 255.0F;
    const float lightness =
        v > 0.008856F ? static_cast<float>(std::pow(double(v), 0.3333333432674408) * 116 - 16)
                      : v * 903.3F;
    return lightness * 2.55F;
}

std::vector<int> WeightedTable(bool useLightness, float weight) {
    std::vector<int> table(256);
    for (int i = 0; i < 256; ++i) {
        const float level = useLightness ? Lightness(i) : static_cast<float>(i);
        table[std::size_t(i)] = TruncateToByte(level * weight);
    }
    return table;
}

} // namespace

LXBlackAndWhiteTransformation::LXBlackAndWhiteTransformation(bool useLightness, float red,
                                                             float green, float blue)
    : m_red(WeightedTable(useLightness, red)), m_green(WeightedTable(useLightness, green)),
      m_blue(WeightedTable(useLightness, blue)) {}
