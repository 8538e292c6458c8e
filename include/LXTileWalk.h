#pragma once

#include <QtCore/QPoint>
#include <QtCore/QRect>

/// The part of a rectangle that lies in one tile.
struct LXTileSpan {
    unsigned int column; ///< of the tile in the grid
    unsigned int row;
    QRect local;     ///< in pixels of the tile
    QPoint position; ///< of local.topLeft() in the image
};

/// Calls `visit(const LXTileSpan&)` for each tile that the rectangle touches, row by row. The
/// rectangle, in pixels, must lie inside the image; an empty one touches nothing.
template <class Image, class Visit>
void LXForTiles(const QRect& rect, Visit visit) {
    constexpr int width = int(Image::TileWidth), height = int(Image::TileHeight);
    if (rect.isEmpty())
        return;
    for (int row = rect.top() / height; row <= rect.bottom() / height; ++row) {
        for (int column = rect.left() / width; column <= rect.right() / width; ++column) {
            const QPoint origin(column * width, row * height);
            const QRect part = rect & QRect(origin, QSize(width, height));
            visit(LXTileSpan{unsigned(column), unsigned(row), part.translated(-origin),
                             part.topLeft()});
        }
    }
}

/// All pixels of the image.
template <class Image>
QRect LXImageRect(const Image& image) {
    return QRect(0, 0, int(image.GetWidth()), int(image.GetHeight()));
}
