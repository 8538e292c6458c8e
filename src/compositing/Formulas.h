#pragma once

/// The blend functions B(s, d), one for each separable mode: how two overlapping colours mix.
///
/// All numbers are integers from 0 to 255 in floats, which hold every intermediate value here
/// exactly; the compiler vectorises that best. Both arms of a choice are values that are there
/// already, as work in an arm would be turned into a jump.
namespace LXFormulas {

/// Truncation of what is not negative.
inline float Whole(float x) {
    return static_cast<float>(static_cast<int>(x));
}

/// x / 255, truncated. Exact for whole x up to 65025.
inline float Div255(float x) {
    return Whole(x * (1 / 255.0F));
}

inline float Min(float x, float y) {
    return x < y ? x : y;
}

inline float Max(float x, float y) {
    return x > y ? x : y;
}

/// 255 - x if `side` is 1, x if it is 0: two-sided modes are one formula, seen from either end.
inline float Mirror(float x, float side) {
    return x + side * (255 - 2 * x);
}

inline float IsUpperHalf(float x) {
    return x >= 128 ? 1.0F : 0.0F;
}

struct SourceOver {
    static float Mix(float s, float) { return s; }
};

/// The sum may exceed 255: the frame limits the result.
struct Plus {
    static float Mix(float s, float d) { return d + s; }
};

struct Multiply {
    static float Mix(float s, float d) { return Div255(d * s); }
};

/// Divides by 256 and not by 255, and so lifts black to 1. That is its definition.
struct Screen {
    static float Mix(float s, float d) { return 255 - Whole((255 - d) * (255 - s) / 256); }
};

struct HardLight {
    static float Mix(float s, float d) {
        const float side = IsUpperHalf(s);
        return Mirror(Div255(2 * Mirror(s, side) * Mirror(d, side)), side);
    }
};

struct Overlay {
    static float Mix(float s, float d) { return HardLight::Mix(d, s); }
};

struct Darken {
    static float Mix(float s, float d) { return Min(s, d); }
};

struct Lighten {
    static float Mix(float s, float d) { return Max(s, d); }
};

struct ColorDodge {
    static float Mix(float s, float d) {
        const float quotient = Whole(d * 255 / Max(255 - s, 1));
        return s < 255 ? Min(quotient, 255) : 255;
    }
};

/// The factor is 256, not 255 as in ColorDodge. That is its definition.
struct ColorBurn {
    static float Mix(float s, float d) {
        const float quotient = Whole((255 - d) * 256 / Max(s, 1));
        return Max(255 - quotient, 0) * Min(s, 1); // 0 for s = 0
    }
};

/// The only formula with fractions: truncation comes last. The lowest bit of s is not used.
struct SoftLight {
    static float Mix(float s, float d) {
        const float h = 2 * Whole(s / 2) + 128;
        const float side = IsUpperHalf(d);
        const float fraction = Mirror(d, side) * (h + side * (510 - 2 * h)) / 255;
        return Whole(Mirror(fraction, side));
    }
};

struct Difference {
    static float Mix(float s, float d) { return Max(s, d) - Min(s, d); }
};

struct Exclusion {
    static float Mix(float s, float d) { return d + s - Whole(d * s * 2 / 255); }
};

} // namespace LXFormulas
