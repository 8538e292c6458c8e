#include "geometry/Resampling.h"

#include "LXAccumulatorBoxBlur.h"
#include "LXBlurAccumulator.h"
#include "LXTileWalk.h"
#include "LXTransformImagePixel.h"
#include "core/Snapshot.h"
#include "core/Truncate.h"
#include "geometry/SourceTiles.h"

#include <optional>

namespace {

using Image = LXImageRGBA32i;

/// What a transformation works on.
struct Task {
    QTransform inverse;
    QRect area; ///< of the destination; empty if there is nothing to do
};

/// None if the transform has no inverse.
std::optional<Task> Prepare(const Image& source, const QTransform& transform,
                            const Image& destination, const QRect& rect) {
    if (source.GetWidth() == 0 || source.GetHeight() == 0)
        return Task{};
    bool isInvertible = false;
    const QTransform inverse = transform.inverted(&isInvertible);
    if (!isInvertible)
        return {};
    const QRect mapped = transform.mapRect(rect.isValid() ? rect : LXImageRect(source));
    return Task{inverse, mapped.isEmpty() ? QRect() : mapped & LXImageRect(destination)};
}

template <class Sampling>
void Sample(const Image& source, const Task& task, Image& destination) {
    const Sampling sampling(source, task.inverse);
    LXForTiles<Image>(task.area, [&](const LXTileSpan& span) {
        const QRect part(span.position, span.local.size());
        LXPrefetch(source, task.inverse.mapRect(QRectF(part)));
        LXTransformImagePixel<Image, Sampling>()(destination, part, sampling);
    });
}

/// Of the bounding box of the whole source: rotation enlarges it.
struct Scale {
    Scale(const Image& source, const QTransform& transform) {
        const QRectF box(0, 0, source.GetWidth(), source.GetHeight());
        const QRectF mapped = transform.mapRect(box);
        x = mapped.width() / box.width();
        y = mapped.height() / box.height();
    }

    double x, y;
};

/// Blurs along the axis of `Blur` if it shrinks.
template <template <class, class> class Blur>
void Prefilter(Image& image, double scale, int passes) {
    if (!(scale < 1))
        return;
    const int radius = TruncateToInt(1 / scale * 0.5 + 0.5);
    Blur<Image, LXRGBABlurAccumulator> blur(radius, LXRGBABlurAccumulator(radius));
    for (int pass = 0; pass < passes; ++pass)
        blur(image, LXImageRect(image));
}

/// Enlarged or hardly reduced, the source is sampled itself. Otherwise a copy of it is blurred
/// along the axes that shrink, in `passes` passes each; if that is both, interpolation adds
/// nothing.
template <class Sampling>
bool Interpolate(const Image& source, const QTransform& transform, Image& destination,
                 const QRect& rect, int passes) {
    const std::optional<Task> task = Prepare(source, transform, destination, rect);
    if (!task)
        return false;
    if (task->area.isEmpty())
        return true;
    const LXSnapshot from(source, destination);
    const Scale scale(*from, transform);
    if (scale.x > 0.5 && scale.y > 0.5) {
        Sample<Sampling>(*from, *task, destination);
        return true;
    }
    Image blurred(*from);
    Prefilter<LXBlur::LXBoxBlurH>(blurred, scale.x, passes);
    Prefilter<LXBlur::LXBoxBlurV>(blurred, scale.y, passes);
    if (scale.x < 1 && scale.y < 1)
        Sample<LXNearestNeighbourTransformation>(blurred, *task, destination);
    else
        Sample<Sampling>(blurred, *task, destination);
    return true;
}

} // namespace

bool LXResampling::Nearest(const Image& source, const QTransform& transform, Image& destination,
                           const QRect& rect) {
    const std::optional<Task> task = Prepare(source, transform, destination, rect);
    if (!task)
        return false;
    const LXSnapshot from(source, destination);
    Sample<LXNearestNeighbourTransformation>(*from, *task, destination);
    return true;
}

bool LXResampling::Bilinear(const Image& source, const QTransform& transform, Image& destination,
                            const QRect& rect) {
    return Interpolate<LXBilinearTransformation>(source, transform, destination, rect, 1);
}

bool LXResampling::Bicubic(const Image& source, const QTransform& transform, Image& destination,
                           const QRect& rect) {
    return Interpolate<LXBicubicTransformation>(source, transform, destination, rect, 3);
}
