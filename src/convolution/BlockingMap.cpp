#include "LXBlockingMap.h"

#include <QtConcurrent/QtConcurrentMap>
#include <QtCore/QThreadPool>

#include <algorithm>

/// The one place that knows Qt Concurrent. It is compiled without ThreadSanitizer: the templates of
/// Qt use locks of Qt's library, which it cannot see, so that it would report Qt's own state.

std::vector<LXIndexRun> LXIndexRuns(int count, int shortest) {
    constexpr int runsOfAThread = 4;
    const int threads = std::max(QThreadPool::globalInstance()->maxThreadCount(), 1);
    const int length = std::max(shortest, count / (runsOfAThread * threads) + 1);
    std::vector<LXIndexRun> runs;
    for (int first = 0, last = 0; last < count; first = last) {
        last = count - first > length ? first + length : count;
        runs.push_back({first, last});
    }
    return runs;
}

void LXMapDetail::BlockingMap(std::vector<LXIndexRun>& runs, const RunFunction& function) {
    QtConcurrent::blockingMap(
        runs, [&function](const LXIndexRun& run) { function.call(function.functor, run); });
}
