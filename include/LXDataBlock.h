#pragma once

#include "RMTileManager64.h"

#include <QtCore/QSharedData>

#include <cstring>

/// The bytes of a tile, the same for every pixel type.
constexpr unsigned int LXTileBytes = 65536;

/// The shared record of one tile. Its reference count is the number of slots that point at it:
/// those of the grids of all images, and those that a caller holds. It owns the tile for as long as
/// it lives.
template <class PixelType, unsigned int Width, unsigned int Height>
class DataBlock : public QSharedData {
public:
    using Pixel = PixelType;
    static constexpr unsigned int TileWidth = Width;
    static constexpr unsigned int TileHeight = Height;
    static constexpr unsigned int PixelCount = Width * Height;
    static_assert(PixelCount * sizeof(Pixel) == LXTileBytes);

    /// A new tile with arbitrary content. Throws what RMTileManager64::MakeTile throws.
    DataBlock() : handle(RMTileManager64::Instance()->MakeTile()) {}

    /// A new tile with the other's pixels; the count starts anew.
    DataBlock(const DataBlock& other) : DataBlock() {
        RMTileManager64* manager = RMTileManager64::Instance();
        void* to = manager->GetMemory(handle, true);
        const void* from = manager->GetMemory(other.handle, false);
        std::memcpy(to, from, LXTileBytes);
        manager->FreeMemory(other.handle);
        manager->FreeMemory(handle);
    }

    DataBlock& operator=(const DataBlock&) = delete;

    ~DataBlock() { RMTileManager64::Instance()->CleanUpTile(handle); }

    /// For RMTileManager64; LXTileReader and LXTileWriter turn it into pixels.
    void* const handle;
};
