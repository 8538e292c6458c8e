#include "LXAccumulatorBoxBlur.h"
#include "LXBlendOn.h"
#include "LXBoxBlur.h"
#include "LXImageConvolution.h"
#include "support/PictureParts.h"
#include "support/ReferenceBlur.h"

#include <gtest/gtest.h>

#include <climits>

namespace {

using namespace Reference;
using Image = LXImageRGBA32i;

/// The operator on both kinds of image; the plane is what is expected of both.
template <class Blur>
void Check(const Blur& blur, const Plane& before, const QRect& rect, const Plane& expected) {
    Image image = ImageOf(before);
    const Image other = image;
    blur(image, rect);
    EXPECT_TRUE(Same(PlaneOf(image), expected));
    EXPECT_TRUE(Same(PlaneOf(other), before)) << "a copy was written";
    QImage picture = PictureOf(before);
    blur(picture, rect);
    EXPECT_EQ(picture.format(), QImage::Format_ARGB32);
    EXPECT_TRUE(Same(PlaneOf(picture), expected)) << "QImage";
}

} // namespace

TEST(BoxBlur, PassesAreRoundedMeans) {
    const Plane before = RandomPlane(200, 150, 1);
    for (const QRect& rect : Parts)
        for (const int radius : {0, 1, 7, 64, 150, 400}) {
            SCOPED_TRACE(testing::Message() << rect << " radius " << radius);
            const QRect part = rect.isNull() ? before.Rect() : rect;
            Check(LXBoxBlurH(radius), before, rect, BoxH(before, part, radius));
            Check(LXBoxBlurV(radius), before, rect, BoxV(before, part, radius));
        }
    for (const QRect& nothing : {Outside, Inverted}) {
        Check(LXBoxBlurH(3), before, nothing, before);
        Check(LXBoxBlurV(3), before, nothing, before);
    }
}

TEST(BoxBlur, WideWindowsOnShortLines) {
    for (const auto& [width, height] : {std::pair(1, 1), std::pair(3, 140), std::pair(140, 3)}) {
        const Plane before = RandomPlane(width, height, 2);
        for (const int radius : {0, 1, 2, 3, 139, 140, 141, 300}) {
            SCOPED_TRACE(testing::Message() << width << " x " << height << " radius " << radius);
            Check(LXBoxBlur(radius), before, QRect(), Blurred(before, QRect(), radius, false));
        }
        for (const int harmless : {-1, INT_MIN}) {
            Check(LXBoxBlur(harmless), before, QRect(), before);
            Check(LXGaussianBlur(harmless), before, QRect(0, 0, 1, 2), before);
        }
        Image image = ImageOf(before);
        LXGaussianBlur(INT_MAX)(image, QRect(0, 0, 1, 2)); // the sums wrap around
        Plane after = PlaneOf(image);
        for (int y = 0; y < std::min(height, 2); ++y)
            after.At(0, y) = before.At(0, y);
        EXPECT_TRUE(Same(after, before)) << "around the rectangle";
    }
}

TEST(BoxBlur, WindowsBeyondWhatFloatsHold) {
    const Plane before = RandomPlane(3, 2, 2);
    for (const int radius : {32499, 32500, 100000})
        Check(LXBoxBlur(radius), before, QRect(), Blurred(before, QRect(), radius, false));
}

TEST(BoxBlur, BoxAndGaussianOnPartsOfThePicture) {
    const Plane before = RandomPlane(200, 150, 3);
    const auto check = [&](const QRect& rect, int radius) {
        SCOPED_TRACE(testing::Message() << rect << " radius " << radius);
        Check(LXBoxBlur(radius), before, rect, Blurred(before, rect, radius, false));
        Check(LXGaussianBlur(radius), before, rect, Blurred(before, rect, radius, true));
    };
    for (const QRect& rect : Parts)
        for (const int radius : {1, 9, 60})
            check(rect, radius);
    check(Inverted, 4);
    check(Outside, 4);
}

TEST(BoxBlur, SelectionsLetItThrough) {
    const Plane before = RandomPlane(200, 150, 4), mask = RandomPlane(120, 90, 5);
    const Image selection = ImageOf(mask);
    const QRect selectionRect(3, 4, 100, 70);
    for (const bool gaussian : {false, true})
        for (const QRect& rect : {QRect(), before.Rect(), QRect(40, 30, 100, 70), Inverted})
            for (const bool outside : {false, true}) {
                SCOPED_TRACE(testing::Message() << gaussian << rect << outside);
                Image image = ImageOf(before), expected = image;
                const QRect place = rect.isValid() ? rect : before.Rect();
                if (gaussian)
                    LXGaussianBlur(5)(image, rect, selection, selectionRect, outside);
                else
                    LXBoxBlur(5)(image, rect, selection, selectionRect, outside);
                if (rect.isValid() || !gaussian)
                    BlendMaskOn(ImageOf(Blurred(before, rect, 5, gaussian)), place, 0, expected,
                                place, 1.0, selection, selectionRect, outside, false);
                EXPECT_TRUE(SamePixels(image, expected));
            }
}

