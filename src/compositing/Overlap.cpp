#include "compositing/Overlap.h"

#include "core/Truncate.h"

#include <algorithm>
#include <utility>

namespace {

/// What QRect means by null: a width and a height of 0.
bool IsNull(const LXCorners& rect) {
    return rect.right == rect.left - 1 && rect.bottom == rect.top - 1;
}

/// Exchanges the corners of what is inverted. A width of 0 is not.
LXCorners Upright(LXCorners rect) {
    if (rect.right - rect.left + 1 < 0)
        std::swap(rect.left, rect.right);
    if (rect.bottom - rect.top + 1 < 0)
        std::swap(rect.top, rect.bottom);
    return rect;
}

constexpr qint64 NothingAtAll = -1;

} // namespace

LXCorners LXCorners::operator&(const LXCorners& other) const {
    const LXCorners nothing(0, 0, NothingAtAll, NothingAtAll);
    if (IsNull(*this) || IsNull(other))
        return nothing;
    const LXCorners a = Upright(*this), b = Upright(other);
    if (a.left > b.right || b.left > a.right || a.top > b.bottom || b.top > a.bottom)
        return nothing;
    return {std::max(a.left, b.left), std::max(a.top, b.top), std::min(a.right, b.right),
            std::min(a.bottom, b.bottom)};
}

QRect LXCorners::ToRect() const {
    if (IsEmpty())
        return QRect();
    return QRect(QPoint(int(left), int(top)), QPoint(int(right), int(bottom)));
}

LXOverlap LXReduce(const QSize& source, const QRect& sourceRect, const QSize& destination,
                   const QRect& destinationRect, double opacity) {
    const LXCorners from(sourceRect), to(destinationRect);
    const LXCorners common = to.AtOrigin() & from.AtOrigin();
    const qint64 dx = to.left - from.left, dy = to.top - from.top;
    const LXCorners clip = LXCorners(destination) & LXCorners(source).Moved(dx, dy);
    const LXCorners target = common.Moved(to.left, to.top) & clip;
    const int scaled = TruncateToInt(opacity * 256.0);
    if (target.IsEmpty() || scaled == 0)
        return {QRect(), QPoint(), 0};
    // The target is inside both images, and so is the way between them.
    return {target.ToRect(), QPoint(int(dx), int(dy)), unsigned(scaled)};
}

LXMaskPlace LXPlaceMask(const LXOverlap& overlap, const QRect& destinationRect, const QSize& mask,
                        const QRect& maskRect) {
    const LXCorners onMask(maskRect), to(destinationRect);
    const qint64 dx = onMask.left - to.left, dy = onMask.top - to.top;
    const LXCorners reached = LXCorners(overlap.target).Moved(dx, dy) & onMask;
    const LXCorners inside = (reached & LXCorners(mask)).Moved(-dx, -dy);
    if (inside.IsEmpty())
        return {QRect(), QPoint()};
    return {inside.ToRect(), QPoint(int(dx), int(dy))};
}
