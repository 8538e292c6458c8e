#include "Wand.h"

#include "Failure.h"
#include "LXTileWalk.h"
#include "Streams.h"
#include "Values.h"

namespace {

const QString SeedOption = QStringLiteral("seed");
const QString ToleranceOption = QStringLiteral("tolerance");
const QString ColorOption = QStringLiteral("color");

std::uint8_t ParseLevel(const QString& text) {
    return std::uint8_t(ParseWhole(text, QStringLiteral("tolerance"), 0, 255));
}

/// One number for all channels, or one for each.
LXRGBA32i ParseTolerance(const QString& text) {
    const QStringList parts = text.split(QLatin1Char(','));
    if (parts.size() != 1 && parts.size() != 4)
        throw UsageError{
            QStringLiteral("'%1' is no tolerance; write 32, or 32,32,32,0 for red, green, blue "
                           "and alpha")
                .arg(text)};
    const auto level = [&](int channel) { return ParseLevel(parts.value(channel, parts[0])); };
    return {level(2), level(1), level(0), level(3)};
}

} // namespace

void Wand::AddOptions(CommandLine& line, const QString& color, const QString& colorText) {
    line.AddOption({SeedOption, QStringLiteral("The pixel whose colour is looked for."),
                    QStringLiteral("X,Y")});
    line.AddOption({ToleranceOption,
                    QStringLiteral("How much levels may differ from the seed's, 0 to 255: one "
                                   "number, or four for red, green, blue and alpha."),
                    QStringLiteral("N|R,G,B,A"), QStringLiteral("32")});
    line.AddOption({ColorOption, colorText, QStringLiteral("color"), color});
}

Wand Wand::Read(const CommandLine& line) {
    if (!line.IsSet(SeedOption))
        throw UsageError{QStringLiteral("the option --seed is missing")};
    const QColor color = ParseColor(line.Value(ColorOption));
    return {ParsePoint(line.Value(SeedOption)), ParseTolerance(line.Value(ToleranceOption)),
            LXRGBA32i{std::uint8_t(color.blue()), std::uint8_t(color.green()),
                      std::uint8_t(color.red()), std::uint8_t(color.alpha())}};
}

void Wand::CheckSeed(const LXImageRGBA32i& image, const QString& name) const {
    if (!LXImageRect(image).contains(seed))
        throw Failure{name, QStringLiteral("the seed %1,%2 lies outside its %3 x %4 pixels")
                                .arg(seed.x())
                                .arg(seed.y())
                                .arg(image.GetWidth())
                                .arg(image.GetHeight())};
}

void PrintBounds(const QRect& bounds, const QString& out) {
    if (out != QLatin1String("-"))
        Print(QStringLiteral("%1 x %2 pixels at %3,%4\n")
                  .arg(bounds.width())
                  .arg(bounds.height())
                  .arg(bounds.x())
                  .arg(bounds.y()));
}
