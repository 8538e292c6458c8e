#include "LXCurvesTransformation.h"

#include "color/NaturalSpline.h"

namespace {

/// Puts a point between the two of a straight line, so that the line takes the way of all curves.
/// The caller keeps the point.
void SplitLine(QVector<QPoint>& points) {
    if (points.size() != 2)
        return;
    const QPointF sum = QPointF(points[0]) + QPointF(points[1]);
    points.insert(1, QPoint(qRound(sum.x() * 0.5), qRound(sum.y() * 0.5)));
}

LXByteTable CurveTable(QVector<QPoint>& points) {
    SplitLine(points);
    QVector<double> a, b, c;
    LXCurvesTransformation::BuildSplineParts(points, a, b, c);
    return SplineTable<int>(points, a, b, c);
}

} // namespace

LXCurvesTransformation::LXCurvesTransformation(QVector<QPoint>* curves, int amount) {
    const LXByteTable master = CurveTable(curves[0]);
    const auto bake = [&](QVector<QPoint>& points) {
        const LXByteTable channel = CurveTable(points);
        return MakeByteTable([&](int i) {
            return LXMixWithIdentity(master[channel[std::size_t(i)]], i, LXWeightOfPercent(amount));
        });
    };
    m_tables.red = bake(curves[1]);
    m_tables.green = bake(curves[2]);
    m_tables.blue = bake(curves[3]);
}

void LXCurvesTransformation::BuildSplineParts(const QVector<QPoint>& points, QVector<double>& a,
                                              QVector<double>& b, QVector<double>& c) {
    BuildNaturalSpline(ToFloatPoints(points), a, b, c);
}

int LXCurvesTransformation::SplineValue(int x, const QVector<QPoint>& points,
                                        const QVector<double>& a, const QVector<double>& b,
                                        const QVector<double>& c) {
    return SplineLevel(x, points, a, b, c);
}

QVector<QPointF> LXCurvesTransformation::ToFloatPoints(const QVector<QPoint>& points) {
    QVector<QPointF> floats;
    floats.reserve(points.size());
    for (const QPoint& point : points)
        floats.append(QPointF(point));
    return floats;
}

int LXCurvesTransformation::Lookup(int x, const QVector<QPoint>& points) {
    return SplineSegment(x, points);
}
