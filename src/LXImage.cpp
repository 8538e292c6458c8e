#include "LXBlendOn.h"
#include "LXConvertImage.h"
#include "LXFault.h"
#include "compositing/Drivers.h"
#include "core/conversion/Conversions.h"
#include "geometry/ScaleImage.h"
#include "geometry/TransformImage.h"

/// The front door of the image functions: each exported one has its guard here and its work in the
/// room behind.

#define LX_CONVERT(Source, Target, function)                                                       \
    template <>                                                                                    \
    Target ConvertImage<Source, Target>(const Source& source) {                                    \
        return LXFault::StrictGuard(LX_SITE, [&] { return LXConversions::function(source); });     \
    }

LX_CONVERT(LXImageRGBA32i, QImage, ToQImage)
LX_CONVERT(QImage, LXImageRGBA32i, FromQImage)
LX_CONVERT(LXImageRGBA32i, LXImageRGBA64i, ToWide)
LX_CONVERT(LXImageRGBA64i, LXImageRGBA32i, FromWide)
LX_CONVERT(LXImageRGBA32i, LXImageRGBA64f, ToHalf)
LX_CONVERT(LXImageRGBA64f, LXImageRGBA32i, FromHalf)
LX_CONVERT(LXImageRGBA32i, LXImageCMYKA, ToCMYK)
LX_CONVERT(LXImageCMYKA, LXImageRGBA32i, FromCMYK)
LX_CONVERT(LXImageCMYKA, QImage, CMYKToQImage)
LX_CONVERT(LXImageRGBA32i, LXImageHSLA, ToHSL)
LX_CONVERT(LXImageHSLA, LXImageRGBA32i, FromHSL)
LX_CONVERT(RGB32iRawImage, LXImageRGBA32i, FromRaw)

#undef LX_CONVERT

void BlendOn_RGBA32iImage_RGBA32iImage(const LXImageRGBA32i& source, const QRect& sourceRect,
                                       unsigned int mode, LXImageRGBA32i& destination,
                                       const QRect& destinationRect, double opacity,
                                       bool lockAlpha) {
    LXFault::StrictGuard(LX_SITE, [&] {
        LXDrivers::Blend(source, sourceRect, mode, destination, destinationRect, opacity,
                         lockAlpha);
    });
}

void BlendOn_QImage_RGBA32iImage(const QImage& source, const QRect& sourceRect, unsigned int mode,
                                 LXImageRGBA32i& destination, const QRect& destinationRect,
                                 double opacity, bool lockAlpha) {
    LXFault::StrictGuard(LX_SITE, [&] {
        if (source.format() == QImage::Format_ARGB32)
            LXDrivers::Blend(source, sourceRect, mode, destination, destinationRect, opacity,
                             lockAlpha);
        else
            LXFault::Trace(
                LX_SITE, QStringLiteral("Wrong input qimage format %1").arg(int(source.format())));
    });
}

void BlendMaskOn_QImage_RGBA32iImage(const QImage& source, const QRect& sourceRect,
                                     unsigned int mode, LXImageRGBA32i& destination,
                                     const QRect& destinationRect, double opacity,
                                     const LXImageRGBA32i& mask, const QRect& maskRect,
                                     bool outsideBlends, bool lockAlpha) {
    LXFault::StrictGuard(LX_SITE, [&] {
        LXDrivers::BlendMask(source, sourceRect, mode, destination, destinationRect, opacity, mask,
                             maskRect, outsideBlends, lockAlpha);
    });
}

/// A second guard around a guarded function: a failure is logged twice, once for each level.
template <>
void BlendOn<LXImageRGBA32i, LXImageRGBA32i>(const LXImageRGBA32i& source, const QRect& sourceRect,
                                             unsigned int mode, LXImageRGBA32i& destination,
                                             const QRect& destinationRect, double opacity,
                                             bool lockAlpha) {
    LXFault::StrictGuard(LX_SITE, [&] {
        BlendOn_RGBA32iImage_RGBA32iImage(source, sourceRect, mode, destination, destinationRect,
                                          opacity, lockAlpha);
    });
}

