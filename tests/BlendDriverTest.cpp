#include "LXBlend.h"
#include "LXBlendOn.h"
#include "LXConvertImage.h"
#include "LXTileWalk.h"
#include "support/ExhaustionSweep.h"
#include "support/Pictures.h"
#include "support/ReferenceBlend.h"

#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <cstring>
#include <utility>
#include <vector>

namespace {

using Reference::ImageOf;
using Reference::Mode;
using Reference::PictureOf;
using Reference::Plane;
using Reference::RandomPlane;
using Reference::Shape;
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
    const Cell cell = driver == Driver::Tile      ? row.tile
                      : driver == Driver::Picture ? row.image
                                                  : row.mask;
    const Shape shape = driver == Driver::Tile      ? Shape::Tile
                        : driver == Driver::Picture ? Shape::Image
                                                    : Shape::Mask;
    const bool lost = lock && !cell.locks;
    return Reference::Blend(lost ? Mode::SourceOver : cell.mode, shape, lock && !lost, s, d,
                            opacity, m);
}

// ---- pictures -----------------------------------------------------------------------------------

bool operator!=(const Plane& a, const Plane& b) {
    return a.pixels != b.pixels;
}

/// Everything that a blend is told.
struct Call {
    QRect sourceRect, destinationRect, maskRect;
    unsigned int id = 0;
    double opacity = 1;
    bool lock = false, outside = false;
};

unsigned int OpacityOf(const Call& call) {
    return unsigned(int(call.opacity * 256));
}

/// The blend of whole pictures, pixel by pixel.
Plane Expect(Driver driver, const Plane& source, Plane destination, const Plane& mask,
             const Call& call) {
    const unsigned int opacity = OpacityOf(call);
    if (driver == Driver::TileMask && mask.width == 0 && mask.height == 0 && call.outside)
        driver = Driver::Tile;
    if (opacity == 0)
        return destination;
    const QPoint toMask = call.maskRect.topLeft() - call.destinationRect.topLeft();
    const Plane before = destination;
    Reference::ForOverlap(
        source, call.sourceRect, before, call.destinationRect, [&](int x, int y, int sx, int sy) {
            const LXRGBA32i s = source.At(sx, sy);
            LXRGBA32i& d = destination.At(x, y);
            const QPoint at = QPoint(x, y) + toMask;
            if (driver == Driver::Tile || driver == Driver::Picture) {
                d = Expected(driver, call.id, call.lock, s, d, opacity, 0);
            } else if (driver == Driver::TileMask) {
                const bool inside = mask.Rect().contains(at) && call.maskRect.contains(at);
                if (inside || call.outside)
                    d = Expected(driver, call.id, call.lock, s, d, opacity,
                                 inside ? mask.At(at.x(), at.y()).alpha : 255);
            } else if (call.id == 0) {
                if (mask.Rect().contains(at))
                    d = Reference::Blend(Mode::SourceOver, Shape::MaskedImage, call.lock, s, d,
                                         opacity, mask.At(at.x(), at.y()).alpha);
                else
                    d = Reference::Blend(Mode::SourceOver, Shape::Image, call.lock, s, d, opacity,
                                         0);
            }
        });
    return destination;
}

void Apply(Driver driver, const Plane& source, Image& destination, const Image& mask,
           const Call& call) {
    switch (driver) {
    case Driver::Tile:
        return BlendOn(ImageOf(source), call.sourceRect, call.id, destination, call.destinationRect,
                       call.opacity, call.lock);
    case Driver::Picture:
        return BlendOn(PictureOf(source), call.sourceRect, call.id, destination,
                       call.destinationRect, call.opacity, call.lock);
    case Driver::TileMask:
        return BlendMaskOn(ImageOf(source), call.sourceRect, call.id, destination,
                           call.destinationRect, call.opacity, mask, call.maskRect, call.outside,
                           call.lock);
    case Driver::PictureMask:
        return BlendMaskOn(PictureOf(source), call.sourceRect, call.id, destination,
                           call.destinationRect, call.opacity, mask, call.maskRect, call.outside,
                           call.lock);
    }
}

void Check(Driver driver, const Plane& source, const Plane& destination, const Plane& mask,
           const Call& call, const char* what) {
    Image image = ImageOf(destination);
    Apply(driver, source, image, ImageOf(mask), call);
    ASSERT_TRUE(SamePixels(image, ImageOf(Expect(driver, source, destination, mask, call))))
        << what << ": driver " << int(driver) << " id " << call.id << " lock " << call.lock
        << " outside " << call.outside << " opacity " << call.opacity;
}

class EveryDriver : public testing::TestWithParam<Driver> {
protected:
    TestPool pool;
};

} // namespace

