#pragma once

#include "RMTileManager64.h"

#include <QtCore/QList>

#include <cstring>

/// A pool of a few tiles in place of the application's, for as long as it lives.
class TestPool {
public:
    explicit TestPool(unsigned int tiles = 4096)
        : m_tiles(tiles), m_pool(false, 65536, tiles, tiles),
          m_previous(RMTileManager64::m_pInstance) {
        RMTileManager64::m_pInstance = &m_pool;
        MakeDirty();
    }
    ~TestPool() {
        m_pool.CleanUpTiles(m_held);
        RMTileManager64::m_pInstance = m_previous;
    }
    TestPool(const TestPool&) = delete;
    TestPool& operator=(const TestPool&) = delete;

    RMTileManager64& Manager() { return m_pool; }

    /// Tiles that images hold.
    unsigned int InUse() const {
        return m_tiles - m_pool.GetAvailableCount() - unsigned(m_held.size());
    }

    /// Takes tiles out of the pool until `free` are left.
    void LeaveFree(unsigned int free) {
        while (m_pool.GetAvailableCount() > free)
            m_held.append(m_pool.MakeTile());
    }

    /// Puts them back.
    void GiveBack() {
        m_pool.CleanUpTiles(m_held);
        m_held.clear();
    }

private:
    /// A tile comes with old bytes in it. Only the tiles that are handed out first, for speed.
    void MakeDirty() {
        QList<void*> tiles;
        while (tiles.size() < 64 && m_pool.GetAvailableCount() > 0)
            tiles.prepend(m_pool.MakeTile());
        for (void* tile : tiles)
            std::memset(m_pool.GetMemory(tile, true), 0xCD, 65536);
        m_pool.CleanUpTiles(tiles);
    }

    unsigned int m_tiles;
    RMTileManager64 m_pool;
    RMTileManager64* m_previous;
    QList<void*> m_held;
};
