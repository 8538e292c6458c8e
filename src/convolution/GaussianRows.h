#pragma once

#include "LXPixel.h"

namespace LXRows {

/// How many pixels GaussianPremul does at a time.
constexpr unsigned int GaussianBlock = 64;

/// The channels of neighbouring pixels, each in an array of its own.
struct GaussianSource {
    const double *blue, *green, *red, *alpha;
};

/// `count` pixels, at most GaussianBlock, of the alpha-correct gaussian; pixel i is the sum over
/// `taps` weights from source pixel i on.
void GaussianPremul(const GaussianSource& source, const double* weights, unsigned int taps,
                    LXRGBA32i* result, unsigned int count);

} // namespace LXRows
