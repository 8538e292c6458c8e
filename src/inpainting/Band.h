#pragma once

#include "LXImage.h"
#include "LXTileWalk.h"
#include "inpainting/BitPlane.h"

namespace Inpainting {

/// The pixels that a pass looks at, walked tile by tile. For each row of a tile it is remembered
/// whether there may be some, so that a walk reads little of what is empty.
class Band {
public:
    explicit Band(const QRect& area)
        : m_pixels(area), m_rows(QRect(QPoint(area.top(), Column(area.left())),
                                       QPoint(area.bottom(), Column(area.right())))) {}

    void Add(int x, int y) { AddRun(RunStart(x), y, Run(1) << (x - RunStart(x))); }
    void AddRun(int x, int y, Run run) {
        m_pixels.Put(x, y, m_pixels.Get(x, y) | run);
        if (run != 0)
            NoteRows(y, Column(x));
    }
    void RemoveRun(int x, int y, Run run) { m_pixels.Put(x, y, m_pixels.Get(x, y) & ~run); }

    /// Adds the neighbours of pixels that are in `markable`, and removes these pixels: one after
    /// the other from left to right, so that each takes the one before it in again.
    void MarkAround(int x, int y, Run run, const BitPlane& markable) {
        const WideRun here = Widened(run), left = here >> 1, right = here << 1;
        for (const int row : {y - 1, y + 1})
            m_pixels.PutWide(x, row,
                             m_pixels.GetWide(x, row) |
                                 ((left | here | right) & markable.GetWide(x, row)));
        m_pixels.PutWide(x, y,
                         (m_pixels.GetWide(x, y) & ~here) |
                             ((left | (right & ~here)) & markable.GetWide(x, y)));
        const int column = Column(x), before = Column(x - 1), after = Column(x + RunLength);
        NoteRows(y, column);
        if (before != column)
            NoteRows(y, before);
        if (after != column)
            NoteRows(y, after);
    }

    /// visit(x, y, run) for the pixels in the rectangle, which lies in the area, in the order of a
    /// walk over the tiles of an image. A visit may remove its own. From one walk to the next the
    /// rectangle must not grow: rows found empty are forgotten, whatever lies beside it.
    template <class Visit>
    void ForRuns(const QRect& rect, Visit visit) {
        LXForTiles<LXImageRGBA32i>(rect, [&](const LXTileSpan& span) {
            const QPoint first = span.position;
            const QPoint last = first + span.local.bottomRight() - span.local.topLeft();
            const int column = int(span.column);
            const auto visitRow = [&](int y) {
                bool any = false;
                m_pixels.ForRuns(first.x(), last.x(), y, [&](int x, Run run) {
                    any = true;
                    visit(x, y, run);
                });
                if (!any)
                    m_rows.Remove(y, column);
            };
            m_rows.ForRuns(first.y(), last.y(), column,
                           [&](int top, Run rows) { ForPixels(top, rows, visitRow); });
        });
    }

private:
    static int Column(int x) { return x / int(LXImageRGBA32i::TileWidth); }

    /// There may be pixels in that row of a tile and the rows next to it. If these lie outside the
    /// area, no walk comes there.
    void NoteRows(int y, int column) {
        const int top = RunStart(y);
        const WideRun rows = WideRun(7) << (y - 1 - top + WideMargin);
        m_rows.PutWide(top, column, m_rows.GetWide(top, column) | rows);
    }

    BitPlane m_pixels;
    BitPlane m_rows; ///< y, column of tiles: whether pixels may be there
};

} // namespace Inpainting
