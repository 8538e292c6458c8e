#pragma once

#include <QtCore/QRect>
#include <QtCore/QSize>

/// A rectangle by its corners, in 64 bits: sums and differences of any two QRect corners fit.
struct LXCorners {
    qint64 left;
    qint64 top;
    qint64 right; ///< inclusive, as bottom
    qint64 bottom;

    explicit LXCorners(const QRect& rect)
        : left(rect.left()), top(rect.top()), right(rect.right()), bottom(rect.bottom()) {}
    LXCorners(qint64 l, qint64 t, qint64 r, qint64 b) : left(l), top(t), right(r), bottom(b) {}
    /// (0, 0) to (width - 1, height - 1).
    explicit LXCorners(const QSize& size) : LXCorners(0, 0, size.width() - 1, size.height() - 1) {}

    bool IsEmpty() const { return left > right || top > bottom; }
    /// (0, 0) to the differences of the corners.
    LXCorners AtOrigin() const { return {0, 0, right - left, bottom - top}; }
    LXCorners Moved(qint64 dx, qint64 dy) const {
        return {left + dx, top + dy, right + dx, bottom + dy};
    }
    /// QRect::operator&, which takes an inverted rectangle for one with its corners exchanged, and
    /// a null one for nothing.
    LXCorners operator&(const LXCorners& other) const;
    /// Empty, or within int on all sides.
    QRect ToRect() const;
};

/// What a blend comes down to.
struct LXOverlap {
    QRect target;         ///< the destination pixels to blend, all inside; empty for no work
    QPoint shift;         ///< destination pixel (x, y) takes source pixel (x, y) - shift
    unsigned int opacity; ///< 256 is full
};

/// The reduction common to all drivers. Of opacities, NaN and what does not fit count as the most
/// negative integer.
LXOverlap LXReduce(const QSize& source, const QRect& sourceRect, const QSize& destination,
                   const QRect& destinationRect, double opacity);

/// Where a mask lies over the destination.
struct LXMaskPlace {
    QRect inside;  ///< the destination pixels of the overlap that have a mask pixel
    QPoint toMask; ///< destination pixel (x, y) inside takes mask pixel (x, y) + toMask
};

/// The corner of `maskRect` meets that of `destinationRect`; both the mask image and `maskRect`
/// limit the mask.
LXMaskPlace LXPlaceMask(const LXOverlap& overlap, const QRect& destinationRect, const QSize& mask,
                        const QRect& maskRect);
