#include "support/FilterCases.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cmath>
#include <ctime>
#include <future>

namespace {

using namespace Reference;

/// In the image, over the border of a tile from a row on that is not its first, and whole.
const FilterInput& Selected() {
    return FilterInputs()[1];
}
const FilterInput& Whole() {
    return FilterInputs()[0];
}

} // namespace

TEST(Filter, AsThePlainPasses) {
    for (const FilterCase& filter : FilterCases())
        for (std::size_t i = 0; i < FilterInputs().size(); ++i) {
            SCOPED_TRACE(testing::Message() << "input " << i);
            FilterCaller caller;
            CheckRun(filter, FilterInputs()[i], caller);
        }
}

namespace {

FilterCase HighPassCase(const LXHighPassProcessing::Params& params, const Plane* cached) {
    return {"HighPass",
            [=](const FilterImages& images, FilterCaller& caller) {
                return RunHighPass(images, caller, params);
            },
            [=](const FilterInput& in) { return HighPass(in, params, cached); }};
}

} // namespace

TEST(Filter, HighPassKeepsItsResultByRadius) {
    for (const FilterInput& in : {Whole(), Selected()}) {
        FilterCaller caller;
        caller.atProgress = [&](int) {
            EXPECT_TRUE(caller.LocksAreFree()) << "a lock is held during the stages";
        };
        CheckRun(HighPassCase({1.0, 1, 100}, nullptr), in, caller);
        EXPECT_EQ(caller.cachedRadius, 1.0);
        const Plane kept = PlaneOf(caller.cachedResult);
        CheckRun(HighPassCase({1.0, 3, 100}, &kept), in, caller);
        EXPECT_EQ(caller.values, (std::vector<int>{1, 2}));
        CheckRun(HighPassCase({2.0, 3, 100}, nullptr), in, caller);
        EXPECT_EQ(caller.cachedRadius, 2.0);
    }

    // The cache is written alone: not while another reads it.
    FilterCaller caller;
    caller.cacheLock.lockForRead();
    auto running = std::async(std::launch::async, [&] {
        return RunHighPass(FilterImages(Whole()), caller, {0.3, 0, 100});
    });
    EXPECT_EQ(running.wait_for(std::chrono::milliseconds(300)), std::future_status::timeout);
    EXPECT_EQ(caller.cachedResult.GetWidth(), 0u);
    caller.cacheLock.unlock();
    running.get();
    EXPECT_EQ(caller.cachedResult.GetWidth(), 150u);
}

TEST(Filter, HighPassModes) {
    EXPECT_EQ(LXHighPassProcessing::IndexToMode(0), 0u);
    EXPECT_EQ(LXHighPassProcessing::IndexToMode(1), 15u);
    EXPECT_EQ(LXHighPassProcessing::IndexToMode(2), 21u);
    EXPECT_EQ(LXHighPassProcessing::IndexToMode(3), 20u);
    for (const int other : {-1, 4, INT_MIN, INT_MAX})
        EXPECT_EQ(LXHighPassProcessing::IndexToMode(other), 0u);
}

/// The noise of a run is that of a second in which it ran.
TEST(Filter, NoiseIsDrawnAndKeptBySize) {
    for (const FilterInput& in : {Whole(), Selected()})
        for (const int distribution : {0, 1}) {
            SCOPED_TRACE(testing::Message() << in.selectionRect.width() << " " << distribution);
            LXAddNoiseProcessing::Params params;
            params.distribution = distribution;
            FilterCaller caller;
            // Noise of the same height or the same width is not taken for one of the size.
            const QRect noise = in.selectionRect.isValid() ? in.selectionRect : in.image.Rect();
            const LXImageRGBA32i before = distribution == 0
                                              ? RandomImage(7, unsigned(noise.height()), 5)
                                              : RandomImage(unsigned(noise.width()), 9, 5);
            caller.cachedUniformNoise = caller.cachedGaussianNoise = before;
            caller.atProgress = [&](int) {
                EXPECT_TRUE(caller.LocksAreFree()) << "a lock is held during the stages";
            };
            const auto from = unsigned(std::time(nullptr));
            const FilterResult result = RunAddNoise(FilterImages(in), caller, params);
            const auto to = unsigned(std::time(nullptr));
            auto same = testing::AssertionFailure();
            for (unsigned int seed = from; seed <= to && !same; ++seed) {
                const Plan plan = AddNoise(in, params, nullptr, seed);
                same = SameRun(result, caller, plan, plan.Do(INT_MAX));
            }
            EXPECT_TRUE(same);
            EXPECT_TRUE(SamePixels(distribution == 0 ? caller.cachedGaussianNoise
                                                     : caller.cachedUniformNoise,
                                   before));

            params.amount = 20; // the pattern stays
            params.keepAlpha = false;
            const Plane kept = PlaneOf(*caller.cache);
            const FilterCase again{
                "AddNoise",
                [&](const FilterImages& images, FilterCaller& c) {
                    return RunAddNoise(images, c, params);
                },
                [&](const FilterInput& input) { return AddNoise(input, params, &kept, 0); }};
            CheckRun(again, in, caller);
        }
}

