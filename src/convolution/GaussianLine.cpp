#include "LXGaussian1D.h"
#include "convolution/GaussianRows.h"

#include <algorithm>

using namespace LXRows;

/// Nothing is allocated, however many taps there are: this runs on the threads of the pool.
void LXGaussian1DPremul::Line(int first, int last) const {
    const std::vector<double>& weights = m_taps.Weights();
    GaussianSource source;
    for (int i = first; i < last; i += int(GaussianBlock)) {
        GaussianSums sums;
        for (std::size_t tap = 0; tap < weights.size(); tap += GaussianTapsAtOnce) {
            const unsigned int taps =
                unsigned(std::min<std::size_t>(weights.size() - tap, GaussianTapsAtOnce));
            const std::int64_t start = m_lines.Centre(i) - m_taps.Radius() + std::int64_t(tap);
            for (unsigned int k = 0; k < GaussianBlock + taps; ++k) {
                const LXRGBA32i pixel = m_lines.Source(start + k);
                source.blue[k] = pixel.blue;
                source.green[k] = pixel.green;
                source.red[k] = pixel.red;
                source.alpha[k] = pixel.alpha;
            }
            AddGaussianTaps(source, &weights[tap], taps, sums);
        }
        StoreGaussian(sums, &m_lines.Destination(i), std::min(unsigned(last - i), GaussianBlock));
    }
}
