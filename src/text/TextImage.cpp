#include "LXTextHelper.h"

#include "LXTileWalk.h"
#include "LXTransformImage.h"
#include "core/Truncate.h"
#include "geometry/TilePainter.h"
#include "text/RoundedRect.h"
#include "text/TilePath.h"

#include <QtGui/QPainter>

#include <algorithm>
#include <atomic>

/// Images of the text: the outline, whatever has been done to it, on new tiles.

namespace {

using Image = LXImageRGBA32i;

Image NewImage(int width, int height) {
    return Image(unsigned(std::max(width, 0)), unsigned(std::max(height, 0)));
}

QPointF Rounded(const QPointF& point) {
    return LXRoundedRect(QRectF(point, QSizeF())).topLeft();
}

} // namespace

Image LXTextHelper::CreateImage(const QPainterPath& path) const {
    return CreateImage(path, path.boundingRect());
}

Image LXTextHelper::CreateImage(const QPainterPath& path, const QRectF& rect) const {
    const QRect area = LXRoundedRect(rect);
    Image image = NewImage(area.width(), area.height());
    const LXTilePath contours(path);
    LXForTiles<Image>(LXImageRect(image), [&](const LXTileSpan& tile) {
        const QPointF corner = area.topLeft() + tile.position;
        const QPainterPath part =
            contours.Near(QRectF(corner, QSizeF(Image::TileWidth, Image::TileHeight)));
        if (part.isEmpty())
            return;
        LXDrawOnTile(image.GetTileRow(tile.row)[tile.column], corner, [&](QPainter& painter) {
            for (auto hint = m_renderHints.begin(); hint != m_renderHints.end(); ++hint)
                painter.setRenderHint(hint.key(), hint.value());
            painter.setCompositionMode(QPainter::CompositionMode_Source);
            painter.setPen(QPen(m_color));
            painter.setBrush(QBrush(m_color, Qt::SolidPattern));
            painter.setFont(m_font);
            painter.drawPath(part);
        });
    });
    return image;
}

Image LXTextHelper::TransformImage(const Image& image) const {
    const QTransform transform = m_transform.toTransform();
    const QRectF bounds = transform.mapRect(QRectF(LXImageRect(image)));
    Image result = NewImage(TruncateToInt(bounds.width()), TruncateToInt(bounds.height()));
    ::TransformImage(image, transform * QTransform::fromTranslate(-bounds.x(), -bounds.y()), result,
                     QRect());
    return result;
}

Image LXTextHelper::TransformAndCreateImage(const QPainterPath& path, const QRectF& rect,
                                            QPointF& offset) const {
    QRectF mapped;
    const QPainterPath transformed = TransformPathWithRect(path, rect, mapped, offset);
    offset = Rounded(offset);
    return CreateImage(transformed, mapped);
}

Image LXTextHelper::CreateImageByText(QPointF& offset) {
    // Counts the calls in the life of the process; nothing depends on it.
    static std::atomic<int> co{0};
    RequireTextPath();
    offset = QPointF(0, 0);
    const QPainterPath placed = TransformPath(m_textPath, m_textPath.boundingRect(), offset);
    offset = Rounded(offset);
    ++co;
    return CreateImage(placed);
}

Image LXTextHelper::CreateImageByTextWithDeformation(QPointF& offset) {
    if (m_style == 0)
        return CreateImageByText(offset);
    const QPainterPath deformed = DeformedText(offset);
    return CreateImage(TransformPath(deformed, deformed.boundingRect()));
}

// By the odd-even rule, glyphs inside the rectangle come out as holes in it.
Image LXTextHelper::CreateImageByTextWithSelection(QPointF& offset, int start, int length) {
    const QPainterPath selection = CreateSelectionPath(offset, start, length);
    if (selection.isEmpty())
        return CreateImageByText(offset);
    QPainterPath joined = m_textPath;
    joined.addPath(selection);
    const QPainterPath placed = TransformPath(joined, joined.boundingRect(), offset);
    offset = Rounded(offset);
    return CreateImage(placed);
}

// It is defined to show no selection.
Image LXTextHelper::CreateImageByTextWithSelectionAndDeformation(QPointF& offset, int, int) {
    return CreateImageByTextWithDeformation(offset);
}
