#include "color/NaturalSpline.h"

namespace {

/// The lengths of the segments; none if one of them is not above 0.
QVector<double> SegmentLengths(const QVector<QPointF>& points) {
    QVector<double> lengths;
    for (int k = 0; k + 1 < points.size(); ++k) {
        lengths.append(points[k + 1].x() - points[k].x());
        if (!(lengths.last() > 0))
            return {};
    }
    return lengths;
}

/// The second derivatives at the points: a symmetric tridiagonal system, solved by elimination.
/// The ends keep 0.
QVector<double> SecondDerivatives(const QVector<QPointF>& points, const QVector<double>& h) {
    const int m = h.size();
    QVector<double> second(m + 1, 0.0), diagonal(m, 0.0), right(m, 0.0);
    const auto slope = [&](int k) { return (points[k + 1].y() - points[k].y()) / h[k]; };
    for (int k = 1; k < m; ++k) {
        diagonal[k] = 2 * (h[k - 1] + h[k]);
        right[k] = 6 * (slope(k - 1) - slope(k));
    }
    for (int k = 2; k < m; ++k) {
        const double factor = h[k - 1] / diagonal[k - 1];
        diagonal[k] = diagonal[k] - factor * h[k - 1];
        right[k] = right[k] - factor * right[k - 1];
    }
    if (m > 1)
        second[m - 1] = -right[m - 1] / diagonal[m - 1];
    for (int k = m - 2; k > 0; --k)
        second[k] = -(right[k] + h[k] * second[k + 1]) / diagonal[k];
    return second;
}

} // namespace

void BuildNaturalSpline(const QVector<QPointF>& points, QVector<double>& a, QVector<double>& b,
                        QVector<double>& c) {
    for (QVector<double>* coefficients : {&a, &b, &c})
        coefficients->fill(0.0, points.size());
    const QVector<double> h = SegmentLengths(points);
    if (h.isEmpty())
        return;
    const QVector<double> second = SecondDerivatives(points, h);
    for (int k = 0; k < h.size(); ++k) {
        a[k] = (second[k + 1] - second[k]) / (h[k] * 6);
        b[k] = second[k] * 0.5;
        c[k] = (points[k + 1].y() - points[k].y()) / h[k] +
               ((second[k + 1] + second[k] + second[k]) * h[k]) / -6;
    }
}
