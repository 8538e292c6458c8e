#include "LXConvertImage.h"
#include "LXFault.h"
#include "core/conversion/Conversions.h"

/// The front door of the image functions: each exported one has its guard here and its work in the
/// room behind.

#define LX_CONVERT(Source, Target, function)                                                       \
    template <>                                                                                    \
    Target ConvertImage<Source, Target>(const Source& source) {                                    \
        return LXFault::StrictGuard(LX_SITE, [&] { return LXConversions::function(source); });     \
    }

LX_CONVERT(LXImageRGBA32i, QImage, ToQImage)
LX_CONVERT(QImage, LXImageRGBA32i, FromQImage)
LX_CONVERT(LXImageRGBA32i, LXImageRGBA64i, ToWide)
LX_CONVERT(LXImageRGBA64i, LXImageRGBA32i, FromWide)
LX_CONVERT(LXImageRGBA32i, LXImageRGBA64f, ToHalf)
LX_CONVERT(LXImageRGBA64f, LXImageRGBA32i, FromHalf)
LX_CONVERT(LXImageRGBA32i, LXImageCMYKA, ToCMYK)
LX_CONVERT(LXImageCMYKA, LXImageRGBA32i, FromCMYK)
LX_CONVERT(LXImageCMYKA, QImage, CMYKToQImage)
LX_CONVERT(LXImageRGBA32i, LXImageHSLA, ToHSL)
LX_CONVERT(LXImageHSLA, LXImageRGBA32i, FromHSL)
LX_CONVERT(RGB32iRawImage, LXImageRGBA32i, FromRaw)
