#pragma once

#include "LXPixel.h"

/// The alpha-correct gaussian of a few neighbouring pixels, taps by taps.
namespace LXRows {

/// How many pixels are done together, and with how many taps at a time.
constexpr unsigned int GaussianBlock = 64;
constexpr unsigned int GaussianTapsAtOnce = 256;

/// The channels of the source, each in an array of its own, from the first pixel and tap on.
struct GaussianSource {
    static constexpr unsigned int Reach = GaussianBlock + GaussianTapsAtOnce;
    double blue[Reach], green[Reach], red[Reach], alpha[Reach];
};

struct GaussianSums {
    double blue[GaussianBlock] = {};
    double green[GaussianBlock] = {};
    double red[GaussianBlock] = {};
    double alpha[GaussianBlock] = {};
};

/// Adds the next `taps` taps, at most GaussianTapsAtOnce, to each sum: of sum i, tap j weighs
/// source pixel i + j.
void AddGaussianTaps(const GaussianSource& source, const double* weights, unsigned int taps,
                     GaussianSums& sums);

/// The pixels of the first `count` sums.
void StoreGaussian(const GaussianSums& sums, LXRGBA32i* result, unsigned int count);

} // namespace LXRows
