#pragma once

#include <QtCore/QRect>

#include <algorithm>

/// What a rectangle given by a caller comes down to in an image. The results are inside the image
/// or invalid. An inverted rectangle is told before it is cut: QRect::operator& would exchange its
/// corners.

/// The null rectangle, as QRect() is one, means the whole image; any other invalid one nothing.
inline QRect LXNullIsWhole(const QRect& rect, const QRect& imageRect) {
    if (rect.isNull())
        return imageRect;
    return rect.isValid() ? rect & imageRect : QRect();
}

/// Every invalid rectangle means the whole image, the null one among them.
inline QRect LXInvalidIsWhole(const QRect& rect, const QRect& imageRect) {
    return rect.isValid() ? rect & imageRect : imageRect;
}

/// The rectangle with `left`, `top`, `right` and `bottom` pixels more on its sides, which may be
/// negative; limited to what QRect can hold.
inline QRect LXGrown(const QRect& rect, qint64 left, qint64 top, qint64 right, qint64 bottom) {
    const auto limited = [](qint64 v) {
        // Half the range of int: widths and further shifts by an image's size must fit as well.
        return int(std::clamp<qint64>(v, -(1 << 30), (1 << 30) - 1));
    };
    return QRect(QPoint(limited(rect.left() - left), limited(rect.top() - top)),
                 QPoint(limited(rect.right() + right), limited(rect.bottom() + bottom)));
}

inline QRect LXGrown(const QRect& rect, qint64 sides) {
    return LXGrown(rect, sides, sides, sides, sides);
}

/// The rectangle moved, limited as LXGrown.
inline QRect LXMoved(const QRect& rect, const QPoint& by) {
    return LXGrown(rect, -qint64(by.x()), -qint64(by.y()), by.x(), by.y());
}
