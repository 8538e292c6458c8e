#include "geometry/ColourRange.h"

#include "LXFloodFillHelper.h"

#include <algorithm>

namespace {

using Channel = std::uint8_t LXRGBA32i::*;
constexpr Channel Colours[] = {&LXRGBA32i::blue, &LXRGBA32i::green, &LXRGBA32i::red};
constexpr Channel All[] = {&LXRGBA32i::blue, &LXRGBA32i::green, &LXRGBA32i::red, &LXRGBA32i::alpha};

constexpr LXRGBA32i OpaqueBlack = {0, 0, 0, 255};

} // namespace

LXColourRange LXColourRange::Around(const LXRGBA32i& seed, const LXRGBA32i& tolerance) {
    if (seed.alpha == 0)
        return {{0, 0, 0, 0}, {255, 255, 255, 0}};
    LXColourRange range{};
    for (const Channel channel : All) {
        range.low.*channel = std::uint8_t(std::max(seed.*channel - tolerance.*channel, 0));
        range.high.*channel = std::uint8_t(std::min(seed.*channel + tolerance.*channel, 255));
    }
    return range;
}

bool LXColourRange::Contains(const LXRGBA32i& pixel) const {
    return std::all_of(std::begin(All), std::end(All), [&](Channel channel) {
        return low.*channel <= pixel.*channel && pixel.*channel <= high.*channel;
    });
}

bool Compare(const LXRGBA32i& pixel, const LXRGBA32i& seed, const LXRGBA32i& tolerance) {
    return LXColourRange::Around(seed, tolerance).Contains(pixel);
}

bool GetOutOfRangeColor(const LXRGBA32i& seed, const LXRGBA32i& tolerance, LXRGBA32i& marker) {
    for (const Channel channel : Colours) {
        const bool below = seed.*channel > tolerance.*channel;
        if (!below && seed.*channel + tolerance.*channel > 254)
            continue;
        marker = OpaqueBlack;
        marker.*channel = below ? 0 : 255;
        return true;
    }
    // Not alpha 0, as that has a meaning of its own in Compare().
    const int lowest = seed.alpha - tolerance.alpha, highest = seed.alpha + tolerance.alpha;
    if (lowest >= 2) {
        marker = {0, 0, 0, 1};
        return true;
    }
    if (lowest == 1 || highest <= 254)
        marker = OpaqueBlack;
    return highest <= 254;
}
