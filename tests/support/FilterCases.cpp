#include "support/FilterCases.h"

#include "LXBlurProcessing.h"
#include "LXSharpenProcessing.h"

#include <QtCore/QThread>

#include <gtest/gtest.h>

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

FilterCase VignetteCase(const std::string& name, int size, int strength, int shape) {
    LXVignetteProcessing::Params params;
    params.size = size;
    params.strength = strength;
    params.color = QColor(200, 30, 60, 128);
    params.shape = shape;
    return {"Vignette " + name,
            [=](const FilterImages& in, FilterCaller& caller) {
                auto data = DataOf<LXVignetteProcessing::VignetteData>(in);
                data.params = params;
                return Watched<LXVignetteProcessing>(caller, data);
            },
            [=](const FilterInput& in) { return Vignette(in, params); }};
}

FilterCase HighPassCase(const std::string& name, double radius, int modeIndex, int opacity,
                        bool hit) {
    LXHighPassProcessing::Params params;
    params.radius = radius;
    params.modeIndex = modeIndex;
    params.opacity = opacity;
    const Plane cached = RandomPlane(100, 90, 77);
    return {"HighPass " + name,
            [=](const FilterImages& in, FilterCaller& caller) {
                if (hit) {
                    caller.cachedRadius = radius;
                    caller.cachedResult = ImageOf(cached);
                }
                return RunHighPass(in, caller, params);
            },
            [=](const FilterInput& in) { return HighPass(in, params, hit ? &cached : nullptr); }};
}

FilterCase GlowCase(const std::string& name, int opacity, int radius, int threshold, int mode) {
    LXDiffuseGlowProcessing::Params params;
    params.opacity = opacity;
    params.radius = radius;
    params.threshold = threshold;
    params.color = QColor(250, 220, 90, 7);
    params.mode = mode;
    return {"DiffuseGlow " + name,
            [=](const FilterImages& in, FilterCaller& caller) {
                auto data = DataOf<LXDiffuseGlowProcessing::DiffuseGlowData>(in);
                data.params = params;
                return Watched<LXDiffuseGlowProcessing>(caller, data);
            },
            [=](const FilterInput& in) { return DiffuseGlow(in, params); }};
}

/// With noise in the cache.
FilterCase NoiseCase(const std::string& name, int amount, int distribution, bool keepAlpha) {
    LXAddNoiseProcessing::Params params;
    params.amount = amount;
    params.distribution = distribution;
    params.keepAlpha = keepAlpha;
    const auto noise = [=](int width, int height) {
        return RandomPlane(width, height, unsigned(distribution));
    };
    return {"AddNoise " + name,
            [=](const FilterImages& in, FilterCaller& caller) {
                const bool whole = !in.selectionRect.isValid();
                const int width = whole ? int(in.image.GetWidth()) : in.selectionRect.width();
                const int height = whole ? int(in.image.GetHeight()) : in.selectionRect.height();
                (distribution == 0 ? caller.cachedUniformNoise : caller.cachedGaussianNoise) =
                    ImageOf(noise(width, height));
                return RunAddNoise(in, caller, params);
            },
            [=](const FilterInput& in) {
                const QRect rect = in.selectionRect.isValid() ? in.selectionRect : in.image.Rect();
                const Plane cached = noise(rect.width(), rect.height());
                return AddNoise(in, params, &cached, 0);
            }};
}

template <class Filter, class Data>
FilterCase ShadowCase(const std::string& name, int blurRadius, bool useSelection,
                      Plan (*plan)(const FilterInput&, const LXShadowParams&, bool)) {
    LXShadowParams params;
    params.color = QColor(10, 20, 30, 40);
    params.blurRadius = blurRadius;
    return {name,
            [=](const FilterImages& in, FilterCaller& caller) {
                Data data;
                static_cast<LXShadowParams&>(data.params) = params;
                data.image = in.image;
                data.selection = in.selection;
                data.selectionOrigin = in.selectionOffset;
                data.useSelection = useSelection;
                return Watched<Filter>(caller, data);
            },
            [=](const FilterInput& in) { return plan(in, params, useSelection); }};
}

