#include "geometry/MaskOfImage.h"

#include "LXTileAccess.h"
#include "LXTileWalk.h"
#include "geometry/MaskRows.h"

namespace {

using Image = LXImageRGBA32i;
using RowRule = void (*)(const LXRGBA32i* in, LXRGBA32i* out, unsigned int count);

/// All pixels that the tiles have, inside the image or not.
QRect TilesRect(const Image& image) {
    return QRect(0, 0, int(image.GetTilesX() * Image::TileWidth),
                 int(image.GetTilesY() * Image::TileHeight));
}

/// The rule within the image, `outside` beyond.
Image Make(const Image& source, RowRule rule, const LXRGBA32i& outside) {
    Image mask = LXMasks::Uniform(source, outside);
    LXForTiles<Image>(LXImageRect(mask), [&](const LXTileSpan& span) {
        const LXTileReader from(source.GetTileRow(span.row)[span.column]);
        const LXTileWriter to(mask.GetTileRow(span.row)[span.column]);
        for (unsigned int y = 0; from.Pixels() && y < unsigned(span.local.height()); ++y)
            rule(from.Row(y), to.Row(y), unsigned(span.local.width()));
    });
    return mask;
}

} // namespace

Image LXMasks::Uniform(const Image& source, const LXRGBA32i& value) {
    Image mask(source.GetWidth(), source.GetHeight());
    mask.FastFill(value);
    return mask;
}

Image LXMasks::FromAlpha(const Image& source) {
    return Make(source, LXRows::AlphaToMask, {0, 0, 0, 0});
}

Image LXMasks::FromBrightness(const Image& source) {
    return Make(source, LXRows::BrightnessToMask, {0, 0, 0, 255});
}

void LXMasks::Complement(Image& image, const LXRGBA32i& mask) {
    LXForTiles<Image>(TilesRect(image), [&](const LXTileSpan& span) {
        const LXTileWriter tile(image.GetTileRow(span.row)[span.column]);
        if (tile.Pixels())
            LXRows::Complement(tile.Pixels(), Image::Block::PixelCount, mask);
    });
}
