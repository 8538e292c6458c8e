#include "LXColorAdjustments.h"
#include "LXGrayAdjustments.h"
#include "LXHueAdjustments.h"
#include "LXTemperatureCorrection.h"
#include "LXToneAdjustments.h"
#include "support/AdjustmentChecks.h"

#include <climits>
#include <cmath>
#include <functional>
#include <stdexcept>
#include <string>

namespace {

using RGB = std::array<int, 3>;
using Step = std::function<void(LXRGBA32i&)>;

const LXRGBA32i Orange{0, 138, 236, 255}, Teal{128, 128, 0, 255};

RGB ColourOf(const LXRGBA32i& pixel) {
    return {pixel.red, pixel.green, pixel.blue};
}

LXColorBalanceTransformation Balance(std::array<int, 3> r, std::array<int, 3> g,
                                     std::array<int, 3> b) {
    return {r.data(), g.data(), b.data()};
}

/// Each random colour before and after the step.
void ForColours(const Step& step,
                const std::function<void(const LXRGBA32i&, const LXRGBA32i&)>& check) {
    RandomPixels random(5);
    for (int n = 0; n < 20000 && !testing::Test::HasFatalFailure(); ++n) {
        const LXRGBA32i before = random.Pixel();
        LXRGBA32i after = before;
        step(after);
        check(before, after);
    }
}

void ExpectSameSteps(const Step& a, const Step& b) {
    ForColours(a, [&](const LXRGBA32i& before, const LXRGBA32i& after) {
        LXRGBA32i other = before;
        b(other);
        ASSERT_EQ(after, other) << testing::PrintToString(ColourOf(before));
    });
}

} // namespace

TEST(AdjustmentTables, AreThoseOfTheFormulas) {
    for (const float weight : {0.0F, 0.11F, 0.299F, 1.0F, 1.7F, -0.4F, 1e9F, 1e30F, -1e30F})
        for (const bool useLightness : {false, true}) {
            const Reference::Table expected = Reference::BlackAndWhite(useLightness, weight);
            const LXBlackAndWhiteTransformation gray(useLightness, weight, 0.25F, weight);
            EXPECT_EQ(gray.GetRed(), expected) << weight << useLightness;
            EXPECT_EQ(gray.GetBlue(), expected) << weight << useLightness;
            EXPECT_EQ(gray.GetGreen(), Reference::BlackAndWhite(useLightness, 0.25F));
        }

    RandomPixels random(6);
    for (int round = 0; round < 300; ++round) {
        std::array<std::array<int, 3>, 3> amounts{};
        const int reach = round % 20 == 0 ? 100000 : 200;
        for (auto& channel : amounts)
            for (int& amount : channel)
                amount = int(random.Below(unsigned(reach) + 1)) - reach / 2;
        const auto tables = Entries(Balance(amounts[0], amounts[1], amounts[2]).GetTables());
        for (std::size_t c = 0; c < 3; ++c)
            ASSERT_EQ(tables[c], Reference::ColorBalance(amounts[c].data())) << round;
    }

    const double numbers[] = {0,     0.01, 0.015, 0.5,   1,        -1,          2.2, 5,
                              5.001, -0.3, 20.0,  100.0, -40.7,    -20.0001,    1e9, -1e9,
                              1e30,  -20,  -20.1, 0.25,  HUGE_VAL, std::nan("")};
    for (const double a : numbers) {
        EXPECT_EQ(Entries(LXGammaCorrectionTransformation(a).GetTable()), Reference::Gamma(a)) << a;
        for (const double b : numbers)
            EXPECT_EQ(Entries(LXExposureTransformation(a, b).GetTable()), Reference::Exposure(a, b))
                << a << " " << b;
    }

    for (int levels = 0; levels <= 300; ++levels) {
        const LXPosterizeTransformation posterize(levels);
        ASSERT_EQ(Entries(posterize.GetLevels()), Reference::PosterizeLevels(levels)) << levels;
        ASSERT_EQ(Entries(posterize.GetBands()), Reference::PosterizeBands(levels)) << levels;
    }
    EXPECT_THROW(LXPosterizeTransformation(-1), std::length_error);
    EXPECT_THROW(LXPosterizeTransformation(INT_MIN), std::length_error);
}

