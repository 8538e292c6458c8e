#pragma once

#include "LXTextHelper.h"

/// Where the wave acts, as LXTextHelper::FlagFunction takes it.
struct LXTextWave {
    QPointF centre;
    float halfLength;
    double halfBreadth;

    /// One period along the box, in halves of whole pixels.
    LXTextWave(const QRect& box, bool orientation)
        : centre(box.center()),
          halfLength(static_cast<float>((orientation ? box.height() : box.width()) / 2)),
          halfBreadth((orientation ? box.width() : box.height()) / 2) {}
};

/// Where the keystone acts, as LXTextHelper::Distortion takes it.
struct LXTextKeystone {
    float halfWidth;
    float halfHeight;
    QPointF centre;

    explicit LXTextKeystone(const QRectF& box)
        : halfWidth(static_cast<float>(box.width() / 2)),
          halfHeight(static_cast<float>(box.height() / 2)), centre(box.center()) {}
};

/// What deformed the text, to deform other paths alike.
struct LXTextHelper::Deformation {
    LXTextWave wave;
    LXTextKeystone keystone; ///< of the text as the wave left it
};
