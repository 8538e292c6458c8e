#pragma once

#include "Command.h"

#include <QtCore/QCommandLineParser>

#include <climits>

/// The options and file names of one command, and its help.
class CommandLine {
public:
    /// `description` is the paragraph below the usage line of the help.
    CommandLine(const Command& command, const QString& description);

    void AddOption(const QCommandLineOption& option) { m_parser.addOption(option); }
    /// --format, for commands that write a picture.
    void AddFormatOption();
    void AddFile(const QString& name, const QString& description);

    /// Throws UsageError if an option is unknown or the number of files is not in the range. False
    /// if there is nothing more to do, as help was asked for and printed.
    bool Parse(const QStringList& arguments, int fewestFiles, int mostFiles = INT_MAX);

    QStringList Files() const { return m_parser.positionalArguments(); }
    bool IsSet(const QString& option) const { return m_parser.isSet(option); }
    QString Value(const QString& option) const { return m_parser.value(option); }

private:
    QString Help() const;

    const Command& m_command;
    QCommandLineParser m_parser;
};

/// Lets all lines of the log through to standard error.
void ShowLog();
