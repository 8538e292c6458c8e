#include "support/FilterCases.h"

#include "LXBlurProcessing.h"
#include "LXSharpenProcessing.h"

#include <QtCore/QThread>

#include <gtest/gtest.h>

#include <cmath>
#include <utility>

namespace {

using namespace Reference;
using Image = LXImageRGBA32i;

FilterResult ResultOf(const Image& image) {
    return {{image}, {}};
}
FilterResult ResultOf(const LXImageAtOffset& result) {
    return {{result.image}, result.offset};
}
FilterResult ResultOf(const LXInnerShadowProcessing::InnerShadowResult& result) {
    return {{result.colorImage, result.maskImage}, result.offset};
}

/// What is not read is there, and misleads.
template <class Data>
Data DataOf(const FilterImages& in) {
    Data data;
    data.image = in.image;
    data.selection = in.selection;
    data.reserved = in.selection;
    data.selectionRect = in.selectionRect;
    data.selectionOffset = in.selectionOffset;
    return data;
}

template <class Filter, class Data, class... Caches>
FilterResult Watched(FilterCaller& caller, Data data, Caches&... caches) {
    Filter filter(caller.cancelLock, caller.cancelFlag, caches...);
    caller.Watch(filter);
    return ResultOf(filter.run(std::move(data)));
}

/// With one number.
template <class Filter, class Data, class Value>
FilterCase Strength(const std::string& name, Value Data::*field, Value value,
                    Plan (*plan)(const FilterInput&, Value)) {
    return {name + " " + std::to_string(value),
            [=](const FilterImages& in, FilterCaller& caller) {
                auto data = DataOf<Data>(in);
                data.*field = value;
                data.reservedPoint = QPoint(7, 9);
                data.reservedFlag = true;
                return Watched<Filter>(caller, data);
            },
            [=](const FilterInput& in) { return plan(in, value); }};
}

template <class Filter, class Radius>
FilterCase BlurEx(const std::string& name, Radius radius, int margin, const QRect& visible,
                  Plan (*plan)(const FilterInput&, Radius)) {
    return {name,
            [=](const FilterImages& in, FilterCaller& caller) {
                auto data = DataOf<typename Filter::BlurDataEx>(in);
                data.radius = radius;
                data.visibleRect = visible;
                data.origin = QPoint(1000, -50);
                Filter filter(caller.cancelLock, caller.cancelFlag);
                caller.Watch(filter);
                return ResultOf(filter.runEx(data));
            },
            [=](const FilterInput& in) {
                QPoint offset(1000, -50);
                Plan result = plan(Extended(in, visible, margin, offset), radius);
                result.offset = offset;
                return result;
            }};
}

/// With parameters as the filter has them on a stream.
template <class Filter, class Params>
FilterCase WithParams(const std::string& name, const Params& params,
                      Plan (*plan)(const FilterInput&, const Params&)) {
    return {name,
            [=](const FilterImages& in, FilterCaller& caller) {
                auto data = DataOf<LXFilterData<Params>>(in);
                data.params = params;
                return Watched<Filter>(caller, data);
            },
            [=](const FilterInput& in) { return plan(in, params); }};
}

FilterCase VignetteCase(const std::string& name, int size, int strength, int shape) {
    return WithParams<LXVignetteProcessing>(
        "Vignette " + name, {size, strength, QColor(200, 30, 60, 128), shape}, Vignette);
}

FilterCase GlowCase(const std::string& name, int opacity, int radius, int threshold, int mode) {
    return WithParams<LXDiffuseGlowProcessing>(
        "DiffuseGlow " + name, {opacity, radius, threshold, QColor(250, 220, 90, 7), mode},
        DiffuseGlow);
}

FilterCase HighPassCase(const std::string& name, const LXHighPassProcessing::Params& params,
                        bool hit) {
    const Plane cached = RandomPlane(100, 90, 77);
    return {"HighPass " + name,
            [=](const FilterImages& in, FilterCaller& caller) {
                if (hit) {
                    caller.cachedRadius = params.radius;
                    caller.cachedResult = ImageOf(cached);
                }
                return RunHighPass(in, caller, params);
            },
            [=](const FilterInput& in) { return HighPass(in, params, hit ? &cached : nullptr); }};
}

/// With noise in the cache.
FilterCase NoiseCase(const std::string& name, const LXAddNoiseProcessing::Params& params) {
    const auto noise = [=](QSize size) {
        return RandomPlane(size.width(), size.height(), unsigned(params.distribution));
    };
    return {"AddNoise " + name,
            [=](const FilterImages& in, FilterCaller& caller) {
                const QSize whole(int(in.image.GetWidth()), int(in.image.GetHeight()));
                (params.distribution == 0 ? caller.cachedUniformNoise
                                          : caller.cachedGaussianNoise) =
                    ImageOf(noise(in.selectionRect.isValid() ? in.selectionRect.size() : whole));
                return RunAddNoise(in, caller, params);
            },
            [=](const FilterInput& in) {
                const QRect rect = in.selectionRect.isValid() ? in.selectionRect : in.image.Rect();
                const Plane cached = noise(rect.size());
                return AddNoise(in, params, &cached, 0);
            }};
}

template <class Filter>
FilterCase ShadowCase(const std::string& name, int blurRadius, bool useSelection,
                      Plan (*plan)(const FilterInput&, const LXShadowParams&, bool)) {
    using Params = typename Filter::Params;
    Params params;
    params.color = QColor(10, 20, 30, 40);
    params.blurRadius = blurRadius;
    return {name,
            [=](const FilterImages& in, FilterCaller& caller) {
                const LXShadowData<Params> data{params,       in.image,           in.selection,
                                                in.selection, in.selectionOffset, useSelection};
                return Watched<Filter>(caller, data);
            },
            [=](const FilterInput& in) { return plan(in, params, useSelection); }};
}

FilterCase RefineCase(const std::string& name, double smoothRadius, int shift) {
    const RMRefineSelectionProcessing::Params params{smoothRadius, shift};
    const QSize canvas(170, 160);
    return {"RefineSelection " + name,
            [=](const FilterImages& in, FilterCaller& caller) {
                RMRefineSelectionProcessing::RefineSelectionData data;
                data.image = in.image;
                data.selectionRect = in.selectionRect;
                data.position = in.selectionOffset;
                data.canvasSize = canvas;
                data.params = params;
                return Watched<RMRefineSelectionProcessing>(caller, data);
            },
            [=](const FilterInput& in) { return RefineSelection(in, canvas, params); }};
}

std::vector<FilterCase> MakeFilterCases() {
    using Drop = LXDropShadowProcessing;
    using Inner = LXInnerShadowProcessing;
    using Gaussian = LXGaussianBlurProcessing;
    using Box = LXBoxBlurProcessing;
    std::vector<FilterCase> cases{
        VignetteCase("linear", 40, 80, 0),
        VignetteCase("parabolic", 30, 100, 1),
        VignetteCase("without strength", 40, 0, 0),
        VignetteCase("away from the colour", 40, -50, 1),
        VignetteCase("of size 0", 0, 100, 0),
        VignetteCase("of no shape", 40, 80, 2),
        HighPassCase("missed", {2.0, 1, 70}, false),
        HighPassCase("missed, small", {0.3, 4, 100}, false),
        HighPassCase("missed, blank", {1.0, 2, 0}, false),
        HighPassCase("hit", {2.0, 2, 70}, true),
        HighPassCase("hit, other mode", {2.0, 3, 100}, true),
        HighPassCase("hit, bad mode", {2.0, -1, 100}, true),
        Strength<Gaussian>("GaussianBlur", &LXBlurData<double>::radius, 1.5, GaussianBlur),
        BlurEx<Gaussian>("GaussianBlurEx far outside", 1.5, 4, QRect(-500, 3, 2000, 140),
                         GaussianBlur),
        BlurEx<Gaussian>("GaussianBlurEx inside", 1.5, 4, QRect(10, 10, 20, 20), GaussianBlur),
        BlurEx<Box>("BoxBlurEx upwards", 3, 3, QRect(20, -2, 10, 10), BoxBlur),
        BlurEx<Box>("BoxBlurEx the image", 3, 3, QRect(0, 0, 150, 140), BoxBlur),
        BlurEx<Box>("BoxBlurEx to the right", 3, 3, QRect(140, 100, 100, 10), BoxBlur),
        GlowCase("over", 60, 1, 100, 0),
        GlowCase("under", 100, 2, 60, 1),
        GlowCase("solid", 30, 1, 0, 0),
        GlowCase("of nothing", 100, 1, 256, 3),
        GlowCase("without opacity", 0, 1, 100, 0),
        NoiseCase("uniform", {60, 0, true}),
        NoiseCase("gaussian", {100, 1, false}),
        NoiseCase("of another distribution", {30, -7, true}),
        ShadowCase<Drop>("DropShadow blurred", 5, false, DropShadow),
        ShadowCase<Drop>("DropShadow blurred, beyond the selection", 5, true, DropShadow),
        ShadowCase<Drop>("DropShadow sharp", 0, false, DropShadow),
        ShadowCase<Inner>("InnerShadow blurred", 5, false, InnerShadow),
        ShadowCase<Inner>("InnerShadow blurred, beyond the selection", 5, true, InnerShadow),
        ShadowCase<Inner>("InnerShadow sharp", 0, true, InnerShadow),
        RefineCase("smoothed", 2.5, 0),
        RefineCase("hardly smoothed", 0.5, 0),
        RefineCase("smoothed and grown", 3.2, 4),
        RefineCase("smoothed and shrunk", 1.0, -3),
        RefineCase("grown", 0.0, 5),
        RefineCase("shrunk", 0.0, -4),
        RefineCase("as it is", 0.0, 0),
    };
    for (const int amount : {200, 0, 400})
        cases.push_back(
            Strength<LXSmoothenProcessing>("Smoothen", &LXThreeTapData::amount, amount, Smoothen));
    for (const int amount : {300, 0})
        cases.push_back(Strength<LXSharpenProcessing>("Sharpen", &LXThreeTapData::amount, amount,
                                                      SharpenFilter));
    for (const int radius : {4, 0, 160})
        cases.push_back(Strength<Box>("BoxBlur", &LXBlurData<int>::radius, radius, BoxBlur));
    return cases;
}

} // namespace

