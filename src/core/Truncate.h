#pragma once

#include <cstdint>
#include <limits>

/// Truncation towards zero with the processor's answer for what does not fit, NaN included: the
/// most negative integer (cvttss2si, cvttsd2si). A bare cast leaves those cases undefined.
template <class Integer, class Float>
constexpr Integer TruncateTo(Float value) {
    static_assert(std::numeric_limits<Integer>::is_signed);
    // -min is a power of two and so exact in Float; below it, value > min - 1 is needed only where
    // the type can tell min from min - 1.
    constexpr Float limit = -static_cast<Float>(std::numeric_limits<Integer>::min());
    const bool fits = value < limit && (value >= -limit || value > -limit - 1);
    return fits ? static_cast<Integer>(value) : std::numeric_limits<Integer>::min();
}

template <class Float>
constexpr std::int32_t TruncateToInt(Float value) {
    return TruncateTo<std::int32_t>(value);
}

template <class Float>
constexpr std::int64_t TruncateToInt64(Float value) {
    return TruncateTo<std::int64_t>(value);
}
