#include "LXImage.h"
#include "LXTransformImageColorsIterative.h"
#include "LXTransformImagePixel.h"
#include "LXTransformImagePixelIterative.h"
#include "support/PictureParts.h"
#include "support/ReferenceSteps.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace {

using namespace Reference;
using Image = LXImageRGBA32i;

struct Step {
    void operator()(LXRGBA32i& pixel) const { ++pixel.blue; }
};

/// Shows in the pixel where it was told to be, and counts the visits.
struct Place {
    void operator()(int x, int y, LXRGBA32i& pixel) const {
        ++pixel.blue;
        pixel.green = static_cast<std::uint8_t>(y);
        pixel.red = static_cast<std::uint8_t>(x);
    }
};

const QRect All(0, 0, 300, 280);
const QRect Rects[] = {All,
                       QRect(5, 5, 100, 100),
                       QRect(100, 60, 150, 20),
                       QRect(130, 133, 60, 120),
                       QRect(-40, -50, 90, 90),
                       QRect(250, 250, 500, 500),
                       QRect(128, 128, 128, 128),
                       QRect(120, 64, 20, 64),
                       QRect(120, 65, 20, 63)};

} // namespace

TEST(TileSteps, ColoursGoTileByTile) {
    TestPool pool;
    const Plane before = RandomPlane(300, 280, 1);
    for (const QRect& rect : Rects) {
        Image image = ImageOf(before);
        const Image shared = image;
        LXTransformImageColorsIterative<Image, Step> steps(Step(), image, rect);
        const unsigned int tiles = pool.InUse();
        const int count = LXTileSteps<Image>::GetTileCount(image, rect);
        EXPECT_EQ(count, int(TileParts(rect & All).size()));
        for (int i = 0; i < count; ++i) {
            EXPECT_FALSE(steps());
            EXPECT_EQ(pool.InUse(), tiles + unsigned(i) + 1) << "a step touches one tile";
        }
        EXPECT_TRUE(steps());
        EXPECT_TRUE(steps());
        const auto step = [](int, int, LXRGBA32i& pixel) { Step()(pixel); };
        EXPECT_TRUE(Same(PlaneOf(image), Changed(before, rect, step))) << rect;
    }
}

TEST(TileSteps, OneCallTakesExactlyTheRectangle) {
    const Plane before = RandomPlane(300, 280, 3);
    for (const QRect& rect : Rects) {
        Image image = ImageOf(before);
        EXPECT_TRUE((LXTransformImagePixel<Image, Place>()(image, rect, Place())));
        EXPECT_TRUE(Same(PlaneOf(image), Changed(before, rect, Place()))) << rect;
    }
}

TEST(TileSteps, PixelsOnThePoolSkipTheFirstRows) {
    const Plane before = RandomPlane(300, 280, 2);
    for (const QRect& rect : Rects) {
        Image image = ImageOf(before);
        LXTransformImagePixelIterative<Image, Place> steps(Place(), image, rect);
        int count = 0;
        while (!steps())
            ++count;
        EXPECT_EQ(count, LXTileSteps<Image>::GetTileCount(image, rect));
        EXPECT_TRUE(steps());
        Plane expected = before;
        for (const QRect& tile : TileParts(rect & All))
            ForSkippedRows(tile, 280,
                           [&](int x, int y, int toldY) { Place()(x, toldY, expected.At(x, y)); });
        EXPECT_TRUE(Same(PlaneOf(image), expected)) << rect;
    }
}

TEST(TileSteps, RectanglesWithoutPixelsGiveNoSteps) {
    Image image(300, 280);
    for (const QRect& rect : {QRect(), QRect(300, 0, 5, 5), QRect(5, 5, 0, 5), Inverted}) {
        EXPECT_EQ(LXTileSteps<Image>::GetTileCount(image, rect), 0);
        EXPECT_TRUE((LXTransformImageColorsIterative<Image, Step>(Step(), image, rect)()));
        EXPECT_TRUE((LXTransformImagePixel<Image, Place>()(image, rect, Place())));
        EXPECT_TRUE((LXTransformImagePixelIterative<Image, Place>(Place(), image, rect)()));
    }
    EXPECT_TRUE(SamePixels(image, Image(300, 280)));
}

/// The steps share one functor, tiles go row by row, and missing ones are passed over.
TEST(TileSteps, KeepTheirFunctorFromTileToTile) {
    struct Numbers {
        int next = 0;
        void operator()(LXRGBA32i& pixel) {
            pixel = {std::uint8_t(next), std::uint8_t(next >> 8), std::uint8_t(next >> 16), 0};
            ++next;
        }
    };
    Image image(300, 280);
    image.GetTileRow(1)[0] = nullptr;
    LXTransformImageColorsIterative<Image, Numbers> steps(Numbers(), image,
                                                          QRect(127, 127, 130, 130));
    while (!steps()) {
    }
    const auto number = [&](int x, int y) {
        const LXRGBA32i p = image.GetColor(x, y);
        return p.blue + (p.green << 8) + (p.red << 16);
    };
    EXPECT_EQ(number(127, 127), 0);
    EXPECT_EQ(number(128, 127), 1);
    EXPECT_EQ(number(256, 127), 129);
    EXPECT_EQ(number(128, 128), 130);
    EXPECT_EQ(number(128, 129), 130 + 128);
    LXTransformImagePixel<Image, Place>()(image, All, Place());
    EXPECT_EQ(image.GetColor(5, 6).green, 6);
    EXPECT_EQ(image.GetColor(299, 279).green, static_cast<std::uint8_t>(279)) << "after the gap";
}

TEST(TileSteps, PassOnWhatAFunctorThrows) {
    struct Thrower {
        void operator()(LXRGBA32i&) const { throw std::runtime_error("no"); }
        void operator()(int x, int, LXRGBA32i&) const {
            if (x == 100)
                throw std::runtime_error("no");
        }
    };
    Image image(300, 280);
    LXTransformImageColorsIterative<Image, Thrower> steps(Thrower(), image, All);
    EXPECT_THROW(steps(), std::runtime_error);
    LXTransformImagePixelIterative<Image, Thrower> onThePool(Thrower(), image, All);
    EXPECT_THROW(onThePool(), std::exception);
    image.SetColor(0, 0, {1, 1, 1, 1}); // the tile is free again
}

TEST(TileSteps, RunOutOfTilesBetweenSteps) {
    const auto atOnce = [](Image& image) {
        LXTransformImagePixel<Image, Place>()(image, All, Place());
    };
    const auto inSteps = [](Image& image) {
        LXTransformImageColorsIterative<Image, Step> steps(Step(), image, All);
        while (!steps()) {
        }
    };
    EXPECT_GE(SweepOnSharedTiles(atOnce), 6u);
    EXPECT_GE(SweepOnSharedTiles(inSteps), 6u);
}
