#pragma once

#include "LXTileAccess.h"
#include "LXTileWalk.h"
#include "LXWorkRect.h"

#include <QtCore/QRect>

#include <algorithm>

/// The part of a tile that a step works on: columns first.x() .. last.x() and rows first.y() ..
/// last.y() of the tile, all inclusive, and the position of the tile's first pixel in the image.
struct LXTilePart {
    QPoint first;
    QPoint last;
    QPoint origin;
};

/// What the step objects that do one tile a call have in common: which tile is next.
///
/// The image must outlive the object, and nobody else may write it in the meantime. Steps run on
/// the calling thread; progress and cancelling are the caller's, between two steps.
template <class Image>
class LXTileSteps {
public:
    /// How many steps a rectangle takes: the tiles that it touches, 0 if it touches none.
    static int GetTileCount(const Image& image, const QRect& rect) {
        const QRect part = LXClipped(rect, LXImageRect(image));
        if (!part.isValid())
            return 0;
        return (part.right() / Width - part.left() / Width + 1) *
               (part.bottom() / Height - part.top() / Height + 1);
    }

protected:
    /// The rectangle is cut to the image; one without pixels, the null rectangle too, gives no
    /// step.
    LXTileSteps(Image& image, const QRect& rect)
        : m_image(&image), m_rect(LXClipped(rect, LXImageRect(image))) {
        if (!m_rect.isValid())
            return;
        m_firstColumn = m_rect.left() / Width;
        m_lastColumn = m_rect.right() / Width;
        m_currentRow = m_rect.top() / Height;
        m_lastRow = m_rect.bottom() / Height;
        m_currentColumn = m_firstColumn;
    }

    /// Opens the next tile, row by row and from left to right, for `work(tile writer, part)`. True,
    /// and nothing done, after the last one. What the work or the detaching of the tile throws goes
    /// to the caller; the object is of no more use then.
    template <class Work>
    bool Step(Work work) {
        if (m_currentRow > m_lastRow)
            return true;
        const QPoint origin(m_currentColumn * Width, m_currentRow * Height);
        const QRect local = m_rect.translated(-origin) & QRect(0, 0, Width, Height);
        {
            const LXTileWriter tile(m_image->GetTileRow(unsigned(m_currentRow))[m_currentColumn]);
            if (tile.Pixels())
                work(tile, LXTilePart{local.topLeft(), local.bottomRight(), origin});
        }
        if (++m_currentColumn > m_lastColumn) {
            m_currentColumn = m_firstColumn;
            ++m_currentRow;
        }
        return false;
    }

private:
    static constexpr int Width = int(Image::TileWidth), Height = int(Image::TileHeight);

    Image* m_image;
    QRect m_rect;
    int m_firstColumn = 0, m_lastColumn = -1;
    int m_currentRow = 0, m_lastRow = -1;
    int m_currentColumn = 0;
};
