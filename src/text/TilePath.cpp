#include "text/TilePath.h"

namespace {

/// How far the line along an edge can reach, joins, caps and antialiasing included.
constexpr double Slack = 4;

/// The sides of a box that a point lies beyond, as bits. A line between two points beyond the same
/// side does not enter the box.
class Sides {
public:
    explicit Sides(const QRectF& box) : m_box(box) {}
    unsigned int Beyond(const QPointF& point) const {
        return (point.x() < m_box.left() ? 1u : 0u) | (point.x() > m_box.right() ? 2u : 0u) |
               (point.y() < m_box.top() ? 4u : 0u) | (point.y() > m_box.bottom() ? 8u : 0u);
    }
    bool Misses(const QRectF& bounds) const {
        return (Beyond(bounds.topLeft()) & Beyond(bounds.bottomRight())) != 0;
    }

private:
    QRectF m_box;
};

/// Adds the contour with each run of lines beyond one side of the box replaced by a single line.
/// That one is beyond it too, and as it has the same ends, just as much is inside of the contour as
/// before, anywhere in the box.
void AddWithinSides(QPainterPath& path, const QPolygonF& points, const Sides& sides) {
    path.moveTo(points.first());
    for (int i = 1; i < points.size();) {
        unsigned int common = sides.Beyond(points[i - 1]) & sides.Beyond(points[i]);
        int end = i; // of the run
        while (common != 0 && end + 1 < points.size() &&
               (common & sides.Beyond(points[end + 1])) != 0)
            common &= sides.Beyond(points[++end]);
        path.lineTo(points[end]);
        i = end + 1;
    }
}

/// Elements `begin` to `end` of the path, which are one contour.
QPainterPath CurvedContour(const QPainterPath& path, int begin, int end) {
    QPainterPath contour(path.elementAt(begin));
    for (int i = begin + 1; i < end; ++i) {
        if (path.elementAt(i).isLineTo()) {
            contour.lineTo(path.elementAt(i));
        } else {
            contour.cubicTo(path.elementAt(i), path.elementAt(i + 1), path.elementAt(i + 2));
            i += 2;
        }
    }
    return contour;
}

} // namespace

LXTilePath::LXTilePath(const QPainterPath& path) : m_rule(path.fillRule()) {
    for (int begin = 0, end = 0; begin < path.elementCount(); begin = end) {
        Contour contour;
        bool isCurved = false;
        for (end = begin;
             end == begin || (end < path.elementCount() && !path.elementAt(end).isMoveTo());
             ++end) {
            isCurved = isCurved || path.elementAt(end).isCurveTo();
            contour.points.append(path.elementAt(end));
        }
        contour.bounds = contour.points.boundingRect();
        if (isCurved)
            contour.curved = CurvedContour(path, begin, end);
        m_contours.push_back(contour);
    }
}

QPainterPath LXTilePath::Near(const QRectF& tile) const {
    const QRectF box = tile.adjusted(-Slack, -Slack, Slack, Slack);
    QPainterPath path;
    path.setFillRule(m_rule);
    for (const Contour& contour : m_contours) {
        if (Sides(box).Misses(contour.bounds))
            continue;
        if (contour.curved.isEmpty())
            AddWithinSides(path, contour.points, Sides(box));
        else
            path.addPath(contour.curved);
    }
    return path;
}
