#include "CommandLine.h"
#include "Interrupt.h"
#include "LXConvertImage.h"
#include "LXScaleImage.h"
#include "Picture.h"
#include "Progress.h"
#include "Values.h"

int RunView(const Command& command, const QStringList& arguments) {
    const QString zoomOption = QStringLiteral("zoom"), atOption = QStringLiteral("at");
    const QString sizeOption = QStringLiteral("size");
    CommandLine line(command, QStringLiteral("Shows a part of a picture as an editor does, each "
                                             "pixel a copy of one of its pixels."));
    line.AddOption({zoomOption, QStringLiteral("Pixels of the view for one of the picture."),
                    QStringLiteral("number"), QStringLiteral("1")});
    line.AddOption({atOption,
                    QStringLiteral("What place of the picture is at the top left of the view; "
                                   "fractions and negative numbers will do."),
                    QStringLiteral("X,Y"), QStringLiteral("0,0")});
    line.AddOption({sizeOption, QStringLiteral("The size of the view."), QStringLiteral("WxH"),
                    QStringLiteral("640x480")});
    line.AddFormatOption();
    line.AddFile(QStringLiteral("IN"), QStringLiteral("The picture; - is standard input."));
    line.AddFile(QStringLiteral("OUT"), QStringLiteral("The view; - is standard output."));
    if (!line.Parse(arguments, 2, 2))
        return 0;
    const double zoom = ParseNumber(line.Value(zoomOption), zoomOption, 0.001, 1000);
    const QVector<double> at = ParseNumbers(line.Value(atOption), QStringLiteral("position"), 2, 2);
    const QSize size = ParseSize(line.Value(sizeOption), 16384);
    const QString out = line.Files().at(1);
    const QByteArray format = OutputFormat(out, line.Value(QStringLiteral("format")));

    Progress progress(QStringLiteral("view"), 3);
    Picture picture = LoadPicture(line.Files().at(0));
    progress.SetValue(1);
    QImage view(size, QImage::Format_ARGB32);
    view.fill(0);
    ScaleImage(picture.pixels, QPointF(at[0], at[1]), zoom, view);
    picture.pixels = ConvertImage<QImage, LXImageRGBA32i>(view);
    progress.SetValue(2);
    StopIfInterrupted();
    SavePicture(picture, out, format);
    return 0;
}
