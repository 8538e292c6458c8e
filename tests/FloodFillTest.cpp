#include "LXConvertImage.h"
#include "LXFloodFillHelper.h"
#include "LXTileWalk.h"
#include "support/ExhaustionSweep.h"
#include "support/Pictures.h"
#include "support/Uncopyable.h"

#include <gtest/gtest.h>

#include <functional>
#include <queue>
#include <stdexcept>

namespace {

const TestPool testPool; // of all tests

using namespace LXFloodFillHelper;
using Image = LXImageRGBA32i;

const QRect Untouched(11, 22, 33, 44);
constexpr LXRGBA32i NoTolerance = {0, 0, 0, 0}, FullTolerance = {255, 255, 255, 255};
constexpr LXRGBA32i Some = {30, 30, 30, 30}, Fill = {7, 8, 9, 200};

// ---- the plain reference ------------------------------------------------------------------------

bool Within(int value, int seed, int tolerance) {
    return seed - tolerance <= value && value <= seed + tolerance;
}

bool Matches(const LXRGBA32i& p, const LXRGBA32i& seed, const LXRGBA32i& tolerance) {
    if (seed.alpha == 0)
        return p.alpha == 0;
    return Within(p.blue, seed.blue, tolerance.blue) &&
           Within(p.green, seed.green, tolerance.green) && Within(p.red, seed.red, tolerance.red) &&
           Within(p.alpha, seed.alpha, tolerance.alpha);
}

struct Filled {
    Image image;
    QRect bounds;
};

/// Paints the target where the image has what is looked for: from neighbour to neighbour, beginning
/// with the seed, or anywhere.
Filled Search(const Image& image, const QPoint& seed, bool connected,
              const std::function<bool(const LXRGBA32i&)>& matches, const Image& target) {
    const QRect all = LXImageRect(image);
    Filled filled{target, QRect(seed, seed)};
    std::vector<bool> found(std::size_t(all.width() * all.height()));
    std::queue<QPoint> pending;
    const auto visit = [&](const QPoint& p) {
        const auto index = std::size_t(p.y() * all.width() + p.x());
        if (!all.contains(p) || found[index] || !matches(image.GetColor(p.x(), p.y())))
            return;
        found[index] = true;
        filled.image.SetColor(p.x(), p.y(), Fill);
        filled.bounds |= QRect(p, p);
        pending.push(p);
    };
    visit(seed);
    for (int i = 0; i < all.width() * all.height() && !connected; ++i)
        visit(QPoint(i % all.width(), i / all.width()));
    for (; !pending.empty(); pending.pop())
        for (const QPoint& step : {QPoint(-1, 0), QPoint(1, 0), QPoint(0, -1), QPoint(0, 1)})
            visit(pending.front() + step);
    return filled;
}

// ---- pictures -----------------------------------------------------------------------------------

/// Noise of colours near one another, in which regions wind; the fill colour is among them.
Image Maze(unsigned int width, unsigned int height, unsigned int seed) {
    const LXRGBA32i colours[] = {
        {100, 100, 100, 255}, {100, 100, 100, 255}, {110, 90, 100, 255}, {120, 110, 120, 240},
        {200, 100, 100, 255}, {1, 2, 3, 0},         {4, 5, 6, 0},        Fill};
    RandomPixels random(seed);
    const unsigned int kinds = 3 + random.Below(6);
    return MakeImage(width, height, [&](int, int) { return colours[random.Below(kinds)]; });
}

/// One way of a pixel's width, winding from the corner to the middle.
Image Spiral(int side) {
    return MakeImage(unsigned(side), unsigned(side), [&](int x, int y) {
        const int ring = std::min({x, y, side - 1 - x, side - 1 - y});
        const bool isWay = (ring % 2 == 0) != (x == ring && y == ring + 1);
        return isWay ? LXRGBA32i{9, 9, 9, 255} : LXRGBA32i{};
    });
}

QPoint RandomPlace(const Image& image, RandomPixels& random) {
    return QPoint(int(random.Below(image.GetWidth())), int(random.Below(image.GetHeight())));
}

} // namespace

// ---- tests --------------------------------------------------------------------------------------

