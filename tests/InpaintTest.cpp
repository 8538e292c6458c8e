#include "LXConvertImage.h"
#include "LXInpaint.h"
#include "LXInpaintIterative.h"
#include "LXTileWalk.h"
#include "LXTransformImageColors.h"
#include "support/ExhaustionSweep.h"
#include "support/Pictures.h"
#include "support/ReferenceInpaint.h"

#include <QtGui/QVector2D>

#include <climits>
#include <cmath>

namespace {

using Image = LXImageRGBA32i;
using Reference::Bounds;
using Reference::Words;

constexpr std::uint32_t Hole = 0xFF000000;

/// Marks with random values: whole shapes, and all that makes windows hard to find.
class Holes {
public:
    explicit Holes(unsigned int seed) : m_random(seed) {}

    unsigned int Below(unsigned int n) { return m_random.Below(n); }

    Words Mask(int width, int height) {
        Words mask(width, height);
        m_mask = &mask;
        const int shapes = int(Below(5));
        for (int i = 0; i < shapes; ++i)
            Draw(int(Below(9)), int(Below(unsigned(width))), int(Below(unsigned(height))));
        for (int i = 0; i < 6 && width > 140 && height > 140; ++i)
            Draw(int(Below(6)), 110 + int(Below(25)), 110 + int(Below(25))); // where tiles meet
        return mask;
    }

    Words Picture(int width, int height) {
        Words picture(width, height);
        for (std::uint32_t& word : picture.pixels)
            word = Hole | (m_random.Below(1U << 24) & (Below(2) ? 0xFFFFFF : 0x010101));
        return picture;
    }

private:
    void Set(int x, int y) {
        if (m_mask->Has(x, y))
            m_mask->At(x, y) = Hole | m_random.Below(1U << 24);
    }

    void Draw(int kind, int x, int y) {
        const int size = 1 + int(Below(30)), dx = int(Below(3)) - 1, dy = int(Below(3)) - 1;
        switch (kind) {
        case 0: // specks
            for (int i = 0; i < size; ++i)
                Set(x + int(Below(9)), y + int(Below(9)));
            break;
        case 1: // lines of all directions
        case 2:
            for (int i = 0; i < size; ++i)
                Set(x + i * dx, y + i * dy);
            break;
        case 3: // rectangles, also up to the border
            for (int i = 0; i < size * 8; ++i)
                Set(x + i % size, y + i / size);
            break;
        case 4: // discs
            for (int i = 0; i < size * size; ++i) {
                const int u = i % size - size / 2, v = i / size - size / 2;
                if (4 * (u * u + v * v) < size * size)
                    Set(x + u, y + v);
            }
            break;
        case 5: // bands from end to end
            for (int i = 0; i < m_mask->width; ++i)
                for (int k = 0; k < 1 + size / 4; ++k)
                    dx ? Set(i, y + k + i / 7) : Set(i, y + k);
            break;
        case 6: // one side of the picture, with a rugged rim
            for (int i = 0; i < m_mask->height; ++i)
                for (int k = 0; k < x + i * size % 7; ++k)
                    dx > 0 ? Set(k, i) : Set(m_mask->width - 1 - k, i);
            break;
        case 7: // noise
            for (int i = 0; i < m_mask->width * m_mask->height / 6; ++i)
                Set(int(Below(unsigned(m_mask->width))), int(Below(unsigned(m_mask->height))));
            break;
        case 8: // everything, now and then
            for (int i = 0; Below(4) == 0 && i < m_mask->width * m_mask->height; ++i)
                Set(i % m_mask->width, i / m_mask->width);
        }
    }

    RandomPixels m_random;
    Words* m_mask = nullptr;
};

QImage ToQImage(const Words& words) {
    QImage image(words.width, words.height, QImage::Format_ARGB32);
    for (int y = 0; y < words.height; ++y)
        std::memcpy(image.scanLine(y), &words.pixels[std::size_t(y) * std::size_t(words.width)],
                    std::size_t(words.width) * 4);
    return image;
}

Image ToTiles(const Words& words) {
    return ConvertImage<QImage, Image>(ToQImage(words));
}

testing::AssertionResult Same(const QImage& image, const Words& words) {
    if (image.size() != QSize(words.width, words.height))
        return testing::AssertionFailure() << "sizes differ";
    for (int y = 0; y < words.height; ++y)
        for (int x = 0; x < words.width; ++x) {
            std::uint32_t word;
            std::memcpy(&word, image.constScanLine(y) + 4 * x, 4);
            if (word != words.At(x, y))
                return testing::AssertionFailure() << std::hex << word << " and " << words.At(x, y)
                                                   << std::dec << " at " << x << ", " << y;
        }
    return testing::AssertionSuccess();
}

testing::AssertionResult Same(const Image& image, const Words& words) {
    return Same(ConvertImage<Image, QImage>(image), words);
}

} // namespace

