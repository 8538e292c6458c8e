#include "LXBlend.h"
#include "LXBlendOn.h"
#include "LXConvertImage.h"
#include "LXTileWalk.h"
#include "support/PictureParts.h"
#include "support/ReferenceBlend.h"

#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <cstring>
#include <vector>

namespace {

using namespace Reference;
using Image = LXImageRGBA32i;

// ---- what each id does, written out by hand -----------------------------------------

/// A mode in one driver. Under lock the mode is the same with its alpha locked, or the plain
/// SourceOver where the lock is lost.
struct Cell {
    Mode mode;
    bool locks;
};

constexpr Cell Default{Mode::SourceOver, false};

struct IdRow {
    unsigned int id;
    Cell tile, image, mask;
};

constexpr Cell Locks(Mode mode) {
    return {mode, true};
}
constexpr Cell Loses(Mode mode) {
    return {mode, false};
}
constexpr IdRow Everywhere(unsigned int id, Mode mode) {
    return {id, Locks(mode), Locks(mode), Locks(mode)};
}
constexpr IdRow TileOnly(unsigned int id, Cell cell) {
    return {id, cell, Default, Default};
}

const IdRow Rows[] = {
    Everywhere(0, Mode::SourceOver),
    TileOnly(2, Locks(Mode::Clear)),
    Everywhere(3, Mode::Source),
    {6, Locks(Mode::DestinationIn), Locks(Mode::DestinationIn), Default},
    Everywhere(8, Mode::DestinationOut),
    Everywhere(12, Mode::Plus),
    Everywhere(13, Mode::Multiply),
    Everywhere(14, Mode::Screen),
    Everywhere(15, Mode::Overlay),
    Everywhere(16, Mode::Darken),
    Everywhere(17, Mode::Lighten),
    Everywhere(18, Mode::ColorDodge),
    Everywhere(19, Mode::ColorBurn),
    Everywhere(20, Mode::HardLight),
    Everywhere(21, Mode::SoftLight),
    Everywhere(22, Mode::Difference),
    Everywhere(23, Mode::Exclusion),
    TileOnly(24, Locks(Mode::RasterOr)),
    TileOnly(25, Locks(Mode::RasterAnd)),
    TileOnly(31, Locks(Mode::RasterNotAnd)),
    {64, Locks(Mode::ToMask), Default, Locks(Mode::ToMask)},
    {88, Locks(Mode::SourceAlphaToGray), Default, Locks(Mode::SourceAlphaToGray)},
    TileOnly(89, Locks(Mode::SourceRGBAToGray)),
    Everywhere(90, Mode::Heal),
    TileOnly(91, Locks(Mode::SourceWidthAlpha)),
    TileOnly(92, Loses(Mode::DestinationInFullAlpha)),
    TileOnly(93, Loses(Mode::Unite)),
    TileOnly(94, Loses(Mode::Intersect)),
    TileOnly(95, Loses(Mode::Subtract)),
};

enum class Driver { Tile, Picture, TileMask, PictureMask };

IdRow RowOf(unsigned int id) {
    for (const IdRow& row : Rows)
        if (row.id == id)
            return row;
    return {id, Default, Default, Default};
}

/// The new pixel by a driver other than PictureMask.
LXRGBA32i Expected(Driver driver, unsigned int id, bool lock, LXRGBA32i s, LXRGBA32i d,
                   unsigned int opacity, unsigned int m) {
    const IdRow row = RowOf(id);
    const auto [cell, shape] = driver == Driver::Tile      ? std::pair(row.tile, Shape::Tile)
                               : driver == Driver::Picture ? std::pair(row.image, Shape::Image)
                                                           : std::pair(row.mask, Shape::Mask);
    const bool lost = lock && !cell.locks;
    return Blend(lost ? Mode::SourceOver : cell.mode, shape, lock && !lost, s, d, opacity, m);
}

// ---- pictures -----------------------------------------------------------------------------------

/// Everything that a blend is told.
struct Call {
    QRect sourceRect, destinationRect, maskRect;
    unsigned int id = 0;
    double opacity = 1;
    bool lock = false, outside = false;
};

/// The blend of whole pictures, pixel by pixel.
Plane Expect(Driver driver, const Plane& source, Plane destination, const Plane& mask,
             const Call& call) {
    const auto opacity = unsigned(int(call.opacity * 256));
    if (driver == Driver::TileMask && mask.width == 0 && mask.height == 0 && call.outside)
        driver = Driver::Tile;
    if (opacity == 0 || (driver == Driver::PictureMask && call.id != 0))
        return destination;
    const QPoint toMask = call.maskRect.topLeft() - call.destinationRect.topLeft();
    const Plane before = destination;
    ForOverlap(
        source, call.sourceRect, before, call.destinationRect, [&](int x, int y, int sx, int sy) {
            const LXRGBA32i s = source.At(sx, sy);
            LXRGBA32i& d = destination.At(x, y);
            const QPoint at = QPoint(x, y) + toMask;
            const bool inMask = mask.Rect().contains(at);
            const bool inside = inMask && call.maskRect.contains(at);
            if (driver == Driver::PictureMask)
                d = Blend(Mode::SourceOver, inMask ? Shape::MaskedImage : Shape::Image, call.lock,
                          s, d, opacity, inMask ? mask.At(at.x(), at.y()).alpha : 0);
            else if (driver != Driver::TileMask || inside || call.outside)
                d = Expected(driver, call.id, call.lock, s, d, opacity,
                             inside ? mask.At(at.x(), at.y()).alpha : 255);
        });
    return destination;
}

/// A source of either kind.
struct Source {
    explicit Source(const Plane& plane) : tiled(ImageOf(plane)), picture(PictureOf(plane)) {}