TEST_P(EveryDriver, KnowsItsIds) {
    const Plane source = RandomPlane(150, 20, 1), destination = RandomPlane(150, 20, 2);
    const Plane mask = RandomPlane(150, 20, 3);
    Call call{source.Rect(), source.Rect(), source.Rect()};
    std::vector<unsigned int> ids = {1000, ~0U};
    for (unsigned int id = 0; id < 130; ++id)
        ids.push_back(id);
    for (const unsigned int id : ids)
        for (const bool lock : {false, true})
            for (const double opacity : {1.0, 0.4, 2.0, -0.5}) { // the last two are not limited
                call.id = id;
                call.lock = lock;
                call.opacity = opacity;
                Check(GetParam(), source, destination, mask, call, "all ids");
                if (HasFatalFailure())
                    return;
            }
}

TEST_P(EveryDriver, BlendsAnyTwoRectangles) {
    int changed = 0;
    for (unsigned int seed = 0; seed < 150; ++seed) {
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
        Check(GetParam(), source, destination, mask, call,
              qPrintable(QStringLiteral("seed %1").arg(seed)));
        if (HasFatalFailure())
            return;
        changed += Expect(GetParam(), source, destination, mask, call) != destination;
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
                Call call{source.Rect(), source.Rect(), QRect(at, QSize(400, 400))};
                call.outside = flags & 1;
                call.lock = flags & 2;
                call.opacity = 0.5;
                Check(GetParam(), source, destination, mask, call, "mask edges");
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
                Apply(GetParam(), source, image, ImageOf(source), call);
                if (a == b && b == c && a == source.Rect()) {
                    EXPECT_FALSE(SamePixels(image, ImageOf(destination)));
                }
            }
}

TEST_P(EveryDriver, TouchesNothingWithoutWork) {
    const Plane source = RandomPlane(300, 300, 1);
    const Image mask(300, 300);
    const auto tiles = [&](const Call& call) {
        Image image(1000, 1000);
        const unsigned int before = pool.InUse();
        Apply(GetParam(), source, image, mask, call);
        return pool.InUse() - before;
    };
    Call call{source.Rect(), source.Rect(), source.Rect()};
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
    const QImage picture = PictureOf(source);
    const bool guardedTwice = GetParam() == Driver::Tile;
    struct State {
        Image source, mask, destination;
        Image other; ///< shares the destination
    };
    const auto make = [&] {
        const Image image = ImageOf(destination);
        return State{ImageOf(source), ImageOf(mask), image, image};
    };
    const auto run = [&](State& s) {
        switch (GetParam()) {
        case Driver::Tile:
            return BlendOn(s.source, call.sourceRect, 0, s.destination, call.destinationRect, 1,
                           false);
        case Driver::Picture:
            return BlendOn(picture, call.sourceRect, 0, s.destination, call.destinationRect, 1,
                           false);
        case Driver::TileMask:
            return BlendMaskOn(s.source, call.sourceRect, 0, s.destination, call.destinationRect, 1,
                               s.mask, call.maskRect, false, false);
        case Driver::PictureMask:
            return BlendMaskOn(picture, call.sourceRect, 0, s.destination, call.destinationRect, 1,
                               s.mask, call.maskRect, false, false);
        }
    };
    EXPECT_EQ(SweepExhaustion(make, run,
                              [&](const State& s, const ExhaustionOutcome& outcome) {
                                  EXPECT_EQ(outcome.handlerCalls, outcome.threw ? 1 : 0);
                                  EXPECT_EQ(outcome.log.size(),
                                            outcome.threw ? (guardedTwice ? 2 : 1) : 0);
                                  EXPECT_TRUE(SamePixels(s.other, ImageOf(destination)));
                                  for (int y = 0; y < 200; ++y)
                                      for (int x = 0; x < 300; ++x) {
                                          const unsigned int tile = unsigned(y / 128 * 3 + x / 128);
                                          const Plane& now =
                                              tile < outcome.freeTiles ? done : destination;
                                          ASSERT_EQ(s.destination.GetColor(x, y), now.At(x, y))
                                              << x << " " << y;
                                      }
                              }),
              6u);
}

INSTANTIATE_TEST_SUITE_P(Blend, EveryDriver,
                         testing::Values(Driver::Tile, Driver::Picture, Driver::TileMask,
                                         Driver::PictureMask));

TEST(BlendDriver, MayBlendAnImageOntoItself) {
    const TestPool pool;
    const Plane plane = RandomPlane(300, 260, 4);
    Call call{plane.Rect(), plane.Rect().translated(37, 53), plane.Rect()};
    call.id = 13;
    call.opacity = 0.7;
    Image image = ImageOf(plane);
    BlendOn(image, call.sourceRect, call.id, image, call.destinationRect, call.opacity, false);
    EXPECT_TRUE(SamePixels(image, ImageOf(Expect(Driver::Tile, plane, plane, plane, call))));
    image = ImageOf(plane);
    BlendMaskOn(image, call.sourceRect, call.id, image, call.destinationRect, call.opacity, image,
                call.maskRect, true, false);
    call.outside = true;
    EXPECT_TRUE(SamePixels(image, ImageOf(Expect(Driver::TileMask, plane, plane, plane, call))));
    image = ImageOf(plane);
    call.id = 0;
    BlendMaskOn(PictureOf(plane), call.sourceRect, 0, image, call.destinationRect, call.opacity,
                image, call.maskRect, true, false);
    EXPECT_TRUE(SamePixels(image, ImageOf(Expect(Driver::PictureMask, plane, plane, plane, call))));
}

