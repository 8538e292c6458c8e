#include "LXImage.h"

#include "LXTileAccess.h"
#include "core/CopyBytes.h"

#include <QtCore/QPoint>
#include <QtCore/QRect>

#include <algorithm>
#include <cstring>
#include <new>
#include <stdexcept>
#include <utility>

/// The five kinds of tiled image: construction, sharing, filling, and the ways to single rows,
/// columns and pixels.

namespace {

/// How many tiles of size `tile` cover `n` pixels.
constexpr unsigned int TileCount(unsigned int n, unsigned int tile) {
    return n / tile + (n % tile != 0 ? 1 : 0);
}

/// Hands the bytes of row `y`, from pixel `x` on, to `transfer(slot, byte offset in the tile's row,
/// count)` piece by piece, as long as bytes and tiles last. False as soon as a piece fails.
template <class Image, class Transfer>
bool ForLinePieces(Image& image, unsigned int y, unsigned int x, unsigned int bytes,
                   Transfer transfer) {
    constexpr unsigned int rowBytes = LXTileBytes / Image::TileHeight;
    const auto slots = image.GetTileRow(y / Image::TileHeight);
    unsigned int offset = x % Image::TileWidth * unsigned(sizeof(typename Image::Pixel));
    for (unsigned int column = x / Image::TileWidth; bytes > 0 && column < image.GetTilesX();
         ++column) {
        const unsigned int count = std::min(bytes, rowBytes - offset);
        if (!transfer(slots[column], offset, count))
            return false;
        bytes -= count;
        offset = 0;
    }
    return true;
}

/// The same for a column of an image, in pixels: `transfer(slot, first row in the tile, count)`.
template <class Image, class Transfer>
void ForColumnPieces(Image& image, unsigned int x, unsigned int y, unsigned int pixels,
                     Transfer transfer) {
    unsigned int first = y % Image::TileHeight;
    for (unsigned int row = y / Image::TileHeight; pixels > 0 && row < image.GetTilesY(); ++row) {
        const unsigned int count = std::min(pixels, Image::TileHeight - first);
        transfer(image.GetTileRow(row)[x / Image::TileWidth], first, count);
        pixels -= count;
        first = 0;
    }
}

/// Copies bytes of a tile row out and moves `out` on. False for a null slot, and nothing is copied.
template <class Slot>
bool ReadPiece(const Slot& slot, unsigned int row, unsigned int offset, unsigned char*& out,
               unsigned int count) {
    const LXTileReader tile(slot);
    if (tile.Pixels())
        CopyBytes(out, reinterpret_cast<const unsigned char*>(tile.Row(row)) + offset, count);
    out += count;
    return tile.Pixels() != nullptr;
}

template <class Slot>
void WritePiece(Slot& slot, unsigned int row, unsigned int offset, const unsigned char*& in,
                unsigned int count) {
    const LXTileWriter tile(slot);
    if (tile.Pixels())
        CopyBytes(reinterpret_cast<unsigned char*>(tile.Row(row)) + offset, in, count);
    in += count;
}

} // namespace

template <class Pixel, unsigned int TileWidth, unsigned int TileHeight>
LXImage<Pixel, TileWidth, TileHeight>::LXImage(unsigned int width, unsigned int height)
    : m_tilesX(TileCount(width, TileWidth)), m_tilesY(TileCount(height, TileHeight)),
      m_width(width), m_height(height) {
    const quint64 tiles = quint64(m_tilesX) * m_tilesY;
    if (tiles > MaxTiles)
        throw std::bad_alloc();
    m_blocks.resize(tiles);
    Fill(Pixel{});
}

template <class Pixel, unsigned int TileWidth, unsigned int TileHeight>
LXImage<Pixel, TileWidth, TileHeight>::LXImage(const LXImage& other) = default;

template <class Pixel, unsigned int TileWidth, unsigned int TileHeight>
LXImage<Pixel, TileWidth, TileHeight>&
LXImage<Pixel, TileWidth, TileHeight>::operator=(const LXImage& other) {
    if (this != &other) {
        LXImage copy(other);
        Swap(copy);
    }
    return *this;
}

template <class Pixel, unsigned int TileWidth, unsigned int TileHeight>
LXImage<Pixel, TileWidth, TileHeight>::LXImage(LXImage&& other) noexcept
    : m_blocks(std::move(other.m_blocks)), m_tilesX(std::exchange(other.m_tilesX, 0)),
      m_tilesY(std::exchange(other.m_tilesY, 0)), m_width(std::exchange(other.m_width, 0)),
      m_height(std::exchange(other.m_height, 0)), m_profile(std::move(other.m_profile)),
      m_userValues(std::exchange(other.m_userValues, {0, 0})), m_exif(std::move(other.m_exif)) {
    other.m_blocks.clear();
}

template <class Pixel, unsigned int TileWidth, unsigned int TileHeight>
LXImage<Pixel, TileWidth, TileHeight>&
LXImage<Pixel, TileWidth, TileHeight>::operator=(LXImage&& other) noexcept {
    LXImage taken(std::move(other));
    Swap(taken);
    return *this;
}

