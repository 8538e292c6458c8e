#include "LXSharpenProcessing.h"
#include "LXSimpleKernel1D.h"
#include "filters/PassStages.h"

namespace {

/// Lines reach one pixel beyond the selection, so that columns find their neighbours done.
template <class Kernel, class RectV>
LXImageRGBA32i RunThreeTap(LXFilterRun& run, LXThreeTapData& data, RectV rectV) {
    const Kernel kernel(data.amount);
    return LXStages::TwoPasses(
        run, data,
        [&](LXImageRGBA32i& image, const QRect& r) { LXStages::ConvolveH(run, kernel, image, r); },
        [&](LXImageRGBA32i& image, const QRect& r) { LXStages::ConvolveV(run, kernel, image, r); },
        [](const QRect& place) { return LXGrown(place, 1); }, rectV);
}

} // namespace

/// The columns of smoothing go two pixels beyond the selection on the right and at the bottom, and
/// none on the left and at the top, unlike those of sharpening. The selection hides what lies
/// outside it, but the steps are counted and reported: that is how the filter is defined.
LXImageRGBA32i LXSmoothenProcessing::run(SmoothenData data) {
    LXFilterRun run(*this, CancelLock(), CancelFlag());
    return RunThreeTap<LXSimpleBoxKernel1D>(
        run, data, [](const QRect& place) { return LXGrown(place, 0, 0, 2, 2); });
}

LXImageRGBA32i LXSharpenProcessing::run(SharpenData data) {
    LXFilterRun run(*this, CancelLock(), CancelFlag());
    return RunThreeTap<LXSimpleSharpenKernel1D>(run, data,
                                                [](const QRect& place) { return place; });
}
