#include "LXGaussian1D.h"
#include "convolution/GaussianRows.h"

void LXGaussian1DPremul::Line(int first, int last) const {
    constexpr int block = int(LXRows::GaussianBlock);
    const std::vector<double>& weights = m_taps.Weights();
    const std::size_t reached = LXRows::GaussianBlock + weights.size();
    std::vector<double> channels(4 * reached);
    double* const blue = channels.data();
    double* const green = blue + reached;
    double* const red = green + reached;
    double* const alpha = red + reached;
    for (int i = first; i < last; i += block) {
        const std::int64_t start = m_lines.Centre(i) - m_taps.Radius();
        for (std::size_t k = 0; k < reached; ++k) {
            const LXRGBA32i pixel = m_lines.Source(start + std::int64_t(k));
            blue[k] = pixel.blue;
            green[k] = pixel.green;
            red[k] = pixel.red;
            alpha[k] = pixel.alpha;
        }
        LXRows::GaussianPremul({blue, green, red, alpha}, weights.data(), unsigned(weights.size()),
                               &m_lines.Destination(i), unsigned(std::min(last - i, block)));
    }
}
