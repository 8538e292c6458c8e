#include "private/RMCMSProfile_p.h"

#include "LXFault.h"

#include <QtCore/QFile>

#include <new>
#include <vector>

namespace {

/// The lines that readers of the log know the steps of a failed copy by.
constexpr int CopySizeLine = 58;
constexpr int CopySaveLine = 69;
constexpr int CopyOpenLine = 76;

[[noreturn]] void FailCopy(int line) {
    LXFault::Trace(LX_SITE_AT(line), QStringLiteral("Could not copy a profile"));
    throw std::bad_alloc();
}

} // namespace

RMCMSProfile::Private::HandleHolder::HandleHolder(const HandleHolder& other) {
    if (!other.handle)
        return;
    cmsUInt32Number size = 0;
    if (!cmsSaveProfileToMem(other.handle, nullptr, &size))
        FailCopy(CopySizeLine);
    std::vector<char> bytes(size);
    if (!cmsSaveProfileToMem(other.handle, bytes.data(), &size))
        FailCopy(CopySaveLine);
    handle = cmsOpenProfileFromMem(bytes.data(), size);
    if (!handle)
        FailCopy(CopyOpenLine);
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
    const QByteArray bytes = file.readAll();
    if (bytes.isEmpty() && file.error() != QFile::NoError)
        return false;
    return Load(bytes.constData(), unsigned(bytes.size()));
}

void RMCMSProfile::Private::HandleHolder::Replace(cmsHPROFILE profile) {
    if (handle)
        cmsCloseProfile(handle);
    handle = profile;
}

cmsHPROFILE RMCMSProfile::Private::HandleOf(const RMCMSProfile& profile) {
    return profile.m_p ? profile.m_p->Handle() : nullptr;
}

bool RMCMSProfile::Private::IsEmpty() const {
    return !Handle();
}

cmsHPROFILE RMCMSProfile::Private::Handle() const {
    return holder ? holder->handle : nullptr;
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
    cmsUInt32Number needed = 0;
    return cmsSaveProfileToMem(Handle(), nullptr, &needed) ? int(needed) : -1;
}

int RMCMSProfile::Private::Save(char* buffer, unsigned int capacity) const {
    const int size = GetMemSize();
    if (size <= 0)
        return size;
    cmsUInt32Number needed = cmsUInt32Number(size);
    if (needed > capacity || !cmsSaveProfileToMem(Handle(), buffer, &needed))
        return -1;
    return int(needed);
}
