#include "color/whitebalance/Rows.h"

#include "color/whitebalance/Formulas.h"
#include "core/Clones.h"
#include "core/conversion/PixelWords.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace {

using namespace LXWhiteBalance;

/// What a level of one channel adds to Y, Cb and Cr, and 0 to fill a vector.
struct alignas(32) Terms {
    double sums[4];
};

/// The terms of all levels, the product of each as getYCbCr takes it.
constexpr std::array<Terms, 256> TermsOf(int channel) {
    std::array<Terms, 256> terms{};
    for (std::size_t level = 0; level < 256; ++level)
        for (int k = 0; k < 3; ++k)
            terms[level].sums[k] = YCbCrWeights[channel][k] * (double(level) / 255.0);
    return terms;
}

constexpr std::array<Terms, 256> RedTerms = TermsOf(0), GreenTerms = TermsOf(1),
                                 BlueTerms = TermsOf(2);
constexpr Terms Offsets{{YCbCrOffsets[0], YCbCrOffsets[1], YCbCrOffsets[2], 0}};

struct Colour {
    std::size_t red, green, blue;
};

inline Colour ColourOf(const LXRGBA32i& pixel) {
    const std::uint32_t word = LXWords::WordOf(pixel);
    return {word >> 16 & 0xFF, word >> 8 & 0xFF, word & 0xFF};
}

constexpr unsigned int BlockPixels = 256;

LX_CLONED void LumaRow(const LXRGBA32i* row, unsigned int count, std::uint8_t* bins) {
    for (unsigned int i = 0; i < count; ++i) {
        const std::uint32_t word = LXWords::WordOf(row[i]);
        bins[i] = static_cast<std::uint8_t>(
            LumaBin(LXWords::Byte(word, 2), LXWords::Byte(word, 1), LXWords::Byte(word, 0)));
    }
}

/// Four sums, the last of zeros: with three the compiler would split the vector.
LX_CLONED void CountAndAddRow(const LXRGBA32i* row, const std::uint8_t* lumaBins,
                              unsigned int count, LXRows::Levels& levels, double* sums) {
    double running[4] = {sums[0], sums[1], sums[2], sums[3]};
    for (unsigned int i = 0; i < count; ++i) {
        const Colour colour = ColourOf(row[i]);
        ++levels.red[colour.red];
        ++levels.green[colour.green];
        ++levels.blue[colour.blue];
        ++levels.luma[lumaBins[i]];
        const Terms &red = RedTerms[colour.red], &green = GreenTerms[colour.green],
                    &blue = BlueTerms[colour.blue];
        for (int k = 0; k < 4; ++k)
            running[k] += red.sums[k] + green.sums[k] + blue.sums[k] + Offsets.sums[k];
    }
    std::copy(running, running + 4, sums);
}

LX_CLONED bool HasGreyRow(const LXRGBA32i* row, unsigned int count, double threshold) {
    int found = 0;
    for (unsigned int i = 0; i < count; ++i) {
        const std::uint32_t word = LXWords::WordOf(row[i]);
        const YUV colour =
            YUVOf(LXWords::Byte(word, 2), LXWords::Byte(word, 1), LXWords::Byte(word, 0));
        found |= IsGrey(colour, threshold);
    }
    return found != 0;
}

/// IsGrey in floats and without cutting, which takes less than 2 away: true for all gray pixels and
/// a few others.
LX_CLONED bool HasNearlyGreyRow(const LXRGBA32i* row, unsigned int count, float threshold) {
    constexpr float Cut = 2, Rounding = 0.01F;
    int found = 0;
    for (unsigned int i = 0; i < count; ++i) {
        const std::uint32_t word = LXWords::WordOf(row[i]);
        const auto r = static_cast<float>(LXWords::Byte(word, 2)),
                   g = static_cast<float>(LXWords::Byte(word, 1)),
                   b = static_cast<float>(LXWords::Byte(word, 0));
        const float y = 0.299F * r + 0.587F * g + 0.114F * b;
        const float u = -0.147F * r - 0.289F * g + 0.436F * b;
        const float v = 0.615F * r - 0.515F * g - 0.1F * b;
        found |= std::fabs(u) + std::fabs(v) - (Cut + Rounding) < threshold * (y + 0.00001F);
    }
    return found != 0;
}

} // namespace

void LXRows::CountAndAdd(const LXRGBA32i* row, unsigned int count, Levels& levels,
                         YCbCrSums& sums) {
    double running[4] = {sums.y, sums.cb, sums.cr, 0};
    std::uint8_t lumaBins[BlockPixels];
    for (unsigned int done = 0; done < count; done += BlockPixels) {
        const unsigned int block = std::min(count - done, BlockPixels);
        LumaRow(row + done, block, lumaBins);
        CountAndAddRow(row + done, lumaBins, block, levels, running);
    }
    sums = {running[0], running[1], running[2]};
}

bool LXRows::HasGrey(const LXRGBA32i* row, unsigned int count, double threshold) {
    const auto coarse = static_cast<float>(std::clamp(threshold, -1e6, 1e6));
    return HasNearlyGreyRow(row, count, coarse) && HasGreyRow(row, count, threshold);
}
