#include "text/TextDeformation.h"

#include "core/Truncate.h"
#include "text/RoundedRect.h"

#include <cmath>

namespace {

constexpr double Pi = 3.141592653589793;
constexpr float Threshold = 2.220446e-16f;

} // namespace

void LXTextHelper::FlagFunction(QPointF&, QPainterPath& path, const QPointF& centre,
                                float halfLength, double halfBreadth) const {
    if (halfLength == 0)
        return;
    const double k = Pi / static_cast<double>(halfLength);
    const double amplitude = m_bend / 100 * halfBreadth;
    for (int i = 0; i < path.elementCount(); ++i) {
        double x = path.elementAt(i).x, y = path.elementAt(i).y;
        if (m_orientation)
            x -= std::sin((y - centre.y()) * k) * amplitude;
        else
            y -= std::sin((x - centre.x()) * k) * amplitude;
        path.setElementPositionAt(i, x, y);
    }
}

void LXTextHelper::FlagFunction(QPointF&, QPainterPath& path) const {
    Bend(path, LXTextWave(LXRoundedRect(path.boundingRect()), m_orientation));
}

void LXTextHelper::Bend(QPainterPath& path, const LXTextWave& wave) const {
    QPointF unused;
    FlagFunction(unused, path, wave.centre, wave.halfLength, wave.halfBreadth);
}

void LXTextHelper::Distortion(QPainterPath& path, int mode, float halfWidth, float halfHeight,
                              float horizontal, float vertical, const QPointF& centre) const {
    const bool byX = (mode & 1) != 0 && std::abs(halfWidth) >= Threshold;
    const bool byY = (mode & 2) != 0 && std::abs(halfHeight) >= Threshold;
    for (int i = 0; i < path.elementCount(); ++i) {
        const QPointF old = path.elementAt(i), from = old - centre;
        // Both terms are of the old place.
        const double y = byX ? horizontal * from.x() / halfWidth * from.y() + old.y() : old.y();
        const double x = byY ? from.y() * vertical / halfHeight * from.x() + old.x() : old.x();
        path.setElementPositionAt(i, x, y);
    }
}

void LXTextHelper::Distortion(QPainterPath& path, int mode, float horizontal,
                              float vertical) const {
    const LXTextKeystone keystone(path.boundingRect());
    Distortion(path, mode, keystone.halfWidth, keystone.halfHeight, horizontal, vertical,
               keystone.centre);
}

void LXTextHelper::Narrow(QPainterPath& path, const LXTextKeystone& keystone,
                          const QSizeF& share) const {
    constexpr int both = 3;
    Distortion(path, both, keystone.halfWidth, keystone.halfHeight,
               static_cast<float>(share.width() * m_hDistortion / 100),
               static_cast<float>(share.height() * m_vDistortion / 100), keystone.centre);
}

LXTextHelper::Deformation LXTextHelper::DeformText(QPainterPath& text, const QPointF& offset) {
    m_deformedOffset = offset;
    const LXTextWave wave(LXRoundedRect(text.boundingRect()), m_orientation);
    Bend(text, wave);
    const LXTextKeystone keystone(text.boundingRect());
    Narrow(text, keystone, QSizeF(1, 1));
    m_deformedRect = LXRoundedRect(text.boundingRect());
    return {wave, keystone};
}

QPainterPath LXTextHelper::DeformedText(QPointF& offset) {
    RequireHeavyPath();
    QPainterPath text = m_heavyPath;
    DeformText(text, offset);
    const QPointF drift = m_textRect.topLeft() - text.boundingRect().topLeft();
    offset -= QPointF(TruncateToInt(drift.x()), TruncateToInt(drift.y()));
    return text;
}

QPainterPath LXTextHelper::CreatePathByTextWithDeformationWithRect(QPainterPath& path, QRectF& rect,
                                                                   QRectF& mappedRect,
                                                                   QPointF& offset) {
    if (m_style == 0)
        return CreatePathByTextWithRect(rect, mappedRect, offset);
    path = DeformedText(offset);
    rect = path.boundingRect();
    mappedRect = m_transform.toTransform().mapRect(rect);
    return path;
}
