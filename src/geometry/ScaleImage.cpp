#include "geometry/ScaleImage.h"

#include "LXTileAccess.h"
#include "core/DetachedLine.h"
#include "core/Prefetch.h"
#include "geometry/ScaleWalk.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <vector>

namespace {

bool IsDrawable(const LXImageRGBA32i& source, double scale, const QImage& target) {
    return source.GetWidth() != 0 && source.GetHeight() != 0 && !target.size().isEmpty() &&
           target.depth() == 32 && std::isfinite(scale) && scale > 0;
}

/// Down the rows of the view: `draw(y, line)` where a new source row is due, a copy of the row
/// above where it is the same again.
template <class Walk, class DrawRow>
void DrawRows(Walk walk, int sourceHeight, QImage& target, DrawRow draw) {
    auto previous = walk.Position() - 1;
    for (int t = 0; t < target.height() && !walk.IsPast(sourceHeight); ++t, walk.Step()) {
        if (!walk.HasReachedImage())
            continue;
        if (t > 0 && walk.Position() == previous) {
            std::memcpy(target.scanLine(t), target.constScanLine(t - 1),
                        std::size_t(target.width()) * 4);
        } else {
            draw(static_cast<unsigned int>(walk.Position()), LXDetachedLine<LXRGBA32i>(target, t));
            previous = walk.Position();
        }
    }
}

// ---- without a transform ------------------------------------------------------------------------

/// View pixels that show columns of one tile column.
struct TileRun {
    unsigned int tile;
    std::size_t first;
    std::size_t count;
};

constexpr std::size_t TilesAhead = 8;

/// Which source column each pixel of a view row shows: the same for all rows, so it is found once.
class Columns {
public:
    Columns(const LXImageRGBA32i& source, double start, double scale, int targetLength) {
        const double tiles = source.GetTilesX();
        const int firstTile = TruncateToInt(std::clamp(start / LXScaleTile, 0.0, tiles));
        const int lastTile = TruncateToInt(
            std::ceil(std::min(firstTile + targetLength / scale / LXScaleTile, tiles)));
        const int width = int(source.GetWidth());
        const LXFloatLimits limits(firstTile, lastTile, width);
        LXFloatWalk walk(static_cast<float>(start), scale, width,
                         LXNegativeStart::FractionsFromBelow);
        m_offsets.reserve(std::size_t(targetLength));
        for (int i = 0; i < targetLength && !limits.ArePassed(walk.Position()); ++i, walk.Step())
            if (limits.Contain(walk.Position()))
                Append(std::size_t(i), firstTile * LXScaleTile + limits.IndexOf(walk.Position()));
    }

    void DrawRow(const LXImageRGBA32i& source, unsigned int y, LXRGBA32i* line) const {
        const auto* const tiles = source.GetTileRow(y / LXImageRGBA32i::TileHeight);
        const unsigned int row = y % LXImageRGBA32i::TileHeight;
        for (std::size_t k = 0; k < m_runs.size(); ++k) {
            if (k + TilesAhead < m_runs.size()) {
                const LXTileReader ahead(tiles[m_runs[k + TilesAhead].tile]);
                if (ahead.Pixels())
                    PrefetchRow(ahead.Row(row), LXScaleTile);
            }
            const LXTileReader tile(tiles[m_runs[k].tile]);
            DrawRun(m_runs[k], tile.Pixels() ? tile.Row(row) : nullptr, line + m_begin);
        }
    }

private:
    void DrawRun(const TileRun& run, const LXRGBA32i* pixels, LXRGBA32i* line) const {
        if (!pixels) {
            std::fill_n(line + run.first, run.count, LXRGBA32i{});
            return;
        }
        for (std::size_t i = run.first; i < run.first + run.count; ++i)
            line[i] = pixels[m_offsets[i]];
    }

