#pragma once

#include "LXImage.h"
#include "Pictures.h"

#include <QtCore/QRect>
#include <QtGui/QImage>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <vector>

namespace Reference {

/// A picture as one array.
struct Plane {
    int width;
    int height;
    std::vector<LXRGBA32i> pixels;

    Plane(int w, int h) : width(w), height(h), pixels(std::size_t(w) * std::size_t(h)) {}

    QRect Rect() const { return QRect(0, 0, width, height); }
    LXRGBA32i& At(int x, int y) {
        return pixels[std::size_t(y) * std::size_t(width) + std::size_t(x)];
    }
    const LXRGBA32i& At(int x, int y) const { return const_cast<Plane*>(this)->At(x, y); }
    /// Also of a picture without pixels.
    LXRGBA32i* Row(int y) { return pixels.data() + std::size_t(y) * std::size_t(width); }
    const LXRGBA32i* Row(int y) const { return const_cast<Plane*>(this)->Row(y); }
    /// The pixel at a position limited to the picture.
    const LXRGBA32i& Clamped(int x, int y) const {
        return At(std::clamp(x, 0, width - 1), std::clamp(y, 0, height - 1));
    }
};

inline Plane RandomPlane(int width, int height, unsigned int seed) {
    RandomPixels random(seed);
    Plane plane(width, height);
    for (LXRGBA32i& pixel : plane.pixels)
        pixel = random.Pixel();
    return plane;
}

inline LXImageRGBA32i ImageOf(const Plane& plane) {
    LXImageRGBA32i image(unsigned(plane.width), unsigned(plane.height));
    for (int y = 0; y < plane.height; ++y)
        image.WriteLine(unsigned(y), reinterpret_cast<const unsigned char*>(plane.Row(y)),
                        unsigned(plane.width) * 4);
    return image;
}

inline QImage PictureOf(const Plane& plane) {
    QImage picture(plane.width, plane.height, QImage::Format_ARGB32);
    for (int y = 0; y < picture.height(); ++y) // none if there are no columns either
        std::memcpy(picture.scanLine(y), plane.Row(y), std::size_t(plane.width) * 4);
    return picture;
}

inline QSize SizeOf(const Plane& plane) {
    return plane.Rect().size();
}

inline std::vector<LXRGBA32i> RowOf(const Plane& plane, int y) {
    return {plane.Row(y), plane.Row(y) + plane.width};
}

template <class Picture>
Plane PlaneOf(const Picture& picture) {
    Plane plane(SizeOf(picture).width(), SizeOf(picture).height());
    for (int y = 0; y < plane.height; ++y) {
        const std::vector<LXRGBA32i> row = RowOf(picture, y);
        std::copy(row.begin(), row.end(), plane.Row(y));
    }
    return plane;
}

inline testing::AssertionResult Same(const Plane& a, const Plane& b) {
    return SamePixels(a, b);
}

} // namespace Reference
