#pragma once

#include "LXImage.h"

#include <QtCore/QRect>
#include <QtGui/QImage>

/// Compositing one image onto another: `sourceRect` of the source onto `destinationRect` of the
/// destination, in place.
///
/// Rectangles are in pixels, each in its own image. The top left corners meet, and the smaller
/// extent decides; what lies outside either image is cut off, and the rest stays where it is. A
/// width or height of 0 blends nothing. Of a rectangle with a negative one the corners are
/// exchanged, as QRect::operator& does it.
///
/// `mode` is the blend mode: 0 to 31 are the values of QPainter::CompositionMode, 64 and 88 to 95
/// are this library's own (see src/compositing/BlendTable.cpp and the kernels in LXBlend.h). An id
/// that a function does not know is no error: it composites as SourceOver, or through a mask from a
/// QImage not at all.
///
/// `opacity` is 1.0 for full; it is truncated to 1/256, and what gives 0 blends nothing. It is not
/// limited: beyond 0 to 1 the arithmetic wraps as LXBlend.h tells.
///
/// `lockAlpha` keeps the destination's alpha. Only for ids that know no locked form in a function
/// the lock is lost, and they composite as the plain SourceOver.
///
/// Destination tiles that the blend covers are detached from their sharers, also by a mode that
/// turns out to change nothing. If none is left, std::bad_alloc comes out, after a log line: the
/// tiles finished before stay composited, the rest is untouched. Source, mask and destination may
/// be copies of one another, and even one object. Calls on different destinations may run in
/// parallel.
///
/// There is no blending of CMYK images: those forms are empty.
template <class Source, class Destination>
void BlendOn(const Source& source, const QRect& sourceRect, unsigned int mode,
             Destination& destination, const QRect& destinationRect, double opacity,
             bool lockAlpha);

/// The same through the alpha of `mask`: the top left corner of `maskRect` meets that of
/// `destinationRect`.
///
/// From a tiled image, pixels beyond `maskRect` or the mask image blend at full mask value if
/// `outsideBlends`, and stay as they are if not. A mask of 0 x 0 pixels with `outsideBlends` is no
/// mask: that is BlendOn, with its own guard and so with a second log line for a failure. From a
/// QImage only mode 0 blends anything; `maskRect` gives no more than the position, and what lies
/// beyond the mask image blends without a mask in any case.
template <class Source, class Destination>
void BlendMaskOn(const Source& source, const QRect& sourceRect, unsigned int mode,
                 Destination& destination, const QRect& destinationRect, double opacity,
                 const LXImageRGBA32i& mask, const QRect& maskRect, bool outsideBlends,
                 bool lockAlpha);

/// What the templates for RGBA32i images call. A failure below
/// BlendOn<LXImageRGBA32i, LXImageRGBA32i> is logged twice: by it and by this.
LIBIMAGE_EXPORT void BlendOn_RGBA32iImage_RGBA32iImage(const LXImageRGBA32i& source,
                                                       const QRect& sourceRect, unsigned int mode,
                                                       LXImageRGBA32i& destination,
                                                       const QRect& destinationRect, double opacity,
                                                       bool lockAlpha);

/// The source must be in QImage::Format_ARGB32: any other format is logged, and nothing is blended.
/// Its rows are taken to be QImage::width() pixels apart, as they are in all pictures that Qt
/// makes.
LIBIMAGE_EXPORT void BlendOn_QImage_RGBA32iImage(const QImage& source, const QRect& sourceRect,
                                                 unsigned int mode, LXImageRGBA32i& destination,
                                                 const QRect& destinationRect, double opacity,
                                                 bool lockAlpha);

/// The format of the source is not checked: the bytes of any other than QImage::Format_ARGB32 are
/// taken for that, as far as they reach.
LIBIMAGE_EXPORT void BlendMaskOn_QImage_RGBA32iImage(const QImage& source, const QRect& sourceRect,
                                                     unsigned int mode, LXImageRGBA32i& destination,
                                                     const QRect& destinationRect, double opacity,
                                                     const LXImageRGBA32i& mask,
                                                     const QRect& maskRect, bool outsideBlends,
                                                     bool lockAlpha);

#define LX_BLEND_ON(Source, Destination)                                                           \
    template <>                                                                                    \
    LIBIMAGE_EXPORT void BlendOn<Source, Destination>(                                             \
        const Source& source, const QRect& sourceRect, unsigned int mode,                          \
        Destination& destination, const QRect& destinationRect, double opacity, bool lockAlpha);   \
    template <>                                                                                    \
    LIBIMAGE_EXPORT void BlendMaskOn<Source, Destination>(                                         \
        const Source& source, const QRect& sourceRect, unsigned int mode,                          \
        Destination& destination, const QRect& destinationRect, double opacity,                    \
        const LXImageRGBA32i& mask, const QRect& maskRect, bool outsideBlends, bool lockAlpha)

LX_BLEND_ON(LXImageRGBA32i, LXImageRGBA32i);
LX_BLEND_ON(QImage, LXImageRGBA32i);
LX_BLEND_ON(LXImageCMYKA, LXImageCMYKA);

#undef LX_BLEND_ON
