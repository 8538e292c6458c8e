#include "compositing/Drivers.h"

#include "LXTileAccess.h"
#include "LXTileWalk.h"
#include "compositing/BlendOnTileHelper.h"
#include "compositing/BlendTable.h"
#include "compositing/Overlap.h"
#include "core/Snapshot.h"

#include <algorithm>

/// Blends from a QImage, which has no tiles.

void LXDrivers::Blend(const QImage& source, const QRect& sourceRect, unsigned int mode,
                      LXImageRGBA32i& destination, const QRect& destinationRect, double opacity,
                      bool lockAlpha) {
    const LXOverlap overlap =
        LXReduce(source.size(), sourceRect, SizeOf(destination), destinationRect, opacity);
    const auto kernel = LXFindBlendMode(mode).image(lockAlpha);
    LXForTiles<LXImageRGBA32i>(overlap.target, [&](const LXTileSpan& span) {
        const LXTileWriter to(destination.GetTileRow(span.row)[span.column]);
        const QPoint from = span.position - overlap.shift;
        if (to.Pixels())
            kernel(source, to.Pixels(), from.x(), from.y(), span.local.left(), span.local.top(),
                   span.local.width(), span.local.height(), overlap.opacity);
    });
}

namespace {

/// The size of a picture whose format nobody has checked, when its bytes are taken for pixels of 4
/// bytes: it ends where its memory does.
QSize SizeInPixels(const QImage& image) {
    const qint64 rowBytes = qint64(image.width()) * 4;
    const qint64 rows = rowBytes > 0 ? qint64(image.sizeInBytes()) / rowBytes : 0;
    return QSize(image.width(), int(std::min<qint64>(rows, image.height())));
}

} // namespace

void LXDrivers::BlendMask(const QImage& source, const QRect& sourceRect, unsigned int mode,
                          LXImageRGBA32i& destination, const QRect& destinationRect, double opacity,
                          const LXImageRGBA32i& mask, const QRect& maskRect, bool outsideBlends,
                          bool lockAlpha) {
    const LXOverlap overlap =
        LXReduce(SizeInPixels(source), sourceRect, SizeOf(destination), destinationRect, opacity);
    if (overlap.target.isEmpty())
        return;
    const auto kernel = LXFindBlendMode(mode).maskedImage(lockAlpha);
    const LXSnapshot through(mask, destination);
    const qint64 dx = qint64(maskRect.left()) - destinationRect.left();
    const qint64 dy = qint64(maskRect.top()) - destinationRect.top();
    LXForTiles<LXImageRGBA32i>(overlap.target, [&](const LXTileSpan& span) {
        const LXTileWriter to(destination.GetTileRow(span.row)[span.column]);
        const LXBlendOnTileHelper helper(kernel, source, overlap, *through, dx, dy, outsideBlends,
                                         to.Pixels());
        if (to.Pixels())
            helper.Blend(QRect(span.position, span.local.size()));
    });
}