TEST(Inpaint, FillsHolesAsPassByPass) {
    for (unsigned int seed = 0; seed < 1500; ++seed) {
        Holes holes(seed);
        const int width = 1 + int(holes.Below(50)), height = 1 + int(holes.Below(50));
        Words picture = holes.Picture(width, height);
        const Words mask = holes.Mask(width, height);
        for (std::size_t i = 0; i < mask.pixels.size(); ++i)
            if (mask.pixels[i] != 0)
                picture.pixels[i] = picture.pixels[i] - ((1 + holes.Below(255)) << 24);
        QImage image = ToQImage(picture);
        const QImage shared = image;
        LXInpaint inpaint(image);
        inpaint(0);
        ASSERT_TRUE(Same(shared, picture));
        InpaintLayers(picture);
        ASSERT_TRUE(Same(image, picture)) << "seed " << seed;
    }
}

TEST(Inpaint, TakesPicturesOfAnyFormat) {
    Words picture = Holes(3).Picture(20, 10);
    QImage image(20, 10, QImage::Format_RGBA64);
    image.fill(QColor::fromRgba64(0x1234, 0x5678, 0x9abc, 0xffff));
    const QImage opaque = image;
    LXInpaint{image}(0);
    EXPECT_EQ(image.format(), QImage::Format_RGBA64) << "there is nothing to fill";
    EXPECT_EQ(image, opaque);

    picture.At(5, 5) = 0x80402010;
    image = ToQImage(picture).convertToFormat(QImage::Format_ARGB32_Premultiplied);
    LXInpaint{image}(1);
    InpaintLayers(picture);
    EXPECT_TRUE(Same(image, picture));

    QImage nothing;
    LXInpaint none(nothing);
    none(0);
    none.initializeField();
    QVector2D out(1, 1);
    none.gradField(0, 0, &out);
    EXPECT_EQ(out, QVector2D());
    none.grad(0, 0, &out, nullptr, nullptr, nullptr);
    none.inpaint(0, 0);
    EXPECT_FALSE(none.inpaint0(0, 0));
    EXPECT_TRUE(nothing.isNull());
}

TEST(Inpaint, EdgesOfMasks) {
    const TestPool pool;
    QImage any(1, 1, QImage::Format_ARGB32);
    LXInpaint inpaint(any);
    for (unsigned int seed = 0; seed < 60; ++seed) {
        RandomPixels random(seed);
        const int width = 1 + int(random.Below(200)), height = 1 + int(random.Below(20));
        Words mask(width, height);
        const unsigned int steps = seed % 3 == 0 ? 2 : seed % 3 == 1 ? 4 : 256;
        for (std::uint32_t& word : mask.pixels)
            word = random.Below(steps) * (255 / (steps - 1)) << 24 | random.Below(1U << 24);
        Words edges = Gradient(mask, {0, 0, width - 1, height - 1}, Reference::Beyond::Clamped);
        for (std::uint32_t& word : edges.pixels)
            word |= 0xFF00;
        ASSERT_TRUE(Same(inpaint.gradient(ToQImage(mask)), edges)) << "seed " << seed;

        const Image tiles = ToTiles(mask);
        Image picture(1, 1);
        const LXInpaintIterative iterative(picture, tiles, QRect(), QRect());
        const int left = int(random.Below(unsigned(width))),
                  top = int(random.Below(unsigned(height)));
        const int right = left + int(random.Below(unsigned(width - left)));
        const int bottom = top + int(random.Below(unsigned(height - top)));
        ASSERT_TRUE(Same(iterative.Gradient(tiles, QRect(QPoint(left, top), QPoint(right, bottom))),
                         Gradient(mask, {left, top, right, bottom}, Reference::Beyond::Zero)))
            << "seed " << seed;
        ASSERT_TRUE(SamePixels(iterative.Gradient(tiles, QRect(-9, -9, 999, 999)),
                               iterative.Gradient(tiles, LXImageRect(tiles))));
        ASSERT_TRUE(Same(iterative.Gradient(tiles, QRect(5, 5, -9, 1)), Words(width, height)));
    }
    QImage band(7, 5, QImage::Format_ARGB32);
    band.fill(0x00FFFFFF);
    EXPECT_TRUE(inpaint.maskRect(band, QRect()).isEmpty());
    band.setPixel(2, 1, 0x01000000);
    band.setPixel(5, 3, 0xFF000000);
    EXPECT_EQ(inpaint.maskRect(band, QRect()), QRect(2, 1, 4, 3));
    EXPECT_EQ(inpaint.maskRect(band, QRect(3, 0, 90, 90)), QRect(5, 3, 1, 1));
}