template <class Pixel, unsigned int TileWidth, unsigned int TileHeight>
LXImage<Pixel, TileWidth, TileHeight>::~LXImage() = default;

template <class Pixel, unsigned int TileWidth, unsigned int TileHeight>
void LXImage<Pixel, TileWidth, TileHeight>::Swap(LXImage& other) noexcept {
    m_blocks.swap(other.m_blocks);
    std::swap(m_tilesX, other.m_tilesX);
    std::swap(m_tilesY, other.m_tilesY);
    std::swap(m_width, other.m_width);
    std::swap(m_height, other.m_height);
    std::swap(m_profile, other.m_profile);
    std::swap(m_userValues, other.m_userValues);
    m_exif.swap(other.m_exif);
}

template <class Pixel, unsigned int TileWidth, unsigned int TileHeight>
void LXImage<Pixel, TileWidth, TileHeight>::Fill(const Pixel& colour) {
    if (m_width == 0 || m_height == 0)
        return;
    const unsigned int edgeWidth = m_width % TileWidth;
    const unsigned int edgeHeight = m_height % TileHeight;
    const auto lastRow = m_blocks.end() - m_tilesX;

    const Slot body = MakeBorderTile(TileWidth, TileHeight, colour, colour);
    std::fill(m_blocks.begin(), m_blocks.end(), body);
    if (edgeWidth != 0) {
        const Slot edge = MakeBorderTile(edgeWidth, TileHeight, colour, Pixel{});
        for (std::size_t i = m_tilesX - 1; i < m_blocks.size(); i += m_tilesX)
            m_blocks[i] = edge;
    }
    if (edgeHeight != 0) {
        const Slot edge = MakeBorderTile(TileWidth, edgeHeight, colour, Pixel{});
        std::fill(lastRow, m_blocks.end(), edge);
    }
    if (edgeWidth != 0 && edgeHeight != 0)
        m_blocks.back() = MakeBorderTile(edgeWidth, edgeHeight, colour, Pixel{});
}

template <class Pixel, unsigned int TileWidth, unsigned int TileHeight>
void LXImage<Pixel, TileWidth, TileHeight>::FastFill(const Pixel& colour) {
    const Slot body = MakeBorderTile(TileWidth, TileHeight, colour, colour);
    std::fill(m_blocks.begin(), m_blocks.end(), body);
}

template <class Pixel, unsigned int TileWidth, unsigned int TileHeight>
auto LXImage<Pixel, TileWidth, TileHeight>::MakeBorderTile(unsigned int w, unsigned int h,
                                                           Pixel inside, Pixel outside) const
    -> Slot {
    Slot block(new Block);
    const LXTileWriter tile(block, LXTileContent::Discard);
    const unsigned int columns = std::min(w, TileWidth);
    for (unsigned int y = 0; y < TileHeight; ++y) {
        Pixel* const row = tile.Row(y);
        const unsigned int insideEnd = y < h ? columns : 0;
        std::fill(row, row + insideEnd, inside);
        std::fill(row + insideEnd, row + TileWidth, outside);
    }
    return block;
}

template <class Pixel, unsigned int TileWidth, unsigned int TileHeight>
bool LXImage<Pixel, TileWidth, TileHeight>::ReadLine(unsigned int y, unsigned char* out,
                                                     unsigned int bytes) const {
    if (y >= m_height)
        return false;
    return ForLinePieces(*this, y, 0, bytes,
                         [&](const Slot& slot, unsigned int offset, unsigned int count) {
                             ReadPiece(slot, y % TileHeight, offset, out, count);
                             return true;
                         });
}

// A missing tile ends this read as a failure, unless it is the first one; the other transfers pass
// over it. Callers rely on this difference.
template <class Pixel, unsigned int TileWidth, unsigned int TileHeight>
bool LXImage<Pixel, TileWidth, TileHeight>::ReadLine(unsigned int y, unsigned int x,
                                                     unsigned char* out, unsigned int bytes) const {
    if (y >= m_height || x >= m_width)
        return false;
    const Slot* const first = GetTileRow(y / TileHeight) + x / TileWidth;
    return ForLinePieces(
        *this, y, x, bytes, [&](const Slot& slot, unsigned int offset, unsigned int count) {
            return ReadPiece(slot, y % TileHeight, offset, out, count) || &slot == first;
        });
}

template <class Pixel, unsigned int TileWidth, unsigned int TileHeight>
bool LXImage<Pixel, TileWidth, TileHeight>::WriteLine(unsigned int y, const unsigned char* in,
                                                      unsigned int bytes) {
    if (y >= m_height)
        return false;
    return ForLinePieces(*this, y, 0, bytes,
                         [&](Slot& slot, unsigned int offset, unsigned int count) {
                             WritePiece(slot, y % TileHeight, offset, in, count);
                             return true;
                         });
}