TEST(AdjustmentTables, ScaledNumbers) {
    const LXBrightnessContrastTransformation full(127, -127), odd(-64, 1);
    EXPECT_EQ(full.GetBrightness(), 100);
    EXPECT_EQ(full.GetContrast(), -100);
    EXPECT_EQ(odd.GetBrightness(), -50); // -50.4, truncated
    EXPECT_EQ(odd.GetContrast(), 0);
    const LXHueSaturationTransformation hue(-400, 100, -99, true), wild(0, INT_MAX, INT_MIN, false);
    EXPECT_EQ(hue.GetHue(), -400);
    EXPECT_EQ(hue.GetSaturation(), 255);
    EXPECT_EQ(hue.GetLightness(), -252);
    EXPECT_TRUE(hue.IsColourizer());
    EXPECT_EQ(LXHueSaturationTransformation(0, -100, 0, false).GetSaturation(), -255);
    EXPECT_EQ(wild.GetSaturation(), INT_MAX);
    EXPECT_EQ(wild.GetLightness(), INT_MIN);
    EXPECT_FALSE(LXHueSaturationTransformation().IsColourizer());
    EXPECT_EQ(LXPhotoFilterTransformation(Orange, 25).GetDensity(), 63);

    // Every saturation loses its way through the percentage: 254 becomes 99 percent and then 252.
    const LXColorizeTransformation colourize(LXRGBA32i{1, 1, 254, 0}, 50);
    EXPECT_EQ(colourize.GetHue(), 0);
    EXPECT_EQ(colourize.GetSaturation(), 252);
    EXPECT_EQ(colourize.GetLightness(), 0);
    EXPECT_TRUE(colourize.IsColourizer());
    EXPECT_EQ(colourize.GetAmount(), 127);
    EXPECT_EQ(LXColorizeTransformation(Teal, 0).GetHue(), 180);
}

TEST(Temperature, ColoursAreThoseOfTheFormulas) {
    for (int kelvin = 900; kelvin <= 40100; ++kelvin) {
        const RGB rgb = Reference::Temperature(kelvin);
        const unsigned int packed = LXTemperatureCorrection::GetTemperatureColor(kelvin);
        ASSERT_EQ(packed, 0xFF000000U | unsigned(rgb[0] << 16 | rgb[1] << 8 | rgb[2])) << kelvin;
        const LXTemperatureCorrection light(kelvin, 3, -8);
        ASSERT_EQ((RGB{light.GetRed(), light.GetGreen(), light.GetBlue()}), rgb) << kelvin;
    }
    using Light = LXTemperatureCorrection;
    EXPECT_EQ(Light::GetTemperatureColor(6500), 0xFFFFFFFFU);
    EXPECT_EQ(Light::GetTemperatureColor(INT_MIN), Light::GetTemperatureColor(1000));
    EXPECT_EQ(Light::GetTemperatureColor(INT_MAX), Light::GetTemperatureColor(40000));
    EXPECT_EQ(Light::GetTemperatureColor(1500) & 0xFF, 0U);

    LXTemperatureCorrection light;
    EXPECT_EQ(light.GetAmount(), 50);
    EXPECT_EQ(light.GetExtra(), 0);
    EXPECT_EQ((RGB{light.GetRed(), light.GetGreen(), light.GetBlue()}), (RGB{255, 255, 255}));
    light.SetData(3000, 40, 9);
    EXPECT_EQ(light.GetAmount(), 51000);
    EXPECT_EQ(light.GetExtra(), 9);
    light.InitializeRGBfromKelvin(1000, 12);
    EXPECT_EQ(light.GetBlue(), 0);
    EXPECT_EQ(light.GetExtra(), 9);
}

namespace {

/// What a step does to colours, and whether it makes them of gray.
enum Effect { Nothing, KeepsGray, Colours };

template <class Transform>
Step Twice(const Transform& transform) {
    return [=](LXRGBA32i& pixel) {
        transform(pixel);
        transform(pixel);
    };
}

LXColorEnhancerTransformation Enhancer(int amount) {
    LXColorEnhancerTransformation enhancer;
    enhancer.SetLevels(LXTintRGB32(Orange, Teal, 100));
    enhancer.SetAmountData(amount);
    return enhancer;
}

} // namespace

