#include "CommandLine.h"
#include "Interrupt.h"
#include "Parameters.h"
#include "Picture.h"
#include "Progress.h"
#include "RMWBTransformation.h"
#include "Walk.h"

namespace {

using Function = RMWBTransformation::BalanceFunction;

/// In the order of BalanceFunction.
constexpr Parameter FunctionParameter = {"function", ParameterKind::Choice, "", "auto", 0,
                                         0,          "auto|over|under"};
constexpr Parameter AmountParameter = {"amount", ParameterKind::Integer, "", "100", 0, 100};

void AddOption(CommandLine& line, const Parameter& parameter, const QString& text) {
    line.AddOption({QString::fromLatin1(parameter.name), text, parameter.Domain(),
                    QString::fromLatin1(parameter.fallback)});
}

} // namespace

int RunWhiteBalance(const Command& command, const QStringList& arguments) {
    CommandLine line(command,
                     QStringLiteral("Corrects colour and brightness by what the picture shows."));
    AddOption(line, FunctionParameter,
              QStringLiteral("auto: colour and brightness by the statistics of the picture. over: "
                             "darker, for too much light. under: lighter, for too little."));
    AddOption(line, AmountParameter,
              QStringLiteral("How much of it, in percent. At 0 auto still changes brightness."));
    line.AddFormatOption();
    line.AddFile(QStringLiteral("IN"), QStringLiteral("The picture; - is standard input."));
    line.AddFile(QStringLiteral("OUT"), QStringLiteral("The result; - is standard output."));
    if (!line.Parse(arguments, 2, 2))
        return 0;
    ParameterValues values;
    for (const Parameter& parameter : {FunctionParameter, AmountParameter})
        values.Set(parameter, line.Value(QString::fromLatin1(parameter.name)));
    const QString out = line.Files().at(1);
    const QByteArray format = OutputFormat(out, line.Value(QStringLiteral("format")));

    Progress progress(QStringLiteral("white-balance"), 4);
    Picture picture = LoadPicture(line.Files().at(0));
    progress.SetValue(1);
    StopIfInterrupted();
    const RMWBTransformation balance(picture.pixels, Function(values.Choice("function")),
                                     values.Integer("amount"));
    progress.SetValue(2);
    Walk(picture.pixels, balance);
    progress.SetValue(3);
    StopIfInterrupted();
    SavePicture(picture, out, format);
    return 0;
}
