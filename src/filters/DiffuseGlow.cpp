#include "LXDiffuseGlowProcessing.h"

#include "LXGaussian1D.h"
#include "LXWrappingArithmetic.h"
#include "filters/ColorOf.h"
#include "filters/PassStages.h"

bool LXDiffuseGlowProcessing::Params::operator==(const Params& other) const {
    return opacity == other.opacity && radius == other.radius && threshold == other.threshold &&
           color == other.color && mode == other.mode;
}

LXImageRGBA32i LXDiffuseGlowProcessing::run(DiffuseGlowData data) {
    using namespace LXStages;
    const Params& params = data.params;
    const LXGaussianAlpha1D kernel{double(params.radius)};
    const LXColorizeThreshold bright(params.threshold, LXColorOf(params.color));
    const int opacity = LXWrappingMultiply(params.opacity, 256) / 100;
    const bool selected = data.selectionRect.isValid();
    const QRect place = LXMoved(data.selectionRect, data.selectionOffset);
    const qint64 left = 2 * qint64(kernel.Left()), right = 2 * qint64(kernel.Right());

    // The glow is always made in a copy. A whole picture is the null rectangle for the passes over
    // lines, but not for those over tiles.
    LXImageRGBA32i glow = data.image;
    const QRect lines = selected ? LXGrown(place, left, left, right, right) : QRect();
    const QRect tiles = selected ? lines : LXImageRect(glow);

    LXFilterRun run(*this, CancelLock(), CancelFlag());
    Colors(run, bright, glow, tiles);
    ConvolveH(run, kernel, glow, lines);
    ConvolveV(run, kernel, glow, lines);
    Colors(run, LXAlphaThreshold(params.threshold), glow, tiles);
    ConvolveH(run, kernel, glow, lines);
    ConvolveV(run, kernel, glow, lines);
    const auto blend = [&](const auto& mode, const auto& modeBySelection) {
        if (selected)
            BlendBySelection(run, modeBySelection, glow, data.image, data.selection, place, place,
                             data.selectionRect);
        else
            Blend(run, mode, glow, data.image, QRect(), QRect());
    };
    if (params.mode == 0)
        blend(LXBlend::LXSourceOver<true>(opacity),
              LXBlend::LXSourceOverBySelection<true>(opacity));
    else
        blend(LXBlend::LXDestinationOver<false>(opacity),
              LXBlend::LXDestinationOverBySelection<false>(opacity));
    run.Run();
    return data.image;
}
