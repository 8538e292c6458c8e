#include "Operation.h"

#include "CommandLine.h"
#include "Streams.h"

QString Operation::Title() const {
    return QStringLiteral("%1: %2.").arg(QLatin1String(name), QLatin1String(summary));
}

QString Operation::Listing() const {
    QString text =
        QStringLiteral("%1  %2\n").arg(QLatin1String(name), -20).arg(QLatin1String(summary));
    for (const Parameter& parameter : parameters) {
        const QString fallback = QString::fromLatin1(parameter.fallback);
        text += QStringLiteral("    --%1 %2: %3%4\n")
                    .arg(QLatin1String(parameter.name), -14)
                    .arg(QLatin1String(parameter.text), parameter.Domain(),
                         fallback.isEmpty() ? QString() : QStringLiteral(" (%1)").arg(fallback));
    }
    return text;
}

void Operation::AddOptions(CommandLine& line) const {
    for (const Parameter& parameter : parameters) {
        const QString option = QString::fromLatin1(parameter.name);
        const QString text = QStringLiteral("%1%2; %3.")
                                 .arg(QChar::fromLatin1(parameter.text[0]).toUpper())
                                 .arg(QLatin1String(parameter.text + 1), parameter.Domain());
        if (parameter.kind == ParameterKind::Flag)
            line.AddOption({option, text});
        else
            line.AddOption(
                {option, text, QStringLiteral("value"), QString::fromLatin1(parameter.fallback)});
    }
}

ParameterValues Operation::ReadValues(const CommandLine& line) const {
    ParameterValues values;
    for (const Parameter& parameter : parameters) {
        const QString option = QString::fromLatin1(parameter.name);
        const bool given = line.IsSet(option);
        const bool isFlag = parameter.kind == ParameterKind::Flag;
        values.Set(parameter, !isFlag ? line.Value(option) : given ? option : QString(), given);
    }
    return values;
}

int RunWithoutName(const Command& command, const QStringList& arguments, const QString& kind,
                   const QString& description, const QString& listings) {
    const QString list = QStringLiteral("list");
    CommandLine line(command, description);
    line.AddOption({list, QStringLiteral("List all %1s with their options, the values that these "
                                         "take, and in parentheses what they are if not given.")
                              .arg(kind)});
    if (!line.Parse(arguments, 0, 0))
        return 0;
    if (!line.IsSet(list))
        throw UsageError{QStringLiteral("the name of the %1 is missing").arg(kind)};
    Print(listings);
    return 0;
}
