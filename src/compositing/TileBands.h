#pragma once

#include "LXTileAccess.h"
#include "compositing/TileCuts.h"
#include "core/Prefetch.h"

#include <cstring>

/// The rows of a rectangle that is at most a tile wide but may lie across tiles.
namespace LXTileBands {

using LXTileCuts::InTile;
using LXTileCuts::TileOf;
using LXTileCuts::TileSide;

/// How many rows are copied together, and how many rows before it is copied a row is asked for.
/// Both are measured; neither changes a result.
constexpr int BandRows = 2;
constexpr int RowsAhead = 6;

/// Calls `visit(pixels, y, rows)` from top to bottom, for runs of rows that are TileSide pixels
/// apart; `y` is the position of the first in the image. The rectangle must lie in the image.
///
/// Rows within one tile column are those of the tile. Rows across two are copied together: a kernel
/// is quicker on a copied row than on two halves. Of the right tile whole rows are asked for: the
/// half that is not wanted now is wanted by the next destination tile.
template <class Visit>
void ForBands(const LXImageRGBA32i& image, const QRect& rect, Visit visit) {
    const int column = int(TileOf(rect.left())), x = InTile(rect.left());
    const int leftWidth = std::min(rect.width(), TileSide - x);
    LXTileCuts::CutRows(rect, 0, [&](const QRect& part) {
        const auto slots = image.GetTileRow(unsigned(TileOf(part.top()))) + column;
        const int y = InTile(part.top());
        const LXTileReader left(slots[0]);
        if (!left.Pixels())
            return;
        const LXRGBA32i* leftRow = left.Row(unsigned(y)) + x;
        if (leftWidth == part.width())
            return visit(leftRow, part.top(), part.height());
        const LXTileReader right(slots[1]);
        if (!right.Pixels())
            return;
        const LXRGBA32i* rightRow = right.Row(unsigned(y));
        alignas(64) LXRGBA32i band[BandRows * TileSide];
        for (int i = 0; i < std::min(RowsAhead, part.height()); ++i)
            PrefetchRow(rightRow + i * TileSide, TileSide);
        for (int done = 0; done < part.height(); done += BandRows) {
            const int rows = std::min(part.height() - done, BandRows);
            for (int i = 0; i < rows; ++i, leftRow += TileSide, rightRow += TileSide) {
                LXRGBA32i* const row = band + i * TileSide;
                if (y + done + i + RowsAhead < TileSide)
                    PrefetchRow(rightRow + RowsAhead * TileSide, TileSide);
                std::memcpy(row, leftRow, std::size_t(leftWidth) * sizeof *row);
                std::memcpy(row + leftWidth, rightRow,
                            std::size_t(part.width() - leftWidth) * sizeof *row);
            }
            visit(band, part.top() + done, rows);
        }
    });
}

} // namespace LXTileBands
