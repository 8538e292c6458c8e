#pragma once

#include <QtCore/QRect>

#include <algorithm>

/// What a rectangle given by a caller comes down to in an image.

/// What is common to both; nothing, which is QRect(), if one of them is invalid. QRect::operator&
/// would exchange the corners of an inverted rectangle, and takes one that is wider than int for
/// that.
inline QRect LXClipped(const QRect& rect, const QRect& imageRect) {
    const QPoint first(std::max(rect.left(), imageRect.left()),
                       std::max(rect.top(), imageRect.top()));
    const QPoint last(std::min(rect.right(), imageRect.right()),
                      std::min(rect.bottom(), imageRect.bottom()));
    const bool valid = rect.isValid() && first.x() <= last.x() && first.y() <= last.y();
    return valid ? QRect(first, last) : QRect();
}

/// The null rectangle, as QRect() is one, means the whole image; any other invalid one nothing.
inline QRect LXNullIsWhole(const QRect& rect, const QRect& imageRect) {
    return LXClipped(rect.isNull() ? imageRect : rect, imageRect);
}

/// Every invalid rectangle means the whole image, the null one among them.
inline QRect LXInvalidIsWhole(const QRect& rect, const QRect& imageRect) {
    return LXClipped(rect.isValid() ? rect : imageRect, imageRect);
}

/// The rectangle with `left`, `top`, `right` and `bottom` pixels more on its sides, which may be
/// negative; limited so that its sides are no longer than int can tell.
inline QRect LXGrown(const QRect& rect, qint64 left, qint64 top, qint64 right, qint64 bottom) {
    const auto limited = [](qint64 v) {
        constexpr qint64 farthest = (1 << 30) - 1;
        return int(std::clamp<qint64>(v, -farthest, farthest));
    };
    return QRect(QPoint(limited(rect.left() - left), limited(rect.top() - top)),
                 QPoint(limited(rect.right() + right), limited(rect.bottom() + bottom)));
}

inline QRect LXGrown(const QRect& rect, qint64 sides) {
    return LXGrown(rect, sides, sides, sides, sides);
}

/// The rectangle moved, limited as LXGrown. What is cut off there no longer lies where it did.
inline QRect LXMoved(const QRect& rect, const QPoint& by) {
    return LXGrown(rect, -qint64(by.x()), -qint64(by.y()), by.x(), by.y());
}
