#include "CommandLine.h"
#include "Failure.h"
#include "Interrupt.h"
#include "LXBlendOn.h"
#include "LXBoxBlurIterative.h"
#include "LXGaussian1D.h"
#include "LXImageConvolution.h"
#include "LXIterativeBlend.h"
#include "LXIterativeConvolve.h"
#include "Mask.h"
#include "Picture.h"
#include "Progress.h"
#include "Streams.h"
#include "Values.h"

#include <QtGui/QPainter>

#include <functional>
#include <memory>

namespace {

using Image = LXImageRGBA32i;

/// A blur of an image within a rectangle.
using Blur = std::function<void(Image& image, const QRect& rect)>;

/// Lines first, as far as the columns will read, and then columns. Each step is one line of the
/// progress; the user may stop between two.
template <class MakeRows, class MakeColumns>
void DoSteps(Image& image, const QRect& rect, int reach, MakeRows makeRows,
             MakeColumns makeColumns) {
    const QRect readRect = LXGrown(rect, 0, reach, 0, reach) & LXImageRect(image);
    Progress progress(QStringLiteral("blur"), readRect.height() + rect.width());
    const auto run = [&](auto steps, int first, int count) {
        for (int i = 1; i <= count; ++i) {
            (*steps)();
            progress.SetValue(first + i);
            StopIfInterrupted();
        }
    };
    run(makeRows(readRect), 0, readRect.height());
    run(makeColumns(rect), readRect.height(), rect.width());
}

void Box(Image& image, const QRect& rect, int radius) {
    using Sums = LXRGBABlurAccumulatorPremul;
    using H = LXBlur::LXBoxBlurIterativeH<Image, Sums, void>;
    using V = LXBlur::LXBoxBlurIterativeV<Image, Sums, void>;
    DoSteps(
        image, rect, radius,
        [&](const QRect& r) { return std::make_unique<H>(radius, Sums(radius), image, r); },
        [&](const QRect& r) { return std::make_unique<V>(radius, Sums(radius), image, r); });
}

void Gauss(Image& image, const QRect& rect, double sigma) {
    const LXGaussian1DPremul kernel(sigma);
    using H = LXBlur::LXIterativeConvolveH<Image, LXGaussian1DPremul>;
    using V = LXBlur::LXIterativeConvolveV<Image, LXGaussian1DPremul>;
    DoSteps(
        image, rect, kernel.Left(),
        [&](const QRect& r) { return std::make_unique<H>(kernel, image, r); },
        [&](const QRect& r) { return std::make_unique<V>(kernel, image, r); });
}

/// A kernel in two dimensions, as a text file tells it.
struct Kernel {
    std::vector<double> entries;
    QSize size;
};

/// Numbers in lines of equal length, with blanks or commas between them.
Kernel LoadKernel(const QString& path) {
    constexpr int longest = 99;
    const auto fail = [&path](const QString& reason) { throw Failure{path, reason}; };
    Kernel kernel;
    const QStringList lines = QString::fromUtf8(ReadBytes(path)).split(QLatin1Char('\n'));
    for (QString line : lines) {
        const QStringList words = line.replace(QLatin1Char(','), QLatin1Char(' '))
                                      .simplified()
                                      .split(QLatin1Char(' '), Qt::SkipEmptyParts);
        if (words.isEmpty())
            continue;
        for (const QString& word : words) {
            bool isNumber = false;
            kernel.entries.push_back(word.toDouble(&isNumber));
            if (!isNumber)
                fail(QStringLiteral("'%1' in the kernel is no number").arg(word.left(40)));
        }
        if (kernel.size.height() > 0 && words.size() != kernel.size.width())
            fail(QStringLiteral("the lines of the kernel differ in length"));
        kernel.size = QSize(words.size(), std::max(kernel.size.height(), 0) + 1);
        if (std::max(kernel.size.width(), kernel.size.height()) > longest)
            fail(QStringLiteral("the kernel is larger than %1 x %1").arg(longest));
    }
    if (kernel.entries.empty())
        fail(QStringLiteral("there is no kernel in it"));
    return kernel;
}

/// Square by square, so that the user may stop between two. Each takes in what the kernel reaches
/// around it, which is at most as much again and a quarter.
void Convolve(Image& image, const QRect& rect, const Kernel& kernel) {
    const LXImageConvolution convolution(kernel.entries.data(), kernel.size);
    const int across = kernel.size.width() / 2, down = kernel.size.height() / 2;
    const int side = std::max({64, 4 * across, 4 * down});
    const int columns = (rect.width() - 1) / side + 1, rows = (rect.height() - 1) / side + 1;
    const auto copy = [](const Image& from, const QRect& fromRect, Image& to, const QRect& toRect) {
        BlendOn(from, fromRect, QPainter::CompositionMode_Source, to, toRect, 1.0, false);
    };
    const Image source = image;
    Progress progress(QStringLiteral("blur"), columns * rows);
    for (int i = 0; i < columns * rows; ++i) {
        const QPoint corner = rect.topLeft() + QPoint(i % columns, i / columns) * side;
        const QRect square = QRect(corner, QSize(side, side)) & rect;
        const QRect reached = LXGrown(square, across, down, across, down) & LXImageRect(source);
        Image part(unsigned(reached.width()), unsigned(reached.height()));
        copy(source, reached, part, LXImageRect(part));
        convolution(part);
        copy(part, square.translated(-reached.topLeft()), image, square);
        progress.SetValue(i + 1);
        StopIfInterrupted();
    }
}

/// The one blur that the options ask for.
Blur ChosenBlur(const CommandLine& line) {
    const QString box = QStringLiteral("box"), gauss = QStringLiteral("gauss"),
                  kernel = QStringLiteral("kernel");
    if (line.IsSet(box) + line.IsSet(gauss) + line.IsSet(kernel) != 1)
        throw UsageError{QStringLiteral("one of --box, --gauss and --kernel is needed")};
    if (line.IsSet(box)) {
        const int radius =
            ParseWhole(line.Value(box), QStringLiteral("radius of a box blur"), 0, 10000);
        return [radius](Image& image, const QRect& rect) { Box(image, rect, radius); };
    }
    if (line.IsSet(gauss)) {
        const double sigma =
            ParseNumber(line.Value(gauss), QStringLiteral("sigma of a gaussian"), 0.01, 1000);
        return [sigma](Image& image, const QRect& rect) { Gauss(image, rect, sigma); };
    }
    return [loaded = LoadKernel(line.Value(kernel))](Image& image, const QRect& rect) {
        Convolve(image, rect, loaded);
    };
}

/// Copies a rectangle, as far as the mask lets it through if there is one.
void CopyBack(const Image& from, Image& to, const QRect& rect, const Image* mask) {
    using namespace LXBlend;
    if (!mask)
        return BlendOn(from, rect, QPainter::CompositionMode_Source, to, rect, 1.0, false);
    using Blender = LXSelectionBlender<LXRGBA32i, LXSourceBySelection, LXRGBA32i>;
    using Steps = LXIterativeBlendBySelection<Image, Blender, Image>;
    const QRect all;
    Steps steps(Blender({}), from, to, *mask, rect, rect, all);
    for (int n = Steps::GetIterationCount(from, to, *mask, rect, rect, all); n > 0; --n)
        steps();
}

} // namespace

