#include "LXBlendOn.h"
#include "LXGaussian1D.h"
#include "LXHighPassProcessing.h"
#include "core/Truncate.h"
#include "filters/PassStages.h"

#include <QtCore/QReadLocker>
#include <QtCore/QWriteLocker>
#include <QtGui/QPainter>

namespace {

/// The stages that make the difference of the picture and its blur in `work`: the picture less the
/// blur, around 128, with the alpha of the blur.
void AddDifference(LXFilterRun& run, const LXGaussian1DPremul& kernel, const LXImageRGBA32i& image,
                   LXImageRGBA32i& work, const QRect& rectH, const QRect& rect) {
    LXStages::ConvolveH(run, kernel, work, rectH);
    LXStages::ConvolveV(run, kernel, work, rect);
    LXStages::Blend(run, LXBlend::LXSubtractRGBSrcByDst(128), image, work, rect, rect);
}

/// The part of the range that is left for what follows the steps. Below 100 steps it differs for
/// the two kinds of run: `least` is 1 without and 2 with a selection, one for each thing that
/// follows.
int ExtraRange(int total, int least) {
    return total >= 100 ? total / 100 : least;
}

struct Cache {
    QReadWriteLock& lock;
    double& radius;
    LXImageRGBA32i& result;

    /// The result for this radius, if it is there.
    bool Find(double wanted, LXImageRGBA32i& found) const {
        const QReadLocker locker(&lock);
        if (!(radius == wanted))
            return false;
        found = result;
        return true;
    }
    void Store(const LXImageRGBA32i& image, double newRadius, const LXImageRGBA32i& made) const {
        if (image.GetWidth() == 0 || image.GetHeight() == 0)
            return;
        const QWriteLocker locker(&lock);
        result = made; // first, as it may throw: the radius is what makes it valid
        radius = newRadius;
    }
};

} // namespace

unsigned int LXHighPassProcessing::IndexToMode(int index) {
    constexpr unsigned int modes[] = {
        QPainter::CompositionMode_SourceOver, QPainter::CompositionMode_Overlay,
        QPainter::CompositionMode_SoftLight, QPainter::CompositionMode_HardLight};
    return unsigned(index) < 4 ? modes[index] : modes[0];
}

LXImageRGBA32i LXHighPassProcessing::run(HighPassData data) {
    const Cache cache{*m_cacheLock, *m_cachedRadius, *m_cachedResult};
    const double radius = data.params.radius, opacity = data.params.opacity / 100.0;
    const unsigned int mode = IndexToMode(data.params.modeIndex);
    const bool selected = data.selectionRect.isValid();
    const QRect place = LXMoved(data.selectionRect, data.selectionOffset);
    LXImageRGBA32i work = data.image, difference(0, 0);

    LXFilterRun run(*this, CancelLock(), CancelFlag());
    int range = 2;
    if (cache.Find(radius, difference)) {
        SetRange(0, range);
        SetProgressValue(1);
    } else if (selected) {
        // Lines are blurred int(radius) beyond the selection, though the kernel reaches three times
        // as far: columns near its border take in lines that are not. That is how it is defined.
        const QRect rectH =
            LXGrown(place, -qint64(TruncateToInt(-radius)), -qint64(TruncateToInt(-radius)),
                    TruncateToInt(radius), TruncateToInt(radius));
        AddDifference(run, LXGaussian1DPremul(radius), data.image, work, rectH, place);
        const int extra = ExtraRange(run.Steps(), 2), middle = run.Steps() + extra / 2;
        range = run.Steps() + extra;
        run.AddAction([&, middle] {
            difference = LXImageRGBA32i(unsigned(place.width()), unsigned(place.height()));
            BlendMaskOn(work, place, QPainter::CompositionMode_Source, difference,
                        LXImageRect(difference), 1.0, data.selection, data.selectionRect, false,
                        false);
            cache.Store(data.image, radius, difference);
            SetProgressValue(middle);
        });
        SetRange(0, range);
    } else {
        AddDifference(run, LXGaussian1DPremul(radius), data.image, work, QRect(), QRect());
        range = run.Steps() + ExtraRange(run.Steps(), 1);
        run.AddAction([&] {
            difference = work;
            cache.Store(data.image, radius, difference);
        });
        SetRange(0, range);
    }
    run.AddAction([&, range] {
        if (selected)
            BlendMaskOn(difference, LXImageRect(difference), mode, data.image, place, opacity,
                        data.selection, data.selectionRect, false, false);
        else
            BlendOn(difference, LXImageRect(difference), mode, data.image, LXImageRect(data.image),
                    opacity, false);
        SetProgressValue(range);
    });
    run.RunStages();
    return data.image;
}