/// A step that does something does it, and no step touches alpha.
TEST(AdjustmentSteps, NothingMovesAtZeroAndGrayStaysGray) {
    const struct {
        const char* name;
        Effect effect;
        Step step;
    } cases[] = {
        {"no brightness and contrast", Nothing, LXBrightnessContrastTransformation(0, 0)},
        {"no colour balance", Nothing, Balance({0, 0, 0}, {0, 0, 0}, {0, 0, 0})},
        {"no exposure", Nothing, LXExposureTransformation(0, 0)},
        {"gamma of 1", Nothing, LXGammaCorrectionTransformation(1)},
        {"no hue and saturation", Nothing, LXHueSaturationTransformation(0, 0, 0, false)},
        {"default hue and saturation", Nothing, LXHueSaturationTransformation()},
        {"whole turns of hue", Nothing, LXHueSaturationTransformation(-720, 0, 0, false)},
        {"posterize without levels", Nothing, LXPosterizeTransformation(0)},
        {"posterize with every level", Nothing, LXPosterizeTransformation(256)},
        {"no photo filter", Nothing, LXPhotoFilterTransformation(Orange, 0)},
        {"no colorize", Nothing, LXColorizeTransformation(Orange, 0)},
        {"replacement by itself", Nothing, LXReplaceColorTransformation(Orange, Orange, 90)},
        {"replacement of nothing", Nothing, LXReplaceColorTransformation(Orange, Teal, -1)},
        {"no tint", Nothing, LXTintRGB32(Orange, Teal, 0)},
        {"no enhancer", Nothing, Enhancer(0)},
        {"no temperature", Nothing, LXTemperatureCorrection(2000, 0, 100)},
        {"white light", Nothing, LXTemperatureCorrection(6500, 200, 0)},
        {"default temperature", Nothing, LXTemperatureCorrection()},
        {"inversion twice", Nothing, Twice(LXInvertTransformation())},
        {"inversion of alpha twice", Nothing, Twice(LXInvertAlphaTransformation())},
        {"black and white", KeepsGray, LXBlackAndWhiteTransformation(false, 0.3F, 0.6F, 0.1F)},
        {"brightness and contrast", KeepsGray, LXBrightnessContrastTransformation(20, -30)},
        {"wild brightness", KeepsGray, LXBrightnessContrastTransformation(INT_MAX, INT_MIN)},
        {"colour balance", Colours, Balance({0, 50, 0}, {0, 0, 40}, {-20, 0, 0})},
        {"desaturate", KeepsGray, LXDesaturateTransformation()},
        {"exposure", KeepsGray, LXExposureTransformation(10, -0.1)},
        {"gamma", KeepsGray, LXGammaCorrectionTransformation(2.2)},
        {"hue and saturation", KeepsGray, LXHueSaturationTransformation(77, 30, -20, false)},
        {"wild hue", KeepsGray, LXHueSaturationTransformation(INT_MIN, INT_MAX, INT_MIN, false)},
        {"colourizer", Colours, LXHueSaturationTransformation(-77, 30, 20, true)},
        {"invert", KeepsGray, LXInvertTransformation()},
        {"posterize", KeepsGray, LXPosterizeTransformation(5)},
        {"photo filter", Colours, LXPhotoFilterTransformation(Orange, 40)},
        {"wild photo filter", Colours, LXPhotoFilterTransformation(Orange, INT_MAX)},
        {"colorize", Colours, LXColorizeTransformation(Teal, 60)},
        {"wild colorize", Colours, LXColorizeTransformation(Teal, INT_MAX)},
        {"replacement", Colours, LXReplaceColorTransformation(Orange, Teal, INT_MAX)},
        {"tint", Colours, LXTintRGB32(Orange, Teal, 30)},
        {"enhancer", Colours, Enhancer(INT_MAX)},
        {"temperature", Colours, LXTemperatureCorrection(3000, INT_MAX, 0)},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        int moved = 0;
        ForColours(c.step, [&](const LXRGBA32i& before, const LXRGBA32i& after) {
            ASSERT_EQ(after.alpha, before.alpha);
            ASSERT_TRUE(c.effect != Nothing || after == before)
                << testing::PrintToString(ColourOf(before));
            moved += after != before;
        });
        EXPECT_TRUE(c.effect == Nothing || moved > 1000) << moved;
        bool coloured = false;
        for (int i = 0; i < 256; ++i) {
            const auto level = std::uint8_t(i);
            LXRGBA32i gray{level, level, level, level};
            c.step(gray);
            coloured = coloured || gray.red != gray.green || gray.green != gray.blue;
        }
        EXPECT_EQ(coloured, c.effect == Colours);
    }
}

