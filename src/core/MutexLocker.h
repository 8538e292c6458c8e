#pragma once

#include <QtCore/QMutex>

#if defined(__SANITIZE_THREAD__)
#include <sanitizer/tsan_interface.h>
#endif

/// Holds a QMutex for a scope.
///
/// The contended path of QMutex runs inside Qt, which is not built for ThreadSanitizer, so that
/// tool would not see who hands the lock to whom; here it is told.
class MutexLocker {
public:
    explicit MutexLocker(QMutex& mutex) : m_mutex(mutex) {
        m_mutex.lock();
#if defined(__SANITIZE_THREAD__)
        __tsan_acquire(&m_mutex);
#endif
    }
    ~MutexLocker() {
#if defined(__SANITIZE_THREAD__)
        __tsan_release(&m_mutex);
#endif
        m_mutex.unlock();
    }
    MutexLocker(const MutexLocker&) = delete;
    MutexLocker& operator=(const MutexLocker&) = delete;

private:
    QMutex& m_mutex;
};
