#include "support/FaultyCMS.h"

#include <QtCore/qglobal.h>

#include <dlfcn.h>
#include <lcms2.h>
#include <set>

namespace {

std::set<void*> handles;
int callsLeft = 0;
bool failed = false;

bool Fails() {
    const bool now = callsLeft > 0 && --callsLeft == 0;
    failed |= now;
    return now;
}

/// Notes what was opened; null was not.
void* Opened(void* handle) {
    if (handle)
        handles.insert(handle);
    return handle;
}

} // namespace

/// Calls the function of lcms2 that the one of the same name here hides.
#define REAL(function, ...)                                                                        \
    reinterpret_cast<decltype(&function)>(dlsym(RTLD_NEXT, #function))(__VA_ARGS__)

extern "C" {

Q_DECL_EXPORT cmsHPROFILE cmsOpenProfileFromMem(const void* data, cmsUInt32Number size) {
    return Fails() ? nullptr : Opened(REAL(cmsOpenProfileFromMem, data, size));
}

Q_DECL_EXPORT cmsBool cmsCloseProfile(cmsHPROFILE profile) {
    handles.erase(profile);
    return REAL(cmsCloseProfile, profile);
}

Q_DECL_EXPORT cmsBool cmsSaveProfileToMem(cmsHPROFILE profile, void* out, cmsUInt32Number* size) {
    return Fails() ? 0 : REAL(cmsSaveProfileToMem, profile, out, size);
}

Q_DECL_EXPORT cmsUInt32Number cmsGetProfileInfoASCII(cmsHPROFILE profile, cmsInfoType info,
                                                     const char language[3], const char country[3],
                                                     char* out, cmsUInt32Number size) {
    return Fails() ? 0 : REAL(cmsGetProfileInfoASCII, profile, info, language, country, out, size);
}

Q_DECL_EXPORT cmsHTRANSFORM cmsCreateTransform(cmsHPROFILE from, cmsUInt32Number fromFormat,
                                               cmsHPROFILE to, cmsUInt32Number toFormat,
                                               cmsUInt32Number intent, cmsUInt32Number flags) {
    return Fails()
               ? nullptr
               : Opened(REAL(cmsCreateTransform, from, fromFormat, to, toFormat, intent, flags));
}

Q_DECL_EXPORT void cmsDeleteTransform(cmsHTRANSFORM transform) {
    handles.erase(transform);
    REAL(cmsDeleteTransform, transform);
}

} // extern "C"

void FaultyCMS::FailAt(int call) {
    callsLeft = call;
    failed = false;
}

bool FaultyCMS::HasFailed() {
    return failed;
}

int FaultyCMS::OpenHandles() {
    return int(handles.size());
}
