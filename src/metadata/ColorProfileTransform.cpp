#include "LXRGBA32ColorProfileTransform.h"
#include "LXTransformImageColors.h"

namespace {

template <class Image>
void TransformImage(Image& image, const RMCMSTransform& transform) {
    if (!transform.IsEmpty())
        LXTransformImageColors<Image, RMCMSTransform>()(image, LXWalkDetail::RectOf(image),
                                                        transform);
}

} // namespace

LXRGBA32ColorProfileTransform::LXRGBA32ColorProfileTransform(const RMCMSProfile& from,
                                                             const RMCMSProfile& to)
    : m_forward(from, to), m_inverse(to, from) {}

void LXRGBA32ColorProfileTransform::operator()(LXRGBA32i& pixel) const {
    m_forward(pixel);
}

void LXRGBA32ColorProfileTransform::operator()(QImage& image) const {
    TransformImage(image, m_forward);
}

void LXRGBA32ColorProfileTransform::operator()(LXImageRGBA32i& image) const {
    TransformImage(image, m_forward);
}

void LXRGBA32ColorProfileTransform::Invert(LXRGBA32i& pixel) const {
    m_inverse(pixel);
}

void LXRGBA32ColorProfileTransform::Invert(QImage& image) const {
    TransformImage(image, m_inverse);
}

void LXRGBA32ColorProfileTransform::Invert(LXImageRGBA32i& image) const {
    TransformImage(image, m_inverse);
}

// Empty by design: a profile conversion belongs to the picture, and has no effect where a stack
// works through the tiles of an image.
void LXRGBA32ColorProfileTransform::operator()(void*, unsigned int) const {}
void LXRGBA32ColorProfileTransform::Invert(void*, unsigned int) const {}
