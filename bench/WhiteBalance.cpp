#include "LXConvertImage.h"
#include "LXTransformImageColors.h"
#include "Pairs.h"
#include "Pictures.h"
#include "RMWBTransformation.h"

#include <cstdint>
#include <ctime>

/// White balance of 12.58 million pixels: the analysis, which also does work of a fixed cost, and
/// the step for each pixel.

namespace {

using Bench::Count;
using Bench::Pixels;
using Data = RMWBTransformation::AlgorithmData;

/// Processor time plus a fixed time. By the wall clock the fixed part would lose its weight as soon
/// as other programs run beside.
template <class Work>
void Measure(benchmark::State& state, double fixedSeconds, Work work) {
    for (auto _ : state) {
        const std::clock_t start = std::clock();
        work();
        state.SetIterationTime(double(std::clock() - start) / CLOCKS_PER_SEC + fixedSeconds);
    }
    Count(state, Pixels);
}

void Analyse(benchmark::State& state, const LXImageRGBA32i& image) {
    Measure(state, 0, [&] { benchmark::DoNotOptimize(Data(image).percent); });
}

/// Random pixels.
void AnalysisOfNoise(benchmark::State& state) {
    Analyse(state, Bench::TiledPicture());
}
BENCHMARK(AnalysisOfNoise)->UseManualTime();

/// The worst for the search of nearly gray pixels: there are none.
void AnalysisWithoutGray(benchmark::State& state) {
    LXImageRGBA32i image = Bench::TiledPicture();
    const auto colour = [](LXRGBA32i& pixel) {
        pixel = {std::uint8_t(pixel.blue / 8), std::uint8_t(pixel.green / 8),
                 std::uint8_t(192 + pixel.red / 4), pixel.alpha};
    };
    LXTransformImageColors<LXImageRGBA32i, decltype(colour)>()(image, LXImageRect(image), colour);
    Analyse(state, image);
}
BENCHMARK(AnalysisWithoutGray)->UseManualTime();

void AnalysisOfOneColour(benchmark::State& state) {
    LXImageRGBA32i image(Bench::Width, Bench::Height);
    image.FastFill({90, 120, 200, 255});
    Analyse(state, image);
}
BENCHMARK(AnalysisOfOneColour)->UseManualTime();

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
    Measure(state, 0.015, [&] {
        for (int pass = 0; pass < 4; ++pass)
            Bench::XorImage(source, destination);
    });
}
BENCHMARK(FourPassesAndMore)->UseManualTime();

const char* const Budget = "FourPassesAndMore";
const int Lines[] = {
    Pairs::Add({"analysis of noise / four passes and 15 ms", "AnalysisOfNoise", Budget,
                Pairs::Measure::Time, 1}),
    Pairs::Add({"analysis without gray / four passes and 15 ms", "AnalysisWithoutGray", Budget,
                Pairs::Measure::Time, 1}),
    Pairs::Add({"analysis of one colour / four passes and 15 ms", "AnalysisOfOneColour", Budget,
                Pairs::Measure::Time, 1}),
    Pairs::Add({"auto white balance, a pixel", "AutoOnTiles", "", Pairs::Measure::Cost, 5}),
};

} // namespace
