#include "BlendModes.h"
#include "CommandLine.h"
#include "Failure.h"
#include "Interrupt.h"
#include "LXBlendOn.h"
#include "LXTileWalk.h"
#include "Mask.h"
#include "Picture.h"
#include "Progress.h"
#include "Values.h"

namespace {

const QString ModeOption = QStringLiteral("mode");
const QString OpacityOption = QStringLiteral("opacity");
const QString LockOption = QStringLiteral("lock-alpha");
const QString AtOption = QStringLiteral("at");
const QString MaskOption = QStringLiteral("mask");
const QString OutsideOption = QStringLiteral("outside");

QString Description() {
    QString text = QStringLiteral("Lays one picture on another. Modes, by name or number:\n");
    for (const BlendModeName& mode : BlendModeNames())
        text += QStringLiteral("\n  %1 %2").arg(mode.id, 2).arg(QLatin1String(mode.name));
    return text;
}

void AddOptions(CommandLine& line) {
    line.AddOption({ModeOption, QStringLiteral("The blend mode."), QStringLiteral("name|number"),
                    QStringLiteral("source-over")});
    line.AddOption({OpacityOption, QStringLiteral("The opacity of TOP, from 0 to 1."),
                    QStringLiteral("number"), QStringLiteral("1")});
    line.AddOption({LockOption, QStringLiteral("Keep the transparency of BASE.")});
    line.AddOption({AtOption, QStringLiteral("Where the top left corner of TOP comes to lie."),
                    QStringLiteral("X,Y"), QStringLiteral("0,0")});
    line.AddOption({MaskOption,
                    QStringLiteral("Blend through this picture, which lies on TOP: its "
                                   "transparency, or its brightness if it is opaque."),
                    QStringLiteral("file")});
    line.AddOption({OutsideOption, QStringLiteral("Blend beyond the mask as well.")});
    line.AddFormatOption();
    line.AddFile(QStringLiteral("BASE"), QStringLiteral("The picture below; - is standard input."));
    line.AddFile(QStringLiteral("TOP"), QStringLiteral("The picture that is laid on it."));
    line.AddFile(QStringLiteral("OUT"), QStringLiteral("The result; - is standard output."));
}

/// Lays `top` on `base` as the options say.
void Lay(const LXImageRGBA32i& top, LXImageRGBA32i& base, const CommandLine& line,
         unsigned int mode, double opacity, const QPoint& at) {
    const QRect from = LXImageRect(top), to = from.translated(at);
    const bool lock = line.IsSet(LockOption);
    if (!line.IsSet(MaskOption))
        return BlendOn(top, from, mode, base, to, opacity, lock);
    const LXImageRGBA32i mask = LoadMask(line.Value(MaskOption));
    StopIfInterrupted();
    BlendMaskOn(top, from, mode, base, to, opacity, mask, LXImageRect(mask),
                line.IsSet(OutsideOption), lock);
}

} // namespace

int RunBlend(const Command& command, const QStringList& arguments) {
    CommandLine line(command, Description());
    AddOptions(line);
    if (!line.Parse(arguments, 3, 3))
        return 0;
    const unsigned int mode = ParseBlendMode(line.Value(ModeOption));
    const double opacity = ParseNumber(line.Value(OpacityOption), QStringLiteral("opacity"), 0, 1);
    const QPoint at = ParsePoint(line.Value(AtOption));
    if (line.IsSet(OutsideOption) && !line.IsSet(MaskOption))
        throw UsageError{QStringLiteral("--outside needs a --mask")};
    const QString out = line.Files().at(2);
    const QByteArray format = OutputFormat(out, line.Value(QStringLiteral("format")));

    Progress progress(QStringLiteral("blend"), 4);
    Picture base = LoadPicture(line.Files().at(0));
    progress.SetValue(1);
    const Picture top = LoadPicture(line.Files().at(1));
    progress.SetValue(2);
    Lay(top.pixels, base.pixels, line, mode, opacity, at);
    progress.SetValue(3);
    StopIfInterrupted();
    SavePicture(base, out, format);
    return 0;
}
