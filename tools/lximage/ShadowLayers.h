#pragma once

#include "LXShadowProcessing.h"

/// Putting what the shadow filters make to use. Places are relative to the picture.

/// The picture on its shadow, which lies at its offset: on a canvas that also takes what falls
/// beside the picture, as far as `visible` reaches.
LXImageAtOffset LayUnder(const LXImageRGBA32i& picture, const LXImageAtOffset& shadow,
                         double opacity, const QRect& visible);

/// The layer that lies on the picture: the colour through its mask, which is moved by `distance`.
LXImageRGBA32i InnerLayer(const LXInnerShadowProcessing::InnerShadowResult& shadow,
                          const QPoint& distance);

/// Lays such a layer on the picture, which keeps its transparency.
void LayOver(LXImageRGBA32i& picture, const LXImageRGBA32i& layer, double opacity);
