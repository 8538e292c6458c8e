#pragma once

#include "LXSmoothenProcessing.h"

/// Sharpens with LXSimpleSharpenKernel1D, along lines and then along columns.
class LIBIMAGE_EXPORT LXSharpenProcessing : public LXFilter {
public:
    struct LIBIMAGE_EXPORT Params {
        int amount = 10; ///< the kernel's weight; 0 changes nothing

        /// On the stream: "RMSharpen 1.00000", amount.
        bool Read(QDataStream& stream);
        bool Write(QDataStream& stream) const;
    };
    using SharpenData = LXThreeTapData;

    LXSharpenProcessing(QReadWriteLock& cancelLock, bool& cancelFlag)
        : LXFilter(cancelLock, cancelFlag) {}

    LXImageRGBA32i run(SharpenData data);
};

LIBIMAGE_EXPORT QDataStream& operator<<(QDataStream&, const LXSharpenProcessing::Params&);
LIBIMAGE_EXPORT QDataStream& operator>>(QDataStream&, LXSharpenProcessing::Params&);
