#include "LXConvertImage.h"
#include "LXImageTransformation.h"
#include "LXTransformImage.h"
#include "LXTransformImagePixel.h"
#include "geometry/Interpolation.h"
#include "support/ExhaustionSweep.h"
#include "support/Pictures.h"
#include "support/ReferenceGeometry.h"
#include "support/Uncopyable.h"

#include <gtest/gtest.h>

#include <array>
#include <iomanip>
#include <optional>
#include <utility>
#include <vector>

namespace {

const TestPool testPool; // of all tests

using Image = LXImageRGBA32i;
using Reference::Sample;

struct Quality {
    const char* name;
    bool (*transform)(const Image&, const QTransform&, Image&, const QRect&);
    Sample (*reference)(const Image&, const QTransform&, int, int);
    int passes; ///< of the prefilter
};

const Quality qualities[] = {
    {"nearest", NearestNeighbourTransformImage, Reference::Nearest, 0},
    {"bilinear", BilinearTransformImage, Reference::Bilinear, 1},
    {"bicubic", BicubicTransformImage, Reference::Bicubic, 3},
};

/// What `sample` makes of the destination's pixels in the area that a part of the source comes to
/// lie on.
Image Expected(const Image& source, const QTransform& transform, const Image& destination,
               Sample (*sample)(const Image&, const QTransform&, int, int),
               const QRect& part = QRect()) {
    const QRect area = transform.mapRect(part.isValid() ? part : LXImageRect(source));
    const QTransform inverse = transform.inverted();
    return MakeImage(destination.GetWidth(), destination.GetHeight(), [&](int x, int y) {
        const Sample pixel = area.contains(x, y) ? sample(source, inverse, x, y) : Sample();
        return pixel.value_or(destination.GetColor(x, y));
    });
}

/// Of every type that QTransform tells apart, of about the size of the source.
QTransform RandomTransform(RandomPixels& random, int type) {
    const auto number = [&](double low, double high) {
        return low + (high - low) * random.Below(1 << 20) / (1 << 20);
    };
    QTransform t;
    if (type >= 1)
        t.translate(number(-60, 60), number(-60, 60));
    if (type == 2 || type == 4)
        t.scale(number(0.6, 3) * (random.Below(2) ? 1 : -1), number(0.6, 3));
    if (type == 3)
        t.rotate(number(0, 360));
    if (type == 4)
        t.shear(number(-0.5, 0.5), number(-0.5, 0.5));
    if (type == 5)
        t = QTransform(number(0.8, 1.5), number(-0.2, 0.2), number(-1e-3, 1e-3), number(-0.2, 0.2),
                       number(0.8, 1.5), number(-1e-3, 1e-3), number(-50, 50), number(-50, 50), 1);
    if (type >= 2 && type <= 4 && random.Below(2)) // too small to count for Qt, and not 0
        t = QTransform(t.m11(), t.m12() + 1e-13, t.m21() - 1e-13, t.m22(), t.dx(), t.dy());
    return t;
}

/// Half of the times.
QRect RandomPart(RandomPixels& random, const QSize& size) {
    const int width = size.width(), height = size.height();
    if (random.Below(2))
        return QRect();
    const int x = int(random.Below(unsigned(width))), y = int(random.Below(unsigned(height)));
    return QRect(x, y, 1 + int(random.Below(unsigned(width - x))),
                 1 + int(random.Below(unsigned(height - y))));
}

} // namespace

TEST(ImageTransformation, MapsRowsAsQtMapsPoints) {
    RandomPixels random(18);
    unsigned int types = 0;
    for (int round = 0; round < 6000; ++round) {
        QTransform transform = RandomTransform(random, round % 6);
        if (round % 5 == 0) // what is too small to count for the type does not count at all
            transform = QTransform(transform.m11() + 1e-13, transform.m12(), transform.m13(),
                                   transform.m21(), transform.m22(), transform.m23() + 1e-14,
                                   transform.m31() + 1e-13, transform.m32(), transform.m33());
        types |= transform.type();
        const int x = int(random.Below(40000)) - 20000, y = int(random.Below(40000)) - 20000;
        const unsigned int count = 1 + random.Below(LXRows::RunLength);
        LXRows::Positions places;
        LXRows::Map(transform, x, y, count, places);
        for (unsigned int i = 0; i < count; ++i) {
            double expectedX, expectedY;
            transform.map(x + int(i) + 0.5, y + 0.5, &expectedX, &expectedY);
            ASSERT_EQ(places.x[i], expectedX) << "round " << round << " pixel " << i;
            ASSERT_EQ(places.y[i], expectedY) << "round " << round << " pixel " << i;
        }
    }
    EXPECT_EQ(types, 31u) << "a type was left out";
}

