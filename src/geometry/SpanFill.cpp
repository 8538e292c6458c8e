#include "geometry/SpanFill.h"

#include "core/DetachedLine.h"
#include "geometry/MatchMap.h"

#include <algorithm>
#include <cstring>
#include <deque>

namespace {

/// The smallest rectangle around points.
class Bounds {
public:
    explicit Bounds(const QPoint& first) : m_min(first), m_max(first) {}

    void Widen(const QPoint& from, const QPoint& to) {
        m_min = QPoint(std::min(m_min.x(), from.x()), std::min(m_min.y(), from.y()));
        m_max = QPoint(std::max(m_max.x(), to.x()), std::max(m_max.y(), to.y()));
    }
    QRect Rect() const { return QRect(m_min, m_max); }

private:
    QPoint m_min;
    QPoint m_max;
};

constexpr int TileSide = int(LXImageRGBA32i::TileWidth);

/// Paints down a column within one tile of an image, which it holds open.
class TileBrush {
public:
    /// Outside the image that is the fault of LXImage::SetColor.
    TileBrush(LXImageRGBA32i& image, int x, int y, const LXRGBA32i& fill)
        : m_tile(SlotAt(image, x, y, fill)), m_column(x % TileSide),
          m_end(std::min(TileSide, int(image.GetHeight()) - y / TileSide * TileSide)),
          m_fill(fill) {}

    int End() const { return m_end; }
    void Paint(int row) const {
        if (m_tile.Pixels())
            m_tile.Row(unsigned(row))[m_column] = m_fill;
    }

private:
    static LXImageRGBA32i::Slot& SlotAt(LXImageRGBA32i& image, int x, int y,
                                        const LXRGBA32i& fill) {
        if (unsigned(x) >= image.GetWidth() || unsigned(y) >= image.GetHeight())
            image.SetColor(x, y, fill);
        return image.GetTileRow(unsigned(y / TileSide))[x / TileSide];
    }

    const LXTileWriter<LXImageRGBA32i::Block> m_tile;
    int m_column;
    int m_end; // row of the tile at which the image ends
    LXRGBA32i m_fill;
};

/// The same on a QImage, in tiles of the same size.
class LineBrush {
public:
    LineBrush(QImage& image, int x, int y, const LXRGBA32i& fill)
        : m_first(LXDetachedLine<uchar>(image, 0)), m_stride(image.bytesPerLine()), m_fill(fill) {
        m_first += y / TileSide * TileSide * m_stride + x * qptrdiff(sizeof m_fill);
    }

    int End() const { return TileSide; }
    void Paint(int row) const { std::memcpy(m_first + row * m_stride, &m_fill, sizeof m_fill); }

private:
    uchar* m_first;
    qptrdiff m_stride;
    LXRGBA32i m_fill;
};

/// Walks columns from pending pixels: up to the first pixel that matches, then down over all that
/// do. Of each run of matches on either side the first pixel becomes pending.
template <class Brush, class Source, class Target>
class SpanFill {
public:
    SpanFill(const Source& source, const QRect& rect, Target& target, const LXColourRange& range,
             const LXRGBA32i& fill)
        : m_map(source, rect, range), m_target(target), m_fill(fill) {}

    QRect From(const QPoint& seed) {
        Bounds bounds(seed);
        m_pending.push_back(seed);
        while (!m_pending.empty()) {
            const QPoint pixel = m_pending.back();
            m_pending.pop_back();
            const int x = pixel.x(), top = Top(pixel), end = FillDown(x, top);
            if (end > top)
                bounds.Widen(QPoint(x, top), QPoint(x, end - 1));
        }
        return bounds.Rect();
    }

private:
    using Map = LXMatchMap<Source>;

    /// The row after the first pixel upwards that does not match. If that is the pending pixel
    /// itself, filled since it was found, it is the row below, which has still to be tried.
    int Top(const QPoint& pixel) {
        int y = pixel.y();
        for (bool matches = true; matches;) {
            const auto column = m_map.ColumnAt(pixel.x(), Map::TileOf(y));
            int row = Map::InTile(y);
            const int first = row;
            while (row >= 0 && column.Matches(row))
                --row;
            y -= first - row;
            matches = row < 0;
        }
        return y + 1;
    }

