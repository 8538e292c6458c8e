#pragma once

#include "Command.h"
#include "Failure.h"
#include "Parameters.h"

#include <vector>

class CommandLine;

/// Something with a name and parameters that a command does to a picture: what its table is made
/// of.
struct Operation {
    const char* name;
    const char* summary;
    std::vector<Parameter> parameters;

    /// "name: summary."
    QString Title() const;
    /// What --list tells: a line for the operation and one for each parameter.
    QString Listing() const;
    /// An option for each parameter.
    void AddOptions(CommandLine& line) const;
    /// The values of all parameters, which are their fallbacks where nothing is given.
    ParameterValues ReadValues(const CommandLine& line) const;
};

/// The operation of that name. Throws UsageError if there is none; `kind` says what it would be.
template <class Kind>
const Kind& FindOperation(const std::vector<Kind>& all, const QString& kind, const QString& name) {
    for (const Kind& operation : all)
        if (name == QLatin1String(operation.name))
            return operation;
    throw UsageError{QStringLiteral("there is no %1 '%2'").arg(kind, name)};
}

/// The command without a name: its help, or with --list those listings. `kind` is what it is a
/// table of.
int RunWithoutName(const Command& command, const QStringList& arguments, const QString& kind,
                   const QString& description, const QString& listings);

/// A command whose first argument is a name of its table, and the rest for `run` with that.
template <class Kind>
int RunNamed(const Command& command, const QStringList& arguments, const std::vector<Kind>& all,
             const QString& kind, const QString& description,
             int (*run)(const Command&, const Kind&, const QStringList&)) {
    const QString first = arguments.value(0);
    if (!first.isEmpty() && !first.startsWith(QLatin1Char('-')))
        return run(command, FindOperation(all, kind, first), arguments.mid(1));
    QString listings;
    for (const Kind& operation : all)
        listings += operation.Listing();
    return RunWithoutName(command, arguments, kind, description, listings);
}
