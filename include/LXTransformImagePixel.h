#pragma once

#include "LXTileAccess.h"
#include "LXTileWalk.h"
#include "LXWorkRect.h"

/// Changes pixels by `functor(x, y, pixel)` with their places in the image, in one call on the
/// calling thread. The rectangle is cut to the image. Always true; what the functor throws goes to
/// the caller, and so does std::bad_alloc if no tile is left to detach one to.
template <class Image, class Functor>
struct LXTransformImagePixel {
    bool operator()(Image& image, const QRect& rect, const Functor& functor) const {
        LXForTiles<Image>(LXClipped(rect, LXImageRect(image)), [&](const LXTileSpan& span) {
            const LXTileWriter tile(image.GetTileRow(span.row)[span.column]);
            for (int y = 0; tile.Pixels() && y < span.local.height(); ++y) {
                auto* const row = tile.Row(unsigned(span.local.top() + y)) + span.local.left();
                for (int x = 0; x < span.local.width(); ++x)
                    functor(span.position.x() + x, span.position.y() + y, row[x]);
            }
        });
        return true;
    }
};
