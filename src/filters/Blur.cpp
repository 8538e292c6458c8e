#include "LXBlendOn.h"
#include "LXBlurProcessing.h"
#include "LXGaussian1D.h"
#include "LXWrappingArithmetic.h"
#include "filters/PassStages.h"

#include <QtGui/QPainter>

#include <algorithm>
#include <utility>

namespace {

/// Points of an application may lie anywhere.
QPoint Difference(const QPoint& a, const QPoint& b) {
    return {LXWrappingSubtract(a.x(), b.x()), LXWrappingSubtract(a.y(), b.y())};
}

/// QRect::operator| and operator& for rectangles that may be wider than int, which they take for
/// inverted ones.
QRect United(const QRect& a, const QRect& b) {
    if (!a.isValid() || !b.isValid())
        return a | b;
    return QRect(QPoint(std::min(a.left(), b.left()), std::min(a.top(), b.top())),
                 QPoint(std::max(a.right(), b.right()), std::max(a.bottom(), b.bottom())));
}
QRect Common(const QRect& a, const QRect& b) {
    return a.isValid() && b.isValid() ? LXClipped(a, b) : a & b;
}

/// Grows the picture in the record to what the visible rectangle asks for, at most by `margin`.
/// What lies on the picture moves with it.
template <class Radius>
QPoint GrowCanvas(LXBlurDataEx<Radius>& data, int margin) {
    const QRect imageRect = LXImageRect(data.image);
    if (data.visibleRect == imageRect)
        return data.origin;
    QRect visible = data.visibleRect;
    if (data.selectionRect.isValid())
        visible = Common(visible, LXMoved(data.selectionRect, data.selectionOffset));
    const QRect target = Common(LXGrown(imageRect, margin), United(visible, imageRect));
    if (target == imageRect)
        return data.origin;
    LXImageRGBA32i canvas(unsigned(target.width()), unsigned(target.height()));
    BlendOn(data.image, imageRect, QPainter::CompositionMode_Source, canvas,
            imageRect.translated(-target.topLeft()), 1.0, false);
    data.image = canvas;
    data.selectionOffset = Difference(data.selectionOffset, target.topLeft());
    data.reservedPoint = Difference(data.reservedPoint, target.topLeft());
    return Difference(data.origin, -target.topLeft());
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
    return {run(std::move(data)), offset};
}

LXImageAtOffset LXBoxBlurProcessing::runEx(BlurDataEx data) {
    const QPoint offset = GrowCanvas(data, std::max(data.radius, 0));
    return {run(std::move(data)), offset};
}
