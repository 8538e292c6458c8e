#pragma once

#include "LXImage.h"

#include <QtCore/QRect>
#include <QtGui/QImage>

/// Box blurs in one call, each channel for itself, alpha included: the mean of 2 radius + 1 pixels,
/// (radius + sum) / (2 radius + 1). The start of `radius` rounds the truncating division to
/// nearest. It is missing on purpose in the accumulators of LXBlurAccumulator.h, which truncate:
/// the two kinds differ by up to one level.
///
/// The cost does not depend on the radius. Outside the image its border pixels go on for ever. A
/// negative radius does not blur; above 4 million the sums wrap around at 2^32.
///
/// A QImage comes out in QImage::Format_ARGB32, whatever its format was, also if nothing is
/// blurred; one that Qt cannot convert becomes null. Only where LXBoxBlur and LXGaussianBlur draw a
/// part back into a QImage does it keep its format, unless QPainter cannot draw on that; the part
/// has then gone through 8 bits a channel.
///
/// All on the calling thread; the arguments must not be used by another one meanwhile. Copies of
/// the image are left alone. Without a tile for a result std::bad_alloc comes out, and the image
/// may be blurred in part.

/// Along lines. The null rectangle means the whole image; any other is cut to it, and nothing in it
/// is no work. Windows at the rectangle's border take in what lies beside it.
class LIBIMAGE_EXPORT LXBoxBlurH {
public:
    explicit LXBoxBlurH(int radius) : m_radius(radius) {}
    void operator()(LXImageRGBA32i& image, const QRect& rect) const;
    void operator()(QImage& image, const QRect& rect) const;

private:
    int m_radius;
};

/// Along columns, otherwise as LXBoxBlurH.
class LIBIMAGE_EXPORT LXBoxBlurV {
public:
    explicit LXBoxBlurV(int radius) : m_radius(radius) {}
    void operator()(LXImageRGBA32i& image, const QRect& rect) const;
    void operator()(QImage& image, const QRect& rect) const;

private:
    int m_radius;
};

/// Along lines and then along columns.
///
/// An invalid rectangle, the null one too, means the whole image. For a part of the image the
/// passes work on a copy, and then the rectangle is copied back; what lies around it takes part in
/// the blur, and stays.
class LIBIMAGE_EXPORT LXBoxBlur {
public:
    explicit LXBoxBlur(int radius) : m_radius(radius) {}
    void operator()(LXImageRGBA32i& image, const QRect& rect) const;
    void operator()(QImage& image, const QRect& rect) const;

    /// Blurs a copy and lays it over the image through the alpha of `selection`: BlendMaskOn in
    /// mode 0, onto `rect`, or onto the whole image if that is invalid. `outsideBlends` is that of
    /// BlendMaskOn.
    void operator()(LXImageRGBA32i& image, const QRect& rect, const LXImageRGBA32i& selection,
                    const QRect& selectionRect, bool outsideBlends) const;

private:
    int m_radius;
};

/// A gaussian as three box blurs of one radius: its variance is radius (radius + 1).
///
/// The rectangle is that of LXBoxBlur. On a whole image three passes along lines precede three
/// along columns. On a part they take turns, and each covers no more than the next will need; so
/// the roundings of a part differ a little from those of the same part of a whole image.
class LIBIMAGE_EXPORT LXGaussianBlur {
public:
    explicit LXGaussianBlur(int radius) : m_radius(radius) {}
    void operator()(LXImageRGBA32i& image, const QRect& rect) const;
    void operator()(QImage& image, const QRect& rect) const;

    /// As LXBoxBlur through a selection, but an invalid rectangle, the null one too, is no work
    /// here. That difference is meant.
    void operator()(LXImageRGBA32i& image, const QRect& rect, const LXImageRGBA32i& selection,
                    const QRect& selectionRect, bool outsideBlends) const;

private:
    int m_radius;
};
