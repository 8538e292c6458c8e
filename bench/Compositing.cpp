#include "LXBlendOn.h"
#include "LXConvertImage.h"
#include "LXTileWalk.h"
#include "Pairs.h"
#include "Pictures.h"

#include <QtGui/QPainter>

#include <cstdint>
#include <string>

/// Blend modes over 12.58 million pixels with random alpha; the destination has tiles of its own.
/// The peers: QPainter with the same mode and opacity on Format_ARGB32, the one form of Qt with
/// straight alpha; and the memory, as a pass of destination ^= source over the same tiles.

namespace {

using Bench::Count;
using Bench::Pixels;

struct Mode {
    const char* name;
    unsigned int id;
    double opacity;
    double overPainter; ///< the target, 0 for none
};

constexpr Mode Modes[] = {
    {"SourceOver", 0, 1.0, 2.0}, {"SourceOver50", 0, 0.5, 2.0}, {"Plus", 12, 1.0, 0},
    {"Multiply", 13, 1.0, 3.5},  {"Screen", 14, 1.0, 0},        {"Overlay", 15, 1.0, 0},
    {"Darken", 16, 1.0, 0},      {"Lighten", 17, 1.0, 0},       {"ColorDodge", 18, 1.0, 0},
    {"ColorBurn", 19, 1.0, 4.5}, {"HardLight", 20, 1.0, 0},     {"SoftLight", 21, 1.0, 8.0},
    {"Difference", 22, 1.0, 0},  {"Exclusion", 23, 1.0, 0}};

/// Modes that QPainter does not know.
constexpr Mode OwnModes[] = {{"Source", 3, 1.0, 0},
                             {"DestinationIn", 6, 1.0, 0},
                             {"DestinationOut", 8, 1.0, 0},
                             {"Clear", 2, 1.0, 0},
                             {"RasterSourceOrDestination", 24, 1.0, 0},
                             {"RGBAToMask", 64, 1.0, 0},
                             {"SourceAlphaToGray", 88, 1.0, 0},
                             {"SourceRGBAToGray", 89, 1.0, 0},
                             {"Heal", 90, 1.0, 0},
                             {"SourceWidthAlpha", 91, 1.0, 0},
                             {"DestinationInFullAlpha", 92, 1.0, 0},
                             {"UniteAlpha", 93, 1.0, 0}};

/// A destination whose tiles are all its own.
LXImageRGBA32i Destination() {
    return ConvertImage<QImage, LXImageRGBA32i>(Bench::OtherPicture());
}

void Blend(benchmark::State& state, const Mode& mode, int dx, int dy) {
    const LXImageRGBA32i source = Bench::TiledPicture();
    LXImageRGBA32i destination = Destination();
    const QRect all = LXImageRect(source);
    for (auto _ : state)
        BlendOn(source, all, mode.id, destination, all.translated(dx, dy), mode.opacity, false);
    Count(state, std::size_t(int(Bench::Width) - dx) * std::size_t(int(Bench::Height) - dy));
}

void BlendQImage(benchmark::State& state, const Mode& mode) {
    LXImageRGBA32i destination = Destination();
    const QRect all = LXImageRect(destination);
    for (auto _ : state)
        BlendOn(Bench::Picture(), all, mode.id, destination, all, mode.opacity, false);
    Count(state, Pixels);
}

void BlendMasked(benchmark::State& state, const Mode& mode) {
    const LXImageRGBA32i source = Bench::TiledPicture(), mask = Destination();
    LXImageRGBA32i destination = Destination();
    const QRect all = LXImageRect(source);
    for (auto _ : state)
        BlendMaskOn(source, all, mode.id, destination, all, mode.opacity, mask, all, false, false);
    Count(state, Pixels);
}

void Painter(benchmark::State& state, const Mode& mode) {
    QImage destination = Bench::OtherPicture().copy();
    for (auto _ : state) {
        QPainter painter(&destination);
        painter.setCompositionMode(static_cast<QPainter::CompositionMode>(mode.id));
        painter.setOpacity(mode.opacity);
        painter.drawImage(0, 0, Bench::Picture());
    }
    Count(state, Pixels);
}

/// The memory's own speed: two streams in, one out.
void XorPass(benchmark::State& state) {
    const LXImageRGBA32i source = Bench::TiledPicture();
    LXImageRGBA32i destination = Destination();
    for (auto _ : state)
        Bench::XorImage(source, destination);
    Count(state, Pixels);
}
BENCHMARK(XorPass);

using Pairs::Measure;

void Register(const Mode& mode) {
    const std::string name = std::string("Blend") + mode.name;
    benchmark::RegisterBenchmark(name.c_str(), Blend, mode, 0, 0);
    Pairs::Add({name + " / xor pass", name, "XorPass", Measure::Rate, mode.id == 0 ? 0.4 : 0.2});
}

void RegisterWithPainter(const Mode& mode) {
    const std::string name = std::string("Blend") + mode.name;
    const std::string painter = std::string("Painter") + mode.name;
    benchmark::RegisterBenchmark(painter.c_str(), Painter, mode);
    Pairs::Add({name + " / QPainter", name, painter, Measure::Rate, mode.overPainter});
    Register(mode);
}

/// The ways in which the plain drive over aligned tiles can be complicated.
void RegisterVariants(const Mode& mode) {
    const std::string name = std::string("Blend") + mode.name;
    benchmark::RegisterBenchmark((name + "Shifted").c_str(), Blend, mode, 37, 53);
    benchmark::RegisterBenchmark((name + "QImage").c_str(), BlendQImage, mode);
    benchmark::RegisterBenchmark((name + "Masked").c_str(), BlendMasked, mode);
    Pairs::Add({name + " at 37, 53 / aligned", name + "Shifted", name, Measure::Rate, 0.8});
    Pairs::Add({name + " from QImage / aligned", name + "QImage", name, Measure::Rate, 0.8});
    Pairs::Add({name + " masked / unmasked", name + "Masked", name, Measure::Rate, 0.5});
}

const bool Registered = [] {
    for (const Mode& mode : Modes)
        RegisterWithPainter(mode);
    for (const Mode& mode : OwnModes)
        Register(mode);
    RegisterVariants(Modes[0]);
    RegisterVariants(Modes[3]);
    return true;
}();

} // namespace
