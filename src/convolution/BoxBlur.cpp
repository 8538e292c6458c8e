#include "LXBoxBlur.h"

#include "LXBlendOn.h"
#include "LXBoxWindow.h"
#include "LXTileColumn.h"
#include "LXWorkRect.h"
#include "convolution/BoxRows.h"
#include "convolution/PictureRows.h"

#include <QtGui/QPainter>

#include <algorithm>
#include <cstddef>
#include <vector>

namespace {

using namespace LXPictureRows;

/// The sums of windows start at their radius: half their count, so that truncating them rounds.
class RoundingSums {
public:
    RoundingSums(int radius, unsigned int columns)
        : m_radius(radius), m_sums(4 * std::size_t(columns), radius) {}

    /// Fills the windows around position `centre` of a line of `extent`. Beyond its ends the first
    /// and last row enter as often as they stand for others.
    template <class RowAt>
    void Fill(qint64 centre, qint64 extent, RowAt rowAt) {
        const qint64 first = centre - m_radius, last = centre + m_radius;
        const auto add = [this](const LXRGBA32i* row, qint64 times) {
            LXRows::AddRow(row, int(times), m_sums.data(), Columns());
        };
        if (first < 0)
            add(rowAt(0), std::min<qint64>(last, -1) - first + 1);
        for (qint64 p = std::max<qint64>(first, 0); p <= std::min(last, extent - 1); ++p)
            add(rowAt(p), 1);
        if (last >= extent)
            add(rowAt(extent - 1), last - std::max(first, extent) + 1);
    }

    int* Data() { return m_sums.data(); }
    unsigned int Columns() const { return unsigned(m_sums.size() / 4); }
    LXRows::WindowSize Size() const {
        const int count = LXWindowSize(m_radius);
        return {count, count};
    }

private:
    int m_radius;
    std::vector<int> m_sums;
};

/// Pixels of a line at positions that may lie beyond its ends.
class ClampedLine {
public:
    static constexpr int MaxRun = 128;

    ClampedLine(const Line& line, qint64 first, qint64 extent)
        : m_line(line), m_first(first), m_extent(extent) {}

