#include "LXTextHelper.h"
#include "Pairs.h"
#include "Pictures.h"

#include <QtGui/QGuiApplication>

/// A headline of 40 letters, 200 pixels high and bent, as a slider of its bend is dragged. The peer
/// paints the same path in the same way on one bitmap of the same size.

namespace {

/// Text in Qt needs an application. It stays until the program is gone.
void RequireApplication() {
    static int argc = 1;
    static char name[] = "image_bench";
    static char* argv[] = {name, nullptr};
    qputenv("QT_QPA_PLATFORM", "offscreen");
    static const auto* const application = new QGuiApplication(argc, argv);
    Q_UNUSED(application)
}

LXTextHelper Headline(int renderMode) {
    RequireApplication();
    QFont font(QStringLiteral("DejaVu Sans"));
    font.setPixelSize(200);
    LXTextHelper text(4);
    text.SetFont(font);
    text.SetText(QStringLiteral("Forty letters in a headline on a picture"));
    text.SetColor(QColor(240, 200, 60));
    text.SetStyle(1);
    text.SetBend(60);
    text.SetHDistortion(20);
    text.SetRenderMode(renderMode);
    text.CreateHeavyTextPath();
    return text;
}

QPainterPath DeformedPath(LXTextHelper& text) {
    QPainterPath path;
    QRectF rect, mapped;
    QPointF offset;
    return text.CreatePathByTextWithDeformationWithRect(path, rect, mapped, offset);
}

std::size_t PixelsOf(const QPainterPath& path) {
    const QSize size = path.boundingRect().toRect().size();
    return std::size_t(size.width()) * std::size_t(size.height());
}

void TextRaster(benchmark::State& state, int renderMode) {
    LXTextHelper text = Headline(renderMode);
    const QPainterPath path = DeformedPath(text);
    for (auto _ : state) {
        const LXImageRGBA32i image = text.CreateImage(path);
        benchmark::DoNotOptimize(image.GetTileRow(0));
    }
    Bench::Count(state, PixelsOf(path));
}
BENCHMARK_CAPTURE(TextRaster, Smooth, 2)->Name("TextSmooth")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(TextRaster, Jagged, 1)->Name("TextJagged")->Unit(benchmark::kMillisecond);

void QtRaster(benchmark::State& state, bool smooth) {
    LXTextHelper text = Headline(1);
    const QPainterPath path = DeformedPath(text);
    const QRect bounds = path.boundingRect().toRect();
    for (auto _ : state) {
        QImage image(bounds.size(), QImage::Format_ARGB32);
        image.fill(0);
        QPainter painter(&image);
        painter.setRenderHint(QPainter::Antialiasing, smooth);
        painter.setCompositionMode(QPainter::CompositionMode_Source);
        painter.translate(-bounds.topLeft());
        painter.setPen(QPen(text.GetColor()));
        painter.setBrush(text.GetColor());
        painter.drawPath(path);
        painter.end();
        benchmark::DoNotOptimize(image.constBits());
    }
    Bench::Count(state, PixelsOf(path));
}
BENCHMARK_CAPTURE(QtRaster, Smooth, true)->Name("QtTextSmooth")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(QtRaster, Jagged, false)->Name("QtTextJagged")->Unit(benchmark::kMillisecond);

/// Deforming alone, and subdividing the outline before it.
void TextDrag(benchmark::State& state, bool subdivide) {
    LXTextHelper text = Headline(2);
    double bend = 0;
    for (auto _ : state) {
        if (subdivide)
            text.SetText(text.GetText());
        text.SetBend(bend += 0.1);
        benchmark::DoNotOptimize(DeformedPath(text));
    }
    Bench::Count(state, std::size_t(text.GetText().size()));
}
BENCHMARK_CAPTURE(TextDrag, Cached, false)->Name("TextDrag")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(TextDrag, Anew, true)->Name("TextAnew")->Unit(benchmark::kMillisecond);

using Pairs::Measure;
const int Lines[] = {
    Pairs::Add(
        {"smooth headline / Qt on one bitmap", "TextSmooth", "QtTextSmooth", Measure::Time, 1.3}),
    Pairs::Add(
        {"jagged headline / Qt on one bitmap", "TextJagged", "QtTextJagged", Measure::Time, 1.3}),
    Pairs::Add({"dragged bend / text anew", "TextDrag", "TextAnew", Measure::Time, 0}),
};

} // namespace
