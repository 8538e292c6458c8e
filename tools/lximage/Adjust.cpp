#include "Adjustments.h"
#include "CommandLine.h"
#include "Failure.h"
#include "Interrupt.h"
#include "Picture.h"
#include "Progress.h"
#include "Streams.h"

namespace {

QString List() {
    QString text;
    for (const Adjustment& adjustment : Adjustments()) {
        text += QStringLiteral("%1  %2\n")
                    .arg(QLatin1String(adjustment.name), -20)
                    .arg(QLatin1String(adjustment.summary));
        for (const Parameter& parameter : adjustment.parameters) {
            const QString fallback = QString::fromLatin1(parameter.fallback);
            text +=
                QStringLiteral("    --%1 %2: %3%4\n")
                    .arg(QLatin1String(parameter.name), -14)
                    .arg(QLatin1String(parameter.text), parameter.Domain(),
                         fallback.isEmpty() ? QString() : QStringLiteral(" (%1)").arg(fallback));
        }
    }
    return text;
}

void AddParameters(CommandLine& line, const Adjustment& adjustment) {
    for (const Parameter& parameter : adjustment.parameters) {
        const QString name = QString::fromLatin1(parameter.name);
        const QString text = QStringLiteral("%1%2; %3.")
                                 .arg(QChar::fromLatin1(parameter.text[0]).toUpper())
                                 .arg(QLatin1String(parameter.text + 1), parameter.Domain());
        if (parameter.kind == ParameterKind::Flag)
            line.AddOption({name, text});
        else
            line.AddOption(
                {name, text, QStringLiteral("value"), QString::fromLatin1(parameter.fallback)});
    }
}

ParameterValues ReadParameters(const CommandLine& line, const Adjustment& adjustment) {
    ParameterValues values;
    for (const Parameter& parameter : adjustment.parameters) {
        const QString name = QString::fromLatin1(parameter.name);
        const QString given = line.IsSet(name) ? name : QString();
        values.Set(parameter, parameter.kind == ParameterKind::Flag ? given : line.Value(name));
    }
    return values;
}

int RunOne(const Command& command, const Adjustment& adjustment, const QStringList& arguments) {
    CommandLine line(command, QStringLiteral("%1: %2.").arg(QLatin1String(adjustment.name),
                                                            QLatin1String(adjustment.summary)));
    AddParameters(line, adjustment);
    line.AddFormatOption();
    line.AddFile(QStringLiteral("IN"), QStringLiteral("The picture; - is standard input."));
    line.AddFile(QStringLiteral("OUT"), QStringLiteral("The result; - is standard output."));
    if (!line.Parse(arguments, 2, 2))
        return 0;
    const ParameterValues values = ReadParameters(line, adjustment);
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

} // namespace

int RunAdjust(const Command& command, const QStringList& arguments) {
    const QString first = arguments.value(0);
    if (!first.isEmpty() && !first.startsWith(QLatin1Char('-')))
        return RunOne(command, FindAdjustment(first), arguments.mid(1));

    const QString list = QStringLiteral("list");
    CommandLine line(command,
                     QStringLiteral("Changes the colours of a picture. NAME is one of the\n"
                                    "adjustments that --list tells, each with options of\n"
                                    "its own: lximage adjust NAME --help."));
    line.AddOption({list, QStringLiteral("List all adjustments with their options, the values that "
                                         "these take, and in parentheses what they are if not "
                                         "given.")});
    if (!line.Parse(arguments, 0, 0))
        return 0;
    if (!line.IsSet(list))
        throw UsageError{QStringLiteral("the name of an adjustment is missing")};
    Print(List());
    return 0;
}