FilterImages::FilterImages(const FilterInput& in)
    : image(unsigned(in.image.width), unsigned(in.image.height)), selection(ImageOf(in.selection)),
      selectionRect(in.selectionRect), selectionOffset(in.selectionOffset) {
    image.FastFill(in.beyond);
    for (int y = 0; y < in.image.height; ++y)
        image.WriteLine(unsigned(y), reinterpret_cast<const unsigned char*>(&in.image.At(0, y)),
                        unsigned(in.image.width) * 4);
}

FilterCaller::FilterCaller(FilterCaller* shared)
    : cancelLock(shared ? shared->cancelLock : m_ownLock),
      cancelFlag(shared ? shared->cancelFlag : m_ownFlag) {}

void FilterCaller::Watch(LXAdjustmentProcessing& filter) {
    const auto checkThread = [thread = QThread::currentThread()] {
        EXPECT_EQ(QThread::currentThread(), thread) << "a signal came from another thread";
    };
    QObject::connect(&filter, &LXAdjustmentProcessing::RangeChanged,
                     [=, &filter](int low, int high) {
                         checkThread();
                         EXPECT_EQ(low, 0);
                         EXPECT_EQ(filter.GetMaximumRange(), high);
                         ranges.push_back(high);
                     });
    QObject::connect(&filter, &LXAdjustmentProcessing::ProgressChanged, [=, &filter](int value) {
        checkThread();
        EXPECT_EQ(filter.GetRangeValue(), value);
        values.push_back(value);
        if (atProgress)
            atProgress(value);
        if (int(values.size()) == cancelAt)
            Cancel();
    });
}