FilterCase RefineCase(const std::string& name, double smoothRadius, int shift) {
    RMRefineSelectionProcessing::Params params;
    params.smoothRadius = smoothRadius;
    params.shift = shift;
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
    const auto smoothen = [](int amount) {
        return Strength<LXSmoothenProcessing>("Smoothen", &LXThreeTapData::amount, amount,
                                              Reference::Smoothen);
    };
    const auto sharpen = [](int amount) {
        return Strength<LXSharpenProcessing>("Sharpen", &LXThreeTapData::amount, amount,
                                             SharpenFilter);
    };
    const auto box = [](int radius) {
        return Strength<LXBoxBlurProcessing>("BoxBlur", &LXBlurData<int>::radius, radius, BoxBlur);
    };
    const auto gaussian = [](double radius) {
        return Strength<LXGaussianBlurProcessing>("GaussianBlur", &LXBlurData<double>::radius,
                                                  radius, GaussianBlur);
    };
    const auto gaussianEx = [](const std::string& name, const QRect& visible) {
        return BlurEx<LXGaussianBlurProcessing>("GaussianBlurEx " + name, 1.5, 4, visible,
                                                GaussianBlur);
    };
    const auto boxEx = [](const std::string& name, const QRect& visible) {
        return BlurEx<LXBoxBlurProcessing>("BoxBlurEx " + name, 3, 3, visible, BoxBlur);
    };
    const auto drop = [](const std::string& name, int radius, bool useSelection) {
        return ShadowCase<Drop, Drop::DropShadowData>("DropShadow " + name, radius, useSelection,
                                                      DropShadow);
    };
    const auto inner = [](const std::string& name, int radius, bool useSelection) {
        return ShadowCase<Inner, Inner::InnerShadowData>("InnerShadow " + name, radius,
                                                         useSelection, InnerShadow);
    };
    return {
        VignetteCase("linear", 40, 80, 0),
        VignetteCase("parabolic", 30, 100, 1),
        VignetteCase("without strength", 40, 0, 0),
        VignetteCase("away from the colour", 40, -50, 1),
        VignetteCase("of size 0", 0, 100, 0),
        VignetteCase("of no shape", 40, 80, 2),
        smoothen(200),
        smoothen(0),
        smoothen(400),
        sharpen(300),
        sharpen(0),
        HighPassCase("missed", 2.0, 1, 70, false),
        HighPassCase("missed, small", 0.3, 4, 100, false),
        HighPassCase("missed, blank", 1.0, 2, 0, false),
        HighPassCase("hit", 2.0, 2, 70, true),
        HighPassCase("hit, other mode", 2.0, 3, 100, true),
        HighPassCase("hit, bad mode", 2.0, -1, 100, true),
        gaussian(1.5),
        gaussianEx("far outside", QRect(-500, 3, 2000, 140)),
        gaussianEx("inside", QRect(10, 10, 20, 20)),
        boxEx("upwards", QRect(20, -2, 10, 10)),
        boxEx("the image", QRect(0, 0, 150, 140)),
        boxEx("to the right", QRect(140, 100, 100, 10)),
        GlowCase("over", 60, 1, 100, 0),
        GlowCase("under", 100, 2, 60, 1),
        GlowCase("solid", 30, 1, 0, 0),
        GlowCase("of nothing", 100, 1, 256, 3),
        GlowCase("without opacity", 0, 1, 100, 0),
        box(4),
        box(0),
        box(160),
        NoiseCase("uniform", 60, 0, true),
        NoiseCase("gaussian", 100, 1, false),
        NoiseCase("of another distribution", 30, -7, true),
        drop("blurred", 5, false),
        drop("blurred, beyond the selection", 5, true),
        drop("sharp", 0, false),
        inner("blurred", 5, false),
        inner("blurred, beyond the selection", 5, true),
        inner("sharp", 0, true),
        RefineCase("smoothed", 2.5, 0),
        RefineCase("hardly smoothed", 0.5, 0),
        RefineCase("smoothed and grown", 3.2, 4),
        RefineCase("smoothed and shrunk", 1.0, -3),
        RefineCase("grown", 0.0, 5),
        RefineCase("shrunk", 0.0, -4),
        RefineCase("as it is", 0.0, 0),
    };
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
    QThread* const thread = QThread::currentThread();
    const auto checkThread = [thread] {
        EXPECT_EQ(QThread::currentThread(), thread) << "a signal came from another thread";
    };
    QObject::connect(&filter, &LXAdjustmentProcessing::RangeChanged,
                     [this, checkThread, &filter](int minimum, int maximum) {
                         checkThread();
                         EXPECT_EQ(minimum, 0);
                         EXPECT_EQ(filter.GetMaximumRange(), maximum);
                         ranges.push_back(maximum);
                     });
    QObject::connect(&filter, &LXAdjustmentProcessing::ProgressChanged,
                     [this, checkThread, &filter](int value) {
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
    return Watched<LXHighPassProcessing>(caller, data, caller.cacheLock, caller.cachedRadius,
                                         caller.cachedResult);
}

FilterResult RunAddNoise(const FilterImages& in, FilterCaller& caller,
                         const LXAddNoiseProcessing::Params& params) {
    auto data = DataOf<LXAddNoiseProcessing::AddNoiseData>(in);
    data.params = params;
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
    return testing::AssertionSuccess();
}
