#pragma once

#include "LXImage.h"

#include <QtCore/QPointF>
#include <QtGui/QImage>

class LXColorTransformBase;

/// The zoomed view of an image: each pixel of the view is a copy of one pixel of the source, found
/// by steps that only add and compare. There is no averaging and no interpolation;
/// LXTransformImage.h and LXImageTransformation.h have those.
///
/// `scale` is the number of view pixels for a source pixel: 2 shows the source twice as large.
/// `origin` and `start` are the place in the source, in its pixels, of the first view pixel; they
/// may be fractional, and negative for a view that begins outside the image.

/// Fills `target`, of 32 bits a pixel in any format, with the part of `source` that begins at
/// `origin`. Pixels of the view beyond the image stay as they were, except that a row which repeats
/// the source row of the one above is a copy of that whole row. The cost follows the view and not
/// the image. Works in floats. Missing tiles show as 0.
///
/// Always true; nothing is drawn if there are no pixels on either side, if `scale` is not a finite
/// number above 0, or if `target` has not 32 bits a pixel. Exceptions are logged and go on:
/// std::bad_alloc, say, if there is no memory to detach `target` from its sharers.
LIBIMAGE_EXPORT bool ScaleImage(const LXImageRGBA32i& source, const QPointF& origin, double scale,
                                QImage& target);

/// The same with a colour transform on the way, called once for each run of view pixels in a row
/// that show the same source pixel, and not for rows that repeat the one above.
///
/// Works in integers that begin at AdjustValue, and so may show another pixel than the form without
/// a transform at seams of the walk; at zooms well below 1/2 the view is shifted, as AdjustValue
/// then gives several source pixels. Neither form is made to agree with the other. Where the view
/// begins on the first pixel of a tile column beyond the image, that one view pixel does not stay
/// as it was but becomes what the transform makes of 0. A scaled side of 2^31 pixels and more does
/// not fit the integers: the view then shows source pixels side by side.
LIBIMAGE_EXPORT bool ScaleImage(const LXImageRGBA32i& source, const QPointF& origin, double scale,
                                QImage& target, const LXColorTransformBase& transform);

// ---- rows ---------------------------------------------------------------------------------------
// On plain arrays, without checks: `source` must hold each pixel that the arguments allow to be
// read, `target` has targetLength pixels, and the two must not overlap.

/// Snaps a fraction of a source pixel to a step of the zoom, 1 / scale: the quotient
/// value / (1 / scale) and, away from 0, half a step are added and truncated, and the result is
/// that many steps. That a length is added to a count is how it is defined.
LIBIMAGE_EXPORT double AdjustValue(double value, double scale);

/// Stretches or shrinks sourceLength pixels to targetLength, which must not be 0; below 1 it writes
/// nothing.
LIBIMAGE_EXPORT void ScaleLine(LXRGBA32i* source, LXRGBA32i* target, int sourceLength,
                               int targetLength);

/// A row of a view by steps in floats; `source` holds the whole source row. View pixels beside the
/// source stay as they were.
LIBIMAGE_EXPORT void ScaleLine(LXRGBA32i* source, LXRGBA32i* target, float start, double scale,
                               int sourceLength, int targetLength);

/// The same for a source row of which only the tile columns firstTile to lastTile are at hand:
/// source[0] is pixel 128 * firstTile. Where start is a negative whole number, the row lies a
/// source pixel further to the right than that of ScaleLine: that is how the two are defined.
LIBIMAGE_EXPORT void scaleLineNew(LXRGBA32i* source, LXRGBA32i* target, float start, double scale,
                                  int sourceLength, int targetLength, int firstTile, int lastTile);

/// The same by steps in integers, with a colour transform. One pixel more is read than the tile
/// columns hold: if the source row is that long, pixel 128 * lastTile + 128 is within the limits.
LIBIMAGE_EXPORT void scaleLineNewWithTransform(LXRGBA32i* source, LXRGBA32i* target, double start,
                                               double scale, int sourceLength, int targetLength,
                                               int firstTile, int lastTile,
                                               const LXColorTransformBase& transform);
