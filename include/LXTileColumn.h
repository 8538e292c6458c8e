#pragma once

#include "LXTileAccess.h"

#include <QtCore/QRect>

#include <array>
#include <optional>

/// The rows of one column of tiles, of which the tile of the last row stays open: rows that are
/// asked for in order open each tile once. Copies open tiles for themselves.
template <class Image>
class LXTileColumn {
public:
    using Pixel = typename Image::Pixel;

    LXTileColumn(const Image& image, unsigned int column) : m_image(&image), m_column(column) {}

    /// The TileWidth pixels of row y of the image, which must exist; zeros for a missing tile.
    const Pixel* Row(unsigned int y) {
        static constexpr std::array<Pixel, Image::TileWidth> missing{};
        const Pixel* const tile = m_tile.Pixels(*m_image, m_column, y / Image::TileHeight);
        return tile ? tile + y % Image::TileHeight * Image::TileWidth : missing.data();
    }

private:
    const Image* m_image;
    unsigned int m_column;
    LXHeldTile<Image> m_tile;
};

/// The same for writing rows of one column of tiles, which are detached before.
template <class Image>
class LXTileColumnWriter {
public:
    using Pixel = typename Image::Pixel;

    /// With LXTileContent::Discard, tiles that lie in `written` as a whole are not copied when they
    /// are detached; the caller then writes every row of `written`.
    LXTileColumnWriter(Image& image, unsigned int column, const QRect& written,
                       LXTileContent content = LXTileContent::Keep)
        : m_image(&image), m_column(column), m_written(written), m_content(content) {}

    /// The TileWidth pixels of row y of the image, which must exist; null for a missing tile.
    Pixel* Row(unsigned int y) {
        const unsigned int tileRow = y / Image::TileHeight;
        if (!m_tile || tileRow != m_tileRow) {
            const QRect tile(int(m_column * Image::TileWidth), int(tileRow * Image::TileHeight),
                             int(Image::TileWidth), int(Image::TileHeight));
            m_tile.emplace(m_image->GetTileRow(tileRow)[m_column],
                           m_written.contains(tile) ? m_content : LXTileContent::Keep);
            m_tileRow = tileRow;
            m_pixels = m_tile->Pixels();
        }
        return m_pixels ? m_pixels + y % Image::TileHeight * Image::TileWidth : nullptr;
    }

private:
    Image* m_image;
    unsigned int m_column;
    QRect m_written;
    LXTileContent m_content;
    unsigned int m_tileRow = 0;
    std::optional<LXTileWriter<typename Image::Block>> m_tile;
    Pixel* m_pixels = nullptr; // of the open tile
};
