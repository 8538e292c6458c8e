#include "LXConvertImage.h"
#include "Pairs.h"
#include "Pictures.h"
#include "core/conversion/Rows.h"
#include "support/ReferenceConversions.h"

#include <cstring>
#include <memory>
#include <vector>

/// Tiles, copies and conversions. A picture of 12.58 million pixels throughout; items are pixels
/// where the peer is a kernel, bytes read and written where it is memcpy, tiles where a tile is the
/// unit of work.

namespace {

using Bench::Count;
using Bench::Picture;
using Bench::Pixels;
using Bench::TiledPicture;

// ---- tiles --------------------------------------------------------------------------------------

void CopyImage(benchmark::State& state) {
    const LXImageRGBA32i image = TiledPicture();
    for (auto _ : state) {
        const LXImageRGBA32i copy(image);
        benchmark::DoNotOptimize(copy.GetTileRow(0));
    }
    Count(state, image.GetTilesX() * image.GetTilesY());
}
BENCHMARK(CopyImage);

void CreateHugeImage(benchmark::State& state) {
    for (auto _ : state) {
        const LXImageRGBA32i image(20000, 20000);
        benchmark::DoNotOptimize(image.GetTileRow(0));
    }
    Count(state, 157 * 157);
}
BENCHMARK(CreateHugeImage);

void WriteOneSharedPixel(benchmark::State& state) {
    LXImageRGBA32i image(128, 128);
    image.SetColor(0, 0, {1, 2, 3, 4});
    for (auto _ : state) {
        LXImageRGBA32i copy(image);
        copy.SetColor(5, 5, {9, 9, 9, 9});
    }
}
BENCHMARK(WriteOneSharedPixel);

void CopyTileByHand(benchmark::State& state) {
    RMTileManager64* const manager = RMTileManager64::Instance();
    auto* const from = manager->MakeTile();
    for (auto _ : state) {
        auto* const to = manager->MakeTile();
        std::memcpy(to->memory, from->memory, LXTileBytes);
        benchmark::ClobberMemory();
        manager->Release(to);
    }
    manager->Release(from);
}
BENCHMARK(CopyTileByHand);

// ---- memcpy -------------------------------------------------------------------------------------

void Memcpy(benchmark::State& state) {
    for (auto _ : state) {
        const std::unique_ptr<unsigned char[]> to(new unsigned char[Pixels * 4]);
        std::memcpy(to.get(), Picture().constBits(), Pixels * 4);
        benchmark::DoNotOptimize(to.get());
        benchmark::ClobberMemory();
    }
    Count(state, Pixels * 8);
}
BENCHMARK(Memcpy);

void FromQImage(benchmark::State& state) {
    for (auto _ : state)
        benchmark::DoNotOptimize(TiledPicture().GetWidth());
    Count(state, Pixels * 8);
}
BENCHMARK(FromQImage);

void ToQImage(benchmark::State& state) {
    const LXImageRGBA32i image = TiledPicture();
    for (auto _ : state)
        benchmark::DoNotOptimize(ConvertImage<LXImageRGBA32i, QImage>(image).width());
    Count(state, Pixels * 8);
}
BENCHMARK(ToQImage);

// ---- formats ------------------------------------------------------------------------------------

template <class Low, std::size_t ItemsAPixel>
void ToLow(benchmark::State& state) {
    const LXImageRGBA32i image = TiledPicture();
    for (auto _ : state)
        benchmark::DoNotOptimize(ConvertImage<LXImageRGBA32i, Low>(image).GetWidth());
    Count(state, Pixels * ItemsAPixel);
}

template <class Low, std::size_t ItemsAPixel>
void FromLow(benchmark::State& state) {
    const Low image = ConvertImage<LXImageRGBA32i, Low>(TiledPicture());
    for (auto _ : state)
        benchmark::DoNotOptimize(ConvertImage<Low, LXImageRGBA32i>(image).GetWidth());
    Count(state, Pixels * ItemsAPixel);
}

/// The row function over plain arrays of the same size, with nothing around it.
template <class In, class Out>
void Flat(benchmark::State& state, void (*row)(const In*, Out*, unsigned int)) {
    std::vector<In> in(Pixels);
    std::memcpy(static_cast<void*>(in.data()), Picture().constBits(), Pixels * 4);
    std::memcpy(static_cast<void*>(in.data() + Pixels / 2), Picture().constBits(),
                Pixels / 2 * std::min<std::size_t>(sizeof(In), 8));
    for (auto _ : state) {
        const std::unique_ptr<unsigned char[]> out(new unsigned char[Pixels * sizeof(Out)]);
        row(in.data(), static_cast<Out*>(static_cast<void*>(out.get())), Pixels);
        benchmark::DoNotOptimize(out.get());
        benchmark::ClobberMemory();
    }
    Count(state, Pixels);
}

/// The plain formula of the tests, pixel by pixel.
template <class In, class Out>
void Plain(benchmark::State& state, Out (*convert)(const In&)) {
    constexpr std::size_t count = 1 << 16;
    std::vector<In> in(count);
    std::vector<Out> out(count);
    for (std::size_t i = 0; i < count; ++i)
        std::memcpy(static_cast<void*>(&in[i]), Picture().constBits() + i * sizeof(In), sizeof(In));
    for (auto _ : state) {
        for (std::size_t i = 0; i < count; ++i)
            out[i] = convert(in[i]);
        benchmark::ClobberMemory();
    }
    Count(state, count);
}

constexpr std::size_t BytesAPixel = 4 + 8;

BENCHMARK_TEMPLATE2(ToLow, LXImageRGBA64i, BytesAPixel)->Name("ToWide");
BENCHMARK_TEMPLATE2(FromLow, LXImageRGBA64i, BytesAPixel)->Name("FromWide");
BENCHMARK_TEMPLATE2(ToLow, LXImageRGBA64f, BytesAPixel)->Name("ToHalf");
BENCHMARK_TEMPLATE2(FromLow, LXImageRGBA64f, BytesAPixel)->Name("FromHalf");
BENCHMARK_TEMPLATE2(ToLow, LXImageCMYKA, 1)->Name("ToCMYK");
BENCHMARK_TEMPLATE2(FromLow, LXImageCMYKA, 1)->Name("FromCMYK");
BENCHMARK_TEMPLATE2(ToLow, LXImageHSLA, 1)->Name("ToHSL");
BENCHMARK_TEMPLATE2(FromLow, LXImageHSLA, 1)->Name("FromHSL");
BENCHMARK_CAPTURE(Flat, ToCMYK, LXRows::ToCMYK)->Name("ToCMYKFlat");
BENCHMARK_CAPTURE(Flat, FromCMYK, LXRows::FromCMYK)->Name("FromCMYKFlat");
BENCHMARK_CAPTURE(Flat, ToHSL, LXRows::ToHSL)->Name("ToHSLFlat");
BENCHMARK_CAPTURE(Flat, FromHSL, LXRows::FromHSL)->Name("FromHSLFlat");
BENCHMARK_CAPTURE(Plain, ToCMYK, Reference::ToCMYK)->Name("ToCMYKPlain");
BENCHMARK_CAPTURE(Plain, FromCMYK, Reference::FromCMYK)->Name("FromCMYKPlain");
BENCHMARK_CAPTURE(Plain, ToHSL, Reference::ToHSL)->Name("ToHSLPlain");
BENCHMARK_CAPTURE(Plain, FromHSL, Reference::FromHSL)->Name("FromHSLPlain");

using Pairs::Measure;
const int Lines[] = {
    Pairs::Add({"copy of an image, a tile", "CopyImage", "", Measure::Cost, 15}),
    Pairs::Add({"20000 x 20000 uniform image, a slot", "CreateHugeImage", "", Measure::Cost, 15}),
    Pairs::Add({"one pixel of a shared tile / memcpy and pool take", "WriteOneSharedPixel",
                "CopyTileByHand", Measure::Time, 1.5}),
    Pairs::Add({"QImage to image / memcpy", "FromQImage", "Memcpy", Measure::Rate, 0.7}),
    Pairs::Add({"image to QImage / memcpy", "ToQImage", "Memcpy", Measure::Rate, 0.7}),
    Pairs::Add({"to rgba64 / memcpy, by bytes", "ToWide", "Memcpy", Measure::Rate, 0.4}),
    Pairs::Add({"from rgba64 / memcpy, by bytes", "FromWide", "Memcpy", Measure::Rate, 0.4}),
    Pairs::Add({"to half / memcpy, by bytes", "ToHalf", "Memcpy", Measure::Rate, 0.4}),
    Pairs::Add({"from half / memcpy, by bytes", "FromHalf", "Memcpy", Measure::Rate, 0.4}),
    Pairs::Add({"to CMYK / kernel on flat arrays", "ToCMYK", "ToCMYKFlat", Measure::Rate, 0.6}),
    Pairs::Add(
        {"from CMYK / kernel on flat arrays", "FromCMYK", "FromCMYKFlat", Measure::Rate, 0.6}),
    Pairs::Add({"to HSL / kernel on flat arrays", "ToHSL", "ToHSLFlat", Measure::Rate, 0.6}),
    Pairs::Add({"from HSL / kernel on flat arrays", "FromHSL", "FromHSLFlat", Measure::Rate, 0.6}),
    // 0.6 of what the best kernel for each was measured to gain over the plain formula.
    Pairs::Add({"to CMYK / plain formula", "ToCMYK", "ToCMYKPlain", Measure::Rate, 2.7}),
    Pairs::Add({"from CMYK / plain formula", "FromCMYK", "FromCMYKPlain", Measure::Rate, 1.3}),
    Pairs::Add({"to HSL / plain formula", "ToHSL", "ToHSLPlain", Measure::Rate, 2.0}),
    Pairs::Add({"from HSL / plain formula", "FromHSL", "FromHSLPlain", Measure::Rate, 2.3}),
};

} // namespace
