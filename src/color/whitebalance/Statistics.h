#pragma once

#include "LXImage.h"
#include "color/whitebalance/Rows.h"

#include <QtGui/QImage>

#include <cstdint>
#include <vector>

/// What LXHistogram and LXCommonParamsCalculator would find on a walk over a picture, each sum with
/// the same bits, in less time.
namespace LXWhiteBalance {

/// Neighbouring pixels of the walk.
struct Section {
    unsigned int pixels = 0;
    LXRows::Levels levels;
};

using Histogram = std::array<std::int64_t, 256>;

/// What one walk tells.
struct Census {
    std::vector<Section> sections; ///< in the order of the walk
    LXRows::YCbCrSums sums;

    std::int64_t Count() const;
    Histogram Total(LXRows::LevelCounts LXRows::Levels::*counts) const;
};

struct PerChannel {
    double red = 0;
    double green = 0;
    double blue = 0;
};

/// `Image` is LXImageRGBA32i or QImage.
template <class Image>
Census TakeCensus(const Image& image);

/// The sums of the channels' squared deviations from the means, from a second walk.
template <class Image>
PerChannel SumSquares(const Image& image, const Census& census, const PerChannel& means);

} // namespace LXWhiteBalance