TEST(ImageTransformation, SamplesAsTheFormulasDo) {
    RandomPixels random(1);
    const Image source = RandomImage(301, 170, 2), canvas = RandomImage(330, 260, 3);
    for (const Quality& quality : qualities)
        for (int round = 0; round < 42; ++round) {
            const QTransform transform = RandomTransform(random, round % 6);
            const QRectF box = transform.mapRect(QRectF(0, 0, 301, 170));
            if (quality.passes && (box.width() <= 301 * 0.5 || box.height() <= 170 * 0.5))
                continue;
            SCOPED_TRACE(testing::Message() << quality.name << " round " << round);
            const QRect rect = RandomPart(random, SizeOf(source));
            Image destination(canvas);
            EXPECT_TRUE(quality.transform(source, transform, destination, rect));
            ASSERT_TRUE(SamePixels(destination,
                                   Expected(source, transform, canvas, quality.reference, rect)));
        }
}

TEST(ImageTransformation, IsExactForIdentityShiftsAndQuarterTurns) {
    const Image source = RandomImage(200, 150, 4);
    for (const Quality& quality : qualities) {
        SCOPED_TRACE(quality.name);
        for (const QTransform& transform :
             {QTransform(), QTransform::fromTranslate(10, 7), QTransform(0, 1, -1, 0, 150, 0)}) {
            Image image(210, 200);
            EXPECT_TRUE(quality.transform(source, transform, image, QRect()));
            EXPECT_TRUE(SamePixels(
                image, Expected(source, transform, Image(210, 200), Reference::Nearest)));
        }
    }
    // By half a pixel the left edge is extrapolated, the right one repeated.
    Image row(2, 1), result(2, 1);
    row.SetColor(0, 0, {100, 100, 100, 100});
    row.SetColor(1, 0, {140, 140, 140, 140});
    LXTransformImagePixel<Image, LXBilinearTransformation>()(
        result, LXImageRect(result),
        LXBilinearTransformation(row, QTransform::fromTranslate(-0.5, 0)));
    EXPECT_EQ(result.GetColor(0, 0).red, 80);
    EXPECT_EQ(result.GetColor(1, 0).red, 120);
}

TEST(ImageTransformation, FiltersBeforeItReduces) {
    const Image source = RandomImage(150, 131, 5), canvas = RandomImage(310, 140, 6);
    const struct {
        double x, y;
        int radiusX, radiusY; ///< 0 for no blur
        bool isNearest;
    } cases[] = {
        {0.5, 0.5, 1, 1, true},  {0.51, 0.51, 0, 0, false}, {2, 0.4, 0, 1, false},
        {0.3, 1, 2, 0, false},   {0.5, 0.99, 1, 1, true},   {0.25, 0.8, 2, 1, true},
        {0.08, 0.1, 6, 5, true},
    };
    for (const Quality& quality : {qualities[1], qualities[2]})
        for (const auto& c : cases) {
            SCOPED_TRACE(testing::Message() << quality.name << " " << c.x << " " << c.y);
            Image blurred(source);
            for (int pass = 0; pass < quality.passes && c.radiusX; ++pass)
                blurred = Reference::BoxBlur(blurred, c.radiusX, true);
            for (int pass = 0; pass < quality.passes && c.radiusY; ++pass)
                blurred = Reference::BoxBlur(blurred, c.radiusY, false);
            const QTransform transform = QTransform::fromScale(c.x, c.y);
            Image destination(canvas);
            const Image before(source);
            EXPECT_TRUE(quality.transform(source, transform, destination, QRect()));
            EXPECT_TRUE(SamePixels(destination,
                                   Expected(blurred, transform, canvas,
                                            c.isNearest ? Reference::Nearest : quality.reference)));
            EXPECT_TRUE(SamePixels(source, before));
        }
}

TEST(ImageTransformation, InterpolatesByAPlainCubic) {
    const Image source(10, 10);
    const LXBicubicTransformation cubic(source, QTransform());
    RandomPixels random(7);
    for (int round = 0; round < 100000; ++round) {
        LXRGBA32i p[4] = {random.Pixel(), random.Pixel(), random.Pixel(), random.Pixel()};
        const double t = random.Below(1 << 16) / 32768.0 - 0.5;
        ASSERT_EQ(cubic.CubicInterpolate(p, t), Reference::Cubic(p, t)) << t;
    }
    LXRGBA32i p[4] = {{1, 1, 1, 1}, {2, 2, 2, 2}, {9, 9, 9, 9}, {3, 3, 3, 3}};
    EXPECT_EQ(cubic.CubicInterpolate(p, 1e30), Reference::Cubic(p, 1e30));
    EXPECT_EQ(cubic.CubicInterpolate(p, std::nan("")), LXRGBA32i{});
}