TEST(InpaintIterative, EachPassIsThatOfTheReference) {
    const TestPool pool;
    for (unsigned int seed = 0; seed < 250; ++seed) {
        Holes holes(seed);
        const int least = seed % 4 == 0 ? 141 : 1; // four tiles, or one
        const int width = least + int(holes.Below(60)), height = least + int(holes.Below(60));
        // The holes lie in the rectangle, often at its border, or beyond.
        Words mask = holes.Mask(width, height);
        for (std::uint32_t& word : mask.pixels) // soft ones are known, and have edges of their own
            if (seed % 5 == 0 && holes.Below(9) == 0 && word < Hole)
                word = holes.Below(255) << 24;
        Bounds rect = {0, 0, width - 1, height - 1};
        if (seed % 3 != 0) {
            rect.left = int(holes.Below(unsigned(width)));
            rect.top = int(holes.Below(unsigned(height)));
            rect.right -= int(holes.Below(unsigned(width - rect.left)));
            rect.bottom -= int(holes.Below(unsigned(height - rect.top)));
        }
        const int dx = int(holes.Below(100)) - rect.left, dy = int(holes.Below(9)) - rect.top;
        // Now and then the picture ends before the hole: passes that need what is beyond end there.
        const bool cut = seed % 7 == 0;
        const int wide = rect.right + dx + 5, high = rect.bottom + dy + 5;
        const Words before = holes.Picture(cut ? 1 + int(holes.Below(unsigned(wide))) : wide,
                                           cut ? 1 + int(holes.Below(unsigned(high))) : high);
        const LogCapture log;
        Words expected = before, backwards = before;
        Reference::BandInpaint reference(expected, mask, rect, dx, dy);
        Reference::BandInpaint reversed(backwards, mask, rect, dx, dy);

        const Image given = ToTiles(mask), shared = ToTiles(before);
        Image image(shared);
        const QRect maskRect(QPoint(rect.left, rect.top), QPoint(rect.right, rect.bottom));
        LXInpaintIterative inpaint(image, given, maskRect.translated(dx, dy), maskRect);
        for (bool more = true; more;) {
            more = reference.Pass(Reference::Order::Tiles);
            reversed.Pass(Reference::Order::Backwards);
            ASSERT_EQ(inpaint(), more) << "seed " << seed;
            ASSERT_TRUE(Same(image, expected)) << "seed " << seed;
            if (!cut) {
                ASSERT_EQ(expected.pixels, backwards.pixels) << "the order of the visits matters";
            }
        }
        EXPECT_FALSE(inpaint());
        ASSERT_TRUE(Same(given, mask));
        ASSERT_TRUE(Same(shared, before));
        std::int64_t filled = 0;
        for (std::size_t i = 0; i < mask.pixels.size(); ++i)
            filled += mask.pixels[i] != reference.mask.pixels[i];
        ASSERT_EQ(inpaint.GetFilledCount(), filled);
    }
}

