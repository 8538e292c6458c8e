#include "inpainting/Rows.h"

#include "core/Clones.h"

namespace {

LX_CLONED void Mark(const std::uint32_t* words, std::uint32_t* marks, int count) {
    for (int i = 0; i < count; ++i)
        marks[i] = words[i] >= 0xFF000000 ? 0 : 0xFFFF0000;
}

LX_CLONED void Alpha(const std::uint32_t* words, std::uint8_t* alphas, int count) {
    for (int i = 0; i < count; ++i)
        alphas[i] = static_cast<std::uint8_t>(words[i] >> 24);
}

LX_CLONED void Edges(const std::uint8_t* above, const std::uint8_t* here, const std::uint8_t* below,
                     int* squares, int count) {
    for (int i = 0; i < count; ++i) {
        const int nw = above[i], n = above[i + 1], ne = above[i + 2];
        const int w = here[i], e = here[i + 2];
        const int sw = below[i], s = below[i + 1], se = below[i + 2];
        const int gx = ne - nw - 2 * w + 2 * e - sw + se;
        const int gy = nw + 2 * n + ne - sw - 2 * s - se;
        squares[i] = gx * gx + gy * gy;
    }
}

} // namespace

void Inpainting::MarkUnknown(const std::uint32_t* words, std::uint32_t* marks, int count) {
    Mark(words, marks, count);
}

void Inpainting::AlphaOf(const std::uint32_t* words, std::uint8_t* alphas, int count) {
    Alpha(words, alphas, count);
}

void Inpainting::EdgeSquares(const std::uint8_t* above, const std::uint8_t* here,
                             const std::uint8_t* below, int* squares, int count) {
    Edges(above, here, below, squares, count);
}