TEST(FloodFill, CompareAndMarker) {
    RandomPixels random(1);
    for (int i = 0; i < 2000000; ++i) {
        const LXRGBA32i seed = random.Pixel(), tolerance = random.Pixel();
        const LXRGBA32i near = {std::uint8_t(seed.blue + tolerance.blue), seed.green, seed.red,
                                seed.alpha};
        for (const LXRGBA32i& pixel : {random.Pixel(), seed, near})
            ASSERT_EQ(Compare(pixel, seed, tolerance), Matches(pixel, seed, tolerance));
    }
    // Each channel decides when those before it are full.
    for (unsigned int channel = 0; channel < 4; ++channel)
        for (int seed = 0; seed < 256; ++seed)
            for (int tolerance = 0; tolerance < 256; ++tolerance) {
                std::uint8_t s[4] = {9, 9, 9, 9}, t[4] = {255, 255, 255, 255},
                             m[4] = {0, 0, 0, 255};
                s[channel] = std::uint8_t(seed);
                t[channel] = std::uint8_t(tolerance);
                const LXRGBA32i colour = {s[0], s[1], s[2], s[3]};
                const LXRGBA32i range = {t[0], t[1], t[2], t[3]};
                LXRGBA32i marker = {1, 1, 1, 77};
                const bool known = GetOutOfRangeColor(colour, range, marker);
                SCOPED_TRACE(testing::Message() << channel << ": " << seed << " " << tolerance);
                const bool below = seed - tolerance >= (channel == 3 ? 2 : 1);
                ASSERT_EQ(known, below || seed + tolerance <= 254);
                ASSERT_FALSE(known && Matches(marker, colour, range));
                m[channel] = below ? channel == 3 : 255;
                const bool isSet = known || (channel == 3 && seed - tolerance == 1);
                const LXRGBA32i expected =
                    isSet ? LXRGBA32i{m[0], m[1], m[2], m[3]} : LXRGBA32i{1, 1, 1, 77};
                ASSERT_EQ(marker, expected);
            }
}

TEST(FloodFill, FillsWhatIsConnected) {
    for (unsigned int seed = 0; seed < 120; ++seed) {
        RandomPixels random(seed);
        const QSize sizes[] = {{1, 1}, {1, 300}, {300, 1}, {128, 128}, {129, 257}, {270, 140}};
        const QSize size = sizes[seed % 6];
        const Image source = seed % 20 == 9
                                 ? Spiral(280)
                                 : Maze(unsigned(size.width()), unsigned(size.height()), seed);
        const QPoint at = RandomPlace(source, random);
        const LXRGBA32i tolerances[] = {
            Some, {15, 15, 0, 0}, {0, 0, 0, 1}, random.Pixel(), FullTolerance};
        const LXRGBA32i tolerance = tolerances[random.Below(5)];
        const LXRGBA32i colour = source.GetColor(at.x(), at.y());
        LXRGBA32i marker;
        const bool whole = !GetOutOfRangeColor(colour, tolerance, marker);
        SCOPED_TRACE(testing::Message() << "seed " << seed << " at " << at.x() << ", " << at.y());

        const auto matches = [&](const LXRGBA32i& p) {
            return whole || Matches(p, colour, tolerance);
        };
        const Filled expected = Search(source, at, !whole, matches, source);
        QRect bounds;
        const auto check = [&](auto image) {
            const auto copy = image;
            bounds = Untouched;
            EXPECT_TRUE(FloodFill(image, at, tolerance, Fill, &bounds));
            EXPECT_EQ(bounds, expected.bounds);
            EXPECT_TRUE(SamePixels(image, expected.image));
            EXPECT_TRUE(SamePixels(copy, source));
            EXPECT_TRUE(FloodFill(image, at, tolerance, Fill, nullptr));
        };
        check(source);
        check(ConvertImage<Image, QImage>(source));

        Image target = RandomImage(source.GetWidth() + 3, source.GetHeight() + 2, seed),
              larger(target);
        if (whole) // of the target, that is
            larger.Fill(Fill);
        ASSERT_TRUE(FloodFill(source, target, at, tolerance, Fill, &bounds));
        ASSERT_TRUE(SamePixels(target, Search(source, at, !whole, matches, larger).image));
        ASSERT_EQ(bounds, expected.bounds);

        const auto equal = [&](const LXRGBA32i& p) { return p == colour; };
        const Filled exact = Search(source, at, true, equal, source);
        for (const bool delegates : {false, true}) {
            Image same(source);
            ASSERT_TRUE(delegates ? FloodFill(same, at, NoTolerance, Fill, &bounds)
                                  : FloodFill(same, at, Fill, &bounds));
            ASSERT_TRUE(SamePixels(same, exact.image));
            ASSERT_EQ(bounds, colour == Fill ? QRect() : exact.bounds);
        }
    }
}

