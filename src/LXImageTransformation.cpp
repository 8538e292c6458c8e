#include "LXFault.h"
#include "geometry/Resampling.h"

bool NearestNeighbourTransformImage(const LXImageRGBA32i& source, const QTransform& transform,
                                    LXImageRGBA32i& destination, const QRect& rect) {
    return LXFault::LenientGuard(LX_SITE, false, [&] {
        return LXResampling::Nearest(source, transform, destination, rect);
    });
}

bool BilinearTransformImage(const LXImageRGBA32i& source, const QTransform& transform,
                            LXImageRGBA32i& destination, const QRect& rect) {
    return LXFault::LenientGuard(LX_SITE, false, [&] {
        return LXResampling::Bilinear(source, transform, destination, rect);
    });
}

bool BicubicTransformImage(const LXImageRGBA32i& source, const QTransform& transform,
                           LXImageRGBA32i& destination, const QRect& rect) {
    return LXFault::LenientGuard(LX_SITE, false, [&] {
        return LXResampling::Bicubic(source, transform, destination, rect);
    });
}