TEST(InpaintIterative, AnApplicationMayVisitTheBandItself) {
    const TestPool pool;
    const QRect all(0, 0, 60, 50);
    for (unsigned int seed = 0; seed < 60; ++seed) {
        Holes holes(seed);
        const Words mask = holes.Mask(all.width(), all.height());
        Words expected = holes.Picture(all.width(), all.height());
        Image image = ToTiles(expected);
        Reference::BandInpaint reference(expected, mask, {0, 0, all.right(), all.bottom()}, 0, 0);
        LXInpaintIterative owner(image, ToTiles(mask), all, all);
        for (bool more = true; more;) {
            const Image band = ToTiles(reference.band);
            LXInpaintIterative::IterateBandPixels pass(owner);
            LXVisitImagePixel<Image, decltype(pass)>()(band, all, pass);
            more = reference.Pass(Reference::Order::Tiles);
            ASSERT_EQ(pass.CanContinue(), more) << "seed " << seed;
            ASSERT_TRUE(Same(image, expected)) << "seed " << seed;
            pass.Finish();
            for (int y = 0; y < all.height(); ++y)
                for (int x = 0; x < all.width(); ++x)
                    ASSERT_EQ(pass.IsKnown(x, y), reference.mask.At(x, y) < Hole);
            const Bounds& bound = reference.bandRect;
            if (more) {
                ASSERT_EQ(pass.GetBandBoundRect(),
                          QRect(QPoint(bound.left, bound.top), QPoint(bound.right, bound.bottom)));
            }
        }
    }
}

TEST(InpaintIterative, OnePixelIsFilledInTheFirstPass) {
    const TestPool pool;
    // Seven of level 1 and one of level 5: a mean of 1.5.
    Words picture(9, 9, 0xFF010101);
    picture.At(5, 4) = 0xFF050505;
    picture.At(4, 4) = 0;
    QImage image = ToQImage(picture);
    LXInpaint{image}(0);
    EXPECT_EQ(image.pixel(4, 4), 0xFF020202) << "rounded";

    Words mask(9, 9);
    mask.At(4, 4) = Hole;
    Image tiles = ToTiles(picture);
    LXInpaintIterative inpaint(tiles, ToTiles(mask), QRect(0, 0, 9, 9), QRect(0, 0, 9, 9));
    EXPECT_TRUE(inpaint());
    EXPECT_EQ(tiles.GetColor(4, 4), (LXRGBA32i{1, 1, 1, 255})) << "truncated";
    EXPECT_EQ(inpaint.GetFilledCount(), 1);
    EXPECT_FALSE(inpaint());
}

TEST(InpaintIterative, NothingToDo) {
    const TestPool pool;
    const Words picture = Holes(1).Picture(40, 30);
    Image image = ToTiles(picture);
    const Image opaque = ToTiles(Words(40, 30, Hole));
    for (const QRect& rect : {QRect(), QRect(5, 5, -1, 9), QRect(QPoint(20, 3), QPoint(2, 20))}) {
        LXInpaintIterative inpaint(image, opaque, QRect(0, 0, 40, 30), rect);
        EXPECT_FALSE(inpaint());
    }
    LXInpaintIterative none(image, Image(40, 30), QRect(0, 0, 40, 30), QRect(0, 0, 40, 30));
    EXPECT_FALSE(none());
    // A rectangle larger than the mask: beyond it nothing is known.
    Words corner(40, 30);
    corner.At(38, 28) = corner.At(39, 29) = Hole;
    Words expected = picture;
    for (int y = 4; y < 20;
         ++y) // to the right edge of the mask, which is not that of the rectangle
        for (int x = 30; x < 40; ++x)
            corner.At(x, y) = Hole;
    Reference::BandInpaint reference(expected, corner, {-9, -9, 80, 80}, 0, 0);
    const QRect beyondRect(-9, -9, 90, 90);
    LXInpaintIterative beyond(image, ToTiles(corner), beyondRect, beyondRect);
    while (reference.Pass(Reference::Order::Tiles))
        ASSERT_TRUE(beyond());
    EXPECT_FALSE(beyond());
    EXPECT_TRUE(Same(image, expected));
    Image again = ToTiles(picture);
    LXInpaintIterative wide(again, ToTiles(corner),
                            QRect(QPoint(-2000000000, -9), QPoint(2000000000, 80)),
                            QRect(QPoint(-2000000000, -9), QPoint(2000000000, 80)));
    while (wide()) {
    }
    EXPECT_TRUE(Same(again, expected));
}

