#pragma once

#include "LXImage.h"

/// Whole-image pixel jobs behind the functions of LXImagePainter.h.
namespace LXMasks {

/// All pixels `value`.
LXImageRGBA32i Uniform(const LXImageRGBA32i& source, const LXRGBA32i& value);
/// Alpha, and brightness, as alpha. What edge tiles have beyond the image is 0, or opaque black.
LXImageRGBA32i FromAlpha(const LXImageRGBA32i& source);
LXImageRGBA32i FromBrightness(const LXImageRGBA32i& source);

/// Complements the bits of `mask` in all pixels of all tiles.
void Complement(LXImageRGBA32i& image, const LXRGBA32i& mask);

} // namespace LXMasks