    void Append(std::size_t viewPixel, int column) {
        const auto tile = unsigned(column / LXScaleTile);
        if (m_offsets.empty())
            m_begin = viewPixel;
        if (m_runs.empty() || m_runs.back().tile != tile)
            m_runs.push_back({tile, m_offsets.size(), 0});
        ++m_runs.back().count;
        m_offsets.push_back(static_cast<unsigned char>(column % LXScaleTile));
    }

    std::size_t m_begin =
        0; ///< the first view pixel that shows anything; they follow without a gap
    std::vector<unsigned char> m_offsets; ///< in the tile's row
    std::vector<TileRun> m_runs;
};

// ---- with a transform ---------------------------------------------------------------------------

/// Division that rounds down.
qint64 FloorTile(qint64 column) {
    return column < 0 ? (column - LXScaleTile + 1) / LXScaleTile : column / LXScaleTile;
}

int FirstTile(double start, double scale, int width) {
    const LXIntegerWalk walk(start, scale, width);
    return int(std::max<qint64>(FloorTile(walk.Position()), 0));
}

int LastTile(double start, double scale, int targetLength) {
    const double half = 1 / scale * 0.5;
    const double end = targetLength / scale + start;
    const int column = TruncateToInt(end < 0 ? end - half : end + half);
    return int(std::max<qint64>(end < 0 ? FloorTile(column) : column / LXScaleTile, 0));
}

/// The tile columns of the buffer: those of the view, or all if the view reaches beyond them.
int TileCount(const LXImageRGBA32i& source, int firstTile, int lastTile) {
    const int span = lastTile - firstTile, all = int(source.GetTilesX());
    return std::max(all <= span ? all : span + 1, 0);
}

/// Reads a row from a tile column on. Missing tiles are 0, and what goes beyond the grid stays.
void ReadTiles(const LXImageRGBA32i& source, unsigned int y, int firstTile,
               std::vector<LXRGBA32i>& buffer) {
    const auto* const tiles = source.GetTileRow(y / LXImageRGBA32i::TileHeight);
    std::size_t column = std::size_t(firstTile);
    for (std::size_t at = 0; at < buffer.size() && column < source.GetTilesX(); ++column) {
        const LXTileReader tile(tiles[column]);
        const std::size_t count = std::min(buffer.size() - at, std::size_t(LXScaleTile));
        if (tile.Pixels())
            std::copy_n(tile.Row(y % LXImageRGBA32i::TileHeight), count, &buffer[at]);
        else
            std::fill_n(&buffer[at], count, LXRGBA32i{});
        at += count;
    }
}

} // namespace

void LXView::Draw(const LXImageRGBA32i& source, const QPointF& origin, double scale,
                  QImage& target) {
    if (!IsDrawable(source, scale, target))
        return;
    const int height = int(source.GetHeight());
    const Columns columns(source, origin.x(), scale, target.width());
    DrawRows(LXFloatWalk(static_cast<float>(origin.y()), scale, height,
                         LXNegativeStart::FractionsFromBelow),
             height, target,
             [&](unsigned int y, LXRGBA32i* line) { columns.DrawRow(source, y, line); });
}

void LXView::Draw(const LXImageRGBA32i& source, const QPointF& origin, double scale, QImage& target,
                  const LXColorTransformBase& transform) {
    if (!IsDrawable(source, scale, target))
        return;
    const int width = int(source.GetWidth()), height = int(source.GetHeight());
    const LXIntegerWalk rows(origin.y(), scale, height);
    if (rows.IsEmpty())
        return;
    const int firstTile = FirstTile(origin.x(), scale, width);
    const int lastTile = LastTile(origin.x(), scale, target.width());
    // One pixel more than the tiles: the limits of the line include it.
    std::vector<LXRGBA32i> buffer(
        std::size_t(TileCount(source, firstTile, lastTile)) * LXScaleTile + 1);
    DrawRows(rows, height, target, [&](unsigned int y, LXRGBA32i* line) {
        ReadTiles(source, y, firstTile, buffer);
        scaleLineNewWithTransform(buffer.data(), line, origin.x(), scale, width, target.width(),
                                  firstTile, lastTile, transform);
    });
}
