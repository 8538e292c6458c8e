#pragma once

#include "ExhaustionSweep.h"
#include "Plane.h"

#include <ostream>
#include <utility>

/// Parts of a picture, and what an operation makes of them.
namespace Reference {

/// Of a picture of 200 x 150 pixels: all that mean the whole, at every border, across tiles, one
/// line, and beyond the picture.
inline const QRect Parts[] = {QRect(),
                              QRect(0, 0, 200, 150),
                              QRect(-20, -20, 300, 300),
                              QRect(0, 0, 10, 10),
                              QRect(190, 140, 40, 40),
                              QRect(100, 0, 60, 150),
                              QRect(127, 127, 2, 2),
                              QRect(-5, 60, 30, 1),
                              QRect(128, 20, 1, 100)};
inline const QRect Outside(200, 0, 5, 5);
inline const QRect Inverted(QPoint(50, 50), QPoint(40, 60));

/// The plane after `change(x, y, pixel)` of each pixel of a rectangle, of which an invalid one has
/// none.
template <class Change>
Plane Changed(Plane plane, const QRect& rect, Change change) {
    const QRect part = rect.isValid() ? rect & plane.Rect() : QRect();
    for (int y = part.top(); y <= part.bottom(); ++y)
        for (int x = part.left(); x <= part.right(); ++x)
            change(x, y, plane.At(x, y));
    return plane;
}

/// Sweeps an operation on an image of 300 x 200 pixels whose tiles another one shares: it lets
/// std::bad_alloc out, of which the pool's handler is told once, and leaves the other image alone.
template <class Operate>
unsigned int SweepOnSharedTiles(Operate operate) {
    const Plane before = RandomPlane(300, 200, 11);
    const auto make = [&] {
        const LXImageRGBA32i image = ImageOf(before);
        return std::pair(image, image);
    };
    using Images = std::pair<LXImageRGBA32i, LXImageRGBA32i>;
    return SweepExhaustion(
        make, [&](Images& images) { operate(images.first); },
        [&](const Images& images, const ExhaustionOutcome& outcome) {
            EXPECT_EQ(outcome.handlerCalls, outcome.threw ? 1 : 0);
            EXPECT_TRUE(Same(PlaneOf(images.second), before));
            PlaneOf(images.first); // can be read
        });
}

} // namespace Reference

/// By its corners, as the width of a rectangle may not fit.
inline std::ostream& operator<<(std::ostream& out, const QRect& rect) {
    return out << "(" << rect.left() << ", " << rect.top() << ") to (" << rect.right() << ", "
               << rect.bottom() << ")";
}
