#pragma once

#include "LXBoxWindow.h"
#include "LXImage.h"
#include "LXImageAxis.h"
#include "LXTileColumn.h"
#include "LXTileWalk.h"
#include "LXWorkRect.h"

#include <algorithm>
#include <cstddef>

/// Box blurs in one call, with an accumulator of LXBlurAccumulator.h, or one of the application's
/// with the same members, for the arithmetic. Its mean is truncated, while that of ::LXBoxBlurH and
/// ::LXBoxBlurV is rounded: they differ by up to one level.
///
/// The window has 2 radius + 1 pixels, and the pixels at the image's border go on for ever. The
/// accumulator must be made for the same radius. The null rectangle means the whole image; any
/// other is cut to it, and nothing in it, or a negative radius, is no work. Windows at the
/// rectangle's border take in what lies beside it. Results overwrite whole pixels, with 0 in the
/// channels that the accumulator leaves alone.
///
/// All on the calling thread. Without a tile for the results std::bad_alloc comes out, and the
/// image is blurred in part.

namespace LXBlur {

/// Along lines.
template <class Image, class Accumulator>
class LXBoxBlurH {
public:
    LXBoxBlurH(int radius, const Accumulator& accumulator)
        : m_radius(radius), m_accumulator(accumulator) {}

    void operator()(Image& image, const QRect& rect) {
        const QRect part = LXNullIsWhole(rect, LXImageRect(image));
        if (!part.isValid() || m_radius < 0)
            return;
        const int width = int(image.GetWidth());
        const int first = int(std::max<qint64>(qint64(part.left()) - 1 - m_radius, 0));
        const int last = int(std::min<qint64>(qint64(part.right()) + m_radius, width - 1));
        std::vector<LXRGBA32i> source(std::size_t(last - first + 1));
        std::vector<LXRGBA32i> result(std::size_t(part.width()));
        for (int y = part.top(); y <= part.bottom(); ++y) {
            LXAlongRows::Read(image, y, first, source);
            LXSlideAlong<void>(m_accumulator, source, first, width, m_radius, part.left(),
                               part.width(), result.data());
            if (!LXAlongRows::Write(image, y, part.left(), result))
                return;
        }
    }

private:
    int m_radius;
    Accumulator m_accumulator;
};

/// Along columns.
template <class Image, class Accumulator>
class LXBoxBlurV {
public:
    LXBoxBlurV(int radius, const Accumulator& accumulator)
        : m_radius(radius), m_accumulator(accumulator) {}

    void operator()(Image& image, const QRect& rect) {
        const QRect part = LXNullIsWhole(rect, LXImageRect(image));
        if (!part.isValid() || m_radius < 0)
            return;
        const Image source = image;
        const int tileWidth = int(Image::TileWidth);
        for (int column = part.left() / tileWidth; column <= part.right() / tileWidth; ++column) {
            const QRect tiles(column * tileWidth, 0, tileWidth, int(image.GetHeight()));
            BlurStrip(source, image, part & tiles);
        }
    }

private:
    /// A strip within one column of tiles.
    void BlurStrip(const Image& source, Image& image, const QRect& strip) const {
        const unsigned int column = unsigned(strip.left()) / Image::TileWidth;
        const unsigned int local = unsigned(strip.left()) % Image::TileWidth;
        const unsigned int width = unsigned(strip.width());
        LXTileColumn<Image> rows(source, column);
        LXTileColumnWriter<Image> results(image, column, strip);
        LXSlideDown<void>(
            m_accumulator, width, image.GetHeight(), m_radius, strip.top(), strip.bottom(),
            [rows, local](int y) mutable { return rows.Row(unsigned(y)) + local; },
            [&](int y, const LXRGBA32i* result) {
                if (LXRGBA32i* const row = results.Row(unsigned(y)))
                    std::copy_n(result, width, row + local);
            });
    }

    int m_radius;
    Accumulator m_accumulator;
};

} // namespace LXBlur

extern template class LIBIMAGE_EXPORT LXBlur::LXBoxBlurH<LXImageRGBA32i, LXRGBABlurAccumulator>;
extern template class LIBIMAGE_EXPORT LXBlur::LXBoxBlurV<LXImageRGBA32i, LXRGBABlurAccumulator>;