int RunBlur(const Command& command, const QStringList& arguments) {
    const QString rectOption = QStringLiteral("rect"), selection = QStringLiteral("selection");
    CommandLine line(command, QStringLiteral("Blurs a picture, or convolves it with a kernel."));
    line.AddOption({QStringLiteral("box"), QStringLiteral("The mean of 2 R + 1 pixels each way."),
                    QStringLiteral("R")});
    line.AddOption({QStringLiteral("gauss"), QStringLiteral("A gaussian of this sigma in pixels."),
                    QStringLiteral("SIGMA")});
    line.AddOption({QStringLiteral("kernel"),
                    QStringLiteral("A convolution with the numbers of a text file, a row of the "
                                   "kernel in each line."),
                    QStringLiteral("FILE")});
    line.AddOption(
        {rectOption, QStringLiteral("Only a part of the picture."), QStringLiteral("X,Y,WxH")});
    line.AddOption({selection,
                    QStringLiteral("Only through a mask: its transparency, or its brightness if "
                                   "it has none. Its corner lies on that of the rectangle."),
                    QStringLiteral("MASK")});
    line.AddFormatOption();
    line.AddFile(QStringLiteral("IN"), QStringLiteral("The picture; - is standard input."));
    line.AddFile(QStringLiteral("OUT"), QStringLiteral("The result; - is standard output."));
    if (!line.Parse(arguments, 2, 2))
        return 0;
    const Blur blur = ChosenBlur(line);
    const QString out = line.Files().at(1);
    const QByteArray format = OutputFormat(out, line.Value(QStringLiteral("format")));
    const QRect given = line.IsSet(rectOption) ? ParseRect(line.Value(rectOption)) : QRect();

    Picture picture = LoadPicture(line.Files().at(0));
    const QRect all = LXImageRect(picture.pixels);
    const QRect rect = line.IsSet(rectOption) ? given & all : all;
    if (rect.isEmpty())
        throw UsageError{QStringLiteral("the rectangle lies outside the picture")};
    Image blurred = picture.pixels;
    blur(blurred, rect);
    const Image mask = line.IsSet(selection) ? LoadMask(line.Value(selection)) : Image(0, 0);
    CopyBack(blurred, picture.pixels, line.IsSet(rectOption) ? given : all,
             line.IsSet(selection) ? &mask : nullptr);
    StopIfInterrupted();
    SavePicture(picture, out, format);
    return 0;
}
