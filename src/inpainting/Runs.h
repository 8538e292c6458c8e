#pragma once

#include <QtCore/QtAlgorithms>

#include <cstdint>

/// Sets of neighbouring pixels as bits of a word.

namespace Inpainting {

/// The pixels x .. x + 31 of a row, from bit 0 on. A run begins at a multiple of 32.
using Run = std::uint32_t;
constexpr int RunLength = 32;

constexpr int RunStart(int x) {
    return x & ~(RunLength - 1);
}

/// The same with what lies around: it begins 8 pixels earlier.
using WideRun = std::uint64_t;
constexpr int WideMargin = 8;

constexpr WideRun Widened(Run run) {
    return WideRun(run) << WideMargin;
}
constexpr Run Narrowed(WideRun run) {
    return static_cast<Run>(run >> WideMargin);
}

/// The first of its pixels.
constexpr Run First(Run run) {
    return run & (~run + 1);
}

/// visit(x) for the pixels of a run that begins at x, from left to right.
template <class Visit>
void ForPixels(int x, Run run, Visit visit) {
    for (; run != 0; run &= run - 1)
        visit(x + int(qCountTrailingZeroBits(run)));
}

/// A pixel of a mask is known if it is below 0xFF000000 as a word, whatever its colours.
constexpr bool IsKnownMark(std::uint32_t word) {
    return word < 0xFF000000;
}

} // namespace Inpainting
