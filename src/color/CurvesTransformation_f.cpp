#include "color/LXCurvesTransformation_f.h"

#include "color/NaturalSpline.h"

LXCurvesTransformation_f::LXCurvesTransformation_f(QVector<QPointF> points) {
    Update(points);
}

void LXCurvesTransformation_f::Update(QVector<QPointF> points) {
    if (points.size() == 2)
        points.insert(1, (points[0] + points[1]) * 0.5);
    QVector<double> a, b, c;
    BuildSplineParts(points, a, b, c);
    m_table = SplineTable<double>(points, a, b, c);
}

void LXCurvesTransformation_f::BuildSplineParts(const QVector<QPointF>& points, QVector<double>& a,
                                                QVector<double>& b, QVector<double>& c) {
    BuildNaturalSpline(points, a, b, c);
}
