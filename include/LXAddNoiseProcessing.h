#pragma once

#include "LXAdjustmentProcessing.h"
#include "LXPixel.h"

#include <random>

class QDataStream;

/// Blends noise over the picture.
///
/// The noise is kept by the caller from run to run, one image for each distribution: with noise of
/// the right size a run is one blend, and the pattern stays. New noise is seeded with the time in
/// seconds.
class LIBIMAGE_EXPORT LXAddNoiseProcessing : public LXFilter {
public:
    struct LIBIMAGE_EXPORT Params {
        int amount = 50;       ///< percent
        int distribution = 0;  ///< 0 uniform, any other gaussian
        bool keepAlpha = true; ///< of the picture

        /// On the stream: "RMAddNoise 1.00000", and the fields in this order.
        bool Read(QDataStream& stream);
        bool Write(QDataStream& stream) const;
    };
    using AddNoiseData = LXFilterData<Params>;

    /// The cache is the caller's and outlives the filter. It is read, and also written, under
    /// `cacheLock` for reading: filters that share a cache must not run at once. A run that is
    /// cancelled before its noise is complete leaves it alone.
    LXAddNoiseProcessing(QReadWriteLock& cancelLock, bool& cancelFlag, QReadWriteLock& cacheLock,
                         LXImageRGBA32i& cachedUniformNoise, LXImageRGBA32i& cachedGaussianNoise)
        : LXFilter(cancelLock, cancelFlag), m_cacheLock(&cacheLock),
          m_cachedUniformNoise(&cachedUniformNoise), m_cachedGaussianNoise(&cachedGaussianNoise) {}

    LXImageRGBA32i run(AddNoiseData data);

    /// Pixels of independent channels, drawn in the order red, green, blue, alpha. They change
    /// themselves with each draw.
    class LIBIMAGE_EXPORT LXUniformNoise {
    public:
        explicit LXUniformNoise(std::mt19937::result_type seed) : m_generator(seed) {}
        void operator()(LXRGBA32i& pixel);

    private:
        std::mt19937 m_generator;
        std::uniform_int_distribution<int> m_red{0, 255}, m_green{0, 255}, m_blue{0, 255},
            m_alpha{0, 255};
    };
    /// Normal with mean and deviation 255, truncated and limited to 0 .. 255: about half of all
    /// draws are 255.
    class LIBIMAGE_EXPORT LXGaussianNoise {
    public:
        explicit LXGaussianNoise(std::mt19937::result_type seed) : m_generator(seed) {}
        void operator()(LXRGBA32i& pixel);

    private:
        std::mt19937 m_generator;
        std::normal_distribution<double> m_red{255.0, 255.0}, m_green{255.0, 255.0},
            m_blue{255.0, 255.0}, m_alpha{255.0, 255.0};
    };

private:
    QReadWriteLock* m_cacheLock;
    LXImageRGBA32i* m_cachedUniformNoise;
    LXImageRGBA32i* m_cachedGaussianNoise;
};

LIBIMAGE_EXPORT QDataStream& operator<<(QDataStream&, const LXAddNoiseProcessing::Params&);
LIBIMAGE_EXPORT QDataStream& operator>>(QDataStream&, LXAddNoiseProcessing::Params&);