/// All pairs of levels, at places where fixed point serves, just serves, and does not.
TEST(ImageTransformation, InterpolatesBetweenAllPairsOfLevels) {
    std::vector<double> places = {0,     0.25,          0.5,         1.0 / 3,      0.5 + 1e-9,
                                  -0.25, 0.5 + 1e-13,   0.5 - 1e-13, 1 - 1e-15,    -0.5 + 1e-12,
                                  -0.5,  1.0 / 4194304, 1.0 / 8e6,   1 - 1.0 / 8e6};
    RandomPixels random(17);
    for (int i = 0; i < 30; ++i)
        places.push_back(random.Below(1 << 30) / double(1 << 30) * 1.5 - 0.5);
    for (const double t : places)
        for (int a = 0; a < 256; ++a)
            for (int b = 0; b < 256; b += 4) {
                const auto byte = [](int level) { return std::uint8_t(level); };
                const LXRGBA32i pair[2] = {{byte(a), byte(a), byte(a), byte(a)},
                                           {byte(b), byte(b + 1), byte(b + 2), byte(b + 3)}};
                LXRGBA32i result;
                LXRows::LinearAlong(pair, &t, &result, 1);
                ASSERT_EQ(result, Reference::Line(pair[0], pair[1], t))
                    << a << " " << b << " " << t;
            }
}

TEST(ImageTransformation, ObjectsGiveOnePixelAsTheyGiveRuns) {
    const Image source = RandomImage(300, 200, 8);
    QTransform turn;
    turn.translate(20, -30);
    turn.rotate(20);
    const auto check = [&](const auto& sampling, const QTransform& inverse, auto reference) {
        const auto copy = sampling;
        std::array<LXRGBA32i, 300> run;
        for (const int y : {-5, 0, 1, 2, 3, 40, 125, 126}) {
            run.fill({1, 2, 3, 4});
            sampling.TransformRun(-10, y, run.data(), 300);
            for (int i = 0; i < 300; ++i) {
                LXRGBA32i pixel{1, 2, 3, 4};
                copy(i - 10, y, pixel);
                const Sample expected = reference(source, inverse, i - 10, y);
                ASSERT_EQ(pixel, expected.value_or(LXRGBA32i{1, 2, 3, 4})) << i << " " << y;
                ASSERT_EQ(run[std::size_t(i)], pixel) << i << " " << y;
            }
        }
    };
    std::vector<QTransform> inverses = {turn};
    // Rounding noise before the next pixel, or before the first, is taken for that pixel.
    for (const double shift : {0.5, 1.0, -0.5, -1.0})
        for (const double noise : {-3e-16, -2.2e-16, -1.1e-16, 1.1e-16, 1e-9})
            inverses.push_back(QTransform::fromTranslate(shift + noise, shift + noise));
    for (const QTransform& inverse : inverses) {
        SCOPED_TRACE(testing::Message() << std::setprecision(17) << "shift " << inverse.dx());
        check(LXNearestNeighbourTransformation(source, inverse), inverse, Reference::Nearest);
        check(LXBilinearTransformation(source, inverse), inverse, Reference::Bilinear);
        check(LXBicubicTransformation(source, inverse), inverse, Reference::Bicubic);
    }
}

TEST(ImageTransformation, RefusesAndPassesOverWhatItMust) {
    const Image source = RandomImage(200, 150, 9), canvas = RandomImage(140, 140, 10);
    const QTransform singular(0, 0, 0, 0, 0, 0);
    for (const Quality& quality : qualities) {
        SCOPED_TRACE(quality.name);
        const LogCapture log;
        Image image(canvas);
        EXPECT_FALSE(quality.transform(source, singular, image, QRect()));
        EXPECT_TRUE(quality.transform(Image(0, 5), singular, image, QRect()));
        EXPECT_TRUE(quality.transform(source, QTransform::fromTranslate(900, 0), image, QRect()));
        EXPECT_TRUE(quality.transform(source, QTransform::fromScale(1e-5, 1), image, QRect()));
        EXPECT_TRUE(SamePixels(image, canvas));
        EXPECT_TRUE(LogCapture::Lines().isEmpty());
        // Where the mapped rectangle does not fit into int nothing is written.
        EXPECT_TRUE(quality.transform(source, QTransform::fromScale(1e9, 1e9), image, QRect()));
        EXPECT_TRUE(SamePixels(image, canvas));
        // A horizon in the picture.
        const QTransform horizon(1, 0, 0.02, 0, 1, 0.01, -50, 3, -1);
        EXPECT_TRUE(quality.transform(source, horizon, image, QRect()));
        EXPECT_FALSE(SamePixels(image, canvas));
        EXPECT_TRUE(SamePixels(image, Expected(source, horizon, canvas, quality.reference)));
        // Onto itself: as from a copy.
        Image self(source);
        QTransform turn;
        turn.rotate(10);
        EXPECT_TRUE(quality.transform(self, turn, self, QRect()));
        Image other(source);
        EXPECT_TRUE(quality.transform(source, turn, other, QRect()));
        EXPECT_TRUE(SamePixels(self, other));
        Image holes(source);
        holes.GetTileRow(0)[1] = nullptr;
        EXPECT_TRUE(quality.transform(holes, QTransform(), self, QRect()));
        EXPECT_EQ(self.GetColor(199, 20), LXRGBA32i{});
        EXPECT_TRUE(quality.transform(source, turn, holes, QRect()));
    }
}

