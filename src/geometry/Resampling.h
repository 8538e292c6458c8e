#pragma once

#include "LXImageTransformation.h"

/// The transformations with quality, without their guards.
namespace LXResampling {

bool Nearest(const LXImageRGBA32i& source, const QTransform& transform, LXImageRGBA32i& destination,
             const QRect& rect);
bool Bilinear(const LXImageRGBA32i& source, const QTransform& transform,
              LXImageRGBA32i& destination, const QRect& rect);
bool Bicubic(const LXImageRGBA32i& source, const QTransform& transform, LXImageRGBA32i& destination,
             const QRect& rect);

} // namespace LXResampling
