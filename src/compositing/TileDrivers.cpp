#include "compositing/Drivers.h"

#include "LXTileWalk.h"
#include "compositing/BlendTable.h"
#include "compositing/Overlap.h"
#include "compositing/TileBands.h"
#include "core/Snapshot.h"

#include <algorithm>

/// Blends from a tiled source. The tiles of source, mask and destination are out of step; the work
/// goes by destination tile, each of which is opened once, and the others come in bands of rows.

using LXTileBands::ForBands;
using LXTileCuts::TileSide;

void LXDrivers::Blend(const LXImageRGBA32i& source, const QRect& sourceRect, unsigned int mode,
                      LXImageRGBA32i& destination, const QRect& destinationRect, double opacity,
                      bool lockAlpha) {
    const LXOverlap overlap =
        LXReduce(SizeOf(source), sourceRect, SizeOf(destination), destinationRect, opacity);
    if (overlap.target.isEmpty())
        return;
    const auto kernel = LXFindBlendMode(mode).tile(lockAlpha);
    const LXSnapshot from(source, destination);

    LXForTiles<LXImageRGBA32i>(overlap.target, [&](const LXTileSpan& span) {
        const LXTileWriter to(destination.GetTileRow(span.row)[span.column]);
        if (!to.Pixels())
            return;
        const QRect part(span.position - overlap.shift, span.local.size());
        ForBands(*from, part, [&](const LXRGBA32i* pixels, const QRect& piece) {
            const QPoint local = piece.topLeft() - part.topLeft() + span.local.topLeft();
            kernel(pixels, to.Pixels(), 0, 0, local.x(), local.y(), piece.width(), piece.height(),
                   overlap.opacity);
        });
    });
}

namespace {

/// A masked blend onto one tile.
class MaskedTile {
public:
    MaskedTile(LXMaskRows::MaskRow* kernel, const LXOverlap& overlap, const LXImageRGBA32i& source,
               LXRGBA32i* tile, const QPoint& tileOrigin)
        : m_kernel(kernel), m_overlap(overlap), m_source(source), m_tile(tile),
          m_tileOrigin(tileOrigin) {}

    /// Blends the pixels `part` of the destination through mask pixels that lie (dx, dy) away.
    void BlendInside(const QRect& part, const LXImageRGBA32i& mask, const QPoint& toMask) const {
        ForBands(mask, part.translated(toMask), [&](const LXRGBA32i* through, const QRect& piece) {
            BlendRows(piece.translated(-toMask), through, TileSide);
        });
    }

    /// Blends them at full mask value: one row of mask serves for all.
    void BlendOutside(const QRect& part) const {
        LXRGBA32i full[TileSide];
        std::fill_n(full, TileSide, LXRGBA32i{255, 255, 255, 255});
        BlendRows(part, full, 0);
    }

private:
    void BlendRows(const QRect& part, const LXRGBA32i* mask, int maskStride) const {
        const QRect from = part.translated(-m_overlap.shift);
        const QPoint toTile = part.topLeft() - m_tileOrigin;
        ForBands(m_source, from, [&](const LXRGBA32i* src, const QRect& piece) {
            const QPoint inPart = piece.topLeft() - from.topLeft(), local = inPart + toTile;
            LXRGBA32i* dst = m_tile + local.y() * TileSide + local.x();
            const LXRGBA32i* through = mask + inPart.y() * maskStride + inPart.x();
            for (int y = 0; y < piece.height(); ++y, dst += TileSide, through += maskStride)
                m_kernel(src + y * TileSide, through, dst, piece.width(), m_overlap.opacity);
        });
    }

    LXMaskRows::MaskRow* m_kernel;
    const LXOverlap& m_overlap;
    const LXImageRGBA32i& m_source;
    LXRGBA32i* m_tile;
    QPoint m_tileOrigin;
};

} // namespace

void LXDrivers::BlendMask(const LXImageRGBA32i& source, const QRect& sourceRect, unsigned int mode,
                          LXImageRGBA32i& destination, const QRect& destinationRect, double opacity,
                          const LXImageRGBA32i& mask, const QRect& maskRect, bool outsideBlends,
                          bool lockAlpha) {
    const LXOverlap overlap =
        LXReduce(SizeOf(source), sourceRect, SizeOf(destination), destinationRect, opacity);
    if (overlap.target.isEmpty())
        return;
    const LXMaskPlace place = LXPlaceMask(overlap, destinationRect, SizeOf(mask), maskRect);
    const auto kernel = LXFindBlendMode(mode).mask(lockAlpha);
    const LXSnapshot from(source, destination), through(mask, destination);

    // Tiles in which nothing changes stay shared.
    const QRect changed = outsideBlends ? overlap.target : place.inside;
    LXForTiles<LXImageRGBA32i>(changed, [&](const LXTileSpan& span) {
        const LXTileWriter to(destination.GetTileRow(span.row)[span.column]);
        if (!to.Pixels())
            return;
        const QRect part(span.position, span.local.size());
        const QRect inside = part & place.inside;
        const MaskedTile tile(kernel, overlap, *from, to.Pixels(),
                              span.position - span.local.topLeft());
        tile.BlendInside(inside, *through, place.toMask);
        LXTileCuts::AroundHole(part, inside,
                               [&](const QRect& outside) { tile.BlendOutside(outside); });
    });
}
