#include "Adjustments.h"
#include "CommandLine.h"
#include "Interrupt.h"
#include "Picture.h"
#include "Progress.h"

static int RunOne(const Command& command, const Adjustment& adjustment,
                  const QStringList& arguments) {
    CommandLine line(command, adjustment.Title());
    adjustment.AddOptions(line);
    line.AddFormatOption();
    line.AddFile(QStringLiteral("IN"), QStringLiteral("The picture; - is standard input."));
    line.AddFile(QStringLiteral("OUT"), QStringLiteral("The result; - is standard output."));
    if (!line.Parse(arguments, 2, 2))
        return 0;
    const ParameterValues values = adjustment.ReadValues(line);
    const QString out = line.Files().at(1);
    const QByteArray format = OutputFormat(out, line.Value(QStringLiteral("format")));

    Progress progress(QStringLiteral("adjust"), 3);
    Picture picture = LoadPicture(line.Files().at(0));
    progress.SetValue(1);
    adjustment.apply(picture.pixels, values);
    progress.SetValue(2);
    StopIfInterrupted();
    SavePicture(picture, out, format);
    return 0;
}

int RunAdjust(const Command& command, const QStringList& arguments) {
    return RunNamed(command, arguments, Adjustments(), QStringLiteral("adjustment"),
                    QStringLiteral("Changes the colours of a picture. NAME is one of the\n"
                                   "adjustments that --list tells, each with options of\n"
                                   "its own: lximage adjust NAME --help."),
                    RunOne);
}
