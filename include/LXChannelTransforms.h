#pragma once

#include "LXColorTransformBase.h"

/// Small transforms that show channels. None of them has a way back: Invert does nothing.

/// Shows alpha as an opaque gray. One pixel alone, as LXRGBA32i&, is left as it is on purpose: a
/// stack that is driven pixel by pixel does not run this transform.
class LIBIMAGE_EXPORT LXTCGrayscaleFromRGBA32iAlpha : public LXColorTransformBase {
public:
    using LXColorTransformBase::operator();
    using LXColorTransformBase::Invert;

    /// Whatever 32 bits a pixel are; a picture of fewer is left as it is.
    void operator()(QImage& image) const override;
    /// Whole tiles, also what lies outside the image.
    void operator()(LXImageRGBA32i& image) const override;
    /// `size` is in bytes; null does nothing.
    void operator()(void* pixels, unsigned int size) const override;
    void Invert(void* pixels, unsigned int size) const override;

    /// One pixel as 0xAARRGGBB.
    void operator()(unsigned int& pixel) const;
};

/// Hides a colour channel or shows one as gray. Alpha stays. Must not be set while it is used.
class LIBIMAGE_EXPORT LXRGBChannelFilter : public LXColorTransformBase {
public:
    /// Any other value leaves pixels as they are.
    enum RGBFilter : int {
        ShowAll,  ///< nothing is done, and shared tiles stay shared
        HideBlue, ///< the channel is 0
        HideGreen,
        HideRed,
        RedAsGray, ///< the channel is copied into the two others
        GreenAsGray,
        BlueAsGray
    };

    explicit LXRGBChannelFilter(RGBFilter filter = ShowAll);
    LXRGBChannelFilter(const LXRGBChannelFilter& other);
    LXRGBChannelFilter& operator=(const LXRGBChannelFilter& other);

    void SetChannelFilter(RGBFilter filter);
    RGBFilter GetChannelFilter() const;

    using LXColorTransformBase::operator();
    using LXColorTransformBase::Invert;
    void operator()(LXRGBA32i& pixel) const override;
    /// Whatever 32 bits a pixel are; a picture of fewer is left as it is.
    void operator()(QImage& image) const override;
    /// Whole tiles, also what lies outside the image.
    void operator()(LXImageRGBA32i& image) const override;
    /// `size` is in bytes; null does nothing.
    void operator()(void* pixels, unsigned int size) const override;
    void Invert(void* pixels, unsigned int size) const override;

private:
    RGBFilter m_filter;
};

/// Gray by (16 G + 11 R + 5 B) / 32, truncated. Alpha stays.
class LIBIMAGE_EXPORT LXToGrayScaleImage {
public:
    /// The pixels of the image; those outside it stay.
    void operator()(LXImageRGBA32i& image) const;
    /// The image is converted to Format_ARGB32 first, whatever its format.
    void operator()(QImage& image) const;
};
