#pragma once

#include <QtCore/QRect>

#include <algorithm>

/// x, y, width and height, each rounded to the nearest integer, halves upwards. They are limited to
/// +-2^29, far beyond any image, so that sums of them fit; NaN counts as the lowest.
inline QRect LXRoundedRect(const QRectF& rect) {
    const auto rounded = [](double value) {
        constexpr double limit = 1 << 29;
        return value > -limit ? qRound(std::min(value, limit)) : -int(limit);
    };
    return QRect(rounded(rect.x()), rounded(rect.y()), rounded(rect.width()),
                 rounded(rect.height()));
}