template <>
void BlendOn<QImage, LXImageRGBA32i>(const QImage& source, const QRect& sourceRect,
                                     unsigned int mode, LXImageRGBA32i& destination,
                                     const QRect& destinationRect, double opacity, bool lockAlpha) {
    BlendOn_QImage_RGBA32iImage(source, sourceRect, mode, destination, destinationRect, opacity,
                                lockAlpha);
}

/// An empty mask with `outsideBlends` is no mask at all, and the blend is the unmasked one.
template <>
void BlendMaskOn<LXImageRGBA32i, LXImageRGBA32i>(const LXImageRGBA32i& source,
                                                 const QRect& sourceRect, unsigned int mode,
                                                 LXImageRGBA32i& destination,
                                                 const QRect& destinationRect, double opacity,
                                                 const LXImageRGBA32i& mask, const QRect& maskRect,
                                                 bool outsideBlends, bool lockAlpha) {
    LXFault::StrictGuard(LX_SITE, [&] {
        if (mask.GetWidth() == 0 && mask.GetHeight() == 0 && outsideBlends)
            BlendOn_RGBA32iImage_RGBA32iImage(source, sourceRect, mode, destination,
                                              destinationRect, opacity, lockAlpha);
        else
            LXDrivers::BlendMask(source, sourceRect, mode, destination, destinationRect, opacity,
                                 mask, maskRect, outsideBlends, lockAlpha);
    });
}

template <>
void BlendMaskOn<QImage, LXImageRGBA32i>(const QImage& source, const QRect& sourceRect,
                                         unsigned int mode, LXImageRGBA32i& destination,
                                         const QRect& destinationRect, double opacity,
                                         const LXImageRGBA32i& mask, const QRect& maskRect,
                                         bool outsideBlends, bool lockAlpha) {
    BlendMaskOn_QImage_RGBA32iImage(source, sourceRect, mode, destination, destinationRect, opacity,
                                    mask, maskRect, outsideBlends, lockAlpha);
}

// There is no blending of CMYK images.

template <>
void BlendOn<LXImageCMYKA, LXImageCMYKA>(const LXImageCMYKA&, const QRect&, unsigned int,
                                         LXImageCMYKA&, const QRect&, double, bool) {}

template <>
void BlendMaskOn<LXImageCMYKA, LXImageCMYKA>(const LXImageCMYKA&, const QRect&, unsigned int,
                                             LXImageCMYKA&, const QRect&, double,
                                             const LXImageRGBA32i&, const QRect&, bool, bool) {}

#define LX_TRANSFORM_IMAGE(Source, Destination)                                                    \
    template <>                                                                                    \
    bool TransformImage<Source, Destination>(const Source& source, const QTransform& transform,    \
                                             Destination& destination, const QRect& rect) {        \
        return LXFault::StrictGuard(                                                               \
            LX_SITE, [&] { return LXNearest::Transform(source, transform, destination, rect); });  \
    }

LX_TRANSFORM_IMAGE(LXImageRGBA32i, LXImageRGBA32i)
LX_TRANSFORM_IMAGE(LXImageRGBA32i, QImage)
LX_TRANSFORM_IMAGE(LXImageCMYKA, LXImageCMYKA)
LX_TRANSFORM_IMAGE(LXImageCMYKA, QImage)

#undef LX_TRANSFORM_IMAGE

bool ScaleImage(const LXImageRGBA32i& source, const QPointF& origin, double scale, QImage& target) {
    return LXFault::StrictGuard(LX_SITE, [&] {
        LXView::Draw(source, origin, scale, target);
        return true;
    });
}

bool ScaleImage(const LXImageRGBA32i& source, const QPointF& origin, double scale, QImage& target,
                const LXColorTransformBase& transform) {
    return LXFault::StrictGuard(LX_SITE, [&] {
        LXView::Draw(source, origin, scale, target, transform);
        return true;
    });
}
