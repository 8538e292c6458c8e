#include "LXChannelTransforms.h"
#include "LXTransformImageColors.h"
#include "color/frame/GrayRows.h"

namespace {

/// For the walks, a row at a time.
struct ToGray {
    void operator()(LXRGBA32i& pixel) const { LXRows::ToGray(&pixel, 1); }
    void TransformRun(LXRGBA32i* pixels, unsigned int count) const {
        LXRows::ToGray(pixels, count);
    }
};

} // namespace

void LXToGrayScaleImage::operator()(LXImageRGBA32i& image) const {
    LXTransformImageColors<LXImageRGBA32i, ToGray>()(image, LXImageRect(image), ToGray());
}

// Converted whatever the format is: what was premultiplied is so no longer when gray is taken.
void LXToGrayScaleImage::operator()(QImage& image) const {
    image = LXWalkDetail::AsARGB32(image);
    LXTransformImageColors<QImage, ToGray>()(image, image.rect(), ToGray());
}