TEST(FloodFill, SelectsAColourRangeAnywhere) {
    for (unsigned int seed = 0; seed < 60; ++seed) {
        SCOPED_TRACE(testing::Message() << "seed " << seed);
        RandomPixels random(seed);
        const Image source = seed % 2 ? Maze(1 + random.Below(300), 1 + random.Below(300), seed)
                                      : RandomImage(200, 150, seed);
        const QPoint at = RandomPlace(source, random);
        const LXRGBA32i tolerance = seed % 5 ? random.Pixel() : NoTolerance;
        const LXRGBA32i colour = source.GetColor(at.x(), at.y());
        const auto matches = [&](const LXRGBA32i& p) { return Matches(p, colour, tolerance); };
        const Image blank(source.GetWidth(), source.GetHeight());
        const Filled expected = Search(source, at, false, matches, blank);
        Image target(3, 3), itself(source);
        QRect bounds = Untouched;
        ASSERT_TRUE(ColorRangeFill(source, target, at, tolerance, Fill, &bounds));
        ASSERT_TRUE(SamePixels(target, expected.image));
        ASSERT_EQ(bounds, expected.bounds);
        ASSERT_TRUE(ColorRangeFill(itself, itself, at, tolerance, Fill, nullptr));
        ASSERT_TRUE(SamePixels(itself, target));
    }
    Image padded(100, 100); // what an edge tile has beyond the image stays
    padded.FastFill({1, 2, 3, 4});
    Image target(padded);
    ASSERT_TRUE(ColorRangeFill(padded, target, {0, 0}, NoTolerance, Fill, nullptr));
    const LXTileReader tile(target.GetTileRow(0)[0]);
    EXPECT_EQ(tile.Row(99)[99], Fill);
    EXPECT_EQ(tile.Row(99)[100], (LXRGBA32i{1, 2, 3, 4}));
    EXPECT_EQ(tile.Row(100)[99], (LXRGBA32i{1, 2, 3, 4}));
}

TEST(FloodFill, ASeedOutsideIsLogged) {
    const Image source = RandomImage(50, 40, 2);
    for (const QPoint& seed : {QPoint(-1, 0), QPoint(0, -1), QPoint(50, 0), QPoint(0, 40)}) {
        const LogCapture log;
        QRect bounds = Untouched;
        Image image(source), target(5, 5);
        QImage qimage = ConvertImage<Image, QImage>(source);
        EXPECT_FALSE(FloodFill(image, seed, Fill, &bounds));
        EXPECT_FALSE(FloodFill(image, seed, NoTolerance, Fill, &bounds));
        EXPECT_FALSE(FloodFill(image, seed, Some, Fill, &bounds));
        EXPECT_FALSE(FloodFill(qimage, seed, Some, Fill, &bounds));
        EXPECT_FALSE(FloodFill(source, target, seed, Some, Fill, &bounds));
        EXPECT_TRUE(SamePixels(target, Image(5, 5)));
        EXPECT_FALSE(ColorRangeFill(source, target, seed, Some, Fill, &bounds));
        EXPECT_TRUE(SamePixels(target, source)) << "the copy comes first";
        EXPECT_TRUE(SamePixels(image, source));
        EXPECT_EQ(bounds, Untouched);
        const QString file = QStringLiteral("file=\"src/LXFloodFillHelper.cpp\". ");
        const QString where = QStringLiteral("FloodFill seed point is out of range (%1, %2)");
        const QStringList texts = {
            "FloodFill seed point is out of range.",   "FloodFill seed point is out of range.",
            "FloodFill seed point is out of range %1", where.arg(seed.x()).arg(seed.y()),
            "FloodFill seed point is out of range %1", "Seed point is out of range %1"};
        ASSERT_EQ(LogCapture::Lines().size(), 6);
        for (int i = 0; i < 6; ++i)
            EXPECT_TRUE(LogCapture::Lines()[i].endsWith(file + texts[i])) << i;
    }
}

