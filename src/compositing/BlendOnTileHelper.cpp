#include "compositing/BlendOnTileHelper.h"

#include "LXTileAccess.h"
#include "compositing/TileCuts.h"

#include <algorithm>

using namespace LXTileCuts;

void LXBlendOnTileHelper::Blend(const QRect& part) const {
    CutColumns(part, m_dx, [this](const QRect& column) { BlendW(column); });
}

void LXBlendOnTileHelper::BlendW(const QRect& part) const {
    const qint64 x = part.left() + m_dx;
    const qint64 column = TileOf(x);
    if (column < 0 || column >= m_mask.GetTilesX())
        return Call(part, nullptr);
    const int width = int(std::clamp<qint64>(m_mask.GetWidth() - x, 0, part.width()));
    CutRows(QRect(part.topLeft(), QSize(width, part.height())), m_dy,
            [this](const QRect& row) { BlendH(row); });
    Call(part.adjusted(width, 0, 0, 0), nullptr);
}

void LXBlendOnTileHelper::BlendH(const QRect& part) const {
    const qint64 y = part.top() + m_dy;
    const auto slot = SlotAt(m_mask, TileOf(part.left() + m_dx), TileOf(y));
    if (!slot)
        return Call(part, nullptr);
    const int height = int(std::clamp<qint64>(m_mask.GetHeight() - y, 0, part.height()));
    {
        const LXTileReader tile(*slot);
        Call(QRect(part.topLeft(), QSize(part.width(), height)), tile.Pixels());
    }
    Call(part.adjusted(0, height, 0, 0), nullptr);
}

void LXBlendOnTileHelper::Call(const QRect& part, const LXRGBA32i* mask) const {
    if (part.isEmpty())
        return;
    const QPoint from = part.topLeft() - m_overlap.shift;
    const qint64 maskX = part.left() + m_dx, maskY = part.top() + m_dy;
    // The kernel counts what is left of the mask from the corner of the part, and all of it is
    // there.
    m_kernel(m_source, m_tile, from.x(), from.y(), InTile(part.left()), InTile(part.top()),
             part.width(), part.height(), m_overlap.opacity, mask, InTile(maskX), InTile(maskY),
             part.width(), part.height(), m_outsideBlends);
}
