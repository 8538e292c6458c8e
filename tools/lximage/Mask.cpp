#include "Mask.h"

#include "LXTransformImageColors.h"
#include "Picture.h"

namespace {

struct FromAlpha {
    void operator()(LXRGBA32i& pixel) const { pixel = {0, 0, 0, pixel.alpha}; }
};

struct FromBrightness {
    void operator()(LXRGBA32i& pixel) const {
        const int brightness = (16 * pixel.green + 11 * pixel.red + 5 * pixel.blue) >> 5;
        pixel = {0, 0, 0, static_cast<std::uint8_t>(brightness)};
    }
};

bool IsOpaque(const LXImageRGBA32i& image) {
    bool opaque = true;
    const auto look = [&opaque](const LXRGBA32i& pixel) { opaque = opaque && pixel.alpha == 255; };
    LXVisitImageColors<LXImageRGBA32i, decltype(look)>()(image, LXImageRect(image), look);
    return opaque;
}

template <class Rule>
void Apply(LXImageRGBA32i& image) {
    LXTransformImageColors<LXImageRGBA32i, Rule>()(image, LXImageRect(image), Rule());
}

} // namespace

LXImageRGBA32i LoadMask(const QString& path) {
    LXImageRGBA32i mask = LoadPicture(path).pixels;
    IsOpaque(mask) ? Apply<FromBrightness>(mask) : Apply<FromAlpha>(mask);
    return mask;
}
