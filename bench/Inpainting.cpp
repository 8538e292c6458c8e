#include "LXConvertImage.h"
#include "LXInpaint.h"
#include "LXInpaintIterative.h"
#include "LXTileAccess.h"
#include "LXTileWalk.h"
#include "Pairs.h"
#include "Pictures.h"

#include <QtGui/QPainter>

#include <chrono>
#include <random>

#if defined(LIBIMAGE_BENCH_OPENCV)
#include <opencv2/photo.hpp>
#endif

/// Filling of holes. A broad stroke: items are filled pixels, and the peer is the field's usual
/// inpainting. Dust on 12.58 million pixels: items are pixels of the picture, an iteration is a
/// pass, and the peer is a copy of the picture.

namespace {

using Bench::Count;

constexpr int Side = 1000;

QImage Stroked(const QImage& ground, const QColor& colour) {
    QImage image = ground;
    QPainter painter(&image);
    painter.setCompositionMode(QPainter::CompositionMode_Source);
    painter.setPen(QPen(colour, 200, Qt::SolidLine, Qt::FlatCap));
    painter.drawLine(QPointF(-100, -100), QPointF(Side + 100, Side + 100));
    return image;
}

/// The mask of the stroke: opaque where it is.
const QImage& Stroke() {
    static const QImage stroke = [] {
        QImage nothing(Side, Side, QImage::Format_ARGB32);
        nothing.fill(0);
        return Stroked(nothing, Qt::black);
    }();
    return stroke;
}

QImage OpaquePicture() {
    return Bench::Picture()
        .copy(0, 0, Side, Side)
        .convertToFormat(QImage::Format_RGB32)
        .convertToFormat(QImage::Format_ARGB32);
}

/// How many unknown pixels there are.
std::size_t Unknown(const QImage& image) {
    std::size_t count = 0;
    for (int y = 0; y < Side; ++y)
        for (int x = 0; x < Side; ++x)
            count += qAlpha(image.pixel(x, y)) != 255;
    return count;
}

void StrokeOnQImage(benchmark::State& state) {
    const QImage holed = Stroked(OpaquePicture(), Qt::transparent);
    QImage image;
    for (auto _ : state) {
        image = holed;
        LXInpaint{image}(0);
    }
    Count(state, Unknown(holed) - Unknown(image));
}
BENCHMARK(StrokeOnQImage);

void StrokeOnTiles(benchmark::State& state) {
    const LXImageRGBA32i picture = ConvertImage<QImage, LXImageRGBA32i>(OpaquePicture());
    const LXImageRGBA32i mask = ConvertImage<QImage, LXImageRGBA32i>(Stroke());
    std::size_t filled = 0;
    for (auto _ : state) {
        LXImageRGBA32i image(picture);
        LXInpaintIterative inpaint(image, mask, LXImageRect(image), LXImageRect(image));
        while (inpaint()) {
        }
        filled = std::size_t(inpaint.GetFilledCount());
    }
    Count(state, filled);
}
BENCHMARK(StrokeOnTiles);

#if defined(LIBIMAGE_BENCH_OPENCV)
void StrokeByTelea(benchmark::State& state) {
    cv::setNumThreads(1);
    const QImage picture = OpaquePicture().convertToFormat(QImage::Format_RGB888);
    const cv::Mat source(Side, Side, CV_8UC3, const_cast<uchar*>(picture.constBits()),
                         std::size_t(picture.bytesPerLine()));
    const QImage alpha = Stroke().convertToFormat(QImage::Format_Alpha8);
    const cv::Mat mask(Side, Side, CV_8UC1, const_cast<uchar*>(alpha.constBits()),
                       std::size_t(alpha.bytesPerLine()));
    cv::Mat result;
    for (auto _ : state)
        cv::inpaint(source, mask, result, 3, cv::INPAINT_TELEA);
    Count(state, Unknown(Stroked(OpaquePicture(), Qt::transparent)));
}
BENCHMARK(StrokeByTelea);
#endif

/// 10 000 spots of about 20 pixels.
LXImageRGBA32i Dust() {
    QImage dust(int(Bench::Width), int(Bench::Height), QImage::Format_ARGB32);
    dust.fill(0);
    QPainter painter(&dust);
    painter.setPen(Qt::NoPen);
    painter.setBrush(Qt::black);
    std::mt19937 random(3);
    for (int i = 0; i < 10000; ++i)
        painter.drawEllipse(QPoint(int(random() % Bench::Width), int(random() % Bench::Height)), 2,
                            2);
    painter.end();
    return ConvertImage<QImage, LXImageRGBA32i>(dust);
}

/// Runs all passes; the time of an iteration is that of one of them.
void TimePasses(benchmark::State& state, LXInpaintIterative& inpaint) {
    const auto begin = std::chrono::steady_clock::now();
    int passes = 1;
    while (inpaint())
        ++passes;
    const std::chrono::duration<double> time = std::chrono::steady_clock::now() - begin;
    state.SetIterationTime(time.count() / passes);
}

/// Mask and picture are shared with the application's, as on its first call.
void DustPass(benchmark::State& state) {
    const LXImageRGBA32i picture = Bench::TiledPicture(), dust = Dust();
    const QRect all = LXImageRect(picture);
    for (auto _ : state) {
        LXImageRGBA32i image(picture);
        LXInpaintIterative inpaint(image, dust, all, all);
        TimePasses(state, inpaint);
    }
    Count(state, Bench::Pixels);
}
BENCHMARK(DustPass)->UseManualTime()->Iterations(3);

void CopyOfThePicture(benchmark::State& state) {
    const LXImageRGBA32i picture = Bench::TiledPicture();
    for (auto _ : state) {
        LXImageRGBA32i copy(picture);
        for (unsigned int y = 0; y < copy.GetTilesY(); ++y)
            for (unsigned int x = 0; x < copy.GetTilesX(); ++x)
                LXDetachTile(copy.GetTileRow(y)[x]);
    }
    Count(state, Bench::Pixels);
}
BENCHMARK(CopyOfThePicture);

/// A hole of 5050 pixels in pictures of two sizes.
void SmallHole(benchmark::State& state, unsigned int side) {
    LXImageRGBA32i image(side, side), mask(side, side);
    image.Fill({1, 2, 3, 255});
    for (int i = 0; i < 100; ++i)
        for (int k = 0; k < 100 - i; ++k)
            mask.SetColor(64 + i, 64 + k, {0, 0, 0, 255});
    const QRect hole(60, 60, 110, 110);
    for (auto _ : state) {
        LXInpaintIterative inpaint(image, mask, hole, hole);
        TimePasses(state, inpaint);
    }
    Count(state, 5050);
}
void SmallHoleInSmallPicture(benchmark::State& state) {
    SmallHole(state, 256);
}
BENCHMARK(SmallHoleInSmallPicture)->UseManualTime()->Iterations(20);
void SmallHoleInLargePicture(benchmark::State& state) {
    SmallHole(state, 8192);
}
BENCHMARK(SmallHoleInLargePicture)->UseManualTime()->Iterations(20);

using Pairs::Measure;
const int Lines[] = {
    Pairs::Add({"stroke on QImage / Telea", "StrokeOnQImage", "StrokeByTelea", Measure::Rate, 8}),
    Pairs::Add({"stroke on tiles / Telea", "StrokeOnTiles", "StrokeByTelea", Measure::Rate, 8}),
    Pairs::Add(
        {"pass over dust / copy of the picture", "DustPass", "CopyOfThePicture", Measure::Time, 3}),
    Pairs::Add({"pass over a small hole in 67 MP / in 0.07 MP", "SmallHoleInLargePicture",
                "SmallHoleInSmallPicture", Measure::Time, 1.5}),
};

} // namespace
