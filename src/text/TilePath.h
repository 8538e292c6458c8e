#pragma once

#include <QtGui/QPainterPath>
#include <QtGui/QPolygonF>

#include <vector>

/// A path cut down to what shows in a tile, so that a tile costs what lies in it and not the whole
/// path. Drawing what is left, filled and with an edge line of a pixel, gives the same pixels
/// there.
class LXTilePath {
public:
    explicit LXTilePath(const QPainterPath& path);

    /// What shows in the tile; empty if nothing does.
    QPainterPath Near(const QRectF& tile) const;

private:
    struct Contour {
        QPolygonF points;    ///< those of curves' handles too
        QRectF bounds;       ///< of the points
        QPainterPath curved; ///< the contour itself if it has curves; it is not cut down then
    };

    std::vector<Contour> m_contours;
    Qt::FillRule m_rule;
};
