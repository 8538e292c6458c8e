#pragma once

#include "Interrupt.h"
#include "LXAdjustmentProcessing.h"
#include "Progress.h"

/// Stands beside filters that run on this thread: a bar follows their signals, and when the user
/// asks to stop they are told.
class FilterWatch {
public:
    explicit FilterWatch(const QString& label) : m_progress(label, 0) {}
    FilterWatch(const FilterWatch&) = delete;
    FilterWatch& operator=(const FilterWatch&) = delete;

    /// Runs a filter of the class. Throws Interrupted, after it has ended, if it was stopped.
    template <class Processing, class Data, class... Caches>
    auto Run(const Data& data, Caches&... caches) {
        Processing filter(m_lock, m_stop, caches...);
        Follow(filter);
        auto result = filter.run(data);
        StopIfInterrupted();
        return result;
    }
    /// The same of a filter's runEx.
    template <class Processing, class Data>
    auto RunEx(const Data& data) {
        Processing filter(m_lock, m_stop);
        Follow(filter);
        auto result = filter.runEx(data);
        StopIfInterrupted();
        return result;
    }

private:
    void Follow(const LXAdjustmentProcessing& filter) {
        using Processing = LXAdjustmentProcessing;
        QObject::connect(&filter, &Processing::RangeChanged, [this](int minimum, int maximum) {
            m_progress.SetRange(minimum, maximum);
        });
        QObject::connect(&filter, &Processing::ProgressChanged, [this](int value) {
            m_progress.SetValue(value);
            if (StopRequested())
                Stop();
        });
    }
    void Stop() {
        const QWriteLocker locker(&m_lock);
        m_stop = true;
    }

    Progress m_progress;
    QReadWriteLock m_lock;
    bool m_stop = false;
};