    /// Fills from row `y` on; returns the row at which it ends.
    int FillDown(int x, int y) {
        bool left = false, right = false; // whether there is a run of matches on that side
        while (FillTile(x, y, left, right)) {
        }
        return y;
    }

    /// The same within one tile; false if it ends before that does.
    bool FillTile(int x, int& y, bool& left, bool& right) {
        const int tileRow = Map::TileOf(y), corner = tileRow * Map::TileSide;
        auto column = m_map.ColumnAt(x, tileRow);
        if (!column.Matches(Map::InTile(y)))
            return false;
        const auto onLeft = m_map.ColumnAt(x - 1, tileRow);
        const auto onRight = m_map.ColumnAt(x + 1, tileRow);
        const Brush brush(m_target, x, y, m_fill);
        const int end = brush.End();
        int row = Map::InTile(y);
        for (; row < end && column.Matches(row); ++row) {
            column.Mark(row);
            brush.Paint(row);
            FollowRun(onLeft.Matches(row), left, QPoint(x - 1, corner + row));
            FollowRun(onRight.Matches(row), right, QPoint(x + 1, corner + row));
        }
        y = corner + row;
        return row == end;
    }

    void FollowRun(bool matches, bool& inRun, const QPoint& pixel) {
        if (matches && !inRun)
            m_pending.push_back(pixel);
        inRun = matches;
    }

    Map m_map;
    Target& m_target;
    LXRGBA32i m_fill;
    std::deque<QPoint> m_pending; // a stack; a deque gives back the memory that it has outgrown
};

/// Selects within one open tile; widens the bounds by what is in the range.
void SelectTile(const LXTileWriter<LXImageRGBA32i::Block>& tile, const LXTileSpan& span,
                const LXColourRange& range, const LXRGBA32i& fill, Bounds& bounds) {
    std::uint32_t columns[TileSide] = {};
    int top = -1, bottom = -1;
    for (int y = 0; y < span.local.height(); ++y) {
        if (!LXRows::Select(tile.Row(unsigned(y)), unsigned(span.local.width()), range, fill,
                            columns))
            continue;
        top = top < 0 ? y : top;
        bottom = y;
    }
    if (top < 0)
        return;
    const auto isSet = [](std::uint32_t column) { return column != 0; };
    const auto* const left = std::find_if(std::begin(columns), std::end(columns), isSet);
    const auto right = std::find_if(std::rbegin(columns), std::rend(columns), isSet);
    bounds.Widen(span.position + QPoint(int(left - columns), top),
                 span.position + QPoint(int(std::rend(columns) - right) - 1, bottom));
}

} // namespace

QRect LXFill::Connected(const LXImageRGBA32i& source, LXImageRGBA32i& target, const QPoint& seed,
                        const LXColourRange& range, const LXRGBA32i& fill) {
    return SpanFill<TileBrush, LXImageRGBA32i, LXImageRGBA32i>(source, LXImageRect(source), target,
                                                               range, fill)
        .From(seed);
}

QRect LXFill::Connected(QImage& image, const QPoint& seed, const LXColourRange& range,
                        const LXRGBA32i& fill) {
    return SpanFill<LineBrush, QImage, QImage>(image, image.rect(), image, range, fill).From(seed);
}

QRect LXFill::Everywhere(LXImageRGBA32i& image, const QPoint& seed, const LXColourRange& range,
                         const LXRGBA32i& fill) {
    Bounds bounds(seed);
    LXForTiles<LXImageRGBA32i>(LXImageRect(image), [&](const LXTileSpan& span) {
        const LXTileWriter tile(image.GetTileRow(span.row)[span.column]);
        if (tile.Pixels())
            SelectTile(tile, span, range, fill, bounds);
    });
    return bounds.Rect();
}
