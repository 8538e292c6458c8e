#pragma once

#include "LXImage.h"

class QImage;

/// A colour operation that is chosen at run time, for one pixel of any format, an image, or a
/// buffer of packed LXRGBA32i pixels. `Invert` is its way back.
///
/// All operations do nothing unless overridden; the two on buffers must be written. A transform
/// that is not changed while it is used may serve several threads.
class LIBIMAGE_EXPORT LXColorTransformBase {
public:
    virtual void operator()(LXRGBA32i&) const {}
    virtual void operator()(LXRGBA64i&) const {}
    virtual void operator()(LXRGBA64f&) const {}
    virtual void operator()(LXRGBA128i&) const {}
    virtual void operator()(LXRGBA128f&) const {}
    virtual void operator()(LXHSLA&) const {}
    virtual void operator()(QImage&) const {}
    virtual void operator()(LXImageRGBA32i&) const {}

    // There is no Invert for LXHSLA; callers know that.
    virtual void Invert(LXRGBA32i&) const {}
    virtual void Invert(LXRGBA64i&) const {}
    virtual void Invert(LXRGBA64f&) const {}
    virtual void Invert(LXRGBA128i&) const {}
    virtual void Invert(LXRGBA128f&) const {}
    virtual void Invert(QImage&) const {}
    virtual void Invert(LXImageRGBA32i&) const {}

    /// The pixels at `pixels`, which may be null; what `size` counts is the transform's reading
    /// (see LXColorTransformStack).
    virtual void operator()(void* pixels, unsigned int size) const = 0;
    virtual void Invert(void* pixels, unsigned int size) const = 0;

    virtual ~LXColorTransformBase();
};
