#pragma once

#include "LXPixel.h"

#include <algorithm>
#include <cstdint>
#include <vector>

/// The integer arithmetic that the colour adjustments share.

/// The value limited to 0 .. 255.
constexpr unsigned char LXClampToByte(int value) {
    return static_cast<unsigned char>(value < 0 ? 0 : value > 255 ? 255 : value);
}

/// Y = (16 G + 11 R + 5 B) / 32, truncated: 0 .. 255.
constexpr int LXLuminance(const LXRGBA32i& pixel) {
    return (16 * pixel.green + 11 * pixel.red + 5 * pixel.blue) >> 5;
}

/// The weight at which only the value counts in LXMixWithIdentity.
constexpr std::int64_t LXFullWeight = 255000;

constexpr std::int64_t LXWeightOfPercent(int percent) {
    return std::int64_t(percent) * 2550;
}

/// (value * weight + identity * (255000 - weight)) / 255000, truncated towards zero. A weight
/// outside 0 .. 255000 leads beyond the two; none of a percentage overflows.
constexpr std::int64_t LXMixWithIdentity(int value, int identity, std::int64_t weight) {
    return (value * weight + identity * (LXFullWeight - weight)) / LXFullWeight;
}

/// The same on red, green and blue, with the weight limited to 0 .. 255000; alpha is the
/// identity's.
constexpr LXRGBA32i LXMixWithIdentity(const LXRGBA32i& value, const LXRGBA32i& identity,
                                      std::int64_t weight) {
    const std::int64_t limited = std::clamp<std::int64_t>(weight, 0, LXFullWeight);
    const auto mix = [limited](int v, int i) {
        return static_cast<std::uint8_t>(LXMixWithIdentity(v, i, limited));
    };
    return {mix(value.blue, identity.blue), mix(value.green, identity.green),
            mix(value.red, identity.red), identity.alpha};
}

/// 256 results, indexed by a channel value.
using LXByteTable = std::vector<unsigned char>;

/// One table for each colour channel.
struct LXChannelTables {
    LXByteTable red;
    LXByteTable green;
    LXByteTable blue;

    /// Each colour channel through its table; alpha stays.
    void operator()(LXRGBA32i& pixel) const {
        pixel = {blue[pixel.blue], green[pixel.green], red[pixel.red], pixel.alpha};
    }
};

/// The three colour channels through one table; alpha stays.
inline void LXApplyTable(const LXByteTable& table, LXRGBA32i& pixel) {
    pixel = {table[pixel.blue], table[pixel.green], table[pixel.red], pixel.alpha};
}
