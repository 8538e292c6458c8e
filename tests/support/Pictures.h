#pragma once

#include "LXImage.h"
#include "LXTileAccess.h"

#include <QtGui/QImage>

#include <gtest/gtest.h>

#include <cstring>
#include <random>
#include <vector>

/// Random pixels, in which fully transparent, fully opaque and extreme values are frequent.
class RandomPixels {
public:
    explicit RandomPixels(unsigned int seed) : m_engine(seed) {}

    unsigned int Below(unsigned int n) { return unsigned(m_engine() % n); }

    unsigned char Byte() {
        const unsigned int kind = Below(8);
        return static_cast<unsigned char>(kind == 0 ? 0 : kind == 1 ? 255 : Below(256));
    }

    LXRGBA32i Pixel() { return LXRGBA32i{Byte(), Byte(), Byte(), Byte()}; }

private:
    std::mt19937 m_engine;
};

/// The image whose pixel at (x, y) is `colour(x, y)`, called row by row.
template <class Image = LXImageRGBA32i, class Colour>
Image MakeImage(unsigned int width, unsigned int height, Colour colour) {
    Image image(width, height);
    for (int y = 0; y < int(height); ++y)
        for (int x = 0; x < int(width); ++x)
            image.SetColor(x, y, colour(x, y));
    return image;
}

inline LXImageRGBA32i RandomImage(unsigned int width, unsigned int height, unsigned int seed) {
    RandomPixels random(seed);
    return MakeImage(width, height, [&](int, int) { return random.Pixel(); });
}

inline QImage RandomQImage(int width, int height, unsigned int seed) {
    RandomPixels random(seed);
    QImage image(width, height, QImage::Format_ARGB32);
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x) {
            const LXRGBA32i pixel = random.Pixel();
            std::memcpy(image.scanLine(y) + x * 4, &pixel, 4);
        }
    return image;
}

inline QSize SizeOf(const QImage& picture) {
    return picture.size();
}

template <class Pixel, unsigned int W, unsigned int H>
QSize SizeOf(const LXImage<Pixel, W, H>& image) {
    return QSize(int(image.GetWidth()), int(image.GetHeight()));
}

inline std::vector<LXRGBA32i> RowOf(const QImage& picture, int y) {
    std::vector<LXRGBA32i> row(std::size_t(picture.width()));
    std::memcpy(row.data(), picture.constScanLine(y), row.size() * 4);
    return row;
}

template <class Pixel, unsigned int W, unsigned int H>
std::vector<Pixel> RowOf(const LXImage<Pixel, W, H>& image, int y) {
    std::vector<Pixel> row(image.GetWidth());
    image.ReadLine(unsigned(y), reinterpret_cast<unsigned char*>(row.data()),
                   unsigned(row.size() * sizeof(Pixel)));
    return row;
}

/// Equal in size and in each pixel, of images and QImages of the same kind of pixel; a failure
/// names the first one that differs.
template <class A, class B>
testing::AssertionResult SamePixels(const A& a, const B& b) {
    if (SizeOf(a) != SizeOf(b))
        return testing::AssertionFailure() << "sizes differ";
    for (int y = 0; y < SizeOf(a).height(); ++y) {
        const auto rowA = RowOf(a, y), rowB = RowOf(b, y);
        for (std::size_t x = 0; x < rowA.size(); ++x)
            if (std::memcmp(&rowA[x], &rowB[x], sizeof rowA[x]) != 0)
                return testing::AssertionFailure()
                       << "pixel (" << x << ", " << y << "): " << testing::PrintToString(rowA[x])
                       << " and " << testing::PrintToString(rowB[x]);
    }
    return testing::AssertionSuccess();
}

inline bool operator==(const LXRGBA64i& a, const LXRGBA64i& b) {
    return std::memcmp(&a, &b, sizeof a) == 0;
}
