#include "LXHalfFloat.h"

#include "core/Truncate.h"

#include <array>
#include <cstdint>
#include <cstring>

namespace {

/// What a channel at full scale becomes, whatever its source type.
constexpr float FullScale = 256.87841796875F;

/// Float exponents are biased by 127, half exponents by 15.
constexpr int ExponentShift = 127 - 15;

std::uint32_t BitsOf(float value) {
    std::uint32_t bits;
    std::memcpy(&bits, &value, sizeof bits);
    return bits;
}

float FloatOf(std::uint32_t bits) {
    float value;
    std::memcpy(&value, &bits, sizeof value);
    return value;
}

/// Sign and exponent of the half for the upper nine bits of a float. The largest half exponent, 30,
/// is left to Convert on purpose: that is where the overflow to infinity is caught.
constexpr unsigned short LutEntry(int index) {
    const int exponent = (index & 0xFF) - ExponentShift;
    if (exponent < 1 || exponent > 29)
        return 0;
    return static_cast<unsigned short>((exponent << 10) | (index > 255 ? 0x8000 : 0));
}

unsigned short HalfOf(float value) {
    if (value == 0.0F)
        return 0;
    const std::uint32_t bits = BitsOf(value);
    const unsigned short head = LXHalfFloat::_eLut[bits >> 23];
    if (head != 0)
        return static_cast<unsigned short>(head + (((bits & 0x7FFFFF) + 0x1000) >> 13));
    return static_cast<unsigned short>(LXHalfFloat::Convert(static_cast<int>(bits)));
}

/// A value below the smallest normal half, exponent <= 0. The sign of what vanishes is not kept:
/// it becomes +0 on purpose.
int ConvertDenormal(int sign, int exponent, int fraction) {
    if (exponent < -10)
        return 0;
    fraction = (fraction | 0x800000) >> (1 - exponent);
    if (fraction & 0x1000)
        fraction += 0x2000;
    return sign | (fraction >> 13);
}

int ConvertNonFinite(int sign, int fraction) {
    if (fraction == 0)
        return sign | 0x7C00;
    fraction >>= 13;
    return sign | 0x7C00 | fraction | (fraction == 0 ? 1 : 0);
}

int ConvertNormal(int sign, int exponent, int fraction) {
    if (fraction & 0x1000) {
        fraction += 0x2000;
        if (fraction & 0x800000) {
            fraction = 0;
            ++exponent;
        }
    }
    if (exponent > 30) {
        LXHalfFloat::Overflow();
        return sign | 0x7C00;
    }
    return sign | (exponent << 10) | (fraction >> 13);
}

/// Half to channel: one multiplication in float.
float Scaled(unsigned short halfBits, float scale) {
    return LXHalfFloat{halfBits}.ToFloat() * scale;
}

} // namespace

#define LX_LUT_1(i) LutEntry(i)
#define LX_LUT_8(i)                                                                                \
    LX_LUT_1(i), LX_LUT_1(i + 1), LX_LUT_1(i + 2), LX_LUT_1(i + 3), LX_LUT_1(i + 4),               \
        LX_LUT_1(i + 5), LX_LUT_1(i + 6), LX_LUT_1(i + 7)
#define LX_LUT_64(i)                                                                               \
    LX_LUT_8(i), LX_LUT_8(i + 8), LX_LUT_8(i + 16), LX_LUT_8(i + 24), LX_LUT_8(i + 32),            \
        LX_LUT_8(i + 40), LX_LUT_8(i + 48), LX_LUT_8(i + 56)

constexpr unsigned short LXHalfFloat::_eLut[512] = {LX_LUT_64(0),   LX_LUT_64(64),  LX_LUT_64(128),
                                                    LX_LUT_64(192), LX_LUT_64(256), LX_LUT_64(320),
                                                    LX_LUT_64(384), LX_LUT_64(448)};

float LXHalfFloat::ToFloat() const {
    const std::uint32_t sign = std::uint32_t(bits >> 15) << 31;
    std::uint32_t exponent = (bits >> 10) & 0x1FU;
    std::uint32_t fraction = bits & 0x3FFU;
    if (exponent == 31)
        return FloatOf(sign | 0x7F800000U | (fraction << 13));
    if (exponent == 0) {
        if (fraction == 0)
            return FloatOf(sign);
        for (exponent = 1; !(fraction & 0x400U); --exponent)
            fraction <<= 1;
        fraction &= 0x3FFU;
    }
    return FloatOf(sign | ((exponent + ExponentShift) << 23) | (fraction << 13));
}

float LXHalfFloat::Overflow() {
    volatile float value = 1e10F; // volatile: the overflow must happen at run time
    for (int i = 0; i < 10; ++i)
        value = value * value;
    return value;
}

short LXHalfFloat::Convert(int floatBits) {
    const int sign = (floatBits >> 16) & 0x8000;
    const int exponent = ((floatBits >> 23) & 0xFF) - ExponentShift;
    const int fraction = floatBits & 0x7FFFFF;
    if (exponent <= 0)
        return static_cast<short>(ConvertDenormal(sign, exponent, fraction));
    if (exponent == 255 - ExponentShift)
        return static_cast<short>(ConvertNonFinite(sign, fraction));
    return static_cast<short>(ConvertNormal(sign, exponent, fraction));
}

template <>
unsigned short MakeHalfFloat<unsigned char>(unsigned char value) {
    return HalfOf(static_cast<float>(value) / 255.0F * FullScale);
}

template <>
unsigned short MakeHalfFloat<unsigned short>(unsigned short value) {
    return HalfOf(static_cast<float>(value) / 65535.0F * FullScale);
}

template <>
unsigned short MakeHalfFloat<unsigned int>(unsigned int value) {
    return HalfOf(static_cast<float>(value) * 0x1p-32F * FullScale);
}

// The scale of a float is the whole range of float, as in MakeFloat, and not 0 to 1.
template <>
unsigned short MakeHalfFloat<float>(float value) {
    return HalfOf(value / 3.4028234663852886e+38F * FullScale);
}

unsigned char MakeUChar(unsigned short halfBits) {
    return static_cast<unsigned char>(TruncateToInt(Scaled(halfBits, 0.9926875233650208F)));
}

unsigned short MakeUshort(unsigned short halfBits) {
    return static_cast<unsigned short>(TruncateToInt(Scaled(halfBits, 255.12069702148438F)));
}

unsigned long long MakeUInt(unsigned short halfBits) {
    return static_cast<unsigned long long>(TruncateToInt64(Scaled(halfBits, 16719845.0F)));
}

float MakeFloat(unsigned short halfBits) {
    return Scaled(halfBits, 1.3246825176451475e+36F);
}