    Image tiled;
    QImage picture;
};

void Apply(Driver driver, const Source& source, Image& destination, const Image& mask,
           const Call& c) {
    switch (driver) {
    case Driver::Tile:
        return BlendOn(source.tiled, c.sourceRect, c.id, destination, c.destinationRect, c.opacity,
                       c.lock);
    case Driver::Picture:
        return BlendOn(source.picture, c.sourceRect, c.id, destination, c.destinationRect,
                       c.opacity, c.lock);
    case Driver::TileMask:
        return BlendMaskOn(source.tiled, c.sourceRect, c.id, destination, c.destinationRect,
                           c.opacity, mask, c.maskRect, c.outside, c.lock);
    case Driver::PictureMask:
        return BlendMaskOn(source.picture, c.sourceRect, c.id, destination, c.destinationRect,
                           c.opacity, mask, c.maskRect, c.outside, c.lock);
    }
}

class EveryDriver : public testing::TestWithParam<Driver> {
protected:
    void Check(const Plane& source, const Plane& destination, const Plane& mask, const Call& call) {
        Image image = ImageOf(destination);
        Apply(GetParam(), Source(source), image, ImageOf(mask), call);
        ASSERT_TRUE(Same(PlaneOf(image), Expect(GetParam(), source, destination, mask, call)))
            << call.sourceRect << " to " << call.destinationRect << " through " << call.maskRect
            << ": id " << call.id << " lock " << call.lock << " outside " << call.outside
            << " opacity " << call.opacity;
    }

    TestPool pool;
};

} // namespace

TEST_P(EveryDriver, KnowsItsIds) {
    const Plane source = RandomPlane(150, 20, 1), destination = RandomPlane(150, 20, 2);
    const Plane mask = RandomPlane(150, 20, 3);
    const QRect all = source.Rect();
    std::vector<unsigned int> ids = {1000, ~0U};
    for (unsigned int id = 0; id < 130; ++id)
        ids.push_back(id);
    for (const unsigned int id : ids)
        for (const bool lock : {false, true})
            for (const double opacity : {1.0, 0.4, 2.0, -0.5}) { // the last two are not limited
                Check(source, destination, mask, {all, all, all, id, opacity, lock});
                if (HasFatalFailure())
                    return;
            }
}

