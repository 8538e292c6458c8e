#pragma once

#include "LXPixel.h"
#include "Plane.h"

#include <QtCore/QRect>

/// Blending written straight from its definition: one pixel at a time, in plain unsigned integers,
/// each mode by itself. It shares nothing with the library.
namespace Reference {

enum class Mode {
    SourceOver,
    Plus,
    Multiply,
    Screen,
    Overlay,
    Darken,
    Lighten,
    ColorDodge,
    ColorBurn,
    HardLight,
    SoftLight,
    Difference,
    Exclusion,
    Source,
    SourceWidthAlpha,
    SourceAlphaToGray,
    SourceRGBAToGray,
    Heal,
    ToMask,
    DestinationIn,
    DestinationInFullAlpha,
    DestinationOut,
    Clear,
    Unite,
    Intersect,
    Subtract,
    RasterAnd,
    RasterNotAnd,
    RasterOr
};
constexpr int SeparableModes = int(Mode::Exclusion) + 1;

/// How a kernel gets its pixels; some modes differ by that.
enum class Shape { Tile, Mask, Image, MaskedImage };

/// B(s, d) of a separable mode.
unsigned int Formula(Mode mode, unsigned int s, unsigned int d);

/// The new destination pixel. `m` is the mask's alpha, and used by the shapes with a mask only.
LXRGBA32i Blend(Mode mode, Shape shape, bool lockA, LXRGBA32i s, LXRGBA32i d, unsigned int opacity,
                unsigned int m);

/// Calls `visit(x, y, source x, source y)` for all destination pixels of a blend.
template <class Visit>
void ForOverlap(const Plane& source, const QRect& sourceRect, const Plane& destination,
                const QRect& destinationRect, Visit visit) {
    const auto local = [](const QRect& rect) {
        return QRect(QPoint(0, 0), QPoint(rect.right() - rect.left(), rect.bottom() - rect.top()));
    };
    const QPoint d = destinationRect.topLeft() - sourceRect.topLeft();
    const QRect final =
        (local(destinationRect) & local(sourceRect)).translated(destinationRect.topLeft()) &
        (destination.Rect() & source.Rect().translated(d));
    for (int y = final.top(); y <= final.bottom(); ++y)
        for (int x = final.left(); x <= final.right(); ++x)
            visit(x, y, x - d.x(), y - d.y());
}

} // namespace Reference