TEST(BlendDriver, PassesOverMissingTiles) {
    const TestPool pool;
    const Plane source = RandomPlane(300, 280, 1), destination = RandomPlane(300, 280, 2);
    const Plane mask = RandomPlane(300, 280, 3);
    for (const Driver driver : {Driver::Tile, Driver::TileMask})
        for (const QPoint& missing : {QPoint(0, 0), QPoint(1, 0), QPoint(0, 1), QPoint(1, 1)}) {
            Image holey = ImageOf(source);
            holey.GetTileRow(unsigned(missing.y()))[missing.x()] = nullptr;
            Call call{source.Rect(), source.Rect().translated(-50, -30), source.Rect()};
            call.id = 13;
            Image image = ImageOf(destination);
            if (driver == Driver::Tile)
                BlendOn(holey, call.sourceRect, 13, image, call.destinationRect, 1, false);
            else
                BlendMaskOn(holey, call.sourceRect, 13, image, call.destinationRect, 1,
                            ImageOf(mask), call.maskRect, false, false);
            const Plane whole = Expect(driver, source, destination, mask, call);
            const QRect hole(missing * 128, QSize(128, 128));
            for (int y = 0; y < 280; ++y)
                for (int x = 0; x < 300; ++x) {
                    const bool lost = hole.contains(QPoint(x + 50, y + 30));
                    ASSERT_EQ(image.GetColor(x, y), (lost ? destination : whole).At(x, y))
                        << x << " " << y << " driver " << int(driver);
                }
        }
}

TEST(BlendDriver, LogsOnceALevel) {
    TestPool pool;
    const Image source = RandomImage(10, 10, 1), none(0, 0);
    Image image(source);
    const QRect rect(0, 0, 10, 10);
    pool.LeaveFree(0);
    const LogCapture log;
    EXPECT_THROW(BlendOn_RGBA32iImage_RGBA32iImage(source, rect, 0, image, rect, 1, false),
                 std::bad_alloc);
    EXPECT_EQ(LogCapture::Lines().size(), 1);
    EXPECT_THROW(BlendMaskOn(source, rect, 0, image, rect, 1, none, rect, true, false),
                 std::bad_alloc);
    EXPECT_EQ(LogCapture::Lines().size(), 3) << "through an empty mask there are two guards";
}

TEST(BlendDriver, LeavesTilesBeyondItsMaskShared) {
    TestPool pool;
    const Image source = RandomImage(300, 300, 1), mask(50, 50);
    Image image(source);
    const unsigned int before = pool.InUse();
    BlendMaskOn(source, QRect(0, 0, 300, 300), 0, image, QRect(0, 0, 300, 300), 1, mask,
                QRect(0, 0, 50, 50), false, false);
    EXPECT_EQ(pool.InUse(), before + 1);
}

TEST(BlendDriver, TakesAnEmptyMaskForNone) {
    const TestPool pool;
    const Plane source = RandomPlane(140, 40, 1), destination = RandomPlane(140, 40, 2);
    const Call call{source.Rect(), source.Rect(), QRect()};
    // Mode 2 shows the difference: without a mask it clears, through one it is SourceOver.
    for (const bool outside : {true, false}) {
        Image image = ImageOf(destination);
        BlendMaskOn(ImageOf(source), call.sourceRect, 2, image, call.destinationRect, 1,
                    Image(0, 0), QRect(0, 0, 10, 10), outside, false);
        Call plain = call;
        plain.id = 2;
        const Plane cleared = Expect(Driver::Tile, source, destination, destination, plain);
        EXPECT_TRUE(SamePixels(image, ImageOf(outside ? cleared : destination))) << outside;
    }
}

TEST(BlendDriver, RefusesOtherPictureFormats) {
    const TestPool pool;
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
    const TestPool pool;
    LXImageCMYKA a(10, 10), b(10, 10);
    a.Fill({1, 2, 3, 4, 5, {0, 0, 0}});
    BlendOn(a, QRect(0, 0, 10, 10), 0, b, QRect(0, 0, 10, 10), 1, false);
    BlendMaskOn(a, QRect(0, 0, 10, 10), 0, b, QRect(0, 0, 10, 10), 1, Image(10, 10),
                QRect(0, 0, 10, 10), true, false);
    EXPECT_EQ(b.GetColor(3, 3).cyan, 0);
}
