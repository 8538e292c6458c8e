#include "LXTileAccess.h"
#include "LXWrappingArithmetic.h"
#include "core/Clones.h"
#include "inpainting/BandInpaintPrivate.h"
#include "inpainting/WindowMean.h"

#include <QtCore/QScopeGuard>

/// A pass of LXInpaintIterative: where its time goes.

using namespace Inpainting;

namespace {

using Image = LXImageRGBA32i;
using Pass = LXInpaintIterative::IterateBandPixels;

/// Fills a pixel if its window lies in one tile of the image, as nearly all do.
bool FillInTile(WrittenTile& tile, Image& image, const QPoint& at, const Window& window,
                std::uint32_t rounding) {
    const unsigned int left = unsigned(at.x()) + unsigned(window.centreX - 1);
    const unsigned int top = unsigned(at.y()) + unsigned(window.centreY - 1);
    const unsigned int column = left % Image::TileWidth, row = top % Image::TileHeight;
    if (column + 2 >= Image::TileWidth || left + 2 >= image.GetWidth() ||
        row + 2 >= Image::TileHeight || top + 2 >= image.GetHeight())
        return false;
    const Pixels pixels = tile.Open(image, left / Image::TileWidth, top / Image::TileHeight);
    if (!pixels.first)
        return false;
    const int x = int(column) + 1 - window.centreX, y = int(row) + 1 - window.centreY;
    pixels.At(x, y) = WindowMean(pixels, x, y, window, rounding);
    return true;
}

} // namespace

QPoint Pass::InPicture(int x, int y) const {
    return {LXWrappingAdd(x, m_owner->offset.x()), LXWrappingAdd(y, m_owner->offset.y())};
}

LX_CLONED void Pass::Fill(int x, int y, const Window& window) const {
    const QPoint at = InPicture(x, y);
    if (FillInTile(m_owner->written, *m_owner->image, at, window, 0)) // truncated, unlike LXInpaint
        return;
    int a = 0, r = 0, g = 0, b = 0;
    ForOthers(window.centreX, window.centreY,
              [&](int dx, int dy) { Add(x + dx, y + dy, a, r, g, b); });
    m_owner->image->SetColor(at.x(), at.y(), MakeColor(a, r, g, b, 8));
}

bool Pass::Inpaint(int x, int y) const {
    const auto close = qScopeGuard([this] { m_owner->written.Close(); });
    const Window* const window = FindWindow(m_owner->Around(x, y));
    if (window)
        Fill(x, y, *window);
    return window != nullptr;
}

LX_CLONED void Pass::VisitRun(int x, int y, Run band) const {
    Hole& hole = m_owner->hole;
    Run rest = band & hole.Fillable(x, y);
    if (rest != 0)
        m_owner->filled.push_back({x, y, 0});
    // When a pixel throws, those before it have been visited, and neither it nor those after it.
    const auto end = qScopeGuard([&] {
        const Run visited = band & (First(rest) - 1); // all, if there is no rest
        const Run known = visited & hole.known.Get(x, y);
        hole.band.RemoveRun(x, y, known);
        m_changed = m_changed || known != 0;
        // Also those that could not be filled: then the next pass looks there again.
        if (visited != 0)
            AddBounds(x + int(qCountTrailingZeroBits(visited)),
                      x + RunLength - 1 - int(qCountLeadingZeroBits(visited)), y);
    });
    for (; rest != 0; rest &= rest - 1) {
        const int at = x + int(qCountTrailingZeroBits(rest));
        Fill(at, y, *FindWindow(hole.known.Around(at, y)));
        m_owner->filled.back().pixels |= First(rest);
        m_changed = true;
        ++m_filledCount;
    }
}

void Pass::Visit(int x, int y) const {
    const auto close = qScopeGuard([this] { m_owner->written.Close(); });
    if (m_owner->hole.known.Contains(x, y))
        VisitRun(RunStart(x), y, Run(1) << (x - RunStart(x)));
    else
        AddBoundPoint(x, y);
}

/// Visits the pixels of the band alone, in the order in which LXVisitImagePixel would meet them in
/// an image.
void Pass::VisitBand() const {
    const auto close = qScopeGuard([this] { m_owner->written.Close(); });
    m_owner->hole.band.ForRuns(m_owner->bandRect,
                               [this](int x, int y, Run band) { VisitRun(x, y, band); });
}
