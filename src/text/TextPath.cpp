#include "LXTextHelper.h"

#include "core/Truncate.h"

#include <QtGui/QVector2D>

/// The outline of the text, its subdivision and its placing.

namespace {

/// The line ends at `to`, which is not added.
void AddPointsAlong(QPolygonF& polygon, const QPointF& from, const QPointF& to, float maxLength) {
    const QVector2D way(to - from);
    if (!(way.length() > maxLength))
        return;
    const QPointF step = (way.normalized() * maxLength).toPointF();
    const int parts = TruncateToInt(way.length() / maxLength);
    for (int i = 1; i < parts; ++i)
        polygon.append(from + i * step);
}

} // namespace

void LXTextHelper::CreateTextPath() {
    QPainterPath path;
    path.addText(QPointF(0, 0), m_font, m_text);
    path.translate(-path.boundingRect().topLeft());
    m_textRect = path.boundingRect();
    m_textPath = path;
    m_textPathDirty = false;
}

void LXTextHelper::RequireTextPath() {
    if (m_textPathDirty)
        CreateTextPath();
}

void LXTextHelper::CreateHeavyTextPath() {
    RequireTextPath();
    m_heavyPath = PreparePath(m_textPath);
    m_heavyRect = m_heavyPath.boundingRect();
    m_heavyPathDirty = false;
}

void LXTextHelper::RequireHeavyPath() {
    RequireTextPath();
    if (m_heavyPathDirty)
        CreateHeavyTextPath();
}

QPainterPath LXTextHelper::PreparePath(const QPainterPath& path) const {
    QPainterPath result;
    for (const QPolygonF& polygon : path.toSubpathPolygons(QTransform())) {
        QPolygonF divided;
        for (int i = 0; i < polygon.size(); ++i) {
            if (i > 0)
                AddPointsAlong(divided, polygon[i - 1], polygon[i], m_maxSegmentLength);
            divided.append(polygon[i]);
        }
        result.addPolygon(divided);
    }
    return result;
}

void LXTextHelper::PreparePath() {
    RequireTextPath();
    m_textPath = PreparePath(m_textPath);
}

void LXTextHelper::TransformPath(const QPainterPath& path, const QTransform& transform,
                                 QPainterPath& out) const {
    for (const QPolygonF& polygon : path.toSubpathPolygons(transform))
        out.addPolygon(polygon);
}

void LXTextHelper::TransformPathWithRect(const QPainterPath& path, const QTransform& transform,
                                         QPainterPath& out) const {
    TransformPath(path, transform, out);
}

QPainterPath LXTextHelper::TransformPath(const QPainterPath& path, const QRectF& rect) const {
    const QTransform transform = m_transform.toTransform();
    const QPointF corner = transform.mapRect(rect).topLeft();
    QPainterPath out;
    TransformPath(path, transform * QTransform::fromTranslate(-corner.x(), -corner.y()), out);
    return out;
}

QPainterPath LXTextHelper::TransformPath(const QPainterPath& path, const QRectF& rect,
                                         QPointF& offset) const {
    const QPainterPath out = TransformPath(path, rect);
    const QPointF centre = m_transform.toTransform().map(rect.center());
    offset = QPointF(rect.width() / 2, rect.height() / 2) - (centre - out.boundingRect().topLeft());
    return out;
}

QPainterPath LXTextHelper::TransformPathWithRect(const QPainterPath& path, const QRectF&) const {
    QPainterPath out;
    TransformPathWithRect(path, m_transform.toTransform(), out);
    return out;
}

QPainterPath LXTextHelper::TransformPathWithRect(const QPainterPath& path, const QRectF& rect,
                                                 QRectF& outRect, QPointF& offset) const {
    const QRectF mapped = m_transform.toTransform().mapRect(rect);
    offset = mapped.topLeft() - rect.topLeft();
    outRect = mapped; // last, as it may be the same object as rect
    return TransformPathWithRect(path, rect);
}

QPainterPath LXTextHelper::CreatePathByTextWithRect(QRectF& rect, QRectF& mappedRect, QPointF&) {
    RequireTextPath();
    rect = m_textPath.boundingRect();
    mappedRect = m_transform.toTransform().mapRect(rect);
    return m_textPath;
}
