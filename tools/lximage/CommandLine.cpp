#include "CommandLine.h"

#include "Failure.h"
#include "Streams.h"

CommandLine::CommandLine(const Command& command, const QString& description) : m_command(command) {
    m_parser.setApplicationDescription(description);
    m_parser.addOption({{QStringLiteral("h"), QStringLiteral("help")}, //
                        QStringLiteral("Show this help.")});
    m_parser.addOption({QStringLiteral("verbose"), //
                        QStringLiteral("Show the log of the library as well.")});
}

void CommandLine::AddFormatOption() {
    AddOption({QStringLiteral("format"),
               QStringLiteral("Write this file format (png, jpg, tiff, ...) whatever the name of "
                              "OUT says. Standard output is PNG otherwise."),
               QStringLiteral("format")});
}

void CommandLine::AddFile(const QString& name, const QString& description) {
    m_parser.addPositionalArgument(name, description);
}

bool CommandLine::Parse(const QStringList& arguments, int fewestFiles, int mostFiles) {
    // The parser skips the first word, which it takes for the name of the program.
    if (!m_parser.parse(QStringList(QString()) + arguments))
        throw UsageError{m_parser.errorText()};
    if (IsSet(QStringLiteral("help"))) {
        Print(Help());
        return false;
    }
    const int files = Files().size();
    if (files < fewestFiles)
        throw UsageError{QStringLiteral("a file name is missing")};
    if (files > mostFiles)
        throw UsageError{QStringLiteral("'%1' is one file name too many").arg(Files()[mostFiles])};
    if (IsSet(QStringLiteral("verbose")))
        ShowLog();
    return true;
}

QString CommandLine::Help() const {
    // The parser's own usage line does not know that the command is part of the call.
    const QString text = m_parser.helpText();
    return QStringLiteral("Usage: lximage %1 %2\n\n")
               .arg(QLatin1String(m_command.name), QLatin1String(m_command.synopsis)) +
           text.mid(text.indexOf(QLatin1Char('\n')) + 1);
}
