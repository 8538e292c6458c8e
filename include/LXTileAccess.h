#pragma once

#include "LXDataBlock.h"

#include <optional>

/// The access bracket: the only way to the pixels of a tile. Each object holds one tile open for
/// as long as it lives. A null slot gives null pixels.

/// Opens a tile for reading.
template <class Block>
class LXTileReader {
public:
    explicit LXTileReader(const QSharedDataPointer<Block>& slot) : LXTileReader(slot.constData()) {}
    explicit LXTileReader(const Block* block) : m_handle(block ? block->handle : nullptr) {
        m_pixels = static_cast<const typename Block::Pixel*>(
            static_cast<const void*>(RMTileManager64::Instance()->GetMemory(m_handle, false)));
    }
    ~LXTileReader() {
        if (m_pixels)
            RMTileManager64::Instance()->FreeMemory(m_handle);
    }
    LXTileReader(const LXTileReader&) = delete;
    LXTileReader& operator=(const LXTileReader&) = delete;

    const typename Block::Pixel* Pixels() const { return m_pixels; }
    /// Row `y` of the tile; only if Pixels() is not null.
    const typename Block::Pixel* Row(unsigned int y) const {
        return m_pixels + y * Block::TileWidth;
    }

private:
    void* m_handle;
    const typename Block::Pixel* m_pixels;
};

/// What becomes of the old pixels of a shared tile that is opened for writing.
enum class LXTileContent {
    Keep,   ///< they are copied to the new tile
    Discard ///< they are not, as the caller writes every pixel of the tile
};

/// Gives the slot a tile of its own, if its tile is shared. If no tile is left the exception
/// travels on and the slot is unchanged.
///
/// The count is read with acquire order: whoever finds itself to be the last holder must see all
/// that the others did with the tile before they let go of it.
template <class Block>
void LXDetachTile(QSharedDataPointer<Block>& slot, LXTileContent content = LXTileContent::Keep) {
    const Block* shared = slot.constData();
    if (shared && shared->ref.loadAcquire() != 1)
        slot = content == LXTileContent::Keep ? new Block(*shared) : new Block;
}

/// Detaches a shared tile and opens it for writing.
template <class Block>
class LXTileWriter {
public:
    explicit LXTileWriter(QSharedDataPointer<Block>& slot,
                          LXTileContent content = LXTileContent::Keep) {
        LXDetachTile(slot, content);
        m_handle = slot.constData() ? slot.constData()->handle : nullptr;
        m_pixels = static_cast<typename Block::Pixel*>(
            static_cast<void*>(RMTileManager64::Instance()->GetMemory(m_handle, true)));
    }
    ~LXTileWriter() {
        if (m_pixels)
            RMTileManager64::Instance()->FreeMemory(m_handle);
    }
    LXTileWriter(const LXTileWriter&) = delete;
    LXTileWriter& operator=(const LXTileWriter&) = delete;

    typename Block::Pixel* Pixels() const { return m_pixels; }
    /// Row `y` of the tile; only if Pixels() is not null.
    typename Block::Pixel* Row(unsigned int y) const { return m_pixels + y * Block::TileWidth; }

private:
    void* m_handle;
    typename Block::Pixel* m_pixels;
};

/// Keeps open the tile that was last asked for, and changes it when another one is. A copy begins
/// without a tile. For one thread, and for images that nobody writes to meanwhile.
template <class Image>
class LXHeldTile {
public:
    LXHeldTile() = default;
    LXHeldTile(const LXHeldTile&) {}
    LXHeldTile& operator=(const LXHeldTile&) {
        m_tile.reset();
        return *this;
    }

    /// The pixels of that tile of the grid, until the next call. Null if the slot is, or if there
    /// is no such tile.
    const typename Image::Pixel* Pixels(const Image& image, unsigned int column, unsigned int row) {
        if (!m_tile || column != m_column || row != m_row) {
            const auto* const tiles = image.GetTileRow(row);
            m_tile.emplace(tiles && column < image.GetTilesX() ? tiles[column].constData()
                                                               : nullptr);
            m_pixels = m_tile->Pixels();
            m_column = column;
            m_row = row;
        }
        return m_pixels;
    }

private:
    std::optional<LXTileReader<typename Image::Block>> m_tile;
    const typename Image::Pixel* m_pixels = nullptr;
    unsigned int m_column = 0;
    unsigned int m_row = 0;
};
