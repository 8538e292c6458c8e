#pragma once

#include "inpainting/Runs.h"
#include "inpainting/Windows.h"

#include <QtCore/QRect>

#include <algorithm>
#include <cstring>
#include <vector>

namespace Inpainting {

/// A set of pixels of an area, one bit for each; empty at first. Pixels up to two outside the area
/// may be asked for, and are never in it.
class BitPlane {
public:
    explicit BitPlane(const QRect& area)
        : m_area(area), m_stride((area.width() + 2 * RunLength) / 8 + int(sizeof(WideRun))),
          m_origin((area.top() - Margin) * m_stride + (RunStart(area.left()) - WideMargin) / 8),
          m_bytes(std::size_t(m_stride * (area.height() + 2 * Margin))) {}

    bool Contains(int x, int y) const {
        return x >= m_area.left() && x <= m_area.right() && y >= m_area.top() &&
               y <= m_area.bottom();
    }

    bool Has(int x, int y) const { return (At(x, y)[0] >> Shift(x) & 1) != 0; }
    void Add(int x, int y) { At(x, y)[0] |= static_cast<std::uint8_t>(1U << Shift(x)); }
    void Remove(int x, int y) { At(x, y)[0] &= static_cast<std::uint8_t>(~(1U << Shift(x))); }

    void AddAll() {
        for (int y = m_area.top(); y <= m_area.bottom(); ++y)
            for (int x = m_area.left(); x <= m_area.right(); ++x)
                if (Shift(x) == 0 && x + 7 <= m_area.right())
                    At(x, y)[0] = 0xFF, x += 7;
                else
                    Add(x, y);
    }

    /// Which pixels around one are in the set.
    Surroundings Around(int x, int y) const {
        const std::uint8_t* bytes = At(x - Margin, y - Margin);
        Surroundings found = 0;
        for (int row = 0; row < 25; row += 5, bytes += m_stride)
            found |= (Load<Surroundings>(bytes) >> Shift(x - Margin) & 31) << row;
        return found;
    }

    /// Those of the run that begins at x.
    Run Get(int x, int y) const { return Load<Run>(At(x, y)); }
    void Put(int x, int y, Run run) { Store(At(x, y), run); }
    WideRun GetWide(int x, int y) const { return Load<WideRun>(At(x - WideMargin, y)); }
    void PutWide(int x, int y, WideRun run) { Store(At(x - WideMargin, y), run); }

    /// visit(x, run) for the runs with pixels first .. last of a row that are in the set: these
    /// only.
    template <class Visit>
    void ForRuns(int first, int last, int y, Visit visit) const {
        const std::uint8_t* bytes = At(RunStart(first), y);
        for (int x = RunStart(first); x <= last; x += RunLength, bytes += sizeof(Run)) {
            Run found = Load<Run>(bytes);
            if (found == 0)
                continue;
            found &= ~Run(0) << std::max(first - x, 0);
            found &= ~Run(0) >> std::max(x + RunLength - 1 - last, 0);
            if (found != 0)
                visit(x, found);
        }
    }

private:
    static constexpr int Margin = 2;

    template <class Word>
    static Word Load(const std::uint8_t* bytes) {
        Word word;
        std::memcpy(&word, bytes, sizeof word);
        return word;
    }
    template <class Word>
    static void Store(std::uint8_t* bytes, Word word) {
        std::memcpy(bytes, &word, sizeof word);
    }

    static unsigned int Shift(int x) { return unsigned(x) & 7; }
    /// Rows of whole runs, with the margins that they and windows reach into.
    std::ptrdiff_t Index(int x, int y) const { return y * m_stride + (x >> 3) - m_origin; }
    const std::uint8_t* At(int x, int y) const { return m_bytes.data() + Index(x, y); }
    std::uint8_t* At(int x, int y) { return m_bytes.data() + Index(x, y); }

    QRect m_area;
    std::ptrdiff_t m_stride, m_origin;
    std::vector<std::uint8_t> m_bytes;
};

} // namespace Inpainting
