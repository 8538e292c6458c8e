#include "support/FaultyCMS.h"

#include <QtCore/qglobal.h>

#include <dlfcn.h>
#include <lcms2.h>
#include <mutex>
#include <set>
#include <vector>

namespace {

std::mutex mutex; // of the handles
std::set<void*> handles;
std::vector<unsigned int> answers; // the next one last
int callsLeft = 0;
bool failed = false;

bool Fails() {
    const bool now = callsLeft > 0 && --callsLeft == 0;
    if (now)
        failed = true;
    return now;
}

/// Notes what was opened; null was not.
void* Opened(void* handle) {
    const std::lock_guard<std::mutex> lock(mutex);
    if (handle)
        handles.insert(handle);
    return handle;
}

void Closed(void* handle) {
    const std::lock_guard<std::mutex> lock(mutex);
    handles.erase(handle);
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
    Closed(profile);
    return REAL(cmsCloseProfile, profile);
}

Q_DECL_EXPORT cmsBool cmsSaveProfileToMem(cmsHPROFILE profile, void* out, cmsUInt32Number* size) {
    if (!out && !answers.empty()) {
        *size = answers.back();
        answers.pop_back();
        return 1;
    }
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
    Closed(transform);
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

void FaultyCMS::AnswerSizes(std::initializer_list<unsigned int> sizes) {
    answers.assign(std::rbegin(sizes), std::rend(sizes));
}

int FaultyCMS::OpenHandles() {
    return int(handles.size());
}
