#pragma once

#include "Interrupt.h"
#include "LXTransformImageColors.h"

/// Changes all pixels of the image, a row of tiles at a time, so that an interruption is heard.
template <class Transform>
void Walk(LXImageRGBA32i& image, const Transform& transform) {
    const QRect all = LXImageRect(image);
    for (int y = 0; y < all.height(); y += int(LXImageRGBA32i::TileHeight)) {
        StopIfInterrupted();
        const QRect band(0, y, all.width(), int(LXImageRGBA32i::TileHeight));
        LXTransformImageColors<LXImageRGBA32i, Transform>()(image, band, transform);
    }
}
