#pragma once

#include "LXChannelArithmetic.h"
#include "LXExport.h"
#include "LXIterativeAdjustment.h"

#include <QtCore/QPoint>
#include <QtCore/QPointF>
#include <QtCore/QVector>

/// Each channel through its own curve and then the master curve. Alpha stays.
///
/// A curve is the natural cubic spline through its points (x the input level, y the output level),
/// rounded and limited to 0 .. 255. Immutable after construction, so that threads may share it.
class LIBIMAGE_EXPORT LXCurvesTransformation {
public:
    /// `curves` are the points of four curves: master, red, green, blue, with ascending x. `amount`
    /// is a percentage: 0 is the identity, 100 the curves alone; outside that range the low byte of
    /// the mix is kept. A curve without points is 0 everywhere, one of a single point is flat.
    ///
    /// A curve of two points gets a third between them, at index 1 of the caller's vector.
    LXCurvesTransformation(QVector<QPoint>* curves, int amount);

    void operator()(LXRGBA32i& pixel) const { m_tables(pixel); }
    const LXChannelTables& GetTables() const { return m_tables; }

    /// The coefficients of y(x) = y_k + ((a_k d + b_k) d + c_k) d, d = x - x_k, on segment k, which
    /// begins at point k; one entry for each point. They are all 0, a staircase of the points' y,
    /// if any x is not above the one before.
    static void BuildSplineParts(const QVector<QPoint>& points, QVector<double>& a,
                                 QVector<double>& b, QVector<double>& c);
    /// y(x), plus 0.5 and truncated; 0 if `a` is empty. Outside the points the first and the last
    /// cubic go on: a curve is not held flat at its ends.
    static int SplineValue(int x, const QVector<QPoint>& points, const QVector<double>& a,
                           const QVector<double>& b, const QVector<double>& c);
    static QVector<QPointF> ToFloatPoints(const QVector<QPoint>& points);
    /// The segment for x, 0 .. points - 2; 0 for fewer than two points.
    static int Lookup(int x, const QVector<QPoint>& points);

private:
    LXChannelTables m_tables;
};

using LXIterativeCurvesTransformation = LXIterativeAdjustment<LXCurvesTransformation>;
