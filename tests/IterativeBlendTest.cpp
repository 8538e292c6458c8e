#include "LXIterativeBlend.h"
#include "support/ExhaustionSweep.h"
#include "support/Plane.h"
#include "support/ReferenceBlenders.h"

#include <gtest/gtest.h>

#include <climits>
#include <memory>

namespace {

using namespace LXBlend;
using namespace Reference;
using Image = LXImageRGBA32i;

/// One mode, with and without a selection, on pixels in which every pair of alphas occurs.
template <class Mode, class Plain>
void CheckFormula(const Mode& mode, bool bySelection, const Plain& plain) {
    RandomPixels random(1);
    for (int sa = 0; sa < 256; ++sa)
        for (int da = 0; da < 256; ++da) {
            std::vector<LXRGBA32i> source{random.Pixel()}, destination{random.Pixel()};
            std::vector<LXRGBA32i> mask{random.Pixel()};
            source[0].alpha = std::uint8_t(sa);
            destination[0].alpha = std::uint8_t(da);
            LXRGBA32i expected = plain(source[0], destination[0]);
            if (bySelection) {
                expected = PlainThrough(expected, destination[0], mask[0].alpha);
                LXSelectionBlender<LXRGBA32i, Mode, LXRGBA32i> blender(mode);
                blender.SetSource(&source);
                blender.SetDestination(&destination);
                blender.SetMask(&mask);
                blender(0);
            } else {
                LXBlender<LXRGBA32i, Mode> blender(mode);
                blender.SetSource(&source);
                blender.SetDestination(&destination);
                blender(0);
            }
            ASSERT_EQ(destination[0], expected) << "alphas " << sa << " and " << da;
        }
}

} // namespace

TEST(IterativeBlend, Formulas) {
    using P = LXRGBA32i;
    for (const int opacity : {0, 1, 100, 255, 256, 512, 8192, -300}) {
        SCOPED_TRACE(opacity);
        CheckFormula(LXSourceOver<false>(opacity), false,
                     [&](P s, P d) { return PlainSourceOver(s, d, opacity, false, false); });
        CheckFormula(LXSourceOver<true>(opacity), false,
                     [&](P s, P d) { return PlainSourceOver(s, d, opacity, true, false); });
        CheckFormula(LXDestinationOver<false>(opacity), false,
                     [&](P s, P d) { return PlainDestinationOver(s, d, opacity); });
        CheckFormula(LXSourceOverBySelection<false>(opacity), true,
                     [&](P s, P d) { return PlainSourceOver(s, d, opacity, false, true); });
        CheckFormula(LXSourceOverBySelection<true>(opacity), true,
                     [&](P s, P d) { return PlainSourceOver(s, d, opacity, true, true); });
        CheckFormula(LXDestinationOverBySelection<false>(opacity), true,
                     [&](P s, P d) { return PlainDestinationOver(s, d, opacity); });
    }
    for (const int offset : {0, 128, -255, 700, INT_MAX, INT_MIN}) {
        CheckFormula(LXSubtractRGBSrcByDst(offset), false,
                     [&](P s, P d) { return PlainSubtract(s, d, offset, false); });
        CheckFormula(LXSubtractRGBDstBySrc(offset), false,
                     [&](P s, P d) { return PlainSubtract(s, d, offset, true); });
    }
    CheckFormula(LXSource<false>(), false, [](P s, P) { return s; });
    CheckFormula(LXSourceBySelection(), true, [](P s, P) { return s; });
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
    const TestPool pool;
    const Plane source = RandomPlane(150, 100, 1), before = RandomPlane(200, 140, 2),
                mask = RandomPlane(90, 130, 3);
    const Image sourceImage = ImageOf(source), maskImage = ImageOf(mask);
    using Plain = LXBlender<LXRGBA32i, LXSource<false>>;
    using Masked = LXSelectionBlender<LXRGBA32i, LXSourceBySelection, LXRGBA32i>;
    using Steps = LXIterativeBlendImages<Image, Plain>;
    using MaskedSteps = LXIterativeBlendBySelection<Image, Masked, Image>;
    for (const QRect& s : Places)
        for (const QRect& d : Places)
            for (const QRect& m : Places) {
                Plane expected = before, expectedMasked = before;
                int rows = 0, maskedRows = 0;
                for (int y = 0; y < 150; ++y) {
                    bool any = false, anyMasked = false;
                    for (int x = 0; x < 210; ++x) {
                        QPoint from, to, through;
                        if (!Meets(source.Rect(), s, x, y, from) ||
                            !Meets(before.Rect(), d, x, y, to))
                            continue;
                        any = true;
                        const LXRGBA32i p = source.At(from.x(), from.y());
                        expected.At(to.x(), to.y()) = p;
                        if (!Meets(mask.Rect(), m, x, y, through))
                            continue;
                        anyMasked = true;
                        expectedMasked.At(to.x(), to.y()) = PlainThrough(
                            p, before.At(to.x(), to.y()), mask.At(through.x(), through.y()).alpha);
                    }
                    rows += any;
                    maskedRows += anyMasked;
                }
                SCOPED_TRACE(testing::Message() << s.x() << " " << d.x() << " " << m.x());
                Image image = ImageOf(before);
                MaskedSteps masked(Masked({}), sourceImage, image, maskImage, s, d, m);
                ASSERT_EQ(MaskedSteps::GetIterationCount(sourceImage, image, maskImage, s, d, m),
                          maskedRows);
                for (int i = 0; i < maskedRows + 2; ++i)
                    masked();
                ASSERT_TRUE(Same(PlaneOf(image), expectedMasked));
                if (&m != Places)
                    continue;
                image = ImageOf(before);
                Steps steps(Plain({}), sourceImage, image, s, d);
                ASSERT_EQ(Steps::GetIterationCount(sourceImage, image, s, d), rows);
                for (int i = 0; i < rows + 2; ++i)
                    steps();
                ASSERT_TRUE(Same(PlaneOf(image), expected));
            }
}

TEST(IterativeBlend, StopsHalfWayAndWithoutTiles) {
    using Blender = LXBlender<LXRGBA32i, LXSource<false>>;
    {
        const TestPool pool;
        const Plane source = RandomPlane(150, 100, 1), before = RandomPlane(150, 100, 2);
        const Image sourceImage = ImageOf(source);
        Image image = ImageOf(before);
        LXIterativeBlendImages<Image, Blender> steps(Blender({}), sourceImage, image, QRect(),
                                                     QRect());
        for (int i = 0; i < 40; ++i)
            steps();
        Plane expected = before;
        std::copy_n(source.pixels.begin(), 40 * 150, expected.pixels.begin());
        EXPECT_TRUE(Same(PlaneOf(image), expected));
    }
    const unsigned int needed =
        SweepExhaustion([] { return std::pair(Image(300, 200), Image(300, 200)); },
                        [](std::pair<Image, Image>& images) {
                            LXIterativeBlendImages<Image, Blender> steps(
                                Blender({}), images.first, images.second, QRect(), QRect());
                            for (int i = 0; i < 200; ++i)
                                steps();
                        },
                        [](const std::pair<Image, Image>&, const ExhaustionOutcome& outcome) {
                            EXPECT_EQ(outcome.handlerCalls, outcome.threw ? 1 : 0);
                        });
    EXPECT_GE(needed, 2u);
}
