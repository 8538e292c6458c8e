#include "LXGaussian1D.h"
#include "core/Truncate.h"

#include <cmath>

/// w(k) = exp(-k^2 / (2 sigma^2)) / (2 pi sigma^2), and then all divided by their sum. The order
/// of the operations decides the last bit.
LXGaussianTaps::LXGaussianTaps(double sigma)
    : m_radius(std::max(TruncateToInt(3.0 * sigma), 1)), m_weights(2 * std::size_t(m_radius) + 1) {
    constexpr double Pi = 3.141592653589793;
    const std::size_t radius = std::size_t(m_radius);
    double sum = 0;
    for (std::size_t k = 0; k <= radius; ++k) {
        const double square = double(k) * double(k);
        const double w = std::exp(-square / (2 * sigma * sigma)) / (Pi * 2 * sigma * sigma);
        m_weights[radius + k] = m_weights[radius - k] = w;
        sum += k == 0 ? w : 2 * w;
    }
    for (double& weight : m_weights)
        weight /= sum;
}
