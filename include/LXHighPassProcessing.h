#pragma once

#include "LXAdjustmentProcessing.h"

class QDataStream;

/// Subtracts a gaussian blur from the picture, around gray, and blends that over the picture.
///
/// Blur and difference depend on the radius alone and are kept by the caller from run to run: with
/// the same radius a run is one blend. Whoever changes the picture or the selection must change
/// `cachedRadius` as well, best to not-a-number.
class LIBIMAGE_EXPORT LXHighPassProcessing : public LXFilter {
public:
    struct LIBIMAGE_EXPORT Params {
        double radius = 10.0; ///< the sigma of the gaussian, in pixels, see LXGaussian1D.h
        int modeIndex = 1;    ///< see IndexToMode
        int opacity = 100;    ///< percent

        /// On the stream: "RMHighPass 1.00000", radius, modeIndex, opacity.
        bool Read(QDataStream& stream);
        bool Write(QDataStream& stream) const;
    };
    using HighPassData = LXFilterData<Params>;

    /// The cache is the caller's, outlives the filter, and is read and written under `cacheLock`. A
    /// run that is cancelled before its result is complete leaves it alone.
    LXHighPassProcessing(QReadWriteLock& cancelLock, bool& cancelFlag, QReadWriteLock& cacheLock,
                         double& cachedRadius, LXImageRGBA32i& cachedResult)
        : LXFilter(cancelLock, cancelFlag), m_cacheLock(&cacheLock), m_cachedRadius(&cachedRadius),
          m_cachedResult(&cachedResult) {}

    /// The range is 2 with a cached result, and else the steps and about a hundredth more for what
    /// follows them.
    LXImageRGBA32i run(HighPassData data);

    /// The blend mode of an index: SourceOver, Overlay, SoftLight, HardLight; SourceOver for any
    /// other.
    static unsigned int IndexToMode(int index);

private:
    QReadWriteLock* m_cacheLock;
    double* m_cachedRadius;
    LXImageRGBA32i* m_cachedResult;
};

LIBIMAGE_EXPORT QDataStream& operator<<(QDataStream&, const LXHighPassProcessing::Params&);
LIBIMAGE_EXPORT QDataStream& operator>>(QDataStream&, LXHighPassProcessing::Params&);
