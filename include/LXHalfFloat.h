#pragma once

#include "LXExport.h"

/// An IEEE 754 binary16 number: sign bit 15, exponent bits 14 to 10 (bias 15), fraction bits
/// 9 to 0.
struct LIBIMAGE_EXPORT LXHalfFloat {
    unsigned short bits;

    /// The exact value; infinities and NaN payloads are kept.
    float ToFloat() const;

    /// Provokes a floating-point overflow on purpose, for its effect on the processor's status
    /// flags, and returns the infinity.
    static float Overflow();

    /// The half bits of the float whose 32 bits are given, rounding half up in magnitude. A
    /// magnitude below 2^-25 gives +0 whatever its sign; a finite one of 65520 or more gives an
    /// infinity, after Overflow. Infinities stay, and a NaN stays a NaN with the upper bits of its
    /// payload.
    static short Convert(int floatBits);

    /// By the upper nine bits of a float (sign, exponent): the half's sign and exponent where a
    /// plain shift of the fraction gives the half, 0 where only Convert does.
    static const unsigned short _eLut[512];
};

/// The half bits of a channel value.
///
/// Each source type is mapped from its own full range (255, 65535, 2^32, the largest float) to
/// 0 .. 256.87841796875, not to 0 .. 1, each step rounded to float. So an ordinary float in 0 .. 1
/// becomes half 0. Instantiated for unsigned char, unsigned short, unsigned int and float.
template <class Channel>
unsigned short MakeHalfFloat(Channel value);

template <>
LIBIMAGE_EXPORT unsigned short MakeHalfFloat<unsigned char>(unsigned char value);
template <>
LIBIMAGE_EXPORT unsigned short MakeHalfFloat<unsigned short>(unsigned short value);
template <>
LIBIMAGE_EXPORT unsigned short MakeHalfFloat<unsigned int>(unsigned int value);
template <>
LIBIMAGE_EXPORT unsigned short MakeHalfFloat<float>(float value);

/// The channel value of half bits: scaled back in one float multiplication and truncated towards
/// zero, without clamping; the low 8, 16 or 64 bits of the truncated integer are the result. A
/// value that fits no integer truncates to the most negative one, as on x86-64.
LIBIMAGE_EXPORT unsigned char MakeUChar(unsigned short halfBits);
LIBIMAGE_EXPORT unsigned short MakeUshort(unsigned short halfBits);
LIBIMAGE_EXPORT unsigned long long MakeUInt(unsigned short halfBits);

/// The same on the scale 0 .. largest float, not truncated.
LIBIMAGE_EXPORT float MakeFloat(unsigned short halfBits);
