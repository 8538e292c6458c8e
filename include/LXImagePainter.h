#pragma once

#include "LXImage.h"

#include <QtGui/QBrush>
#include <QtGui/QFont>
#include <QtGui/QImage>
#include <QtGui/QPainterPath>
#include <QtGui/QPen>
#include <QtGui/QTextOption>

/// Drawing on a tiled image as QPainter draws on a QImage, and making masks.
///
/// Coordinates are those of the image, in pixels from its top left corner. A drawing goes tile by
/// tile, through a QPainter on each tile that it can touch: no more than one tile is open at a
/// time, and all others stay shared. It also lands on what an edge tile has beyond the image.
///
/// A std::exception ends in a line of the log, and the function returns; so a drawing that finds no
/// free tile stays half done, and a mask stays as it was. All work is done on the calling thread,
/// and nobody else may use the image meanwhile.

/// The vector functions take a `mode` of QPainter::CompositionMode; any other number draws as
/// SourceOver, as in BlendOn().

/// Draws the outline of the path with the pen, without antialiasing.
LIBIMAGE_EXPORT void DrawPath(LXImageRGBA32i& image, int mode, const QPainterPath& path,
                              const QPen& pen);

/// Fills the path, antialiased. With `outline` its edge is also drawn with the brush, one pixel
/// wide, which makes the shape half a pixel larger on each side.
LIBIMAGE_EXPORT void FillPath(LXImageRGBA32i& image, int mode, const QPainterPath& path,
                              const QBrush& brush, bool outline);

/// Draws text into a rectangle. It needs a QGuiApplication, as all text in Qt does. `opacity` is
/// limited to 0 to 1.
///
/// `rotation` turns the text about the centre of `rect`, in degrees clockwise. Unless it is 0, the
/// text is laid out in the bounding box of the turned rectangle, and then that box is turned: a
/// 200 x 50 rectangle at 90 degrees gives lines of 50 pixels.
LIBIMAGE_EXPORT void DrawText(LXImageRGBA32i& image, int mode, double opacity, const QRectF& rect,
                              const QString& text, const QBrush& brush, const QFont& font,
                              double rotation, const QTextOption& option);

/// Blends the source with its top left corner at `position`, by BlendOn(): `mode` is any of its
/// ids. Of a source that is larger than the image, what lies in a rectangle of the image's size at
/// `position` is blended.
LIBIMAGE_EXPORT void DrawImage(LXImageRGBA32i& image, int mode, const QPoint& position,
                               const LXImageRGBA32i& source, double opacity, bool lockAlpha);
LIBIMAGE_EXPORT void DrawImage(LXImageRGBA32i& image, int mode, const QPoint& position,
                               const QImage& source, double opacity, bool lockAlpha);

/// Complements channels, of all pixels of all tiles: the sum of 1 for red, 2 for green, 4 for blue
/// and 8 for alpha. Other bits are ignored; all tiles are detached even for 0.
LIBIMAGE_EXPORT void InvertImage(LXImageRGBA32i& image, unsigned int channels);

/// Masks of the size of the source: the value is in alpha, colours are 0. `mask` is replaced at the
/// end and may be the source.

/// All 255.
LIBIMAGE_EXPORT void CreateRevealAllMask(LXImageRGBA32i& mask, const LXImageRGBA32i& source);
/// All 0.
LIBIMAGE_EXPORT void CreateHideAllMask(LXImageRGBA32i& mask, const LXImageRGBA32i& source);
/// The source's alpha.
LIBIMAGE_EXPORT void CreateFromTransparancyMask(LXImageRGBA32i& mask, const LXImageRGBA32i& source);
/// The source's brightness, (11 red + 16 green + 5 blue) >> 5, whatever its alpha is.
LIBIMAGE_EXPORT void CreateFromSourceMask(LXImageRGBA32i& mask, const LXImageRGBA32i& source);
