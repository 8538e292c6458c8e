#include "geometry/MaskRows.h"

#include "core/Clones.h"
#include "core/conversion/PixelWords.h"

namespace {

using LXWords::PixelOf;
using LXWords::WordOf;

LX_CLONED void AlphaRow(const LXRGBA32i* in, LXRGBA32i* out, unsigned int count) {
    for (unsigned int i = 0; i < count; ++i)
        out[i] = PixelOf<LXRGBA32i>(WordOf(in[i]) & 0xFF000000);
}

LX_CLONED void BrightnessRow(const LXRGBA32i* in, LXRGBA32i* out, unsigned int count) {
    for (unsigned int i = 0; i < count; ++i) {
        const std::uint32_t word = WordOf(in[i]);
        const std::uint32_t blue = word & 0xFF, green = word >> 8 & 0xFF, red = word >> 16 & 0xFF;
        out[i] = PixelOf<LXRGBA32i>((5 * blue + 16 * green + 11 * red) >> 5 << 24);
    }
}

LX_CLONED void ComplementRow(LXRGBA32i* pixels, unsigned int count, std::uint32_t mask) {
    for (unsigned int i = 0; i < count; ++i)
        pixels[i] = PixelOf<LXRGBA32i>(WordOf(pixels[i]) ^ mask);
}

} // namespace

void LXRows::AlphaToMask(const LXRGBA32i* in, LXRGBA32i* out, unsigned int count) {
    AlphaRow(in, out, count);
}

void LXRows::BrightnessToMask(const LXRGBA32i* in, LXRGBA32i* out, unsigned int count) {
    BrightnessRow(in, out, count);
}

void LXRows::Complement(LXRGBA32i* pixels, unsigned int count, const LXRGBA32i& mask) {
    ComplementRow(pixels, count, WordOf(mask));
}
