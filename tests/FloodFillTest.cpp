#include "LXConvertImage.h"
#include "LXFloodFillHelper.h"
#include "LXTileWalk.h"
#include "support/ExhaustionSweep.h"
#include "support/Pictures.h"
#include "support/Uncopyable.h"

#include <gtest/gtest.h>

#include <functional>
#include <new>
#include <queue>
#include <stdexcept>

namespace {

using namespace LXFloodFillHelper;
using Image = LXImageRGBA32i;

const QRect Untouched(11, 22, 33, 44);
constexpr LXRGBA32i NoTolerance = {0, 0, 0, 0}, FullTolerance = {255, 255, 255, 255};
constexpr LXRGBA32i Some = {30, 30, 30, 30}, Fill = {7, 8, 9, 200};

// ---- the plain reference
// -------------------------------------------------------------------------

bool Within(int value, int seed, int tolerance) {
    return seed - tolerance <= value && value <= seed + tolerance;
}

bool Matches(const LXRGBA32i& p, const LXRGBA32i& seed, const LXRGBA32i& tolerance) {
    if (seed.alpha == 0)
        return p.alpha == 0;
    return p == seed ||
           (Within(p.blue, seed.blue, tolerance.blue) &&
            Within(p.green, seed.green, tolerance.green) &&
            Within(p.red, seed.red, tolerance.red) && Within(p.alpha, seed.alpha, tolerance.alpha));
}

struct Found {
    std::vector<bool> pixels;
    QRect bounds;
    int width;

    bool At(int x, int y) const {
        return pixels[std::size_t(y) * std::size_t(width) + std::size_t(x)];
    }
};

/// Breadth first, or all pixels.
Found Search(const Image& image, const QPoint& seed, bool connected,
             const std::function<bool(const LXRGBA32i&)>& matches) {
    const int width = int(image.GetWidth()), height = int(image.GetHeight());
    Found found{std::vector<bool>(std::size_t(width * height)), QRect(seed, seed), width};
    const auto take = [&](int x, int y) {
        if (x < 0 || y < 0 || x >= width || y >= height || found.At(x, y) ||
            !matches(image.GetColor(x, y)))
            return false;
        found.pixels[std::size_t(y * width + x)] = true;
        found.bounds |= QRect(x, y, 1, 1);
        return true;
    };
    if (!connected) {
        for (int i = 0; i < width * height; ++i)
            take(i % width, i / width);
        return found;
    }
    std::queue<QPoint> pending;
    const auto visit = [&](int x, int y) {
        if (take(x, y))
            pending.push(QPoint(x, y));
    };
    for (visit(seed.x(), seed.y()); !pending.empty();) {
        const QPoint p = pending.front();
        pending.pop();
        visit(p.x() - 1, p.y());
        visit(p.x() + 1, p.y());
        visit(p.x(), p.y() - 1);
        visit(p.x(), p.y() + 1);
    }
    return found;
}

Image Painted(const Image& image, const Found& found, const LXRGBA32i& fill) {
    Image result(image);
    for (int y = 0; y < int(image.GetHeight()); ++y)
        for (int x = 0; x < int(image.GetWidth()); ++x)
            if (found.At(x, y))
                result.SetColor(x, y, fill);
    return result;
}

// ---- pictures
// ------------------------------------------------------------------------------------

/// Noise of colours near one another, in which regions wind; the fill colour is among them.
Image Maze(unsigned int width, unsigned int height, unsigned int seed) {
    const LXRGBA32i colours[] = {
        {100, 100, 100, 255}, {100, 100, 100, 255}, {110, 90, 100, 255}, {120, 110, 120, 240},
        {200, 100, 100, 255}, {1, 2, 3, 0},         {4, 5, 6, 0},        Fill};
    RandomPixels random(seed);
    const unsigned int kinds = 3 + random.Below(6);
    Image image(width, height);
    for (int y = 0; y < int(height); ++y)
        for (int x = 0; x < int(width); ++x)
            image.SetColor(x, y, colours[random.Below(kinds)]);
    return image;
}

/// One way of a pixel's width, winding from the corner to the middle.
Image Spiral(int side) {
    Image image{unsigned(side), unsigned(side)};
    int x = 0, y = 0, dx = 1, dy = 0;
    for (int length = side - 1, leg = 0; length > 0; ++leg) {
        for (int i = 0; i < length; ++i, x += dx, y += dy)
            image.SetColor(x, y, {9, 9, 9, 255});
        const int turned = dx;
        dx = -dy;
        dy = turned;
        if (leg >= 2 && leg % 2 == 0)
            length -= 2;
    }
    return image;
}

QString Text(const char* text) {
    return QStringLiteral("file=\"src/LXFloodFillHelper.cpp\". ") + QString::fromLatin1(text);
}

} // namespace

