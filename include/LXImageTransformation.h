#pragma once

#include "LXImage.h"
#include "LXTileAccess.h"

#include <QtCore/QRect>
#include <QtGui/QTransform>

/// Geometric transformation with a choice of quality. `transform` takes places in `source` to
/// places in `destination`; any QTransform will do, also a perspective one. The centre of each
/// destination pixel is mapped back, and the source is sampled there. Pixels whose centre comes
/// from outside the source stay as they were.
///
/// `rect`, in the source, limits the area that is worked on: what QTransform::mapRect makes of it,
/// cut to the destination. It does not limit what is sampled, which is the whole source; so a
/// turned picture fills that area to its corners. An invalid rectangle means the whole source.
/// Where the int arithmetic of mapRect overflows (at scales from about 1e7 on, or with rectangles
/// near the limits of int), nothing is written, and the result is true.
///
/// False if the transform has no inverse, and after a std::exception (which is logged: no tile was
/// left, say); the destination is partly written then. True otherwise, also if there is nothing to
/// do. Any other exception is logged and goes on. Source and destination may be copies of one
/// another, and even one object.

/// The pixel that contains the mapped centre.
LIBIMAGE_EXPORT bool NearestNeighbourTransformImage(const LXImageRGBA32i& source,
                                                    const QTransform& transform,
                                                    LXImageRGBA32i& destination, const QRect& rect);

/// Interpolated between 2 x 2 or 4 x 4 pixels.
///
/// Where the bounding box of the transformed source is at most half as wide or half as high as the
/// source, a copy of the source is first blurred along each axis that shrinks: by a box of 2 r + 1
/// pixels with r = 1 / (2 scale), rounded, once for bilinear and three times for bicubic. If both
/// axes shrink, that copy is sampled by its nearest pixels. The blur costs 2 r + 1 additions a line
/// and a column beside its pixels; above r = 4 million its sums wrap around.
LIBIMAGE_EXPORT bool BilinearTransformImage(const LXImageRGBA32i& source,
                                            const QTransform& transform,
                                            LXImageRGBA32i& destination, const QRect& rect);
LIBIMAGE_EXPORT bool BicubicTransformImage(const LXImageRGBA32i& source,
                                           const QTransform& transform, LXImageRGBA32i& destination,
                                           const QRect& rect);

/// The sampling objects behind them, for LXTransformImagePixel. `source` must outlive the object
/// and not be written meanwhile; `inverse` takes places in the destination to places in the source.
/// They leave a pixel whose centre comes from outside the source as it is; a missing tile reads as
/// 0. Each keeps the last source tile open from call to call, so one object is for one thread.
///
/// All four channels are treated alike, alpha too, and nothing is premultiplied: the colours of
/// transparent pixels bleed into the edges of opaque ones.

/// What the three have in common.
class LIBIMAGE_EXPORT LXSampling {
protected:
    LXSampling(const LXImageRGBA32i& source, const QTransform& inverse)
        : m_source(&source), m_inverse(inverse) {}

    const LXImageRGBA32i* m_source;
    QTransform m_inverse;
    mutable LXHeldTile<LXImageRGBA32i> m_tile;
};

class LIBIMAGE_EXPORT LXNearestNeighbourTransformation : private LXSampling {
public:
    LXNearestNeighbourTransformation(const LXImageRGBA32i& source, const QTransform& inverse)
        : LXSampling(source, inverse) {}

    void operator()(int x, int y, LXRGBA32i& pixel) const { TransformRun(x, y, &pixel, 1); }
    void TransformRun(int x, int y, LXRGBA32i* pixels, unsigned int count) const;
};

/// Along x and then along y, rounded to 8 bits after each.
///
/// The left and top edges are not treated as the right and bottom ones: within half a pixel of the
/// former the first two pixels are extrapolated, near the latter the last pixel is repeated. That
/// is how it is defined.
class LIBIMAGE_EXPORT LXBilinearTransformation : private LXSampling {
public:
    LXBilinearTransformation(const LXImageRGBA32i& source, const QTransform& inverse)
        : LXSampling(source, inverse) {}

    void operator()(int x, int y, LXRGBA32i& pixel) const { TransformRun(x, y, &pixel, 1); }
    void TransformRun(int x, int y, LXRGBA32i* pixels, unsigned int count) const;
};

/// The same by cubics. On the left and top edges they extrapolate too.
class LIBIMAGE_EXPORT LXBicubicTransformation : private LXSampling {
public:
    LXBicubicTransformation(const LXImageRGBA32i& source, const QTransform& inverse)
        : LXSampling(source, inverse) {}

    void operator()(int x, int y, LXRGBA32i& pixel) const { TransformRun(x, y, &pixel, 1); }
    void TransformRun(int x, int y, LXRGBA32i* pixels, unsigned int count) const;

    /// Each channel at `t` between the second pixel, 0, and the third, 1, of four: the cubic
    /// through these two with slopes of twice the Catmull-Rom spline's, limited to 0 .. 255.
    LXRGBA32i CubicInterpolate(LXRGBA32i* pixels, double t) const;
};
