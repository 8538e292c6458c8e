#include "Interrupt.h"
#include "LXFloodFillHelper.h"
#include "Picture.h"
#include "Progress.h"
#include "Wand.h"

int RunFill(const Command& command, const QStringList& arguments) {
    CommandLine line(command,
                     QStringLiteral("Fills what is connected with a pixel and has its colour, and\n"
                                    "prints the rectangle around that."));
    Wand::AddOptions(line, QStringLiteral("black"),
                     QStringLiteral("What to fill with: #rrggbb, #aarrggbb or a name."));
    line.AddFormatOption();
    line.AddFile(QStringLiteral("IN"), QStringLiteral("The picture; - is standard input."));
    line.AddFile(QStringLiteral("OUT"), QStringLiteral("The result; - is standard output."));
    if (!line.Parse(arguments, 2, 2))
        return 0;
    const Wand wand = Wand::Read(line);
    const QString in = line.Files().at(0), out = line.Files().at(1);
    const QByteArray format = OutputFormat(out, line.Value(QStringLiteral("format")));

    Progress progress(QStringLiteral("fill"), 3);
    Picture picture = LoadPicture(in);
    progress.SetValue(1);
    wand.CheckSeed(picture.pixels, in);
    QRect bounds;
    LXFloodFillHelper::FloodFill(picture.pixels, wand.seed, wand.tolerance, wand.color, &bounds);
    progress.SetValue(2);
    StopIfInterrupted();
    SavePicture(picture, out, format);
    PrintBounds(bounds, out);
    return 0;
}
