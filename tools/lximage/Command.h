#pragma once

#include <QtCore/QString>
#include <QtCore/QStringList>

#include <vector>

/// One subcommand. `run` gets the arguments after the name and returns the exit code; it throws
/// Failure, UsageError and Interrupted.
struct Command {
    const char* name;
    const char* synopsis;
    const char* summary;
    int (*run)(const Command& command, const QStringList& arguments);
};

/// All commands, in the order of the help.
const std::vector<Command>& Commands();

/// The command of that name. Throws UsageError if there is none.
const Command& FindCommand(const QString& name);

/// The help of the tool itself.
QString GeneralHelp();

int RunInfo(const Command& command, const QStringList& arguments);
int RunAdjust(const Command& command, const QStringList& arguments);
int RunBlur(const Command& command, const QStringList& arguments);
int RunBlend(const Command& command, const QStringList& arguments);
int RunConvert(const Command& command, const QStringList& arguments);
int RunDraw(const Command& command, const QStringList& arguments);
int RunFill(const Command& command, const QStringList& arguments);
int RunFilter(const Command& command, const QStringList& arguments);
int RunHistogram(const Command& command, const QStringList& arguments);
int RunProfile(const Command& command, const QStringList& arguments);
int RunInpaint(const Command& command, const QStringList& arguments);
int RunScene(const Command& command, const QStringList& arguments);
int RunWhiteBalance(const Command& command, const QStringList& arguments);
int RunSelect(const Command& command, const QStringList& arguments);
int RunText(const Command& command, const QStringList& arguments);
int RunTransform(const Command& command, const QStringList& arguments);
int RunView(const Command& command, const QStringList& arguments);
