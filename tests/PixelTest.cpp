#include "LXGamma.h"
#include "LXHalfFloat.h"
#include "core/Truncate.h"
#include "support/ReferenceConversions.h"

#include <gtest/gtest.h>

#include <emmintrin.h>

#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>

namespace {

float FloatOf(std::uint32_t bits) {
    float value;
    std::memcpy(&value, &bits, sizeof value);
    return value;
}

std::uint32_t BitsOf(float value) {
    std::uint32_t bits;
    std::memcpy(&bits, &value, sizeof bits);
    return bits;
}

constexpr float Full = 256.87841796875F;

} // namespace

TEST(Truncate, AnswersAsTheProcessorDoes) {
    for (std::uint64_t i = 0; i <= 0xFFFFFFFF; i += 4099) {
        const float f = FloatOf(std::uint32_t(i));
        ASSERT_EQ(TruncateToInt(f), _mm_cvttss_si32(_mm_set_ss(f))) << f;
        ASSERT_EQ(TruncateToInt64(f), _mm_cvttss_si64(_mm_set_ss(f))) << f;
    }
    for (const double d : {2147483647.0, 2147483647.5, 2147483648.0, -2147483648.0, -2147483648.5,
                           -2147483649.0, 9.3e18, -9.3e18, -9223372036854775808.0,
                           9223372036854774784.0, std::nan(""), -0.9, 0.9}) {
        EXPECT_EQ(TruncateToInt(d), _mm_cvttsd_si32(_mm_set_sd(d))) << d;
        EXPECT_EQ(TruncateToInt64(d), _mm_cvttsd_si64(_mm_set_sd(d))) << d;
    }
}

TEST(HalfFloat, TableHasTheHeadsOfNormalNumbersOnly) {
    for (int i = 0; i < 512; ++i) {
        const int e = i % 256 - 112;
        const int expected = e >= 1 && e <= 29 ? e * 1024 + (i / 256) * 0x8000 : 0;
        EXPECT_EQ(LXHalfFloat::_eLut[i], expected) << i;
    }
}

TEST(HalfFloat, DecodesAllBits) {
    for (unsigned int bits = 0; bits < 65536; ++bits) {
        const float value = LXHalfFloat{static_cast<unsigned short>(bits)}.ToFloat();
        const double expected = Reference::ValueOfHalf(static_cast<unsigned short>(bits));
        if (std::isnan(expected)) {
            ASSERT_EQ(BitsOf(value), (bits >> 15) << 31 | 0x7F800000U | (bits & 1023) << 13)
                << bits;
        } else {
            ASSERT_EQ(value, expected) << bits;
            ASSERT_EQ(std::signbit(value), (bits & 0x8000) != 0) << bits;
        }
    }
}

TEST(HalfFloat, ConvertsAllKindsOfFloat) {
    const auto check = [](std::uint32_t bits) {
        const auto half = static_cast<unsigned short>(LXHalfFloat::Convert(int(bits)));
        ASSERT_EQ(half, Reference::HalfOf(FloatOf(bits))) << std::hex << bits;
    };
    for (std::uint64_t bits = 0; bits <= 0xFFFFFFFF; bits += 997)
        check(std::uint32_t(bits));
    // The neighbourhood of each tie between two halves, where rounding decides.
    for (std::uint32_t half = 0; half < 0x7C00; ++half) {
        const double low = Reference::ValueOfHalf(static_cast<unsigned short>(half));
        const double high =
            half == 0x7BFF ? 65536 : Reference::ValueOfHalf(static_cast<unsigned short>(half + 1));
        const std::uint32_t tie = BitsOf(static_cast<float>((low + high) / 2));
        for (std::uint32_t near = tie - 1; near != tie + 2; ++near) {
            check(near);
            check(near | 0x80000000U);
        }
    }
    EXPECT_EQ(LXHalfFloat::Overflow(), std::numeric_limits<float>::infinity());
}

