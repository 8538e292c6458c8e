#pragma once

#include "LXKernelLines.h"

#include <limits>

/// Moves the edge of a mask: alpha becomes the largest (shift > 0, growing) or the smallest
/// (shift < 0, shrinking) of the 2 |shift| + 1 pixels around it. Colours stay, and shift 0 copies.
/// Beyond the line there is nothing to grow from, and alpha 0 to shrink from: a mask shrinks away
/// from the end of its line. The members are those told at LXKernelLines; any shift will do.
class LIBIMAGE_EXPORT LXShiftEdge1D {
public:
    /// In pixels.
    explicit LXShiftEdge1D(int shift) : m_shift(shift) {}

    void SetSource(const std::vector<LXRGBA32i>* source) { m_lines.SetSource(source); }
    void SetDestination(std::vector<LXRGBA32i>* line) { m_lines.SetDestination(line); }
    void SetSourceOffset(int offset) { m_lines.SetSourceOffset(offset); }
    /// |shift|, at most 2^31 - 1.
    int Left() const { return static_cast<int>(std::min<std::int64_t>(Reach(), MaxInt)); }
    int Right() const { return Left(); }

    void operator()(int i) const {
        const std::int64_t centre = m_lines.Centre(i);
        const std::int64_t first = centre - Reach(), last = centre + Reach();
        LXRGBA32i& result = m_lines.Destination(i);
        result = m_lines.Source(centre);
        if (m_shift > 0)
            result.alpha = Extreme(first, last, result.alpha,
                                   [](std::uint8_t a, std::uint8_t b) { return std::max(a, b); });
        else if (m_shift < 0 && m_lines.Contains(first) && m_lines.Contains(last))
            result.alpha = Extreme(first, last, result.alpha,
                                   [](std::uint8_t a, std::uint8_t b) { return std::min(a, b); });
        else if (m_shift < 0)
            result.alpha = 0;
    }

private:
    static constexpr int MaxInt = std::numeric_limits<int>::max();

    std::int64_t Reach() const {
        return m_shift < 0 ? -std::int64_t(m_shift) : std::int64_t(m_shift);
    }

    /// Of `alpha` and the pixels first .. last that are in the line.
    template <class Choose>
    std::uint8_t Extreme(std::int64_t first, std::int64_t last, std::uint8_t alpha,
                         Choose choose) const {
        const std::int64_t from = std::max<std::int64_t>(first, 0);
        const std::int64_t to = std::min<std::int64_t>(last, m_lines.Last());
        for (std::int64_t p = from; p <= to; ++p)
            alpha = choose(alpha, m_lines.Source(p).alpha);
        return alpha;
    }

    int m_shift;
    LXKernelLines m_lines;
};
