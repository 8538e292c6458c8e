#pragma once

#include "compositing/AlphaFrame.h"

/// What a mode does to one pixel. A rule is a type with a function Pixel(s, d, a, m): the source
/// and the destination pixel, the weight of the source, and the mask's alpha, 255 without a mask.
/// It gives the new destination pixel with its alpha not locked.
///
/// All rules but AlphaFrame are written in integers that wrap, and so hold for any weight.
namespace LXBlendRules {

constexpr Word ColourMask = 0x00FFFFFF;
constexpr Word AlphaMask = 0xFF000000;

/// Colour of one pixel under another alpha, of which the lowest 8 bits count.
inline Word WithAlpha(Word pixel, Word alpha) {
    return (pixel & ColourMask) | alpha << 24;
}

/// Cannot exceed 255: the factors sum to 32.
inline Word Luminance(Word pixel) {
    return (16 * (pixel >> 8 & 0xFF) + 11 * (pixel >> 16 & 0xFF) + 5 * (pixel & 0xFF)) >> 5;
}

inline Word AtMost255(Word value) {
    return value < 255 ? value : 255;
}

struct Source {
    static Word Pixel(Word s, Word, Word a, Word) { return WithAlpha(s, a); }
};

struct SourceWidthAlpha {
    static Word Pixel(Word s, Word d, Word a, Word) { return s >> 24 ? WithAlpha(s, a) : d; }
};

/// What a pasted picture gets: where it is opaque or the ground is empty the pixel is copied whole,
/// its alpha not scaled by opacity. In the second case that looks like a mistake, but it is what a
/// paste is defined to do.
template <class Frame>
struct CopyOr {
    static Word Pixel(Word s, Word d, Word a, Word m) {
        const Word framed = Frame::Pixel(s, d, a, m);
        return (a == 255) | (d >> 24 == 0) ? s : framed;
    }
};

/// Alpha takes the mask's alpha, and the mask has no part in the gray.
struct SourceAlphaToGray {
    static Word Pixel(Word, Word, Word a, Word m) { return WithAlpha((a & 0xFF) * 0x010101, m); }
};

struct SourceRGBAToGray {
    static Word Pixel(Word s, Word, Word, Word) {
        const Word gray = AlphaMask | Luminance(s) * 0x010101;
        return s >> 24 ? gray : AlphaMask | ColourMask;
    }
};

struct RGBAToMask {
    static Word Pixel(Word s, Word d, Word a, Word) {
        const Word t = (d >> 24) * (255 - a) + Luminance(s) * a;
        return WithAlpha(d, t * 255 < 0xFE0100 ? t * 255 / 65025 : 255);
    }
};

struct DestinationIn {
    static Word Pixel(Word, Word d, Word a, Word) { return WithAlpha(d, (d >> 24) * a / 255); }
};

struct DestinationOut {
    static Word Pixel(Word, Word d, Word a, Word) {
        return WithAlpha(d, (255 - a) * (d >> 24) / 255);
    }
};

struct Clear {
    static Word Pixel(Word, Word d, Word a, Word) { return a ? d & ColourMask : d; }
};

struct UniteAlpha {
    static Word Pixel(Word, Word d, Word a, Word) { return WithAlpha(d, AtMost255((d >> 24) + a)); }
};

struct IntersectAlpha {
    static Word Pixel(Word, Word d, Word a, Word) {
        return WithAlpha(d, d >> 24 < a ? d >> 24 : a);
    }
};

struct SubtractAlpha {
    static Word Pixel(Word, Word d, Word a, Word) {
        return WithAlpha(d, d >> 24 > a ? (d >> 24) - a : 0);
    }
};

struct RasterAnd {
    static Word Pixel(Word s, Word d, Word a, Word) { return d & WithAlpha(s, a); }
};

struct RasterNotAnd {
    static Word Pixel(Word s, Word d, Word a, Word) { return d & ~WithAlpha(s, a); }
};

struct RasterOr {
    static Word Pixel(Word s, Word d, Word a, Word) { return d | WithAlpha(s, a); }
};

/// The luminance that a healed pixel gets.
inline int HealedLuminance(Word s, Word d, Word a) {
    return static_cast<int>(AtMost255((Luminance(s) * a + (255 - a) * Luminance(d)) / 255));
}

/// The pixel whose channels are its own offset from its luminance, weighted by `weight` of 255, on
/// top of another luminance. Alpha stays.
inline Word MoveLuminance(Word d, int luminance, int weight) {
    const int own = static_cast<int>(Luminance(d));
    const auto channel = [&](int shift) {
        const int offset = (static_cast<int>(d >> shift & 0xFF) - own) * weight / 255;
        const int moved = luminance + offset;
        const int positive = moved > 0 ? moved : 0;
        return static_cast<Word>(positive < 255 ? positive : 255) << shift;
    };
    return channel(0) | channel(8) | channel(16) | (d & AlphaMask);
}

struct Heal {
    static Word Pixel(Word s, Word d, Word a, Word) {
        return MoveLuminance(d, HealedLuminance(s, d, a), static_cast<int>(d >> 24));
    }
};

/// Heal under locked alpha paints white where there is no source.
struct HealOrWhite {
    static Word Pixel(Word s, Word d, Word a, Word m) {
        const Word healed = Heal::Pixel(s, d, a, m);
        return s >> 24 ? healed : ColourMask;
    }
};

/// Heal through a mask makes the pixel opaque, and gives its colour offset the full weight.
struct HealOpaque {
    static Word Pixel(Word s, Word d, Word a, Word) {
        return MoveLuminance(d, HealedLuminance(s, d, a), 255) | AlphaMask;
    }
};

/// How the weight of the source arises from its alpha, the mask's alpha and the opacity. The two
/// roundings through a mask differ by one for many arguments, and each mode has its own.
struct Plain {
    static Word Weight(Word sa, Word, Word opacity) { return sa * opacity >> 8; }
};

struct OneStep {
    static Word Weight(Word sa, Word m, Word opacity) { return m * (sa * opacity) / 65280; }
};

struct TwoSteps {
    static Word Weight(Word sa, Word m, Word opacity) { return m * (sa * opacity >> 8) / 255; }
};

/// Without opacity.
struct AlphaAlone {
    static Word Weight(Word sa, Word, Word) { return sa; }
};

/// Any alpha but 0 counts in full.
struct AnyAlphaFull {
    static Word Weight(Word sa, Word, Word opacity) { return sa ? opacity * 255 >> 8 : 0; }
};

enum class Lock { None, Alpha };

template <Lock lock>
inline Word Locked(Word result, Word d) {
    return lock == Lock::Alpha ? WithAlpha(result, d >> 24) : result;
}

template <class Rule>
struct WrappingForm {
    using Type = Rule;
};
template <class Formula>
struct WrappingForm<AlphaFrame<Formula>> {
    using Type = WrappingFrame<Formula>;
};
template <class Frame>
struct WrappingForm<CopyOr<Frame>> {
    using Type = CopyOr<typename WrappingForm<Frame>::Type>;
};

/// The form of a rule that holds for an opacity above 256: mostly the rule itself.
template <class Rule>
using Wrapping = typename WrappingForm<Rule>::Type;

} // namespace LXBlendRules
