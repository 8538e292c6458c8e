#pragma once

#include "LXAccumulatorBank.h"
#include "LXPixel.h"

#include <QtCore/QtGlobal>

#include <algorithm>
#include <vector>

/// A window of 2 radius + 1 pixels that slides over a picture: which pixels enter and leave, in
/// which order, and what stands for those beyond the picture's border. Radii are 0 or more.

namespace LXBlur {

/// Puts one colour around the picture, as the `Wrapper` of a box blur; 0 is transparent black.
/// With `void` for a wrapper the pixels at the border go on for ever.
template <unsigned int Color>
struct LXRGBA32iColorWrapper;

} // namespace LXBlur

/// What stands for a position along a line of `extent` pixels: a position on the line, or -1 for
/// transparent black.
template <class Wrapper>
struct LXEdgePosition;

template <>
struct LXEdgePosition<void> {
    static qint64 Of(qint64 position, qint64 extent) {
        return std::clamp<qint64>(position, 0, extent - 1);
    }
};

template <>
struct LXEdgePosition<LXBlur::LXRGBA32iColorWrapper<0U>> {
    static qint64 Of(qint64 position, qint64 extent) { return position < extent ? position : -1; }
};

/// Slides along one line. `source` holds it from position `sourceFirst` on, as far as the windows
/// of positions `first` and following reach; `result` takes `count` pixels.
template <class Wrapper, class Accumulator>
void LXSlideAlong(Accumulator& window, const std::vector<LXRGBA32i>& source, qint64 sourceFirst,
                  qint64 extent, int radius, qint64 first, int count, LXRGBA32i* result) {
    static constexpr LXRGBA32i transparent{};
    const auto pixel = [&](qint64 position) -> const LXRGBA32i& {
        const qint64 p = LXEdgePosition<Wrapper>::Of(position, extent);
        return p < 0 ? transparent : source[std::size_t(p - sourceFirst)];
    };
    window.Reset();
    for (qint64 p = first - 1 - radius; p <= first - 1 + radius; ++p)
        window.Add(pixel(p));
    for (qint64 x = first; x < first + count; ++x) {
        window.Subtract(pixel(x - radius - 1));
        window.Add(pixel(x + radius));
        window.Finalize(result[x - first]);
    }
}

/// Slides down a strip of columns, all of them row by row: the rows of memory are then read and
/// written as they lie. `row(y)` is the strip's row y of `extent`; `store(y, pixels)` takes the
/// results of rows `first` to `last`.
template <class Wrapper, class Accumulator, class Row, class Store>
void LXSlideDown(const Accumulator& window, unsigned int columns, qint64 extent, int radius,
                 int first, int last, Row row, Store store) {
    const std::vector<LXRGBA32i> transparent(columns);
    const auto at = [&](auto& rows, qint64 position) -> const LXRGBA32i* {
        const qint64 y = LXEdgePosition<Wrapper>::Of(position, extent);
        return y < 0 ? transparent.data() : rows(int(y));
    };
    // Rows that enter and rows that leave lie far apart: each end of the window reads for itself.
    Row entering = row, leaving = std::move(row);
    LXAccumulatorBank<Accumulator> windows(window, columns);
    for (qint64 y = qint64(first) - 1 - radius; y <= qint64(first) - 1 + radius; ++y)
        windows.Add(at(entering, y));
    std::vector<LXRGBA32i> result(columns);
    for (int y = first; y <= last; ++y) {
        windows.Slide(at(leaving, qint64(y) - radius - 1), at(entering, qint64(y) + radius),
                      result.data());
        store(y, result.data());
    }
}
