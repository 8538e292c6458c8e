#include "LXIterativeBlend.h"
#include "support/PictureParts.h"
#include "support/ReferenceBlenders.h"

#include <gtest/gtest.h>

#include <array>
#include <climits>
#include <type_traits>

namespace {

using namespace LXBlend;
using namespace Reference;
using Image = LXImageRGBA32i;

/// One mode, with or without a selection, on a line in which every pair of alphas occurs.
template <bool bySelection, class Mode, class Plain>
void CheckFormula(const Mode& mode, const Plain& plain) {
    using Blender = std::conditional_t<bySelection, LXSelectionBlender<LXRGBA32i, Mode, LXRGBA32i>,
                                       LXBlender<LXRGBA32i, Mode>>;
    auto [all, source, mask] =
        std::array{RandomPlane(256, 256, 1), RandomPlane(256, 256, 2), RandomPlane(256, 256, 3)};
    for (std::size_t i = 0; i < all.pixels.size(); ++i) {
        source.pixels[i].alpha = std::uint8_t(i >> 8);
        all.pixels[i].alpha = std::uint8_t(i);
    }
    Plane result = all;
    Blender blender(mode);
    blender.SetSource(&source.pixels);
    blender.SetDestination(&result.pixels);
    if constexpr (bySelection)
        blender.SetMask(&mask.pixels);
    for (int i = 0; i < 65536; ++i)
        blender(i);
    const Plane expected = Changed(all, all.Rect(), [&](int x, int y, LXRGBA32i& d) {
        const LXRGBA32i mixed = plain(source.At(x, y), d);
        d = bySelection ? PlainThrough(mixed, d, mask.At(x, y).alpha) : mixed;
    });
    ASSERT_TRUE(Same(result, expected));
}

} // namespace

TEST(IterativeBlend, Formulas) {
    using P = LXRGBA32i;
    for (const int opacity : {0, 1, 100, 255, 256, 512, 8192, -300}) {
        SCOPED_TRACE(opacity);
        const auto over = [=](bool keepAlpha, bool bySelection) {
            return [=](P s, P d) { return PlainSourceOver(s, d, opacity, keepAlpha, bySelection); };
        };
        const auto under = [=](P s, P d) { return PlainDestinationOver(s, d, opacity); };
        CheckFormula<false>(LXSourceOver<false>(opacity), over(false, false));
        CheckFormula<false>(LXSourceOver<true>(opacity), over(true, false));
        CheckFormula<false>(LXDestinationOver<false>(opacity), under);
        CheckFormula<true>(LXSourceOverBySelection<false>(opacity), over(false, true));
        CheckFormula<true>(LXSourceOverBySelection<true>(opacity), over(true, true));
        CheckFormula<true>(LXDestinationOverBySelection<false>(opacity), under);
    }
    for (const int offset : {0, 128, -255, 700, INT_MAX, INT_MIN}) {
        CheckFormula<false>(LXSubtractRGBSrcByDst(offset),
                            [&](P s, P d) { return PlainSubtract(s, d, offset, false); });
        CheckFormula<false>(LXSubtractRGBDstBySrc(offset),
                            [&](P s, P d) { return PlainSubtract(s, d, offset, true); });
    }
    CheckFormula<false>(LXSource<false>(), [](P s, P) { return s; });
    CheckFormula<true>(LXSourceBySelection(), [](P s, P) { return s; });
    for (const int extreme : {INT_MAX, INT_MIN}) { // harmless
        LXSourceOver<false>{extreme}(P{1, 2, 3, 255}, P{4, 5, 6, 200});
        LXDestinationOver<false>{extreme}(P{1, 2, 3, 255}, P{4, 5, 6, 200});
    }
}

