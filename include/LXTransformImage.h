#pragma once

#include "LXImage.h"

#include <QtCore/QRect>
#include <QtGui/QImage>
#include <QtGui/QTransform>

/// Geometric transformation by the nearest pixel, without choice of quality
/// (LXImageTransformation.h has that) but in more formats. `transform` takes places in `source` to
/// places in `destination`; any QTransform will do. The centre of each destination pixel is mapped
/// back, and the source pixel that contains it is copied, if that pixel lies in `rect`. All other
/// pixels stay as they were.
///
/// An invalid `rect` means the whole source; a valid one must lie inside it, unless the source is
/// empty: from that nothing is copied.
///
/// False, with nothing written, if the transform has no inverse or a QImage destination is not in
/// QImage::Format_ARGB32; and from LXImageRGBA32i to LXImageRGBA32i also as soon as a source tile
/// is missing, with the pixels before it written. The other forms leave pixels that would come from
/// a missing tile as they were. The destination is detached from its sharers, all tiles of it; if
/// no tile or memory is left for that, std::bad_alloc comes out after a log line. Source and
/// destination may be copies of one another, and even one object.
template <class Source, class Destination>
bool TransformImage(const Source& source, const QTransform& transform, Destination& destination,
                    const QRect& rect);

#define LX_TRANSFORM_IMAGE(Source, Destination)                                                    \
    template <>                                                                                    \
    LIBIMAGE_EXPORT bool TransformImage<Source, Destination>(                                      \
        const Source& source, const QTransform& transform, Destination& destination,               \
        const QRect& rect)

LX_TRANSFORM_IMAGE(LXImageRGBA32i, LXImageRGBA32i);
LX_TRANSFORM_IMAGE(LXImageRGBA32i, QImage);
LX_TRANSFORM_IMAGE(LXImageCMYKA, LXImageCMYKA);
/// Cyan, magenta and yellow become red, green and blue. A byte counts as 256 / 65535 of full scale,
/// so that no ink is quite full: that is how the conversion is defined.
LX_TRANSFORM_IMAGE(LXImageCMYKA, QImage);

#undef LX_TRANSFORM_IMAGE
