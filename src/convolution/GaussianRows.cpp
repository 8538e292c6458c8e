#include "convolution/GaussianRows.h"

#include "LXGaussian1D.h"
#include "core/Clones.h"

#include <cstdint>

namespace {

/// x / 255, correctly rounded. With 1 / 255 off by no more than 2^-56 of itself, the product is
/// within one unit in the last place of the quotient, and one fused correction step then gives the
/// rounded one: three operations that run as fast as they are issued, where a division waits.
template <bool Fused>
inline double Over255(double x) {
    constexpr double reciprocal = 1 / 255.0;
    if constexpr (Fused) {
        const double q = x * reciprocal;
        return __builtin_fma(__builtin_fma(-q, 255.0, x), reciprocal, q);
    } else {
        return x / 255.0;
    }
}

/// Taps outermost: each sum gets its terms from left to right, as the kernel's operator does it.
/// The arrays come one by one: as members of one struct they are not known to be apart.
template <bool Fused>
LX_CLONED void AddTaps(const double* __restrict blue, const double* __restrict green,
                       const double* __restrict red, const double* __restrict alpha,
                       const double* __restrict weights, unsigned int taps,
                       LXRows::GaussianSums& __restrict sums) {
    for (unsigned int j = 0; j < taps; ++j) {
        const double w = weights[j];
        for (unsigned int i = 0; i < LXRows::GaussianBlock; ++i) {
            const double a = alpha[i + j];
            sums.alpha[i] += w * a;
            sums.blue[i] += Over255<Fused>(blue[i + j] * w * a);
            sums.green[i] += Over255<Fused>(green[i + j] * w * a);
            sums.red[i] += Over255<Fused>(red[i + j] * w * a);
        }
    }
}

} // namespace

void LXRows::AddGaussianTaps(const GaussianSource& source, const double* weights, unsigned int taps,
                             GaussianSums& sums) {
    const auto addTaps = LXFusesInHardware() ? AddTaps<true> : AddTaps<false>;
    addTaps(source.blue, source.green, source.red, source.alpha, weights, taps, sums);
}

void LXRows::StoreGaussian(const GaussianSums& sums, LXRGBA32i* result, unsigned int count) {
    for (unsigned int i = 0; i < count; ++i) {
        const std::uint8_t alpha = LXGaussianTaps::Rounded(sums.alpha[i]);
        const auto straight = [alpha](double sum) {
            return LXGaussianTaps::Rounded(sum * 255.0 / alpha);
        };
        result[i] = alpha < 1 ? LXRGBA32i{}
                              : LXRGBA32i{straight(sums.blue[i]), straight(sums.green[i]),
                                          straight(sums.red[i]), alpha};
    }
}
