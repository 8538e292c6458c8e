#pragma once

#include "LXImage.h"

#include <QtCore/QSize>
#include <QtGui/QImage>

/// Convolution with a kernel in two dimensions, in one call on the calling thread: simple rather
/// than fast, at one product for each pixel, kernel entry and channel.
///
/// The kernel has size.width() x size.height() entries, row by row, is not copied, and must outlive
/// the object; any numbers will do. It is applied flipped, and its entry (w / 2, h / 2) meets the
/// pixel itself: the middle of an odd size, and one beyond the middle of an even one. A size below
/// 1 is no work.
///
/// A QImage comes out in QImage::Format_ARGB32; one that Qt cannot convert becomes null. Copies of
/// a tiled image are left alone; without a tile for the result std::bad_alloc comes out, and the
/// image is changed in part.

/// All four channels, each for itself; the pixels at the image's border go on for ever. Sums are
/// truncated and limited to 0 .. 255. A pixel whose alpha comes to 0 or less is 0 as a whole.
class LIBIMAGE_EXPORT LXImageConvolution {
public:
    LXImageConvolution(const double* kernel, const QSize& size) : m_kernel(kernel), m_size(size) {}
    void operator()(LXImageRGBA32i& image) const;
    void operator()(QImage& image) const;

private:
    const double* m_kernel;
    QSize m_size;
};

/// Alpha alone, and black for a colour: all other colour is lost. Outside the image there is
/// nothing. The sum is a float; it is truncated and limited to 0 .. 255.
class LIBIMAGE_EXPORT LXImageConvoluteAlpha {
public:
    LXImageConvoluteAlpha(const double* kernel, const QSize& size)
        : m_kernel(kernel), m_size(size) {}
    void operator()(LXImageRGBA32i& image) const;
    void operator()(QImage& image) const;

private:
    const double* m_kernel;
    QSize m_size;
};