namespace {

/// The rule for rectangles, one pixel at a time: the pixel at (x, y) of each rectangle is blended
/// if it is in all of them and in all images.
bool Meets(const QRect& image, const QRect& rect, int x, int y, QPoint& at) {
    const QRect whole = rect.isNull() ? image : rect;
    at = whole.topLeft() + QPoint(x, y);
    return whole.isValid() && whole.contains(at) && image.contains(at);
}

const QRect Places[] = {QRect(),
                        QRect(0, 0, 60, 50),
                        QRect(-10, -5, 60, 50),
                        QRect(20, 30, 300, 300),
                        QRect(130, 90, 100, 20),
                        QRect(400, 0, 5, 5),
                        QRect(QPoint(9, 9), QPoint(3, 20)),
                        QRect(2000000000, -2000000000, 9, 9)};

} // namespace

TEST(IterativeBlend, CutsRectanglesInAllImagesAlike) {
    const Plane source = RandomPlane(150, 100, 1), before = RandomPlane(200, 140, 2),
                mask = RandomPlane(90, 130, 3);
    const Image sourceImage = ImageOf(source), maskImage = ImageOf(mask);
    using Plain = LXBlender<LXRGBA32i, LXSource<false>>;
    using Masked = LXSelectionBlender<LXRGBA32i, LXSourceBySelection, LXRGBA32i>;
    using Steps = LXIterativeBlendImages<Image, Plain>;
    using MaskedSteps = LXIterativeBlendBySelection<Image, Masked, Image>;
    const auto check = [&](auto&& steps, int count, const Image& image, const QRect& s,
                           const QRect& d, const QRect* m) {
        Plane expected = before;
        int rows = 0;
        for (int y = 0; y < 150; ++y) {
            bool any = false;
            for (int x = 0; x < 210; ++x) {
                QPoint from, to, through;
                if (!Meets(source.Rect(), s, x, y, from) || !Meets(before.Rect(), d, x, y, to) ||
                    (m && !Meets(mask.Rect(), *m, x, y, through)))
                    continue;
                any = true;
                const LXRGBA32i p = source.At(from.x(), from.y());
                LXRGBA32i& pixel = expected.At(to.x(), to.y());
                pixel = m ? PlainThrough(p, pixel, mask.At(through.x(), through.y()).alpha) : p;
            }
            rows += any;
        }
        ASSERT_EQ(count, rows);
        for (int i = 0; i < rows + 2; ++i)
            steps();
        ASSERT_TRUE(Same(PlaneOf(image), expected));
    };
    for (const QRect& s : Places)
        for (const QRect& d : Places) {
            SCOPED_TRACE(testing::Message() << "from " << s << " to " << d);
            Image image = ImageOf(before);
            check(Steps(Plain({}), sourceImage, image, s, d),
                  Steps::GetIterationCount(sourceImage, image, s, d), image, s, d, nullptr);
            for (const QRect& m : Places) {
                SCOPED_TRACE(testing::Message() << "through " << m);
                Image masked = ImageOf(before);
                check(MaskedSteps(Masked({}), sourceImage, masked, maskImage, s, d, m),
                      MaskedSteps::GetIterationCount(sourceImage, masked, maskImage, s, d, m),
                      masked, s, d, &m);
            }
        }
}

TEST(IterativeBlend, StopsHalfWayAndWithoutTiles) {
    using Blender = LXBlender<LXRGBA32i, LXSource<false>>;
    const Plane source = RandomPlane(150, 100, 1), before = RandomPlane(150, 100, 2);
    const Image sourceImage = ImageOf(source);
    Image image = ImageOf(before);
    LXIterativeBlendImages<Image, Blender> steps(Blender({}), sourceImage, image, QRect(), QRect());
    for (int i = 0; i < 40; ++i)
        steps();
    const auto blend = [&](int x, int y, LXRGBA32i& pixel) { pixel = source.At(x, y); };
    EXPECT_TRUE(Same(PlaneOf(image), Changed(before, QRect(0, 0, 150, 40), blend)));

    const auto blendAll = [&](Image& destination) {
        const Image nothing(300, 200);
        LXIterativeBlendImages<Image, Blender> all(Blender({}), nothing, destination, QRect(),
                                                   QRect());
        for (int i = 0; i < 200; ++i)
            all();
    };
    EXPECT_GE(SweepOnSharedTiles(blendAll), 6u);
}