TEST(BoxBlur, ConvertsPictures) {
    const Plane before = RandomPlane(40, 30, 6);
    const QRect part(5, 5, 20, 20);
    const auto around = [&](const QImage& picture) {
        const Plane plane = PlaneOf(picture.convertToFormat(QImage::Format_ARGB32));
        return Changed(plane, part, [](int, int, LXRGBA32i& pixel) { pixel = {}; });
    };
    for (const auto format : {QImage::Format_RGB32, QImage::Format_Indexed8, QImage::Format_RGB888,
                              QImage::Format_ARGB32_Premultiplied})
        for (const double ratio : {1.0, 2.0}) {
            SCOPED_TRACE(testing::Message() << format << " " << ratio);
            QImage source = PictureOf(before).convertToFormat(format);
            source.setDevicePixelRatio(ratio);
            const Plane converted = PlaneOf(source.convertToFormat(QImage::Format_ARGB32));
            QImage picture = source;
            LXBoxBlurH(2)(picture, QRect(50, 50, 1, 1));
            EXPECT_EQ(picture.format(), QImage::Format_ARGB32) << "also without work";
            picture = source;
            LXBoxBlur(2)(picture, QRect());
            EXPECT_TRUE(Same(PlaneOf(picture), Blurred(converted, QRect(), 2, false)));
            picture = source;
            LXBoxBlur(2)(picture, part);
            EXPECT_TRUE(Same(around(picture), around(source)));
            EXPECT_NE(picture.pixel(12, 12), source.pixel(12, 12));
        }
    QImage wide(40000, 6, QImage::Format_ARGB32);
    wide.fill(Qt::black);
    wide.setPixelColor(35000, 3, Qt::white);
    LXBoxBlur(2)(wide, QRect(32700, 1, 4000, 4));
    EXPECT_EQ(qRed(wide.pixel(35001, 3)), 10);
    QImage null;
    LXBoxBlur(2)(null, QRect());
    LXGaussianBlur(2)(null, QRect(0, 0, 2, 2));
    EXPECT_TRUE(null.isNull());
}

TEST(BoxBlur, AccumulatorsTruncate) {
    using Sums = LXRGBABlurAccumulator;
    const Plane before = RandomPlane(200, 150, 7);
    for (const QRect& rect : Parts)
        for (const int radius : {0, 1, 30, 200}) {
            SCOPED_TRACE(testing::Message() << rect << " radius " << radius);
            const QRect part = rect.isNull() ? before.Rect() : rect;
            Image along = ImageOf(before), down = along;
            LXBlur::LXBoxBlurH<Image, Sums>(radius, Sums(radius))(along, rect);
            EXPECT_TRUE(Same(PlaneOf(along), BoxPass(before, part, radius, 1, 0, 0)));
            LXBlur::LXBoxBlurV<Image, Sums>(radius, Sums(radius))(down, rect);
            EXPECT_TRUE(Same(PlaneOf(down), BoxPass(before, part, radius, 0, 1, 0)));
        }
}

namespace {

/// A bank of many against single accumulators, rows of random pixels long.
template <class Accumulator>
void CheckBank(const Accumulator& accumulator, int filled) {
    const unsigned int columns = 67;
    LXAccumulatorBank<Accumulator> bank(accumulator, columns);
    std::vector<Accumulator> singles(columns, accumulator);
    RandomPixels random{unsigned(filled)};
    // Half of the columns are nearly full, so that their sums come to their limit.
    const auto row = [&] {
        std::vector<LXRGBA32i> pixels;
        for (unsigned int c = 0; c < columns; ++c)
            pixels.push_back(c % 2 ? random.Pixel()
                                   : LXRGBA32i{255, std::uint8_t(255 - random.Below(2)), 254, 255});
        return pixels;
    };
    std::vector<std::vector<LXRGBA32i>> window;
    for (std::size_t i = 0; i < std::size_t(filled); ++i) {
        if (i < 50)
            window.push_back(row());
        bank.Add(window[i % 50].data());
        for (std::size_t c = 0; c < columns; ++c)
            singles[c].Add(window[i % 50][c]);
    }
    std::vector<LXRGBA32i> result(columns);
    for (std::size_t i = 0; i < window.size(); ++i) {
        const std::vector<LXRGBA32i> entering = row();
        bank.Slide(window[i].data(), entering.data(), result.data());
        for (std::size_t c = 0; c < columns; ++c) {
            LXRGBA32i expected{};
            singles[c].Subtract(window[i][c]);
            singles[c].Add(entering[c]);
            singles[c].Finalize(expected);
            ASSERT_EQ(result[c], expected) << filled << " column " << c;
        }
    }
}

} // namespace

