#include "RMTileManager64.h"

#include "LXFault.h"
#include "LXFileIOManager.h"
#include "core/MutexLocker.h"

#include <QtCore/QDir>
#include <QtCore/QFile>

#include <cstdlib>
#include <cstring>
#include <memory>
#include <new>

namespace {

constexpr std::size_t PoolAlignment = 4096;

/// The lines that readers of the log know the destructor's messages by.
constexpr int DestroyLine = 257;
constexpr int LostBlocksLine = 266;
constexpr int DestroyedLine = 274;

} // namespace

RMTileManager64* RMTileManager64::m_pInstance = nullptr;

void RMTileManager64::InitInstance(bool) {
    if (!m_pInstance)
        m_pInstance = new RMTileManager64(false, InstanceBlockSize, InstanceTiles, InstanceTiles);
}

void RMTileManager64::ReleaseInstance() {
    delete m_pInstance;
    m_pInstance = nullptr;
}

// A failing allocation is not detected: the pool is meant to be reserved address space. If the
// handles cannot be made the pool is not given back either; the process has no memory to go on
// with.
RMTileManager64::RMTileManager64(bool, unsigned int blockSize, unsigned int poolTiles,
                                 unsigned int handleCount)
    : m_poolTiles(poolTiles), m_handleCount(handleCount), m_blockSize(blockSize) {
    MacAlloc();
    AllocateTileDescriptors();
}

RMTileManager64::~RMTileManager64() {
    LXFault::Trace(LX_SITE_AT(DestroyLine), QStringLiteral("Destroy"));
    const quint64 lost = m_handleCount - quint64(m_freeList.size());
    delete[] m_handles;
    LXFault::Trace(LX_SITE_AT(LostBlocksLine),
                   QStringLiteral("Tile manager:lost memory blocks = %1").arg(lost));
    MacFree();
    LXFault::Trace(LX_SITE_AT(DestroyedLine), QStringLiteral("Destroyed"));
}

// Aligned, as a tile that starts between two cache lines halves the speed of every kernel.
void* RMTileManager64::MacAlloc() {
    void* pool = nullptr;
    if (posix_memalign(&pool, PoolAlignment, m_poolTiles * m_blockSize) != 0)
        pool = nullptr;
    m_pool = static_cast<char*>(pool);
    return m_pool;
}

void RMTileManager64::MacFree() {
    std::free(m_pool);
    m_pool = nullptr;
}

void RMTileManager64::AllocateTileDescriptors() {
    std::unique_ptr<TileData[]> handles(new TileData[m_handleCount]);
    m_freeList.reserve(int(m_handleCount));
    for (quint64 i = 0; i < m_handleCount; ++i) {
        handles[i].memory = m_pool + i * m_blockSize;
        m_freeList.append(&handles[i]);
    }
    m_handles = handles.release();
}

RMTileManager64::TileData* RMTileManager64::MakeTile() {
    const MutexLocker lock(m_tileLock);
    if (m_tilesInUse < m_handleCount)
        return AllocTile();
    ReportExhaustion();
    throw std::bad_alloc();
}

QList<void*> RMTileManager64::MakeTiles(unsigned int n) {
    const MutexLocker lock(m_tileLock);
    // Equality fails too, on purpose: one tile always stays behind.
    if (quint64(m_freeList.size()) <= n) {
        ReportExhaustion();
        throw std::bad_alloc();
    }
    QList<void*> tiles;
    tiles.reserve(int(n));
    for (unsigned int i = 0; i < n; ++i)
        tiles.append(AllocTile());
    return tiles;
}

RMTileManager64::TileData* RMTileManager64::AllocTile() {
    if (m_freeList.isEmpty()) {
        ReportExhaustion();
        throw std::bad_alloc();
    }
    TileData* tile = m_freeList.takeFirst();
    ++m_tilesInUse;
    return tile;
}

void RMTileManager64::Release(TileData* tile) {
    const MutexLocker lock(m_tileLock);
    m_freeList.prepend(tile);
    --m_tilesInUse;
    m_exhaustionReported = false;
}

void RMTileManager64::CleanUpTile(void* tile) {
    Release(static_cast<TileData*>(tile));
}

void RMTileManager64::CleanUpTiles(const QList<void*>& tiles) {
    for (void* tile : tiles)
        Release(static_cast<TileData*>(tile));
}

void RMTileManager64::ReadMemory(void* tile, char* out) {
    if (tile)
        std::memcpy(out, static_cast<TileData*>(tile)->memory, m_blockSize);
}

void RMTileManager64::SetExceptionHandler(ExceptionHandler handler, void* context) {
    const std::lock_guard<std::mutex> lock(m_handlerLock);
    m_handler = handler;
    m_handlerContext = context;
}

unsigned int RMTileManager64::GetAvailableCount() const {
    const MutexLocker lock(m_tileLock);
    return unsigned(m_freeList.size());
}

RMTileManager64::MemInfo RMTileManager64::GetMemInfo() {
    return {};
}

void RMTileManager64::CleanupPageFiles() {
    const QDir directory(LXFileIOManager::GetTemporaryPath());
    const auto pages =
        directory.entryInfoList({QStringLiteral("fenvora*.page")}, QDir::Files, QDir::NoSort);
    for (const QFileInfo& page : pages)
        QFile::remove(page.absoluteFilePath());
}

// At most one call of the handler per episode of exhaustion; a released tile ends the episode.
void RMTileManager64::ReportExhaustion() {
    const std::lock_guard<std::mutex> lock(m_handlerLock);
    if (!m_handler || m_exhaustionReported)
        return;
    m_exhaustionReported = true;
    m_handler(m_handlerContext, std::bad_alloc());
}
