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

inline Plane PlaneOf(const LXImageRGBA32i& image) {
    Plane plane(int(image.GetWidth()), int(image.GetHeight()));
    for (int y = 0; y < plane.height; ++y)
        image.ReadLine(unsigned(y), reinterpret_cast<unsigned char*>(plane.Row(y)),
                       image.GetWidth() * 4);
    return plane;
}

inline Plane PlaneOf(const QImage& picture) {
    Plane plane(picture.width(), picture.height());
    for (int y = 0; y < plane.height; ++y)
        std::memcpy(plane.Row(y), picture.constScanLine(y), std::size_t(plane.width) * 4);
    return plane;
}

/// Equal in size and in each pixel; a failure names the first one that differs.
inline testing::AssertionResult Same(const Plane& a, const Plane& b) {
    if (a.width != b.width || a.height != b.height)
        return testing::AssertionFailure() << "sizes differ: " << a.width << " x " << a.height
                                           << " and " << b.width << " x " << b.height;
    for (int y = 0; y < a.height; ++y)
        for (int x = 0; x < a.width; ++x) {
            const LXRGBA32i p = a.At(x, y), q = b.At(x, y);
            if (!(p == q))
                return testing::AssertionFailure()
                       << "pixel (" << x << ", " << y << "), blue green red alpha: " << int(p.blue)
                       << " " << int(p.green) << " " << int(p.red) << " " << int(p.alpha) << " and "
                       << int(q.blue) << " " << int(q.green) << " " << int(q.red) << " "
                       << int(q.alpha);
        }
    return testing::AssertionSuccess();
}

} // namespace Reference
