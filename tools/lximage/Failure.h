#pragma once

#include <QtCore/QString>

/// Something went wrong with a file; ends the command with exit code 1.
struct Failure {
    QString subject; ///< the file as the user named it
    QString reason;
};

/// The command line makes no sense; ends the tool with exit code 2.
struct UsageError {
    QString reason;
};

/// The user asked the tool to stop; ends it with exit code 1.
struct Interrupted {};

/// Prints "lximage: message" on standard error.
void Complain(const QString& message);
