#pragma once

#include "LXExport.h"

#include <QtCore/QByteArray>
#include <QtCore/QString>

#include <memory>

/// One ICC profile, or none.
///
/// Copies share the profile, and the last one closes it. Several threads may read a profile and its
/// copies, one waiting for the other; none may load into one of them meanwhile.
class LIBIMAGE_EXPORT RMCMSProfile {
public:
    class Q_DECL_HIDDEN Private; // of the library alone

    RMCMSProfile();
    RMCMSProfile(const RMCMSProfile& other);
    RMCMSProfile& operator=(const RMCMSProfile& other);
    RMCMSProfile(RMCMSProfile&& other) noexcept;
    RMCMSProfile& operator=(RMCMSProfile&& other) noexcept;
    ~RMCMSProfile();

    /// True if there is no profile.
    bool IsEmpty() const;

    /// Takes the profile from its ICC bytes, which are not kept; all copies of this profile see
    /// the new one. Size 0 makes this copy alone empty. A profile made so, or never loaded, shares
    /// nothing with copies taken of it. False if the bytes are no profile, and the old profile
    /// stays.
    bool Load(const char* data, int size);
    /// The same; an empty array is size 0.
    bool FromByteArray(const QByteArray& bytes);
    /// The same from a file; false as well if it cannot be read whole, or is of 2 GiB or more. An
    /// empty file is an empty profile, and unlike size 0 above it makes the copies empty too.
    bool Load(const QString& path);

    // A profile that is in use, also for reading it only, is saved as it was understood. So its
    // bytes may differ from those loaded, and their count may have grown since it was asked for.

    /// Writes the ICC bytes. Returns their count, and 0 for an empty profile; -1, with nothing
    /// written, if they exceed `capacity`, and -1 if they cannot be made, with a part written if
    /// that comes out midway. A null buffer of enough capacity gets nothing, and the count is
    /// returned all the same.
    int Save(char* buffer, int capacity) const;
    /// The ICC bytes; none for an empty profile.
    QByteArray ToByteArray() const;
    /// What Save would write by now: 0 for an empty profile, -1 for a failure or above INT_MAX.
    int GetMemSize() const;
    /// Makes the ICC bytes the content of a file. False, and no file made, for an empty profile or
    /// one whose bytes cannot be made; false also if not all of them could be written, and the old
    /// content of the file is gone then.
    bool Save(const QString& path) const;

    /// The ICC signature of the profile's colour space, as 0x52474220 ("RGB "); 0 for an empty one.
    quint32 GetColorSpace() const;
    /// The description of the profile, with the terminating zero as its last character; an empty
    /// string for an empty profile or, logged, for one without a description.
    QString GetInfo() const;

    /// Equal descriptions, and nothing else, make equal profiles: so profiles of different content
    /// may be equal, as are all without a description, empty or not.
    bool operator==(const RMCMSProfile& other) const;
    bool operator!=(const RMCMSProfile& other) const { return !(*this == other); }

private:
    std::unique_ptr<Private> m_p; // null only after a move, and that is an empty profile
};
