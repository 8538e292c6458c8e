#pragma once

#include "LXColorTransformBase.h"
#include "RMCMSTransform.h"

/// A pair of profile transforms as a run-time transform: there by operator(), back by Invert. It
/// serves single LXRGBA32i pixels and both kinds of images; an empty transform leaves an image
/// untouched, its format too.
///
/// The buffer operations do nothing. So in an LXColorTransformStack it acts on a QImage and on a
/// pixel, and not on a tiled image, which a stack goes through by buffers.
class LIBIMAGE_EXPORT LXRGBA32ColorProfileTransform : public LXColorTransformBase {
public:
    /// Two empty transforms.
    LXRGBA32ColorProfileTransform() = default;
    LXRGBA32ColorProfileTransform(const RMCMSProfile& from, const RMCMSProfile& to);

    using LXColorTransformBase::operator();
    using LXColorTransformBase::Invert;
    void operator()(LXRGBA32i& pixel) const override;
    void operator()(QImage& image) const override;
    void operator()(LXImageRGBA32i& image) const override;
    void Invert(LXRGBA32i& pixel) const override;
    void Invert(QImage& image) const override;
    void Invert(LXImageRGBA32i& image) const override;
    void operator()(void* pixels, unsigned int size) const override;
    void Invert(void* pixels, unsigned int size) const override;

private:
    RMCMSTransform m_forward;
    RMCMSTransform m_inverse;
};
