#pragma once

#include "LXBlenders.h"
#include "LXBlockingMap.h"
#include "LXImageAxis.h"
#include "LXTileWalk.h"

#include <QtCore/QPoint>
#include <QtCore/QRect>
#include <QtCore/QSize>

#include <algorithm>
#include <cstddef>
#include <limits>
#include <vector>

/// Blends of images in steps of one line, with the blenders of LXBlenders.h or the application's
/// own of the same form.
///
/// The null rectangle means the whole of its image. The rectangles' top left corners meet, and the
/// smallest width and height decide. What lies outside one of the images is cut off in all of them.
///
/// A step reads its lines, calls blender(i) once for each index on Qt's global pool and on the
/// calling thread, which waits for the others, and writes the destination's line. The images must
/// outlive the object, source and destination must not be the same, and nobody else may write them
/// meanwhile. Progress and cancelling are the caller's, between two steps; calls after the last do
/// nothing. A line that cannot be written is the last one. What the blender throws comes out of the
/// step as LXBlockingMap tells; without a tile for the line std::bad_alloc does.

namespace LXBlend {

/// What is left of rectangles in their images: `size`, from `first` on in each.
template <std::size_t Images>
struct LXCommonPart {
    QSize size{0, 0};
    QPoint first[Images];
};

template <std::size_t Images>
LXCommonPart<Images> LXReduceToCommonPart(const QRect (&images)[Images],
                                          const QRect (&rects)[Images]) {
    // Positions relative to the rectangles' corners, in 64 bits as the corners may lie anywhere.
    qint64 left = 0, top = 0, right = std::numeric_limits<int>::max(), bottom = right;
    QRect places[Images];
    for (std::size_t i = 0; i < Images; ++i) {
        const QRect& r = places[i] = rects[i].isNull() ? images[i] : rects[i];
        left = std::max<qint64>(left, -qint64(r.left()));
        top = std::max<qint64>(top, -qint64(r.top()));
        right =
            std::min({right, qint64(r.right()) - r.left(), qint64(images[i].right()) - r.left()});
        bottom =
            std::min({bottom, qint64(r.bottom()) - r.top(), qint64(images[i].bottom()) - r.top()});
    }
    LXCommonPart<Images> part;
    if (left > right || top > bottom)
        return part;
    part.size = QSize(int(right - left + 1), int(bottom - top + 1));
    for (std::size_t i = 0; i < Images; ++i)
        part.first[i] = QPoint(int(places[i].left() + left), int(places[i].top() + top));
    return part;
}

/// The lines of source and destination, and which is next.
template <class Image, class Blender, std::size_t Images>
class LXBlendSteps {
protected:
    LXBlendSteps(const Blender& blender, const Image& source, Image& destination,
                 const LXCommonPart<Images>& part)
        : m_blender(blender), m_part(part), m_source(&source), m_destination(&destination),
          m_sourceLine(Width()), m_destinationLine(Width()), m_indices(LXIndexRuns(int(Width()))) {
        m_blender.SetSource(&m_sourceLine);
        m_blender.SetDestination(&m_destinationLine);
    }
    // The blender points at the lines of this object.
    LXBlendSteps(const LXBlendSteps&) = delete;
    LXBlendSteps& operator=(const LXBlendSteps&) = delete;
    ~LXBlendSteps() = default;

    /// One line, after `readMore()` has read what else the blender needs.
    template <class ReadMore>
    void Step(ReadMore readMore) {
        if (m_step >= m_part.size.height())
            return;
        const QPoint from = Place(0), to = Place(1);
        LXAlongRows::Read(*m_source, from.y(), from.x(), m_sourceLine);
        LXAlongRows::Read(*m_destination, to.y(), to.x(), m_destinationLine);
        readMore();
        LXMapIndices(m_indices, m_blender);
        if (!LXAlongRows::Write(*m_destination, to.y(), to.x(), m_destinationLine))
            m_step = m_part.size.height() - 1;
        ++m_step;
    }

    /// Where the next line starts in an image.
    QPoint Place(std::size_t image) const { return m_part.first[image] + QPoint(0, m_step); }
    std::size_t Width() const { return std::size_t(std::max(m_part.size.width(), 0)); }

    Blender m_blender;

private:
    LXCommonPart<Images> m_part;
    const Image* m_source;
    Image* m_destination;
    std::vector<typename Image::Pixel> m_sourceLine, m_destinationLine;
    std::vector<LXIndexRun> m_indices;
    int m_step = 0;
};

/// Blends one image onto another.
template <class Image, class Blender>
class LXIterativeBlendImages : LXBlendSteps<Image, Blender, 2> {
public:
    LXIterativeBlendImages(const Blender& blender, const Image& source, Image& destination,
                           const QRect& sourceRect, const QRect& destinationRect)
        : LXBlendSteps<Image, Blender, 2>(blender, source, destination,
                                          Part(source, destination, sourceRect, destinationRect)) {}

    /// How many steps there are for such a blend.
    static int GetIterationCount(const Image& source, const Image& destination,
                                 const QRect& sourceRect, const QRect& destinationRect) {
        return Part(source, destination, sourceRect, destinationRect).size.height();
    }

    /// One line.
    void operator()() {
        this->Step([] {});
    }

private:
    static LXCommonPart<2> Part(const Image& source, const Image& destination,
                                const QRect& sourceRect, const QRect& destinationRect) {
        return LXReduceToCommonPart<2>({LXImageRect(source), LXImageRect(destination)},
                                       {sourceRect, destinationRect});
    }
};

/// Blends one image onto another through the alpha of a mask.
template <class Image, class Blender, class Selection>
class LXIterativeBlendBySelection : LXBlendSteps<Image, Blender, 3> {
public:
    LXIterativeBlendBySelection(const Blender& blender, const Image& source, Image& destination,
                                const Selection& selection, const QRect& sourceRect,
                                const QRect& destinationRect, const QRect& selectionRect)
        : LXBlendSteps<Image, Blender, 3>(
              blender, source, destination,
              Part(source, destination, selection, sourceRect, destinationRect, selectionRect)),
          m_selection(&selection), m_maskLine(this->Width()) {
        this->m_blender.SetMask(&m_maskLine);
    }

    /// How many steps there are for such a blend.
    static int GetIterationCount(const Image& source, const Image& destination,
                                 const Selection& selection, const QRect& sourceRect,
                                 const QRect& destinationRect, const QRect& selectionRect) {
        return Part(source, destination, selection, sourceRect, destinationRect, selectionRect)
            .size.height();
    }

    /// One line.
    void operator()() {
        this->Step([this] {
            const QPoint mask = this->Place(2);
            LXAlongRows::Read(*m_selection, mask.y(), mask.x(), m_maskLine);
        });
    }

private:
    static LXCommonPart<3> Part(const Image& source, const Image& destination,
                                const Selection& selection, const QRect& sourceRect,
                                const QRect& destinationRect, const QRect& selectionRect) {
        return LXReduceToCommonPart<3>(
            {LXImageRect(source), LXImageRect(destination), LXImageRect(selection)},
            {sourceRect, destinationRect, selectionRect});
    }

    const Selection* m_selection;
    std::vector<typename Selection::Pixel> m_maskLine;
};

} // namespace LXBlend
