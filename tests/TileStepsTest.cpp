#include "LXImage.h"
#include "LXTransformImageColorsIterative.h"
#include "LXTransformImagePixel.h"
#include "LXTransformImagePixelIterative.h"
#include "support/ExhaustionSweep.h"
#include "support/Pictures.h"
#include "support/ReferenceSteps.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace {

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

const QRect Rects[] = {
    QRect(0, 0, 300, 280),     QRect(5, 5, 100, 100),   QRect(100, 60, 150, 20),
    QRect(130, 133, 60, 120),  QRect(-40, -50, 90, 90), QRect(250, 250, 500, 500),
    QRect(128, 128, 128, 128), QRect(120, 64, 20, 64),  QRect(120, 65, 20, 63)};

const QRect Nothing[] = {QRect(), QRect(300, 0, 5, 5), QRect(5, 5, 0, 5),
                         QRect(QPoint(50, 50), QPoint(40, 40))};

} // namespace

TEST(TileSteps, ColoursGoTileByTile) {
    TestPool pool;
    for (const QRect& rect : Rects) {
        const Image before = RandomImage(300, 280, 1);
        Image image(before);
        LXTransformImageColorsIterative<Image, Step> steps(Step(), image, rect);
        const unsigned int tiles = pool.InUse();
        const QRect part = rect & QRect(0, 0, 300, 280);
        const int count = LXTileSteps<Image>::GetTileCount(image, rect);
        EXPECT_EQ(count, (part.right() / 128 - part.left() / 128 + 1) *
                             (part.bottom() / 128 - part.top() / 128 + 1));
        for (int i = 0; i < count; ++i) {
            EXPECT_FALSE(steps());
            EXPECT_EQ(pool.InUse(), tiles + unsigned(i) + 1) << "a step touches one tile";
        }
        EXPECT_TRUE(steps());
        EXPECT_TRUE(steps());
        for (int y = 0; y < 280; ++y)
            for (int x = 0; x < 300; ++x) {
                LXRGBA32i expected = before.GetColor(x, y);
                expected.blue = std::uint8_t(expected.blue + part.contains(x, y));
                ASSERT_EQ(image.GetColor(x, y), expected) << x << " " << y;
            }
    }
}

TEST(TileSteps, OneCallTakesExactlyTheRectangle) {
    const TestPool pool;
    for (const QRect& rect : Rects) {
        const Image before = RandomImage(300, 280, 3);
        Image image(before);
        EXPECT_TRUE((LXTransformImagePixel<Image, Place>()(image, rect, Place())));
        for (int y = 0; y < 280; ++y)
            for (int x = 0; x < 300; ++x) {
                LXRGBA32i expected = before.GetColor(x, y);
                if (rect.contains(x, y))
                    Place()(x, y, expected);
                ASSERT_EQ(image.GetColor(x, y), expected) << x << " " << y;
            }
    }
}

TEST(TileSteps, PixelsOnThePoolSkipTheFirstRows) {
    const TestPool pool;
    for (const QRect& rect : Rects) {
        const Image before = RandomImage(300, 280, 2);
        Image image(before);
        LXTransformImagePixelIterative<Image, Place> steps(Place(), image, rect);
        int count = 0;
        while (!steps())
            ++count;
        EXPECT_EQ(count, LXTileSteps<Image>::GetTileCount(image, rect));
        EXPECT_TRUE(steps());
        Image expected(before);
        for (const QRect& tile : Reference::TileParts(rect & LXImageRect(image)))
            Reference::ForSkippedRows(tile, 280, [&](int x, int y, int toldY) {
                LXRGBA32i pixel = before.GetColor(x, y);
                Place()(x, toldY, pixel);
                expected.SetColor(x, y, pixel);
            });
        EXPECT_TRUE(SamePixels(image, expected)) << rect.x() << " " << rect.y();
    }
}

TEST(TileSteps, RectanglesWithoutPixelsGiveNoSteps) {
    const TestPool pool;
    Image image(300, 280);
    for (const QRect& rect : Nothing) {
        EXPECT_EQ(LXTileSteps<Image>::GetTileCount(image, rect), 0);
        EXPECT_TRUE((LXTransformImageColorsIterative<Image, Step>(Step(), image, rect)()));
        EXPECT_TRUE((LXTransformImagePixel<Image, Place>()(image, rect, Place())));
        EXPECT_TRUE((LXTransformImagePixelIterative<Image, Place>(Place(), image, rect)()));
    }
    EXPECT_TRUE(SamePixels(image, Image(300, 280)));
}

/// The steps share one functor, tiles go row by row, and missing ones are passed over.
TEST(TileSteps, KeepTheirFunctorFromTileToTile) {
    const TestPool pool;
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
    LXTransformImagePixel<Image, Place>()(image, LXImageRect(image), Place());
}

TEST(TileSteps, PassOnWhatAFunctorThrows) {
    TestPool pool;
    struct Thrower {
        void operator()(LXRGBA32i&) const { throw std::runtime_error("no"); }
        void operator()(int x, int, LXRGBA32i&) const {
            if (x == 100)
                throw std::runtime_error("no");
        }
    };
    {
        Image image(300, 280);
        LXTransformImageColorsIterative<Image, Thrower> steps(Thrower(), image, LXImageRect(image));
        EXPECT_THROW(steps(), std::runtime_error);
        LXTransformImagePixelIterative<Image, Thrower> onThePool(Thrower(), image,
                                                                 LXImageRect(image));
        EXPECT_THROW(onThePool(), std::exception);
        image.SetColor(0, 0, {1, 1, 1, 1}); // the tile is free again
    }
    EXPECT_EQ(pool.InUse(), 0u);
}

TEST(TileSteps, RunOutOfTilesBetweenSteps) {
    const auto sweep = [](auto run) {
        return SweepExhaustion([] { return Image(300, 280); }, run,
                               [](const Image&, const ExhaustionOutcome& outcome) {
                                   EXPECT_EQ(outcome.handlerCalls, outcome.threw ? 1 : 0);
                               });
    };
    const QRect all(0, 0, 300, 280);
    EXPECT_GE(
        sweep([&](Image& image) { LXTransformImagePixel<Image, Place>()(image, all, Place()); }),
        3u);
    EXPECT_GE(sweep([&](Image& image) {
                  LXTransformImageColorsIterative<Image, Step> steps(Step(), image, all);
                  while (!steps()) {
                  }
              }),
              3u);
}
