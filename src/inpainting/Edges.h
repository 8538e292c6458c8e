#pragma once

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <vector>

/// The edges of a mask by the Sobel operator on its alpha. Where alpha is 0 or 255 alone, the
/// strength is 255 on both sides of every edge and 0 elsewhere.

namespace Inpainting {

/// The alpha of a row, with one more pixel at either end: index 0 is left of the first.
using AlphaRow = std::vector<std::uint8_t>;

/// trunc(sqrt(gx^2 + gy^2)), at most 255, around index i of the three rows.
inline std::uint8_t EdgeStrength(const AlphaRow& above, const AlphaRow& here, const AlphaRow& below,
                                 std::size_t i) {
    const int nw = above[i - 1], n = above[i], ne = above[i + 1];
    const int w = here[i - 1], e = here[i + 1];
    const int sw = below[i - 1], s = below[i], se = below[i + 1];
    const int gx = ne - nw - 2 * w + 2 * e - sw + se;
    const int gy = nw + 2 * n + ne - sw - 2 * s - se;
    const int square = gx * gx + gy * gy;
    if (square == 0 || square >= 255 * 255)
        return square == 0 ? 0 : 255;
    return static_cast<std::uint8_t>(std::sqrt(double(square)));
}

/// Calls `found(index, y, strength)` wherever there is an edge in the rows first .. last, index
/// counting from 0. `read(y, row)` fills a row, those before the first and after the last too: it
/// decides what there is beyond the mask.
template <class Read, class Found>
void ForEdges(int first, int last, int width, Read read, Found found) {
    std::array<AlphaRow, 3> rows;
    rows.fill(AlphaRow(std::size_t(width) + 2));
    if (first <= last) {
        read(first - 1, rows[1]);
        read(first, rows[2]);
    }
    for (int y = first; y <= last; ++y) {
        std::rotate(rows.begin(), rows.begin() + 1, rows.end());
        read(y + 1, rows[2]);
        for (int i = 0; i < width; ++i)
            if (const int strength = EdgeStrength(rows[0], rows[1], rows[2], std::size_t(i) + 1))
                found(i, y, strength);
    }
}

} // namespace Inpainting
