#pragma once

#include "LXChannelArithmetic.h"
#include "core/Truncate.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>

/// What the constructors of the adjustments make their tables with.

/// The table of entry(0) .. entry(255), each as a byte.
template <class Entry>
LXByteTable MakeByteTable(Entry entry) {
    LXByteTable table(256);
    for (int i = 0; i < 256; ++i)
        table[std::size_t(i)] = static_cast<unsigned char>(entry(i));
    return table;
}

inline LXByteTable IdentityTable() {
    return MakeByteTable([](int i) { return i; });
}

/// Truncated first and then limited, so that what fits no int becomes 0.
template <class Float>
unsigned char TruncateToByte(Float value) {
    return LXClampToByte(TruncateToInt(value));
}

inline int SaturateToInt(std::int64_t value) {
    return static_cast<int>(std::clamp<std::int64_t>(value, std::numeric_limits<int>::min(),
                                                     std::numeric_limits<int>::max()));
}

/// value * factor / divisor, truncated; what fits no int is limited.
inline int Rescale(int value, int factor, int divisor) {
    return SaturateToInt(std::int64_t(value) * factor / divisor);
}

/// (i / 255)^exponent * 255, truncated and limited to 0 .. 255; an infinite power gives 0.
inline int PowerLevel(int i, double exponent) {
    return TruncateToByte(std::pow(i / 255.0, exponent) * 255.0);
}

/// The gamma limited to 0.01 .. max; a NaN gives 0.01.
inline double LimitGamma(double gamma, double max) {
    return gamma > 0.01 ? std::min(gamma, max) : 0.01;
}