TEST_P(EveryDriver, BlendsAnyTwoRectangles) {
    int changed = 0;
    for (unsigned int seed = 0; seed < 150 && !HasFatalFailure(); ++seed) {
        RandomPixels random(seed);
        const auto below = [&](unsigned int n) { return int(random.Below(n)); };
        const auto plane = [&](unsigned int kind) {
            return RandomPlane(100 + below(200), 90 + below(170), seed * 3 + kind);
        };
        const Plane source = plane(0), destination = plane(1);
        const Plane mask = below(6) == 0 ? Plane(0, 0) : plane(2);
        const auto rect = [&] {
            const QPoint corner(below(200) - 80, below(200) - 80);
            const QSize size(below(500) - 20, below(500) - 20);
            return below(20) == 0 ? QRect() : QRect(corner, size);
        };
        Call call{rect(), rect(), rect()};
        call.id = below(2) == 0 ? 0 : Rows[below(std::size(Rows))].id; // 0 works in all drivers
        call.opacity = below(257) / 256.0;
        call.lock = below(2) == 0;
        call.outside = below(2) == 0;
        SCOPED_TRACE(seed);
        Check(source, destination, mask, call);
        changed += !Same(Expect(GetParam(), source, destination, mask, call), destination);
    }
    EXPECT_GE(changed, 30) << "enough cases should have something to do";
}

/// A mask smaller than the picture, at all places relative to tiles and edges.
TEST_P(EveryDriver, EndsItsMaskWhereItEnds) {
    const Plane source = RandomPlane(300, 280, 1), destination = RandomPlane(300, 280, 2);
    for (const QSize& size : {QSize(130, 140), QSize(128, 128), QSize(40, 270), QSize(0, 300)})
        for (const QPoint& at :
             {QPoint(0, 0), QPoint(-60, -70), QPoint(50, 90), QPoint(-400, 0), QPoint(0, 200)})
            for (const int flags : {0, 1, 2, 3}) {
                const Plane mask = RandomPlane(size.width(), size.height(), 3);
                Call call{source.Rect(), source.Rect(), QRect(at, QSize(400, 400)), 0, 0.5};
                call.outside = flags & 1;
                call.lock = flags & 2;
                Check(source, destination, mask, call);
                if (HasFatalFailure())
                    return;
            }
}

TEST_P(EveryDriver, SurvivesRectanglesAtTheEndsOfTheWorld) {
    const Plane source = RandomPlane(140, 140, 5), destination = RandomPlane(140, 140, 6);
    const QRect ends[] = {QRect(QPoint(INT_MIN, INT_MIN), QPoint(INT_MAX, INT_MAX)),
                          QRect(QPoint(INT_MAX, INT_MAX), QPoint(INT_MIN, INT_MIN)),
                          QRect(QPoint(INT_MIN, 0), QPoint(INT_MIN, 9)),
                          QRect(QPoint(INT_MAX - 5, INT_MAX - 5), QPoint(INT_MAX, INT_MAX)),
                          QRect(QPoint(0, 0), QPoint(INT_MAX, INT_MAX)),
                          source.Rect()};
    for (const QRect& a : ends)
        for (const QRect& b : ends)
            for (const QRect& c : ends) {
                Image image = ImageOf(destination);
                Call call{a, b, c};
                call.outside = true;
                Apply(GetParam(), Source(source), image, ImageOf(source), call);
                const bool blends = a == b && b == c && a == source.Rect();
                EXPECT_FALSE(blends && Same(PlaneOf(image), destination));
            }
}

TEST_P(EveryDriver, TouchesNothingWithoutWork) {
    const QRect all(0, 0, 300, 300);
    const Source source(RandomPlane(300, 300, 1));
    const Image mask(300, 300);
    const auto tiles = [&](const Call& call) {
        Image image(1000, 1000);
        const unsigned int before = pool.InUse();
        Apply(GetParam(), source, image, mask, call);
        return pool.InUse() - before;
    };
    Call call{all, all, all};
    call.opacity = 0.003;
    EXPECT_EQ(tiles(call), 0u);
    call.opacity = 0.004;
    EXPECT_EQ(tiles(call), 9u);
    call.opacity = std::nan("");
    Image any(10, 10);
    Apply(GetParam(), source, any, mask, call); // defined, whatever it gives
    call.opacity = 1;
    call.destinationRect = QRect(1000, 0, 300, 300);
    EXPECT_EQ(tiles(call), 0u);
    call.destinationRect = QRect(120, 120, 10, 10);
    EXPECT_EQ(tiles(call), 4u) << "only the tiles of a small blend";
}

