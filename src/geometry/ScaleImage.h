#pragma once

#include "LXScaleImage.h"

/// The zoomed views behind ScaleImage.
namespace LXView {

void Draw(const LXImageRGBA32i& source, const QPointF& origin, double scale, QImage& target);
void Draw(const LXImageRGBA32i& source, const QPointF& origin, double scale, QImage& target,
          const LXColorTransformBase& transform);

} // namespace LXView