    const LXRGBA32i& At(qint64 position) const {
        return m_line[std::size_t(std::clamp<qint64>(position, 0, m_extent - 1) - m_first)];
    }
    /// `count` pixels, at most MaxRun, from a position on. Good until the next call.
    const LXRGBA32i* Run(qint64 position, int count) {
        if (position >= 0 && position + count <= m_extent)
            return &m_line[std::size_t(position - m_first)];
        for (int i = 0; i < count; ++i)
            m_run[i] = At(position + i);
        return m_run;
    }

private:
    const Line& m_line;
    qint64 m_first;
    qint64 m_extent;
    LXRGBA32i m_run[MaxRun];
};

template <class Image>
void BlurRows(Image& image, const QRect& rect, int radius) {
    const QRect part = LXNullIsWhole(rect, RectOf(image));
    if (!part.isValid() || radius < 0)
        return;
    const qint64 width = RectOf(image).width();
    const int first = int(std::max<qint64>(qint64(part.left()) - 1 - radius, 0));
    const int last = int(std::min<qint64>(qint64(part.right()) + radius, width - 1));
    Line source(std::size_t(last - first + 1)), result(std::size_t(part.width()));
    ClampedLine entering(source, first, width), leaving(source, first, width);
    for (int y = part.top(); y <= part.bottom(); ++y) {
        ReadRow(image, y, first, source);
        RoundingSums sums(radius, 1);
        sums.Fill(qint64(part.left()) - 1, width, [&](qint64 x) { return &leaving.At(x); });
        for (int i = 0; i < part.width(); i += ClampedLine::MaxRun) {
            const int count = std::min(ClampedLine::MaxRun, part.width() - i);
            const qint64 x = qint64(part.left()) + i;
            LXRows::SlideAlong(leaving.Run(x - 1 - radius, count), entering.Run(x + radius, count),
                               sums.Data(), sums.Size(), &result[std::size_t(i)], unsigned(count));
        }
        if (!WriteRow(image, y, part.left(), result))
            return;
    }
}

/// A strip of columns, row by row. `rowAt(y)` and `resultAt(y)` are where a row of the strip lies;
/// without a place for its result a row is passed over.
template <class RowAt, class ResultAt>
void BlurStrip(const QRect& strip, qint64 height, int radius, RowAt rowAt, ResultAt resultAt) {
    RowAt entering = rowAt, leaving = rowAt;
    RoundingSums sums(radius, unsigned(strip.width()));
    sums.Fill(qint64(strip.top()) - 1, height, [&](qint64 y) { return entering(int(y)); });
    Line unused(std::size_t(strip.width()));
    for (int y = strip.top(); y <= strip.bottom(); ++y) {
        const int leaves = int(std::max<qint64>(qint64(y) - 1 - radius, 0));
        const int enters = int(std::min<qint64>(qint64(y) + radius, height - 1));
        LXRGBA32i* const result = resultAt(y);
        LXRows::SlideDown(leaving(leaves), entering(enters), sums.Data(), sums.Size(),
                          result ? result : unused.data(), sums.Columns());
    }
}

void BlurStrip(const LXImageRGBA32i& source, LXImageRGBA32i& image, const QRect& strip,
               int radius) {
    const unsigned int column = unsigned(strip.left()) / LXImageRGBA32i::TileWidth;
    const unsigned int local = unsigned(strip.left()) % LXImageRGBA32i::TileWidth;
    LXTileColumn<LXImageRGBA32i> rows(source, column);
    LXTileColumnWriter<LXImageRGBA32i> results(image, column, strip, LXTileContent::Discard);
    BlurStrip(
        strip, image.GetHeight(), radius,
        [rows, local](int y) mutable { return rows.Row(unsigned(y)) + local; },
        [&results, local](int y) {
            LXRGBA32i* const row = results.Row(unsigned(y));
            return row ? row + local : nullptr;
        });
}

void BlurStrip(const QImage& source, QImage& image, const QRect& strip, int radius) {
    BlurStrip(
        strip, image.height(), radius, [&](int y) { return ConstRow(source, y) + strip.left(); },
        [&](int y) { return Row(image, y) + strip.left(); });
}

template <class Image>
void BlurColumns(Image& image, const QRect& rect, int radius) {
    const QRect part = LXNullIsWhole(rect, RectOf(image));
    if (!part.isValid() || radius < 0)
        return;
    const Image source = image;
    constexpr int width = int(LXImageRGBA32i::TileWidth);
    for (int column = part.left() / width; column <= part.right() / width; ++column)
        BlurStrip(source, image, part & QRect(column * width, part.top(), width, part.height()),
                  radius);
}

/// Copies the rectangle from one image to the other.
void CopyBack(const LXImageRGBA32i& from, LXImageRGBA32i& to, const QRect& rect) {
    BlendOn(from, rect, QPainter::CompositionMode_Source, to, rect, 1.0, false);
}
void CopyBack(const QImage& from, QImage& to, const QRect& rect) {
    if (to.format() == QImage::Format_Indexed8)
        MakeARGB32(to); // the one format that QPainter does not draw on
    const QRect part = LXClipped(rect, to.rect());
    if (!part.isValid())
        return;
    if (to.format() == QImage::Format_ARGB32) {
        for (int y = part.top(); y <= part.bottom(); ++y)
            std::copy_n(ConstRow(from, y) + part.left(), part.width(), Row(to, y) + part.left());
        return;
    }
    QPainter painter(&to);
    painter.setCompositionMode(QPainter::CompositionMode_Source);
    // A painter counts in points of the screen, and the rectangle in pixels.
    painter.scale(1 / to.devicePixelRatioF(), 1 / to.devicePixelRatioF());
    QImage pixels = from;
    pixels.setDevicePixelRatio(1);
    painter.drawImage(part, pixels, part);
}

template <class Image>
bool IsWhole(const Image& image, const QRect& rect) {
    return !rect.isValid() || rect == RectOf(image);
}

struct Box {
    int radius;

