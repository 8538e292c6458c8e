#pragma once

#include "LXBlurAccumulator.h"

#include <vector>

/// Accumulators of neighbouring columns, which take in rows of pixels. The results are those of
/// the single accumulators; the banks of the library's own keep their sums side by side, so that
/// many columns are worked on at a time.
template <class Accumulator>
class LXAccumulatorBank {
public:
    /// `columns` copies of an accumulator, emptied.
    LXAccumulatorBank(const Accumulator& accumulator, unsigned int columns)
        : m_accumulators(columns, accumulator) {
        for (Accumulator& a : m_accumulators)
            a.Reset();
    }

    /// A row of pixels enters.
    void Add(const LXRGBA32i* row) {
        for (Accumulator& a : m_accumulators)
            a.Add(*row++);
    }
    /// One row leaves, another enters, and the means come out.
    void Slide(const LXRGBA32i* leaving, const LXRGBA32i* entering, LXRGBA32i* result) {
        for (Accumulator& a : m_accumulators) {
            a.Subtract(*leaving++);
            a.Add(*entering++);
            a.Finalize(*result++);
        }
    }

private:
    std::vector<Accumulator> m_accumulators;
};

/// Sums in columns of the bytes of pixels, for LXRGBABlurAccumulator.
template <>
class LIBIMAGE_EXPORT LXAccumulatorBank<LXRGBABlurAccumulator> {
public:
    LXAccumulatorBank(const LXRGBABlurAccumulator& accumulator, unsigned int columns);
    void Add(const LXRGBA32i* row);
    void Slide(const LXRGBA32i* leaving, const LXRGBA32i* entering, LXRGBA32i* result);

private:
    int m_count;
    int m_filled = 0;        // rows in the windows
    std::vector<int> m_sums; // blue, green, red, alpha of each column
};

/// Sums of each channel in an array of its own, for LXRGBABlurAccumulatorPremul.
template <>
class LIBIMAGE_EXPORT LXAccumulatorBank<LXRGBABlurAccumulatorPremul> {
public:
    LXAccumulatorBank(const LXRGBABlurAccumulatorPremul& accumulator, unsigned int columns);
    void Add(const LXRGBA32i* row);
    void Slide(const LXRGBA32i* leaving, const LXRGBA32i* entering, LXRGBA32i* result);

private:
    int m_count;
    int m_filled = 0; // rows in the windows
    std::vector<int> m_blue, m_green, m_red, m_alpha;
};