void FilterCaller::Cancel() {
    if (!cancelLock.tryLockForWrite(2000)) {
        ADD_FAILURE() << "the filter holds its lock while it emits a signal";
        return;
    }
    cancelFlag = true;
    cancelLock.unlock();
}

bool FilterCaller::LocksAreFree() {
    for (QReadWriteLock* lock : {&cancelLock, &cacheLock}) {
        if (!lock->tryLockForWrite())
            return false;
        lock->unlock();
    }
    return true;
}

FilterResult RunHighPass(const FilterImages& in, FilterCaller& caller,
                         const LXHighPassProcessing::Params& params) {
    auto data = DataOf<LXHighPassProcessing::HighPassData>(in);
    data.params = params;
    caller.cache = &caller.cachedResult;
    return Watched<LXHighPassProcessing>(caller, data, caller.cacheLock, caller.cachedRadius,
                                         caller.cachedResult);
}

FilterResult RunAddNoise(const FilterImages& in, FilterCaller& caller,
                         const LXAddNoiseProcessing::Params& params) {
    auto data = DataOf<LXAddNoiseProcessing::AddNoiseData>(in);
    data.params = params;
    caller.cache =
        params.distribution == 0 ? &caller.cachedUniformNoise : &caller.cachedGaussianNoise;
    return Watched<LXAddNoiseProcessing>(caller, data, caller.cacheLock, caller.cachedUniformNoise,
                                         caller.cachedGaussianNoise);
}

