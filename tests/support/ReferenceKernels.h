#pragma once

#include "LXPixel.h"

#include <cmath>
#include <cstdlib>
#include <vector>

/// The one-dimensional kernels in plain steps, on lines of channels. They share nothing with the
/// library but the pixel type.
namespace Reference {

using Line = std::vector<LXRGBA32i>;

constexpr std::uint8_t LXRGBA32i::*Channels[] = {&LXRGBA32i::blue, &LXRGBA32i::green,
                                                 &LXRGBA32i::red, &LXRGBA32i::alpha};

inline LXRGBA32i At(const Line& line, long long p) {
    const long long last = (long long)line.size() - 1;
    return line[std::size_t(p < 0 ? 0 : p > last ? last : p)];
}

/// What a kernel of lines, the library's or an application's, makes of `size` pixels of the line,
/// from an offset on; last first, as the order must not matter.
template <class Kernel>
Line Through(Kernel kernel, const Line& source, int offset, std::size_t size) {
    Line destination(size, LXRGBA32i{9, 9, 9, 9});
    kernel.SetSource(&source);
    kernel.SetDestination(&destination);
    kernel.SetSourceOffset(offset);
    for (int i = int(size) - 1; i >= 0; --i)
        kernel(i);
    return destination;
}

/// For weights without overflow.
inline int Box(int l, int c, int r, int weight) {
    if (weight == 0)
        return c;
    return (l * weight + c * (765 - 2 * weight) + r * weight + 255) / 765 & 255;
}

inline int Sharpen(int l, int c, int r, int weight) {
    if (weight == 0)
        return c;
    const int v = c * (1785 + 2 * weight) + 765 - (l + r) * weight;
    return v >= 456960 ? 255 : v / 1785 < 1 ? 0 : v / 1785;
}

inline std::vector<double> GaussianWeights(double sigma) {
    const int radius = int(3.0 * sigma) > 1 ? int(3.0 * sigma) : 1;
    std::vector<double> weights(std::size_t(2 * radius + 1));
    double sum = 0;
    for (int k = 0; k <= radius; ++k) {
        const double w =
            std::exp(-(k * k) / (2 * sigma * sigma)) / (3.141592653589793 * 2 * sigma * sigma);
        weights[std::size_t(radius + k)] = w;
        weights[std::size_t(radius - k)] = w;
        sum += k ? 2 * w : w;
    }
    for (double& w : weights)
        w /= sum;
    return weights;
}

inline int Round255(double v) {
    const int n = int(v + 0.5);
    return n < 0 ? 0 : n > 255 ? 255 : n;
}

inline LXRGBA32i Gaussian(const Line& line, long long centre, const std::vector<double>& weights) {
    LXRGBA32i result{};
    for (const auto channel : Channels) {
        double sum = 0;
        for (std::size_t j = 0; j < weights.size(); ++j)
            sum += At(line, centre - long(weights.size() / 2) + long(j)).*channel * weights[j];
        result.*channel = std::uint8_t(Round255(sum));
    }
    return result;
}

inline LXRGBA32i GaussianPremul(const Line& line, long long centre,
                                const std::vector<double>& weights) {
    const int alpha = Gaussian(line, centre, weights).alpha;
    LXRGBA32i result{0, 0, 0, std::uint8_t(alpha)};
    for (int n = 0; n < 3 && alpha >= 1; ++n) {
        double sum = 0;
        for (std::size_t j = 0; j < weights.size(); ++j) {
            const LXRGBA32i p = At(line, centre - long(weights.size() / 2) + long(j));
            sum += p.*Channels[n] * weights[j] * p.alpha / 255.0;
        }
        result.*Channels[n] = std::uint8_t(Round255(sum * 255.0 / alpha));
    }
    return result;
}

inline int ShiftedAlpha(const Line& line, long long centre, int shift) {
    int alpha = At(line, centre).alpha;
    for (int k = 1; k <= std::abs(shift); ++k)
        for (const long long p : {centre - k, centre + k}) {
            const bool inside = p >= 0 && p < (long long)line.size();
            const int a = inside ? At(line, p).alpha : 0;
            if (shift > 0 ? inside && a > alpha : a < alpha)
                alpha = a;
        }
    return alpha;
}

/// The means of a window of the line, as the accumulators define them; premultiplied or not.
inline LXRGBA32i WindowMean(const Line& line, int centre, int radius, bool premultiplied) {
    int sums[4] = {}, count = 2 * radius + 1;
    for (int p = centre - radius; p <= centre + radius; ++p)
        for (int n = 0; n < 4; ++n) {
            const LXRGBA32i pixel = At(line, p);
            const int v = pixel.*Channels[n];
            sums[n] += premultiplied && n < 3 ? v * pixel.alpha / 255 : v;
        }
    const int alpha = sums[3] / count;
    LXRGBA32i result{0, 0, 0, std::uint8_t(alpha)};
    for (int n = 0; n < 3; ++n) {
        const int mean = sums[n] / count;
        result.*Channels[n] = std::uint8_t(!premultiplied ? mean
                                           : alpha < 1    ? 0
                                                          : mean * 255 / alpha);
    }
    return result;
}

} // namespace Reference
