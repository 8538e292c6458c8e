#pragma once

#include "LXTileAccess.h"
#include "LXTileWalk.h"
#include "core/Prefetch.h"

#include <QtCore/QRectF>
#include <QtCore/QSize>

#include <algorithm>
#include <cmath>

/// How transformations find pixels in the tiles of their source.

/// The part of an open tile in which a neighbourhood may begin, to lie in the tile as a whole. It
/// spares the look-up of the tile for the pixels that follow.
template <class Image>
class LXTileWindow {
public:
    using Pixel = typename Image::Pixel;

    bool Holds(int x, int y) const {
        return unsigned(x) - unsigned(m_left) < m_columns && unsigned(y) - unsigned(m_top) < m_rows;
    }
    /// Only of a place that it holds.
    const Pixel* At(int x, int y) const {
        return m_pixels + (y - m_top) * int(Image::TileWidth) + (x - m_left);
    }

    /// Goes to the tile with (x, y); stays if there is none. Neighbourhoods are of Side x Side
    /// pixels, and `size` is that of the source.
    template <int Side>
    void Move(const Image& source, const QSize& size, LXHeldTile<Image>& tile, int x, int y) {
        constexpr int width = int(Image::TileWidth), height = int(Image::TileHeight);
        if (x < 0 || y < 0)
            return;
        m_left = x / width * width;
        m_top = y / height * height;
        m_pixels = tile.Pixels(source, unsigned(x / width), unsigned(y / height));
        m_columns = m_pixels ? Starts<Side>(std::min(size.width() - m_left, width)) : 0;
        m_rows = Starts<Side>(std::min(size.height() - m_top, height));
    }

private:
    template <int Side>
    static unsigned int Starts(int pixels) {
        return static_cast<unsigned int>(std::max(pixels - Side + 1, 0));
    }

    const Pixel* m_pixels = nullptr;
    int m_left = 0, m_top = 0;
    unsigned int m_columns = 0, m_rows = 0;
};

/// Asks the memory for what a tile of the destination comes from: lines that lie at a slant are not
/// foreseen by the processor. Not if that is much more than the tile itself.
template <class Image>
void LXPrefetch(const Image& source, const QRectF& place) {
    constexpr double most = 4.0 * Image::Block::PixelCount;
    const QRect all = LXImageRect(source);
    if (!(place.width() * place.height() <= most) || !std::isfinite(place.x() + place.y()))
        return;
    // Places of any size, which would not all fit into int.
    const QRect part = (place & QRectF(all)).toAlignedRect() & all;
    LXForTiles<Image>(part, [&](const LXTileSpan& span) {
        const LXTileReader tile(source.GetTileRow(span.row)[span.column]);
        for (int y = span.local.top(); tile.Pixels() && y <= span.local.bottom(); ++y)
            PrefetchRow(tile.Row(unsigned(y)) + span.local.left(), span.local.width());
    });
}
