#include "LXHistogrammCalculator.h"

#include "LXChannelArithmetic.h"
#include "core/MutexLocker.h"

#include <cstdlib>
#include <numeric>

LXHistogrammCalculator::LXHistogrammCalculator(const LXHistogrammCalculator& other) {
    const MutexLocker lock(other.m_mutex);
    m_red = other.m_red;
    m_green = other.m_green;
    m_blue = other.m_blue;
    m_luminance = other.m_luminance;
}

void LXHistogrammCalculator::SetOutput(int* red, int* green, int* blue, int* luminance) {
    const MutexLocker lock(m_mutex);
    m_red = red;
    m_green = green;
    m_blue = blue;
    m_luminance = luminance;
}

void LXHistogrammCalculator::operator()(const LXRGBA32i& pixel) const {
    const auto count = [](int* histogram, int level) {
        if (histogram)
            ++histogram[level];
    };
    const MutexLocker lock(m_mutex);
    count(m_red, pixel.red);
    count(m_green, pixel.green);
    count(m_blue, pixel.blue);
    count(m_luminance, LXLuminance(pixel));
}

namespace {

/// The last bin, from `first` on in steps of `step`, up to which the running sum stays within the
/// limit; `first` if none does.
int LastWithin(double limit, const int* histogram, int first, int step) {
    int last = first;
    double sum = 0;
    for (int bin = first; bin >= 0 && bin < 256; bin += step) {
        sum += histogram[bin];
        if (sum > limit)
            break;
        last = bin;
    }
    return last;
}

} // namespace

std::vector<int> LXHistogrammCalculator::Threshold(const int* histogram) {
    // Unsigned, so that a sum that fits no int wraps.
    const unsigned int total = std::accumulate(histogram, histogram + 256, 0U);
    const double limit = static_cast<int>(total) / 1000.0;
    const int low = LastWithin(limit, histogram, 0, 1);
    const int high = LastWithin(limit, histogram, 255, -1);
    if (std::abs(high - low) > 15)
        return {low, high};
    if (low + high < 16)
        return {0, 16};
    const int middle = std::min((low + high) / 2, 247);
    return {middle - 8, middle + 8};
}