TEST(InpaintIterative, LogsPixelsThatAreNotInThePicture) {
    const TestPool pool;
    Words mask(40, 40);
    for (int i = 15; i < 25; ++i)
        mask.At(i, 20) = mask.At(20, i) = Hole;
    const Words before = Holes(2).Picture(22, 22);
    for (const QPoint& offset : {QPoint(0, 0), QPoint(-20, 0), QPoint(INT_MAX - 50, INT_MIN)}) {
        Image image = ToTiles(before);
        LXInpaintIterative inpaint(image, ToTiles(mask), QRect(offset, QSize(40, 40)),
                                   QRect(0, 0, 40, 40));
        const LogCapture log;
        int passes = 0;
        while (inpaint())
            ASSERT_LT(++passes, 100);
        ASSERT_FALSE(LogCapture::Lines().isEmpty());
        EXPECT_TRUE(LogCapture::Lines()[0].endsWith(QStringLiteral(
            "Unexpected exception: line=851, file=\"include/LXTransformImageColors.h\". Exception "
            "content:\"LXImage::GetColor\"")));
    }
}

/// In a lattice of lone pixels all edges cancel, and the band is nothing but them.
TEST(InpaintIterative, LatticesAreFilled) {
    const TestPool pool;
    Words mask(384, 300), picture = Holes(7).Picture(384, 300);
    for (int y = 0; y < 300; y += 2)
        for (int x = 0; x < 384; x += 2)
            mask.At(x, y) = Hole;
    Image image = ToTiles(picture);
    LXInpaintIterative inpaint(image, ToTiles(mask), LXImageRect(image), LXImageRect(image));
    Reference::BandInpaint reference(picture, mask, {0, 0, 383, 299}, 0, 0);
    for (bool more = true; more;) {
        more = reference.Pass(Reference::Order::Tiles);
        ASSERT_EQ(inpaint(), more);
    }
    EXPECT_TRUE(Same(image, picture));
}

TEST(InpaintIterative, RunsOutOfTilesCleanly) {
    // A cross over four tiles, filled in several passes.
    Words mask(300, 260), picture = Holes(5).Picture(300, 260);
    for (int i = 100; i < 160; ++i)
        for (int k = 0; k < 5; ++k)
            mask.At(i, 126 + k) = mask.At(126 + k, i) = Hole;
    Words filled = picture;
    Reference::BandInpaint reference(filled, mask, {0, 0, 299, 259}, 0, 0);
    while (reference.Pass(Reference::Order::Tiles)) {
    }
    struct State {
        Image image, shared, mask;
    };
    const auto make = [&] {
        const Image image = ToTiles(picture);
        return State{image, image, ToTiles(mask)};
    };
    const QRect rect(0, 0, 300, 260);
    const auto operate = [&](State& state) {
        LXInpaintIterative inpaint(state.image, state.mask, rect, rect);
        for (int passes = 0; inpaint(); ++passes)
            ASSERT_LT(passes, 300);
    };
    const auto check = [&](const State& state, const ExhaustionOutcome& outcome) {
        ASSERT_TRUE(Same(state.shared, picture));
        ASSERT_TRUE(Same(state.mask, mask));
        // A layer that could not be filled as a whole changes the means of the next ones.
        for (int y = 0; y < 260; ++y)
            for (int x = 0; x < 300; ++x)
                if (mask.At(x, y) == 0) {
                    ASSERT_EQ(state.image.GetColor(x, y), state.shared.GetColor(x, y));
                }
        if (outcome.handlerCalls == 0) {
            ASSERT_TRUE(Same(state.image, filled));
        }
        for (const QString& line : outcome.log)
            EXPECT_TRUE(line.contains(QStringLiteral("line=851"))) << qPrintable(line);
        EXPECT_EQ(outcome.threw || !outcome.log.isEmpty(), outcome.handlerCalls > 0);
    };
    EXPECT_EQ(SweepExhaustion(make, operate, check), 4U) << "one for each tile that is written";
}

