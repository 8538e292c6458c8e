#include "LXConvertImage.h"
#include "LXTransformImageColors.h"
#include "RMWBTransformation.h"
#include "color/whitebalance/OrderedSum.h"
#include "support/AdjustmentChecks.h"
#include "support/ReferenceWhiteBalance.h"
#include "support/TestPool.h"

#include <algorithm>
#include <climits>
#include <cmath>
#include <functional>
#include <stdexcept>

namespace {

const TestPool testPool; // of all tests

using Data = RMWBTransformation::AlgorithmData;
using Function = RMWBTransformation::BalanceFunction;
using Pixels = std::vector<LXRGBA32i>;
using Doubles = std::vector<double>;

struct Named {
    const char* name;
    LXImageRGBA32i image;
};

LXRGBA32i Colour(int r, int g, int b) {
    const auto byte = [](int v) { return std::uint8_t(std::clamp(v, 0, 255)); };
    return {byte(b), byte(g), byte(r), 255};
}

/// Soft gray shapes with a little colour and noise, under a coloured light.
LXImageRGBA32i Scene(unsigned int width, unsigned int height, double r, double g, double b) {
    RandomPixels random(3);
    return MakeImage(width, height, [&](int x, int y) {
        const double light = 120 + 70 * std::sin(x / 31.0) * std::cos(y / 23.0) + random.Below(12);
        const double tint = 14 * std::sin(x / 57.0 + y / 71.0);
        return Colour(int((light + tint) * r), int(light * g), int((light - tint) * b));
    });
}

std::vector<Named> Pictures() {
    RandomPixels random(2);
    std::vector<Named> pictures = {{"empty", LXImageRGBA32i(0, 0)},
                                   {"one row", RandomImage(1000, 1, 5)},
                                   {"one column", RandomImage(1, 700, 6)},
                                   {"noise", RandomImage(700, 300, 7)},
                                   {"scene", Scene(400, 300, 1, 1, 1)},
                                   {"warm scene", Scene(530, 410, 1.15, 1, 0.7)},
                                   {"dark cold scene", Scene(260, 300, 0.2, 0.3, 0.4)}};
    const auto add = [&](const char* name, unsigned int width, unsigned int height, auto colour) {
        pictures.push_back({name, MakeImage(width, height, colour)});
    };
    for (const unsigned int size : {1U, 150U}) {
        add("black", size, size, [](int, int) { return LXRGBA32i{0, 0, 0, 255}; });
        add("white", size, size, [](int, int) { return LXRGBA32i{255, 255, 255, 0}; });
        add("orange", size, size, [](int, int) { return LXRGBA32i{10, 120, 230, 9}; });
    }
    add("two levels", 130, 3,
        [](int x, int) { return x % 5 ? Colour(100, 100, 100) : Colour(101, 101, 101); });
    add("black and white", 40, 40,
        [](int x, int y) { return (x ^ y) & 1 ? Colour(255, 255, 255) : Colour(0, 0, 0); });
    add("green alone varies", 60, 60, [](int x, int y) { return Colour(90, x + y, 120); });
    add("green is still", 60, 60, [](int x, int y) { return Colour(x + y, 77, 2 * x); });
    // The gain of red is infinite, and the stretch of its one level is 0 / 0.
    add("red is full", 60, 60, [](int x, int y) { return Colour(255, x + y, 2 * x); });
    // The gray pixels have no chroma at all, so there is nothing to take away.
    add("black on red", 60, 60,
        [](int x, int y) { return x < 20 ? Colour(0, 0, 0) : Colour(200 + y / 2, y / 3, y / 4); });
    add("no gray", 200, 90,
        [&](int x, int) { return Colour(255 - x / 4, int(random.Below(30)), x / 9); });
    add("gray from late on", 300, 140,
        [](int x, int y) { return y < 130 ? Colour(250, x % 9, 3) : Colour(x, x, x + 4); });
    return pictures;
}

/// The pixels as the walks meet them: tile by tile.
Pixels InWalkOrder(const LXImageRGBA32i& image) {
    Pixels pixels;
    const int width = int(image.GetWidth()), height = int(image.GetHeight());
    for (int top = 0; top < height; top += 128)
        for (int left = 0; left < width; left += 128)
            for (int y = top; y < std::min(top + 128, height); ++y)
                for (int x = left; x < std::min(left + 128, width); ++x)
                    pixels.push_back(image.GetColor(x, y));
    return pixels;
}

Pixels InWalkOrder(const QImage& image) {
    Pixels pixels;
    for (int y = 0; y < image.height(); ++y)
        for (const LXRGBA32i& pixel : RowOf(image, y))
            pixels.push_back(pixel);
    return pixels;
}

QImage Flat(const LXImageRGBA32i& image) {
    return ConvertImage<LXImageRGBA32i, QImage>(image);
}

/// What both the library and the reference find, by name.
template <class Found>
std::vector<std::pair<const char*, double>> Numbers(const Found& found) {
#define NUMBER(field)                                                                              \
    { #field, double(found.field) }
    return {NUMBER(meanLuma),    NUMBER(meanRed),        NUMBER(meanGreen),  NUMBER(meanBlue),
            NUMBER(hueOffset),   NUMBER(meanCb),         NUMBER(meanCr),     NUMBER(minLuma),
            NUMBER(maxLuma),     NUMBER(minRed),         NUMBER(minGreen),   NUMBER(minBlue),
            NUMBER(maxRed),      NUMBER(maxGreen),       NUMBER(maxBlue),    NUMBER(sdRed),
            NUMBER(sdGreen),     NUMBER(sdBlue),         NUMBER(gainRed),    NUMBER(gainGreen),
            NUMBER(gainBlue),    NUMBER(shiftRed),       NUMBER(scaleGreen), NUMBER(shiftBlue),
            NUMBER(minAll),      NUMBER(maxAll),         NUMBER(mix),        NUMBER(selected),
            NUMBER(shadowLevel), NUMBER(highlightLevel), NUMBER(percent)};
#undef NUMBER
}

void ExpectSame(const Data& data, const Reference::WhiteBalance& expected) {
    const auto found = Numbers(data), wanted = Numbers(expected);
    for (std::size_t i = 0; i < found.size(); ++i) {
        const double a = found[i].second, b = wanted[i].second;
        EXPECT_TRUE(a == b || (std::isnan(a) && std::isnan(b)))
            << found[i].first << ": " << a << " for " << b;
    }
    EXPECT_EQ(data.brightnessMean[0], expected.meanLuma);
    EXPECT_EQ(data.brightnessMean[1], expected.meanLuma);
    EXPECT_EQ(Entries(data.curve), expected.curve);
}

/// All levels of all channels through the three functions.
void ExpectSteps(const LXImageRGBA32i& image, const Reference::WhiteBalance& expected,
                 int percent) {
    const RMWBTransformation balance(image, Function::Auto, percent);
    for (int level = 0; level < 256; ++level) {
        const LXRGBA32i before{std::uint8_t(level), std::uint8_t(255 - level),
                               std::uint8_t(level ^ 0x55), std::uint8_t(level * 3)};
        LXRGBA32i after = before, darker = before, lighter = before;
        balance.Auto(after);
        balance.OverExposure(darker);
        balance.UnderExposure(lighter);
        ASSERT_EQ(after, Reference::Auto(expected, before, percent)) << level << " " << percent;
        ASSERT_EQ(darker, Reference::OverExposure(before, percent)) << level << " " << percent;
        ASSERT_EQ(lighter, Reference::UnderExposure(before, percent)) << level << " " << percent;
    }
}

} // namespace

TEST(WhiteBalance, FindsWhatTheFormulasTell) {
    for (const Named& picture : Pictures()) {
        SCOPED_TRACE(testing::Message() << picture.name << " " << picture.image.GetWidth());
        const Data tiled(picture.image);
        const Reference::WhiteBalance expected = Reference::Analyse(InWalkOrder(picture.image));
        ExpectSame(tiled, expected);
        EXPECT_EQ(tiled.rect, LXImageRect(picture.image));
        for (const int percent : {0, 1, 50, 100})
            ExpectSteps(picture.image, expected, percent);

        const QImage flat = Flat(picture.image);
        const Data ofFlat(flat);
        ExpectSame(ofFlat, Reference::Analyse(InWalkOrder(flat)));
        EXPECT_EQ(ofFlat.rect, flat.rect());
    }
}

TEST(WhiteBalance, OtherFormatsAndMissingTiles) {
    const LXImageRGBA32i noise = RandomImage(300, 140, 8);
    for (const QImage::Format format :
         {QImage::Format_RGB32, QImage::Format_ARGB32_Premultiplied, QImage::Format_RGB16}) {
        const QImage picture = Flat(noise).convertToFormat(format);
        ExpectSame(Data(picture),
                   Reference::Analyse(InWalkOrder(picture.convertToFormat(QImage::Format_ARGB32))));
        Data again;
        again.gainRed = std::nan("");
        again.gainBlue = HUGE_VAL;
        again.CalcGreyWorld(picture); // no conversion of what no pixel can hold
        EXPECT_EQ(again.scaleGreen, 0);
        EXPECT_EQ(again.shiftBlue, HUGE_VAL);
        EXPECT_TRUE(std::isnan(again.shiftRed));
    }

    LXImageRGBA32i gap(noise);
    gap.GetTileRow(0)[1] = nullptr;
    Pixels rest = InWalkOrder(noise);
    rest.erase(rest.begin() + 128 * 128, rest.begin() + 2 * 128 * 128);
    ExpectSame(Data(gap), Reference::Analyse(rest));
    for (unsigned int tile = 0; tile < 6; ++tile)
        gap.GetTileRow(tile / 3)[tile % 3] = nullptr;
    ExpectSame(Data(gap), Reference::Analyse({}));
}

TEST(WhiteBalance, SumsKeepTheBitsOfTheirOrder) {
    RandomPixels random(9);
    int taken = 0;
    for (int round = 0; round < 4000; ++round) {
        LXOrderedSum::Terms terms;
        LXRows::LevelCounts counts{};
        // Of few bits in every third round: these terms are often half-way.
        const double grain = round % 3 == 0 ? 0.25 : 0.001 / 3;
        for (std::size_t i = 0; i < 256; ++i)
            terms[i] = random.Below(100000) * grain;
        const double start = std::ldexp(1 + random.Below(1000000) / 1e6, int(random.Below(60)));
        double inOrder = start, atOnce = start;
        for (int n = int(random.Below(400)); n >= 0; --n) {
            const std::size_t level = random.Below(256);
            ++counts[level];
            inOrder += terms[level];
        }
        const bool isTaken = LXOrderedSum::AddCounted(atOnce, terms, counts);
        ASSERT_EQ(atOnce, isTaken ? inOrder : start) << round;
        taken += isTaken;
    }
    EXPECT_GT(taken, 1000);
    EXPECT_LT(taken, 3900);

    // 1 is half the unit of 2^53 and goes to even: nothing, or 2 from an odd sum.
    LXOrderedSum::Terms ones;
    ones.fill(1);
    double half = std::ldexp(1, 53), zero = 0;
    EXPECT_FALSE(LXOrderedSum::AddCounted(half, ones, {3}));
    EXPECT_FALSE(LXOrderedSum::AddCounted(zero, ones, {3}));
    EXPECT_TRUE(LXOrderedSum::AddCounted(zero, LXOrderedSum::Terms{}, {3}));
    EXPECT_EQ(zero, 0);
}

TEST(WhiteBalance, VisitorsAddOnePixelAfterTheOther) {
    const LXImageRGBA32i image = RandomImage(200, 150, 10);
    const QRect all = LXImageRect(image);
    std::vector<int> red(256), green(256), blue(256), luma(256), expected(256);
    double chroma = 0, expectedChroma = 0, sums[6] = {}, expectedSums[6] = {};
    int count = 0;
    LXVisitImageColors<LXImageRGBA32i, LXHistogram>()(
        image, all,
        LXHistogram(red.data(), green.data(), blue.data(), luma.data(), &chroma, &count));
    LXVisitImageColors<LXImageRGBA32i, LXCommonParamsCalculator>()(
        image, all,
        LXCommonParamsCalculator(&sums[0], &sums[1], &sums[2], &sums[3], &sums[4], &sums[5], &count,
                                 100.25, 99.1, 0));
    EXPECT_EQ(count, 2 * 200 * 150);
    for (const LXRGBA32i& p : InWalkOrder(image)) {
        --red[p.red];
        --green[p.green];
        --blue[p.blue];
        ++expected[std::size_t((11 * p.red + 59 * p.green + 30 * p.blue) / 100)];
        const int sum = p.red + p.green + p.blue;
        expectedChroma +=
            std::sqrt(p.red * p.red + p.green * p.green + p.blue * p.blue - sum * sum / 3.0);
        expectedSums[0] += (p.red - 100.25) * (p.red - 100.25);
        expectedSums[1] += (p.green - 99.1) * (p.green - 99.1);
        expectedSums[2] += double(p.blue) * p.blue;
        const auto ycc = Reference::YCbCr(p.red / 255.0, p.green / 255.0, p.blue / 255.0);
        for (std::size_t k = 0; k < 3; ++k)
            expectedSums[3 + k] += ycc[k];
    }
    for (const auto& counts : {red, green, blue})
        EXPECT_EQ(counts, std::vector<int>(256));
    EXPECT_EQ(luma, expected);
    EXPECT_EQ(chroma, expectedChroma);
    for (int k = 0; k < 6; ++k)
        EXPECT_EQ(sums[k], expectedSums[k]) << k;
}

TEST(WhiteBalance, SelectorTakesTheFirstGrayPixels) {
    const LXImageRGBA32i image = RandomImage(400, 300, 11);
    for (const double threshold : {0.0, 0.02, 0.75}) {
        QVector<LXRGBA32i> points;
        std::array<double, 3> sums{}, expected{};
        LXVisitImageColors<LXImageRGBA32i, LXGreyPointsSelector>()(
            image, LXImageRect(image),
            LXGreyPointsSelector(threshold, &points, &sums[0], &sums[1], &sums[2]));
        const Pixels gray = Reference::GreyPoints(InWalkOrder(image), threshold);
        for (const LXRGBA32i& p : gray)
            for (std::size_t k = 0; k < 3; ++k)
                expected[k] += Reference::YUV(p.red, p.green, p.blue)[k];
        EXPECT_EQ(Pixels(points.begin(), points.end()), gray) << threshold;
        EXPECT_EQ(sums, expected) << threshold;
        EXPECT_EQ(points.size() == 2049, threshold > 0.5) << points.size();
        EXPECT_EQ(points.isEmpty(), threshold == 0);
    }
}

TEST(WhiteBalance, SelectorAgreesOnEveryColour) {
    const auto pixelOf = [](unsigned int rgb) {
        return LXRGBA32i{std::uint8_t(rgb), std::uint8_t(rgb >> 8), std::uint8_t(rgb >> 16), 0};
    };
    QVector<LXRGBA32i> points, inRuns;
    double sum = 0;
    const LXGreyPointsSelector selector(0.75, &points, &sum, &sum, &sum),
        runSelector(0.75, &inRuns, &sum, &sum, &sum);
    // Each alone in runs of all lengths and at all places, among pixels that are not gray.
    constexpr unsigned int Longest = 37;
    const LXRGBA32i red = pixelOf(0xFF0000);
    Pixels run(Longest, red);
    for (unsigned int rgb = 0; rgb < 1 << 24; ++rgb) {
        const unsigned int count = 1 + rgb % Longest, place = rgb / Longest % count;
        selector(pixelOf(rgb));
        run[place] = pixelOf(rgb);
        runSelector.VisitRun(run.data(), count);
        run[place] = red;
        ASSERT_EQ(points.size(), inRuns.size()) << rgb << " at " << place << " of " << count;
        if (points.size() > 1000) {
            points.clear();
            inRuns.clear();
        }
    }
    // However odd the threshold.
    for (const double threshold : {-1.0, 1e-9, 3.0, 1e300, HUGE_VAL, std::nan("")})
        for (unsigned int rgb = 0; rgb < 1 << 24; rgb += 9973) {
            const LXRGBA32i pixel = pixelOf(rgb);
            points.clear();
            inRuns.clear();
            LXGreyPointsSelector(threshold, &points, &sum, &sum, &sum)(pixel);
            LXGreyPointsSelector(threshold, &inRuns, &sum, &sum, &sum).VisitRun(&pixel, 1);
            ASSERT_EQ(points.size(), inRuns.size()) << rgb << " " << threshold;
        }
}

TEST(WhiteBalance, ColourFormulas) {
    for (int r = -5; r < 260; r += 5)
        for (int g = 0; g < 256; g += 3)
            for (int b = 0; b < 256; b += 3) {
                double y, u, v, Y, cb, cr;
                getYUV(r, g, b, y, u, v);
                getYCbCr(r / 255.0, g / 255.0, b / 255.0, Y, cb, cr);
                ASSERT_EQ((std::array<double, 3>{y, u, v}), Reference::YUV(r, g, b));
                ASSERT_EQ((std::array<double, 3>{Y, cb, cr}),
                          Reference::YCbCr(r / 255.0, g / 255.0, b / 255.0));
                ASSERT_EQ(getHue(r, g, b), Reference::Hue(r, g, b)) << r << " " << g << " " << b;
            }
    EXPECT_EQ(getHue(9, 0, 1), 353);
    EXPECT_EQ(getHue(INT_MAX, INT_MIN, INT_MIN), 0);
}

TEST(WhiteBalance, HistogramsAreStretchedAndCompared) {
    RandomPixels random(12);
    for (int round = 0; round < 150; ++round) {
        const unsigned int first = random.Below(256);
        const unsigned int last = std::min(first + random.Below(1 + unsigned(round) * 2), 255U);
        Doubles counts(256), target(256, -1);
        for (unsigned int i = first; i <= last; ++i)
            counts[i] = random.Below(round % 2 ? 40 : 3000);
        Doubles source = counts;
        Data::linearScaleOriginalHistogram(source.data(), target.data(), 256, first, last);
        const Doubles expected = Reference::Stretch(counts, first, last);
        ASSERT_EQ(target, expected) << first << " .. " << last;
        ASSERT_EQ(source, counts);
        ASSERT_EQ(Data::SelectBrightnessCorrectionByHistogram(source.data(), target.data()),
                  Reference::SelectBrightness(counts, expected));
    }
    Data::linearScaleOriginalHistogram(nullptr, nullptr, 0, 0, 1);
    Doubles odd = {HUGE_VAL, std::nan(""), -7, 1e300}, dealt(4);
    Data::linearScaleOriginalHistogram(odd.data(), dealt.data(), 4, 0, 4); // must come back
    EXPECT_TRUE(std::isnan(dealt[1]));
    odd[1] = dealt[1] = 0;
    EXPECT_EQ(dealt, odd) << "each bin from its own";

    // A candidate that fits without any difference has the distance 0, which is passed over.
    Doubles original(256), fitting(256);
    for (double& count : original)
        count = random.Below(500);
    Data::ShiftHistogram(original.data(), fitting.data(), 20 * 0.0499 + 0.01 - 1);
    const double selected =
        Data::SelectBrightnessCorrectionByHistogram(original.data(), fitting.data());
    EXPECT_EQ(selected, Reference::SelectBrightness(original, fitting));
    EXPECT_NE(selected, (20 * 0.0499 + 0.01) * 0.5);
}

TEST(WhiteBalance, BrightnessCurves) {
    std::vector<unsigned char> table;
    for (int i = -60; i <= 60; ++i) {
        Data::UpdateCurve(table, i / 50.0);
        ASSERT_EQ(Entries(table), Reference::BrightnessCurve(i / 50.0)) << i;
        ASSERT_TRUE(std::is_sorted(table.begin(), table.end()) || std::abs(i) > 30) << i;
    }
    Data::UpdateCurve(table, 0);
    EXPECT_EQ(Entries(table), Identity());
    EXPECT_EQ(Data::InitializeCurveParameters(0)[2], QPointF(127.5, 127.5));
    Data::UpdateCurve(table, -0.5);
    EXPECT_GT(table[100], 100) << "negative is brighter";
    EXPECT_EQ(Data::InitializeCurveParameters(5)[2], QPointF(255, 0));
    Data::UpdateCurve(table, std::nan(""));
    EXPECT_EQ(table.size(), 256U);
}

TEST(WhiteBalance, CastsBecomeWeaker) {
    const auto cast = [](const Data& data) {
        return std::fabs(data.meanCb - 128) + std::fabs(data.meanCr - 128);
    };
    const double lights[][3] = {{1.2, 1, 0.8}, {0.75, 1, 1.25}, {1.1, 0.9, 0.8}, {0.9, 0.8, 1.1}};
    for (const auto& [r, g, b] : lights) {
        LXImageRGBA32i image = Scene(300, 260, r, g, b);
        const double before = cast(Data(image));
        LXTransformImageColors<LXImageRGBA32i, RMWBTransformation>()(
            image, LXImageRect(image), RMWBTransformation(image, Function::Auto, 100));
        EXPECT_LT(cast(Data(image)), before * 0.8) << r << " " << g << " " << b;
    }
}

TEST(WhiteBalance, FunctionsAndCopies) {
    const LXImageRGBA32i image = Scene(90, 80, 1.1, 1, 0.8);
    const RMWBTransformation over(image, Function::OverExposure, 100),
        under(image, Function::UnderExposure, 100);
    ExpectColour(over, {255, 15, 128}, {255, 0, 64});
    ExpectColour(under, {0, 255, 128}, {1, 255, 192});
    EXPECT_EQ(over.GetAmount(), 255000);
    EXPECT_EQ(over.GetData().curve, Data(image).curve);
    RMWBTransformation copy = over;
    copy = under;
    ExpectColour(copy, {0, 255, 128}, {1, 255, 192});

    for (const int function : {-1, 3, INT_MAX})
        EXPECT_THROW(RMWBTransformation(image, Function(function), 50), std::invalid_argument);
    const Reference::WhiteBalance expected = Reference::Analyse(InWalkOrder(image));
    for (const int amount : {INT_MIN, -842151, -7, 101, 842151, INT_MAX})
        ExpectSteps(image, expected, amount);
    LXRGBA32i pixel{0, 127, 255, 9};
    RMWBTransformation(Flat(image), Function::Auto, 60)(pixel);
    EXPECT_EQ(pixel, Reference::Auto(expected, {0, 127, 255, 9}, 60));
    CheckSibling<RMIterativeWBTransformation, RMWBTransformation>(std::cref(image), Function::Auto,
                                                                  60);
}
