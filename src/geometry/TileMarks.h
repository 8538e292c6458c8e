#pragma once

#include <QtCore/QRectF>

#include <array>
#include <vector>

class QPainterPath;

/// The tiles that a drawing can touch. Marking is generous: a tile that is touched is always
/// marked. Coordinates are pixels of the image; what goes beyond a thousand million marks all
/// tiles.
class LXTileMarks {
public:
    LXTileMarks(unsigned int columns, unsigned int rows);

    bool IsMarked(unsigned int column, unsigned int row) const {
        return m_marks[std::size_t(row) * m_columns + column];
    }

    /// From now on marks nothing that lies beyond the limits.
    void SetLimits(const QRectF& limits);
    void ResetLimits() { SetLimits(Everything()); }

    void MarkBox(const QRectF& box);
    /// What is not farther from the path's lines and curves than `reach`, along each axis, whether
    /// they are true curves or the chords that QPainter draws.
    void MarkOutline(const QPainterPath& path, double reach);
    /// What the path encloses by either fill rule, and what is not farther from that than `reach`.
    void MarkArea(const QPainterPath& path, double reach);

private:
    using Curve = std::array<QPointF, 4>; // a line has its ends twice

    QRectF Everything() const;
    void MarkCurve(const Curve& curve, double reach);
    void MarkAsDrawn(const Curve& curve, double reach);

    unsigned int m_columns;
    unsigned int m_rows;
    std::vector<bool> m_marks;
    QRectF m_limits;
    bool m_anyInside; // something of the image lies within the limits
};
