#pragma once

#include "LXInpaintIterative.h"
#include "LXTileAccess.h"
#include "inpainting/Hole.h"
#include "inpainting/WindowMean.h"

#include <optional>
#include <vector>

namespace Inpainting {

/// Keeps open the tile that was last written to. To be closed before anybody else may copy the
/// image or write to it.
class WrittenTile {
public:
    /// Detaches the tile if it is shared. A null slot gives null pixels.
    Pixels Open(LXImageRGBA32i& image, unsigned int column, unsigned int row) {
        if (!m_tile || column != m_column || row != m_row) {
            m_tile.emplace(image.GetTileRow(row)[column]);
            m_column = column;
            m_row = row;
        }
        void* const memory = m_tile->Pixels();
        return {static_cast<std::uint32_t*>(memory), LXImageRGBA32i::TileWidth};
    }
    void Close() { m_tile.reset(); }

private:
    std::optional<LXTileWriter<LXImageRGBA32i::Block>> m_tile;
    unsigned int m_column = 0, m_row = 0;
};

} // namespace Inpainting

/// The hole is that of the part of maskRect that the mask covers. Coordinates are the mask's.
struct Q_DECL_HIDDEN LXInpaintIterative::Private {
    Private(LXImageRGBA32i& picture, const LXImageRGBA32i& mask, const QRect& imageRect,
            const QRect& maskRect);

    /// Nothing is known around a place outside the hole's area.
    Inpainting::Surroundings Around(int x, int y) const {
        return hole.known.Contains(x, y) ? hole.known.Around(x, y) : 0;
    }

    LXImageRGBA32i* image;
    QRect bandRect;
    Inpainting::Hole hole;
    std::vector<Inpainting::FilledRun> filled; ///< in this pass
    Inpainting::WrittenTile written;           ///< of the picture, while a pass goes on
    QPoint offset;
    bool active;
    std::int64_t filledCount = 0;
};
