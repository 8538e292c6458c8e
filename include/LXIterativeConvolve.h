#pragma once

#include "LXBlockingMap.h"
#include "LXImageAxis.h"
#include "LXPixel.h"
#include "LXTileWalk.h"
#include "LXWorkRect.h"

#include <algorithm>
#include <cstddef>
#include <vector>

/// A one-dimensional kernel over an image in steps of one line: the kernels of this library, or one
/// of the application's with the members told in LXKernelLines.h.
///
/// The null rectangle means the whole image; any other is cut to it, and nothing in it gives no
/// steps. The number of steps is the lines of what is left, its height or width; calls after the
/// last do nothing. The kernel reads beside the rectangle as far as it reaches and the image goes.
///
/// A step reads its line, calls kernel(i) once for each index on Qt's global pool and on the
/// calling thread, which waits for the others, and writes the line back. It works in place: the
/// image must outlive the object, and nobody else may write it meanwhile. Progress and cancelling
/// are the caller's, between two steps. What the kernel throws leaves the line as it was and comes
/// out of the step as LXBlockingMap tells; without a tile for the line std::bad_alloc does.

namespace LXLineDetail {

template <class Image, class Kernel, class Axis>
class IterativeConvolve {
protected:
    IterativeConvolve(const Kernel& kernel, Image& image, const QRect& rect)
        : m_kernel(kernel), m_image(&image) {
        const QRect part = LXNullIsWhole(rect, LXImageRect(image));
        if (!part.isValid())
            return;
        m_current = Axis::CrossFirst(part);
        m_last = Axis::CrossLast(part);
        m_first = Axis::AlongFirst(part);
        const qint64 left = qint64(m_first) - std::max(m_kernel.Left(), 0);
        const qint64 right = qint64(Axis::AlongLast(part)) + std::max(m_kernel.Right(), 0);
        m_readStart = int(std::max<qint64>(left, 0));
        const qint64 readEnd = std::min<qint64>(right, Axis::Extent(image) - 1);
        m_source.resize(std::size_t(readEnd + 1 - m_readStart));
        m_destination.resize(std::size_t(Axis::AlongLast(part) + 1 - m_first));
        m_indices = LXIndexRuns(int(m_destination.size()));
        m_kernel.SetSource(&m_source);
        m_kernel.SetDestination(&m_destination);
        m_kernel.SetSourceOffset(m_first - m_readStart);
    }
    // The kernel points at the lines of this object.
    IterativeConvolve(const IterativeConvolve&) = delete;
    IterativeConvolve& operator=(const IterativeConvolve&) = delete;
    ~IterativeConvolve() = default;

    bool Ended() const { return m_current > m_last; }

    /// Computes the next line and writes it. False if it could not be written.
    bool DoLine() {
        Axis::Read(*m_image, m_current, m_readStart, m_source);
        LXMapIndices(m_indices, m_kernel);
        return Axis::Write(*m_image, m_current, m_first, m_destination);
    }
    void Next() { ++m_current; }
    void End() { m_current = m_last + 1; }

private:
    Kernel m_kernel;
    Image* m_image;
    int m_current = 0, m_last = -1; // lines
    int m_first = 0;                // of the rectangle, along a line
    int m_readStart = 0;
    std::vector<LXRGBA32i> m_source, m_destination;
    std::vector<LXIndexRun> m_indices;
};

} // namespace LXLineDetail

namespace LXBlur {

/// Line by line, from top to bottom.
template <class Image, class Kernel>
class LXIterativeConvolveH : LXLineDetail::IterativeConvolve<Image, Kernel, LXAlongRows> {
public:
    LXIterativeConvolveH(const Kernel& kernel, Image& image, const QRect& rect)
        : LXLineDetail::IterativeConvolve<Image, Kernel, LXAlongRows>(kernel, image, rect) {}

    /// One line. A line that cannot be written is the last one.
    void operator()() {
        if (this->Ended())
            return;
        if (this->DoLine())
            this->Next();
        else
            this->End();
    }
};

/// Column by column, from left to right.
template <class Image, class Kernel>
class LXIterativeConvolveV : LXLineDetail::IterativeConvolve<Image, Kernel, LXAlongColumns> {
public:
    LXIterativeConvolveV(const Kernel& kernel, Image& image, const QRect& rect)
        : LXLineDetail::IterativeConvolve<Image, Kernel, LXAlongColumns>(kernel, image, rect) {}

    /// One column. Unlike a line, a column that cannot be written does not end the work: that is
    /// how the two are defined.
    void operator()() {
        if (this->Ended())
            return;
        this->DoLine();
        this->Next();
    }
};

} // namespace LXBlur
