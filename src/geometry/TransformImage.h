#pragma once

#include "LXTransformImage.h"

/// The plain nearest-pixel transformation behind TransformImage.
namespace LXNearest {

bool Transform(const LXImageRGBA32i& source, const QTransform& transform,
               LXImageRGBA32i& destination, const QRect& rect);
bool Transform(const LXImageRGBA32i& source, const QTransform& transform, QImage& destination,
               const QRect& rect);
bool Transform(const LXImageCMYKA& source, const QTransform& transform, LXImageCMYKA& destination,
               const QRect& rect);
bool Transform(const LXImageCMYKA& source, const QTransform& transform, QImage& destination,
               const QRect& rect);

} // namespace LXNearest
