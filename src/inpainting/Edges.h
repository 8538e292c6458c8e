#pragma once

#include "inpainting/Rows.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <vector>

/// The edges of a mask by the Sobel operator on its alpha. Where alpha is 0 or 255 alone, so is the
/// strength: 255 on both sides of an edge, unless the neighbours of a pixel cancel, as they do
/// around a lone one, within diagonals and in lattices.

namespace Inpainting {

/// The alpha of a row, with one more pixel at either end: index 0 is left of the first.
using AlphaRow = std::vector<std::uint8_t>;

/// trunc(sqrt(square)), at most 255.
inline int EdgeStrength(int square) {
    return square >= 255 * 255 ? 255 : static_cast<int>(std::sqrt(double(square)));
}

/// Calls `found(index, y, strength)` wherever there is an edge in the rows first .. last, index
/// counting from 0. `read(y, row)` fills a row, those before the first and after the last too: it
/// decides what there is beyond the mask.
template <class Read, class Found>
void ForEdges(int first, int last, int width, Read read, Found found) {
    if (first > last)
        return;
    std::array<AlphaRow, 3> rows;
    rows.fill(AlphaRow(std::size_t(width) + 2));
    std::vector<int> squares(static_cast<std::size_t>(width));
    read(first - 1, rows[1]);
    read(first, rows[2]);
    for (int y = first; y <= last; ++y) {
        std::rotate(rows.begin(), rows.begin() + 1, rows.end());
        read(y + 1, rows[2]);
        EdgeSquares(rows[0].data(), rows[1].data(), rows[2].data(), squares.data(), width);
        for (int i = 0; i < width; ++i)
            if (squares[std::size_t(i)] != 0)
                found(i, y, EdgeStrength(squares[std::size_t(i)]));
    }
}

} // namespace Inpainting
