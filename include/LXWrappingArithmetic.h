#pragma once

/// Arithmetic of int that wraps around at 2^32, for parameters of which any value must be harmless.

constexpr int LXWrappingAdd(int a, int b) {
    return static_cast<int>(static_cast<unsigned int>(a) + static_cast<unsigned int>(b));
}

constexpr int LXWrappingSubtract(int a, int b) {
    return static_cast<int>(static_cast<unsigned int>(a) - static_cast<unsigned int>(b));
}

constexpr int LXWrappingMultiply(int a, int b) {
    return static_cast<int>(static_cast<unsigned int>(a) * static_cast<unsigned int>(b));
}

/// a / b truncated towards zero, for b != 0. Only INT_MIN / -1 wraps, to INT_MIN.
constexpr int LXWrappingDivide(int a, int b) {
    return b == -1 ? LXWrappingSubtract(0, a) : a / b;
}