TEST(Filter, NoiseIsKeptUnlessItsDrawingIsStopped) {
    for (const auto& [in, tiles] : {std::pair(Whole(), 4), std::pair(Selected(), 1)})
        for (int stop = 0; stop <= tiles + 1; ++stop) {
            SCOPED_TRACE(stop);
            FilterCaller caller;
            caller.cancelFlag = stop == 0;
            caller.cancelAt = stop;
            // Another reader does not keep the noise from being stored.
            caller.cacheLock.lockForRead();
            const FilterResult result = RunAddNoise(FilterImages(in), caller, {});
            caller.cacheLock.unlock();
            EXPECT_EQ(int(caller.values.size()), stop);
            EXPECT_EQ(caller.cachedUniformNoise.GetWidth() != 0, stop > tiles);
            EXPECT_EQ(bool(Same(PlaneOf(result.images[0]), in.image)), stop <= tiles);
        }
}

TEST(Filter, ShadowsGrowByWholeTiles) {
    struct Size {
        unsigned int width, height;
        int radius, grownWidth, grownHeight, offset;
    };
    for (const Size& size : {Size{100, 100, 20, 256, 256, -128}, Size{20, 10, 128, 384, 384, -128},
                             Size{20, 10, 129, 512, 512, -256}, Size{128, 300, 1, 384, 512, -128},
                             Size{127, 257, 1, 256, 512, -128}, Size{100, 100, 0, 100, 100, 0}}) {
        SCOPED_TRACE(testing::Message()
                     << size.width << " x " << size.height << " " << size.radius);
        QReadWriteLock lock;
        bool flag = false;
        LXDropShadowProcessing::DropShadowData data;
        data.image = LXImageRGBA32i(size.width, size.height);
        data.image.Fill(LXRGBA32i{1, 2, 3, 255});
        data.params.blurRadius = size.radius;
        data.useSelection = true;
        const LXImageAtOffset shadow = LXDropShadowProcessing(lock, flag).run(data);
        EXPECT_EQ(int(shadow.image.GetWidth()), size.grownWidth);
        EXPECT_EQ(int(shadow.image.GetHeight()), size.grownHeight);
        EXPECT_EQ(shadow.offset, QPoint(size.offset, size.offset));
        EXPECT_EQ(shadow.image.GetColor(0, 0).alpha, size.radius == 0 ? 255 : 0);
    }
}

TEST(Filter, DistancesFromAnEllipse) {
    using Filter = LXVignetteProcessing;
    EXPECT_EQ(Filter::Distance(75, 70, 75, 70), -70) << "the centre";
    EXPECT_EQ(Filter::Distance(75, 70, 75, 150), 10) << "on the vertical axis";
    EXPECT_EQ(Filter::Distance(75, 70, -5, 70), 5) << "on the horizontal axis";
    EXPECT_NEAR(Filter::Distance(10, 10, 13, 14), -5, 1e-12) << "in a circle";
    EXPECT_NEAR(Filter::Distance(10, 5, 30, 20), 25 - 25 / std::sqrt(13.0), 1e-12)
        << "along the ray";

    const auto close = [](double a, double b) {
        return a == b || std::abs(a - b) <= 1e-9 || (std::isnan(a) && std::isnan(b));
    };
    const auto same = [&](const std::vector<double>& got, const std::array<double, 3>& expected) {
        return std::equal(got.begin(), got.end(), expected.begin(), expected.end(), close);
    };
    for (const double e0 : {1.0, 3.0, 5.0, 20.0})
        for (const double e1 : {1.0, 3.0, 4.0})
            for (const double y0 : {-7.0, -2.0, 0.0, 0.5, 1.0, 3.0, 40.0})
                for (const double y1 : {-6.0, -1.0, 0.0, 0.25, 2.0, 4.0, 30.0}) {
                    SCOPED_TRACE(testing::Message() << e0 << " " << e1 << " " << y0 << " " << y1);
                    EXPECT_TRUE(same(Filter::DistancePointEllipse(e0, e1, y0, y1),
                                     PlainDistancePointEllipse(e0, e1, y0, y1)));
                    EXPECT_TRUE(same(Filter::DistancePointEllipseSpecial(e0, e1, y0, y1),
                                     PlainDistancePointEllipseSpecial(e0, e1, y0, y1)));
                }
}
