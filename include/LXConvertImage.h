#pragma once

#include "LXImage.h"

#include <QtGui/QImage>

/// A raw RGB picture: pixel (x, y) starts at (y * width + x) * bytesPerPixel, and its first three
/// bytes are red, green, blue. The bytes stay the caller's.
struct RGB32iRawImage {
    quint16 height;
    quint16 width;
    quint16 bytesPerPixel; ///< at least 3; further bytes of a pixel are not read
    const unsigned char* data;
};

/// A new picture with the pixels of `source` in the form of `Target`.
///
/// Plain arithmetic on numbers: no colour profile is looked at, and the result has none and no
/// EXIF. The pixels outside the image in edge tiles are converted too, except from a QImage or raw
/// picture. Throws std::bad_alloc, after a log line, if tiles or memory run out.
template <class Source, class Target>
Target ConvertImage(const Source& source);

#define LX_CONVERT(Source, Target)                                                                 \
    template <>                                                                                    \
    LIBIMAGE_EXPORT Target ConvertImage<Source, Target>(const Source& source)

/// Pixel bytes move unchanged. The QImage must be in Format_ARGB32; the format is not checked, and
/// the bytes of the lines of any other are taken for that, into the padding if there are more of
/// them than the image is wide.
LX_CONVERT(LXImageRGBA32i, QImage);
LX_CONVERT(QImage, LXImageRGBA32i);

/// Each channel c becomes c << 8 (255 becomes 0xFF00) and comes back as its high byte: lossless.
LX_CONVERT(LXImageRGBA32i, LXImageRGBA64i);
LX_CONVERT(LXImageRGBA64i, LXImageRGBA32i);

/// MakeHalfFloat and MakeUChar on each channel; 130 of the 256 values come back one lower.
LX_CONVERT(LXImageRGBA32i, LXImageRGBA64f);
LX_CONVERT(LXImageRGBA64f, LXImageRGBA32i);

/// Device CMYK with full black generation. The way back exchanges red and blue, on purpose.
LX_CONVERT(LXImageRGBA32i, LXImageCMYKA);
LX_CONVERT(LXImageCMYKA, LXImageRGBA32i);
LX_CONVERT(LXImageCMYKA, QImage);

/// The hexagonal HSL model; the hue is rounded to a hundredth of a degree.
LX_CONVERT(LXImageRGBA32i, LXImageHSLA);
LX_CONVERT(LXImageHSLA, LXImageRGBA32i);

/// Opaque pixels. Throws std::invalid_argument, after a log line, if there are pixels but no data
/// or fewer than 3 bytes a pixel.
LX_CONVERT(RGB32iRawImage, LXImageRGBA32i);

#undef LX_CONVERT
