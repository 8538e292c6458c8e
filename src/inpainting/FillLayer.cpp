#include "core/Clones.h"
#include "inpainting/InpaintPrivate.h"

#include <QtCore/QtAlgorithms>

/// A pass of LXInpaint: where its time goes.

using namespace Inpainting;

namespace {

LX_CLONED bool FillPixel(int x, int y, const BitPlane& known, const Pixels& pixels) {
    const Window* const window = FindWindow(known.Around(x, y));
    if (!window)
        return false;
    ChannelSums sums;
    const QRgb* row = &pixels.At(x + window->centreX - 1, y + window->centreY - 1);
    for (int i = 0; i < 3; ++i, row += pixels.stride)
        sums.Add(row[0]), sums.Add(row[1]), sums.Add(row[2]);
    sums.Remove(pixels.At(x, y));
    pixels.At(x, y) = sums.Eighth(4); // rounded
    return true;
}

/// Takes the neighbours of a filled pixel into the band, and has those already in it tried again.
LX_CLONED void Wake(int x, int y, BitPlane& outside, BitPlane& waiting,
                    std::vector<QPoint>& toTry) {
    Surroundings woken = outside.TakeAround(x, y, Neighbours) | waiting.TakeAround(x, y, AllAround);
    for (; woken != 0; woken &= woken - 1) {
        const int bit = int(qCountTrailingZeroBits(woken));
        toTry.emplace_back(x + bit % 5 - 2, y + bit / 5 - 2);
    }
}

} // namespace

bool LXInpaint::Private::Fill(int x, int y, const Pixels& pixels) const {
    return FillPixel(x, y, known, pixels);
}

/// What is known changes after all pixels were tried, so that all of a layer see the same, whatever
/// the order.
void LXInpaint::Private::FillLayer(const Pixels& pixels) {
    std::vector<QPoint> layer;
    for (const QPoint& p : toTry) {
        if (FillPixel(p.x(), p.y(), known, pixels))
            layer.push_back(p);
        else
            waiting.Add(p.x(), p.y());
    }
    toTry.clear();
    for (const QPoint& p : layer) {
        known.Add(p.x(), p.y());
        Wake(p.x(), p.y(), outside, waiting, toTry);
    }
}
