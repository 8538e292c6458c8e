#include "LXAddNoiseProcessing.h"
#include "LXBlendOn.h"
#include "LXBlurProcessing.h"
#include "LXDiffuseGlowProcessing.h"
#include "LXGaussian1D.h"
#include "LXHighPassProcessing.h"
#include "LXIterativeConvolve.h"
#include "LXShadowProcessing.h"
#include "LXSharpenProcessing.h"
#include "LXSimpleKernel1D.h"
#include "LXTileWalk.h"
#include "LXVignetteProcessing.h"
#include "Pairs.h"
#include "Pictures.h"
#include "RMRefineSelectionProcessing.h"

#include <QtGui/QPainter>

#include <algorithm>
#include <chrono>
#include <limits>
#include <string>
#include <vector>

/// What a filter costs beside its steps, and how long the user waits for it to listen. The peer of
/// a run is its stages bare: the same step objects in plain loops, without progress, lock and flag.
/// All in real time, as steps share their lines out to Qt's pool.

namespace {

using Bench::Count;
using Image = LXImageRGBA32i;

constexpr unsigned int Side = 1024;
constexpr std::size_t SidePixels = std::size_t(Side) * Side;

/// The top left part of a picture.
Image Part(const QImage& picture) {
    Image part(Side, Side);
    const QRect all = LXImageRect(part);
    BlendOn(picture, all, QPainter::CompositionMode_SourceOver, part, all, 1.0, false);
    return part;
}

/// A lock and a flag that nobody sets.
struct Uncancelled {
    QReadWriteLock lock;
    bool flag = false;
};

template <class Processing, class Data>
void Runs(benchmark::State& state, const Data& data) {
    Uncancelled never;
    Processing filter(never.lock, never.flag);
    for (auto _ : state)
        benchmark::DoNotOptimize(filter.run(data));
    Count(state, LXImageRect(data.image).width() * std::size_t(data.image.GetHeight()));
}

template <class Kernel>
void BareStages(benchmark::State& state, const Kernel& kernel) {
    const Bench::OneThread one;
    const Image picture = Part(Bench::Picture());
    for (auto _ : state) {
        Image image = picture;
        LXBlur::LXIterativeConvolveH<Image, Kernel> lines(kernel, image, QRect());
        for (unsigned int i = 0; i < Side; ++i)
            lines();
        LXBlur::LXIterativeConvolveV<Image, Kernel> columns(kernel, image, QRect());
        for (unsigned int i = 0; i < Side; ++i)
            columns();
        benchmark::DoNotOptimize(image);
    }
    Count(state, SidePixels);
}

constexpr double Sigma = 2.0;
constexpr int Amount = 100;

void GaussianRun(benchmark::State& state) {
    const Bench::OneThread one;
    LXGaussianBlurProcessing::BlurData data;
    data.image = Part(Bench::Picture());
    data.radius = Sigma;
    Runs<LXGaussianBlurProcessing>(state, data);
}
BENCHMARK(GaussianRun)->MeasureProcessCPUTime();

void GaussianBare(benchmark::State& state) {
    BareStages(state, LXGaussian1DPremul(Sigma));
}
BENCHMARK(GaussianBare)->MeasureProcessCPUTime();

void SmoothenRun(benchmark::State& state) {
    const Bench::OneThread one;
    LXSmoothenProcessing::SmoothenData data;
    data.image = Part(Bench::Picture());
    data.amount = Amount;
    Runs<LXSmoothenProcessing>(state, data);
}
BENCHMARK(SmoothenRun)->MeasureProcessCPUTime();

void SmoothenBare(benchmark::State& state) {
    BareStages(state, LXSimpleBoxKernel1D(Amount));
}
BENCHMARK(SmoothenBare)->MeasureProcessCPUTime();

/// The record of filters that take their parameters whole, with those of the library.
template <class Params>
LXFilterData<Params> Whole(const Image& image) {
    LXFilterData<Params> data;
    data.image = image;
    return data;
}

/// The caches of a high pass, filled by a run.
struct HighPassCache {
    QReadWriteLock lock;
    double radius = std::numeric_limits<double>::quiet_NaN();
    Image result{0, 0};
};

void HighPassAgain(benchmark::State& state) {
    const Bench::OneThread one;
    Uncancelled never;
    HighPassCache cache;
    LXHighPassProcessing filter(never.lock, never.flag, cache.lock, cache.radius, cache.result);
    auto data = Whole<LXHighPassProcessing::Params>(Part(Bench::Picture()));
    data.params.radius = Sigma;
    filter.run(data);
    data.params.modeIndex = 3;
    for (auto _ : state)
        benchmark::DoNotOptimize(filter.run(data));
    Count(state, SidePixels);
}
BENCHMARK(HighPassAgain)->MeasureProcessCPUTime();

/// The same blend, of other pixels, onto a picture that shares its tiles too.
void HighPassBlend(benchmark::State& state) {
    const Bench::OneThread one;
    const Image picture = Part(Bench::Picture()), details = Part(Bench::OtherPicture());
    const QRect all = LXImageRect(picture);
    for (auto _ : state) {
        Image image = picture;
        BlendOn(details, all, LXHighPassProcessing::IndexToMode(3), image, all, 1.0, false);
        benchmark::DoNotOptimize(image);
    }
    Count(state, SidePixels);
}
BENCHMARK(HighPassBlend)->MeasureProcessCPUTime();

void Vignette(benchmark::State& state) {
    auto data = Whole<LXVignetteProcessing::Params>(Bench::TiledPicture());
    data.params.size = 1000;
    Runs<LXVignetteProcessing>(state, data);
}
BENCHMARK(Vignette)->UseRealTime();

/// The times between two reports of progress.
template <class Processing, class Data, class... Caches>
std::vector<double> StepTimes(const Data& data, Caches&... caches) {
    using Clock = std::chrono::steady_clock;
    Uncancelled never;
    Processing filter(never.lock, never.flag, caches...);
    std::vector<double> times;
    Clock::time_point last;
    QObject::connect(&filter, &Processing::RangeChanged, [&] { last = Clock::now(); });
    QObject::connect(&filter, &Processing::ProgressChanged, [&] {
        const auto now = Clock::now();
        times.push_back(std::chrono::duration<double>(now - last).count());
        last = now;
    });
    filter.run(data);
    return times;
}

/// The longest step if each one counts with its best time of three runs, as what else runs on the
/// machine only ever makes a step longer.
template <class Run>
double Longest(Run run) {
    std::vector<double> best = run();
    for (int i = 0; i < 2; ++i)
        std::transform(best.begin(), best.end(), run().begin(), best.begin(),
                       [](double a, double b) { return std::min(a, b); });
    return *std::max_element(best.begin(), best.end());
}

template <class Processing, class Data>
double LongestStep(const Data& data) {
    return Longest([&] { return StepTimes<Processing>(data); });
}

double VignetteStep(const Image& image) {
    return LongestStep<LXVignetteProcessing>(Whole<LXVignetteProcessing::Params>(image));
}

/// Smoothen, sharpen and the blurs, with the parameter of the library.
template <class Processing, class Data>
double PassStep(const Image& image) {
    Data data;
    data.image = image;
    return LongestStep<Processing>(data);
}

double HighPassStep(const Image& image) {
    const auto data = Whole<LXHighPassProcessing::Params>(image);
    return Longest([&data] {
        HighPassCache cache;
        return StepTimes<LXHighPassProcessing>(data, cache.lock, cache.radius, cache.result);
    });
}

double DiffuseGlowStep(const Image& image) {
    return LongestStep<LXDiffuseGlowProcessing>(Whole<LXDiffuseGlowProcessing::Params>(image));
}

double AddNoiseStep(const Image& image) {
    auto data = Whole<LXAddNoiseProcessing::Params>(image);
    data.params.distribution = 1;
    return Longest([&data] {
        QReadWriteLock lock;
        Image uniform(0, 0), gaussian(0, 0);
        return StepTimes<LXAddNoiseProcessing>(data, lock, uniform, gaussian);
    });
}

double RefineSelectionStep(const Image& image) {
    RMRefineSelectionProcessing::RefineSelectionData data;
    data.image = image;
    data.selectionRect = LXImageRect(image);
    data.canvasSize = data.selectionRect.size();
    data.params.smoothRadius = 5;
    data.params.shift = 5;
    return LongestStep<RMRefineSelectionProcessing>(data);
}

struct Filter {
    const char* name;
    double (*longestStep)(const Image& image);
};

using Gaussian = LXGaussianBlurProcessing;
using Box = LXBoxBlurProcessing;
constexpr Filter Filters[] = {
    {"vignette", VignetteStep},
    {"smoothen", PassStep<LXSmoothenProcessing, LXThreeTapData>},
    {"sharpen", PassStep<LXSharpenProcessing, LXThreeTapData>},
    {"high pass", HighPassStep},
    {"gaussian blur", PassStep<Gaussian, Gaussian::BlurData>},
    {"diffuse glow", DiffuseGlowStep},
    {"box blur", PassStep<Box, Box::BlurData>},
    {"add noise", AddNoiseStep},
    {"drop shadow", PassStep<LXDropShadowProcessing, LXDropShadowProcessing::DropShadowData>},
    {"inner shadow", PassStep<LXInnerShadowProcessing, LXInnerShadowProcessing::InnerShadowData>},
    {"refine selection", RefineSelectionStep}};

using Pairs::Measure;

/// Of the peer's time.
constexpr double AtMost1_05 = 1 / 1.05;

const int Lines[] = {
    Pairs::Add({"gaussian blur / its stages bare", "GaussianRun", "GaussianBare", Measure::Rate,
                AtMost1_05}),
    Pairs::Add(
        {"smoothen / its stages bare", "SmoothenRun", "SmoothenBare", Measure::Rate, AtMost1_05}),
    Pairs::Add({"high pass with another mode / one blend", "HighPassAgain", "HighPassBlend",
                Measure::Rate, AtMost1_05}),
    Pairs::Add({"vignette, 40 M/s on two cores", "Vignette", "Vignette", Measure::Cost, 25.0})};

/// The time of an iteration is the longest step of a run over 12.58 million pixels.
const int LongestSteps = [] {
    for (const Filter& filter : Filters) {
        const std::string name = std::string("LongestStep/") + filter.name;
        const auto measure = [filter](benchmark::State& state) {
            const Image picture = Bench::TiledPicture();
            for (auto _ : state)
                state.SetIterationTime(filter.longestStep(picture));
        };
        benchmark::RegisterBenchmark(name.c_str(), measure)
            ->Iterations(1)
            ->Repetitions(1)
            ->UseManualTime()
            ->Unit(benchmark::kMillisecond);
        Pairs::Add(
            {std::string("longest step: ") + filter.name, name, name, Measure::Milliseconds, 0});
    }
    return 0;
}();

} // namespace
