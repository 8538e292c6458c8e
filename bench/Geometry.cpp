#include "LXConvertImage.h"
#include "LXImageTransformation.h"
#include "LXScaleImage.h"
#include "LXTransformImage.h"
#include "Pairs.h"
#include "Pictures.h"

#include <QtGui/QPainter>

#if defined(LIBIMAGE_BENCH_OPENCV)
#include <opencv2/imgproc.hpp>
#endif

/// A picture of 12.58 million pixels turned by 30 degrees, and views of 1920 x 1080 pixels of it.
/// The peers are OpenCV, and QPainter without smoothing. Items are pixels that come out.

namespace {

using Bench::Count;

// ---- rotation -----------------------------------------------------------------------------------

/// About the centre.
QTransform Turn() {
    QTransform turn;
    turn.translate(Bench::Width / 2.0, Bench::Height / 2.0);
    turn.rotate(30);
    turn.translate(-(Bench::Width / 2.0), -(Bench::Height / 2.0));
    return turn;
}

void Rotate(benchmark::State& state,
            bool (*transform)(const LXImageRGBA32i& source, const QTransform& transform,
                              LXImageRGBA32i& destination, const QRect& rect)) {
    const LXImageRGBA32i image = Bench::TiledPicture();
    LXImageRGBA32i turned(Bench::Width, Bench::Height);
    for (auto _ : state)
        transform(image, Turn(), turned, QRect());
    Count(state, Bench::Pixels);
}
BENCHMARK_CAPTURE(Rotate, Plain, TransformImage<LXImageRGBA32i, LXImageRGBA32i>)
    ->Name("RotatePlain");
BENCHMARK_CAPTURE(Rotate, Nearest, NearestNeighbourTransformImage)->Name("RotateNearest");
BENCHMARK_CAPTURE(Rotate, Bilinear, BilinearTransformImage)->Name("RotateBilinear");
BENCHMARK_CAPTURE(Rotate, Bicubic, BicubicTransformImage)->Name("RotateBicubic");

void PainterRotate(benchmark::State& state) {
    QImage turned(Bench::Picture().size(), QImage::Format_ARGB32);
    turned.fill(0);
    for (auto _ : state) {
        QPainter painter(&turned);
        painter.setCompositionMode(QPainter::CompositionMode_Source);
        painter.setTransform(Turn());
        painter.drawImage(0, 0, Bench::Picture());
    }
    Count(state, Bench::Pixels);
}
BENCHMARK(PainterRotate);

#if defined(LIBIMAGE_BENCH_OPENCV)
void OpenCVRotate(benchmark::State& state, int interpolation) {
    cv::setNumThreads(1);
    const QImage picture = Bench::Picture();
    const cv::Mat image(picture.height(), picture.width(), CV_8UC4,
                        const_cast<unsigned char*>(picture.constBits()));
    const QTransform turn = Turn();
    const cv::Matx23d matrix(turn.m11(), turn.m21(), turn.dx(), turn.m12(), turn.m22(), turn.dy());
    cv::Mat turned(image.size(), image.type());
    for (auto _ : state)
        cv::warpAffine(image, turned, matrix, image.size(), interpolation, cv::BORDER_TRANSPARENT);
    Count(state, Bench::Pixels);
}
BENCHMARK_CAPTURE(OpenCVRotate, Linear, cv::INTER_LINEAR)->Name("OpenCVRotateLinear");
BENCHMARK_CAPTURE(OpenCVRotate, Cubic, cv::INTER_CUBIC)->Name("OpenCVRotateCubic");
#endif

// ---- views --------------------------------------------------------------------------------------

constexpr int ViewWidth = 1920, ViewHeight = 1080;

QImage View() {
    QImage view(ViewWidth, ViewHeight, QImage::Format_ARGB32);
    view.fill(0);
    return view;
}

/// At its centre, as far as the zoom leaves anything beside the view.
QPointF Origin(const QSize& image, double zoom) {
    return {qMax(0.0, (image.width() - ViewWidth / zoom) / 2),
            qMax(0.0, (image.height() - ViewHeight / zoom) / 2)};
}

void ViewOf(benchmark::State& state, const LXImageRGBA32i& image, double zoom) {
    QImage view = View();
    const QPointF origin = Origin(QSize(int(image.GetWidth()), int(image.GetHeight())), zoom);
    for (auto _ : state)
        ScaleImage(image, origin, zoom, view);
    Count(state, ViewWidth * ViewHeight);
}

void PainterView(benchmark::State& state, double zoom) {
    QImage view = View();
    const QPointF origin = Origin(Bench::Picture().size(), zoom);
    for (auto _ : state) {
        QPainter painter(&view);
        painter.setCompositionMode(QPainter::CompositionMode_Source);
        painter.scale(zoom, zoom);
        painter.drawImage(-origin, Bench::Picture());
    }
    Count(state, ViewWidth * ViewHeight);
}

/// All tiles different, and so all in memory.
LXImageRGBA32i Distinct(unsigned int width, unsigned int height) {
    LXImageRGBA32i image(width, height);
    for (unsigned int row = 0; row < image.GetTilesY(); ++row)
        for (unsigned int column = 0; column < image.GetTilesX(); ++column)
            image.SetColor(int(column * image.TileWidth), int(row * image.TileHeight),
                           {1, 2, 3, 4});
    return image;
}

void View037(benchmark::State& state) {
    ViewOf(state, Bench::TiledPicture(), 0.37);
}
BENCHMARK(View037);
void View400(benchmark::State& state) {
    ViewOf(state, Bench::TiledPicture(), 4.0);
}
BENCHMARK(View400);
void PainterView037(benchmark::State& state) {
    PainterView(state, 0.37);
}
BENCHMARK(PainterView037);
void PainterView400(benchmark::State& state) {
    PainterView(state, 4.0);
}
BENCHMARK(PainterView400);
void ViewOf2MP(benchmark::State& state) {
    ViewOf(state, Distinct(1920, 1080), 1.0);
}
BENCHMARK(ViewOf2MP);
void ViewOf400MP(benchmark::State& state) {
    ViewOf(state, Distinct(20000, 20000), 1.0);
}
BENCHMARK(ViewOf400MP);

using Pairs::Measure;
const int Lines[] = {
    Pairs::Add(
        {"rotate, plain nearest / QPainter", "RotatePlain", "PainterRotate", Measure::Rate, 0.5}),
    Pairs::Add(
        {"rotate, nearest / QPainter", "RotateNearest", "PainterRotate", Measure::Rate, 1.0}),
    Pairs::Add(
        {"rotate, bilinear / OpenCV", "RotateBilinear", "OpenCVRotateLinear", Measure::Rate, 0.5}),
    Pairs::Add(
        {"rotate, bicubic / OpenCV", "RotateBicubic", "OpenCVRotateCubic", Measure::Rate, 1.0}),
    Pairs::Add({"view at 0.37 / QPainter", "View037", "PainterView037", Measure::Rate, 1.0}),
    Pairs::Add({"view at 4.0 / QPainter", "View400", "PainterView400", Measure::Rate, 1.0}),
    Pairs::Add({"view of 400 MP / view of 2 MP", "ViewOf400MP", "ViewOf2MP", Measure::Time, 1.5}),
};

} // namespace
