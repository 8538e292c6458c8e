#include "LXConvertImage.h"
#include "LXTransformImageColors.h"
#include "Pairs.h"
#include "Pictures.h"
#include "RMWBTransformation.h"

#include <chrono>
#include <cstdint>

/// White balance of 12.58 million pixels: the analysis, which also does work of a fixed cost, and
/// the step for each pixel.

namespace {

using Bench::Count;
using Bench::Pixels;
using Data = RMWBTransformation::AlgorithmData;

void WhiteBalanceAnalysis(benchmark::State& state, const LXImageRGBA32i& image) {
    for (auto _ : state)
        benchmark::DoNotOptimize(Data(image).percent);
    Count(state, Pixels);
}

/// Random pixels.
void AnalysisOfNoise(benchmark::State& state) {
    WhiteBalanceAnalysis(state, Bench::TiledPicture());
}
BENCHMARK(AnalysisOfNoise);

/// The worst for the search of nearly gray pixels: there are none.
void AnalysisWithoutGray(benchmark::State& state) {
    LXImageRGBA32i image = Bench::TiledPicture();
    const auto colour = [](LXRGBA32i& pixel) {
        pixel = {std::uint8_t(pixel.blue / 8), std::uint8_t(pixel.green / 8),
                 std::uint8_t(192 + pixel.red / 4), pixel.alpha};
    };
    LXTransformImageColors<LXImageRGBA32i, decltype(colour)>()(image, LXImageRect(image), colour);
    WhiteBalanceAnalysis(state, image);
}
BENCHMARK(AnalysisWithoutGray);

void AnalysisOfOneColour(benchmark::State& state) {
    LXImageRGBA32i image(Bench::Width, Bench::Height);
    image.FastFill({90, 120, 200, 255});
    WhiteBalanceAnalysis(state, image);
}
BENCHMARK(AnalysisOfOneColour);

void AutoOnTiles(benchmark::State& state) {
    LXImageRGBA32i image = Bench::TiledPicture();
    const RMWBTransformation balance(image, RMWBTransformation::BalanceFunction::Auto, 80);
    for (auto _ : state)
        LXTransformImageColors<LXImageRGBA32i, RMWBTransformation>()(image, LXImageRect(image),
                                                                     balance);
    Count(state, Pixels);
}
BENCHMARK(AutoOnTiles);

/// Four passes over the memory and 15 ms.
void FourPassesAndMore(benchmark::State& state) {
    const LXImageRGBA32i source = Bench::TiledPicture();
    LXImageRGBA32i destination = Bench::TiledPicture();
    for (auto _ : state) {
        const auto start = std::chrono::steady_clock::now();
        for (int pass = 0; pass < 4; ++pass)
            Bench::XorImage(source, destination);
        const std::chrono::duration<double> passes = std::chrono::steady_clock::now() - start;
        state.SetIterationTime(passes.count() + 0.015);
    }
    Count(state, Pixels);
}
BENCHMARK(FourPassesAndMore)->UseManualTime();

using Pairs::Measure;
const char* const Budget = "FourPassesAndMore";
const int Lines[] = {
    Pairs::Add(
        {"analysis of noise / four passes and 15 ms", "AnalysisOfNoise", Budget, Measure::Time, 1}),
    Pairs::Add({"analysis without gray / four passes and 15 ms", "AnalysisWithoutGray", Budget,
                Measure::Time, 1}),
    Pairs::Add({"analysis of one colour / four passes and 15 ms", "AnalysisOfOneColour", Budget,
                Measure::Time, 1}),
    Pairs::Add({"auto white balance, a pixel", "AutoOnTiles", "", Measure::Cost, 5}),
};

} // namespace
