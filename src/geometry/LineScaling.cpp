#include "LXColorTransformBase.h"
#include "geometry/ScaleWalk.h"

#include <algorithm>

double AdjustValue(double value, double scale) {
    const double step = 1 / scale;
    const double count = value / step;
    return TruncateToInt(value < 0 ? count - step * 0.5 : count + step * 0.5) * step;
}

void ScaleLine(LXRGBA32i* source, LXRGBA32i* target, int sourceLength, int targetLength) {
    if (targetLength < 1)
        return;
    const int whole = sourceLength / targetLength, part = sourceLength % targetLength;
    qint64 error = 0;
    for (int i = 0; i < targetLength; ++i) {
        target[i] = *source;
        source += whole;
        error += part;
        if (error >= targetLength) {
            error -= targetLength;
            ++source;
        }
    }
}

void ScaleLine(LXRGBA32i* source, LXRGBA32i* target, float start, double scale, int sourceLength,
               int targetLength) {
    LXFloatWalk walk(start, scale, sourceLength, LXNegativeStart::AlwaysFromBelow);
    for (int i = 0; i < targetLength && !walk.IsPast(sourceLength); ++i, walk.Step())
        if (walk.HasReachedImage())
            target[i] = source[TruncateToInt(walk.Position())];
}

void scaleLineNew(LXRGBA32i* source, LXRGBA32i* target, float start, double scale, int sourceLength,
                  int targetLength, int firstTile, int lastTile) {
    LXFloatWalk walk(start, scale, sourceLength, LXNegativeStart::FractionsFromBelow);
    const LXFloatLimits limits(firstTile, lastTile, sourceLength);
    for (int i = 0; i < targetLength; ++i, walk.Step()) {
        if (limits.Contain(walk.Position()))
            target[i] = source[limits.IndexOf(walk.Position())];
        else if (limits.ArePassed(walk.Position()))
            return;
    }
}

void scaleLineNewWithTransform(LXRGBA32i* source, LXRGBA32i* target, double start, double scale,
                               int sourceLength, int targetLength, int firstTile, int lastTile,
                               const LXColorTransformBase& transform) {
    LXIntegerWalk walk(start, scale, sourceLength);
    if (walk.IsEmpty())
        return;
    const qint64 low = qint64(LXScaleTile) * firstTile;
    // Both ends are inclusive, so the pixel after the last tile belongs to it; and if the first
    // tile lies beyond the row, its first pixel is let through. That is how it is defined.
    const qint64 high = std::max(
        low, std::min(qint64(LXScaleTile) * lastTile + LXScaleTile, qint64(sourceLength) - 1));
    LXRGBA32i color{};
    bool isDirty = true;
    for (int i = 0; i < targetLength; ++i) {
        const qint64 position = walk.Position();
        if (position >= low && position <= high) {
            if (isDirty) {
                color = source[position - low];
                transform(color);
                isDirty = false;
            }
            target[i] = color;
        } else if (position >= high) {
            return;
        }
        walk.Step();
        if (walk.Position() != position)
            isDirty = true;
    }
}