TEST(HalfFloat, TakesEachSourceTypeOnItsOwnScale) {
    const auto half = [](float part) { return Reference::HalfOf(part * Full); };
    // The low bits of the steps are all bytes and all words.
    for (std::uint64_t i = 0; i <= 0xFFFFFFFF; i += 65521) {
        const auto byte = static_cast<unsigned char>(i);
        const auto word = static_cast<unsigned short>(i);
        const auto whole = static_cast<unsigned int>(i);
        const float part = FloatOf(whole) / std::numeric_limits<float>::max();
        ASSERT_EQ(MakeHalfFloat<unsigned char>(byte), half(float(byte) / 255.0F)) << i;
        ASSERT_EQ(MakeHalfFloat<unsigned short>(word), half(float(word) / 65535.0F)) << i;
        ASSERT_EQ(MakeHalfFloat<unsigned int>(whole), half(float(whole) * std::ldexp(1.0F, -32)));
        ASSERT_EQ(MakeHalfFloat<float>(FloatOf(whole)), part * Full == 0 ? 0 : half(part)) << i;
    }
    EXPECT_EQ(MakeHalfFloat<unsigned char>(255), 0x5C04);
    EXPECT_EQ(MakeHalfFloat<unsigned char>(0), 0);
    EXPECT_EQ(MakeHalfFloat<float>(1.0F), 0);
    EXPECT_EQ(MakeHalfFloat<float>(-0.0F), 0);
}

TEST(HalfFloat, ComesBackTruncatedAndUnclamped) {
    for (unsigned int i = 0; i < 65536; ++i) {
        const auto half = static_cast<unsigned short>(i);
        const float value = static_cast<float>(Reference::ValueOfHalf(half));
        const int byte = _mm_cvttss_si32(_mm_set_ss(value * 0.9926875233650208F));
        const int word = _mm_cvttss_si32(_mm_set_ss(value * 255.12069702148438F));
        const long long wide = _mm_cvttss_si64(_mm_set_ss(value * 16719845.0F));
        ASSERT_EQ(MakeUChar(half), byte & 0xFF) << i;
        ASSERT_EQ(MakeUshort(half), word & 0xFFFF) << i;
        ASSERT_EQ(MakeUInt(half), static_cast<unsigned long long>(wide)) << i;
        const float whole = value * 1.3246825176451475e+36F;
        if (std::isnan(whole))
            ASSERT_TRUE(std::isnan(MakeFloat(half))) << i;
        else
            ASSERT_EQ(MakeFloat(half), whole) << i;
    }
}

TEST(HalfFloat, LosesOneInATripOfABytePreciselyWhereItMust) {
    int lower = 0;
    for (int i = 0; i < 256; ++i) {
        const int back = MakeUChar(MakeHalfFloat<unsigned char>(static_cast<unsigned char>(i)));
        EXPECT_TRUE(back == i || back == i - 1) << i;
        lower += back == i - 1;
    }
    EXPECT_EQ(lower, 130);
    for (const int same : {0, 1, 2, 4, 8, 16, 255})
        EXPECT_EQ(MakeUChar(MakeHalfFloat(static_cast<unsigned char>(same))), same);
}

TEST(Gamma, EncodesAndQuantises) {
    const auto check = [](float v) {
        int expected = 0;
        if (v > 1) {
            expected = 255;
        } else if (v >= 0) {
            const double power = std::pow(double(v), double(1 / 2.4F));
            const float c = double(v) <= 0.0031308 ? v * 12.92F
                                                   : float(power * double(1.055F) - double(0.055F));
            expected = int(c * 255.0F + 0.5F);
        }
        ASSERT_EQ(MakeGamma(v), expected) << v;
    };
    for (std::uint64_t i = 0; i <= 0xFFFFFFFF; i += 65537)
        check(FloatOf(std::uint32_t(i)));
    for (float v = 0.003F; v < 0.0034F; v = std::nextafter(v, 1.0F)) // where the pieces meet
        check(v);
    EXPECT_EQ(MakeGamma(1), 255);
}

TEST(Gamma, DecodesWhatItsEncoderMade) {
    for (int code = 0; code < 256; ++code)
        EXPECT_EQ(MakeGamma(VoltageToIntensitySrgb(float(code) / 255.0F)), code);
    EXPECT_EQ(VoltageToIntensitySrgb(0.04F), 0.04F / 12.92F);
    EXPECT_EQ(VoltageToIntensitySrgb(-1.0F), -1.0F / 12.92F);
    EXPECT_FLOAT_EQ(VoltageToIntensitySrgb(1.0F), 1.0F);
}

TEST(Gamma, ClampPassesNaN) {
    EXPECT_EQ(Clamp(-1, 0, 2), 0);
    EXPECT_EQ(Clamp(3, 0, 2), 2);
    EXPECT_EQ(Clamp(1, 0, 2), 1);
    EXPECT_TRUE(std::isnan(Clamp(std::nanf(""), 0, 2)));
}
