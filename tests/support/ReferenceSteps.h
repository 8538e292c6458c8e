#pragma once

#include "Plane.h"
#include "ReferenceKernels.h"

#include <algorithm>
#include <functional>
#include <vector>

/// What one step of the line and tile shells changes, in plain loops.
namespace Reference {

/// The new pixels of a part of a line.
using ChangeLine = std::function<Line(const Line&, int first, int count)>;

/// The n-th line or column of a part of the plane.
inline void ChangeOneLine(Plane& plane, const QRect& part, bool columns, int n,
                          const ChangeLine& change) {
    const int first = columns ? part.top() : part.left();
    const int count = columns ? part.height() : part.width();
    const int cross = (columns ? part.left() : part.top()) + n;
    const auto at = [&](int along) -> LXRGBA32i& {
        return columns ? plane.At(cross, along) : plane.At(along, cross);
    };
    Line line;
    for (int i = 0; i < (columns ? plane.height : plane.width); ++i)
        line.push_back(at(i));
    const Line changed = change(line, first, count);
    for (int i = 0; i < count; ++i)
        at(first + i) = changed[std::size_t(i)];
}

/// A part of an image, cut at the borders of tiles, in the order of the steps.
inline std::vector<QRect> TileParts(const QRect& part) {
    std::vector<QRect> tiles;
    for (int row = part.top() / 128; part.isValid() && row <= part.bottom() / 128; ++row)
        for (int column = part.left() / 128; column <= part.right() / 128; ++column)
            tiles.push_back(part & QRect(column * 128, row * 128, 128, 128));
    return tiles;
}

/// Calls `visit(x, y, y that the functor is told)` for the pixels that the shell for pixels on the
/// pool changes in a tile: r counts from the part's first row in the tile, and is compared as if it
/// counted from the tile's.
template <class Visit>
void ForSkippedRows(const QRect& part, int imageHeight, Visit visit) {
    const int tileTop = part.top() / 128 * 128;
    const int y0 = part.top() - tileTop, y1 = part.bottom() - tileTop;
    for (int r = y0; r <= y1 && r < 128 - y0; ++r)
        for (int x = part.left(); x <= part.right() && tileTop + y0 + r < imageHeight; ++x)
            visit(x, tileTop + y0 + r, tileTop + r);
}

} // namespace Reference
