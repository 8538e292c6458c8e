#include "LXBlend.h"
#include "compositing/Formulas.h"
#include "support/Pictures.h"
#include "support/ReferenceBlend.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <memory>
#include <ostream>
#include <vector>

namespace {

using namespace LXBlend;
using Reference::Mode;
using Reference::Shape;

constexpr int Side = 128;
constexpr std::size_t TilePixels = Side * Side;

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

#define ALL_SHAPES(mode)                                                                           \
    {#mode, Mode::mode, false, mode, mode##Mask, mode##RGBA32iQImage, mode##RGBA32iQImage},        \
        {#mode "LockA",                                                                            \
         Mode::mode,                                                                               \
         true,                                                                                     \
         mode##LockA,                                                                              \
         mode##MaskLockA,                                                                          \
         mode##RGBA32iQImageLockA,                                                                 \
         mode##RGBA32iQImageLockA},
#define TILE_AND(name, mode, mask, image) {#name, Mode::mode, false, name, mask, image, image},
#define TILE_ONLY(name, mode)                                                                      \
    {#name, Mode::mode, false, name, nullptr, nullptr, nullptr},                                   \
        {#name "LockA", Mode::mode, true, name##LockA, nullptr, nullptr, nullptr},

const KernelCase Kernels[] = {
    LX_SEPARABLE_MODES(ALL_SHAPES) ALL_SHAPES(SourceOver) ALL_SHAPES(Source)
        ALL_SHAPES(DestinationOut)
    // clang-format off
    {"DestinationIn", Mode::DestinationIn, false, DestinationIn, nullptr,
     DestinationInRGBA32iQImage, DestinationInRGBA32iQImage},
    {"DestinationInLockA", Mode::DestinationIn, true, DestinationInLockA, nullptr,
     DestinationInRGBA32iQImageLockA, DestinationInRGBA32iQImageLockA},
    {"Heal", Mode::Heal, false, HealRGBAByAlpha, HealRGBAMaskByAlpha,
     HealRGBA32iQImage, HealRGBA32iQImage},
    {"HealLockA", Mode::Heal, true, HealRGBAByAlphaLockA, HealRGBAMaskByAlphaLockA,
     HealRGBA32iQImageLockA, HealRGBA32iQImageLockA},
    {"RGBAToMaskSourceOver", Mode::ToMask, false, RGBAToMaskSourceOver, RGBAToMaskSourceOver,
     nullptr, nullptr},
    {"RGBAToMaskSourceOverLockA", Mode::ToMask, true, RGBAToMaskSourceOverLockA,
     RGBAToMaskSourceOverLockA, nullptr, nullptr},
    {"SourceAlphaToGray", Mode::SourceAlphaToGray, false, SourceAlphaToGray, SourceAlphaToGray,
     nullptr, nullptr},
    {"SourceAlphaToGrayLockA", Mode::SourceAlphaToGray, true, SourceAlphaToGrayLockA,
     SourceAlphaToGrayLockA, nullptr, nullptr},
    TILE_ONLY(SourceRGBAToGray, SourceRGBAToGray)
    TILE_ONLY(SourceWidthAlpha, SourceWidthAlpha)
    TILE_ONLY(Clear, Clear)
    TILE_ONLY(RasterSourceAndDestination, RasterAnd)
    TILE_ONLY(RasterNotSourceAndDestination, RasterNotAnd)
    TILE_ONLY(RasterSourceOrDestination, RasterOr)
    {"DestinationInFullAlpha", Mode::DestinationInFullAlpha, false, DestinationInFullAlpha,
     nullptr, nullptr, nullptr},
    {"UniteAlpha", Mode::Unite, false, UniteAlpha, nullptr, nullptr, nullptr},
    {"IntersectAlpha", Mode::Intersect, false, IntersectAlpha, nullptr, nullptr, nullptr},
    {"SubtractAlpha", Mode::Subtract, false, SubtractAlpha, nullptr, nullptr, nullptr},
    // clang-format on
};

std::ostream& operator<<(std::ostream& out, const KernelCase& kernel) {
    return out << kernel.name;
}

/// Pixels in a block of their very own size, so that a sanitizer sees each step beyond them.
using Pixels = std::unique_ptr<LXRGBA32i[]>;

Pixels Copy(const Pixels& pixels, std::size_t count) {
    Pixels copy(new LXRGBA32i[count]);
    std::copy_n(pixels.get(), count, copy.get());
    return copy;
}

Pixels RandomTile(RandomPixels& random) {
    Pixels tile(new LXRGBA32i[TilePixels]);
    std::generate_n(tile.get(), TilePixels, [&] { return random.Pixel(); });
    return tile;
}

/// A picture over pixels that somebody else holds.
QImage Wrap(const Pixels& pixels, int width, int height) {
    return QImage(static_cast<const uchar*>(static_cast<const void*>(pixels.get())), width, height,
                  QImage::Format_ARGB32);
}

testing::AssertionResult SameTile(const Pixels& expected, const Pixels& actual) {
    for (std::size_t i = 0; i < TilePixels; ++i)
        if (expected[i] != actual[i]) {
            const auto print = [](const LXRGBA32i& p) {
                return testing::PrintToString(std::array<int, 4>{p.blue, p.green, p.red, p.alpha});
            };
            return testing::AssertionFailure()
                   << "pixel (" << i % Side << ", " << i / Side << "): expected "
                   << print(expected[i]) << ", got " << print(actual[i]);
        }
    return testing::AssertionSuccess();
}

/// What a kernel works on.
struct Work {
    Pixels src, dst, mask;
};

/// All 65536 pairs of alpha over random colours and random mask values, in four tiles.
std::array<Work, 4> AllAlphas(unsigned int seed) {
    RandomPixels random(seed);
    std::array<Work, 4> all;
    for (std::size_t part = 0; part < all.size(); ++part) {
        all[part] = {RandomTile(random), RandomTile(random), RandomTile(random)};
        for (std::size_t i = 0; i < TilePixels; ++i) {
            const std::size_t pair = part * TilePixels + i;
            all[part].src[i].alpha = static_cast<std::uint8_t>(pair >> 8);
            all[part].dst[i].alpha = static_cast<std::uint8_t>(pair & 255);
        }
    }
    return all;
}

/// Runs the kernel in one of its shapes over a whole tile.
void RunOnTile(const KernelCase& kernel, Shape shape, const Work& work, const Pixels& dst,
               unsigned int opacity) {
    switch (shape) {
    case Shape::Tile:
        return kernel.tile(work.src.get(), dst.get(), 0, 0, 0, 0, Side, Side, opacity);
    case Shape::Image:
        return kernel.image(Wrap(work.src, Side, Side), dst.get(), 0, 0, 0, 0, Side, Side, opacity);
    case Shape::MaskedImage:
        return kernel.maskedImage(Wrap(work.src, Side, Side), dst.get(), 0, 0, 0, 0, Side, Side,
                                  opacity, work.mask.get(), 0, 0, Side, Side, false);
    case Shape::Mask:
        for (int y = 0; y < Side; ++y)
            for (int x = 0; x < Side; ++x)
                kernel.mask(work.src.get(), dst.get(), work.mask.get(), x, y, x, y, x, y, 0, 0,
                            opacity);
    }
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
        const auto all = AllAlphas(++seed);
        for (const Shape shape : {Shape::Tile, Shape::Mask, Shape::Image, Shape::MaskedImage}) {
            if (!HasShape(kernel, shape))
                continue;
            for (const Work& work : all) {
                const Pixels expected(new LXRGBA32i[TilePixels]);
                for (std::size_t i = 0; i < TilePixels; ++i)
                    expected[i] = Reference::Blend(kernel.mode, shape, kernel.lockA, work.src[i],
                                                   work.dst[i], opacity, work.mask[i].alpha);
                const Pixels dst = Copy(work.dst, TilePixels);
                RunOnTile(kernel, shape, work, dst, opacity);
                ASSERT_TRUE(SameTile(expected, dst)) << kernel << " shape " << int(shape)
                                                     << " opacity " << opacity << " seed " << seed;
            }
        }
    }
}

TEST_P(EachKernel, TouchesItsRectangleOnly) {
    const KernelCase& kernel = GetParam();
    constexpr int imageWidth = 131, imageHeight = 97;
    for (unsigned int seed = 0; seed < 40; ++seed) {
        RandomPixels random(seed);
        const auto below = [&](int n) { return int(random.Below(unsigned(n))); };
        const Work work = {RandomTile(random), RandomTile(random), RandomTile(random)};
        Pixels picture(new LXRGBA32i[imageWidth * imageHeight]);
        std::generate_n(picture.get(), imageWidth * imageHeight, [&] { return random.Pixel(); });
        const unsigned int opacity = random.Below(257);
        // Every size down to nothing and below it, up to the last pixel of each side.
        const int width = below(40) - 1, height = below(12) - 1;
        const auto place = [&](int size, int extent) {
            const int most = size - std::max(extent, 0);
            return below(2) == 0 ? most : below(most + 1);
        };
        const int dstX = place(Side, width), dstY = place(Side, height);
        const auto expect = [&](Shape shape, const auto& pixelOf) {
            Pixels expected = Copy(work.dst, TilePixels);
            for (int y = 0; y < height; ++y)
                for (int x = 0; x < width; ++x) {
                    LXRGBA32i& d = expected[std::size_t((dstY + y) * Side + dstX + x)];
                    d = Reference::Blend(kernel.mode, shape, kernel.lockA, pixelOf(x, y), d,
                                         opacity, 0);
                }
            return expected;
        };
        if (kernel.tile) {
            const int srcX = place(Side, width), srcY = place(Side, height);
            const Pixels dst = Copy(work.dst, TilePixels);
            kernel.tile(work.src.get(), dst.get(), srcX, srcY, dstX, dstY, width, height, opacity);
            ASSERT_TRUE(
                SameTile(expect(Shape::Tile,
                                [&](int x, int y) {
                                    return work.src[std::size_t((srcY + y) * Side + srcX + x)];
                                }),
                         dst))
                << kernel << " tile, seed " << seed;
        }
        if (kernel.image) {
            const int srcX = place(imageWidth, width), srcY = place(imageHeight, height);
            const Pixels dst = Copy(work.dst, TilePixels);
            const QImage image = Wrap(picture, imageWidth, imageHeight);
            const auto expected = expect(Shape::Image, [&](int x, int y) {
                return picture[std::size_t((srcY + y) * imageWidth + srcX + x)];
            });
            kernel.image(image, dst.get(), srcX, srcY, dstX, dstY, width, height, opacity);
            ASSERT_TRUE(SameTile(expected, dst)) << kernel << " image, seed " << seed;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Blend, EachKernel, testing::ValuesIn(Kernels),
                         [](const auto& kernel) { return std::string(kernel.param.name); });

/// The mask shape reads each of its three pixels at its own position.
TEST(BlendKernel, MaskedPixelHasThreePositions) {
    RandomPixels random(7);
    const Work work = {RandomTile(random), RandomTile(random), RandomTile(random)};
    for (int i = 0; i < 200; ++i) {
        const auto any = [&] { return int(random.Below(Side)); };
        const int sx = any(), sy = any(), dx = any(), dy = any(), mx = any(), my = any();
        Pixels expected = Copy(work.dst, TilePixels);
        LXRGBA32i& d = expected[std::size_t(dy * Side + dx)];
        d = Reference::Blend(Mode::Screen, Shape::Mask, false,
                             work.src[std::size_t(sy * Side + sx)], d, 200,
                             work.mask[std::size_t(my * Side + mx)].alpha);
        const Pixels dst = Copy(work.dst, TilePixels);
        ScreenMask(work.src.get(), dst.get(), work.mask.get(), sx, sy, dx, dy, mx, my, 0, 0, 200);
        ASSERT_TRUE(SameTile(expected, dst)) << i;
    }
}

TEST(BlendKernel, PictureThroughAMaskOfAnyExtent) {
    constexpr int imageWidth = 90, imageHeight = 70;
    for (unsigned int seed = 0; seed < 300; ++seed) {
        RandomPixels random(seed);
        const auto below = [&](int n) { return int(random.Below(unsigned(n))); };
        const Work work = {RandomTile(random), RandomTile(random), RandomTile(random)};
        Pixels picture(new LXRGBA32i[imageWidth * imageHeight]);
        std::generate_n(picture.get(), imageWidth * imageHeight, [&] { return random.Pixel(); });
        const unsigned int opacity = random.Below(257);
        const int width = below(50), height = below(30);
        const int srcX = imageWidth - width, srcY = imageHeight - height;
        const int dstX = below(Side - width), dstY = Side - height;
        const int maskX = below(Side - width), maskY = below(Side - height);
        const int maskWidth = below(55) - 2, maskHeight = below(35) - 2;
        const bool outsideBlends = below(2) == 0, lockA = below(2) == 0, absent = below(4) == 0;
        const bool masked = !absent && maskWidth > 0 && maskHeight > 0;

        const Pixels expected = Copy(work.dst, TilePixels);
        for (int y = 0; y < height; ++y)
            for (int x = 0; x < width; ++x) {
                LXRGBA32i& d = expected[std::size_t((dstY + y) * Side + dstX + x)];
                const LXRGBA32i s = picture[std::size_t((srcY + y) * imageWidth + srcX + x)];
                if (!masked)
                    d = Reference::Blend(Mode::SourceOver, Shape::Image, lockA, s, d, opacity, 0);
                else if (x < maskWidth && y < maskHeight)
                    d = Reference::Blend(
                        Mode::SourceOver, Shape::MaskedImage, lockA, s, d, opacity,
                        work.mask[std::size_t((maskY + y) * Side + maskX + x)].alpha);
                else if (outsideBlends) // the plain frame, which copies nothing
                    d = Reference::Blend(Mode::SourceOver, Shape::Tile, lockA, s, d, opacity, 0);
            }
        const Pixels dst = Copy(work.dst, TilePixels);
        MaskedImageKernel* const kernel =
            lockA ? static_cast<MaskedImageKernel*>(SourceOverRGBA32iQImageLockA)
                  : static_cast<MaskedImageKernel*>(SourceOverRGBA32iQImage);
        kernel(Wrap(picture, imageWidth, imageHeight), dst.get(), srcX, srcY, dstX, dstY, width,
               height, opacity, absent ? nullptr : work.mask.get(), maskX, maskY, maskWidth,
               maskHeight, outsideBlends);
        ASSERT_TRUE(SameTile(expected, dst)) << "seed " << seed;
    }
}

/// Blending a tile onto itself is blending it onto a copy.
TEST(BlendKernel, SourceMayBeTheDestination) {
    RandomPixels random(3);
    const Work work = {RandomTile(random), nullptr, nullptr};
    const Pixels apart = Copy(work.src, TilePixels), same = Copy(work.src, TilePixels);
    Multiply(work.src.get(), apart.get(), 5, 7, 5, 7, 101, 50, 200);
    Multiply(same.get(), same.get(), 5, 7, 5, 7, 101, 50, 200);
    EXPECT_TRUE(SameTile(apart, same));
}
