#include "Mask.h"

#include "LXImagePainter.h"
#include "LXTransformImageColors.h"
#include "Picture.h"
#include "TileShortage.h"
#include "Walk.h"

namespace {

struct ToGray {
    void operator()(LXRGBA32i& pixel) const {
        pixel = {pixel.alpha, pixel.alpha, pixel.alpha, 255};
    }
};

bool IsOpaque(const LXImageRGBA32i& image) {
    bool opaque = true;
    const auto look = [&opaque](const LXRGBA32i& pixel) { opaque = opaque && pixel.alpha == 255; };
    LXVisitImageColors<LXImageRGBA32i, decltype(look)>()(image, LXImageRect(image), look);
    return opaque;
}

} // namespace

LXImageRGBA32i LoadMask(const QString& path) {
    LXImageRGBA32i mask = LoadPicture(path).pixels;
    MakeMask(mask);
    return mask;
}

void MakeMask(LXImageRGBA32i& pixels) {
    const TileShortage shortage;
    if (IsOpaque(pixels))
        CreateFromSourceMask(pixels, pixels);
    else
        CreateFromTransparancyMask(pixels, pixels);
    shortage.Check();
}

void MakeVisible(LXImageRGBA32i& mask) {
    Walk(mask, ToGray());
}
