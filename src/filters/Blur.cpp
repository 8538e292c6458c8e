#include "LXBlendOn.h"
#include "LXBlurProcessing.h"
#include "LXGaussian1D.h"
#include "filters/PassStages.h"

#include <QtGui/QPainter>

namespace {

/// Grows the picture in the record to what the visible rectangle asks for, at most by `margin`.
/// What lies on the picture moves with it.
template <class Radius>
QPoint GrowCanvas(LXBlurDataEx<Radius>& data, int margin) {
    const QRect imageRect = LXImageRect(data.image);
    if (data.visibleRect == imageRect)
        return data.origin;
    QRect visible = data.visibleRect;
    if (data.selectionRect.isValid())
        visible &= LXMoved(data.selectionRect, data.selectionOffset);
    const QRect target = LXGrown(imageRect, margin) & (visible | imageRect);
    if (target == imageRect)
        return data.origin;
    LXImageRGBA32i canvas(unsigned(target.width()), unsigned(target.height()));
    BlendOn(data.image, imageRect, QPainter::CompositionMode_Source, canvas,
            imageRect.translated(-target.topLeft()), 1.0, false);
    data.image = canvas;
    data.selectionOffset -= target.topLeft();
    data.reservedPoint -= target.topLeft();
    return data.origin + target.topLeft();
}

} // namespace

LXImageRGBA32i LXGaussianBlurProcessing::run(BlurData data) {
    LXFilterRun run(*this, CancelLock(), CancelFlag());
    const LXGaussian1DPremul kernel(data.radius);
    return LXStages::TwoPasses(
        run, data,
        [&](LXImageRGBA32i& image, const QRect& r) { LXStages::ConvolveH(run, kernel, image, r); },
        [&](LXImageRGBA32i& image, const QRect& r) { LXStages::ConvolveV(run, kernel, image, r); },
        [&](const QRect& place) {
            return LXGrown(place, kernel.Left(), kernel.Left(), kernel.Right(), kernel.Right());
        },
        [](const QRect& place) { return place; });
}

LXImageRGBA32i LXBoxBlurProcessing::run(BlurData data) {
    LXFilterRun run(*this, CancelLock(), CancelFlag());
    const int radius = data.radius;
    const LXRGBABlurAccumulatorPremul sums(radius);
    return LXStages::TwoPasses(
        run, data,
        [&](LXImageRGBA32i& image, const QRect& r) {
            LXStages::BoxBlurH(run, radius, sums, image, r);
        },
        [&](LXImageRGBA32i& image, const QRect& r) {
            LXStages::BoxBlurV(run, radius, sums, image, r);
        },
        [radius](const QRect& place) { return LXGrown(place, radius); },
        [](const QRect& place) { return place; });
}

LXImageAtOffset LXGaussianBlurProcessing::runEx(BlurDataEx data) {
    const QPoint offset = GrowCanvas(data, LXGaussianTaps(data.radius).Radius());
    return {run(data), offset};
}

LXImageAtOffset LXBoxBlurProcessing::runEx(BlurDataEx data) {
    const QPoint offset = GrowCanvas(data, data.radius);
    return {run(data), offset};
}
