#include "LXChannelTransforms.h"

#include "LXTileAccess.h"

#include <QtGui/QImage>

namespace {

/// Drives a transform's buffer operation, with sizes in bytes, over whole tiles.
void ForTiles(LXImageRGBA32i& image, const LXColorTransformBase& transform) {
    for (unsigned int row = 0; row < image.GetTilesY(); ++row)
        for (unsigned int column = 0; column < image.GetTilesX(); ++column) {
            const LXTileWriter tile(image.GetTileRow(row)[column]);
            transform(static_cast<void*>(tile.Pixels()), LXTileBytes);
        }
}

/// And over the rows of a picture. One with fewer bits a pixel has not the bytes for it.
void ForRows(QImage& image, const LXColorTransformBase& transform) {
    if (image.depth() < 32)
        return;
    for (int y = 0; y < image.height(); ++y)
        transform(image.scanLine(y), unsigned(image.width()) * unsigned(sizeof(LXRGBA32i)));
}

} // namespace

void LXTCGrayscaleFromRGBA32iAlpha::operator()(QImage& image) const {
    ForRows(image, *this);
}

void LXTCGrayscaleFromRGBA32iAlpha::operator()(LXImageRGBA32i& image) const {
    ForTiles(image, *this);
}

void LXTCGrayscaleFromRGBA32iAlpha::operator()(void* pixels, unsigned int size) const {
    auto* const words = static_cast<unsigned int*>(pixels);
    for (unsigned int i = 0; words && i < size >> 2; ++i)
        (*this)(words[i]);
}

void LXTCGrayscaleFromRGBA32iAlpha::Invert(void*, unsigned int) const {}

void LXTCGrayscaleFromRGBA32iAlpha::operator()(unsigned int& pixel) const {
    const unsigned int alpha = pixel >> 24;
    pixel = 0xFF000000 + (alpha << 16) + (alpha << 8) + alpha;
}

LXRGBChannelFilter::LXRGBChannelFilter(RGBFilter filter) : m_filter(filter) {}

LXRGBChannelFilter::LXRGBChannelFilter(const LXRGBChannelFilter& other) = default;

LXRGBChannelFilter& LXRGBChannelFilter::operator=(const LXRGBChannelFilter& other) = default;

void LXRGBChannelFilter::SetChannelFilter(RGBFilter filter) {
    m_filter = filter;
}

LXRGBChannelFilter::RGBFilter LXRGBChannelFilter::GetChannelFilter() const {
    return m_filter;
}

void LXRGBChannelFilter::operator()(LXRGBA32i& pixel) const {
    switch (m_filter) {
    case ShowAll:
        break;
    case HideBlue:
        pixel.blue = 0;
        break;
    case HideGreen:
        pixel.green = 0;
        break;
    case HideRed:
        pixel.red = 0;
        break;
    case RedAsGray:
        pixel.blue = pixel.green = pixel.red;
        break;
    case GreenAsGray:
        pixel.blue = pixel.red = pixel.green;
        break;
    case BlueAsGray:
        pixel.green = pixel.red = pixel.blue;
        break;
    }
}

void LXRGBChannelFilter::operator()(QImage& image) const {
    if (m_filter != ShowAll)
        ForRows(image, *this);
}

void LXRGBChannelFilter::operator()(LXImageRGBA32i& image) const {
    if (m_filter != ShowAll)
        ForTiles(image, *this);
}

// By the virtual operation on a pixel: what derives from this class need only override that.
void LXRGBChannelFilter::operator()(void* pixels, unsigned int size) const {
    auto* const row = static_cast<LXRGBA32i*>(pixels);
    if (m_filter == ShowAll)
        return;
    for (unsigned int i = 0; row && i < size >> 2; ++i)
        (*this)(row[i]);
}

void LXRGBChannelFilter::Invert(void*, unsigned int) const {}