TEST(ImageTransformation, RunsOutOfTilesCleanly) {
    const auto make = [] { return std::pair(RandomImage(200, 150, 11), Image(300, 200)); };
    for (const Quality& quality : qualities)
        for (const double scale : {1.2, 0.5}) {
            QTransform transform;
            transform.rotate(8);
            transform.scale(scale, scale);
            bool result = true;
            const auto operate = [&](auto& images) {
                result = quality.transform(images.first, transform, images.second, QRect());
            };
            const auto check = [&](const auto& images, const ExhaustionOutcome& outcome) {
                EXPECT_FALSE(outcome.threw);
                EXPECT_EQ(outcome.log.size(), outcome.handlerCalls);
                EXPECT_EQ(result, outcome.handlerCalls == 0);
                for (const QString& line : outcome.log)
                    EXPECT_TRUE(line.contains(QStringLiteral("src/LXImageTransformation.cpp")));
                EXPECT_TRUE(SamePixels(images.first, RandomImage(200, 150, 11)));
            };
            EXPECT_GE(SweepExhaustion(make, operate, check), 1u);
        }
}

// ---- the plain transformation -------------------------------------------------------------------

namespace {

/// The source pixel of a destination pixel.
std::optional<QPoint> PlainPlace(const QTransform& inverse, int x, int y, const QRect& rect) {
    double sx, sy;
    inverse.map(x + 0.5, y + 0.5, &sx, &sy);
    const QPoint place(Reference::Int(sx < -1e-10 ? -1 : sx),
                       Reference::Int(sy < -1e-10 ? -1 : sy));
    if (!rect.contains(place))
        return {};
    return place;
}

LXImageCMYKA RandomCMYK(unsigned int width, unsigned int height, unsigned int seed) {
    RandomPixels random(seed);
    const auto byte = [&] { return random.Byte(); };
    return MakeImage<LXImageCMYKA>(width, height, [&](int, int) {
        return LXCMYKA{byte(), byte(), byte(), byte(), byte(), {1, 2, 3}};
    });
}

QRgb PlainRGB(const LXCMYKA& p) {
    const auto fraction = [](int byte) { return byte * 256 / 65535.0; };
    const auto light = [&](int ink) {
        const double c = fraction(ink), k = fraction(p.black);
        return unsigned(std::floor((1 - (c * (1 - k) + k)) * 65535 + 0.5)) >> 8;
    };
    return light(p.cyan) << 16 | light(p.magenta) << 8 | light(p.yellow) | unsigned(p.alpha) << 24;
}

QRgb PlainRGB(const LXRGBA32i& p) {
    return unsigned(p.red) << 16 | unsigned(p.green) << 8 | p.blue | unsigned(p.alpha) << 24;
}

template <class Source>
void CheckPlain(const Source& source, const Source& canvas) {
    RandomPixels random(12);
    for (int round = 0; round < 36; ++round) {
        SCOPED_TRACE(testing::Message() << "round " << round);
        QTransform transform = RandomTransform(random, round % 6);
        if (round == 7)
            transform = QTransform::fromTranslate(3 + 0.5 + 1e-11, 0.5 + 1e-9);
        const QRect rect = RandomPart(random, SizeOf(source));
        const QRect part = rect.isValid() ? rect : LXImageRect(source);
        Source image(canvas), expected(canvas);
        QImage picture(SizeOf(canvas), QImage::Format_ARGB32);
        picture.fill(0x12345678);
        QImage expectedPicture = picture.copy();
        const QTransform inverse = transform.inverted();
        for (int y = 0; y < picture.height(); ++y)
            for (int x = 0; x < picture.width(); ++x)
                if (const auto place = PlainPlace(inverse, x, y, part)) {
                    const auto pixel = source.GetColor(place->x(), place->y());
                    expected.SetColor(x, y, pixel);
                    expectedPicture.setPixel(x, y, PlainRGB(pixel));
                }
        EXPECT_TRUE(TransformImage(source, transform, image, rect));
        ASSERT_TRUE(SamePixels(image, expected));
        EXPECT_TRUE(TransformImage(source, transform, picture, rect));
        ASSERT_EQ(picture, expectedPicture);
    }
    const QTransform singular(1, 1, 1, 1, 0, 0);
    Source image(canvas);
    QImage wrong(9, 9, QImage::Format_RGB32);
    wrong.fill(5);
    EXPECT_FALSE(TransformImage(source, singular, image, QRect()));
    EXPECT_FALSE(TransformImage(source, QTransform(), wrong, QRect()));
    EXPECT_TRUE(SamePixels(image, canvas));
    EXPECT_EQ(wrong.pixel(0, 0), 0xFF000005U);
    QImage none(0, 0, QImage::Format_ARGB32);
    EXPECT_FALSE(TransformImage(source, QTransform(), none, QRect())) << "it has no format";
    for (const QRect& rect : {QRect(), QRect(0, 0, 5, 5)}) {
        EXPECT_TRUE(TransformImage(Source(0, 0), QTransform(), image, rect));
        EXPECT_TRUE(TransformImage(Source(0, 9), QTransform(), image, rect));
    }
    EXPECT_TRUE(SamePixels(image, canvas));
    Source self(source), other(source);
    EXPECT_TRUE(TransformImage(self, QTransform::fromTranslate(1, 1), self, QRect()));
    EXPECT_TRUE(TransformImage(source, QTransform::fromTranslate(1, 1), other, QRect()));
    EXPECT_TRUE(SamePixels(self, other));
}

} // namespace

