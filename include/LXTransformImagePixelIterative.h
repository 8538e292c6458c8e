#pragma once

#include "LXBlockingMap.h"
#include "LXTileSteps.h"

/// Changes pixels by `functor(x, y, pixel)` with their places in the image, one tile a call, on
/// Qt's global pool and the calling thread, which waits for the others. They share one copy of the
/// functor, which must not change by it. See LXTileSteps for the rectangle, and for who may do what
/// meanwhile; what the functor throws comes out of the step as LXBlockingMap tells, with the tile
/// changed in part.
///
/// In the first row of tiles of a rectangle whose top lies y0 > 0 rows into them, two things are
/// not as one expects. The rows from y0 on are counted from 0, and yet those numbers y0 .. y1 are
/// the ones worked on, y1 being the last row of the rectangle in the tile: so rows y0 .. 2 y0 - 1
/// are left out, rows 2 y0 .. y0 + y1 of the tile change, as far as there are any, also below the
/// rectangle; and the functor is told a y that is y0 too small. That is how the steps are defined,
/// and the vignette of a selection shows it: it must not be tidied away. For rectangles that begin
/// at a row of tiles, as whole images do, nothing of it is seen.
template <class Image, class Functor>
class LXTransformImagePixelIterative : public LXTileSteps<Image> {
public:
    LXTransformImagePixelIterative(const Functor& functor, Image& image, const QRect& rect)
        : LXTileSteps<Image>(image, rect), m_functor(functor) {}

    /// One tile. True if none was left.
    bool operator()() {
        return this->Step([this](const auto& tile, const LXTilePart& part) {
            const int top = part.first.y();
            const int end = std::min(part.last.y() + 1, int(Image::TileHeight) - top);
            if (top >= end)
                return;
            std::vector<LXIndexRun> rows = LXIndexRuns(end - top, RowsOfARun);
            Functor functor = m_functor;
            const auto work = [&](const LXIndexRun& run) {
                for (int r = top + run.first; r < top + run.last; ++r) {
                    auto* const pixels = tile.Row(unsigned(top + r));
                    for (int x = part.first.x(); x <= part.last.x(); ++x)
                        functor(part.origin.x() + x, part.origin.y() + r, pixels[x]);
                }
            };
            LXBlockingMap(rows, work);
        });
    }

private:
    static constexpr int RowsOfARun = 8;

    Functor m_functor;
};
