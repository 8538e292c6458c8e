#include "RMCMSTransform.h"

#include "private/RMCMSProfile_p.h"

#include <QtGui/QColor>

class RMCMSTransform::Private {
public:
    Private() = default;
    Private(const RMCMSProfile& from, const RMCMSProfile& to)
        : source(from), target(to), transform(CreateTransform()) {}
    Private(const Private& other) : Private(other.source, other.target) {}

    struct Deleter {
        void operator()(cmsHTRANSFORM handle) const { cmsDeleteTransform(handle); }
    };
    using Transform = std::unique_ptr<std::remove_pointer_t<cmsHTRANSFORM>, Deleter>;

    const RMCMSProfile source;
    const RMCMSProfile target;
    const Transform transform; // null for an empty one

private:
    Transform CreateTransform() const;
};

RMCMSTransform::Private::Transform RMCMSTransform::Private::CreateTransform() const {
    if (source.GetColorSpace() != target.GetColorSpace() ||
        source.GetColorSpace() != cmsSigRgbData || source == target)
        return {};
    const auto& from = RMCMSProfile::Private::HolderOf(source);
    const auto& to = RMCMSProfile::Private::HolderOf(target);
    const std::scoped_lock lock(from.mutex, to.mutex);
    return Transform(
        cmsCreateTransform(from.handle, TYPE_BGRA_8, to.handle, TYPE_BGRA_8, INTENT_PERCEPTUAL, 0));
}

RMCMSTransform::RMCMSTransform() : m_p(new Private) {}

RMCMSTransform::RMCMSTransform(const RMCMSProfile& source, const RMCMSProfile& target)
    : m_p(new Private(source, target)) {}

RMCMSTransform::RMCMSTransform(const RMCMSTransform& other) : m_p(new Private(*other.m_p)) {}

RMCMSTransform& RMCMSTransform::operator=(const RMCMSTransform& other) {
    m_p.reset(new Private(*other.m_p));
    return *this;
}

RMCMSTransform::~RMCMSTransform() = default;

bool RMCMSTransform::IsEmpty() const {
    return !m_p->transform;
}

void RMCMSTransform::operator()(LXRGBA32i& pixel) const {
    TransformRun(&pixel, 1);
}

void RMCMSTransform::operator()(QColor& colour) const {
    if (IsEmpty())
        return;
    QRgb rgba = colour.rgba();
    cmsDoTransform(m_p->transform.get(), &rgba, &rgba, 1);
    colour.setRgba(rgba);
}

void RMCMSTransform::TransformRun(LXRGBA32i* pixels, unsigned int count) const {
    if (!IsEmpty())
        cmsDoTransform(m_p->transform.get(), pixels, pixels, count);
}
