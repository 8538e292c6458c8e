#pragma once

#include "LXAdjustmentProcessing.h"

class QDataStream;

/// The arguments of the blurs. What is called reserved is not read.
template <class Radius>
struct LXBlurData {
    LXImageRGBA32i image{0, 0};
    LXImageRGBA32i reserved{0, 0};
    LXImageRGBA32i selection{0, 0};
    QRect selectionRect;
    QPoint selectionOffset;
    QPoint reservedPoint; ///< moved by runEx as selectionOffset is
    bool reservedFlag = false;
    Radius radius = 5;
};

/// The arguments of runEx, which first grows the picture so that the blur can spread beyond its
/// edges: as far as `visibleRect` asks for it, and by the reach of the blur at most. A selection
/// limits visibleRect to itself. `origin` is where the picture lies. A picture that
/// grows is a new image, without profile and EXIF.
template <class Radius>
struct LXBlurDataEx : LXBlurData<Radius> {
    QRect visibleRect;
    QPoint origin;
};

/// Blurs with a gaussian, alpha-correct, along lines and then along columns.
class LIBIMAGE_EXPORT LXGaussianBlurProcessing : public LXFilter {
public:
    struct LIBIMAGE_EXPORT Params {
        double radius = 5.0; ///< sigma in pixels, see LXGaussian1D.h

        /// On the stream: "RMGaussianBlur 1.00000", radius.
        bool Read(QDataStream& stream);
        bool Write(QDataStream& stream) const;
    };
    using BlurData = LXBlurData<double>;
    using BlurDataEx = LXBlurDataEx<double>;
    using ImageAtOffset = LXImageAtOffset;

    LXGaussianBlurProcessing(QReadWriteLock& cancelLock, bool& cancelFlag)
        : LXFilter(cancelLock, cancelFlag) {}

    LXImageRGBA32i run(BlurData data);
    /// The offset is origin, plus what the picture has grown by to the left and top, negatively.
    ImageAtOffset runEx(BlurDataEx data);
};

/// Blurs with a box, alpha-correct, along lines and then along columns.
class LIBIMAGE_EXPORT LXBoxBlurProcessing : public LXFilter {
public:
    struct LIBIMAGE_EXPORT Params {
        int radius = 5; ///< of a window of 2 radius + 1 pixels; a negative one does not blur

        /// On the stream: "RMBoxBlur 1.00000", radius.
        bool Read(QDataStream& stream);
        bool Write(QDataStream& stream) const;
    };
    using BlurData = LXBlurData<int>;
    using BlurDataEx = LXBlurDataEx<int>;
    using ImageAtOffset = LXImageAtOffset;

    LXBoxBlurProcessing(QReadWriteLock& cancelLock, bool& cancelFlag)
        : LXFilter(cancelLock, cancelFlag) {}

    LXImageRGBA32i run(BlurData data);
    /// The offset is origin, plus what the picture has grown by to the left and top, negatively.
    ImageAtOffset runEx(BlurDataEx data);
};

LIBIMAGE_EXPORT QDataStream& operator<<(QDataStream&, const LXGaussianBlurProcessing::Params&);
LIBIMAGE_EXPORT QDataStream& operator>>(QDataStream&, LXGaussianBlurProcessing::Params&);
LIBIMAGE_EXPORT QDataStream& operator<<(QDataStream&, const LXBoxBlurProcessing::Params&);
LIBIMAGE_EXPORT QDataStream& operator>>(QDataStream&, LXBoxBlurProcessing::Params&);
