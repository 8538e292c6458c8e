#include "ShadowLayers.h"

#include "LXBlendOn.h"
#include "LXTileWalk.h"

#include <QtGui/QPainter>

static LXImageRGBA32i Transparent(const QSize& size) {
    LXImageRGBA32i image(unsigned(size.width()), unsigned(size.height()));
    image.FastFill({});
    return image;
}

LXImageAtOffset LayUnder(const LXImageRGBA32i& picture, const LXImageAtOffset& shadow,
                         double opacity, const QRect& visible) {
    const QRect rect = LXImageRect(picture), shadowRect = LXImageRect(shadow.image);
    const QRect canvas = rect | (visible & shadowRect.translated(shadow.offset));
    LXImageAtOffset result{Transparent(canvas.size()), canvas.topLeft()};
    BlendOn(shadow.image, shadowRect, QPainter::CompositionMode_SourceOver, result.image,
            shadowRect.translated(shadow.offset - canvas.topLeft()), opacity, false);
    BlendOn(picture, rect, QPainter::CompositionMode_SourceOver, result.image,
            rect.translated(-canvas.topLeft()), 1.0, false);
    return result;
}

LXImageRGBA32i InnerLayer(const LXInnerShadowProcessing::InnerShadowResult& shadow,
                          const QPoint& distance) {
    const QRect rect = LXImageRect(shadow.colorImage);
    LXImageRGBA32i layer = Transparent(rect.size());
    // Beyond the mask there is only shadow.
    constexpr bool outsideBlends = true;
    BlendMaskOn(shadow.colorImage, rect, QPainter::CompositionMode_Source, layer, rect, 1.0,
                shadow.maskImage, rect.translated(-shadow.offset - distance), outsideBlends, false);
    return layer;
}

void LayOver(LXImageRGBA32i& picture, const LXImageRGBA32i& layer, double opacity) {
    const QRect rect = LXImageRect(picture);
    BlendOn(layer, rect, QPainter::CompositionMode_SourceOver, picture, rect, opacity, true);
}
