#pragma once

#include "LXBlend.h"
#include "LXImage.h"
#include "compositing/Overlap.h"

#include <QtGui/QImage>

/// Blends from a QImage through a tiled mask onto one destination tile, in steps that each cut the
/// work at one kind of border. All rectangles are in pixels of the destination image and lie in the
/// tile.
///
/// What lies beyond the mask image goes to the kernel with no mask, which blends it in full: the
/// flag `outsideBlends` only reaches into the kernel, and what goes there with a mask lies all
/// inside it. The blend from a tiled source is different, and both are to stay.
class LXBlendOnTileHelper {
public:
    LXBlendOnTileHelper(LXBlend::MaskedImageKernel* kernel, const QImage& source,
                        const LXOverlap& overlap, const LXImageRGBA32i& mask, qint64 maskDx,
                        qint64 maskDy, bool outsideBlends, LXRGBA32i* tile)
        : m_kernel(kernel), m_source(source), m_overlap(overlap), m_mask(mask), m_dx(maskDx),
          m_dy(maskDy), m_outsideBlends(outsideBlends), m_tile(tile) {}

    /// Cuts between two tile columns of the mask.
    void Blend(const QRect& part) const;
    /// Has one tile column of the mask: cuts at its right edge, and between two tile rows.
    void BlendW(const QRect& part) const;
    /// Has one tile of the mask: cuts at its lower edge.
    void BlendH(const QRect& part) const;

private:
    void Call(const QRect& part, const LXRGBA32i* mask) const;

    LXBlend::MaskedImageKernel* m_kernel;
    const QImage& m_source;
    const LXOverlap& m_overlap;
    const LXImageRGBA32i& m_mask;
    qint64 m_dx; // destination pixel (x, y) takes mask pixel (x + dx, y + dy)
    qint64 m_dy;
    bool m_outsideBlends;
    LXRGBA32i* m_tile;
};
