#pragma once

#include "LXIterativeBlend.h"
#include "filters/FilterRun.h"

/// Stages that blend one image onto another. The images must live as long as the run.
namespace LXStages {

/// `source` onto `destination` in one of the modes of LXBlenders.h.
template <class Mode>
void Blend(LXFilterRun& run, const Mode& mode, const LXImageRGBA32i& source,
           LXImageRGBA32i& destination, const QRect& sourceRect, const QRect& destinationRect) {
    using Blender = LXBlend::LXBlender<LXRGBA32i, Mode>;
    using Steps = LXBlend::LXIterativeBlendImages<LXImageRGBA32i, Blender>;
    run.Add(Steps::GetIterationCount(source, destination, sourceRect, destinationRect),
            [=, &source, &destination] {
                return Steps(Blender(mode), source, destination, sourceRect, destinationRect);
            });
}

/// The same through a selection.
template <class Mode>
void BlendBySelection(LXFilterRun& run, const Mode& mode, const LXImageRGBA32i& source,
                      LXImageRGBA32i& destination, const LXImageRGBA32i& selection,
                      const QRect& sourceRect, const QRect& destinationRect,
                      const QRect& selectionRect) {
    using Blender = LXBlend::LXSelectionBlender<LXRGBA32i, Mode, LXRGBA32i>;
    using Steps = LXBlend::LXIterativeBlendBySelection<LXImageRGBA32i, Blender, LXImageRGBA32i>;
    run.Add(Steps::GetIterationCount(source, destination, selection, sourceRect, destinationRect,
                                     selectionRect),
            [=, &source, &destination, &selection] {
                return Steps(Blender(mode), source, destination, selection, sourceRect,
                             destinationRect, selectionRect);
            });
}

/// Brings a changed copy back into the picture, as far as the selection lets it through. `rect` is
/// where the selection lies in both.
inline void BringBack(LXFilterRun& run, const LXImageRGBA32i& changed, LXImageRGBA32i& image,
                      const LXImageRGBA32i& selection, const QRect& rect,
                      const QRect& selectionRect) {
    BlendBySelection(run, LXBlend::LXSourceBySelection(), changed, image, selection, rect, rect,
                     selectionRect);
}

} // namespace LXStages
