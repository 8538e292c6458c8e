#pragma once

#include "LXImage.h"

class QImage;
class QPoint;
class QRect;

/// The paint bucket and the magic wand.
///
/// A pixel matches the seed as Compare() tells; in the form without a tolerance if all 32 bits are
/// equal. Colours and tolerances are those of straight pixels.
///
/// All functions return true when they are done, and false if the seed lies outside the image: then
/// the log says so and `bounds` is untouched. A seed on a missing tile counts as outside, and a
/// missing tile matches nowhere. `bounds` may be null; it gets the rectangle around all matches, in
/// which the seed is always included. Whatever else goes wrong goes to the caller: std::bad_alloc
/// if memory or tiles run out, with some pixels already filled. All work is done on the calling
/// thread, and nobody else may use the images meanwhile.
namespace LXFloodFillHelper {

/// Fills what is connected with the seed over the four sides of pixels. If the seed already has the
/// fill colour there is nothing to do, and `bounds` becomes the null rectangle.
LIBIMAGE_EXPORT bool FloodFill(LXImageRGBA32i& image, const QPoint& seed, const LXRGBA32i& fill,
                               QRect* bounds);

/// The same with a tolerance for each channel; all 0 is the form without. The fill colour may
/// itself match. If GetOutOfRangeColor() finds no colour that does not match, the whole image is
/// filled, connected or not, and `bounds` is the whole image.
LIBIMAGE_EXPORT bool FloodFill(LXImageRGBA32i& image, const QPoint& seed,
                               const LXRGBA32i& tolerance, const LXRGBA32i& fill, QRect* bounds);

/// The same on a picture in QImage::Format_ARGB32. Other formats of 32 bits are taken for it, but
/// that the seed's colour is QImage::pixel(); any of another depth is logged and left alone, with
/// false.
LIBIMAGE_EXPORT bool FloodFill(QImage& image, const QPoint& seed, const LXRGBA32i& tolerance,
                               const LXRGBA32i& fill, QRect* bounds);

/// Follows the pixels of `source` and fills those of `target` in the same places, whatever is
/// there. Both may be one image. Where the target is too small std::out_of_range comes out, and the
/// pixels found before are filled.
LIBIMAGE_EXPORT bool FloodFill(const LXImageRGBA32i& source, LXImageRGBA32i& target,
                               const QPoint& seed, const LXRGBA32i& tolerance,
                               const LXRGBA32i& fill, QRect* bounds);

/// Makes `target` a selection of the size of `source`: `fill` where a pixel matches, connected or
/// not, and transparent black elsewhere. With a seed outside, `target` is a copy of `source`
/// afterwards.
LIBIMAGE_EXPORT bool ColorRangeFill(const LXImageRGBA32i& source, LXImageRGBA32i& target,
                                    const QPoint& seed, const LXRGBA32i& tolerance,
                                    const LXRGBA32i& fill, QRect* bounds);

} // namespace LXFloodFillHelper

/// Whether a pixel matches a seed. All fully transparent pixels are one colour: a seed with alpha 0
/// matches alpha 0 and nothing else, whatever colour and tolerance are. Otherwise each channel,
/// alpha too, must lie within its own tolerance of the seed's: seed - tolerance <= pixel <=
/// seed + tolerance.
LIBIMAGE_EXPORT bool Compare(const LXRGBA32i& pixel, const LXRGBA32i& seed,
                             const LXRGBA32i& tolerance);

/// A colour that does not match the seed; false if none is known. The rule looks for a channel
/// whose range leaves something out and does not know that a transparent seed matches no visible
/// colour: such a seed with full tolerance has no marker.
LIBIMAGE_EXPORT bool GetOutOfRangeColor(const LXRGBA32i& seed, const LXRGBA32i& tolerance,
                                        LXRGBA32i& marker);
