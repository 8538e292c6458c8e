#include "CommandLine.h"
#include "DamagePicture.h"
#include "DemoPicture.h"
#include "Failure.h"
#include "LXConvertImage.h"
#include "Picture.h"
#include "Progress.h"
#include "SweepPicture.h"
#include "Values.h"

namespace {

constexpr int LongestSide = 16384;

struct Subject {
    const char* name;
    QImage (*paint)(const QSize& size, Progress& progress);
};

QImage PaintSweep(const QSize& size, Progress&) {
    return PaintSweepPicture(size);
}

QImage PaintDamage(const QSize& size, Progress&) {
    return PaintDamagePicture(size);
}

const Subject subjects[] = {
    {"lake", PaintDemoPicture}, {"sweep", PaintSweep}, {"damage", PaintDamage}};

const Subject& FindSubject(const QString& name) {
    for (const Subject& subject : subjects)
        if (name == QLatin1String(subject.name))
            return subject;
    throw UsageError{QStringLiteral("there is no picture '%1'").arg(name)};
}

} // namespace

int RunScene(const Command& command, const QStringList& arguments) {
    const QString sizeOption = QStringLiteral("size");
    const QString pictureOption = QStringLiteral("picture");
    CommandLine line(
        command,
        QStringLiteral("Paints a picture to try things on, the same on every run:\n\n"
                       "  lake    an evening: soft gradients, fine detail, a colour chart,\n"
                       "          transparent edges\n"
                       "  sweep   all colours, ever more transparent to the right\n"
                       "  damage  scratches and dust on nothing, to be laid on a picture"));
    line.AddOption({pictureOption, QStringLiteral("What to paint."),
                    QStringLiteral("lake|sweep|damage"), QStringLiteral("lake")});
    line.AddOption({sizeOption, QStringLiteral("Width and height in pixels."),
                    QStringLiteral("WxH"), QStringLiteral("1200x800")});
    line.AddFormatOption();
    line.AddFile(QStringLiteral("OUT"), QStringLiteral("The picture; - is standard output."));
    if (!line.Parse(arguments, 1, 1))
        return 0;

    const Subject& subject = FindSubject(line.Value(pictureOption));
    const QSize size = ParseSize(line.Value(sizeOption), LongestSide);
    const QString out = line.Files().at(0);
    const QByteArray format = OutputFormat(out, line.Value(QStringLiteral("format")));
    Progress progress(QStringLiteral("scene"), 1);
    const QImage image = subject.paint(size, progress);
    SavePicture({ConvertImage<QImage, LXImageRGBA32i>(image), format, {}, {}, true}, out, format);
    return 0;
}