template <class Pixel, unsigned int TileWidth, unsigned int TileHeight>
bool LXImage<Pixel, TileWidth, TileHeight>::WriteLine(unsigned int y, unsigned int x,
                                                      const unsigned char* in, unsigned int bytes) {
    if (y >= m_height || x >= m_width)
        return false;
    return ForLinePieces(*this, y, x, bytes,
                         [&](Slot& slot, unsigned int offset, unsigned int count) {
                             WritePiece(slot, y % TileHeight, offset, in, count);
                             return true;
                         });
}

template <class Pixel, unsigned int TileWidth, unsigned int TileHeight>
bool LXImage<Pixel, TileWidth, TileHeight>::ReadColumn(unsigned int x, unsigned int y,
                                                       unsigned char* out,
                                                       unsigned int bytes) const {
    if (y >= m_height || x >= m_width)
        return false;
    ForColumnPieces(*this, x, y, unsigned(bytes / sizeof(Pixel)),
                    [&](const Slot& slot, unsigned int first, unsigned int count) {
                        const LXTileReader tile(slot);
                        for (unsigned int i = 0; tile.Pixels() && i < count; ++i)
                            std::memcpy(out + i * sizeof(Pixel),
                                        tile.Row(first + i) + x % TileWidth, sizeof(Pixel));
                        out += count * sizeof(Pixel);
                    });
    return true;
}

template <class Pixel, unsigned int TileWidth, unsigned int TileHeight>
bool LXImage<Pixel, TileWidth, TileHeight>::WriteColumn(unsigned int x, unsigned int y,
                                                        const unsigned char* in,
                                                        unsigned int bytes) {
    if (y >= m_height || x >= m_width)
        return false;
    ForColumnPieces(*this, x, y, unsigned(bytes / sizeof(Pixel)),
                    [&](Slot& slot, unsigned int first, unsigned int count) {
                        const LXTileWriter tile(slot);
                        for (unsigned int i = 0; tile.Pixels() && i < count; ++i)
                            std::memcpy(tile.Row(first + i) + x % TileWidth, in + i * sizeof(Pixel),
                                        sizeof(Pixel));
                        in += count * sizeof(Pixel);
                    });
    return true;
}

template <class Pixel, unsigned int TileWidth, unsigned int TileHeight>
void LXImage<Pixel, TileWidth, TileHeight>::CheckInside(int x, int y, const char* operation) const {
    if (x < 0 || y < 0 || unsigned(x) >= m_width || unsigned(y) >= m_height)
        throw std::out_of_range(operation);
}

template <class Pixel, unsigned int TileWidth, unsigned int TileHeight>
Pixel LXImage<Pixel, TileWidth, TileHeight>::GetColor(int x, int y) const {
    CheckInside(x, y, "LXImage::GetColor");
    const unsigned int column = unsigned(x), row = unsigned(y);
    const LXTileReader tile(GetTileRow(row / TileHeight)[column / TileWidth]);
    return tile.Row(row % TileHeight)[column % TileWidth];
}

template <class Pixel, unsigned int TileWidth, unsigned int TileHeight>
void LXImage<Pixel, TileWidth, TileHeight>::SetColor(int x, int y, const Pixel& colour) {
    CheckInside(x, y, "LXImage::SetColor");
    const unsigned int column = unsigned(x), row = unsigned(y);
    const LXTileWriter tile(GetTileRow(row / TileHeight)[column / TileWidth]);
    if (tile.Pixels())
        tile.Row(row % TileHeight)[column % TileWidth] = colour;
}

template <class Pixel, unsigned int TileWidth, unsigned int TileHeight>
void LXImage<Pixel, TileWidth, TileHeight>::TransferBlocks(const LXImage& source,
                                                           const QRect& tileRect,
                                                           const QPoint& tilePosition) noexcept {
    // 64 bits, as a position may lie anywhere in the range of int.
    const qint64 left = std::max(tileRect.left(), 0), top = std::max(tileRect.top(), 0);
    const qint64 right = std::min<qint64>(tileRect.right(), qint64(source.m_tilesX) - 1);
    const qint64 bottom = std::min<qint64>(tileRect.bottom(), qint64(source.m_tilesY) - 1);
    const qint64 dx = qint64(tilePosition.x()) - tileRect.left();
    const qint64 dy = qint64(tilePosition.y()) - tileRect.top();

    const qint64 rowEnd = std::min(bottom + 1, qint64(m_tilesY) - dy);
    const qint64 columnEnd = std::min(right + 1, qint64(m_tilesX) - dx);
    for (qint64 row = std::max(top, -dy); row < rowEnd; ++row) {
        const Slot* const from = source.GetTileRow(unsigned(row));
        Slot* const to = GetTileRow(unsigned(row + dy));
        for (qint64 column = std::max(left, -dx); column < columnEnd; ++column)
            to[column + dx] = from[column];
    }
}

template class LXImage<LXRGBA32i, 128, 128>;
template class LXImage<LXRGBA64i, 128, 64>;
template class LXImage<LXRGBA64f, 128, 64>;
template class LXImage<LXCMYKA, 128, 64>;
template class LXImage<LXHSLA, 128, 64>;
