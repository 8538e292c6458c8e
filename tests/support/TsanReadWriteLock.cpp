/// QReadWriteLock works inside Qt, which is not built for ThreadSanitizer, so that tool would not
/// see who hands the lock to whom; here it is told. These functions come before those of Qt, and
/// call them.
#if defined(__SANITIZE_THREAD__)

#include <QtCore/QReadWriteLock>

#include <sanitizer/tsan_interface.h>

#include <dlfcn.h>

namespace {

template <class Function>
Function* InQt(const char* name) {
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

bool Acquired(QReadWriteLock* lock, bool taken) {
    if (taken)
        __tsan_acquire(lock);
    return taken;
}

} // namespace

void QReadWriteLock::lockForRead() {
    static const auto inQt = InQt<void(QReadWriteLock*)>("_ZN14QReadWriteLock11lockForReadEv");
    inQt(this);
    Acquired(this, true);
}

void QReadWriteLock::lockForWrite() {
    static const auto inQt = InQt<void(QReadWriteLock*)>("_ZN14QReadWriteLock12lockForWriteEv");
    inQt(this);
    Acquired(this, true);
}

bool QReadWriteLock::tryLockForWrite() {
    static const auto inQt = InQt<bool(QReadWriteLock*)>("_ZN14QReadWriteLock15tryLockForWriteEv");
    return Acquired(this, inQt(this));
}

bool QReadWriteLock::tryLockForWrite(int timeout) {
    static const auto inQt =
        InQt<bool(QReadWriteLock*, int)>("_ZN14QReadWriteLock15tryLockForWriteEi");
    return Acquired(this, inQt(this, timeout));
}

void QReadWriteLock::unlock() {
    static const auto inQt = InQt<void(QReadWriteLock*)>("_ZN14QReadWriteLock6unlockEv");
    __tsan_release(this);
    inQt(this);
}

#endif
