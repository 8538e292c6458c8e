#pragma once

#include "LXAdjustmentProcessing.h"

class QDataStream;

/// The arguments of the filters with a kernel of three taps. What is called reserved is not read.
struct LXThreeTapData {
    LXImageRGBA32i image{0, 0};
    LXImageRGBA32i reserved{0, 0};
    LXImageRGBA32i selection{0, 0};
    QRect selectionRect;
    QPoint selectionOffset;
    QPoint reservedPoint;
    bool reservedFlag = false;
    int amount = 10;
};

/// Smooths with LXSimpleBoxKernel1D, along lines and then along columns.
class LIBIMAGE_EXPORT LXSmoothenProcessing : public LXFilter {
public:
    struct LIBIMAGE_EXPORT Params {
        int amount = 10; ///< the kernel's weight; 0 changes nothing

        /// On the stream: "RMSmoothen 1.00000", amount.
        bool Read(QDataStream& stream);
        bool Write(QDataStream& stream) const;
    };
    using SmoothenData = LXThreeTapData;

    LXSmoothenProcessing(QReadWriteLock& cancelLock, bool& cancelFlag)
        : LXFilter(cancelLock, cancelFlag) {}

    LXImageRGBA32i run(SmoothenData data);
};

LIBIMAGE_EXPORT QDataStream& operator<<(QDataStream&, const LXSmoothenProcessing::Params&);
LIBIMAGE_EXPORT QDataStream& operator>>(QDataStream&, LXSmoothenProcessing::Params&);
