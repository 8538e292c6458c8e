#pragma once

#include "LXAdjustmentProcessing.h"

#include <QtCore/QSize>

class QDataStream;

/// Smooths the edge of a selection mask, and moves it.
class LIBIMAGE_EXPORT RMRefineSelectionProcessing : public LXFilter {
public:
    struct LIBIMAGE_EXPORT Params {
        double smoothRadius = 0.0; ///< of three box blurs; 0 does not smooth
        int shift = 0;             ///< pixels by which the mask grows, or shrinks if negative

        /// On the stream: "RMRefineSelection 1.00000", smoothRadius, shift.
        bool Read(QDataStream& stream);
        bool Write(QDataStream& stream) const;
    };

    /// What is called reserved is not read.
    struct RefineSelectionData {
        LXImageRGBA32i image{0, 0}; ///< the mask
        LXImageRGBA32i reserved{0, 0};
        LXImageRGBA32i reservedToo{0, 0};
        QRect selectionRect; ///< if it is invalid there is no mask: the result is empty
        QPoint position;     ///< of the mask on the canvas
        QPoint reservedPoint;
        QSize canvasSize; ///< which a mask that grows does not leave
        Params params;
    };
    using ImageAtOffset = LXImageAtOffset;

    RMRefineSelectionProcessing(QReadWriteLock& cancelLock, bool& cancelFlag)
        : LXFilter(cancelLock, cancelFlag) {}

    /// The mask, and its place on the canvas. Without a range if there is nothing to do.
    ImageAtOffset run(RefineSelectionData data);
};

LIBIMAGE_EXPORT QDataStream& operator<<(QDataStream&, const RMRefineSelectionProcessing::Params&);
LIBIMAGE_EXPORT QDataStream& operator>>(QDataStream&, RMRefineSelectionProcessing::Params&);
