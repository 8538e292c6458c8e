#include "LXConvertImage.h"
#include "LXFloodFillHelper.h"
#include "LXImagePainter.h"
#include "Pairs.h"
#include "Pictures.h"

#if defined(LIBIMAGE_BENCH_OPENCV)
#include <opencv2/imgproc.hpp>
#endif

#include <cmath>
#include <random>
#include <string>

/// Fills of a region of 60 % of 12.58 million pixels: the left of the picture up to a wavy edge,
/// with some noise in its colour. The fill colour is within the tolerance, so that each round finds
/// the same region again. And one thin line across an image of 400 million pixels.

namespace {

using Bench::Count;
using Bench::Pixels;

constexpr int Noise = 10;
constexpr LXRGBA32i Fill = {100, 100, 100, 255}, Tolerance = {20, 20, 20, 20};
constexpr int SeedX = 100, SeedY = 1000;

struct Region {
    QImage picture;
    std::size_t pixels;
};

/// One pixel in `holes` of the region does not belong to it; 0 for none.
Region MakeRegion(unsigned int holes) {
    std::mt19937 random(3);
    Region region{QImage(int(Bench::Width), int(Bench::Height), QImage::Format_ARGB32), 0};
    for (int y = 0; y < region.picture.height(); ++y) {
        auto* const row = reinterpret_cast<QRgb*>(region.picture.scanLine(y));
        const double edge = Bench::Width * (0.6 + 0.05 * std::sin(y / 150.0));
        for (int x = 0; x < region.picture.width(); ++x) {
            const bool inside = x < edge && (holes == 0 || random() % holes != 0);
            const int gray = (inside ? 100 : 180) + int(random() % Noise);
            row[x] = qRgb(gray, gray, gray);
            region.pixels += inside;
        }
    }
    return region;
}

void FloodFill(benchmark::State& state, unsigned int holes) {
    const Region region = MakeRegion(holes);
    LXImageRGBA32i image = ConvertImage<QImage, LXImageRGBA32i>(region.picture);
    for (auto _ : state)
        LXFloodFillHelper::FloodFill(image, {SeedX, SeedY}, Tolerance, Fill, nullptr);
    Count(state, region.pixels);
}
BENCHMARK_CAPTURE(FloodFill, Open, 0)->Name("FloodFillOpen");
BENCHMARK_CAPTURE(FloodFill, Holes, 50)->Name("FloodFillHoles");

#if defined(LIBIMAGE_BENCH_OPENCV)
void OpenCVFloodFill(benchmark::State& state, unsigned int holes) {
    cv::setNumThreads(1);
    Region region = MakeRegion(holes);
    const QImage packed = region.picture.convertToFormat(QImage::Format_RGB888);
    cv::Mat image(packed.height(), packed.width(), CV_8UC3, const_cast<uchar*>(packed.constBits()),
                  std::size_t(packed.bytesPerLine()));
    image = image.clone();
    const cv::Scalar range(Tolerance.blue, Tolerance.green, Tolerance.red);
    for (auto _ : state)
        cv::floodFill(image, cv::Point(SeedX, SeedY), cv::Scalar(Fill.blue, Fill.green, Fill.red),
                      nullptr, range, range, 4 | cv::FLOODFILL_FIXED_RANGE);
    Count(state, region.pixels);
}
BENCHMARK_CAPTURE(OpenCVFloodFill, Open, 0)->Name("OpenCVFloodFillOpen");
BENCHMARK_CAPTURE(OpenCVFloodFill, Holes, 50)->Name("OpenCVFloodFillHoles");
#endif

void ColorRange(benchmark::State& state) {
    const LXImageRGBA32i source = Bench::TiledPicture();
    LXImageRGBA32i target(0, 0);
    for (auto _ : state)
        LXFloodFillHelper::ColorRangeFill(source, target, {0, 0}, {90, 90, 90, 255}, Fill, nullptr);
    Count(state, Pixels);
}
BENCHMARK(ColorRange);

void ThinLineOnHugeImage(benchmark::State& state) {
    const LXImageRGBA32i blank(20000, 20000);
    QPainterPath path(QPointF(300, 15000));
    path.lineTo(19000, 200);
    for (auto _ : state) {
        LXImageRGBA32i image(blank);
        DrawPath(image, 0, path, QPen(Qt::red, 2));
        benchmark::DoNotOptimize(image.GetTileRow(0));
    }
    Count(state, 1);
}
BENCHMARK(ThinLineOnHugeImage)->Unit(benchmark::kMillisecond);

using Pairs::Measure;
const int Lines[] = {
    Pairs::Add({"flood fill, open region / OpenCV", "FloodFillOpen", "OpenCVFloodFillOpen",
                Measure::Rate, 0.25}),
    Pairs::Add({"flood fill, region with holes / OpenCV", "FloodFillHoles", "OpenCVFloodFillHoles",
                Measure::Rate, 0.25}),
    Pairs::Add({"colour range / xor pass", "ColorRange", "XorPass", Measure::Rate, 0.4}),
    Pairs::Add(
        {"thin line on 20000 x 20000, all of it", "ThinLineOnHugeImage", "", Measure::Cost, 0}),
};

} // namespace
