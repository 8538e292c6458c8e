#pragma once

#include "LXExport.h"

#include <QtCore/QByteArray>
#include <QtCore/QString>

#include <memory>

/// One ICC profile, or none. Copies share the profile.
class LIBIMAGE_EXPORT RMCMSProfile {
public:
    RMCMSProfile();
    RMCMSProfile(const RMCMSProfile& other);
    RMCMSProfile& operator=(const RMCMSProfile& other);
    RMCMSProfile(RMCMSProfile&& other) noexcept;
    RMCMSProfile& operator=(RMCMSProfile&& other) noexcept;
    ~RMCMSProfile();

    /// True if there is no profile.
    bool IsEmpty() const;

    /// Takes the profile from its ICC bytes, which are not kept; all copies of this profile see
    /// the new one. Size 0 makes this copy alone empty. False if the bytes are no profile, and the
    /// old profile stays.
    bool Load(const char* data, int size);
    /// The same; an empty array is size 0.
    bool FromByteArray(const QByteArray& bytes);

    /// Writes the ICC bytes. Returns their count, 0 for an empty profile, and -1, with nothing
    /// written, if they exceed `capacity` or cannot be made.
    int Save(char* buffer, int capacity) const;
    /// The ICC bytes; none for an empty profile.
    QByteArray ToByteArray() const;
    /// What Save would write: 0 for an empty profile, -1 for a failure.
    int GetMemSize() const;

    /// The description of the profile, with the terminating zero as its last character; an empty
    /// string for an empty profile or, logged, for one without a description.
    QString GetInfo() const;

private:
    class Q_DECL_HIDDEN Private;
    std::unique_ptr<Private> m_p; // null only after a move, and that is an empty profile
};
