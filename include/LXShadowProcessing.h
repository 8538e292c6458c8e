#pragma once

#include "LXAdjustmentProcessing.h"

#include <QtGui/QColor>

class QDataStream;

/// The settings of both shadows. `value0` to `value4` are the application's: they go to the stream
/// and come from it, and nothing here reads them.
struct LXShadowParams {
    int value0 = 135;
    QColor color{0, 0, 0, 255};
    int value1 = 75;
    int value2 = 25;
    int value3 = 0;
    int blurRadius = 20; ///< of a box of 2 blurRadius + 1 pixels; 0 and below do not blur
    int value4 = 0;
};

/// The arguments of both shadows. What is called reserved is not read. A shape that was cut out or
/// grown is a new image, without the picture's profile, fields and user values.
template <class ShadowParams>
struct LXShadowData {
    ShadowParams params;
    LXImageRGBA32i image{0, 0};
    LXImageRGBA32i selection{0, 0};
    LXImageRGBA32i reserved{0, 0};
    QPoint selectionOrigin; ///< of the selection, on the image
    /// Whether what lies beyond the selection is part of the shape. With a selection of no size the
    /// shape is the whole picture then, and otherwise nothing.
    bool useSelection = false;
};

/// Makes the shadow that a picture drops: its shape, blurred, in one colour. Composing it with the
/// picture is the caller's.
class LIBIMAGE_EXPORT LXDropShadowProcessing : public LXFilter {
public:
    struct LIBIMAGE_EXPORT Params : LXShadowParams {
        /// On the stream: "RMDropShadow 1.00000", and the fields in this order.
        bool Read(QDataStream& stream);
        bool Write(QDataStream& stream) const;
    };
    using DropShadowData = LXShadowData<Params>;
    using ImageAtOffset = LXImageAtOffset;

    LXDropShadowProcessing(QReadWriteLock& cancelLock, bool& cancelFlag)
        : LXFilter(cancelLock, cancelFlag) {}

    /// With a blur the result is larger than the picture by whole tiles, and the offset is minus a
    /// multiple of their size. Also a cancelled run returns that offset.
    ImageAtOffset run(DropShadowData data);
};

/// Makes the shadow that an edge throws onto the picture: a picture in one colour with the
/// picture's alpha, and the inverted, blurred shape to mask it with.
class LIBIMAGE_EXPORT LXInnerShadowProcessing : public LXFilter {
public:
    struct LIBIMAGE_EXPORT Params : LXShadowParams {
        /// On the stream: "RMInnerShadow 1.00000", and the fields in this order.
        bool Read(QDataStream& stream);
        bool Write(QDataStream& stream) const;
    };
    using InnerShadowData = LXShadowData<Params>;

    struct InnerShadowResult {
        /// Of the picture's size.
        LXImageRGBA32i colorImage{0, 0};
        /// Grown by whole tiles if there is a blur, and solid there. Where the picture's own tiles
        /// at the right and at the bottom have padding, it is the inverse of that.
        LXImageRGBA32i maskImage{0, 0};
        QPoint offset; ///< of maskImage
    };

    LXInnerShadowProcessing(QReadWriteLock& cancelLock, bool& cancelFlag)
        : LXFilter(cancelLock, cancelFlag) {}

    InnerShadowResult run(InnerShadowData data);
};

LIBIMAGE_EXPORT QDataStream& operator<<(QDataStream&, const LXDropShadowProcessing::Params&);
LIBIMAGE_EXPORT QDataStream& operator>>(QDataStream&, LXDropShadowProcessing::Params&);
LIBIMAGE_EXPORT QDataStream& operator<<(QDataStream&, const LXInnerShadowProcessing::Params&);
LIBIMAGE_EXPORT QDataStream& operator>>(QDataStream&, LXInnerShadowProcessing::Params&);
