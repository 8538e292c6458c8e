#include "LXAccumulatorBank.h"

#include "LXAccumulatorBoxBlur.h"
#include "convolution/BoxRows.h"

using PlainBank = LXAccumulatorBank<LXRGBABlurAccumulator>;
using PremulBank = LXAccumulatorBank<LXRGBABlurAccumulatorPremul>;

PlainBank::LXAccumulatorBank(const LXRGBABlurAccumulator& accumulator, unsigned int columns)
    : m_count(LXWindowSize(accumulator.Radius())), m_sums(4 * std::size_t(columns)) {}

void PlainBank::Add(const LXRGBA32i* row) {
    LXRows::AddRow(row, 1, m_sums.data(), unsigned(m_sums.size() / 4));
    m_filled = LXWrappingAdd(m_filled, 1);
}

void PlainBank::Slide(const LXRGBA32i* leaving, const LXRGBA32i* entering, LXRGBA32i* result) {
    LXRows::SlideDown(leaving, entering, m_sums.data(), {m_filled, m_count}, result,
                      unsigned(m_sums.size() / 4));
}

PremulBank::LXAccumulatorBank(const LXRGBABlurAccumulatorPremul& accumulator, unsigned int columns)
    : m_count(LXWindowSize(accumulator.Radius())), m_blue(columns), m_green(columns),
      m_red(columns), m_alpha(columns) {}

void PremulBank::Add(const LXRGBA32i* row) {
    LXRows::AddRowPremul(row, {m_blue.data(), m_green.data(), m_red.data(), m_alpha.data()},
                         unsigned(m_alpha.size()));
    m_filled = LXWrappingAdd(m_filled, 1);
}

void PremulBank::Slide(const LXRGBA32i* leaving, const LXRGBA32i* entering, LXRGBA32i* result) {
    LXRows::SlideDownPremul(leaving, entering,
                            {m_blue.data(), m_green.data(), m_red.data(), m_alpha.data()},
                            {m_filled, m_count}, result, unsigned(m_alpha.size()));
}

template class LXBlur::LXBoxBlurH<LXImageRGBA32i, LXRGBABlurAccumulator>;
template class LXBlur::LXBoxBlurV<LXImageRGBA32i, LXRGBABlurAccumulator>;
