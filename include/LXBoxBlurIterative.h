#pragma once

#include "LXBoxWindow.h"
#include "LXImageAxis.h"
#include "LXTileColumn.h"
#include "LXTileWalk.h"
#include "LXWorkRect.h"

#include <algorithm>
#include <cstddef>
#include <vector>

/// Box blurs in steps of one line, with an accumulator of LXBlurAccumulator.h, or one of the
/// application's with the same members, for the arithmetic. The mean is truncated.
///
/// Every invalid rectangle means the whole image; any other is cut to it. That differs on purpose
/// from the steps of LXIterativeConvolve.h. The number of steps is the lines of what is left, its
/// height or width. A negative radius gives none. The window has 2 radius + 1 pixels, and the
/// accumulator must be made for the same radius. `Wrapper` says what lies beyond the image's
/// border, see LXBoxWindow.h. Results overwrite whole pixels, with 0 in the channels that the
/// accumulator leaves alone: alpha accumulators make black.
///
/// The steps run on the calling thread alone, as a running sum cannot be split. They read a copy of
/// the image that is made at construction and shares its tiles, and write the image, which must
/// outlive the object and must not be written by anybody else meanwhile. Progress and cancelling
/// are the caller's, between two steps. Without a tile for a result std::bad_alloc comes out.

namespace LXBlur {

/// Line by line, from top to bottom.
template <class Image, class Accumulator, class Wrapper>
class LXBoxBlurIterativeH {
public:
    LXBoxBlurIterativeH(int radius, const Accumulator& accumulator, Image& image, const QRect& rect)
        : m_radius(radius), m_accumulator(accumulator), m_image(&image), m_snapshot(image),
          m_rect(radius < 0 ? QRect() : LXInvalidIsWhole(rect, LXImageRect(image))),
          m_current(m_rect.top()) {
        if (!m_rect.isValid())
            return;
        const qint64 last =
            std::min<qint64>(qint64(m_rect.right()) + radius, qint64(image.GetWidth()) - 1);
        m_readStart = int(std::max<qint64>(qint64(m_rect.left()) - radius - 1, 0));
        m_source.resize(std::size_t(last - m_readStart + 1));
        m_destination.resize(std::size_t(m_rect.width()));
    }

    /// One line. True if none was left. A line that cannot be written is the last one.
    bool operator()() {
        if (m_current > m_rect.bottom())
            return true;
        LXAlongRows::Read(m_snapshot, m_current, m_readStart, m_source);
        LXSlideAlong<Wrapper>(m_accumulator, m_source, m_readStart, m_snapshot.GetWidth(), m_radius,
                              m_rect.left(), m_rect.width(), m_destination.data());
        if (!LXAlongRows::Write(*m_image, m_current, m_rect.left(), m_destination))
            m_current = m_rect.bottom();
        ++m_current;
        return false;
    }

private:
    int m_radius;
    Accumulator m_accumulator;
    Image* m_image;
    Image m_snapshot;
    QRect m_rect;
    int m_current;
    int m_readStart = 0;
    std::vector<LXRGBA32i> m_source, m_destination;
};

/// Column by column, from left to right.
///
/// Reading an image by columns is slow, so the first column of a strip computes those beside it as
/// well; each is written by its own step. A step takes as long as its strip then, at most 128
/// columns in one column of tiles.
template <class Image, class Accumulator, class Wrapper>
class LXBoxBlurIterativeV {
public:
    LXBoxBlurIterativeV(int radius, const Accumulator& accumulator, Image& image, const QRect& rect)
        : m_radius(radius), m_accumulator(accumulator), m_image(&image), m_snapshot(image),
          m_rect(radius < 0 ? QRect() : LXInvalidIsWhole(rect, LXImageRect(image))),
          m_current(m_rect.left()), m_strip(m_current, 0, 0, 0) {
        if (m_rect.isValid())
            m_destination.resize(std::size_t(m_rect.height()));
    }

    /// One column. True if none was left. Unlike a line, a column that cannot be written does not
    /// end the work: that is how the two are defined.
    bool operator()() {
        if (m_current > m_rect.right())
            return true;
        if (m_current > m_strip.right())
            ComputeStrip();
        const LXRGBA32i* result = &m_results[std::size_t(m_current - m_strip.left())];
        for (LXRGBA32i& pixel : m_destination) {
            pixel = *result;
            result += m_strip.width();
        }
        LXAlongColumns::Write(*m_image, m_current, m_rect.top(), m_destination);
        ++m_current;
        return false;
    }

private:
    /// The strip that begins at the current column: to the end of its column of tiles, unless the
    /// results would take more than 16 MiB.
    void ComputeStrip() {
        constexpr std::size_t mostPixels = std::size_t(1) << 22;
        const int tileWidth = int(Image::TileWidth), local = m_current % tileWidth;
        const int most = int(std::max<std::size_t>(mostPixels / m_destination.size(), 1));
        const int width = std::min({tileWidth - local, m_rect.right() - m_current + 1, most});
        const QRect strip(m_current, m_rect.top(), width, m_rect.height());
        m_results.resize(std::size_t(width) * m_destination.size());
        LXTileColumn<Image> rows(m_snapshot, unsigned(m_current / tileWidth));
        LXRGBA32i* result = m_results.data();
        LXSlideDown<Wrapper>(
            m_accumulator, unsigned(width), m_snapshot.GetHeight(), m_radius, m_rect.top(),
            m_rect.bottom(), [rows, local](int y) mutable { return rows.Row(unsigned(y)) + local; },
            [&result, width](int, const LXRGBA32i* row) {
                result = std::copy_n(row, width, result);
            });
        m_strip = strip;
    }

    int m_radius;
    Accumulator m_accumulator;
    Image* m_image;
    Image m_snapshot;
    QRect m_rect;
    int m_current;
    std::vector<LXRGBA32i> m_destination;
    QRect m_strip;                    // of columns that are computed
    std::vector<LXRGBA32i> m_results; // of the strip, row by row
};

} // namespace LXBlur
