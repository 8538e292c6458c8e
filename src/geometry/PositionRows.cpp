#include "geometry/PositionRows.h"

#include "core/Clones.h"

#include <limits>

namespace {

using LXRows::Pixels;
using LXRows::Positions;

/// x' = m11 x + m21 y + dx, y' = m12 x + m22 y + dy.
struct Affine {
    double m11, m12, m21, m22, dx, dy;
};

/// A transform as QTransform::map takes it: elements that its type leaves out do not count, even if
/// they are not quite 0 or 1. To multiply by 1 and to add 0 change nothing, so one formula serves
/// all types.
Affine AffineOf(const QTransform& t) {
    switch (t.type()) {
    case QTransform::TxNone:
        return {1, 0, 0, 1, 0, 0};
    case QTransform::TxTranslate:
        return {1, 0, 0, 1, t.dx(), t.dy()};
    case QTransform::TxScale:
        return {t.m11(), 0, 0, t.m22(), t.dx(), t.dy()};
    default:
        return {t.m11(), t.m12(), t.m21(), t.m22(), t.dx(), t.dy()};
    }
}

LX_CLONED void MapAffine(const Affine& map, int x, int y, unsigned int count, double* outX,
                         double* outY) {
    const double centerY = y + 0.5;
    const double partX = map.m21 * centerY, partY = map.m22 * centerY;
    const double m11 = map.m11, m12 = map.m12, dx = map.dx, dy = map.dy;
    for (int i = 0; i < static_cast<int>(count); ++i) {
        const double centerX = x + i + 0.5;
        outX[i] = m11 * centerX + partX + dx;
        outY[i] = m12 * centerX + partY + dy;
    }
}

void MapProjective(const QTransform& inverse, int x, int y, unsigned int count,
                   Positions& positions) {
    for (unsigned int i = 0; i < count; ++i)
        inverse.map(x + static_cast<int>(i) + 0.5, y + 0.5, &positions.x[i], &positions.y[i]);
}

/// Truncated; what is no number or too large counts as the most negative integer.
inline int TruncateFrom(double value) {
    const double before = value < -1e-10 ? -1 : value;
    return static_cast<int>(before < 2147483648.0 ? before : -2147483648.0);
}

LX_CLONED void TruncateRow(const Positions& from, int count, int left, int top, int right,
                           int bottom, Pixels& pixels) {
    for (int i = 0; i < count; ++i) {
        const auto k = static_cast<unsigned int>(i);
        const int column = TruncateFrom(from.x[k]), row = TruncateFrom(from.y[k]);
        const bool isInside = (column >= left) & (column <= right) & (row >= top) & (row <= bottom);
        pixels.column[k] = isInside ? column : Pixels::Outside;
        pixels.row[k] = row;
    }
}

constexpr double Epsilon = std::numeric_limits<double>::epsilon();

LX_CLONED void LocateRow(const Positions& from, int count, int width, int height, double shift,
                         Pixels& pixels) {
    for (int i = 0; i < count; ++i) {
        const auto k = static_cast<unsigned int>(i);
        const double x = from.x[k] + Epsilon, y = from.y[k] + Epsilon;
        // No truncation of what does not fit: a place inside does.
        const bool isInside =
            (from.x[k] >= -Epsilon) & (from.y[k] >= -Epsilon) & (x < width) & (y < height);
        pixels.column[k] = static_cast<int>(isInside ? x - shift : Pixels::Outside);
        pixels.row[k] = static_cast<int>(isInside ? y - shift : 0);
    }
}

LX_CLONED void FractionRow(const double* places, const int* pixels, unsigned int count,
                           double* fractions) {
    for (unsigned int i = 0; i < count; ++i)
        fractions[i] = places[i] - pixels[i] - 0.5;
}

} // namespace

void LXRows::Map(const QTransform& inverse, int x, int y, unsigned int count,
                 Positions& positions) {
    if (inverse.type() == QTransform::TxProject)
        MapProjective(inverse, x, y, count, positions);
    else
        MapAffine(AffineOf(inverse), x, y, count, positions.x.data(), positions.y.data());
}

void LXRows::Truncate(const Positions& positions, unsigned int count, const QRect& rect,
                      Pixels& pixels) {
    TruncateRow(positions, int(count), rect.left(), rect.top(), rect.right(), rect.bottom(),
                pixels);
}

void LXRows::Locate(const Positions& positions, unsigned int count, const QSize& size, double shift,
                    Pixels& pixels) {
    LocateRow(positions, int(count), size.width(), size.height(), shift, pixels);
}

void LXRows::Fractions(const Positions& positions, const Pixels& pixels, unsigned int first,
                       unsigned int last, Positions& fractions) {
    FractionRow(positions.x.data() + first, pixels.column.data() + first, last - first,
                fractions.x.data());
    FractionRow(positions.y.data() + first, pixels.row.data() + first, last - first,
                fractions.y.data());
}
