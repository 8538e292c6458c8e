#include "support/FilterCases.h"
#include "support/TestPool.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cmath>
#include <ctime>
#include <future>
#include <optional>

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
    const TestPool pool;
    for (const FilterCase& filter : FilterCases())
        for (std::size_t i = 0; i < FilterInputs().size(); ++i) {
            SCOPED_TRACE(testing::Message() << filter.name << ", input " << i);
            const FilterInput& in = FilterInputs()[i];
            const FilterImages images(in);
            FilterCaller caller;
            const FilterResult result = filter.run(images, caller);
            const Plan plan = filter.plan(in);
            EXPECT_TRUE(SameRun(result, caller, plan, plan.Do(INT_MAX)));
            EXPECT_TRUE(Same(PlaneOf(images.image), in.image)) << "the caller's image was written";
            EXPECT_TRUE(Same(PlaneOf(images.selection), in.selection));
            EXPECT_TRUE(caller.LocksAreFree());
        }
}

TEST(Filter, HighPassKeepsItsResultByRadius) {
    const TestPool pool;
    for (const FilterInput& in : {Whole(), Selected()}) {
        LXHighPassProcessing::Params params;
        params.radius = 1.0;
        FilterCaller caller;
        caller.atProgress = [&](int) {
            EXPECT_TRUE(caller.LocksAreFree()) << "a lock is held during the stages";
        };
        const Plan missed = HighPass(in, params, nullptr);
        FilterResult result = RunHighPass(FilterImages(in), caller, params);
        EXPECT_TRUE(SameRun(result, caller, missed, missed.Do(INT_MAX)));
        EXPECT_EQ(caller.cachedRadius, 1.0);
        EXPECT_TRUE(Same(PlaneOf(caller.cachedResult), *missed.kept));

        params.modeIndex = 3; // the same radius, and what was kept
        caller.ranges.clear();
        caller.values.clear();
        const Plan hit = HighPass(in, params, missed.kept.get());
        result = RunHighPass(FilterImages(in), caller, params);
        EXPECT_TRUE(SameRun(result, caller, hit, hit.Do(INT_MAX)));
        EXPECT_EQ(caller.values, (std::vector<int>{1, 2}));
        EXPECT_TRUE(Same(PlaneOf(caller.cachedResult), *missed.kept));

        params.radius = 2.0; // another, and all over again
        caller.ranges.clear();
        caller.values.clear();
        const Plan again = HighPass(in, params, nullptr);
        result = RunHighPass(FilterImages(in), caller, params);
        EXPECT_TRUE(SameRun(result, caller, again, again.Do(INT_MAX)));
        EXPECT_EQ(caller.cachedRadius, 2.0);
        EXPECT_TRUE(Same(PlaneOf(caller.cachedResult), *again.kept));
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

TEST(Filter, HighPassLeavesTheCacheAloneWhenItIsStopped) {
    const TestPool pool;
    LXHighPassProcessing::Params params;
    params.radius = 1.0;
    for (const FilterInput& in : {Whole(), Selected()}) {
        const int total = int(HighPass(in, params, nullptr).Do(INT_MAX).size());
        for (const int stop : {0, 1, total / 2, total - 3, total - 2, total - 1, total}) {
            SCOPED_TRACE(stop);
            FilterCaller caller;
            caller.cancelFlag = stop == 0;
            caller.cancelAt = stop;
            const Plan plan = HighPass(in, params, nullptr);
            const FilterResult result = RunHighPass(FilterImages(in), caller, params);
            EXPECT_TRUE(SameRun(result, caller, plan, plan.Do(stop)));
            EXPECT_TRUE(Same(PlaneOf(caller.cachedResult), *plan.kept));
            EXPECT_EQ(std::isnan(caller.cachedRadius), plan.kept->pixels.empty());
        }
    }
}

/// The noise of a run is that of a second in which it ran.
TEST(Filter, NoiseIsDrawnAndKeptBySize) {
    const TestPool pool;
    for (const FilterInput& in : {Whole(), Selected()})
        for (const int distribution : {0, 1}) {
            SCOPED_TRACE(testing::Message() << in.selectionRect.width() << " " << distribution);
            LXAddNoiseProcessing::Params params;
            params.distribution = distribution;
            FilterCaller caller;
            const LXImageRGBA32i& cache =
                distribution == 0 ? caller.cachedUniformNoise : caller.cachedGaussianNoise;
            const LXImageRGBA32i& other =
                distribution != 0 ? caller.cachedUniformNoise : caller.cachedGaussianNoise;
            caller.cachedUniformNoise = caller.cachedGaussianNoise = RandomImage(7, 9, 5);
            caller.atProgress = [&](int) {
                EXPECT_TRUE(caller.LocksAreFree()) << "a lock is held during the stages";
            };
            const auto from = unsigned(std::time(nullptr));
            FilterResult result = RunAddNoise(FilterImages(in), caller, params);
            const auto to = unsigned(std::time(nullptr));
            std::optional<Plan> drawn;
            for (unsigned int seed = from; seed <= to && !drawn; ++seed) {
                const Plan plan = AddNoise(in, params, nullptr, seed);
                const std::vector<int> reported = plan.Do(INT_MAX);
                if (seed == to || Same(PlaneOf(cache), *plan.kept)) {
                    EXPECT_TRUE(SameRun(result, caller, plan, reported));
                    drawn = plan;
                }
            }
            EXPECT_TRUE(Same(PlaneOf(cache), *drawn->kept));
            EXPECT_TRUE(SamePixels(other, RandomImage(7, 9, 5)));

            params.amount = 20; // the pattern stays
            params.keepAlpha = false;
            caller.ranges.clear();
            caller.values.clear();
            const Plan hit = AddNoise(in, params, drawn->kept.get(), 0);
            result = RunAddNoise(FilterImages(in), caller, params);
            EXPECT_TRUE(SameRun(result, caller, hit, hit.Do(INT_MAX)));
            EXPECT_TRUE(Same(PlaneOf(cache), *drawn->kept));
        }
}

TEST(Filter, NoiseIsKeptUnlessItsDrawingIsStopped) {
    const TestPool pool;
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
    const TestPool pool;
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

    const auto same = [](const std::vector<double>& got, const std::array<double, 3>& expected) {
        bool equal = got.size() == 3;
        for (std::size_t i = 0; equal && i < 3; ++i)
            equal = got[i] == expected[i] || std::abs(got[i] - expected[i]) <= 1e-9 ||
                    (std::isnan(got[i]) && std::isnan(expected[i]));
        return equal ? testing::AssertionSuccess()
                     : testing::AssertionFailure() << testing::PrintToString(got) << " and "
                                                   << testing::PrintToString(expected);
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