TEST(DistanceInpaint, FieldAndFiller) {
    for (unsigned int seed = 0; seed < 40; ++seed) {
        Holes holes(seed);
        RandomPixels random(seed + 1000);
        const int width = 4 + int(holes.Below(20)), height = 4 + int(holes.Below(20));
        Words picture(width, height);
        const Words mask = holes.Mask(width, height);
        for (std::size_t i = 0; i < mask.pixels.size(); ++i)
            picture.pixels[i] = random.Below(1U << 24) | (mask.pixels[i] ? 77 : 255U) << 24;
        QImage image = ToQImage(picture);
        LXInpaint inpaint(image);
        EXPECT_EQ(inpaint.field(0, 0), 1e7) << "there is no field yet";
        inpaint.initializeField();
        Reference::DistanceInpaint reference = {picture, mask, {}};
        for (int i = 0; i < width * height; ++i) {
            ASSERT_EQ(inpaint.field(i % width, i / width), mask.pixels[std::size_t(i)] ? 1e7 : 0);
            const float distance = float(random.Below(400)) / 100;
            reference.field.push_back(distance);
            inpaint.setField(i % width, i / width, double(distance));
        }
        inpaint.setField(-1, 0, 5);
        inpaint.setField(0, height, 5);
        for (int y = -4; y < height + 4; ++y)
            for (int x = -4; x < width + 4; ++x) {
                ASSERT_EQ(inpaint.field(x, y), reference.Field(x, y));
                ASSERT_EQ(inpaint.IsKnown(x, y), reference.Known(x, y));
                QVector2D g;
                inpaint.gradField(x, y, &g);
                const auto direction = reference.FieldDirection(x, y);
                ASSERT_EQ(g, QVector2D(float(direction[0]), float(direction[1])));
                ASSERT_EQ(inpaint.solve(x, y, x + 1, y + 1), reference.Solve(x, y, x + 1, y + 1));
                inpaint.inpaint(x, y);
                if (reference.image.Has(x, y))
                    reference.image.At(x, y) = reference.Inpaint(x, y);
            }
        ASSERT_TRUE(Same(image, reference.image)) << "seed " << seed;
    }
}

TEST(DistanceInpaint, SolvesTheStepBetweenTwoNeighbours) {
    QImage image(4, 1, QImage::Format_ARGB32);
    image.fill(0xFF000000);
    image.setPixel(3, 0, 0);
    LXInpaint inpaint(image);
    EXPECT_DOUBLE_EQ(inpaint.solve(0, 0, 1, 0), 1e7 + std::sqrt(2) / 2) << "far without a field";
    EXPECT_EQ(inpaint.solve(3, 0, 1, 0), 10000001);
    inpaint.initializeField();
    EXPECT_DOUBLE_EQ(inpaint.solve(0, 0, 1, 0), std::sqrt(2) / 2);
    EXPECT_EQ(inpaint.solve(0, 0, 3, 0), 1);
    EXPECT_EQ(inpaint.solve(3, 0, 9, 0), 1000000);
    inpaint.setField(1, 0, 5);
    EXPECT_EQ(inpaint.solve(0, 0, 1, 0), 1000000) << "too far apart";
    EXPECT_EQ(inpaint.solve(3, 0, 1, 0), 6);
    inpaint.setField(1, 0, 1.25);
    EXPECT_EQ(inpaint.solve(0, 0, 1, 0), 1000000) << "before one of them";
}

TEST(DistanceInpaint, GradientsAndSumsOfTheImage) {
    QImage image(3, 3, QImage::Format_ARGB32);
    const int levels[9] = {1, 2, 4, 8, 16, 32, 64, 128, 255};
    for (int i = 0; i < 9; ++i)
        image.setPixel(i % 3, i / 3, qRgba(levels[i], 255 - levels[i], 7, levels[8 - i]));
    LXInpaint inpaint(image);
    QVector2D red, green, blue, alpha;
    inpaint.grad(1, 1, &red, &green, &blue, &alpha);
    EXPECT_EQ(red, QVector2D(3 + 2 * 24 + 191, 9 - 575));
    EXPECT_EQ(green, -red);
    EXPECT_EQ(blue, QVector2D(0, 0));
    EXPECT_EQ(alpha, -red);
    inpaint.grad(0, 0, &red, nullptr, nullptr, nullptr);
    EXPECT_EQ(red, QVector2D(1 + 2 * 1 + 8, (1 + 2 * 1 + 2) - (8 + 2 * 8 + 16))) << "clamped";
    int a = 1, r = 2, g = 3, b = 4;
    inpaint.sum(2, 0, a, r, g, b);
    inpaint.sum(3, 0, a, r, g, b);
    EXPECT_EQ(inpaint.color(8 * a, 8 * r, 8 * g + 3, 8 * b + 4), qRgba(6, 254, 12, 65));
}
