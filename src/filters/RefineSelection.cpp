#include "LXShiftEdge1D.h"
#include "RMRefineSelectionProcessing.h"
#include "core/Truncate.h"
#include "filters/PassStages.h"

#include <algorithm>

namespace {

/// The mask's rectangle on the canvas, with room for what it grows by.
QRect TargetOnCanvas(const RMRefineSelectionProcessing::RefineSelectionData& data, qint64 margin) {
    const QRect mask = LXMoved(LXImageRect(data.image), data.position);
    const QRect grown = LXGrown(mask, margin), canvas(QPoint(0, 0), data.canvasSize);
    return grown.isValid() && canvas.isValid() ? canvas & grown : QRect();
}

void AddShift(LXFilterRun& run, int shift, LXImageRGBA32i& result) {
    LXStages::ConvolveH(run, LXShiftEdge1D(shift), result, QRect());
    LXStages::ConvolveV(run, LXShiftEdge1D(shift), result, QRect());
}

/// Three boxes for a gaussian. Beyond the target there is no mask, so that it fades there.
void AddSmoothing(LXFilterRun& run, int radius, LXImageRGBA32i& result) {
    using Nothing = LXBlur::LXRGBA32iColorWrapper<0U>;
    const LXAlphaBlurAccumulator sums(radius);
    for (int round = 0; round < 3; ++round) {
        LXStages::BoxBlurH<Nothing>(run, radius, sums, result, QRect());
        LXStages::BoxBlurV<Nothing>(run, radius, sums, result, QRect());
    }
}

} // namespace

LXImageAtOffset RMRefineSelectionProcessing::run(RefineSelectionData data) {
    const double smoothRadius = data.params.smoothRadius;
    const int shift = data.params.shift;
    if (!data.selectionRect.isValid())
        return {};
    if (smoothRadius == 0 && shift == 0)
        return {data.image, data.position};

    LXFilterRun run(*this, CancelLock(), CancelFlag());
    if (smoothRadius == 0 && shift < 0) { // a mask that shrinks needs no room
        AddShift(run, shift, data.image);
        run.Run();
        return {data.image, data.position};
    }
    // The room follows the radius as it is, but the boxes its whole part: below 1 they smooth
    // nothing.
    const qint64 smoothing = smoothRadius == 0 ? 0 : TruncateToInt(smoothRadius * 3.0 + 1.0);
    const QRect target = TargetOnCanvas(data, std::max(shift, 0) + smoothing);
    LXImageRGBA32i result(unsigned(target.width()), unsigned(target.height()));
    const QPoint at = data.position;
    LXStages::Blend(run, LXBlend::LXSource<false>(), data.image, result,
                    LXGrown(target, at.x(), at.y(), -qint64(at.x()), -qint64(at.y())),
                    LXImageRect(result));
    if (smoothRadius != 0)
        AddSmoothing(run, TruncateToInt(smoothRadius), result);
    if (shift != 0)
        AddShift(run, shift, result);
    run.Run();
    return {result, target.topLeft()};
}
