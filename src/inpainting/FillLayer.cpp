#include "core/Clones.h"
#include "inpainting/InpaintPrivate.h"
#include "inpainting/Words.h"

/// A pass of LXInpaint: where its time goes.

using namespace Inpainting;

namespace {

inline void FillPixel(int x, int y, const Window& window, const Pixels& pixels) {
    pixels.At(x, y) = WindowMean(pixels, x, y, window, 4); // rounded
}

LX_CLONED void FillBand(const QRect& rect, Hole& hole, const Pixels& pixels,
                        std::vector<FilledRun>& filled) {
    hole.band.ForRuns(rect, [&](int x, int y, Run band) {
        hole.band.RemoveRun(x, y, band & hole.known.Get(x, y));
        const Run fillable = band & hole.Fillable(x, y);
        if (fillable != 0)
            filled.push_back({x, y, fillable});
        ForPixels(x, fillable,
                  [&](int at) { FillPixel(at, y, *FindWindow(hole.known.Around(at, y)), pixels); });
    });
}

} // namespace

bool LXInpaint::Private::Fill(int x, int y, const Pixels& pixels) const {
    const Window* const window = FindWindow(hole.known.Around(x, y));
    if (window)
        FillPixel(x, y, *window, pixels);
    return window != nullptr;
}

bool LXInpaint::Private::FillLayer(const Pixels& pixels) {
    std::vector<FilledRun> filled;
    FillBand(bandRect, hole, pixels, filled);
    const bool any = !filled.empty();
    hole.Close(filled);
    return any;
}
