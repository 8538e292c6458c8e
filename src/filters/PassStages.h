#pragma once

#include "LXBoxBlurIterative.h"
#include "LXIterativeConvolve.h"
#include "LXTransformImageColorsIterative.h"
#include "filters/BlendStages.h"

/// Stages that change one image in place. It must live as long as the run.
namespace LXStages {

template <class Kernel>
void ConvolveH(LXFilterRun& run, const Kernel& kernel, LXImageRGBA32i& image, const QRect& rect) {
    run.Add(LXStepCount::Lines(image, rect), [=, &image] {
        return LXBlur::LXIterativeConvolveH<LXImageRGBA32i, Kernel>(kernel, image, rect);
    });
}

template <class Kernel>
void ConvolveV(LXFilterRun& run, const Kernel& kernel, LXImageRGBA32i& image, const QRect& rect) {
    run.Add(LXStepCount::Columns(image, rect), [=, &image] {
        return LXBlur::LXIterativeConvolveV<LXImageRGBA32i, Kernel>(kernel, image, rect);
    });
}

template <class Wrapper = void, class Accumulator>
void BoxBlurH(LXFilterRun& run, int radius, const Accumulator& accumulator, LXImageRGBA32i& image,
              const QRect& rect) {
    using Steps = LXBlur::LXBoxBlurIterativeH<LXImageRGBA32i, Accumulator, Wrapper>;
    run.Add(LXStepCount::Lines(image, rect),
            [=, &image] { return Steps(radius, accumulator, image, rect); });
}

template <class Wrapper = void, class Accumulator>
void BoxBlurV(LXFilterRun& run, int radius, const Accumulator& accumulator, LXImageRGBA32i& image,
              const QRect& rect) {
    using Steps = LXBlur::LXBoxBlurIterativeV<LXImageRGBA32i, Accumulator, Wrapper>;
    run.Add(LXStepCount::Columns(image, rect),
            [=, &image] { return Steps(radius, accumulator, image, rect); });
}

/// Each pixel for itself, tile by tile.
template <class Functor>
void Colors(LXFilterRun& run, const Functor& functor, LXImageRGBA32i& image, const QRect& rect) {
    run.Add(LXStepCount::Tiles(image, rect), [=, &image] {
        return LXTransformImageColorsIterative<LXImageRGBA32i, Functor>(functor, image, rect);
    });
}

/// A pass along lines and one along columns. Without a selection they work on the picture itself,
/// with the null rectangle; with one on a copy, each on what its function makes of the selection's
/// place, and the copy is brought back through the selection.
template <class Data, class PassH, class PassV, class RectH, class RectV>
LXImageRGBA32i TwoPasses(LXFilterRun& run, Data& data, PassH passH, PassV passV, RectH rectH,
                         RectV rectV) {
    if (!data.selectionRect.isValid()) {
        passH(data.image, QRect());
        passV(data.image, QRect());
        run.Run();
        return data.image;
    }
    const QRect place = LXMoved(data.selectionRect, data.selectionOffset);
    LXImageRGBA32i work = data.image;
    passH(work, rectH(place));
    passV(work, rectV(place));
    BringBack(run, work, data.image, data.selection, place, data.selectionRect);
    run.Run();
    return data.image;
}

} // namespace LXStages
