#pragma once

#include "LXKernelLines.h"
#include "LXWrappingArithmetic.h"

/// Three-tap kernels in integers: L, C and R are one channel of the left neighbour, the pixel and
/// the right neighbour. Alpha is a channel like the others. The members are those told at
/// LXKernelLines. Any weight is harmless: far outside its range the sums wrap around at 2^32.

/// Smoothing: (L weight + C (765 - 2 weight) + R weight + 255) / 765, truncated towards zero.
///
/// The weight is 0 .. 255, from a copy to the plain mean of three. The bias of 255 is not half of
/// 765; the slight upward lean is wanted. Nor is the result limited: above 382 the pixel counts
/// negatively, and the low byte of what comes out is stored. Neither may be tidied: that is the
/// kernel.
class LIBIMAGE_EXPORT LXSimpleBoxKernel1D {
public:
    explicit LXSimpleBoxKernel1D(int weight)
        : m_weight(weight), m_doubleWeight(LXWrappingMultiply(2, weight)) {}

    void SetSource(const std::vector<LXRGBA32i>* source) { m_lines.SetSource(source); }
    void SetDestination(std::vector<LXRGBA32i>* line) { m_lines.SetDestination(line); }
    void SetSourceOffset(int offset) { m_lines.SetSourceOffset(offset); }
    int Left() const { return 1; }
    int Right() const { return 1; }

    void operator()(int i) const {
        const std::int64_t centre = m_lines.Centre(i);
        const LXRGBA32i &l = m_lines.Source(centre - 1), &c = m_lines.Source(centre),
                        &r = m_lines.Source(centre + 1);
        m_lines.Destination(i) =
            m_weight == 0
                ? c
                : LXRGBA32i{Mixed(l.blue, c.blue, r.blue), Mixed(l.green, c.green, r.green),
                            Mixed(l.red, c.red, r.red), Mixed(l.alpha, c.alpha, r.alpha)};
    }

private:
    std::uint8_t Mixed(int l, int c, int r) const {
        const int sides = LXWrappingMultiply(l + r, m_weight);
        const int middle = LXWrappingMultiply(c, LXWrappingSubtract(765, m_doubleWeight));
        return static_cast<std::uint8_t>(LXWrappingAdd(LXWrappingAdd(sides, middle), 255) / 765);
    }

    int m_weight;
    int m_doubleWeight;
    LXKernelLines m_lines;
};

/// Sharpening: (C (1785 + 2 weight) + 765 - (L + R) weight) / 1785, truncated, within 0 .. 255.
///
/// The weight is 0 for a copy, and upwards for more; a negative one smooths.
class LIBIMAGE_EXPORT LXSimpleSharpenKernel1D {
public:
    explicit LXSimpleSharpenKernel1D(int weight)
        : m_weight(weight), m_doubleWeight(LXWrappingMultiply(2, weight)) {}

    void SetSource(const std::vector<LXRGBA32i>* source) { m_lines.SetSource(source); }
    void SetDestination(std::vector<LXRGBA32i>* line) { m_lines.SetDestination(line); }
    void SetSourceOffset(int offset) { m_lines.SetSourceOffset(offset); }
    int Left() const { return 1; }
    int Right() const { return 1; }

    void operator()(int i) const {
        const std::int64_t centre = m_lines.Centre(i);
        const LXRGBA32i &l = m_lines.Source(centre - 1), &c = m_lines.Source(centre),
                        &r = m_lines.Source(centre + 1);
        m_lines.Destination(i) =
            m_weight == 0
                ? c
                : LXRGBA32i{Sharper(l.blue, c.blue, r.blue), Sharper(l.green, c.green, r.green),
                            Sharper(l.red, c.red, r.red), Sharper(l.alpha, c.alpha, r.alpha)};
    }

private:
    std::uint8_t Sharper(int l, int c, int r) const {
        const int middle = LXWrappingMultiply(c, LXWrappingAdd(1785, m_doubleWeight));
        const int v =
            LXWrappingSubtract(LXWrappingAdd(middle, 765), LXWrappingMultiply(l + r, m_weight));
        if (v >= 256 * 1785)
            return 255;
        return static_cast<std::uint8_t>(std::max(v / 1785, 0));
    }

    int m_weight;
    int m_doubleWeight;
    LXKernelLines m_lines;
};
