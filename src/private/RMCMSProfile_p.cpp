#include "private/RMCMSProfile_p.h"

#include "LXFault.h"

#include <QtCore/QFile>

#include <climits>
#include <new>
#include <vector>

namespace {

/// The lines that readers of the log know the steps of a failed copy by.
constexpr int CopySizeLine = 58;
constexpr int CopySaveLine = 69;
constexpr int CopyOpenLine = 76;

using Lock = std::unique_lock<std::recursive_mutex>;

/// Whoever reads the log is free to use profiles.
[[noreturn]] void FailCopy(Lock& lock, int line) {
    lock.unlock();
    LXFault::Trace(LX_SITE_AT(line), QStringLiteral("Could not copy a profile"));
    throw std::bad_alloc();
}

} // namespace

RMCMSProfile::Private::HandleHolder::HandleHolder(const HandleHolder& other) {
    Lock lock(other.mutex);
    if (!other.handle)
        return;
    cmsUInt32Number size = 0;
    if (!cmsSaveProfileToMem(other.handle, nullptr, &size))
        FailCopy(lock, CopySizeLine);
    std::vector<char> bytes(size);
    if (!cmsSaveProfileToMem(other.handle, bytes.data(), &size))
        FailCopy(lock, CopySaveLine);
    handle = cmsOpenProfileFromMem(bytes.data(), size);
    if (!handle)
        FailCopy(lock, CopyOpenLine);
}

RMCMSProfile::Private::HandleHolder::~HandleHolder() {
    Replace(nullptr);
}

bool RMCMSProfile::Private::HandleHolder::Load(const char* data, unsigned int size) {
    cmsHPROFILE profile = nullptr;
    if (size != 0) {
        profile = cmsOpenProfileFromMem(data, size);
        if (!profile)
            return false;
    }
    Replace(profile);
    return true;
}

bool RMCMSProfile::Private::HandleHolder::Load(const QString& path) {
    QFile file(path);
    if (!file.exists() || !file.open(QFile::ReadOnly))
        return false;
    // Of a file that no QByteArray holds nothing is read, and that is no error to QFile.
    const QByteArray bytes = file.readAll();
    if (file.error() != QFile::NoError || !file.atEnd())
        return false;
    return Load(bytes.constData(), unsigned(bytes.size()));
}

void RMCMSProfile::Private::HandleHolder::Replace(cmsHPROFILE profile) {
    if (handle)
        cmsCloseProfile(handle);
    handle = profile;
}

bool RMCMSProfile::Private::IsEmpty() const {
    return !holder || !holder->handle;
}

bool RMCMSProfile::Private::Load(const char* data, unsigned int size) {
    if (size == 0) { // for this copy alone; the others keep the holder
        holder.reset();
        return true;
    }
    return LoadHolder(data, size);
}

bool RMCMSProfile::Private::Load(const QString& path) {
    return LoadHolder(path);
}

/// Loads through the holder that all copies share, or through a new one, which is kept if that
/// succeeds.
template <class... Source>
bool RMCMSProfile::Private::LoadHolder(const Source&... source) {
    const auto loading = holder ? holder : QSharedPointer<HandleHolder>::create();
    if (!loading->Load(source...))
        return false;
    holder = loading;
    return true;
}

int RMCMSProfile::Private::GetMemSize() const {
    if (IsEmpty())
        return 0;
    const Lock lock(holder->mutex);
    cmsUInt32Number needed = 0;
    const bool known = cmsSaveProfileToMem(holder->handle, nullptr, &needed);
    return known && needed <= INT_MAX ? int(needed) : -1;
}

int RMCMSProfile::Private::Save(char* buffer, unsigned int capacity) const {
    if (IsEmpty())
        return 0;
    const Lock lock(holder->mutex);
    const int size = GetMemSize();
    if (size <= 0 || unsigned(size) > capacity)
        return -1;
    cmsUInt32Number needed = cmsUInt32Number(size);
    if (!cmsSaveProfileToMem(holder->handle, buffer, &needed))
        return -1;
    // lcms2 cuts what does not fit, and tells nobody.
    const int written = GetMemSize();
    return written < 0 || written > size ? -1 : size;
}

QByteArray RMCMSProfile::Private::ToByteArray() const {
    if (IsEmpty())
        return {};
    const Lock lock(holder->mutex);
    QByteArray bytes(qMax(GetMemSize(), 0), Qt::Uninitialized);
    bytes.truncate(qMax(Save(bytes.data(), unsigned(bytes.size())), 0));
    return bytes;
}
