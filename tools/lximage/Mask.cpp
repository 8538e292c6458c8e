#include "Mask.h"

#include "LXImagePainter.h"
#include "LXTransformImageColors.h"
#include "Picture.h"
#include "TileShortage.h"

namespace {

bool IsOpaque(const LXImageRGBA32i& image) {
    bool opaque = true;
    const auto look = [&opaque](const LXRGBA32i& pixel) { opaque = opaque && pixel.alpha == 255; };
    LXVisitImageColors<LXImageRGBA32i, decltype(look)>()(image, LXImageRect(image), look);
    return opaque;
}

} // namespace

LXImageRGBA32i LoadMask(const QString& path) {
    LXImageRGBA32i mask = LoadPicture(path).pixels;
    const TileShortage shortage;
    if (IsOpaque(mask))
        CreateFromSourceMask(mask, mask);
    else
        CreateFromTransparancyMask(mask, mask);
    shortage.Check();
    return mask;
}
