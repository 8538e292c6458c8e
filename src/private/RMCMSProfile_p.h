#pragma once

#include "RMCMSProfile.h"

#include <QtCore/QSharedPointer>

#include <lcms2.h>

#include <mutex>

class RMCMSProfile::Private {
public:
    class HandleHolder;

    /// The holder of a profile that is not empty.
    static const HandleHolder& HolderOf(const RMCMSProfile& profile) {
        return *profile.m_p->holder;
    }

    bool IsEmpty() const;
    bool Load(const char* data, unsigned int size);
    bool Load(const QString& path);
    int Save(char* buffer, unsigned int capacity) const;
    QByteArray ToByteArray() const;
    int GetMemSize() const;

    QSharedPointer<HandleHolder> holder; // shared by all copies of the profile; null when empty

private:
    template <class... Source>
    bool LoadHolder(const Source&... source);
};

/// Owns one lcms2 profile.
///
/// lcms2 parses a tag when it is first asked for, keeps it, and from then on saves it in its own
/// words. So whoever reads a profile changes it: all but loading takes the mutex first.
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
    /// Recursive, as ToByteArray holds it over its steps, and a transform may join a profile to
    /// itself.
    mutable std::recursive_mutex mutex;

private:
    void Replace(cmsHPROFILE profile);
};
