#pragma once

#include "RMTileManager64.h"

#include <new>

/// Notices, for as long as it lives, if the tiles run out. For library functions that say so in the
/// log only.
class TileShortage {
public:
    TileShortage() {
        RMTileManager64::Instance()->SetExceptionHandler(
            [](void* happened, const std::exception&) { *static_cast<bool*>(happened) = true; },
            &m_happened);
    }
    ~TileShortage() { RMTileManager64::Instance()->SetExceptionHandler(nullptr, nullptr); }
    TileShortage(const TileShortage&) = delete;
    TileShortage& operator=(const TileShortage&) = delete;

    /// Throws std::bad_alloc if they did.
    void Check() const {
        if (m_happened)
            throw std::bad_alloc();
    }

private:
    bool m_happened = false;
};
