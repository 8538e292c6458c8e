#include "LXColorAdjustments.h"
#include "LXLevelsTransformation.h"
#include "support/AdjustmentChecks.h"

#include <climits>
#include <cmath>

namespace {

const Reference::Levels Plain{{{0, 255}, {0, 255}, {0, 255}, {0, 255}},
                              {{0, 255}, {0, 255}, {0, 255}, {0, 255}},
                              {1, 1, 1, 1}};

/// Plain but for the output of one channel.
Reference::Levels WithOutput(std::size_t channel, int low, int high) {
    Reference::Levels levels = Plain;
    levels.outputs[channel][0] = low;
    levels.outputs[channel][1] = high;
    return levels;
}

LXLevelsTransformation Made(Reference::Levels levels, int amount = 100) {
    return LXLevelsTransformation(levels.inputs, levels.outputs, levels.gammas, amount);
}

Reference::Levels RandomLevels(RandomPixels& random) {
    static const double gammas[] = {-1, 0, 0.01, 0.4, 0.999, 1, 1.5, 1.999, 2, 2.5, 9.99, 20};
    Reference::Levels levels{};
    for (std::size_t c = 0; c < 4; ++c) {
        levels.inputs[c][0] = int(random.Below(200));
        levels.inputs[c][1] = levels.inputs[c][0] + 1 + int(random.Below(120));
        levels.outputs[c][0] = random.Byte(); // may descend
        levels.outputs[c][1] = random.Byte();
        levels.gammas[c] =
            random.Below(3) == 0 ? 0.3 + random.Below(40) / 16.0 : gammas[random.Below(12)];
    }
    return levels;
}

void ExpectIdentity(const LXLevelsTransformation& levels) {
    for (const Reference::Table& table : Entries(levels.GetTables()))
        EXPECT_EQ(table, Identity());
}

} // namespace

TEST(Levels, TablesAreThoseOfTheFormulas) {
    RandomPixels random(3);
    for (int round = 0; round < 500; ++round) {
        const Reference::Levels levels = RandomLevels(random);
        const int amount = round % 2 == 0 ? 100 : int(random.Below(101));
        ASSERT_EQ(Entries(Made(levels, amount).GetTables()),
                  Reference::LevelsTables(levels, amount))
            << round;
        ExpectIdentity(Made(levels, 0));
    }
    ExpectIdentity(LXLevelsTransformation());
    ExpectIdentity(Made(Plain));
}

TEST(Levels, GammaOfTheMasterBendsAndThatOfAChannelSwitches) {
    const auto red = [](double master, double channel) {
        Reference::Levels levels = Plain;
        levels.gammas[0] = master;
        levels.gammas[1] = channel;
        return Entries(Made(levels).GetTables().red);
    };
    EXPECT_EQ(red(20, 1), red(9.99, 1));
    EXPECT_EQ(red(0, 1), red(0.01, 1));
    EXPECT_EQ(red(std::nan(""), 1), red(0.01, 1));
    EXPECT_EQ(red(2, 1)[64], 127); // sqrt(64 / 255) * 255 = 127.7
    EXPECT_EQ(red(1, 1.999), Identity());
    EXPECT_EQ(red(1, 2.5), Reference::Table(256, 255));
    Reference::Table onlyWhite(256, 0);
    onlyWhite[255] = 255;
    EXPECT_EQ(red(1, 0.99), onlyWhite);
}

TEST(Levels, InvertedMasterInvertsPixels) {
    const LXLevelsTransformation inverted = Made(WithOutput(0, 255, 0));
    for (int i = 0; i < 256; ++i)
        ExpectColour(inverted, {i, 0, 255}, {255 - i, 255, 0});
}

TEST(Levels, WildArgumentsAreDefined) {
    Reference::Levels levels = Plain;
    for (int& end : levels.inputs[1])
        end = 100;
    const Reference::Table step = Entries(Made(levels).GetTables().red);
    EXPECT_EQ(step[100], 0) << "a range of one level gives the low output";
    EXPECT_EQ(step[101], 255);
    const Reference::Table cut = Entries(Made(WithOutput(1, -255, 510)).GetTables().red);
    EXPECT_EQ(cut[85], 0);
    EXPECT_EQ(cut[86], 3);
    EXPECT_EQ(cut[170], 255);
    levels = {{{INT_MIN, INT_MAX}, {INT_MIN, INT_MAX}, {INT_MAX, INT_MIN}, {INT_MIN, 0}},
              {{INT_MAX, INT_MIN}, {INT_MIN, INT_MAX}, {INT_MAX, INT_MIN}, {INT_MIN, INT_MAX}},
              {HUGE_VAL, -HUGE_VAL, std::nan(""), 1}};
    for (const int amount : {INT_MIN, INT_MAX, 101})
        EXPECT_EQ(Made(levels, amount).GetTables().blue.size(), 256U);
}

TEST(Levels, CarryPhotoFilterTintAndEnhancer) {
    const LXRGBA32i orange{0, 138, 236, 255}, other{70, 5, 201, 0};
    const int shadows[] = {236, 138, 0}, highlights[] = {201, 5, 70};
    Reference::Levels levels = Plain;
    for (std::size_t c = 0; c < 3; ++c)
        levels.outputs[c + 1][1] = shadows[c];
    EXPECT_EQ(Entries(LXPhotoFilterTransformation(orange, 25).GetTables()),
              Reference::LevelsTables(levels, 100));
    for (const int amount : {0, 1, 37, 100}) {
        for (std::size_t c = 0; c < 3; ++c) {
            levels.outputs[c + 1][0] = shadows[c] * amount / 100;
            levels.outputs[c + 1][1] = (highlights[c] - 255) * amount / 100 + 255;
        }
        EXPECT_EQ(Entries(LXTintRGB32(orange, other, amount).GetTables()),
                  Reference::LevelsTables(levels, 100))
            << amount;
    }
    EXPECT_EQ(LXTintRGB32(orange, other, INT_MAX).GetTables().red[0], 255);

    LXColorEnhancerTransformation enhancer;
    ExpectIdentity(enhancer);
    EXPECT_EQ(enhancer.GetAmount(), 0);
    levels.outputs[0][1] = 100;
    enhancer.SetLevels(Made(levels));
    enhancer.SetLevels(enhancer);
    EXPECT_EQ(Entries(enhancer.GetTables()), Entries(Made(levels).GetTables()));
    ExpectColour(enhancer, {255, 255, 255}, {255, 255, 255});
    enhancer.SetAmountData(50); // half the way to master[201], [5] and [70]
    ExpectColour(enhancer, {255, 255, 255}, {166, 128, 141});
    enhancer.SetAmountData(1000);
    EXPECT_EQ(enhancer.GetAmount(), 1000);
    ExpectColour(enhancer, {255, 255, 255}, {78, 1, 27});

    CheckSibling<LXIterativeLevelsTransformation, LXLevelsTransformation>(
        levels.inputs, levels.outputs, levels.gammas, 60);
    CheckSibling<LXIterativePhotoFilterTransformation, LXPhotoFilterTransformation>(orange, 25);
}
