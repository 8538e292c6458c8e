#include "CommandLine.h"
#include "Failure.h"
#include "Interrupt.h"
#include "LXConvertImage.h"
#include "LXInpaint.h"
#include "LXInpaintIterative.h"
#include "LXTileWalk.h"
#include "LXTransformImageColors.h"
#include "Mask.h"
#include "Picture.h"
#include "Progress.h"
#include "Values.h"

#include <climits>
#include <cmath>

namespace {

const QString MaskOption = QStringLiteral("mask");
const QString AtOption = QStringLiteral("at");
const QString ThresholdOption = QStringLiteral("threshold");
const QString PartialOption = QStringLiteral("keep-partial");

/// The pixels of a mask from the threshold on become a hole, the others known.
struct Holes {
    int threshold;

    void operator()(LXRGBA32i& pixel) const {
        pixel = {0, 0, 0, static_cast<std::uint8_t>(pixel.alpha >= threshold ? 255 : 0)};
    }
};

LXImageRGBA32i LoadHoles(const CommandLine& line, int threshold) {
    LXImageRGBA32i mask = LoadMask(line.Value(MaskOption));
    LXTransformImageColors<LXImageRGBA32i, Holes>()(mask, LXImageRect(mask), {threshold});
    return mask;
}

int CountHoles(const LXImageRGBA32i& mask, const QRect& rect) {
    int count = 0;
    const auto look = [&count](const LXRGBA32i& pixel) {
        count += pixel.alpha == 255 && count < INT_MAX;
    };
    LXVisitImageColors<LXImageRGBA32i, decltype(look)>()(mask, rect, look);
    return count;
}

/// Layer by layer, until nothing changes or the user asks to stop.
void FillThrough(const LXImageRGBA32i& mask, const QPoint& at, LXImageRGBA32i& image) {
    const QRect part = LXImageRect(mask) & LXImageRect(image).translated(-at);
    Progress progress(QStringLiteral("inpaint"), CountHoles(mask, part));
    LXInpaintIterative inpaint(image, mask, part.translated(at), part);
    while (inpaint() && !StopRequested())
        progress.SetValue(int(inpaint.GetFilledCount()));
}

/// What is not opaque, all in one go.
void FillTransparent(LXImageRGBA32i& image) {
    QImage flat = ConvertImage<LXImageRGBA32i, QImage>(image);
    LXInpaint{flat}(0);
    image = ConvertImage<QImage, LXImageRGBA32i>(flat);
}

int ParseThreshold(const QString& text) {
    return int(std::ceil(ParseNumber(text, QStringLiteral("threshold"), 1, 255)));
}

} // namespace

int RunInpaint(const Command& command, const QStringList& arguments) {
    CommandLine line(
        command, QStringLiteral("Fills the places that a mask covers from their rims, or, with\n"
                                "no mask, all that is not opaque. It is meant for scratches,\n"
                                "dust and lettering; nothing is invented in large holes."));
    line.AddOption({MaskOption,
                    QStringLiteral("What to fill: where this picture is not transparent, or, if it "
                                   "is opaque, where it is not black."),
                    QStringLiteral("file")});
    line.AddOption({AtOption, QStringLiteral("Where the top left corner of the mask lies."),
                    QStringLiteral("X,Y"), QStringLiteral("0,0")});
    line.AddOption({ThresholdOption,
                    QStringLiteral("From which value of the mask on a pixel is filled, 1 to 255."),
                    QStringLiteral("number"), QStringLiteral("1")});
    line.AddOption({PartialOption,
                    QStringLiteral("Write what is filled by then if Ctrl-C stops the filling.")});
    line.AddFormatOption();
    line.AddFile(QStringLiteral("IN"), QStringLiteral("The picture; - is standard input."));
    line.AddFile(QStringLiteral("OUT"), QStringLiteral("The result; - is standard output."));
    if (!line.Parse(arguments, 2, 2))
        return 0;
    const bool masked = line.IsSet(MaskOption);
    for (const QString& option : {AtOption, ThresholdOption, PartialOption})
        if (line.IsSet(option) && !masked)
            throw UsageError{QStringLiteral("--%1 needs a --mask").arg(option)};
    const QPoint at = ParsePoint(line.Value(AtOption));
    const int threshold = ParseThreshold(line.Value(ThresholdOption));
    const QString out = line.Files().at(1);
    const QByteArray format = OutputFormat(out, line.Value(QStringLiteral("format")));

    Picture picture = LoadPicture(line.Files().at(0));
    if (masked)
        FillThrough(LoadHoles(line, threshold), at, picture.pixels);
    else
        FillTransparent(picture.pixels);
    const bool partial = line.IsSet(PartialOption) && TakeStopRequest();
    StopIfInterrupted();
    SavePicture(picture, out, format);
    if (partial)
        throw Interrupted{};
    return 0;
}
