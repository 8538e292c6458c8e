#include "LXColorAdjustments.h"

#include "color/ByteTables.h"

namespace {

/// A bell curve around a level. The constants are floats, only the exponential is double, and the
/// result is float again, as the tables are defined with them.
float Bell(int level, float centre, float narrowness, float height) {
    const float distance = static_cast<float>(level) - centre;
    const float exponent = -narrowness * (distance * distance);
    return static_cast<float>(std::exp(double(exponent)) * double(height));
}

/// Shadows, midtones, highlights. The ends are pinned: whatever else moves, black and white stay.
LXByteTable BalanceTable(const int* amounts) {
    LXByteTable table = MakeByteTable([amounts](int i) {
        const float shadows = Bell(i, 80.0F, 0.00055F, 0.43F);
        const float midtones = Bell(i, 127.5F, 0.0004F, 0.74F);
        const float highlights = Bell(i, 176.0F, 0.00055F, 0.43F);
        return TruncateToByte(static_cast<float>(amounts[0]) * shadows +
                              static_cast<float>(amounts[1]) * midtones +
                              static_cast<float>(amounts[2]) * highlights + static_cast<float>(i));
    });
    table[0] = 0;
    table[255] = 255;
    return table;
}

struct OutputRange {
    int low, high;
};

/// Levels that only stretch each channel over a range of outputs.
LXLevelsTransformation OutputLevels(OutputRange red, OutputRange green, OutputRange blue) {
    int inputs[4][2] = {{0, 255}, {0, 255}, {0, 255}, {0, 255}};
    int outputs[4][2] = {
        {0, 255}, {red.low, red.high}, {green.low, green.high}, {blue.low, blue.high}};
    double gammas[4] = {1.0, 1.0, 1.0, 1.0};
    return LXLevelsTransformation(inputs, outputs, gammas, 100);
}

OutputRange TintRange(int shadow, int highlight, int amount) {
    return {Rescale(shadow, amount, 100),
            SaturateToInt(Rescale(highlight - 255, amount, 100) + std::int64_t(255))};
}

} // namespace

LXColorBalanceTransformation::LXColorBalanceTransformation(const int* red, const int* green,
                                                           const int* blue)
    : m_tables{BalanceTable(red), BalanceTable(green), BalanceTable(blue)} {}

LXPhotoFilterTransformation::LXPhotoFilterTransformation(const LXRGBA32i& colour, int density)
    : LXLevelsTransformation(OutputLevels({0, colour.red}, {0, colour.green}, {0, colour.blue})),
      m_density(Rescale(density, 255, 100)) {}

LXTintRGB32::LXTintRGB32(const LXRGBA32i& shadows, const LXRGBA32i& highlights, int amount)
    : LXLevelsTransformation(OutputLevels(TintRange(shadows.red, highlights.red, amount),
                                          TintRange(shadows.green, highlights.green, amount),
                                          TintRange(shadows.blue, highlights.blue, amount))) {}

LXColorEnhancerTransformation::LXColorEnhancerTransformation() = default;

void LXColorEnhancerTransformation::SetLevels(const LXLevelsTransformation& levels) {
    if (this != &levels)
        LXLevelsTransformation::operator=(levels);
}

LXReplaceColorTransformation::LXReplaceColorTransformation(const LXRGBA32i& from,
                                                           const LXRGBA32i& to, int tolerance)
    : m_from(from), m_to(to), m_tolerance(tolerance) {}
