#pragma once

#include "LXAdjustmentProcessing.h"
#include "LXTileSteps.h"
#include "LXTileWalk.h"
#include "LXWorkRect.h"

#include <QtCore/QReadLocker>

#include <algorithm>
#include <functional>
#include <limits>
#include <utility>
#include <vector>

/// A run of a filter as a list of stages, which is worked off step by step: progress after each, a
/// look at the cancel flag before each, and no lock held during one.
class LXFilterRun {
public:
    /// All three outlive the object.
    LXFilterRun(LXAdjustmentProcessing& progress, QReadWriteLock& cancelLock,
                const bool& cancelFlag)
        : m_progress(progress), m_cancelLock(cancelLock), m_cancelFlag(cancelFlag) {}
    LXFilterRun(const LXFilterRun&) = delete;
    LXFilterRun& operator=(const LXFilterRun&) = delete;

    /// A stage of `steps` steps. Its step object is made by make() when its turn has come, so that
    /// it sees what the stages before it have done.
    template <class Make>
    void Add(int steps, Make make) {
        const int base = m_steps;
        m_steps = int(std::min<qint64>(qint64(m_steps) + steps, std::numeric_limits<int>::max()));
        m_stages.push_back([this, base, steps, make] {
            if (steps <= 0 || IsCancelled())
                return;
            auto step = make();
            for (int i = 1; i <= steps; ++i) {
                if (i > 1 && IsCancelled())
                    return;
                step();
                m_progress.SetProgressValue(base + i);
            }
        });
    }

    /// Something between two stages that is no step, and is left out of a cancelled run.
    template <class Action>
    void AddAction(Action action) {
        m_stages.push_back([this, action] {
            if (!IsCancelled())
                action();
        });
    }

    int Steps() const { return m_steps; }

    /// All stages, with the range up to their sum.
    void Run() {
        m_progress.SetRange(0, m_steps);
        RunStages();
    }
    /// The same with a range that the caller has set.
    void RunStages() {
        for (const auto& stage : m_stages)
            stage();
    }

private:
    bool IsCancelled() const {
        const QReadLocker locker(&m_cancelLock);
        return m_cancelFlag;
    }

    LXAdjustmentProcessing& m_progress;
    QReadWriteLock& m_cancelLock;
    const bool& m_cancelFlag;
    std::vector<std::function<void()>> m_stages;
    int m_steps = 0;
};

/// The steps that a rectangle takes, by the rules of the step objects. A whole image counts by its
/// height or width, also if it has no pixels: the steps find nothing to do then.
namespace LXStepCount {

inline int Lines(const LXImageRGBA32i& image, const QRect& rect) {
    return rect.isNull() ? int(image.GetHeight()) : LXClipped(rect, LXImageRect(image)).height();
}
inline int Columns(const LXImageRGBA32i& image, const QRect& rect) {
    return rect.isNull() ? int(image.GetWidth()) : LXClipped(rect, LXImageRect(image)).width();
}
inline int Tiles(const LXImageRGBA32i& image, const QRect& rect) {
    return LXTileSteps<LXImageRGBA32i>::GetTileCount(image, rect);
}

} // namespace LXStepCount
