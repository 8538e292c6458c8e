#pragma once

#include "LXTileAccess.h"
#include "LXTileWalk.h"
#include "LXWorkRect.h"

#include <type_traits>
#include <utility>

namespace LXPixelWalkDetail {

template <class Functor, class Pixel, class = void>
struct OffersRuns : std::false_type {};
template <class Functor, class Pixel>
struct OffersRuns<Functor, Pixel,
                  std::void_t<decltype(std::declval<const Functor&>().TransformRun(
                      0, 0, std::declval<Pixel*>(), 0U))>> : std::true_type {};

} // namespace LXPixelWalkDetail

/// Changes pixels by `functor(x, y, pixel)` with their places in the image, in one call on the
/// calling thread. The rectangle is cut to the image. Always true; what the functor throws goes to
/// the caller, and so does std::bad_alloc if no tile is left to detach one to.
///
/// A functor may offer runs of neighbouring pixels within a tile as well, by a const member
/// `TransformRun(int x, int y, Pixel* pixels, unsigned int count)`, which must do what operator()
/// does to each of them from (x, y) on; the walk then uses that.
template <class Image, class Functor>
struct LXTransformImagePixel {
    bool operator()(Image& image, const QRect& rect, const Functor& functor) const {
        LXForTiles<Image>(LXClipped(rect, LXImageRect(image)), [&](const LXTileSpan& span) {
            const LXTileWriter tile(image.GetTileRow(span.row)[span.column]);
            for (int y = 0; tile.Pixels() && y < span.local.height(); ++y) {
                auto* const row = tile.Row(unsigned(span.local.top() + y)) + span.local.left();
                Run(functor, span.position + QPoint(0, y), row, span.local.width());
            }
        });
        return true;
    }

private:
    using Pixel = typename Image::Pixel;

    static void Run(const Functor& functor, const QPoint& place, Pixel* pixels, int count) {
        if constexpr (LXPixelWalkDetail::OffersRuns<Functor, Pixel>::value) {
            functor.TransformRun(place.x(), place.y(), pixels, static_cast<unsigned int>(count));
        } else {
            for (int i = 0; i < count; ++i)
                functor(place.x() + i, place.y(), pixels[i]);
        }
    }
};