TEST(TransformImage, CopiesAsThePlainLoopDoes) {
    CheckPlain(RandomImage(301, 170, 13), RandomImage(330, 260, 14));
}

TEST(TransformImage, CopiesCMYK) {
    CheckPlain(RandomCMYK(301, 170, 15), RandomCMYK(330, 260, 16));
}

TEST(TransformImage, EndsAtAMissingTileFromRGBToRGBOnly) {
    Image source(300, 100), image(300, 100);
    source.Fill({1, 1, 1, 1});
    source.GetTileRow(0)[1] = nullptr;
    EXPECT_FALSE(TransformImage(source, QTransform(), image, QRect()));
    EXPECT_EQ(image.GetColor(127, 99).red, 1);
    EXPECT_EQ(image.GetColor(299, 99).red, 0);
    QImage picture(300, 100, QImage::Format_ARGB32);
    picture.fill(0);
    EXPECT_TRUE(TransformImage(source, QTransform(), picture, QRect()));
    EXPECT_EQ(picture.pixel(150, 50), 0U);
    EXPECT_EQ(picture.pixel(299, 99), 0x01010101U);
    // A rectangle that reaches beyond the source finds no tiles there either.
    EXPECT_FALSE(TransformImage(image, QTransform::fromTranslate(500, 0), image,
                                QRect(-1000, 0, 2000, 100)));
}

TEST(TransformImage, APictureThatCannotBeDetachedStays) {
    const LogCapture log;
    ExpectThatAPictureWhichCannotBeDetachedStays(
        [](QImage& picture) { TransformImage(Image(20, 10), QTransform(), picture, QRect()); });
    ExpectThatAPictureWhichCannotBeDetachedStays([](QImage& picture) {
        TransformImage(LXImageCMYKA(20, 10), QTransform(), picture, QRect());
    });
    EXPECT_EQ(LogCapture::Lines().filter(QStringLiteral("std::bad_alloc")).size(),
              IsSkipped() ? 0 : 2);
}

TEST(TransformImage, RunsOutOfTilesCleanly) {
    const auto make = [] {
        const Image image(300, 200);
        return std::pair(image, image);
    };
    const auto enlarge = [](auto& images) {
        TransformImage(images.first, QTransform::fromScale(1.5, 1.5), images.second, QRect());
    };
    const auto check = [](const auto&, const ExhaustionOutcome& outcome) {
        EXPECT_EQ(outcome.threw, outcome.handlerCalls == 1);
        EXPECT_EQ(outcome.log.size(), outcome.threw ? 1 : 0);
    };
    EXPECT_EQ(SweepExhaustion(make, enlarge, check), 6u);
}
