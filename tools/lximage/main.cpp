#include "Command.h"
#include "CommandLine.h"
#include "Failure.h"
#include "Interrupt.h"
#include "RMTileManager64.h"
#include "Streams.h"

#include <QtGui/QGuiApplication>

#include <csignal>
#include <cstdio>
#include <fcntl.h>
#include <new>
#include <sys/mman.h>
#include <unistd.h>

namespace {

enum ExitCode { Success = 0, Failed = 1, WrongUsage = 2 };

bool logShown = false;

void HandleLogLine(QtMsgType type, const QMessageLogContext&, const QString& line) {
    if (logShown || type == QtFatalMsg)
        std::fprintf(stderr, "%s\n", qUtf8Printable(line));
}

/// A standard stream that was closed must not become some other file that is opened later. What
/// stands in for it cannot be used either.
void OccupyStandardStreams() {
    for (const int fd : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
        if (::fcntl(fd, F_GETFD) < 0)
            ::open("/dev/null", fd == STDIN_FILENO ? O_WRONLY : O_RDONLY);
}

/// The memory of all images; images live shorter.
class TilePool {
public:
    TilePool() {
        RequireRoom();
        RMTileManager64::CleanupPageFiles();
        RMTileManager64::InitInstance();
    }
    ~TilePool() { RMTileManager64::ReleaseInstance(); }
    TilePool(const TilePool&) = delete;
    TilePool& operator=(const TilePool&) = delete;

private:
    /// The pool does not notice if there is no address space for it.
    static void RequireRoom() {
        constexpr std::size_t PoolBytes =
            std::size_t(RMTileManager64::InstanceTiles) * RMTileManager64::InstanceBlockSize;
        void* room = ::mmap(nullptr, PoolBytes, PROT_READ | PROT_WRITE, //
                            MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
        if (room == MAP_FAILED)
            throw std::bad_alloc();
        ::munmap(room, PoolBytes);
    }
};

int RunCommand(const QString& name, const QStringList& arguments) {
    const Command& command = FindCommand(name);
    const TilePool pool;
    return command.run(command, arguments);
}

int Run(QStringList arguments) {
    if (arguments.isEmpty())
        throw UsageError{QStringLiteral("a command is missing")};
    const QString first = arguments.takeFirst();
    const bool help = first == QLatin1String("help");
    if (help && !arguments.isEmpty())
        return RunCommand(arguments.first(), {QStringLiteral("--help")});
    if (help || first == QLatin1String("--help") || first == QLatin1String("-h"))
        Print(GeneralHelp());
    else if (first == QLatin1String("--version"))
        Print(QStringLiteral("lximage " LXIMAGE_VERSION "\n"));
    else
        return RunCommand(first, arguments);
    return Success;
}

/// Turns every way in which a command can end into an exit code.
int RunGuarded(int argc, char** argv) {
    try {
        QGuiApplication application(argc, argv);
        return Run(application.arguments().mid(1));
    } catch (const UsageError& error) {
        Complain(error.reason + QStringLiteral("; see lximage --help"));
        return WrongUsage;
    } catch (const Failure& failure) {
        Complain(failure.subject + QStringLiteral(": ") + failure.reason);
    } catch (const Interrupted&) {
        Complain(QStringLiteral("interrupted"));
    } catch (const std::bad_alloc&) {
        Complain(QStringLiteral("out of memory"));
    }
    return Failed;
}

} // namespace

void Complain(const QString& message) {
    std::fprintf(stderr, "lximage: %s\n", qUtf8Printable(message));
}

void ShowLog() {
    logShown = true;
}

int main(int argc, char** argv) {
    OccupyStandardStreams();
    std::signal(SIGPIPE, SIG_IGN); // a broken pipe shows as a write error
    CatchInterrupts();
    // No window is ever opened, so no display is needed.
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    qInstallMessageHandler(HandleLogLine);
    return RunGuarded(argc, argv);
}
