#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QString>

/// All bytes of the file, of standard input for "-". Throws Failure, and Interrupted also while it
/// waits for the other end of a pipe.
QByteArray ReadBytes(const QString& path);

/// Makes the bytes the content of the file, or sends them to standard output for "-", or to the
/// device or pipe of that name. A file has either its old content or all of the new.
void WriteBytes(const QString& path, const QByteArray& bytes);

/// Sends text to standard output.
void Print(const QString& text);

/// The name to call the file in messages.
QString InputName(const QString& path);
QString OutputName(const QString& path);
