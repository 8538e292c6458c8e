#include "LXImagePainter.h"

#include "LXBlendOn.h"
#include "LXFault.h"
#include "LXTileWalk.h"
#include "geometry/MaskOfImage.h"
#include "geometry/TilePainter.h"

#include <QtGui/QPainter>
#include <QtGui/QTransform>

#include <algorithm>

/// The front door of drawing: what is painted, in the lenient guard. How it gets onto tiles is told
/// in the room behind.

namespace {

/// A number that QPainter does not know would lead it beyond its tables.
void SetMode(QPainter& painter, int mode) {
    if (mode >= QPainter::CompositionMode_SourceOver && mode <= QPainter::RasterOp_NotDestination)
        painter.setCompositionMode(static_cast<QPainter::CompositionMode>(mode));
}

/// Of the width of one pixel.
QPen PenOf(const QBrush& brush) {
    return QPen(brush, 1.0, Qt::SolidLine, Qt::SquareCap, Qt::BevelJoin);
}

/// The text is laid out in the bounding box of the turned rectangle, not in the rectangle itself,
/// and yet turned afterwards: that is how it is defined.
QRectF LayoutBox(const QRectF& rect, double rotation) {
    if (rotation == 0)
        return rect;
    QTransform turn;
    turn.translate(rect.center().x(), rect.center().y());
    turn.rotate(rotation, Qt::ZAxis);
    turn.translate(-rect.center().x(), -rect.center().y());
    return turn.mapRect(rect);
}

/// As large as the destination, not the source: of a larger source no more than that is blended,
/// even where its corner lies outside. A corner beyond the far edges, where nothing is blended, is
/// brought to them, as a sum could overflow.
QRect DestinationRect(const LXImageRGBA32i& image, const QPoint& position) {
    const QRect all = LXImageRect(image);
    return QRect(QPoint(std::min(position.x(), all.width()), std::min(position.y(), all.height())),
                 all.size());
}

} // namespace

void DrawPath(LXImageRGBA32i& image, int mode, const QPainterPath& path, const QPen& pen) {
    LXFault::LenientGuard(LX_SITE, [&] {
        LXDrawOnTiles(image, [&](QPainter& painter) {
            SetMode(painter, mode);
            painter.setBrush(Qt::NoBrush);
            painter.setPen(pen);
            painter.drawPath(path);
        });
    });
}

void FillPath(LXImageRGBA32i& image, int mode, const QPainterPath& path, const QBrush& brush,
              bool outline) {
    LXFault::LenientGuard(LX_SITE, [&] {
        LXDrawOnTiles(image, [&](QPainter& painter) {
            painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
            SetMode(painter, mode);
            painter.fillPath(path, brush);
            if (!outline)
                return;
            painter.setPen(PenOf(brush));
            painter.drawPath(path);
        });
    });
}

void DrawText(LXImageRGBA32i& image, int mode, double opacity, const QRectF& rect,
              const QString& text, const QBrush& brush, const QFont& font, double rotation,
              const QTextOption& option) {
    LXFault::LenientGuard(LX_SITE, [&] {
        const QRectF box = LayoutBox(rect, rotation);
        LXDrawOnTiles(image, [&](QPainter& painter) {
            painter.setFont(font);
            painter.setOpacity(opacity);
            painter.setPen(PenOf(brush));
            SetMode(painter, mode);
            painter.translate(rect.center());
            painter.rotate(rotation);
            painter.translate(-rect.center());
            painter.drawText(box, text, option);
        });
    });
}

void DrawImage(LXImageRGBA32i& image, int mode, const QPoint& position,
               const LXImageRGBA32i& source, double opacity, bool lockAlpha) {
    LXFault::LenientGuard(LX_SITE, [&] {
        BlendOn(source, LXImageRect(source), unsigned(mode), image,
                DestinationRect(image, position), opacity, lockAlpha);
    });
}

void DrawImage(LXImageRGBA32i& image, int mode, const QPoint& position, const QImage& source,
               double opacity, bool lockAlpha) {
    LXFault::LenientGuard(LX_SITE, [&] {
        BlendOn(source, source.rect(), unsigned(mode), image, DestinationRect(image, position),
                opacity, lockAlpha);
    });
}

void InvertImage(LXImageRGBA32i& image, unsigned int channels) {
    const auto bits = [channels](unsigned int bit) -> std::uint8_t {
        return (channels & bit) != 0 ? 0xFF : 0;
    };
    LXFault::LenientGuard(LX_SITE, [&] {
        LXMasks::Complement(image, {bits(4), bits(2), bits(1), bits(8)});
    });
}

void CreateRevealAllMask(LXImageRGBA32i& mask, const LXImageRGBA32i& source) {
    LXFault::LenientGuard(LX_SITE, [&] { mask = LXMasks::Uniform(source, {0, 0, 0, 255}); });
}

void CreateHideAllMask(LXImageRGBA32i& mask, const LXImageRGBA32i& source) {
    LXFault::LenientGuard(LX_SITE, [&] { mask = LXMasks::Uniform(source, {0, 0, 0, 0}); });
}

void CreateFromTransparancyMask(LXImageRGBA32i& mask, const LXImageRGBA32i& source) {
    LXFault::LenientGuard(LX_SITE, [&] { mask = LXMasks::FromAlpha(source); });
}

void CreateFromSourceMask(LXImageRGBA32i& mask, const LXImageRGBA32i& source) {
    LXFault::LenientGuard(LX_SITE, [&] { mask = LXMasks::FromBrightness(source); });
}
