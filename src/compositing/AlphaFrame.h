#pragma once

#include "compositing/Formulas.h"

#include <cstdint>

/// How a colour formula becomes a blend of pixels with straight alpha.
namespace LXBlendRules {

using Word = std::uint32_t; ///< a pixel, 0xAARRGGBB

/// The frame of all separable modes, for a source weight `a` up to 255.
///
/// The new alpha k is 0 only if `a` and the destination's alpha are both 0; all weights are 0 then,
/// and with a divisor that is not the pixel becomes 0 by itself. So there is no branch.
template <class Formula>
struct AlphaFrame {
    static Word Pixel(Word s, Word d, Word weight, Word) {
        const float a = Lane(weight), da = Lane(d >> 24);
        const float wd = (255 - a) * da, ws = (255 - da) * a, wb = a * da;
        const float k = LXFormulas::Div255(a * 255 + wd);
        const float divisor = LXFormulas::Max(k, 1) * 255;
        const auto channel = [&](int shift) {
            const float sc = Lane(s >> shift & 0xFF), dc = Lane(d >> shift & 0xFF);
            // The truncated quotient is that of the integers: the sum is below 2^24 and so exact,
            // or (Plus only) its quotient is above 255. A product with 1 / divisor would not do.
            const float quotient = (dc * wd + sc * ws + Formula::Mix(sc, dc) * wb) / divisor;
            return ToWord(LXFormulas::Min(quotient, 255)) << shift;
        };
        return channel(0) | channel(8) | channel(16) | ToWord(k) << 24;
    }

private:
    // By way of signed integers, whose conversions are the fast ones.
    static float Lane(Word value) { return static_cast<float>(static_cast<int>(value)); }
    static Word ToWord(float value) { return static_cast<Word>(static_cast<int>(value)); }
};

/// The same frame for a weight of any size, as an opacity above 256 brings about: plain integers
/// that wrap at 32 bits. Slow, and what it gives is of no use to the eye, but it is defined.
template <class Formula>
struct WrappingFrame {
    static Word Pixel(Word s, Word d, Word a, Word) {
        const Word da = d >> 24;
        const Word wd = (255 - a) * da, ws = (255 - da) * a, wb = a * da;
        const Word t = a * 255 + wd;
        const Word k = t < 65280 ? t / 255 : 255;
        if (k == 0)
            return 0;
        const auto channel = [&](int shift) {
            const Word sc = s >> shift & 0xFF, dc = d >> shift & 0xFF;
            const auto mix = static_cast<Word>(
                static_cast<int>(Formula::Mix(static_cast<float>(sc), static_cast<float>(dc))));
            const Word quotient = (dc * wd + sc * ws + mix * wb) / (k * 255);
            return (quotient < 255 ? quotient : 255) << shift;
        };
        return channel(0) | channel(8) | channel(16) | k << 24;
    }
};

} // namespace LXBlendRules
