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

inline LXImageRGBA32i RandomImage(unsigned int width, unsigned int height, unsigned int seed) {
    RandomPixels random(seed);
    LXImageRGBA32i image(width, height);
    for (unsigned int y = 0; y < height; ++y)
        for (unsigned int x = 0; x < width; ++x)
            image.SetColor(int(x), int(y), random.Pixel());
    return image;
}

/// Equal in size and in each pixel; a failure names the first one that differs.
template <class Pixel, unsigned int W, unsigned int H>
testing::AssertionResult SamePixels(const LXImage<Pixel, W, H>& a, const LXImage<Pixel, W, H>& b) {
    if (a.GetWidth() != b.GetWidth() || a.GetHeight() != b.GetHeight())
        return testing::AssertionFailure() << "sizes differ";
    const unsigned int bytes = a.GetWidth() * unsigned(sizeof(Pixel));
    std::vector<unsigned char> rowA(bytes), rowB(bytes);
    for (unsigned int y = 0; y < a.GetHeight(); ++y) {
        a.ReadLine(y, rowA.data(), bytes);
        b.ReadLine(y, rowB.data(), bytes);
        for (unsigned int i = 0; i < bytes; ++i)
            if (rowA[i] != rowB[i])
                return testing::AssertionFailure()
                       << "pixel (" << i / sizeof(Pixel) << ", " << y << ") byte "
                       << i % sizeof(Pixel) << ": " << int(rowA[i]) << " and " << int(rowB[i]);
    }
    return testing::AssertionSuccess();
}

inline bool operator==(const LXRGBA64i& a, const LXRGBA64i& b) {
    return std::memcmp(&a, &b, sizeof a) == 0;
}
