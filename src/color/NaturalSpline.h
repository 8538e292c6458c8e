#pragma once

#include "color/ByteTables.h"

#include <QtCore/QPointF>
#include <QtCore/QVector>

/// The natural cubic spline through points of ascending x: its second derivative is 0 at both ends.
/// On segment k, which begins at point k, y(x) = y_k + ((a_k d + b_k) d + c_k) d with d = x - x_k.

/// The coefficients, one entry for each point. All are 0, a staircase of the points' y, if there
/// are fewer than two points or any x is not above the one before: such points are
/// no error.
void BuildNaturalSpline(const QVector<QPointF>& points, QVector<double>& a, QVector<double>& b,
                        QVector<double>& c);

/// The segment that x lies in, or whose cubic goes on to x: 0 .. points - 2, and 0 for fewer than
/// two points.
template <class Number, class Point>
int SplineSegment(Number x, const QVector<Point>& points) {
    const int last = points.size() - 2;
    if (last < 0 || !(x > points[0].x()))
        return 0;
    if (!(x < points[last].x()))
        return last;
    int low = 0;
    for (int width = last; width > 1;) {
        const int half = width / 2;
        if (points[low + half].x() > x) {
            width = half;
        } else {
            low += half;
            width -= half;
        }
    }
    return low;
}

/// y(x), plus 0.5 and truncated; 0 without coefficients.
///
/// Nothing is held flat before the first point and behind the last one: the end cubics go on, as a
/// curve is defined.
template <class Number, class Point>
int SplineLevel(Number x, const QVector<Point>& points, const QVector<double>& a,
                const QVector<double>& b, const QVector<double>& c) {
    if (a.isEmpty())
        return 0;
    const int k = SplineSegment(x, points);
    const double d = double(x) - double(points[k].x());
    return TruncateToInt(double(points[k].y()) + ((a[k] * d + b[k]) * d + c[k]) * d + 0.5);
}

/// The levels of the curve, limited to 0 .. 255.
template <class Number, class Point>
LXByteTable SplineTable(const QVector<Point>& points, const QVector<double>& a,
                        const QVector<double>& b, const QVector<double>& c) {
    return MakeByteTable(
        [&](int i) { return LXClampToByte(SplineLevel(Number(i), points, a, b, c)); });
}
