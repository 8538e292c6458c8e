#pragma once

#include "RMCMSProfile.h"

#include <QtCore/QSharedPointer>

#include <lcms2.h>

class RMCMSProfile::Private {
public:
    class HandleHolder;

    bool IsEmpty() const;
    cmsHPROFILE Handle() const;
    bool Load(const char* data, unsigned int size);
    int Save(char* buffer, unsigned int capacity) const;
    int GetMemSize() const;

    QSharedPointer<HandleHolder> holder; // shared by all copies of the profile; null when empty
};

/// Owns one lcms2 profile.
class RMCMSProfile::Private::HandleHolder {
public:
    HandleHolder() = default;
    ~HandleHolder();
    HandleHolder(const HandleHolder&) = delete;
    HandleHolder& operator=(const HandleHolder&) = delete;

    /// Size 0 closes the profile; bytes that are none leave it as it was.
    bool Load(const char* data, unsigned int size);

    cmsHPROFILE handle = nullptr;

private:
    void Replace(cmsHPROFILE profile);
};
