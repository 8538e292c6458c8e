#pragma once

#include "LXExport.h"
#include "LXPixel.h"

#include <QtCore/QMutex>

#include <vector>

/// Visitors that count the levels of an image. A histogram is 256 bins of the caller's, which are
/// added to and must outlive the visit; a null one is skipped.

/// Counts red, green, blue and luminance, and may be shared by threads: each pixel is counted under
/// the mutex. A copy has a mutex of its own, so two copies must not count into the same bins at
/// once.
class LIBIMAGE_EXPORT LXHistogrammCalculator {
public:
    LXHistogrammCalculator() = default;
    LXHistogrammCalculator(const LXHistogrammCalculator& other);
    LXHistogrammCalculator& operator=(const LXHistogrammCalculator&) = delete;

    void SetOutput(int* red, int* green, int* blue, int* luminance);

    void operator()(const LXRGBA32i& pixel) const;

    /// The levels (low, high) between which nearly all of the 256 bins lie: up to a thousandth of
    /// the sum is cut off at either end. The two are always more than 15 apart; an empty histogram
    /// gives (255, 0). The sum must fit an int.
    static std::vector<int> Threshold(const int* histogram);

private:
    mutable QMutex m_mutex;
    int* m_red = nullptr;
    int* m_green = nullptr;
    int* m_blue = nullptr;
    int* m_luminance = nullptr;
};

/// Counts red, green and blue, without a lock: for one thread.
class RMRGBHistogram {
public:
    RMRGBHistogram() = default;
    RMRGBHistogram(unsigned int* red, unsigned int* green, unsigned int* blue) {
        SetOutput(red, green, blue);
    }

    void SetOutput(unsigned int* red, unsigned int* green, unsigned int* blue) {
        m_red = red;
        m_green = green;
        m_blue = blue;
    }

    void operator()(const LXRGBA32i& pixel) const {
        if (m_red)
            ++m_red[pixel.red];
        if (m_green)
            ++m_green[pixel.green];
        if (m_blue)
            ++m_blue[pixel.blue];
    }

private:
    unsigned int* m_red = nullptr;
    unsigned int* m_green = nullptr;
    unsigned int* m_blue = nullptr;
};
