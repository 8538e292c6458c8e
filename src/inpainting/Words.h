#pragma once

#include "inpainting/WindowMean.h"

#include <QtGui/QImage>

#include <new>

/// Rows of a QImage of 32 bits a pixel, as words.

namespace Inpainting {

inline const QRgb* ConstWords(const QImage& image, int y) {
    const void* const row = image.constScanLine(y);
    return static_cast<const QRgb*>(row);
}

/// Detaches the image if it is shared. Throws std::bad_alloc if that fails.
inline QRgb* Words(QImage& image, int y) {
    void* const row = image.scanLine(y);
    if (!row)
        throw std::bad_alloc();
    return static_cast<QRgb*>(row);
}

/// All pixels of an image. Detaches it, as Words.
inline Pixels OwnPixels(QImage& image) {
    return {Words(image, 0), image.bytesPerLine() / std::ptrdiff_t(sizeof(QRgb))};
}

/// Throws std::bad_alloc if there is no memory for it.
inline QImage NewARGB32(const QSize& size) {
    QImage image(size, QImage::Format_ARGB32);
    if (image.isNull() && !size.isEmpty())
        throw std::bad_alloc();
    return image;
}

} // namespace Inpainting
