#pragma once

#include "RMCMSProfile.h"

#include <QtCore/QSharedPointer>

#include <lcms2.h>

class RMCMSProfile::Private {
public:
    class HandleHolder;

    /// The lcms2 profile of any profile, null for an empty one.
    static cmsHPROFILE HandleOf(const RMCMSProfile& profile);

    bool IsEmpty() const;
    cmsHPROFILE Handle() const;
    bool Load(const char* data, unsigned int size);
    bool Load(const QString& path);
    int Save(char* buffer, unsigned int capacity) const;
    int GetMemSize() const;

    QSharedPointer<HandleHolder> holder; // shared by all copies of the profile; null when empty

private:
    template <class... Source>
    bool LoadHolder(const Source&... source);
};

/// Owns one lcms2 profile.
class RMCMSProfile::Private::HandleHolder {
public:
    HandleHolder() = default;
    ~HandleHolder();
    /// A second profile of the same content. Throws std::bad_alloc, logged, if lcms2 cannot make
    /// it.
    HandleHolder(const HandleHolder& other);
    HandleHolder& operator=(const HandleHolder&) = delete;

    /// Size 0 closes the profile; bytes that are none leave it as it was.
    bool Load(const char* data, unsigned int size);
    /// The same with what the file holds; false if it cannot be read.
    bool Load(const QString& path);

    cmsHPROFILE handle = nullptr;

private:
    void Replace(cmsHPROFILE profile);
};
