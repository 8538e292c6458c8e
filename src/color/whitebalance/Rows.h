#pragma once

#include "LXPixel.h"

#include <array>

namespace LXRows {

using LevelCounts = std::array<unsigned int, 256>;

/// How often each level occurs.
struct Levels {
    LevelCounts red{};
    LevelCounts green{};
    LevelCounts blue{};
    LevelCounts luma{}; ///< of LumaBin
};

/// Sums over pixels of Y, Cb and Cr, which are added one pixel after the other.
struct YCbCrSums {
    double y = 0;
    double cb = 0;
    double cr = 0;
};

/// Counts and adds in one loop: counting is bound by stores, and adding by the time that one
/// addition takes, so that each has room for the other.
void CountAndAdd(const LXRGBA32i* row, unsigned int count, Levels& levels, YCbCrSums& sums);

/// True if any pixel is gray by IsGrey.
bool HasGrey(const LXRGBA32i* row, unsigned int count, double threshold);

} // namespace LXRows
