#pragma once

#include "LXImage.h"

#include <QtGui/QImage>

/// The blends behind BlendOn and BlendMaskOn, without their guards and checks.
namespace LXDrivers {

void Blend(const LXImageRGBA32i& source, const QRect& sourceRect, unsigned int mode,
           LXImageRGBA32i& destination, const QRect& destinationRect, double opacity,
           bool lockAlpha);

void Blend(const QImage& source, const QRect& sourceRect, unsigned int mode,
           LXImageRGBA32i& destination, const QRect& destinationRect, double opacity,
           bool lockAlpha);

void BlendMask(const LXImageRGBA32i& source, const QRect& sourceRect, unsigned int mode,
               LXImageRGBA32i& destination, const QRect& destinationRect, double opacity,
               const LXImageRGBA32i& mask, const QRect& maskRect, bool outsideBlends,
               bool lockAlpha);

void BlendMask(const QImage& source, const QRect& sourceRect, unsigned int mode,
               LXImageRGBA32i& destination, const QRect& destinationRect, double opacity,
               const LXImageRGBA32i& mask, const QRect& maskRect, bool outsideBlends,
               bool lockAlpha);

inline QSize SizeOf(const LXImageRGBA32i& image) {
    return QSize(int(image.GetWidth()), int(image.GetHeight()));
}

} // namespace LXDrivers