TEST(FloodFill, AMissingTileMatchesNowhere) {
    Image source(300, 100);
    source.GetTileRow(0)[1] = nullptr;
    const LogCapture log;
    QRect bounds = Untouched;
    Image image(source), target(300, 100);
    EXPECT_FALSE(FloodFill(image, {150, 50}, Fill, &bounds));
    EXPECT_FALSE(FloodFill(image, {150, 50}, Some, Fill, &bounds));
    EXPECT_FALSE(FloodFill(image, {150, 50}, FullTolerance, Fill, &bounds));
    EXPECT_FALSE(FloodFill(source, target, {150, 50}, Some, Fill, &bounds));
    EXPECT_TRUE(SamePixels(target, Image(300, 100)));
    EXPECT_FALSE(ColorRangeFill(source, target, {150, 50}, Some, Fill, &bounds));
    EXPECT_EQ(bounds, Untouched);
    EXPECT_EQ(LogCapture::Lines().size(), 5);
    EXPECT_EQ(image.GetColor(5, 5), LXRGBA32i{});
    EXPECT_TRUE(FloodFill(image, {5, 5}, Some, Fill, &bounds));
    EXPECT_EQ(bounds, QRect(0, 0, 128, 100)) << "the fill does not get across";
}

TEST(FloodFill, APictureThatCannotBeDetachedStays) {
    ExpectThatAPictureWhichCannotBeDetachedStays([](QImage& picture) {
        FloodFill(picture, {0, 0}, FullTolerance, Fill, nullptr);
    });
}

TEST(FloodFill, QImagesOfOtherFormats) {
    const LogCapture log;
    QImage indexed(40, 40, QImage::Format_Indexed8);
    indexed.setColorTable({0xFF000000});
    indexed.fill(0);
    EXPECT_FALSE(FloodFill(indexed, {1, 1}, Some, Fill, nullptr));
    EXPECT_EQ(LogCapture::Lines().size(), 1);
    // The colour of the seed says alpha 255, its bytes do not: nothing matches, not even the seed.
    QImage opaque(40, 40, QImage::Format_RGB32);
    std::memset(opaque.bits(), 0x11, std::size_t(opaque.sizeInBytes()));
    const QImage before = opaque.copy();
    QRect bounds;
    EXPECT_TRUE(FloodFill(opaque, {5, 6}, Some, Fill, &bounds));
    EXPECT_EQ(opaque, before);
    EXPECT_EQ(bounds, QRect(5, 6, 1, 1));
}

// Columns first, up and then down: that is seen where the target ends.
TEST(FloodFill, ATargetThatIsTooSmall) {
    const Image source(300, 300);
    for (const QSize& size : {QSize(300, 150), QSize(50, 300)}) {
        Image target{unsigned(size.width()), unsigned(size.height())};
        QRect bounds = Untouched;
        EXPECT_THROW(FloodFill(source, target, {49, 140}, Some, Fill, &bounds), std::out_of_range);
        EXPECT_EQ(bounds, Untouched);
        for (int y = 0; y < size.height(); ++y)
            for (int x = 0; x < size.width(); ++x)
                ASSERT_EQ(target.GetColor(x, y), x == 49 ? Fill : LXRGBA32i{}) << x << ", " << y;
    }
}

TEST(FloodFill, RunsOutOfTiles) {
    const auto make = [] {
        Image image(400, 300);
        for (int x = 0; x < 400; ++x) // a wall, so that the last row of tiles is not reached
            image.SetColor(x, 250, {1, 1, 1, 255});
        return image;
    };
    // The fill writes in 8 tiles. The wall has made 4 of them the image's own, and of those that
    // share a tile the last keeps it.
    using Operate = void (*)(Image&);
    const Operate exact = [](Image& i) { FloodFill(i, {9, 9}, Fill, nullptr); };
    const Operate tolerant = [](Image& i) { FloodFill(i, {9, 9}, Some, Fill, nullptr); };
    const Operate toTarget = [](Image& i) { FloodFill(Image(i), i, {9, 9}, Some, Fill, nullptr); };
    const Operate range = [](Image& i) { ColorRangeFill(i, i, {9, 9}, Some, Fill, nullptr); };
    const std::pair<Operate, unsigned int> fills[] = {
        {exact, 2}, {tolerant, 2}, {toTarget, 8}, {range, 4}};
    for (const auto& fill : fills) {
        const auto check = [&](const Image& image, const ExhaustionOutcome& end) {
            EXPECT_EQ(end.threw, end.handlerCalls > 0);
            EXPECT_TRUE(end.log.isEmpty());
            const Image before = make();
            Image everything(before);
            fill.first(everything);
            EXPECT_TRUE(SamePixels(image, MakeImage(400, 300, [&](int x, int y) {
                                       const LXRGBA32i now = image.GetColor(x, y);
                                       return end.threw && now == before.GetColor(x, y)
                                                  ? now
                                                  : everything.GetColor(x, y);
                                   })));
        };
        EXPECT_EQ(SweepExhaustion(make, fill.first, check), fill.second);
    }
}