// ---- tests
// ---------------------------------------------------------------------------------------

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
                std::uint8_t s[4] = {9, 9, 9, 9}, t[4] = {255, 255, 255, 255};
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
                LXRGBA32i expected = {1, 1, 1, 77}; // not set
                if (known && below)
                    expected = {0, 0, 0, std::uint8_t(channel == 3 ? 1 : 255)};
                else if (channel == 3 && (known || seed - tolerance == 1))
                    expected = {0, 0, 0, 255};
                else if (known)
                    expected = {std::uint8_t(channel == 0 ? 255 : 0),
                                std::uint8_t(channel == 1 ? 255 : 0),
                                std::uint8_t(channel == 2 ? 255 : 0), 255};
                ASSERT_EQ(marker, expected);
            }
}

TEST(FloodFill, FillsWhatIsConnected) {
    const TestPool pool;
    for (unsigned int seed = 0; seed < 120; ++seed) {
        RandomPixels random(seed);
        const QSize sizes[] = {{1, 1}, {1, 300}, {300, 1}, {128, 128}, {129, 257}, {270, 140}};
        const QSize size = sizes[seed % 6];
        const Image source = seed % 20 == 9
                                 ? Spiral(280)
                                 : Maze(unsigned(size.width()), unsigned(size.height()), seed);
        const QPoint at(int(random.Below(source.GetWidth())),
                        int(random.Below(source.GetHeight())));
        const LXRGBA32i tolerances[] = {Some, {15, 15, 0, 0}, {0, 0, 0, 1}, random.Pixel()};
        const LXRGBA32i tolerance = tolerances[random.Below(4)];
        const LXRGBA32i colour = source.GetColor(at.x(), at.y());
        LXRGBA32i marker;
        const bool whole = !GetOutOfRangeColor(colour, tolerance, marker);
        SCOPED_TRACE(testing::Message() << "seed " << seed << " at " << at.x() << ", " << at.y());

        const Found found = Search(source, at, !whole, [&](const LXRGBA32i& p) {
            return whole || Matches(p, colour, tolerance);
        });
        const Image expected = Painted(source, found, Fill);
        QRect bounds = Untouched;
        Image image(source);
        ASSERT_TRUE(FloodFill(image, at, tolerance, Fill, &bounds));
        ASSERT_TRUE(SamePixels(image, expected));
        ASSERT_EQ(bounds, found.bounds);

        QImage qimage = ConvertImage<Image, QImage>(source);
        const QImage shared = qimage;
        bounds = Untouched;
        ASSERT_TRUE(FloodFill(qimage, at, tolerance, Fill, &bounds));
        ASSERT_TRUE(SamePixels(ConvertImage<QImage, Image>(qimage), expected));
        ASSERT_TRUE(SamePixels(ConvertImage<QImage, Image>(shared), source));
        ASSERT_EQ(bounds, found.bounds);

        const Image other = RandomImage(source.GetWidth() + 3, source.GetHeight() + 2, seed);
        Image target(other);
        ASSERT_TRUE(FloodFill(source, target, at, tolerance, Fill, &bounds));
        Found inOther = Search(other, at, false, [&](const LXRGBA32i&) { return whole; });
        for (int y = 0; y < int(source.GetHeight()); ++y)
            for (int x = 0; x < int(source.GetWidth()); ++x)
                inOther.pixels[std::size_t(y * inOther.width + x)] = found.At(x, y);
        ASSERT_TRUE(SamePixels(target, Painted(other, inOther, Fill)));
        ASSERT_EQ(bounds, found.bounds);

        const auto equal = [&](const LXRGBA32i& p) { return p == colour; };
        const Found exact = Search(source, at, true, equal);
        for (const bool delegates : {false, true}) {
            Image same(source);
            ASSERT_TRUE(delegates ? FloodFill(same, at, NoTolerance, Fill, &bounds)
                                  : FloodFill(same, at, Fill, &bounds));
            ASSERT_TRUE(SamePixels(same, Painted(source, exact, Fill)));
            ASSERT_EQ(bounds, colour == Fill ? QRect() : exact.bounds);
        }
        ASSERT_TRUE(FloodFill(image, at, tolerance, Fill, nullptr));
    }
}

