#include "Command.h"

#include "Failure.h"

#include <algorithm>

const std::vector<Command>& Commands() {
    static const std::vector<Command> commands = {
        {"info", "[options] FILE...", "Show what is known about pictures", RunInfo},
        {"convert", "[options] IN OUT", "Convert the file format or the pixel format", RunConvert},
        {"adjust", "NAME [options] IN OUT", "Change colours; --list tells how", RunAdjust},
        {"blend", "[options] BASE TOP OUT", "Lay one picture on another", RunBlend},
        {"blur", "[options] IN OUT", "Blur, or convolve with a kernel", RunBlur},
        {"draw", "[options] IN OUT", "Draw a path, text or a picture", RunDraw},
        {"fill", "[options] IN OUT", "Fill what is connected and of one colour", RunFill},
        {"filter", "NAME [options] IN OUT", "Blur, shade, glow; --list tells how", RunFilter},
        {"select", "[options] IN OUT", "Make a mask of what has one colour", RunSelect},
        {"text", "[options] TEXT OUT", "Make a picture of bent text", RunText},
        {"transform", "[options] IN OUT", "Turn, scale, shear", RunTransform},
        {"view", "[options] IN OUT", "Show a part at a zoom", RunView},
        {"histogram", "[options] FILE [OUT]", "Count levels and draw the counts", RunHistogram},
        {"profile", "[options] IN OUT", "Assign a colour profile or convert to it", RunProfile},
        {"inpaint", "[options] IN OUT", "Fill scratches and dust from their rims", RunInpaint},
        {"scene", "[options] OUT", "Paint a picture to try things on", RunScene},
        {"white-balance", "[options] IN OUT", "Correct colour and brightness", RunWhiteBalance},
    };
    return commands;
}

const Command& FindCommand(const QString& name) {
    const auto& commands = Commands();
    const auto found = std::find_if(commands.begin(), commands.end(), [&name](const Command& c) {
        return name == QLatin1String(c.name);
    });
    if (found == commands.end())
        throw UsageError{QStringLiteral("there is no command '%1'").arg(name)};
    return *found;
}

QString GeneralHelp() {
    QString text = QStringLiteral("Usage: lximage COMMAND [options] ...\n"
                                  "Works on pictures through the tiled images of libimage.\n\n"
                                  "Commands:\n");
    for (const Command& command : Commands())
        text += QStringLiteral("  %1 %2\n")
                    .arg(QLatin1String(command.name), -14)
                    .arg(QLatin1String(command.summary));
    text += QStringLiteral("\n"
                           "  lximage help COMMAND   the options of a command\n"
                           "  lximage --version      the version\n\n"
                           "Instead of a file, - means standard input or standard output.\n"
                           "Exit codes: 0 success, 1 failure, 2 wrong usage.\n");
    return text;
}
