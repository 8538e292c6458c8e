#pragma once

#include "LXTileSteps.h"

/// Changes pixels by `functor(pixel)`, one tile a call and all on the calling thread. See
/// LXTileSteps for the rectangle, and for who may do what meanwhile.
template <class Image, class Functor>
class LXTransformImageColorsIterative : public LXTileSteps<Image> {
public:
    LXTransformImageColorsIterative(const Functor& functor, Image& image, const QRect& rect)
        : LXTileSteps<Image>(image, rect), m_functor(functor) {}

    /// One tile. True if none was left.
    bool operator()() {
        return this->Step([this](const auto& tile, const LXTilePart& part) {
            for (int y = part.first.y(); y <= part.last.y(); ++y)
                for (int x = part.first.x(); x <= part.last.x(); ++x)
                    m_functor(tile.Row(unsigned(y))[x]);
        });
    }

private:
    Functor m_functor;
};
