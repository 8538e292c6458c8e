#pragma once

#include "LXTileAccess.h"
#include "compositing/TileCuts.h"
#include "core/Prefetch.h"

#include <algorithm>
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

/// Rows across two tiles, copied together a few at a time: a kernel is quicker on a copied row than
/// on two halves. `left` and `right` are the first pixels of `part` in either tile, and `leftWidth`
/// of its columns lie in the left one. Of the right tile whole rows are asked for: the half that is
/// not wanted now is wanted by the next destination tile.
template <class Visit>
void ForJoinedRows(const LXRGBA32i* left, const LXRGBA32i* right, int leftWidth, const QRect& part,
                   Visit visit) {
    alignas(64) LXRGBA32i band[BandRows * TileSide];
    for (int y = 0; y < std::min(RowsAhead, part.height()); ++y)
        PrefetchRow(right + y * TileSide, TileSide);
    for (int first = 0; first < part.height(); first += BandRows) {
        const int rows = std::min(part.height() - first, BandRows);
        for (int i = 0; i < rows; ++i) {
            const int y = first + i;
            if (y + RowsAhead < part.height())
                PrefetchRow(right + (y + RowsAhead) * TileSide, TileSide);
            LXRGBA32i* const row = band + i * TileSide;
            std::memcpy(row, left + y * TileSide, std::size_t(leftWidth) * sizeof *row);
            std::memcpy(row + leftWidth, right + y * TileSide,
                        std::size_t(part.width() - leftWidth) * sizeof *row);
        }
        visit(band, QRect(part.left(), part.top() + first, part.width(), rows));
    }
}

/// Calls `visit(pixels, piece)` for pieces of `rect`, which must lie in the image, from top to
/// bottom. The rows of a piece are TileSide pixels apart. What lies in missing tiles is left out.
template <class Visit>
void ForBands(const LXImageRGBA32i& image, const QRect& rect, Visit visit) {
    const int column = int(TileOf(rect.left())), x = InTile(rect.left());
    const int leftWidth = std::min(rect.width(), TileSide - x);
    const bool crosses = leftWidth < rect.width();
    LXTileCuts::CutRows(rect, 0, [&](const QRect& part) {
        const auto slots = image.GetTileRow(unsigned(TileOf(part.top()))) + column;
        const unsigned int y = unsigned(InTile(part.top()));
        const LXTileReader left(slots[0]);
        const LXTileReader right(crosses ? slots[1].constData() : nullptr);
        if (left.Pixels() && right.Pixels())
            return ForJoinedRows(left.Row(y) + x, right.Row(y), leftWidth, part, visit);
        if (left.Pixels())
            visit(left.Row(y) + x, QRect(part.topLeft(), QSize(leftWidth, part.height())));
        if (right.Pixels())
            visit(right.Row(y), part.adjusted(leftWidth, 0, 0, 0));
    });
}

} // namespace LXTileBands
