#include "geometry/TransformImage.h"

#include "core/DetachedLine.h"
#include "core/Snapshot.h"
#include "core/conversion/Rows.h"
#include "geometry/PositionRows.h"
#include "geometry/SourceTiles.h"

#include <algorithm>
#include <utility>

namespace {

/// What becomes of a pixel that would come from a missing tile.
enum class MissingTile { Ends, IsPassedOver };

/// Looks up source pixels for runs of destination pixels.
template <class Image>
class Sampler {
public:
    using Pixel = typename Image::Pixel;

    Sampler(const Image& source, const QTransform& inverse, const QRect& rect, MissingTile missing)
        : m_source(source), m_inverse(inverse), m_rect(LimitsIn(source, rect)), m_missing(missing),
          m_grid(int(source.GetTilesX() * Image::TileWidth),
                 int(source.GetTilesY() * Image::TileHeight)) {}

    /// Calls `put(i, pixel)` for each pixel i of a run of at most LXRows::RunLength from (x, y) on
    /// for which there is one. False if a missing tile ends the walk.
    template <class Put>
    bool Sample(int x, int y, unsigned int count, Put put) {
        LXRows::Positions positions;
        LXRows::Pixels places;
        LXRows::Map(m_inverse, x, y, count, positions);
        LXRows::Truncate(positions, count, m_rect, places);
        LXTileWindow<Image> window;
        for (unsigned int i = 0; i < count; ++i) {
            const int column = places.column[i], row = places.row[i];
            if (column == LXRows::Pixels::Outside)
                continue;
            if (!window.Holds(column, row))
                window.template Move<1>(m_source, m_grid, m_tile, column, row);
            if (window.Holds(column, row))
                put(i, *window.At(column, row));
            else if (m_missing == MissingTile::Ends)
                return false;
        }
        return true;
    }

    /// Before the runs of a part of the destination.
    void Prepare(const QRect& part) const { LXPrefetch(m_source, m_inverse.mapRect(QRectF(part))); }

private:
    /// An empty source has nothing to miss, whatever the rectangle.
    static QRect LimitsIn(const Image& source, const QRect& rect) {
        const QRect all = LXImageRect(source);
        return rect.isValid() && !all.isEmpty() ? rect : all;
    }

    const Image& m_source;
    QTransform m_inverse;
    QRect m_rect;
    MissingTile m_missing;
    QSize m_grid; ///< with the padding of edge tiles
    LXHeldTile<Image> m_tile;
};

template <class Image>
bool ToTiles(const Image& source, const QTransform& transform, Image& destination,
             const QRect& rect, MissingTile missing) {
    static_assert(Image::TileWidth <= LXRows::RunLength);
    bool isInvertible = false;
    const QTransform inverse = transform.inverted(&isInvertible);
    if (!isInvertible)
        return false;
    const LXSnapshot from(source, destination);
    Sampler<Image> sampler(*from, inverse, rect, missing);
    bool goesOn = true;
    LXForTiles<Image>(LXImageRect(destination), [&](const LXTileSpan& span) {
        if (!goesOn)
            return;
        sampler.Prepare(QRect(span.position, span.local.size()));
        const LXTileWriter tile(destination.GetTileRow(span.row)[span.column]);
        for (int y = 0; goesOn && tile.Pixels() && y < span.local.height(); ++y) {
            auto* const row = tile.Row(unsigned(y));
            goesOn = sampler.Sample(span.position.x(), span.position.y() + y,
                                    unsigned(span.local.width()),
                                    [row](unsigned int i, const auto& pixel) { row[i] = pixel; });
        }
    });
    return goesOn;
}

/// `sampleRun(sampler, x, y, count, line)` fills a run of a line.
template <class Image, class SampleRun>
bool ToLines(const Image& source, const QTransform& transform, QImage& destination,
             const QRect& rect, SampleRun sampleRun) {
    bool isInvertible = false;
    const QTransform inverse = transform.inverted(&isInvertible);
    if (!isInvertible || destination.format() != QImage::Format_ARGB32)
        return false;
    Sampler<Image> sampler(source, inverse, rect, MissingTile::IsPassedOver);
    for (int y = 0; y < destination.height(); ++y) {
        auto* const line = LXDetachedLine<LXRGBA32i>(destination, y);
        for (int x = 0; x < destination.width(); x += int(LXRows::RunLength))
            sampleRun(sampler, x, y, std::min(unsigned(destination.width() - x), LXRows::RunLength),
                      line + x);
    }
    return true;
}

/// The conversion exchanges red and blue, this transformation does not.
LXRGBA32i RGBOf(const LXCMYKA& pixel) {
    LXRGBA32i result;
    LXRows::FromCMYK(&pixel, &result, 1);
    std::swap(result.red, result.blue);
    return result;
}

} // namespace

bool LXNearest::Transform(const LXImageRGBA32i& source, const QTransform& transform,
                          LXImageRGBA32i& destination, const QRect& rect) {
    return ToTiles(source, transform, destination, rect, MissingTile::Ends);
}

bool LXNearest::Transform(const LXImageCMYKA& source, const QTransform& transform,
                          LXImageCMYKA& destination, const QRect& rect) {
    return ToTiles(source, transform, destination, rect, MissingTile::IsPassedOver);
}

bool LXNearest::Transform(const LXImageRGBA32i& source, const QTransform& transform,
                          QImage& destination, const QRect& rect) {
    return ToLines(source, transform, destination, rect,
                   [](auto& sampler, int x, int y, unsigned int count, LXRGBA32i* line) {
                       sampler.Sample(x, y, count, [line](unsigned int i, const LXRGBA32i& pixel) {
                           line[i] = pixel;
                       });
                   });
}

bool LXNearest::Transform(const LXImageCMYKA& source, const QTransform& transform,
                          QImage& destination, const QRect& rect) {
    return ToLines(source, transform, destination, rect,
                   [](auto& sampler, int x, int y, unsigned int count, LXRGBA32i* line) {
                       sampler.Sample(x, y, count, [line](unsigned int i, const LXCMYKA& pixel) {
                           line[i] = RGBOf(pixel);
                       });
                   });
}
