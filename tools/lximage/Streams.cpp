#include "Streams.h"

#include "Failure.h"
#include "Interrupt.h"

#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QSaveFile>

#include <cerrno>
#include <climits>
#include <cstring>
#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

namespace {

/// More than any picture file holds, and little enough for the decoders' 32-bit sizes.
constexpr int MaxInputBytes = 1 << 30;
constexpr char Standard[] = "-";

/// An open file; closed at the end, unless it is a standard stream.
class Descriptor {
public:
    Descriptor(const QString& path, int standard, int flags)
        : m_borrowed(path == QLatin1String(Standard)),
          m_fd(m_borrowed ? standard : ::open(QFile::encodeName(path), flags | O_CLOEXEC)) {}
    ~Descriptor() {
        if (!m_borrowed && m_fd >= 0)
            ::close(m_fd);
    }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;

    int Get() const { return m_fd; }

private:
    const bool m_borrowed;
    const int m_fd;
};

[[noreturn]] void FailWithErrno(const QString& name) {
    if (errno == EINTR)
        StopIfInterrupted();
    throw Failure{name, QString::fromLocal8Bit(std::strerror(errno))};
}

/// Waits in short turns: a signal may come just before the system call and would not end it.
void WaitUntilReady(int fd, short events) {
    struct pollfd waiting = {fd, events, 0};
    do
        StopIfInterrupted();
    while (::poll(&waiting, 1, 100) == 0 || (waiting.revents == 0 && errno == EINTR));
}

void WriteAll(int fd, const QString& name, const QByteArray& bytes) {
    int written = 0;
    while (written < bytes.size()) {
        WaitUntilReady(fd, POLLOUT);
        // A pipe that is ready takes this much without blocking.
        const int portion = qMin(bytes.size() - written, PIPE_BUF);
        const ssize_t count = ::write(fd, bytes.constData() + written, size_t(portion));
        if (count < 0 && errno != EINTR && errno != EAGAIN)
            FailWithErrno(name);
        written += int(qMax<ssize_t>(count, 0));
    }
}

void ReplaceFile(const QString& path, const QByteArray& bytes) {
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
        throw Failure{path, file.errorString()};
    StopIfInterrupted();
    if (!file.commit())
        throw Failure{path, file.errorString()};
}

} // namespace

QByteArray ReadBytes(const QString& path) {
    // Opening a pipe that nobody writes to must not block: the waiting is done below.
    const Descriptor file(path, STDIN_FILENO, O_RDONLY | O_NONBLOCK);
    const QString name = InputName(path);
    if (file.Get() < 0)
        FailWithErrno(name);

    QByteArray bytes;
    QByteArray portion(1 << 18, Qt::Uninitialized);
    for (;;) {
        WaitUntilReady(file.Get(), POLLIN);
        const ssize_t count = ::read(file.Get(), portion.data(), size_t(portion.size()));
        if (count < 0 && (errno == EINTR || errno == EAGAIN))
            continue;
        if (count < 0)
            FailWithErrno(name);
        if (count == 0)
            return bytes;
        if (bytes.size() > MaxInputBytes - int(count))
            throw Failure{name, QStringLiteral("larger than 1 GiB")};
        bytes.append(portion.constData(), int(count));
    }
}

void WriteBytes(const QString& path, const QByteArray& bytes) {
    const bool standard = path == QLatin1String(Standard);
    const QFileInfo target(path);
    // Replacing a device or a pipe by a file is never meant.
    if (!standard && (!target.exists() || target.isFile() || target.isDir()))
        return ReplaceFile(path, bytes);
    const Descriptor file(path, STDOUT_FILENO, O_WRONLY);
    if (file.Get() < 0)
        FailWithErrno(path);
    WriteAll(file.Get(), OutputName(path), bytes);
}

void Print(const QString& text) {
    WriteBytes(QLatin1String(Standard), text.toUtf8());
}

QString InputName(const QString& path) {
    return path == QLatin1String(Standard) ? QStringLiteral("standard input") : path;
}

QString OutputName(const QString& path) {
    return path == QLatin1String(Standard) ? QStringLiteral("standard output") : path;
}