TEST(AdjustmentSteps, KnownColours) {
    ExpectColour(LXInvertTransformation(), {0, 100, 255}, {255, 155, 0});
    LXRGBA32i pixel{1, 2, 3, 4};
    LXInvertAlphaTransformation()(pixel);
    EXPECT_EQ(pixel, (LXRGBA32i{1, 2, 3, 251}));

    ExpectColour(LXBlackAndWhiteTransformation(false, 0.5F, 0.25F, 2), {100, 41, 30},
                 {120, 120, 120});
    ExpectColour(LXBlackAndWhiteTransformation(false, 1, 1, 1), {100, 100, 100}, {255, 255, 255});
    ExpectColour(LXBlackAndWhiteTransformation(true, 0, 1, 0), {9, 255, 9}, {255, 255, 255});

    ExpectColour(LXBrightnessContrastTransformation(127, 0), {0, 1, 200}, {255, 255, 255});
    ExpectColour(LXBrightnessContrastTransformation(-127, 0), {0, 1, 255}, {0, 0, 0});
    ExpectColour(LXBrightnessContrastTransformation(26, 0), {0, 100, 220}, {51, 151, 255}); // 20 %
    ExpectColour(LXBrightnessContrastTransformation(0, -127), {0, 100, 255}, {127, 127, 127});
    ExpectColour(LXBrightnessContrastTransformation(0, 127), {95, 127, 160}, {0, 125, 255});

    ExpectColour(LXPosterizeTransformation(3), {84, 85, 170}, {0, 127, 255});
    ExpectColour(LXExposureTransformation(20.0001, 0), {10, 100, 200}, {20, 200, 255});
    ExpectColour(Balance({5000, 0, 0}, {0, 0, 0}, {0, 0, -5000}), {80, 80, 170}, {255, 80, 0});

    // Multiplied by (236, 138, 0) / 255 and mixed, white loses 105 of its luminance, black nothing.
    ExpectColour(LXPhotoFilterTransformation(Orange, 100), {255, 255, 255}, {255, 243, 105});
    ExpectColour(LXPhotoFilterTransformation(Orange, 100), {0, 0, 0}, {0, 0, 0});
    ExpectColour(LXTintRGB32(Orange, Teal, 100), {0, 0, 0}, {236, 138, 0});
    ExpectColour(LXTintRGB32(Orange, Teal, 100), {255, 255, 255}, {0, 128, 128});

    const LXTemperatureCorrection candle(1000, 200, 0), half(1000, 100, 0); // (255, 67, 0)
    ExpectColour(candle, {200, 255, 255}, {200, 67, 0});
    ExpectColour(half, {200, 255, 255}, {200, 161, 127});
}

TEST(AdjustmentSteps, ReplacementFallsOffWithDistance) {
    const LXReplaceColorTransformation replace(Orange, Teal, 9);
    ExpectColour(replace, {236, 138, 0}, {0, 128, 128});
    ExpectColour(replace, {236, 133, 0}, {118, 128, 64}); // half way at 5 of 10
    ExpectColour(replace, {227, 138, 0}, {204, 137, 12}); // a tenth at 9
    ExpectColour(replace, {226, 138, 0}, {226, 138, 0});
    const LXReplaceColorTransformation exact(Orange, Teal, 0);
    ExpectColour(exact, {236, 138, 0}, {0, 128, 128});
    ExpectColour(exact, {236, 138, 1}, {236, 138, 1});
}

TEST(AdjustmentSteps, HueTurnsExactly) {
    // A third of a turn exchanges the channels, whatever the colour.
    for (const int hue : {120, 480, -240})
        ForColours(LXHueSaturationTransformation(hue, 0, 0, false),
                   [](const LXRGBA32i& before, const LXRGBA32i& after) {
                       ASSERT_EQ(ColourOf(after), (RGB{before.blue, before.red, before.green}))
                           << testing::PrintToString(ColourOf(before));
                   });
    // Half a turn mirrors each channel between the largest and the smallest.
    ForColours(LXHueSaturationTransformation(180, 0, 0, false),
               [](const LXRGBA32i& before, const LXRGBA32i& after) {
                   const auto [r, g, b] = ColourOf(before);
                   const int sum = std::max({r, g, b}) + std::min({r, g, b});
                   ASSERT_EQ(ColourOf(after), (RGB{sum - r, sum - g, sum - b}));
               });
    ExpectColour(LXHueSaturationTransformation(30, 0, 0, false), {255, 0, 0}, {255, 127, 0});
    ExpectColour(LXHueSaturationTransformation(-30, 0, 0, false), {255, 0, 0}, {255, 0, 128});
}

