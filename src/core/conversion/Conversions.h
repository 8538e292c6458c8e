#pragma once

#include "LXConvertImage.h"

/// The conversions behind ConvertImage, without its guard.
namespace LXConversions {

QImage ToQImage(const LXImageRGBA32i& source);
LXImageRGBA32i FromQImage(const QImage& source);
LXImageRGBA32i FromRaw(const RGB32iRawImage& source);

/// From 128 x 128 tiles to 128 x 64 ones.
LXImageRGBA64i ToWide(const LXImageRGBA32i& source);
LXImageRGBA64f ToHalf(const LXImageRGBA32i& source);
LXImageCMYKA ToCMYK(const LXImageRGBA32i& source);
LXImageHSLA ToHSL(const LXImageRGBA32i& source);

/// And back.
LXImageRGBA32i FromWide(const LXImageRGBA64i& source);
LXImageRGBA32i FromHalf(const LXImageRGBA64f& source);
LXImageRGBA32i FromCMYK(const LXImageCMYKA& source);
LXImageRGBA32i FromHSL(const LXImageHSLA& source);
QImage CMYKToQImage(const LXImageCMYKA& source);

/// A QImage in Format_ARGB32 of the size of the image, not filled. A side of 0 gives a null one;
/// throws std::bad_alloc if Qt cannot make the picture.
template <class Image>
QImage MakeQImage(const Image& image) {
    QImage made(int(image.GetWidth()), int(image.GetHeight()), QImage::Format_ARGB32);
    if (made.isNull() && image.GetWidth() != 0 && image.GetHeight() != 0)
        throw std::bad_alloc();
    return made;
}

} // namespace LXConversions
