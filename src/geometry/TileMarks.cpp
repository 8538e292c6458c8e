#include "geometry/TileMarks.h"

#include "LXImage.h"

#include <QtGui/QPainterPath>

#include <algorithm>
#include <cmath>

namespace {

constexpr double TileWidth = LXImageRGBA32i::TileWidth, TileHeight = LXImageRGBA32i::TileHeight;

/// A curve is divided until its pieces are so small, or as small as the reach around them.
constexpr double SmallPiece = 48;

/// Qt draws a curve as chords, of which there are 64 at most. Along each axis the chord over the
/// n-th part of a curve in a box of size s departs from it by up to 12 s / (8 n n): s / 2730
/// for 64. Taken is several times that.
constexpr double ChordsFromCurve = 256;

/// From this size on Qt's rasteriser cuts a path beforehand, and no more is relied on than that
/// what it draws of a curve stays by its control points.
constexpr double LargestCurve = 32768;

/// The control points of a curve enclose it.
template <class Points>
QRectF Hull(const Points& points) {
    double left = points[0].x(), right = left, top = points[0].y(), bottom = top;
    for (const QPointF& point : points) {
        left = std::min(left, point.x());
        right = std::max(right, point.x());
        top = std::min(top, point.y());
        bottom = std::max(bottom, point.y());
    }
    return QRectF(QPointF(left, top), QPointF(right, bottom));
}

QRectF Grown(const QRectF& box, double reach) {
    return box.adjusted(-reach, -reach, reach, reach);
}

/// Whether a curve in the box can be halved, and the box itself be cut, to a small fraction of a
/// pixel. What is not a number is not.
bool IsExact(const QRectF& box) {
    constexpr double range = 1e9;
    return box.left() > -range && box.top() > -range && box.right() < range && box.bottom() < range;
}

/// With edges included, and also for boxes without an area.
bool Meet(const QRectF& a, const QRectF& b) {
    return a.left() <= b.right() && b.left() <= a.right() && a.top() <= b.bottom() &&
           b.top() <= a.bottom();
}

/// The intersection of two that meet.
QRectF Common(const QRectF& a, const QRectF& b) {
    return QRectF(QPointF(std::max(a.left(), b.left()), std::max(a.top(), b.top())),
                  QPointF(std::min(a.right(), b.right()), std::min(a.bottom(), b.bottom())));
}

/// The tile at a coordinate, kept among `count` tiles.
unsigned int TileAt(double coordinate, double side, unsigned int count) {
    return unsigned(std::clamp(std::floor(coordinate / side), 0.0, count - 1.0));
}

QPointF Middle(const QPointF& a, const QPointF& b) {
    return a / 2 + b / 2;
}

} // namespace

LXTileMarks::LXTileMarks(unsigned int columns, unsigned int rows)
    : m_columns(columns), m_rows(rows), m_marks(std::size_t(columns) * rows) {
    ResetLimits();
}

QRectF LXTileMarks::Everything() const {
    return QRectF(0, 0, m_columns * TileWidth, m_rows * TileHeight);
}

void LXTileMarks::SetLimits(const QRectF& limits) {
    const QRectF all = Everything();
    const bool known = IsExact(limits);
    m_anyInside = !m_marks.empty() && (!known || Meet(limits, all));
    m_limits = known && m_anyInside ? Common(limits, all) : all;
}

void LXTileMarks::MarkBox(const QRectF& box) {
    if (!m_anyInside || (IsExact(box) && !Meet(box, m_limits)))
        return;
    const QRectF part = IsExact(box) ? Common(box, m_limits) : m_limits;
    const unsigned int left = TileAt(part.left(), TileWidth, m_columns);
    const unsigned int right = TileAt(part.right(), TileWidth, m_columns);
    const unsigned int top = TileAt(part.top(), TileHeight, m_rows);
    const unsigned int bottom = TileAt(part.bottom(), TileHeight, m_rows);
    for (unsigned int row = top; row <= bottom; ++row)
        for (unsigned int column = left; column <= right; ++column)
            m_marks[std::size_t(row) * m_columns + column] = true;
}

void LXTileMarks::MarkCurve(const Curve& curve, double reach) {
    const QRectF hull = Hull(curve), box = Grown(hull, reach);
    const double size = std::max(hull.width(), hull.height());
    if (IsExact(box) && !Meet(box, m_limits))
        return;
    if (!IsExact(box) || size <= std::max(SmallPiece, reach))
        return MarkBox(box);
    const QPointF ab = Middle(curve[0], curve[1]), bc = Middle(curve[1], curve[2]),
                  cd = Middle(curve[2], curve[3]);
    const QPointF abc = Middle(ab, bc), bcd = Middle(bc, cd), centre = Middle(abc, bcd);
    MarkCurve({curve[0], ab, abc, centre}, reach);
    MarkCurve({centre, bcd, cd, curve[3]}, reach);
}

void LXTileMarks::MarkAsDrawn(const Curve& curve, double reach) {
    const QRectF hull = Hull(curve);
    const double size = std::max(hull.width(), hull.height());
    if (size < LargestCurve)
        MarkCurve(curve, reach + size / ChordsFromCurve);
    else
        MarkBox(Grown(hull, reach));
}

void LXTileMarks::MarkOutline(const QPainterPath& path, double reach) {
    QPointF end; // of what came so far
    for (int i = 0; i < path.elementCount(); ++i) {
        const QPainterPath::Element element = path.elementAt(i);
        if (element.isMoveTo()) {
            end = element;
            MarkBox(Grown(QRectF(end, end), reach));
        } else if (element.isCurveTo()) {
            const QPointF next = path.elementAt(i + 2);
            MarkAsDrawn({end, element, path.elementAt(i + 1), next}, reach);
            end = next;
            i += 2;
        } else {
            MarkCurve({end, end, element, element}, reach);
            end = element;
        }
    }
}

// No point outside the hulls of all subpaths is enclosed.
void LXTileMarks::MarkArea(const QPainterPath& path, double reach) {
    std::vector<QPointF> subpath;
    const auto mark = [&] {
        if (!subpath.empty())
            MarkBox(Grown(Hull(subpath), reach));
        subpath.clear();
    };
    for (int i = 0; i < path.elementCount(); ++i) {
        const QPainterPath::Element element = path.elementAt(i);
        if (element.isMoveTo())
            mark();
        subpath.push_back(element);
    }
    mark();
}
