#include "LXBlendOn.h"
#include "LXPixelFunctors.h"
#include "LXShadowProcessing.h"
#include "filters/ColorOf.h"
#include "filters/PassStages.h"

#include <QtGui/QPainter>

#include <algorithm>

namespace {

constexpr int TileSize = int(LXImageRGBA32i::TileWidth);
static_assert(LXImageRGBA32i::TileHeight == LXImageRGBA32i::TileWidth);

/// The picture's shape: the picture as far as the selection lets it through.
template <class Data>
LXImageRGBA32i CutOut(const Data& data) {
    const LXImageRGBA32i &image = data.image, &selection = data.selection;
    if (data.useSelection && (selection.GetWidth() == 0 || selection.GetHeight() == 0))
        return image;
    LXImageRGBA32i work(image.GetWidth(), image.GetHeight());
    const QRect all = LXImageRect(image);
    const QPoint origin = data.selectionOrigin;
    const QRect mask =
        LXGrown(all, origin.x(), origin.y(), -qint64(origin.x()), -qint64(origin.y()));
    BlendMaskOn(image, all, QPainter::CompositionMode_Source, work, all, 1.0, selection, mask,
                data.useSelection, false);
    return work;
}

/// The tiles that a blur can spread to on one side.
int MarginTiles(int radius) {
    return radius / TileSize + (radius % TileSize != 0);
}

/// The picture on a larger canvas: whole tiles for the blur on the left and at the top, and as many
/// as it can reach on the right and at the bottom. The tiles are shared at their new places; no
/// pixel is copied, and so the padding of edge tiles comes along.
LXImageRGBA32i GrownByTiles(const LXImageRGBA32i& image, int radius) {
    const int n = MarginTiles(radius);
    const auto grown = [radius, n](unsigned int size) {
        const qint64 last = qint64(size) - 1 + radius; // -1 for no size and no radius
        const qint64 tiles = (last < 0 ? -1 : last / TileSize) + 1 + n;
        return unsigned(std::min<qint64>(tiles * TileSize, 0xFFFFFF80));
    };
    LXImageRGBA32i result(grown(image.GetWidth()), grown(image.GetHeight()));
    const QPoint lastTile((int(image.GetWidth()) - 1) / TileSize,
                          (int(image.GetHeight()) - 1) / TileSize);
    result.TransferBlocks(image, QRect(QPoint(0, 0), lastTile), QPoint(n, n));
    return result;
}

/// What the two shadows share: the shape is changed pixel by pixel if there is no blur, and
/// otherwise grown and blurred, with the last pass doing that change as well. Returns the offset of
/// what has grown.
template <class Functor, class LastPass>
QPoint AddShape(LXFilterRun& run, LXImageRGBA32i& work, int radius, const Functor& change,
                const LastPass& lastPass) {
    if (radius <= 0) {
        LXStages::Colors(run, change, work, LXImageRect(work));
        return QPoint(0, 0);
    }
    work = GrownByTiles(work, radius);
    LXStages::BoxBlurH(run, radius, LXAlphaBlurAccumulator(radius), work, QRect());
    LXStages::BoxBlurV(run, radius, lastPass, work, QRect());
    const int margin = MarginTiles(radius) * TileSize;
    return QPoint(-margin, -margin);
}

} // namespace

LXImageAtOffset LXDropShadowProcessing::run(DropShadowData data) {
    const LXRGBA32i color = LXColorOf(data.params.color);
    const int radius = data.params.blurRadius;
    LXImageRGBA32i work = CutOut(data);
    LXFilterRun run(*this, CancelLock(), CancelFlag());
    const QPoint offset = AddShape(run, work, radius, LXColorize<LXRGBA32i>(color),
                                   LXAlphaBlurAccumulatorWithRGBColorize(radius, color));
    run.Run();
    return {work, offset};
}

LXInnerShadowProcessing::InnerShadowResult LXInnerShadowProcessing::run(InnerShadowData data) {
    const LXRGBA32i color = LXColorOf(data.params.color);
    const int radius = data.params.blurRadius;
    LXImageRGBA32i work = CutOut(data);
    LXImageRGBA32i colored = work;
    LXFilterRun run(*this, CancelLock(), CancelFlag());
    const QPoint offset = AddShape(run, work, radius, LXInvertColorAlpha<LXRGBA32i>(),
                                   LXAlphaBlurAccumulatorWithInvert(radius));
    LXStages::Colors(run, LXColorize<LXRGBA32i>(color), colored, LXImageRect(colored));
    run.Run();
    return {colored, work, offset};
}
