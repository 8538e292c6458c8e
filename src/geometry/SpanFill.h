#pragma once

#include "LXImage.h"
#include "geometry/ColourRange.h"

#include <QtGui/QImage>

/// The searches behind LXFloodFillHelper, without its checks.
namespace LXFill {

/// Fills what is connected with `seed`, a pixel of `source`, over the four sides and in the range.
/// Returns the rectangle around it and the seed. Source and target may be one image.
QRect Connected(const LXImageRGBA32i& source, LXImageRGBA32i& target, const QPoint& seed,
                const LXColourRange& range, const LXRGBA32i& fill);
/// Within one picture with 32 bits a pixel.
QRect Connected(QImage& image, const QPoint& seed, const LXColourRange& range,
                const LXRGBA32i& fill);

/// Makes pixels in the range `fill` and all others 0. Returns the rectangle around the former and
/// the seed.
QRect Everywhere(LXImageRGBA32i& image, const QPoint& seed, const LXColourRange& range,
                 const LXRGBA32i& fill);

} // namespace LXFill