TEST_P(EveryDriver, RunsOutOfTilesCleanly) {
    const Plane source = RandomPlane(300, 200, 1), destination = RandomPlane(300, 200, 2);
    const Plane mask = RandomPlane(300, 200, 3);
    const Call call{source.Rect(), source.Rect(), source.Rect()};
    const Plane done = Expect(GetParam(), source, destination, mask, call);
    const int guards = GetParam() == Driver::Tile ? 2 : 1;
    struct State {
        Source source;
        Image mask, destination;
        Image other; ///< shares the destination
    };
    const auto make = [&] {
        const Image image = ImageOf(destination);
        return State{Source(source), ImageOf(mask), image, image};
    };
    const auto check = [&](const State& s, const ExhaustionOutcome& outcome) {
        EXPECT_EQ(outcome.handlerCalls, outcome.threw ? 1 : 0);
        EXPECT_EQ(outcome.log.size(), outcome.threw ? guards : 0);
        EXPECT_TRUE(Same(PlaneOf(s.other), destination));
        const Plane expected = Changed(destination, destination.Rect(), [&](int x, int y, auto& p) {
            if (unsigned(y / 128 * 3 + x / 128) < outcome.freeTiles)
                p = done.At(x, y);
        });
        ASSERT_TRUE(Same(PlaneOf(s.destination), expected));
    };
    const auto blend = [&](State& s) { Apply(GetParam(), s.source, s.destination, s.mask, call); };
    EXPECT_EQ(SweepExhaustion(make, blend, check), 6u);
}

INSTANTIATE_TEST_SUITE_P(Blend, EveryDriver,
                         testing::Values(Driver::Tile, Driver::Picture, Driver::TileMask,
                                         Driver::PictureMask));

TEST(BlendDriver, MayBlendAnImageOntoItself) {
    const Plane plane = RandomPlane(300, 260, 4);
    Call call{plane.Rect(), plane.Rect().translated(37, 53), plane.Rect(), 13, 0.7};
    call.outside = true;
    Image image = ImageOf(plane);
    BlendOn(image, call.sourceRect, call.id, image, call.destinationRect, call.opacity, false);
    EXPECT_TRUE(Same(PlaneOf(image), Expect(Driver::Tile, plane, plane, plane, call)));
    image = ImageOf(plane);
    BlendMaskOn(image, call.sourceRect, call.id, image, call.destinationRect, call.opacity, image,
                call.maskRect, true, false);
    EXPECT_TRUE(Same(PlaneOf(image), Expect(Driver::TileMask, plane, plane, plane, call)));
    image = ImageOf(plane);
    call.id = 0;
    Apply(Driver::PictureMask, Source(plane), image, image, call);
    EXPECT_TRUE(Same(PlaneOf(image), Expect(Driver::PictureMask, plane, plane, plane, call)));
}

TEST(BlendDriver, PassesOverMissingTiles) {
    const Plane source = RandomPlane(300, 280, 1), destination = RandomPlane(300, 280, 2);
    const Plane mask = RandomPlane(300, 280, 3);
    for (const Driver driver : {Driver::Tile, Driver::TileMask})
        for (const QPoint& missing : {QPoint(0, 0), QPoint(1, 0), QPoint(0, 1), QPoint(1, 1)}) {
            Source holey(source);
            holey.tiled.GetTileRow(unsigned(missing.y()))[missing.x()] = nullptr;
            const Call call{source.Rect(), source.Rect().translated(-50, -30), source.Rect(), 13};
            Image image = ImageOf(destination);
            Apply(driver, holey, image, ImageOf(mask), call);
            const QRect hole(missing * 128 - QPoint(50, 30), QSize(128, 128));
            const Plane whole = Expect(driver, source, destination, mask, call);
            const Plane expected = Changed(
                whole, hole, [&](int x, int y, auto& pixel) { pixel = destination.At(x, y); });
            ASSERT_TRUE(Same(PlaneOf(image), expected)) << "driver " << int(driver);
        }
}

