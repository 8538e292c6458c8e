#pragma once

#include <QtGui/QImage>

#include <new>

/// A line of a picture for writing, detached from those who share it. Without memory for that it is
/// std::bad_alloc that comes out, and the picture stays: QImage itself would say nothing and be
/// empty.
template <class Pixel>
Pixel* LXDetachedLine(QImage& image, int y) {
    if (!image.isDetached()) {
        QImage own = image.copy();
        if (own.isNull())
            throw std::bad_alloc();
        image.swap(own);
    }
    void* const line = image.scanLine(y);
    if (!line) // a picture on read-only memory is detached only here
        throw std::bad_alloc();
    return static_cast<Pixel*>(line);
}