TEST(FloodFill, SelectsAColourRangeAnywhere) {
    const TestPool pool;
    for (unsigned int seed = 0; seed < 60; ++seed) {
        SCOPED_TRACE(testing::Message() << "seed " << seed);
        RandomPixels random(seed);
        const Image source = seed % 2 ? Maze(1 + random.Below(300), 1 + random.Below(300), seed)
                                      : RandomImage(200, 150, seed);
        const QPoint at(int(random.Below(source.GetWidth())),
                        int(random.Below(source.GetHeight())));
        const LXRGBA32i tolerance = seed % 5 ? random.Pixel() : NoTolerance;
        const LXRGBA32i colour = source.GetColor(at.x(), at.y());
        const Found found = Search(
            source, at, false, [&](const LXRGBA32i& p) { return Matches(p, colour, tolerance); });
        const Image blank(source.GetWidth(), source.GetHeight());
        Image target(3, 3), itself(source);
        QRect bounds = Untouched;
        ASSERT_TRUE(ColorRangeFill(source, target, at, tolerance, Fill, &bounds));
        ASSERT_TRUE(SamePixels(target, Painted(blank, found, Fill)));
        ASSERT_EQ(bounds, found.bounds);
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
    const TestPool pool;
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
        const QString where = QStringLiteral("FloodFill seed point is out of range (%1, %2)")
                                  .arg(seed.x())
                                  .arg(seed.y());
        const QString texts[] = {Text("FloodFill seed point is out of range."),
                                 Text("FloodFill seed point is out of range."),
                                 Text("FloodFill seed point is out of range %1"),
                                 Text(qPrintable(where)),
                                 Text("FloodFill seed point is out of range %1"),
                                 Text("Seed point is out of range %1")};
        ASSERT_EQ(LogCapture::Lines().size(), 6);
        for (int i = 0; i < 6; ++i)
            EXPECT_TRUE(LogCapture::Lines()[i].endsWith(texts[i])) << i;
    }
}

TEST(FloodFill, AMissingTileMatchesNowhere) {
    const TestPool pool;
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
    LX_NEEDS_A_PLAIN_HEAP();
    uchar bytes[4] = {};
    QImage picture = Uncopyable(bytes);
    const QImage sharer = picture;
    EXPECT_THROW(FloodFill(picture, {0, 0}, FullTolerance, Fill, nullptr), std::bad_alloc);
    EXPECT_EQ(picture.constBits(), bytes);
}

TEST(FloodFill, QImagesOfOtherFormats) {
    const TestPool pool;
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
    QImage whole(20, 10, QImage::Format_ARGB32);
    whole.fill(0x12345678U);
    EXPECT_TRUE(FloodFill(whole, {0, 0}, FullTolerance, Fill, &bounds));
    EXPECT_EQ(whole.pixel(19, 9), 0xC8090807U);
    EXPECT_EQ(bounds, QRect(0, 0, 20, 10));
}

// Columns first, up and then down: that is seen where the target ends.
TEST(FloodFill, ATargetThatIsTooSmall) {
    const TestPool pool;
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
    const auto sweep = [&](const std::function<void(Image&)>& operate) {
        return SweepExhaustion(make, operate,
                               [&](const Image& image, const ExhaustionOutcome& end) {
                                   EXPECT_EQ(end.threw, end.handlerCalls > 0);
                                   EXPECT_TRUE(end.log.isEmpty());
                                   Image everything = make();
                                   const Image before = make();
                                   operate(everything);
                                   for (int y = 0; y < 300; ++y)
                                       for (int x = 0; x < 400; ++x) {
                                           const LXRGBA32i now = image.GetColor(x, y);
                                           ASSERT_TRUE(now == everything.GetColor(x, y) ||
                                                       (end.threw && now == before.GetColor(x, y)))
                                               << x << ", " << y;
                                       }
                               });
    };
    // The fill writes in 8 tiles. The wall has made 4 of them the image's own, and of those that
    // share a tile the last keeps it.
    using Operate = void (*)(Image&);
    const Operate exact = [](Image& i) { FloodFill(i, {9, 9}, Fill, nullptr); };
    const Operate tolerant = [](Image& i) { FloodFill(i, {9, 9}, Some, Fill, nullptr); };
    const Operate toTarget = [](Image& i) { FloodFill(Image(i), i, {9, 9}, Some, Fill, nullptr); };
    const Operate range = [](Image& i) { ColorRangeFill(i, i, {9, 9}, Some, Fill, nullptr); };
    EXPECT_EQ(sweep(exact), 2u);
    EXPECT_EQ(sweep(tolerant), 2u);
    EXPECT_EQ(sweep(toTarget), 8u);
    EXPECT_GE(sweep(range), 2u);
}
