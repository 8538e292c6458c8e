#include "LXBlend.h"
#include "compositing/Formulas.h"
#include "support/PictureParts.h"
#include "support/ReferenceBlend.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <ostream>

namespace {

using namespace LXBlend;
using Reference::Changed;
using Reference::Mode;
using Reference::PictureOf;
using Reference::Plane;
using Reference::RandomPlane;
using Reference::Same;
using Reference::Shape;

constexpr int Side = 128;

/// Every kernel there is. Null where a mode does not have the shape.
struct KernelCase {
    const char* name;
    Mode mode;
    bool lockA;
    TileKernel* tile;
    MaskKernel* mask;
    ImageKernel* image;
    MaskedImageKernel* maskedImage;
};

// clang-format off
#define WITHOUT_LOCK(name, mode, mask, image) {#name, Mode::mode, false, name, mask, image, image},
#define WITH_LOCK(name, mode, mask, image)                                                         \
    WITHOUT_LOCK(name, mode, mask, image)                                                          \
    {#name "LockA", Mode::mode, true, name##LockA, mask##LockA, image##LockA, image##LockA},
#define ALL_SHAPES(mode) WITH_LOCK(mode, mode, mode##Mask, mode##RGBA32iQImage)
#define TILE_ONLY(name, mode)                                                                      \
    WITHOUT_LOCK(name, mode, nullptr, nullptr)                                                     \
    {#name "LockA", Mode::mode, true, name##LockA, nullptr, nullptr, nullptr},
#define TILE_AND_MASK(name, mode)                                                                  \
    WITHOUT_LOCK(name, mode, name, nullptr)                                                        \
    {#name "LockA", Mode::mode, true, name##LockA, name##LockA, nullptr, nullptr},

const KernelCase Kernels[] = {
    LX_SEPARABLE_MODES(ALL_SHAPES)
    ALL_SHAPES(SourceOver)
    ALL_SHAPES(Source)
    ALL_SHAPES(DestinationOut)
    WITH_LOCK(HealRGBAByAlpha, Heal, HealRGBAMaskByAlpha, HealRGBA32iQImage)
    WITHOUT_LOCK(DestinationIn, DestinationIn, nullptr, DestinationInRGBA32iQImage)
    {"DestinationInLockA", Mode::DestinationIn, true, DestinationInLockA, nullptr,
     DestinationInRGBA32iQImageLockA, DestinationInRGBA32iQImageLockA},
    TILE_AND_MASK(RGBAToMaskSourceOver, ToMask)
    TILE_AND_MASK(SourceAlphaToGray, SourceAlphaToGray)
    TILE_ONLY(SourceRGBAToGray, SourceRGBAToGray)
    TILE_ONLY(SourceWidthAlpha, SourceWidthAlpha)
    TILE_ONLY(Clear, Clear)
    TILE_ONLY(RasterSourceAndDestination, RasterAnd)
    TILE_ONLY(RasterNotSourceAndDestination, RasterNotAnd)
    TILE_ONLY(RasterSourceOrDestination, RasterOr)
    WITHOUT_LOCK(DestinationInFullAlpha, DestinationInFullAlpha, nullptr, nullptr)
    WITHOUT_LOCK(UniteAlpha, Unite, nullptr, nullptr)
    WITHOUT_LOCK(IntersectAlpha, Intersect, nullptr, nullptr)
    WITHOUT_LOCK(SubtractAlpha, Subtract, nullptr, nullptr)
};
// clang-format on

std::ostream& operator<<(std::ostream& out, const KernelCase& kernel) {
    return out << kernel.name;
}

/// What a kernel works on: three tiles. A plane's block has its very own size, so that a sanitizer
/// sees each step beyond it.
struct Work {
    explicit Work(unsigned int seed)
        : src(RandomPlane(Side, Side, 3 * seed)), dst(RandomPlane(Side, Side, 3 * seed + 1)),
          mask(RandomPlane(Side, Side, 3 * seed + 2)) {}

    Plane src, dst, mask;
};

/// All 65536 pairs of alpha over random colours and random mask values, in four tiles.
std::vector<Work> AllAlphas(unsigned int seed) {
    std::vector<Work> all;
    for (unsigned int pair = 0; pair < 65536; ++pair) {
        const unsigned int i = pair % (Side * Side);
        if (i == 0)
            all.emplace_back(4 * seed + pair / (Side * Side));
        all.back().src.pixels[i].alpha = static_cast<std::uint8_t>(pair >> 8);
        all.back().dst.pixels[i].alpha = static_cast<std::uint8_t>(pair & 255);
    }
    return all;
}

/// Runs the kernel in one of its shapes over a whole tile.
Plane Blended(const KernelCase& kernel, Shape shape, const Work& work, unsigned int opacity) {
    Plane dst = work.dst;
    switch (shape) {
    case Shape::Tile:
        kernel.tile(work.src.Row(0), dst.Row(0), 0, 0, 0, 0, Side, Side, opacity);
        break;
    case Shape::Image:
        kernel.image(PictureOf(work.src), dst.Row(0), 0, 0, 0, 0, Side, Side, opacity);
        break;
    case Shape::MaskedImage:
        kernel.maskedImage(PictureOf(work.src), dst.Row(0), 0, 0, 0, 0, Side, Side, opacity,
                           work.mask.Row(0), 0, 0, Side, Side, false);
        break;
    case Shape::Mask:
        for (int y = 0; y < Side; ++y)
            for (int x = 0; x < Side; ++x)
                kernel.mask(work.src.Row(0), dst.Row(0), work.mask.Row(0), x, y, x, y, x, y, 0, 0,
                            opacity);
    }
    return dst;
}

bool HasShape(const KernelCase& kernel, Shape shape) {
    return (shape == Shape::Tile && kernel.tile) || (shape == Shape::Mask && kernel.mask) ||
           (shape == Shape::Image && kernel.image) ||
           (shape == Shape::MaskedImage && kernel.maskedImage);
}

class EachKernel : public testing::TestWithParam<KernelCase> {};

} // namespace

TEST(BlendFormula, MatchesOnAllPairs) {
    const auto check = [](Mode mode, float (*mix)(float, float)) {
        for (unsigned int s = 0; s < 256; ++s)
            for (unsigned int d = 0; d < 256; ++d)
                ASSERT_EQ(mix(float(s), float(d)), float(Reference::Formula(mode, s, d)))
                    << "mode " << int(mode) << " s=" << s << " d=" << d;
    };
#define CHECK_FORMULA(mode) check(Mode::mode, LXFormulas::mode::Mix);
    LX_SEPARABLE_MODES(CHECK_FORMULA)
    CHECK_FORMULA(SourceOver)
}

TEST(BlendFormula, TruncatesBy255Exactly) {
    for (int x = 0; x <= 65025; ++x)
        ASSERT_EQ(int(LXFormulas::Div255(float(x))), x / 255) << x;
}

/// The one division of the frame: between two multiples of the divisor the quotient is monotone, so
/// the numbers next to them decide. Up to 510, as Plus needs it.
TEST(BlendFormula, FloatDivisionIsTheIntegerOne) {
    for (int k = 1; k <= 255; ++k)
        for (int q = 0; q <= 511; ++q)
            for (int n = std::max(0, q * k * 255 - 1); n <= q * k * 255; ++n)
                ASSERT_EQ(int(std::min(float(n) / float(k * 255), 255.0F)),
                          std::min(n / (k * 255), 255))
                    << n << " / " << k * 255;
}

TEST_P(EachKernel, MatchesOnAllAlphas) {
    const KernelCase& kernel = GetParam();
    unsigned int seed = 1;
    for (const unsigned int opacity :
         {256U, 0U, 1U, 3U, 77U, 128U, 179U, 255U, 257U, 700U, ~255U}) {
        const std::vector<Work> all = AllAlphas(++seed);
        for (const Shape shape : {Shape::Tile, Shape::Mask, Shape::Image, Shape::MaskedImage})
            for (const Work& work : all) {
                if (!HasShape(kernel, shape))
                    continue;
                const auto blend = [&](int x, int y, LXRGBA32i& d) {
                    d = Reference::Blend(kernel.mode, shape, kernel.lockA, work.src.At(x, y), d,
                                         opacity, work.mask.At(x, y).alpha);
                };
                ASSERT_TRUE(Same(Blended(kernel, shape, work, opacity),
                                 Changed(work.dst, work.dst.Rect(), blend)))
                    << kernel << " shape " << int(shape) << " opacity " << opacity << " seed "
                    << seed;
            }
    }
}

TEST_P(EachKernel, TouchesItsRectangleOnly) {
    const KernelCase& kernel = GetParam();
    for (unsigned int seed = 0; seed < 40; ++seed) {
        RandomPixels random(seed);
        const auto below = [&](int n) { return int(random.Below(unsigned(n))); };
        const Work work(seed);
        const Plane picture = RandomPlane(131, 97, seed + 1000);
        const unsigned int opacity = random.Below(257);
        // Every size down to nothing and below it, up to the last pixel of each side.
        const int width = below(40) - 1, height = below(12) - 1;
        const auto place = [&](const Plane& plane) {
            const int right = plane.width - std::max(width, 0);
            const int bottom = plane.height - std::max(height, 0);
            return QPoint(below(2) == 0 ? right : below(right + 1),
                          below(2) == 0 ? bottom : below(bottom + 1));
        };
        const QPoint to = place(work.dst);
        const auto check = [&](Shape shape, const Plane& source, auto blend) {
            const QPoint from = place(source);
            const auto expect = [&](int x, int y, LXRGBA32i& d) {
                const QPoint s = QPoint(x, y) - to + from;
                d = Reference::Blend(kernel.mode, shape, kernel.lockA, source.At(s.x(), s.y()), d,
                                     opacity, 0);
            };
            Plane dst = work.dst;
            blend(source, dst.Row(0), from.x(), from.y(), to.x(), to.y(), width, height, opacity);
            ASSERT_TRUE(Same(dst, Changed(work.dst, QRect(to, QSize(width, height)), expect)))
                << kernel << " shape " << int(shape) << " seed " << seed;
        };
        if (kernel.tile)
            check(Shape::Tile, work.src, [&](const Plane& source, auto... arguments) {
                kernel.tile(source.Row(0), arguments...);
            });
        if (kernel.image)
            check(Shape::Image, picture, [&](const Plane& source, auto... arguments) {
                kernel.image(PictureOf(source), arguments...);
            });
    }
}

INSTANTIATE_TEST_SUITE_P(Blend, EachKernel, testing::ValuesIn(Kernels),
                         [](const auto& kernel) { return std::string(kernel.param.name); });

/// The mask shape reads each of its three pixels at its own position.
TEST(BlendKernel, MaskedPixelHasThreePositions) {
    RandomPixels random(7);
    const Work work(7);
    for (int i = 0; i < 200; ++i) {
        const auto any = [&] { return int(random.Below(Side)); };
        const int sx = any(), sy = any(), dx = any(), dy = any(), mx = any(), my = any();
        Plane expected = work.dst, dst = work.dst;
        LXRGBA32i& d = expected.At(dx, dy);
        d = Reference::Blend(Mode::Screen, Shape::Mask, false, work.src.At(sx, sy), d, 200,
                             work.mask.At(mx, my).alpha);
        ScreenMask(work.src.Row(0), dst.Row(0), work.mask.Row(0), sx, sy, dx, dy, mx, my, 0, 0,
                   200);
        ASSERT_TRUE(Same(dst, expected)) << i;
    }
}

TEST(BlendKernel, PictureThroughAMaskOfAnyExtent) {
    for (unsigned int seed = 0; seed < 300; ++seed) {
        RandomPixels random(seed);
        const auto below = [&](int n) { return int(random.Below(unsigned(n))); };
        const Work work(seed);
        const Plane picture = RandomPlane(90, 70, seed + 1000);
        const unsigned int opacity = random.Below(257);
        const int width = below(50), height = below(30);
        const QPoint from(picture.width - width, picture.height - height);
        const QPoint to(below(Side - width), Side - height);
        const QPoint mask(below(Side - width), below(Side - height));
        const int maskWidth = below(55) - 2, maskHeight = below(35) - 2;
        const bool outsideBlends = below(2) == 0, lockA = below(2) == 0, absent = below(4) == 0;
        const bool masked = !absent && maskWidth > 0 && maskHeight > 0;

        const auto blend = [&](int x, int y, LXRGBA32i& d) {
            const QPoint at = QPoint(x, y) - to, s = from + at, m = mask + at;
            const bool inside = masked && at.x() < maskWidth && at.y() < maskHeight;
            // Beyond the mask it is the plain frame, which copies nothing.
            const Shape shape = inside ? Shape::MaskedImage : masked ? Shape::Tile : Shape::Image;
            if (inside || !masked || outsideBlends)
                d = Reference::Blend(Mode::SourceOver, shape, lockA, picture.At(s.x(), s.y()), d,
                                     opacity, inside ? work.mask.At(m.x(), m.y()).alpha : 0);
        };
        Plane dst = work.dst;
        MaskedImageKernel* const kernel =
            lockA ? static_cast<MaskedImageKernel*>(SourceOverRGBA32iQImageLockA)
                  : static_cast<MaskedImageKernel*>(SourceOverRGBA32iQImage);
        kernel(PictureOf(picture), dst.Row(0), from.x(), from.y(), to.x(), to.y(), width, height,
               opacity, absent ? nullptr : work.mask.Row(0), mask.x(), mask.y(), maskWidth,
               maskHeight, outsideBlends);
        ASSERT_TRUE(Same(dst, Changed(work.dst, QRect(to, QSize(width, height)), blend)))
            << "seed " << seed;
    }
}

/// Blending a tile onto itself is blending it onto a copy.
TEST(BlendKernel, SourceMayBeTheDestination) {
    const Work work(3);
    Plane apart = work.src, same = work.src;
    Multiply(work.src.Row(0), apart.Row(0), 5, 7, 5, 7, 101, 50, 200);
    Multiply(same.Row(0), same.Row(0), 5, 7, 5, 7, 101, 50, 200);
    EXPECT_TRUE(Same(apart, same));
}