TEST(BlendDriver, LogsOnceALevel) {
    TestPool pool;
    const QRect rect(0, 0, 10, 10);
    const Image source = RandomImage(10, 10, 1);
    Image image(source);
    pool.LeaveFree(0);
    const LogCapture log;
    EXPECT_THROW(BlendOn_RGBA32iImage_RGBA32iImage(source, rect, 0, image, rect, 1, false),
                 std::bad_alloc);
    EXPECT_EQ(LogCapture::Lines().size(), 1);
    EXPECT_THROW(BlendMaskOn(source, rect, 0, image, rect, 1, Image(0, 0), rect, true, false),
                 std::bad_alloc);
    EXPECT_EQ(LogCapture::Lines().size(), 3) << "through an empty mask there are two guards";
}

TEST(BlendDriver, LeavesTilesBeyondItsMaskShared) {
    TestPool pool;
    const QRect rect(0, 0, 300, 300);
    const Image source = RandomImage(300, 300, 1);
    Image image(source);
    const unsigned int before = pool.InUse();
    BlendMaskOn(source, rect, 0, image, rect, 1, Image(50, 50), QRect(0, 0, 50, 50), false, false);
    EXPECT_EQ(pool.InUse(), before + 1);
}

TEST(BlendDriver, TakesAnEmptyMaskForNone) {
    const Plane source = RandomPlane(140, 40, 1), destination = RandomPlane(140, 40, 2);
    // Mode 2 shows the difference: without a mask it clears, through one it is SourceOver.
    Call call{source.Rect(), source.Rect(), QRect(0, 0, 10, 10), 2};
    const Plane cleared = Expect(Driver::Tile, source, destination, destination, call);
    for (const bool outside : {true, false}) {
        Image image = ImageOf(destination);
        call.outside = outside;
        Apply(Driver::TileMask, Source(source), image, Image(0, 0), call);
        EXPECT_TRUE(Same(PlaneOf(image), outside ? cleared : destination)) << outside;
    }
}

TEST(BlendDriver, RefusesOtherPictureFormats) {
    const QImage picture(10, 10, QImage::Format_ARGB32_Premultiplied);
    const Image before = RandomImage(10, 10, 1);
    Image image(before);
    const LogCapture log;
    BlendOn(picture, picture.rect(), 0, image, picture.rect(), 1, false);
    ASSERT_EQ(LogCapture::Lines().size(), 1);
    EXPECT_TRUE(LogCapture::Lines()[0].endsWith(
        QStringLiteral("file=\"src/LXImage.cpp\". Wrong input qimage format 6")));
    EXPECT_TRUE(SamePixels(image, before));
    // Through a mask nobody looks at the format; a smaller one must not be read beyond its end.
    QImage gray(10, 10, QImage::Format_Grayscale8); // 12 bytes a row: three rows of ten pixels
    std::memset(gray.bits(), 0x77, std::size_t(gray.sizeInBytes()));
    BlendMaskOn(gray, gray.rect(), 0, image, gray.rect(), 1, Image(0, 0), QRect(), true, false);
    EXPECT_EQ(LogCapture::Lines().size(), 1);
    for (int y = 0; y < 10; ++y)
        EXPECT_EQ(image.GetColor(9, y) == before.GetColor(9, y), y >= 3) << y;
}

TEST(BlendDriver, LeavesCMYKAlone) {
    const QRect rect(0, 0, 10, 10);
    LXImageCMYKA a(10, 10), b(10, 10);
    a.Fill({1, 2, 3, 4, 5, {0, 0, 0}});
    BlendOn(a, rect, 0, b, rect, 1, false);
    BlendMaskOn(a, rect, 0, b, rect, 1, Image(10, 10), rect, true, false);
    EXPECT_EQ(b.GetColor(3, 3).cyan, 0);
}
