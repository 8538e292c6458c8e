#pragma once

#include "LXExport.h"

#include <QtCore/QList>
#include <QtCore/QMutex>

#include <exception>
#include <mutex>

/// The pool of all pixel memory: one allocation cut into tiles of equal size.
///
/// The application calls InitInstance before its first image and ReleaseInstance after its last;
/// no image creates the pool or checks that it exists. The pool is reserved address space: a tile
/// costs physical memory from its first use on. A tile is handed out with whatever bytes it had,
/// and its maker overwrites it in full.
///
/// Any thread may make and release tiles. A tile's address holds good only between GetMemory and
/// FreeMemory; LXTileReader and LXTileWriter are the way to keep to that.
class LIBIMAGE_EXPORT RMTileManager64 {
public:
    /// The handle of one tile. It never moves, and it always means the same block.
    struct TileData {
        char* memory; ///< the first byte of the block
    };

    /// Statistics of a paging pool; all of them are 0 here, as every tile stays resident.
    struct MemInfo {
        quint64 statistics[9];
    };

    using ExceptionHandler = void (*)(void* context, const std::exception& fault);

    /// What InitInstance reserves: this many tiles of this many bytes.
    static constexpr unsigned int InstanceTiles = 100000;
    static constexpr unsigned int InstanceBlockSize = 65536;

    /// Creates the pool if there is none. The argument is unused.
    static void InitInstance(bool unused = false);
    /// Destroys the pool, if there is one. No image may be alive any more, not even to be
    /// destroyed later; the log tells how many tiles were still held.
    static void ReleaseInstance();
    /// The pool that all images use, or null.
    static RMTileManager64* Instance() { return m_pInstance; }

    /// A pool of its own, for a host or a test that puts it into m_pInstance. `handleCount` is the
    /// number of tiles that can be in use at once and must not exceed `poolTiles`.
    RMTileManager64(bool unused, unsigned int blockSize, unsigned int poolTiles,
                    unsigned int handleCount);
    ~RMTileManager64();
    RMTileManager64(const RMTileManager64&) = delete;
    RMTileManager64& operator=(const RMTileManager64&) = delete;

    /// Steps of construction and destruction; nobody else calls them.
    void* MacAlloc();
    void MacFree();
    void AllocateTileDescriptors();

    /// One tile. When all are in use, calls the exception handler (see SetExceptionHandler) and
    /// throws std::bad_alloc; the handler's own exception takes its place if it throws.
    TileData* MakeTile();
    /// `n` tiles. Fails as MakeTile if `n` or fewer are free: one always stays behind.
    QList<void*> MakeTiles(unsigned int n);
    /// The unguarded part of MakeTile; not for applications.
    TileData* AllocTile();

    /// Gives a tile back; it will be the next one handed out. The handle is not checked.
    void Release(TileData* tile);
    /// Release under the handle's general type, for one and, in the order of the list, for many.
    void CleanUpTile(void* tile);
    void CleanUpTiles(const QList<void*>& tiles);

    /// The tile's address, or null for a null handle. `forWrite` is a promise for a paging pool.
    void* GetMemory(void* tile, [[maybe_unused]] bool forWrite) {
        return tile ? static_cast<TileData*>(tile)->memory : nullptr;
    }
    /// Ends what GetMemory began.
    void FreeMemory([[maybe_unused]] void* tile) {}
    /// Copies the whole tile to `out`; does nothing for a null handle.
    void ReadMemory(void* tile, char* out);

    /// The handler is called once when tiles run out, and again only after a tile was released in
    /// between. It runs under the locks of the pool: it must not call the pool, only take note.
    void SetExceptionHandler(ExceptionHandler handler, void* context);

    /// The number of free tiles.
    unsigned int GetAvailableCount() const;
    MemInfo GetMemInfo();

    /// Removes the page files ("fenvora*.page") that an earlier run left in the temporary
    /// directory; a file that cannot be removed stays.
    static void CleanupPageFiles();

    static RMTileManager64* m_pInstance;

private:
    void ReportExhaustion();

    quint64 m_poolTiles;
    quint64 m_handleCount;
    quint64 m_blockSize;
    quint64 m_tilesInUse = 0;
    TileData* m_handles = nullptr;
    char* m_pool = nullptr;
    QList<TileData*> m_freeList;
    mutable QMutex m_tileLock{QMutex::NonRecursive}; // taken before m_handlerLock
    std::mutex m_handlerLock;
    ExceptionHandler m_handler = nullptr;
    void* m_handlerContext = nullptr;
    bool m_exhaustionReported = false;
};
