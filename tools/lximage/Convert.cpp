#include "CommandLine.h"
#include "Failure.h"
#include "Interrupt.h"
#include "LXConvertImage.h"
#include "Picture.h"
#include "Progress.h"

namespace {

struct PixelFormat {
    const char* name;
    const char* description;
    LXImageRGBA32i (*through)(const LXImageRGBA32i& image);
};

template <class Image>
LXImageRGBA32i Through(const LXImageRGBA32i& image) {
    const Image between = ConvertImage<LXImageRGBA32i, Image>(image);
    StopIfInterrupted();
    return ConvertImage<Image, LXImageRGBA32i>(between);
}

const PixelFormat pixelFormats[] = {
    {"rgba64", "16 bits a channel; comes back as it was", Through<LXImageRGBA64i>},
    {"half", "half floats; about half of the levels come back one lower", Through<LXImageRGBA64f>},
    {"cmyk", "device CMYK; comes back with red and blue exchanged, by design",
     Through<LXImageCMYKA>},
    {"hsl", "hue, saturation, lightness; comes back rounded", Through<LXImageHSLA>},
};

const PixelFormat& FindPixelFormat(const QString& name) {
    for (const PixelFormat& format : pixelFormats)
        if (name == QLatin1String(format.name))
            return format;
    throw UsageError{QStringLiteral("there is no pixel format '%1'").arg(name)};
}

QString Description() {
    QString text = QStringLiteral("Reads a picture into a tiled image and writes it again.\n"
                                  "Between the two, --through takes it through a pixel format:\n");
    for (const PixelFormat& format : pixelFormats)
        text += QStringLiteral("\n  %1%2")
                    .arg(QLatin1String(format.name), -8)
                    .arg(QLatin1String(format.description));
    return text;
}

} // namespace

int RunConvert(const Command& command, const QStringList& arguments) {
    const QString through = QStringLiteral("through");
    CommandLine line(command, Description());
    line.AddOption({through, QStringLiteral("Convert to this pixel format and back."),
                    QStringLiteral("pixel format")});
    line.AddFormatOption();
    line.AddFile(QStringLiteral("IN"), QStringLiteral("The picture; - is standard input."));
    line.AddFile(QStringLiteral("OUT"), QStringLiteral("The result; - is standard output."));
    if (!line.Parse(arguments, 2, 2))
        return 0;

    const PixelFormat* pixelFormat =
        line.IsSet(through) ? &FindPixelFormat(line.Value(through)) : nullptr;
    const QString out = line.Files().at(1);
    const QByteArray format = OutputFormat(out, line.Value(QStringLiteral("format")));

    Progress progress(QStringLiteral("convert"), 3);
    Picture picture = LoadPicture(line.Files().at(0));
    progress.SetValue(1);
    if (pixelFormat)
        picture.pixels = pixelFormat->through(picture.pixels);
    progress.SetValue(2);
    StopIfInterrupted();
    SavePicture(picture, out, format);
    return 0;
}
