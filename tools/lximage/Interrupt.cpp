#include "Interrupt.h"

#include "Failure.h"

#include <csignal>

static volatile std::sig_atomic_t stop = 0;

static void RequestStop(int) {
    stop = 1;
}

void CatchInterrupts() {
    // Without SA_RESTART, so that a read or write that waits for the other end returns.
    struct sigaction action = {};
    action.sa_handler = RequestStop;
    sigemptyset(&action.sa_mask);
    sigaction(SIGINT, &action, nullptr);
    sigaction(SIGTERM, &action, nullptr);
}

bool StopRequested() {
    return stop != 0;
}

bool TakeStopRequest() {
    const bool requested = StopRequested();
    if (requested)
        stop = 0;
    return requested;
}

void StopIfInterrupted() {
    if (StopRequested())
        throw Interrupted{};
}