const std::vector<FilterCase>& FilterCases() {
    static const std::vector<FilterCase> cases = MakeFilterCases();
    return cases;
}

const std::vector<FilterInput>& FilterInputs() {
    static const std::vector<FilterInput> inputs = [] {
        const Plane image = RandomPlane(150, 140, 1), selection = RandomPlane(120, 100, 2),
                    nothing(0, 0);
        const LXRGBA32i beyond{9, 80, 7, 200};
        return std::vector<FilterInput>{
            {image, selection, QRect(), QPoint(30, 20), beyond},
            {image, selection, QRect(10, 5, 90, 60), QPoint(30, 90), beyond},
            {image, selection, QRect(0, 0, 120, 100), QPoint(-20, -30), beyond},
            {image, selection, QRect(5, 5, 300, 300), QPoint(0, 3), beyond},
            {image, selection, QRect(0, 0, 20, 20), QPoint(500, 0), beyond},
            {image, selection, QRect(QPoint(50, 50), QPoint(40, 60)), QPoint(), beyond},
            {image, nothing, QRect(0, 0, 60, 60), QPoint(10, 10), beyond},
            {nothing, nothing, QRect(), QPoint(), beyond},
            {nothing, selection, QRect(0, 0, 20, 20), QPoint(), beyond},
        };
    }();
    return inputs;
}

testing::AssertionResult SameRun(const FilterResult& result, const FilterCaller& caller,
                                 const Plan& plan, const std::vector<int>& reported) {
    if (caller.ranges != (plan.range == 0 ? std::vector<int>() : std::vector<int>{plan.range}))
        return testing::AssertionFailure() << "ranges " << testing::PrintToString(caller.ranges)
                                           << " instead of " << plan.range;
    if (caller.values != reported)
        return testing::AssertionFailure() << "progress " << testing::PrintToString(caller.values)
                                           << " instead of " << testing::PrintToString(reported);
    if (result.offset != plan.offset || result.images.size() != plan.results.size())
        return testing::AssertionFailure()
               << "offset " << result.offset.x() << " " << result.offset.y() << " instead of "
               << plan.offset.x() << " " << plan.offset.y();
    for (std::size_t i = 0; i < plan.results.size(); ++i)
        if (const auto same = Same(PlaneOf(result.images[i]), *plan.results[i]); !same)
            return same;
    return caller.cache ? Same(PlaneOf(*caller.cache), *plan.kept) << " in the cache"
                        : testing::AssertionSuccess();
}

void CheckRun(const FilterCase& filter, const FilterInput& in, FilterCaller& caller, int stop) {
    SCOPED_TRACE(testing::Message() << filter.name << ", stopped after " << stop);
    const FilterImages images(in);
    caller.cancelFlag = stop <= 0;
    caller.cancelAt = stop;
    caller.ranges.clear();
    caller.values.clear();
    const FilterResult result = filter.run(images, caller);
    const Plan plan = filter.plan(in);
    EXPECT_TRUE(SameRun(result, caller, plan, plan.Do(stop)));
    EXPECT_TRUE(Same(PlaneOf(images.image), in.image)) << "the caller's image was written";
    EXPECT_TRUE(Same(PlaneOf(images.selection), in.selection));
    EXPECT_EQ(std::isnan(caller.cachedRadius), caller.cachedResult.GetWidth() == 0);
    EXPECT_TRUE(caller.LocksAreFree());
}
