#include "color/frame/GrayRows.h"

#include "core/Clones.h"
#include "core/conversion/PixelWords.h"

namespace {

inline LXRGBA32i GrayOf(LXRGBA32i pixel) {
    const std::uint32_t word = LXWords::WordOf(pixel);
    const std::uint32_t blue = word & 0xFF, green = word >> 8 & 0xFF, red = word >> 16 & 0xFF;
    const std::uint32_t gray = (5 * blue + 16 * green + 11 * red) >> 5;
    return LXWords::PixelOf<LXRGBA32i>((word & 0xFF000000) | gray * 0x010101);
}

LX_CLONED void GrayRow(LXRGBA32i* row, unsigned int count) {
    for (unsigned int i = 0; i < count; ++i)
        row[i] = GrayOf(row[i]);
}

} // namespace

void LXRows::ToGray(LXRGBA32i* row, unsigned int count) {
    GrayRow(row, count);
}
