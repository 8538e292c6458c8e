#pragma once

#include "LXTileAccess.h"
#include "LXTileWalk.h"
#include "geometry/MatchRows.h"

#include <QtGui/QImage>

#include <array>
#include <memory>
#include <vector>

/// Which pixels of a picture match and are not marked yet, a bit each.
///
/// It stands for a private copy of the picture in which marked pixels are painted over. A tile is
/// compared when it is first asked for, so nobody may write into it before. The map costs 2 KiB for
/// each such tile. Nothing outside the picture matches.
template <class Picture>
class LXMatchMap {
    static constexpr int WordsARow = 2;

public:
    static constexpr int TileSide = 64 * WordsARow;

    /// A column of pixels within one tile, by their rows in it. Good for as long as the map is.
    class Column {
    public:
        Column(std::uint64_t* words, int x) : m_words(words + x / 64), m_bit(1ULL << x % 64) {}
        bool Matches(int row) const { return (m_words[row * WordsARow] & m_bit) != 0; }
        void Mark(int row) { m_words[row * WordsARow] &= ~m_bit; }

    private:
        std::uint64_t* m_words;
        std::uint64_t m_bit;
    };

    LXMatchMap(const Picture& picture, const QRect& rect, const LXColourRange& range)
        : m_picture(picture), m_rect(rect), m_range(range), m_tilesX(TileOf(rect.right()) + 1),
          m_tilesY(TileOf(rect.bottom()) + 1), m_tiles(std::size_t(m_tilesX) * m_tilesY) {}

    static int TileOf(int coordinate) { return coordinate >> 7; } // downwards, also if negative
    static int InTile(int coordinate) { return coordinate & (TileSide - 1); }

    /// Column `x` of the picture in one row of tiles; neither need be inside.
    Column ColumnAt(int x, int tileRow) {
        const int tileColumn = TileOf(x);
        if (tileColumn < 0 || tileColumn >= m_tilesX || tileRow < 0 || tileRow >= m_tilesY)
            return {m_outside.data(), 0};
        std::unique_ptr<Tile>& tile = m_tiles[std::size_t(tileRow) * m_tilesX + tileColumn];
        if (!tile) {
            tile = std::make_unique<Tile>();
            const QPoint corner(tileColumn * TileSide, tileRow * TileSide);
            Compare(m_picture, m_rect & QRect(corner, QSize(TileSide, TileSide)), *tile);
        }
        return {tile->data(), InTile(x)};
    }

private:
    using Tile = std::array<std::uint64_t, TileSide * WordsARow>;

    /// Fills in the bits of the rectangle, which begins at the tile's corner. A missing tile
    /// matches nowhere.
    void Compare(const LXImageRGBA32i& picture, const QRect& rect, Tile& bits) const {
        static_assert(LXImageRGBA32i::TileWidth == TileSide);
        const auto* const slots = picture.GetTileRow(unsigned(TileOf(rect.y())));
        const LXTileReader tile(slots[TileOf(rect.x())]);
        for (int y = 0; tile.Pixels() && y < rect.height(); ++y)
            LXRows::MatchBits(tile.Row(unsigned(y)), unsigned(rect.width()), m_range,
                              &bits[std::size_t(y) * WordsARow]);
    }
    void Compare(const QImage& picture, const QRect& rect, Tile& bits) const {
        for (int y = 0; y < rect.height(); ++y) {
            const void* const line = picture.constScanLine(rect.y() + y);
            LXRows::MatchBits(static_cast<const LXRGBA32i*>(line) + rect.x(),
                              unsigned(rect.width()), m_range, &bits[std::size_t(y) * WordsARow]);
        }
    }

    const Picture& m_picture;
    QRect m_rect;
    LXColourRange m_range;
    int m_tilesX;
    int m_tilesY;
    std::vector<std::unique_ptr<Tile>> m_tiles;
    Tile m_outside{}; // nobody marks what does not match, so it stays 0
};
