#include "LXBoxBlur.h"
#include "LXBoxBlurIterative.h"
#include "LXGaussian1D.h"
#include "LXIterativeConvolve.h"
#include "LXTileWalk.h"
#include "Pairs.h"
#include "Pictures.h"

#ifdef LIBIMAGE_BENCH_OPENCV
#include <opencv2/imgproc.hpp>
#endif

/// Blurs of 12.58 million random pixels. The peer for those in one call is OpenCV, which blurs four
/// channels as they are; for the steps it is their own plain form, column by column.

namespace {

using Bench::Count;
using Bench::Pixels;
using Image = LXImageRGBA32i;

template <class Blur>
void InOneCall(benchmark::State& state, int radius) {
    Image image = Bench::TiledPicture();
    const Blur blur(radius);
    blur(image, QRect());
    for (auto _ : state)
        blur(image, QRect());
    Count(state, Pixels);
}
void BoxBlurH20(benchmark::State& state) {
    InOneCall<LXBoxBlurH>(state, 20);
}
BENCHMARK(BoxBlurH20);
void BoxBlurV20(benchmark::State& state) {
    InOneCall<LXBoxBlurV>(state, 20);
}
BENCHMARK(BoxBlurV20);
void BoxBlur20(benchmark::State& state) {
    InOneCall<LXBoxBlur>(state, 20);
}
BENCHMARK(BoxBlur20);
void BoxBlur100(benchmark::State& state) {
    InOneCall<LXBoxBlur>(state, 100);
}
BENCHMARK(BoxBlur100);
void GaussianBlur20(benchmark::State& state) {
    InOneCall<LXGaussianBlur>(state, 20);
}
BENCHMARK(GaussianBlur20);

#ifdef LIBIMAGE_BENCH_OPENCV
void OpenCVBlur(benchmark::State& state) {
    cv::setNumThreads(1);
    const cv::Mat source(int(Bench::Height), int(Bench::Width), CV_8UC4,
                         const_cast<uchar*>(Bench::Picture().constBits()));
    cv::Mat result;
    for (auto _ : state)
        cv::blur(source, result, cv::Size(41, 41), cv::Point(-1, -1), cv::BORDER_REPLICATE);
    Count(state, Pixels);
}
BENCHMARK(OpenCVBlur);
#endif

/// All the lines or columns of `rect`.
template <class Shell, class... Arguments>
void Steps(benchmark::State& state, const QRect& rect, int steps, const Arguments&... arguments) {
    const Bench::OneThread one;
    Image image = Bench::TiledPicture();
    for (auto _ : state) {
        Shell shell(arguments..., image, rect);
        for (int i = 0; i < steps; ++i)
            shell();
    }
    Count(state, std::size_t(rect.width()) * std::size_t(rect.height()));
}

const QRect SomeLines(0, 0, int(Bench::Width), 64);
const QRect SomeColumns(0, 0, 128, int(Bench::Height));

void GaussianH(benchmark::State& state) {
    using Kernel = LXGaussian1DPremul;
    Steps<LXBlur::LXIterativeConvolveH<Image, Kernel>>(state, SomeLines, 64, Kernel(5.0));
}
BENCHMARK(GaussianH)->MeasureProcessCPUTime();

void GaussianV(benchmark::State& state) {
    using Kernel = LXGaussian1DPremul;
    Steps<LXBlur::LXIterativeConvolveV<Image, Kernel>>(state, SomeColumns, 128, Kernel(5.0));
}
BENCHMARK(GaussianV)->MeasureProcessCPUTime();

/// What is left of a line's time if the kernel does nothing: the map, and the transfers.
struct NoKernel {
    void SetSource(const std::vector<LXRGBA32i>*) {}
    void SetDestination(std::vector<LXRGBA32i>*) {}
    void SetSourceOffset(int) {}
    int Left() const { return 0; }
    int Right() const { return 0; }
    void operator()(int) const {}
};

void NothingH(benchmark::State& state) {
    Steps<LXBlur::LXIterativeConvolveH<Image, NoKernel>>(state, SomeLines, 64, NoKernel());
}
BENCHMARK(NothingH)->MeasureProcessCPUTime();

void MapAlone(benchmark::State& state) {
    const Bench::OneThread one;
    std::vector<LXIndexRun> runs = LXIndexRuns(int(Bench::Width));
    const auto nothing = [](const LXIndexRun&) {};
    for (auto _ : state)
        LXBlockingMap(runs, nothing);
    Count(state, Bench::Width);
}
BENCHMARK(MapAlone)->MeasureProcessCPUTime();

using Premul = LXRGBABlurAccumulatorPremul;
constexpr int Radius = 20;

void BoxStepsH(benchmark::State& state) {
    Steps<LXBlur::LXBoxBlurIterativeH<Image, Premul, void>>(state, SomeLines, 64, Radius,
                                                            Premul(Radius));
}
BENCHMARK(BoxStepsH);

void BoxStepsV(benchmark::State& state) {
    Steps<LXBlur::LXBoxBlurIterativeV<Image, Premul, void>>(state, SomeColumns, 128, Radius,
                                                            Premul(Radius));
}
BENCHMARK(BoxStepsV);

/// A column read, slid along and written, one after the other.
void PlainBoxStepsV(benchmark::State& state) {
    Image image = Bench::TiledPicture();
    std::vector<LXRGBA32i> source(Bench::Height), result(Bench::Height);
    for (auto _ : state) {
        const Image snapshot = image;
        Premul window(Radius);
        for (int x = 0; x < 128; ++x) {
            LXAlongColumns::Read(snapshot, x, 0, source);
            LXSlideAlong<void>(window, source, 0, Bench::Height, Radius, 0, int(Bench::Height),
                               result.data());
            LXAlongColumns::Write(image, x, 0, result);
        }
    }
    Count(state, 128 * Bench::Height);
}
BENCHMARK(PlainBoxStepsV);

using Pairs::Measure;
const int Lines[] = {
#ifdef LIBIMAGE_BENCH_OPENCV
    Pairs::Add({"box blur 20 / OpenCV blur", "BoxBlur20", "OpenCVBlur", Measure::Rate, 0.35}),
    Pairs::Add({"gaussian of three boxes / OpenCV blur", "GaussianBlur20", "OpenCVBlur",
                Measure::Rate, 0.117}),
#endif
    Pairs::Add({"box blur 100 / box blur 20", "BoxBlur100", "BoxBlur20", Measure::Rate, 0.9}),
    Pairs::Add({"gaussian steps H, sigma 5", "GaussianH", "GaussianH", Measure::Cost, 71.4}),
    Pairs::Add({"gaussian steps V / H", "GaussianV", "GaussianH", Measure::Rate, 0.75}),
    Pairs::Add(
        {"box steps V / column by column", "BoxStepsV", "PlainBoxStepsV", Measure::Rate, 1.5}),
    Pairs::Add({"box steps H", "BoxStepsH", "BoxStepsH", Measure::Cost, 0}),
    Pairs::Add({"map alone / gaussian steps H, time", "MapAlone", "GaussianH", Measure::Cost, 0}),
    Pairs::Add({"steps H without a kernel", "NothingH", "NothingH", Measure::Cost, 0}),
};

} // namespace
