#pragma once

#include "LXChannelArithmetic.h"

#include <QtCore/QPointF>
#include <QtCore/QVector>

/// One curve through points that need not lie on whole levels, without master and amount; else as
/// LXCurvesTransformation.
class LXCurvesTransformation_f {
public:
    explicit LXCurvesTransformation_f(QVector<QPointF> points);

    /// Makes the table anew. A line of two points is split in the middle, without rounding, and
    /// the caller does not see that.
    void Update(QVector<QPointF> points);

    const LXByteTable& GetTable() const { return m_table; }

    /// As LXCurvesTransformation::BuildSplineParts.
    static void BuildSplineParts(const QVector<QPointF>& points, QVector<double>& a,
                                 QVector<double>& b, QVector<double>& c);

private:
    LXByteTable m_table;
};
