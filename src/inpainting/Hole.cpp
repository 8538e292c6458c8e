#include "inpainting/Hole.h"

#include "core/Clones.h"

using namespace Inpainting;

namespace {

inline Run UnknownBits(const std::uint32_t* marks, int count) {
    Run unknown = 0;
    for (int i = 0; i < count; ++i)
        unknown |= IsKnownMark(marks[i]) ? 0 : Run(1) << i;
    return unknown;
}

/// Which of up to 32 marks are unknown. A constant has the compiler take them side by side.
LX_CLONED Run UnknownOf(const std::uint32_t* marks, int count) {
    return count == RunLength ? UnknownBits(marks, RunLength) : UnknownBits(marks, count);
}

/// visit(x, run) for the runs of a row of `count` marks from x on: the pixels that are not known.
template <class Visit>
void ForMarks(const std::uint32_t* marks, int x, int count, Visit visit) {
    for (const int end = x + count; x < end;) {
        const int start = RunStart(x), length = std::min(start + RunLength, end) - x;
        visit(start, UnknownOf(marks, length) << (x - start));
        x += length;
        marks += length;
    }
}

} // namespace

Hole::Hole(const QRect& rect) : area(rect), known(rect), markable(rect), band(rect) {
    known.AddAll();
}

void Hole::Open(const std::uint32_t* marks, int left, int y, int count) {
    ForMarks(marks, left, count, [&](int x, Run unknown) {
        known.Put(x, y, known.Get(x, y) & ~unknown);
        markable.Put(x, y, markable.Get(x, y) | unknown);
    });
}

void Hole::AddToBand(const std::uint32_t* marks, int left, int y, int count) {
    ForMarks(marks, left, count, [&](int x, Run marked) { band.AddRun(x, y, marked); });
}

void Hole::AddLone() {
    for (int y = area.top(); y <= area.bottom(); ++y)
        for (int x = RunStart(area.left()); x <= area.right(); x += RunLength) {
            const auto row = [&](int dy) { return known.GetWide(x, y + dy); };
            const WideRun lone = AreSurrounded(row(-1), row(0), row(1));
            band.AddRun(x, y, markable.Get(x, y) & Narrowed(lone));
        }
}

void Hole::Close(std::vector<FilledRun>& filled) {
    for (const FilledRun& run : filled)
        band.MarkAround(run.x, run.y, run.pixels, markable);
    for (const FilledRun& run : filled) {
        known.Put(run.x, run.y, known.Get(run.x, run.y) | run.pixels);
        markable.Put(run.x, run.y, markable.Get(run.x, run.y) & ~run.pixels);
    }
    filled.clear();
}
