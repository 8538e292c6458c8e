#include "private/RMCMSProfile_p.h"

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

void RMCMSProfile::Private::HandleHolder::Replace(cmsHPROFILE profile) {
    if (handle)
        cmsCloseProfile(handle);
    handle = profile;
}

bool RMCMSProfile::Private::IsEmpty() const {
    return !Handle();
}

cmsHPROFILE RMCMSProfile::Private::Handle() const {
    return holder ? holder->handle : nullptr;
}

bool RMCMSProfile::Private::Load(const char* data, unsigned int size) {
    if (size == 0) {
        holder.reset();
        return true;
    }
    if (holder)
        return holder->Load(data, size);
    const auto fresh = QSharedPointer<HandleHolder>::create();
    if (!fresh->Load(data, size))
        return false;
    holder = fresh;
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
