#include "LXChannelTransforms.h"
#include "LXColorTransformStack.h"
#include "LXConvertImage.h"
#include "LXCurvesTransformation.h"
#include "LXTransformImageColors.h"
#include "Pairs.h"
#include "Pictures.h"

#include <QtCore/QPoint>

#include <vector>

/// Colour walks over 12.58 million pixels. The peers: the same step in a plain loop over one flat
/// buffer, the memory's own speed, and elements of a stack run one by one on a tile in the cache.

namespace {

using Bench::Count;
using Bench::Pixels;

LXCurvesTransformation Curve() {
    const QVector<QPoint> lift = {QPoint(0, 0), QPoint(80, 120), QPoint(255, 255)};
    QVector<QPoint> curves[4] = {lift, lift, lift, lift};
    return LXCurvesTransformation(curves, 100);
}

void CurveOnTiles(benchmark::State& state) {
    LXImageRGBA32i image = Bench::TiledPicture();
    const LXCurvesTransformation curve = Curve();
    for (auto _ : state)
        LXTransformImageColors<LXImageRGBA32i, LXCurvesTransformation>()(image, LXImageRect(image),
                                                                         curve);
    Count(state, Pixels);
}
BENCHMARK(CurveOnTiles);

void CurveOnQImage(benchmark::State& state) {
    QImage image = Bench::Picture().copy();
    const LXCurvesTransformation curve = Curve();
    for (auto _ : state)
        LXTransformImageColors<QImage, LXCurvesTransformation>()(image, image.rect(), curve);
    Count(state, Pixels);
}
BENCHMARK(CurveOnQImage);

void CurveOnBuffer(benchmark::State& state) {
    const QImage picture = Bench::Picture().copy();
    const void* const bits = picture.constBits();
    const auto* const first = static_cast<const LXRGBA32i*>(bits);
    std::vector<LXRGBA32i> buffer(first, first + Pixels);
    const LXCurvesTransformation curve = Curve();
    for (auto _ : state) {
        for (LXRGBA32i& pixel : buffer)
            curve(pixel);
        benchmark::ClobberMemory();
    }
    Count(state, Pixels);
}
BENCHMARK(CurveOnBuffer);

void GrayScale(benchmark::State& state) {
    LXImageRGBA32i image = Bench::TiledPicture();
    for (auto _ : state)
        LXToGrayScaleImage()(image);
    Count(state, Pixels);
}
BENCHMARK(GrayScale);

/// A member of a stack that treats the whole tile.
class Adjusting : public LXColorTransformBase {
public:
    using LXColorTransformBase::operator();
    using LXColorTransformBase::Invert;
    void operator()(void* pixels, unsigned int count) const override {
        auto* const row = static_cast<LXRGBA32i*>(pixels);
        for (unsigned int i = 0; i < count; ++i)
            m_curve(row[i]);
    }
    void Invert(void*, unsigned int) const override {}

private:
    LXCurvesTransformation m_curve = Curve();
};

void StackOfFour(benchmark::State& state) {
    LXImageRGBA32i image = Bench::TiledPicture();
    LXColorTransformStack stack;
    for (int i = 0; i < 4; ++i)
        stack.Push(new Adjusting);
    for (auto _ : state)
        stack(image);
    Count(state, Pixels);
}
BENCHMARK(StackOfFour);

void FourOnCachedTile(benchmark::State& state) {
    std::vector<LXRGBA32i> tile(LXImageRGBA32i::Block::PixelCount);
    const Adjusting elements[4];
    for (auto _ : state) {
        for (const LXColorTransformBase& element : elements)
            element(tile.data(), unsigned(tile.size()));
        benchmark::ClobberMemory();
    }
    Count(state, tile.size());
}
BENCHMARK(FourOnCachedTile);

using Pairs::Measure;
const int Lines[] = {
    Pairs::Add(
        {"curve on tiles / flat buffer", "CurveOnTiles", "CurveOnBuffer", Measure::Rate, 0.85}),
    Pairs::Add(
        {"curve on QImage / flat buffer", "CurveOnQImage", "CurveOnBuffer", Measure::Rate, 0.95}),
    Pairs::Add({"gray scale / xor pass", "GrayScale", "XorPass", Measure::Rate, 0.5}),
    Pairs::Add({"stack of four / four on a cached tile", "StackOfFour", "FourOnCachedTile",
                Measure::Rate, 0.95}),
};

} // namespace
