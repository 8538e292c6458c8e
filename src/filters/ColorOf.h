#pragma once

#include "LXPixel.h"

#include <QtGui/QColor>

/// The pixel of a colour, by QColor::rgba().
inline LXRGBA32i LXColorOf(const QColor& color) {
    const QRgb rgba = color.rgba();
    return {static_cast<std::uint8_t>(qBlue(rgba)), static_cast<std::uint8_t>(qGreen(rgba)),
            static_cast<std::uint8_t>(qRed(rgba)), static_cast<std::uint8_t>(qAlpha(rgba))};
}
