#pragma once

#include "LXImage.h"

#include <QtCore/QRect>

#include <algorithm>

/// Tiles that are out of step: pieces of a rectangle of one image by the tiles of another that lies
/// `dx`, `dy` away. Positions may be negative and are divided downwards.
namespace LXTileCuts {

constexpr int TileSide = 128;
static_assert(LXImageRGBA32i::TileWidth == TileSide && LXImageRGBA32i::TileHeight == TileSide);

/// The tile row or column of a position, and the place in it.
inline qint64 TileOf(qint64 position) {
    return position >= 0 ? position / TileSide : (position + 1) / TileSide - 1;
}
inline int InTile(qint64 position) {
    return int(position - TileOf(position) * TileSide);
}

/// Calls `visit(part)` for the parts of `rect` between tile boundaries of the other image, from
/// left to right.
template <class Visit>
void CutColumns(QRect rect, qint64 dx, Visit visit) {
    while (!rect.isEmpty()) {
        QRect part = rect;
        part.setWidth(std::min(rect.width(), TileSide - InTile(rect.left() + dx)));
        rect.setLeft(part.right() + 1);
        visit(part);
    }
}

/// The same from top to bottom.
template <class Visit>
void CutRows(QRect rect, qint64 dy, Visit visit) {
    while (!rect.isEmpty()) {
        QRect part = rect;
        part.setHeight(std::min(rect.height(), TileSide - InTile(rect.top() + dy)));
        rect.setTop(part.bottom() + 1);
        visit(part);
    }
}

/// The slot of a tile, or null outside the grid.
inline const LXImageRGBA32i::Slot* SlotAt(const LXImageRGBA32i& image, qint64 column, qint64 row) {
    if (column < 0 || column >= image.GetTilesX() || row < 0 || row >= image.GetTilesY())
        return nullptr;
    return image.GetTileRow(unsigned(row)) + column;
}

/// Calls `visit(part)` for the at most four parts of `rect` outside of `hole`, which lies in it or
/// is empty.
template <class Visit>
void AroundHole(const QRect& rect, const QRect& hole, Visit visit) {
    if (hole.isEmpty())
        return visit(rect);
    const QPoint above(rect.right(), hole.top() - 1), below(rect.left(), hole.bottom() + 1);
    const QPoint left(hole.left() - 1, hole.bottom()), right(hole.right() + 1, hole.top());
    for (const QRect& part :
         {QRect(rect.topLeft(), above), QRect(QPoint(rect.left(), hole.top()), left),
          QRect(right, QPoint(rect.right(), hole.bottom())), QRect(below, rect.bottomRight())})
        if (!part.isEmpty())
            visit(part);
}

} // namespace LXTileCuts