TEST(BoxBlur, BanksAreAccumulatorsSideBySide) {
    // Windows of the right size, wider and narrower ones, and beyond what floats hold.
    for (const auto& [radius, filled] :
         {std::pair(0, 1), std::pair(12, 25), std::pair(12, 3000), std::pair(3000, 25),
          std::pair(32499, 64999), std::pair(32500, 65001), std::pair(150000, 300001),
          std::pair(-1, 10)}) {
        CheckBank(LXRGBABlurAccumulator(radius), filled);
        CheckBank(LXRGBABlurAccumulatorPremul(radius), filled);
        CheckBank(LXAlphaBlurAccumulator(radius), std::min(filled, 30));
    }
}

TEST(ImageConvolution, IsTheDirectSum) {
    RandomPixels random(8);
    const Plane before = RandomPlane(150, 20, 9);
    const auto check = [&](auto convolution, const Plane& expected) {
        Image image = ImageOf(before);
        convolution(image);
        EXPECT_TRUE(Same(PlaneOf(image), expected));
        QImage picture = PictureOf(before);
        convolution(picture);
        EXPECT_TRUE(Same(PlaneOf(picture), expected)) << "QImage";
    };
    for (const QSize& size : {QSize(1, 1), QSize(3, 3), QSize(2, 4), QSize(7, 1), QSize(40, 3)}) {
        const int w = size.width(), h = size.height();
        SCOPED_TRACE(testing::Message() << w << " x " << h);
        std::vector<double> kernel;
        for (int i = 0; i < w * h; ++i)
            kernel.push_back((random.Below(1000) - 380.0) / 100.0 / w);
        check(LXImageConvolution(kernel.data(), size),
              Convolved(before, kernel.data(), w, h, false));
        check(LXImageConvoluteAlpha(kernel.data(), size),
              Convolved(before, kernel.data(), w, h, true));
    }
}

TEST(ImageConvolution, TakesAnyNumbersAndNoSize) {
    const Plane before = RandomPlane(9, 9, 10);
    // Sums that fit no integer truncate to the most negative one.
    for (const double wild : {1e300, -1e300, std::nan(""), double(INFINITY)}) {
        Image image = ImageOf(before);
        LXImageConvolution(&wild, QSize(1, 1))(image);
        EXPECT_TRUE(SamePixels(image, Image(9, 9))) << wild;
    }
    Image pixel(1, 1);
    pixel.SetColor(0, 0, {1, 2, 3, 100});
    const double nearlyOne = 0.9999999999, large = 1e300;
    LXImageConvoluteAlpha(&nearlyOne, QSize(1, 1))(pixel);
    EXPECT_EQ(pixel.GetColor(0, 0), (LXRGBA32i{0, 0, 0, 100})) << "the sum is a float";
    LXImageConvoluteAlpha(&large, QSize(1, 1))(pixel);
    EXPECT_EQ(pixel.GetColor(0, 0).alpha, 255);
    for (const QSize& none : {QSize(0, 3), QSize(3, 0), QSize()}) {
        Image image = ImageOf(before);
        LXImageConvolution(nullptr, none)(image);
        LXImageConvoluteAlpha(nullptr, none)(image);
        EXPECT_TRUE(Same(PlaneOf(image), before));
    }
}

TEST(BoxBlur, RunsOutOfTiles) {
    const double half = 0.5;
    const QRect part(100, 100, 100, 50);
    EXPECT_GE(SweepOnSharedTiles([](Image& image) { LXGaussianBlur(3)(image, QRect()); }), 5u);
    EXPECT_GE(SweepOnSharedTiles([&](Image& image) { LXBoxBlur(3)(image, part); }), 4u);
    EXPECT_GE(
        SweepOnSharedTiles([&](Image& image) { LXImageConvolution(&half, QSize(1, 1))(image); }),
        5u);
}
