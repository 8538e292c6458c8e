#pragma once

/// Colour formulas as the white balance measures with them, inline for its kernels.
namespace LXWhiteBalance {

/// Within 0 .. 255; what is no number, as 0 / 0 in a channel of one level, counts as 0.
inline double LimitedLevel(double value) {
    return value > 0 ? (value < 255 ? value : 255) : 0;
}

struct YUV {
    double y, u, v;
};

inline YUV YUVOf(int r, int g, int b) {
    return {0.299 * r + 0.587 * g + 0.114 * b, -0.147 * r - 0.289 * g + 0.436 * b,
            0.615 * r - 0.515 * g - 0.1 * b};
}

/// What red, green and blue weigh in Y, Cb and Cr; they are added in this order, the offset last.
constexpr double YCbCrWeights[3][3] = {
    {65.481, -37.797, 112.0}, {128.553, -74.203, -93.786}, {24.966, 112.0, -18.214}};
constexpr double YCbCrOffsets[3] = {16.0, 128.0, 128.0};

/// Red and blue have each other's weight here. That is how the bins are defined; Y has it right.
constexpr int LumaBin(int r, int g, int b) {
    return (11 * r + 59 * g + 30 * b) / 100;
}

/// Chroma against brightness. U and V are cut to whole numbers, which always fit.
inline bool IsGrey(const YUV& colour, double threshold) {
    const int u = static_cast<int>(colour.u), v = static_cast<int>(colour.v);
    return ((u < 0 ? -u : u) + (v < 0 ? -v : v)) / (colour.y + 0.00001) < threshold;
}

} // namespace LXWhiteBalance
