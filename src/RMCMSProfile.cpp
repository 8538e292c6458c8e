#include "RMCMSProfile.h"

#include "LXFault.h"
#include "private/RMCMSProfile_p.h"

#include <QtCore/QFile>

#include <utility>

namespace {

/// The lines that readers of the log know GetInfo's two failures by.
constexpr int InfoSizeLine = 127;
constexpr int InfoTextLine = 132;

} // namespace

RMCMSProfile::RMCMSProfile() : m_p(new Private) {}

RMCMSProfile::RMCMSProfile(const RMCMSProfile& other)
    : m_p(other.m_p ? new Private(*other.m_p) : new Private) {}

RMCMSProfile& RMCMSProfile::operator=(const RMCMSProfile& other) {
    return *this = RMCMSProfile(other);
}

RMCMSProfile::RMCMSProfile(RMCMSProfile&&) noexcept = default;
RMCMSProfile& RMCMSProfile::operator=(RMCMSProfile&&) noexcept = default;
RMCMSProfile::~RMCMSProfile() = default;

bool RMCMSProfile::IsEmpty() const {
    return !m_p || m_p->IsEmpty();
}

bool RMCMSProfile::Load(const char* data, int size) {
    if (size < 0)
        return false;
    if (!m_p)
        m_p.reset(new Private);
    return m_p->Load(data, unsigned(size));
}

bool RMCMSProfile::Load(const QString& path) {
    if (!m_p)
        m_p.reset(new Private);
    return m_p->Load(path);
}

bool RMCMSProfile::FromByteArray(const QByteArray& bytes) {
    return Load(bytes.constData(), bytes.size());
}

int RMCMSProfile::Save(char* buffer, int capacity) const {
    return IsEmpty() ? 0 : m_p->Save(buffer, unsigned(qMax(capacity, 0)));
}

QByteArray RMCMSProfile::ToByteArray() const {
    return IsEmpty() ? QByteArray() : m_p->ToByteArray();
}

int RMCMSProfile::GetMemSize() const {
    return IsEmpty() ? 0 : m_p->GetMemSize();
}

bool RMCMSProfile::Save(const QString& path) const {
    const QByteArray bytes = ToByteArray();
    if (bytes.isEmpty())
        return false;
    QFile file(path);
    return file.open(QFile::WriteOnly | QFile::Truncate) && file.write(bytes) == bytes.size() &&
           file.flush();
}

quint32 RMCMSProfile::GetColorSpace() const {
    if (IsEmpty())
        return 0;
    const Private::HandleHolder& holder = Private::HolderOf(*this);
    const std::lock_guard<std::recursive_mutex> lock(holder.mutex);
    return quint32(cmsGetColorSpace(holder.handle));
}

QString RMCMSProfile::GetInfo() const {
    if (IsEmpty())
        return {};
    const Private::HandleHolder& holder = Private::HolderOf(*this);
    std::unique_lock<std::recursive_mutex> lock(holder.mutex);
    const auto fail = [&lock](int line) {
        lock.unlock(); // whoever reads the log is free to use profiles
        LXFault::Trace(LX_SITE_AT(line), QStringLiteral("Read profile info error."));
        return QString();
    };
    const auto read = [&holder](char* buffer, cmsUInt32Number size) {
        return cmsGetProfileInfoASCII(holder.handle, cmsInfoDescription, cmsNoLanguage,
                                      cmsNoCountry, buffer, size);
    };
    const cmsUInt32Number size = read(nullptr, 0);
    if (size == 0)
        return fail(InfoSizeLine);
    QByteArray text(int(size), '\0');
    const cmsUInt32Number length = read(text.data(), size);
    if (length == 0)
        return fail(InfoTextLine);
    return QString::fromLatin1(text.constData(), int(length));
}

bool RMCMSProfile::operator==(const RMCMSProfile& other) const {
    return this == &other || GetInfo() == other.GetInfo();
}