TEST(AdjustmentSteps, SaturationAndLightness) {
    ExpectSameSteps(LXHueSaturationTransformation(0, -100, 0, false), LXDesaturateTransformation());
    ExpectSameSteps(LXHueSaturationTransformation(0, -1000, 0, false),
                    LXDesaturateTransformation());
    ExpectColour(LXHueSaturationTransformation(0, -50, 0, false), {200, 100, 60}, {165, 115, 95});
    ExpectColour(LXHueSaturationTransformation(0, 50, 0, false), {160, 120, 100}, {174, 114, 85});
    ExpectColour(LXHueSaturationTransformation(0, 100, 0, false), {200, 100, 60}, {255, 76, 5});
    ExpectColour(LXHueSaturationTransformation(0, 100, 0, false), {250, 250, 240}, {255, 255, 235});
    for (const int wild : {100, 900, INT_MAX})
        ExpectColour(LXHueSaturationTransformation(0, 0, wild, false), {1, 2, 3}, {255, 255, 255});
    for (const int wild : {-100, -900, INT_MIN})
        ExpectColour(LXHueSaturationTransformation(0, 0, wild, false), {1, 2, 3}, {0, 0, 0});
    ExpectColour(LXHueSaturationTransformation(0, 0, 20, false), {0, 100, 255}, {51, 131, 255});
    ExpectColour(LXHueSaturationTransformation(0, 0, -20, false), {0, 100, 255}, {0, 80, 204});
}

TEST(AdjustmentSteps, ColourizerKeepsLightness) {
    for (const int saturation : {0, 40, 100, 1000})
        ForColours(LXHueSaturationTransformation(200, saturation, 0, true),
                   [=](const LXRGBA32i& before, const LXRGBA32i& after) {
                       const auto sum = [](const RGB& c) {
                           return std::max({c[0], c[1], c[2]}) + std::min({c[0], c[1], c[2]});
                       };
                       // In half levels, of which one may be lost.
                       const int lost = sum(ColourOf(before)) - sum(ColourOf(after));
                       ASSERT_TRUE(lost == 0 || lost == 1);
                       ASSERT_GE(after.blue, after.green);
                       ASSERT_GE(after.green, after.red);
                       ASSERT_TRUE(saturation > 0 || after.blue == after.red);
                   });
    ExpectColour(LXHueSaturationTransformation(120, 100, 0, true), {9, 255, 100}, {9, 255, 9});
    ExpectColour(LXHueSaturationTransformation(120, 100, 0, true), {127, 127, 127}, {0, 254, 0});
    const LXRGBA32i red{0, 0, 255, 255}, gray{80, 80, 80, 255};
    ExpectColour(LXColorizeTransformation(red, 100), {127, 127, 127}, {254, 0, 0});
    ExpectColour(LXColorizeTransformation(red, 20), {127, 127, 127}, {152, 101, 101});
    ExpectSameSteps(LXColorizeTransformation(gray, 100), LXDesaturateTransformation());
}

TEST(AdjustmentSteps, SiblingsCarryABuffer) {
    const std::array<int, 3> amounts{20, -30, 40};
    CheckSibling<LXIterativeBlackAndWhiteTransformation, LXBlackAndWhiteTransformation>(true, 0.5F,
                                                                                        0.3F, 0.2F);
    CheckSibling<LXIterativeBrightnessContrastTransformation, LXBrightnessContrastTransformation>(
        10, 20);
    CheckSibling<LXIterativeColorBalanceTransformation, LXColorBalanceTransformation>(
        amounts.data(), amounts.data(), amounts.data());
    CheckSibling<LXIterativeExposureTransformation, LXExposureTransformation>(3.0, 0.1);
    CheckSibling<LXIterativeGammaCorrectionTransformation, LXGammaCorrectionTransformation>(0.4);
    CheckSibling<LXIterativeHueSaturationTransformation, LXHueSaturationTransformation>(10, 20, 30,
                                                                                        false);
    CheckSibling<LXIterativeHueSaturationTransformation, LXHueSaturationTransformation>();
    CheckSibling<LXIterativePosterizeTransformation, LXPosterizeTransformation>(4);
    CheckSibling<LXIterativeColorizeTransformation, LXColorizeTransformation>(Teal, 70);
    CheckSibling<LXIterativeReplaceColorTransformation, LXReplaceColorTransformation>(Orange, Teal,
                                                                                      200);
}
