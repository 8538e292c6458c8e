#include "LXHistogrammCalculator.h"
#include "LXTransformImageColors.h"
#include "RMDodgeBurnCorrection.h"
#include "support/AdjustmentChecks.h"
#include "support/Plane.h"

#include <cmath>
#include <thread>

namespace {

std::vector<int> WithBins(std::initializer_list<std::pair<int, int>> bins) {
    std::vector<int> histogram(256, 0);
    for (const auto& [bin, count] : bins)
        histogram[std::size_t(bin)] = count;
    return histogram;
}

std::vector<int> ThresholdOf(const std::vector<int>& histogram) {
    return LXHistogrammCalculator::Threshold(histogram.data());
}

/// Each amount and range against the reference, and the ways to make one against each other.
template <class Correction>
void CheckCorrection(Reference::Table (*reference)(double, int)) {
    EXPECT_EQ(Entries(Correction().GetTable()), Identity());
    for (int range = 0; range < 3; ++range) {
        const auto type = static_cast<typename Correction::RangeType>(range);
        EXPECT_EQ(Entries(Correction(0, type).GetTable()), Identity());
        for (const double amount : {-3.0, -1.0, -0.1, 0.0, 0.01, 0.25, 0.5, 0.73, 1.0, 4.0, 1e8,
                                    -1e8, HUGE_VAL, std::nan("")}) {
            Correction correction;
            correction.SetData(amount, type);
            EXPECT_EQ(Entries(correction.GetTable()), reference(amount, range))
                << amount << " " << range;
            EXPECT_EQ(Correction(amount, type).GetTable(), correction.GetTable());
            correction.SetData(0.3, static_cast<typename Correction::RangeType>(3));
            EXPECT_EQ(Correction(amount, type).GetTable(), correction.GetTable());
        }
        const Correction half(0.5, type);
        const LXByteTable& t = half.GetTable();
        ExpectColour(half, {10, 99, 240}, {t[10], t[99], t[240]});
    }
    EXPECT_EQ(Entries(Correction(1, static_cast<typename Correction::RangeType>(-1)).GetTable()),
              Reference::Table(256, 0));
}

} // namespace

TEST(DodgeBurn, TablesAreThoseOfTheFormulas) {
    CheckCorrection<RMDodgeCorrection>(Reference::Dodge);
    CheckCorrection<RMBurnCorrection>(Reference::Burn);
}

TEST(Threshold, CutsAThousandthOffEitherEnd) {
    const std::vector<std::pair<std::vector<int>, std::vector<int>>> cases = {
        {WithBins({}), {255, 0}},
        {WithBins({{100, 5000}}), {92, 108}},
        {WithBins({{0, 5000}}), {0, 16}},
        {WithBins({{255, 5000}}), {239, 255}},
        {WithBins({{10, 1}, {20, 499}, {100, 499}, {200, 1}}), {19, 101}}, // 1 of 1000 is within
        {WithBins({{10, 2}, {20, 499}, {100, 499}, {200, 2}}), {9, 201}},
        {WithBins({{7, 1}, {8, 1}}), {0, 16}},       // s = 6 + 9 = 15
        {WithBins({{8, 1}}), {0, 16}},               // s = 7 + 9 = 16, so m = 8
        {WithBins({{100, 1}, {113, 1}}), {98, 114}}, // 99 and 114 are 15 apart: widened
        {WithBins({{100, 1}, {114, 1}}), {99, 115}}, // 16 apart: as they are
    };
    for (const auto& [histogram, expected] : cases) {
        EXPECT_EQ(Reference::Threshold(histogram), expected);
        EXPECT_EQ(ThresholdOf(histogram), expected);
    }
    RandomPixels random(4);
    for (int round = 0; round < 2000; ++round) {
        std::vector<int> histogram(256, 0);
        const unsigned int first = random.Below(256), width = 1 + random.Below(1 + round % 256);
        for (unsigned int i = first; i < std::min(first + width, 256U); ++i)
            histogram[i] = int(random.Below(1000));
        ASSERT_EQ(ThresholdOf(histogram), Reference::Threshold(histogram)) << round;
    }
}

TEST(Histogram, CountsFourChannelsFromSeveralThreads) {
    const LXImageRGBA32i image = RandomImage(150, 130, 11);
    using Bins = std::vector<int>;
    std::array<Bins, 4> counted, expected; // red, green, blue, luminance
    counted.fill(Bins(256));
    expected.fill(Bins(256));
    LXHistogrammCalculator first;
    first.SetOutput(counted[0].data(), counted[1].data(), counted[2].data(), counted[3].data());
    const LXHistogrammCalculator calculator(first);
    constexpr int Visits = 10; // enough for two threads to meet in a bin
    const auto visit = [&] {
        for (int n = 0; n < Visits; ++n)
            LXVisitImageColors<LXImageRGBA32i, LXHistogrammCalculator>()(
                image, QRect(0, 0, 150, 130), calculator);
    };
    std::thread other(visit);
    visit();
    other.join();

    for (const LXRGBA32i& p : Reference::PlaneOf(image).pixels) {
        const int luminance = (5 * p.blue + 16 * p.green + 11 * p.red) / 32;
        const int levels[] = {p.red, p.green, p.blue, luminance};
        for (std::size_t c = 0; c < 4; ++c)
            expected[c][std::size_t(levels[c])] += 2 * Visits;
    }
    EXPECT_EQ(counted, expected);
}

TEST(Histogram, SkipsWhatIsNotAskedFor) {
    const LXRGBA32i pixel{1, 2, 3, 4};
    LXHistogrammCalculator()(pixel);
    RMRGBHistogram()(pixel);

    std::vector<int> luminance(256);
    LXHistogrammCalculator calculator;
    calculator.SetOutput(nullptr, nullptr, nullptr, luminance.data());
    calculator(pixel);
    EXPECT_EQ(luminance[(16 * 2 + 11 * 3 + 5 * 1) / 32], 1);

    std::vector<unsigned int> red(256), green(256), blue(256);
    const RMRGBHistogram all(red.data(), green.data(), blue.data());
    RMRGBHistogram some = all;
    some.SetOutput(red.data(), nullptr, blue.data());
    all(pixel);
    some(pixel);
    EXPECT_EQ(red[3], 2U);
    EXPECT_EQ(green[2], 1U);
    EXPECT_EQ(blue[1], 2U);
}