    template <class Image>
    void Whole(Image& image) const {
        LXBoxBlurH{radius}(image, QRect());
        LXBoxBlurV{radius}(image, QRect());
    }
    template <class Image>
    void Part(Image& copy, const QRect& rect) const {
        LXBoxBlurH{radius}(copy, LXGrown(rect, radius));
        LXBoxBlurV{radius}(copy, rect);
    }
};

struct ThreeBoxes {
    int radius;

    template <class Image>
    void Whole(Image& image) const {
        for (int pass = 0; pass < 3; ++pass)
            LXBoxBlurH{radius}(image, QRect());
        for (int pass = 0; pass < 3; ++pass)
            LXBoxBlurV{radius}(image, QRect());
    }
    /// Each pass covers what those after it will read.
    template <class Image>
    void Part(Image& copy, const QRect& rect) const {
        const LXBoxBlurH alongLines(radius);
        const LXBoxBlurV alongColumns(radius);
        const auto grown = [&](int times) { return LXGrown(rect, qint64(times) * radius); };
        alongLines(copy, grown(3));
        alongColumns(copy, grown(2));
        alongLines(copy, grown(2));
        alongColumns(copy, grown(1));
        alongLines(copy, grown(1));
        alongColumns(copy, rect);
    }
};

template <class Passes, class Image>
void Blur(const Passes& passes, Image& image, const QRect& rect) {
    if (IsWhole(image, rect)) {
        passes.Whole(image);
        return;
    }
    Image copy = image;
    passes.Part(copy, rect);
    CopyBack(copy, image, rect);
}

template <class Passes>
void BlurThrough(const Passes& passes, LXImageRGBA32i& image, const QRect& rect,
                 const LXImageRGBA32i& selection, const QRect& selectionRect, bool outsideBlends) {
    const bool whole = IsWhole(image, rect);
    const QRect place = whole ? LXImageRect(image) : rect;
    LXImageRGBA32i copy = image;
    if (whole)
        passes.Whole(copy);
    else
        passes.Part(copy, rect);
    BlendMaskOn(copy, place, QPainter::CompositionMode_SourceOver, image, place, 1.0, selection,
                selectionRect, outsideBlends, false);
}

} // namespace

void LXBoxBlurH::operator()(LXImageRGBA32i& image, const QRect& rect) const {
    BlurRows(image, rect, m_radius);
}

void LXBoxBlurH::operator()(QImage& image, const QRect& rect) const {
    MakeARGB32(image);
    BlurRows(image, rect, m_radius);
}

void LXBoxBlurV::operator()(LXImageRGBA32i& image, const QRect& rect) const {
    BlurColumns(image, rect, m_radius);
}

void LXBoxBlurV::operator()(QImage& image, const QRect& rect) const {
    MakeARGB32(image);
    BlurColumns(image, rect, m_radius);
}

void LXBoxBlur::operator()(LXImageRGBA32i& image, const QRect& rect) const {
    Blur(Box{m_radius}, image, rect);
}

void LXBoxBlur::operator()(QImage& image, const QRect& rect) const {
    Blur(Box{m_radius}, image, rect);
}

void LXBoxBlur::operator()(LXImageRGBA32i& image, const QRect& rect,
                           const LXImageRGBA32i& selection, const QRect& selectionRect,
                           bool outsideBlends) const {
    BlurThrough(Box{m_radius}, image, rect, selection, selectionRect, outsideBlends);
}

void LXGaussianBlur::operator()(LXImageRGBA32i& image, const QRect& rect) const {
    Blur(ThreeBoxes{m_radius}, image, rect);
}

void LXGaussianBlur::operator()(QImage& image, const QRect& rect) const {
    Blur(ThreeBoxes{m_radius}, image, rect);
}

void LXGaussianBlur::operator()(LXImageRGBA32i& image, const QRect& rect,
                                const LXImageRGBA32i& selection, const QRect& selectionRect,
                                bool outsideBlends) const {
    if (rect.isValid())
        BlurThrough(ThreeBoxes{m_radius}, image, rect, selection, selectionRect, outsideBlends);
}
