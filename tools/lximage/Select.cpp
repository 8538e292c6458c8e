#include "Interrupt.h"
#include "LXFloodFillHelper.h"
#include "Picture.h"
#include "Progress.h"
#include "Wand.h"

int RunSelect(const Command& command, const QStringList& arguments) {
    const QString rangeOption = QStringLiteral("color-range");
    CommandLine line(command,
                     QStringLiteral("Makes a mask of what is connected with a pixel and has its\n"
                                    "colour, and prints the rectangle around that. All else is\n"
                                    "transparent."));
    line.AddOption({rangeOption, QStringLiteral("Select that colour in all of the picture, "
                                                "connected or not.")});
    Wand::AddOptions(line, QStringLiteral("white"),
                     QStringLiteral("What is selected: #rrggbb, #aarrggbb or a name."));
    line.AddFormatOption();
    line.AddFile(QStringLiteral("IN"), QStringLiteral("The picture; - is standard input."));
    line.AddFile(QStringLiteral("OUT"), QStringLiteral("The mask; - is standard output."));
    if (!line.Parse(arguments, 2, 2))
        return 0;
    const Wand wand = Wand::Read(line);
    const QString in = line.Files().at(0), out = line.Files().at(1);
    const QByteArray format = OutputFormat(out, line.Value(QStringLiteral("format")));

    Progress progress(QStringLiteral("select"), 3);
    const LXImageRGBA32i picture = LoadPicture(in).pixels;
    progress.SetValue(1);
    wand.CheckSeed(picture, in);
    LXImageRGBA32i mask(picture.GetWidth(), picture.GetHeight());
    QRect bounds;
    if (line.IsSet(rangeOption))
        LXFloodFillHelper::ColorRangeFill(picture, mask, wand.seed, wand.tolerance, wand.color,
                                          &bounds);
    else
        LXFloodFillHelper::FloodFill(picture, mask, wand.seed, wand.tolerance, wand.color, &bounds);
    progress.SetValue(2);
    StopIfInterrupted();
    SavePicture({mask, format, {}, {}, true}, out, format);
    PrintBounds(bounds, out);
    return 0;
}
